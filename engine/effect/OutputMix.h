// The last stage of each channel: dry and wet mixed by "Effect Mix Level", scaled by the output volume
// and passed through a soft limiter.
#pragma once

#include "engine/effect/EffectConstants.h"
#include "engine/framework/DspModule.h"

namespace tolvane {

// Linear up to the knee (3.6), then a hyperbola that joins with equal slope and approaches +-4:
//   s > knee:  4 - m^2 / (s - 2 knee + 4),   s < -knee:  m^2 / (4 - s - 2 knee) - 4,   m = 4 - knee.
inline float outputLimit(float s) {
    constexpr float m = effect::kLimitLevel - effect::kLimitKnee;
    constexpr float mm = m * m;
    constexpr float shift = 2.0f * effect::kLimitKnee - effect::kLimitLevel;
    if (s > effect::kLimitKnee) return effect::kLimitLevel - mm / (s - shift);
    if (s < -effect::kLimitKnee) return mm / (-s - shift) - effect::kLimitLevel;
    return s;
}

// Inputs: 0 dry (block), 1 wet (block), 2 output volume V (scalar), 3 mix M (scalar).
// Wet gain V M and dry gain V - V M, with V at least 0 and M within [0, 1]. A path is active while its
// gain is above the silence threshold in this block or the previous one; only active paths are pulled,
// so a silent wet path costs nothing (and its delay lines start empty when it comes back). Both gains
// ramp linearly across the block; with no active path the block is silent.
class OutputMix : public DspModule {
public:
    enum Input { kDry, kWet, kVolume, kMix };

    explicit OutputMix(ModuleGraph& graph) : DspModule(graph, OutputKind::Block, 4) {}
    void updateBlock(int tick) override;
    void onReset() override { previousDry_ = previousWet_ = 0.0f; }
    // While the wet path rests (nothing but silence has gone through it for longer than it can hold),
    // it is not pulled and counts as silent.
    void setWetResting(bool resting) { wetResting_ = resting; }

private:
    bool wetResting_ = false;
    float previousDry_ = 0.0f;
    float previousWet_ = 0.0f;
};

}  // namespace tolvane
