// Control values of the mixer, the filter's saturation and the amplifier, each the sum of a
// parameter value and an assignable modulation.
#pragma once

#include "engine/framework/DspModule.h"

namespace tolvane {

// The saturation ceiling L = min (max/min)^(s + m), the saturation mapping (0.1 .. 4) applied to the
// modulated value: fastExp((s + m) lnRange + lnMin). Inputs: 0 normalised level s, 1 modulation m.
class SaturationLevel : public DspModule {
public:
    SaturationLevel(ModuleGraph& graph, float lnMin, float lnRange)
        : DspModule(graph, OutputKind::Scalar, 2), lnMin_(lnMin), lnRange_(lnRange) {}
    void compute() override;

private:
    float lnMin_;
    float lnRange_;
};

// A mixer channel's gain, max(0, level + modulation). Inputs: 0 level, 1 modulation.
class LevelControl : public DspModule {
public:
    explicit LevelControl(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, 2) {}
    void compute() override {
        float g = inputValue(0) + inputValue(1);
        scalar_ = g > 0.0f ? g : 0.0f;
    }
};

// The voice's amplitude for a block: a = e v max(0, 1 + l D + x), with envelope e, velocity factor v,
// LFO value l at depth D and the amplifier modulation x. The LFO can close the voice but never
// inverts it.
class AmpGain : public DspModule {
public:
    enum Input { kEnvelope, kVelocity, kLfo, kModulation, kNumInputs };
    explicit AmpGain(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, kNumInputs) {}
    void setLfoDepth(float depth) { lfoDepth_ = depth; }
    // A closed envelope makes the amplitude 0 whatever the other inputs say; they are not pulled then.
    void updateBlock(int tick) override {
        lastTick_ = tick;
        input(kEnvelope)->update(tick);
        if (inputValue(kEnvelope) == 0.0f) {
            scalar_ = 0.0f;
            return;
        }
        updateInputs(tick);
        compute();
    }
    void compute() override {
        float bracket = 1.0f + inputValue(kLfo) * lfoDepth_ + inputValue(kModulation);
        scalar_ = bracket > 0.0f ? inputValue(kEnvelope) * inputValue(kVelocity) * bracket : 0.0f;
    }

private:
    float lfoDepth_ = 0.0f;
};

}  // namespace tolvane
