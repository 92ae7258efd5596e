#include "engine/voice/PitchUnit.h"

#include "engine/voice/VoiceAllocator.h"

namespace tolvane {

void BendTuneSource::compute() {
    int bend = static_cast<const VoiceAllocator&>(owner()).pitchBend();
    scalar_ = static_cast<float>(bend) * (range_ / 8192.0f) + tune_;
}

DetuneDrift::DetuneDrift(ModuleGraph& graph) : DspModule(graph) {
    UniformRandom& random = graph.random();
    from_ = random.bipolar();
    to_ = random.bipolar();
    position_ = random.unipolar();
    sampleRateChanged();
}

void DetuneDrift::compute() {
    scalar_ = (from_ + (to_ - from_) * position_) * depth_;
    position_ += step_;
    if (position_ >= 1.0f) {
        from_ = to_;
        to_ = owner().random().bipolar();
        position_ -= 1.0f;
    }
}

void PitchSmoother::updateBlock(int tick) {
    if (tick == lastTick_) return;
    if (!follows(tick, lastTick_)) jump_ = true;
    lastTick_ = tick;
    updateInputs(tick);
    float x = inputValue(kBendTune) + inputValue(kDrift);
    float c = inputValue(kCoefficient);
    if (jump_) {
        scalar_ = x;
        jump_ = false;
    }
    scalar_ = (1.0f - c) * x + c * scalar_;
}

PitchUnit::PitchUnit(ModuleGraph& graph)
    : bendTune_(graph, 0, kRuleFromInputs),
      drift_(graph, 0, kRuleGraphVoices),
      coefficient_(graph, 0, kRuleFromInputs, kSmoothingTime),
      smoother_(graph, PitchSmoother::kNumInputs, kRuleFromInputs) {
    smoother_.connectInput(&bendTune_, PitchSmoother::kBendTune);
    smoother_.connectInput(&drift_, PitchSmoother::kDrift);
    smoother_.connectInput(&coefficient_, PitchSmoother::kCoefficient);
}

void PitchUnit::setBendRange(float semitones) {
    bendTune_.forEach([semitones](BendTuneSource& s) { s.setRange(semitones); });
}

void PitchUnit::setMasterTune(float semitones) {
    bendTune_.forEach([semitones](BendTuneSource& s) { s.setTune(semitones); });
}

void PitchUnit::setVoiceDetune(float depth) {
    drift_.forEach([depth](DetuneDrift& d) { d.setDepth(depth); });
}

}  // namespace tolvane
