// Phase-modulated generators: the waveform is read at q = p + d x modulator, with the depth d in cycles
// per unit of modulator amplitude, ramped linearly across the block. While the depth stays at or below
// 0.001 at both ends of a block the generator renders exactly as its plain counterpart and neither reads
// nor updates the modulator. Low and Middle waveforms keep their formulas (Middle transition widths from
// the unmodulated increment; sines from the table); High triangle, sawtooth and pulse always take the
// residual path while modulated, with the residual scale of the unmodulated increment.
#pragma once

#include <algorithm>

#include "engine/sound/PlainGenerators.h"

namespace tolvane {

template <class Plain, class ModulatedShape>
class FmGenerator : public Plain {
public:
    static constexpr float kDepthThreshold = 0.001f;
    // A phase deviation beyond this many cycles per unit amplitude is held there.
    static constexpr float kMaxDepth = 64.0f;

    explicit FmGenerator(ModuleGraph& graph) : Plain(graph, 4) {}

    // Whether the current block is phase-modulated (decided when its inputs are updated).
    bool modulated() const { return modulated_; }

    void updateInputs(int tick) override {
        for (int k = 0; k < WaveGenerator::kModulator; ++k)
            if (DspModule* in = this->input(k)) in->update(tick);
        float target = depthInput();
        float start = depth_.startToward(target);
        modulated_ = start > kDepthThreshold || target > kDepthThreshold;
        if (modulated_) this->input(WaveGenerator::kModulator)->update(tick);
    }

    void compute() override {
        float d0, ds;
        depth_.begin(depthInput(), this->blockSize_, d0, ds);
        if (!modulated_) {
            this->renderPlain();
            return;
        }
        float f = this->blockIncrement();
        float w0, ws;
        this->beginWidth(ModulatedShape::kPulse, w0, ws);
        const ModulatedShape shape(f);
        const float* modulator = this->inputBlock(WaveGenerator::kModulator);
        float* out = this->block();
        float p = this->phase_;
        forEachSample(this->blockSize_, [&](int n) {
            float k = static_cast<float>(n + 1);
            float w = wave::clampWidth(w0 + ws * k);
            float q = wave::wrapPhase(p + (d0 + ds * k) * modulator[n]);
            out[n] = wave::evaluate(shape, q, w);
            p = wave::advance(p, f);
        });
        this->phase_ = p;
        this->modulatedBlockDone();
    }

protected:
    void resetInterpolation() override {
        Plain::resetInterpolation();
        depth_.unset();
    }

private:
    float depthInput() const {
        return std::min(std::max(this->inputValue(WaveGenerator::kFmDepth), 0.0f), kMaxDepth);
    }

    ControlRamp depth_;
    bool modulated_ = false;
};

using FmLowSineGenerator = FmGenerator<LowSineGenerator, wave::TableSine>;
using FmMiddleSineGenerator = FmGenerator<MiddleSineGenerator, wave::TableSine>;
using FmHighSineGenerator = FmGenerator<HighSineGenerator, wave::TableSine>;
using FmLowTriangleGenerator = FmGenerator<LowTriangleGenerator, wave::RisingTriangle>;
using FmMiddleTriangleGenerator = FmGenerator<MiddleTriangleGenerator, wave::MiddleTriangle>;
using FmHighTriangleGenerator = FmGenerator<HighTriangleGenerator, wave::ResidualTriangle>;
using FmLowSawGenerator = FmGenerator<LowSawGenerator, wave::NaiveSaw>;
using FmMiddleSawGenerator = FmGenerator<MiddleSawGenerator, wave::MiddleSaw>;
using FmHighSawGenerator = FmGenerator<HighSawGenerator, wave::ResidualSaw>;
using FmLowPulseGenerator = FmGenerator<LowPulseGenerator, wave::PulseOf<wave::NaiveSaw>>;
using FmMiddlePulseGenerator = FmGenerator<MiddlePulseGenerator, wave::PulseOf<wave::MiddleSaw>>;
using FmHighPulseGenerator = FmGenerator<HighPulseGenerator, wave::PulseOf<wave::ResidualSaw>>;

}  // namespace tolvane
