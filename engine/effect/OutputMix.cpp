#include "engine/effect/OutputMix.h"

#include <algorithm>

namespace tolvane {

using effect::kGroup;
using effect::kSilence;

void OutputMix::updateBlock(int tick) {
    if (tick == lastTick_) return;
    lastTick_ = tick;
    input(kVolume)->update(tick);
    input(kMix)->update(tick);
    const float volume = std::max(0.0f, inputValue(kVolume));
    const float mix = std::clamp(inputValue(kMix), 0.0f, 1.0f);
    const float wetGain = volume * mix;
    const float dryGain = volume - wetGain;

    const bool dryActive = dryGain > kSilence || previousDry_ > kSilence;
    const bool wetActive = !wetResting_ && (wetGain > kSilence || previousWet_ > kSilence);
    if (dryActive) input(kDry)->update(tick);
    if (wetActive) input(kWet)->update(tick);

    steady_ = false;
    float* out = block_.data();
    const float perSample = 1.0f / static_cast<float>(blockSize_);
    const float dryStart = previousDry_, dryStep = (dryGain - previousDry_) * perSample;
    const float wetStart = previousWet_, wetStep = (wetGain - previousWet_) * perSample;
    previousDry_ = dryGain;
    previousWet_ = wetGain;

    if (dryActive && wetActive) {
        const float* dry = inputBlock(kDry);
        const float* wet = inputBlock(kWet);
        for (int k0 = 0; k0 < blockSize_; k0 += kGroup)
            for (int k = k0; k < k0 + kGroup; ++k) {
                const float kf = static_cast<float>(k);
                out[k] = outputLimit((dryStart + kf * dryStep) * dry[k] + (wetStart + kf * wetStep) * wet[k]);
            }
    } else if (dryActive || wetActive) {
        const float* in = inputBlock(dryActive ? kDry : kWet);
        const float step0 = dryActive ? dryStep : wetStep;
        if (step0 == 0.0f && input(dryActive ? kDry : kWet)->steadyBlock()) {
            // A steady gain on a steady signal (an idle synthesizer's guard offset): one value for the block.
            fillBlock(outputLimit((dryActive ? dryStart : wetStart) * in[0]));
            steady_ = true;
            return;
        }
        const float start = dryActive ? dryStart : wetStart;
        const float step = dryActive ? dryStep : wetStep;
        for (int k0 = 0; k0 < blockSize_; k0 += kGroup)
            for (int k = k0; k < k0 + kGroup; ++k) out[k] = outputLimit((start + static_cast<float>(k) * step) * in[k]);
    } else {
        std::fill(block_.begin(), block_.end(), 0.0f);
    }
}

}  // namespace tolvane
