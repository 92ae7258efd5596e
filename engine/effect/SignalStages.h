// The effect's per-sample stages around the delay lines: the input guard that makes the dry signal,
// the feed mix that closes the feedback loop, and the overdrive.
#pragma once

#include "engine/framework/DspModule.h"

namespace tolvane {

// Input 0: the voice sum (block). Output: the voice sum plus a tiny offset, the effect's dry signal.
// An unconnected input counts as silence, and so does a block holding a non-finite or runaway value.
class InputGuard : public DspModule {
public:
    explicit InputGuard(ModuleGraph& graph) : DspModule(graph, OutputKind::Block, 1) {}
    void compute() override;
};

// Inputs: 0 the dry signal (block), 1 the feedback source (block), 2 the feedback gain (scalar).
// out[k] = dry[k] + g[k] fb[k], with g ramped from the previous block's gain to the new one.
//
// The feedback source is a later stage of the same loop. When it is still computing this tick (its
// own update pulled this mix), its block is the previous one: the loop closes one block late. While the
// gain stays silent in this block and the previous one, the source is not pulled at all.
class FeedMix : public DspModule {
public:
    enum Input { kDry, kFeedback, kGain };

    explicit FeedMix(ModuleGraph& graph) : DspModule(graph, OutputKind::Block, 3) {}
    void updateBlock(int tick) override;

private:
    float previousGain_ = 0.0f;
};

// Inputs: 0 the signal (block), 1 the drive factor (scalar, read once per block).
// y = m G x / (1 + |G x|) with G = max(0.01, drive): a soft saturation towards +-m. Below a drive of 1
// the make-up m = 1/G keeps small signals at unity gain; from 1 up, m = 1 and the ceiling is +-1.
class Overdrive : public DspModule {
public:
    enum Input { kSignal, kDrive };

    explicit Overdrive(ModuleGraph& graph) : DspModule(graph, OutputKind::Block, 2) {}
    void compute() override;
};

}  // namespace tolvane
