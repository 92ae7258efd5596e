// Coloured noise: white noise from the engine's random generator through a one-pole low-pass whose corner
// follows the colour frequency.
//
// The filter is y[n] = b (w[n] + w[n-1]) + a y[n-1] with t = tan(pi c / 2) for the normalised cutoff
// c = colour / sample rate (at most 0.499), b = t / (t + 1) and a = 1 - 2b: unity gain at DC, a zero at
// half the sample rate. It runs as y = b w + s, s = b w + a y. When c changes, b and a glide linearly
// across the block from their previous values; the first block after a reset takes them at once.
//
// The colour is a shared value, so one generator serves every voice: all voices mix the same noise.
#pragma once

#include "engine/framework/DspModule.h"

namespace tolvane {

class NoiseGenerator : public DspModule {
public:
    enum Input : int { kColour = 0 };
    static constexpr float kMaxCutoff = 0.499f;

    explicit NoiseGenerator(ModuleGraph& graph) : DspModule(graph, OutputKind::Block, 1) {}

    void updateBlock(int tick) override;
    void onReset() override { forget(); }
    void compute() override;

private:
    void forget() {
        previousCutoff_ = kUnset;
        state_ = 0.0f;
    }

    static constexpr float kUnset = -1.0f;
    float previousCutoff_ = kUnset;
    float previousB_ = 0.0f;
    float previousA_ = 0.0f;
    float state_ = 0.0f;
};

}  // namespace tolvane
