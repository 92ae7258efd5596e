// The four-channel mixer of a voice: OSC1, OSC2, the ring modulator and the noise, each with its level.
//
// A channel is active in a block when its level is above 0.00001. The block renders the channels that are
// active now or were active in the previous block (so a channel just turned down is still heard while its
// gain ramps to zero); the audio inputs of the other channels are not updated at all, so a silent source
// costs nothing unless something else pulls it. Each gain moves linearly from the previous block's level
// to this block's across the block.
#pragma once

#include <array>

#include "engine/framework/DspModule.h"

namespace tolvane {

class Mixer : public DspModule {
public:
    static constexpr int kChannels = 4;
    enum Channel : int { kOsc1 = 0, kOsc2 = 1, kRing = 2, kNoise = 3 };
    // Inputs 0 .. 3 are the channels' audio, 4 .. 7 their levels.
    static constexpr int kLevelInput = kChannels;
    static constexpr float kSilence = 0.00001f;

    explicit Mixer(ModuleGraph& graph) : DspModule(graph, OutputKind::Block, 2 * kChannels) {}

    void updateBlock(int tick) override;
    void onReset() override { forget(); }
    void updateInputs(int tick) override;
    void compute() override;

private:
    void forget() {
        gains_.fill(0.0f);
        previousMask_ = 0;
    }

    std::array<float, kChannels> gains_{};
    unsigned previousMask_ = 0;
    // This block's levels, active set and rendered set, decided when the inputs are updated.
    std::array<float, kChannels> levels_{};
    unsigned activeMask_ = 0;
    unsigned renderMask_ = 0;
};

}  // namespace tolvane
