#include "engine/modulation/Lfo.h"

#include <cmath>

#include "engine/sound/LookupTables.h"
#include "dsp/FastMath.h"

namespace tolvane {
namespace {

// Cycles per whole note; the display labels are the cycle lengths in whole notes ("16" .. "1/64").
constexpr float kDivisionCycles[Lfo::kDivisions] = {
    0.0625f, 0.083333336f, 0.09375f, 0.125f, 0.16666667f, 0.1875f, 0.25f, 0.33333334f,
    0.375f, 0.5f, 0.6666667f, 0.75f, 1.0f, 1.3333334f, 1.5f, 2.0f,
    2.6666667f, 3.0f, 4.0f, 5.3333335f, 6.0f, 8.0f, 10.666667f, 12.0f,
    16.0f, 21.333334f, 24.0f, 32.0f, 42.666668f, 48.0f, 64.0f,
};

constexpr float kBeatsPerWholeNoteMinute = 240.0f;  // 4 beats x 60 seconds

}  // namespace

void LfoFreeRate::compute() { scalar_ = fastExp((inputValue(0) + inputValue(1)) * lnRange_ + lnMin_); }

void LfoTempoRate::compute() { scalar_ = base_ * fastExp(inputValue(0) * lnRange_); }

void LfoRateJitter::compute() { scalar_ = inputValue(0) * (1.0f + kDepth * owner().random().bipolar()); }

LfoWaveform::LfoWaveform(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, kNumInputs) {
    UniformRandom& random = graph.random();
    phase_ = random.unipolar();
    for (float& v : ring_) v = random.bipolar();
}

void LfoWaveform::advanceRing() {
    readIndex_ = (readIndex_ + 1) & (kRingSize - 1);
    writeIndex_ = (writeIndex_ + 1) & (kRingSize - 1);
    ring_[static_cast<std::size_t>(writeIndex_)] = owner().random().bipolar();
}

float LfoWaveform::shapeSum(float x, int i, int& count) const {
    // One waveform alone is the common case.
    count = 1;
    switch (mask_) {
        case kSine: return sineTable().sine(x);
        case kTriangle: return x < 0.5f ? 4.0f * x - 1.0f : 3.0f - 4.0f * x;
        case kSawtooth: return 1.0f - 2.0f * x;
        case kSquare: return x < 0.5f ? 1.0f : -1.0f;
        case kSampleHold: return ringValue(i);
        case kRandom: return ringValue(i) + (ringValue(i + 1) - ringValue(i)) * x;
        default: break;
    }
    float sum = 0.0f;
    count = 0;
    if (mask_ & kSine) {
        sum += sineTable().sine(x);
        ++count;
    }
    if (mask_ & kTriangle) {
        sum += x < 0.5f ? 4.0f * x - 1.0f : 3.0f - 4.0f * x;
        ++count;
    }
    if (mask_ & kSawtooth) {
        sum += 1.0f - 2.0f * x;
        ++count;
    }
    if (mask_ & kSquare) {
        sum += x < 0.5f ? 1.0f : -1.0f;
        ++count;
    }
    float held = ringValue(i);
    if (mask_ & kSampleHold) {
        sum += held;
        ++count;
    }
    if (mask_ & kRandom) {
        sum += held + (ringValue(i + 1) - held) * x;
        ++count;
    }
    return sum;
}

void LfoWaveform::compute() {
    if (inputValue(kTrigger) >= 0.5f) {
        phase_ = 0.0f;
        advanceRing();
    }
    // The offset may move the read point into other cycles; the ring follows.
    float p = inputValue(kPhaseOffset) + phase_;
    int n = static_cast<int>(p);
    if (static_cast<float>(n) > p) --n;  // floor, also below zero
    float x = p - static_cast<float>(n);
    if (x >= 1.0f) {
        x = 0.0f;
        ++n;
    }
    int i = (n + readIndex_) & (kRingSize - 1);
    int count = 0;
    float sum = shapeSum(x, i, count);
    scalar_ = count > 1 ? sum / static_cast<float>(count) : sum;

    float step = inputValue(kRate) * blockPeriod_;
    if (!(step > 0.0f)) step = 0.0f;
    if (step > kMaxStep) step = kMaxStep;
    phase_ += step;
    if (phase_ >= 1.0f) {
        phase_ -= 1.0f;
        advanceRing();
    }
}

float Lfo::divisionCycles(int index) {
    if (index < 0) index = 0;
    if (index >= kDivisions) index = kDivisions - 1;
    return kDivisionCycles[index];
}

int Lfo::divisionIndex(float speed) {
    float x = speed * static_cast<float>(kDivisions);
    if (!(x > 0.0f)) return 0;
    int index = static_cast<int>(x);
    return index < kDivisions - 1 ? index : kDivisions - 1;
}

Lfo::Lfo(ModuleGraph& graph, PolyModule& trigger, PolyModule& latestTrigger, const ExponentialMapping& rate,
         PolyModule* speedModulation, PolyModule* phaseModulation)
    : trigger_(trigger),
      latestTrigger_(latestTrigger),
      zero_(graph, 0, kRuleFromInputs, 0.0f),
      speedValue_(graph, 0, kRuleFromInputs, kInitialSpeed),
      freeRate_(graph, 2, kRuleFromInputs, rate.lnMin(), rate.lnRange()),
      tempoRate_(graph, 1, kRuleFromInputs, rate.lnRange()),
      jitter_(graph, 2, kRuleFromInputs),
      phaseValue_(graph, 0, kRuleFromInputs, 0.0f),
      phaseOffset_(graph, 2, kRuleFromInputs),
      waveform_(graph, LfoWaveform::kNumInputs, kRuleFromInputs) {
    freeRate_.connectInput(&speedValue_, 0);
    freeRate_.connectInput(speedModulation, 1);
    tempoRate_.connectInput(speedModulation, 0);
    phaseOffset_.connectInput(&phaseValue_, 0);
    phaseOffset_.connectInput(phaseModulation, 1);
    waveform_.connectInput(&jitter_, LfoWaveform::kRate);
    waveform_.connectInput(&phaseOffset_, LfoWaveform::kPhaseOffset);
    mode_ = -1;
    setMode(0);
}

void Lfo::setWaveform(int mask) {
    waveform_.forEach([mask](LfoWaveform& w) { w.setMask(mask); });
}

void Lfo::setMode(int bits) {
    bits &= 7;
    bool wasTriggered = mode_ >= 0 && (mode_ & kTrigger);
    mode_ = bits;
    PolyModule* source = (bits & kMono) ? &latestTrigger_ : &trigger_;
    jitter_.connectInput(source, 1);
    waveform_.connectInput((bits & kTrigger) ? source : &zero_, LfoWaveform::kTrigger);
    if (wasTriggered && !(bits & kTrigger)) {
        // Free-running again: every instance continues from its own random phase.
        UniformRandom& random = waveform_.graph().random();
        waveform_.forEach([&random](LfoWaveform& w) { w.setPhase(random.unipolar()); });
    }
    selectRate();
}

void Lfo::setSpeed(float value) {
    speed_ = value;
    setValue(speedValue_, value);
    if (division_ >= 0) selectRate();
}

void Lfo::setPhase(float cycles) { setValue(phaseValue_, cycles); }

void Lfo::setTempo(float bpm) {
    tempo_ = bpm;
    selectRate();
}

void Lfo::selectRate() {
    if ((mode_ & kTempoSync) && tempo_ > 0.0f) {
        division_ = divisionIndex(speed_);
        float r = divisionCycles(division_) * tempo_ / kBeatsPerWholeNoteMinute;
        tempoRate_.forEach([r](LfoTempoRate& t) { t.setCyclesPerSecond(r); });
        if (jitter_.inputSource(0) != &tempoRate_) jitter_.connectInput(&tempoRate_, 0);
    } else {
        division_ = -1;
        if (jitter_.inputSource(0) != &freeRate_) jitter_.connectInput(&freeRate_, 0);
    }
}

}  // namespace tolvane
