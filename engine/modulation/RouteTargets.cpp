#include "engine/modulation/RouteTargets.h"

#include "engine/sound/LookupTables.h"
#include "dsp/FastMath.h"

namespace tolvane {
namespace {

float clampNote(float n) {
    if (!(n > 0.0f)) return 0.0f;
    return n < kMaxControlNote ? n : kMaxControlNote;
}

float clampUnit(float x) {
    if (!(x > 0.0f)) return 0.0f;
    return x < 1.0f ? x : 1.0f;
}

float normalised(float hz, float sampleRate) {
    float f = hz / sampleRate;
    return f < kMaxNormalisedFrequency ? f : kMaxNormalisedFrequency;
}

}  // namespace

void OscFrequency::compute() {
    float n = 64.0f + (inputValue(kGlide) - 64.0f) * keyFollow_ + offset_ + inputValue(kPitch) +
              kModulationSemitones * modulation();
    note_ = clampNote(n);
    scalar_ = normalised(noteToHz(note_), sampleRate_);
}

void PulseWidthTarget::compute() { scalar_ = clampUnit(inputValue(kWidth) + 0.5f * modulation()); }

void FmDepthTarget::compute() {
    float d = kScale * (inputValue(kDepth) + modulation());
    scalar_ = d > 0.0f ? d : 0.0f;
}

void CutoffTarget::compute() {
    float n = inputValue(kBase) + (inputValue(kKey) - 64.0f) * keyFollow_ + kModulationNotes * modulation();
    note_ = clampNote(n);
    scalar_ = normalised(noteFrequencyTable().frequency(note_), sampleRate_);
}

void ResonanceTarget::compute() { scalar_ = clampUnit(inputValue(kResonance) + 0.5f * modulation()); }

}  // namespace tolvane
