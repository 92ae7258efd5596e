#include "engine/effect/SignalStages.h"

#include <algorithm>
#include <cmath>

#include "engine/effect/EffectConstants.h"
#include "engine/framework/BlockChecks.h"

namespace tolvane {

using effect::kGroup;

void InputGuard::compute() {
    float* out = block_.data();
    // A block with a non-finite or runaway value counts as silence: nothing downstream (delay lines,
    // filters, limiter) ever holds such a value.
    if (!input(0) || (input(0)->steadyBlock() && input(0)->block()[0] == 0.0f) ||
        !blockInRange(inputBlock(0), blockSize_)) {
        fillBlock(effect::kInputOffset);
        steady_ = true;
        return;
    }
    steady_ = false;
    const float* in = inputBlock(0);
    for (int k0 = 0; k0 < blockSize_; k0 += kGroup)
        for (int k = k0; k < k0 + kGroup; ++k) out[k] = in[k] + effect::kInputOffset;
}

void FeedMix::updateBlock(int tick) {
    if (tick == lastTick_) return;
    lastTick_ = tick;
    input(kDry)->update(tick);
    input(kGain)->update(tick);

    const float gain = inputValue(kGain);
    const float* dry = inputBlock(kDry);
    float* out = block_.data();
    const bool silent = std::fabs(gain) <= effect::kSilence && std::fabs(previousGain_) <= effect::kSilence;
    if (silent) {
        std::copy(dry, dry + blockSize_, out);
    } else {
        input(kFeedback)->update(tick);
        const float* fb = inputBlock(kFeedback);
        const float start = previousGain_;
        const float step = (gain - previousGain_) / static_cast<float>(blockSize_);
        for (int k0 = 0; k0 < blockSize_; k0 += kGroup)
            for (int k = k0; k < k0 + kGroup; ++k) out[k] = dry[k] + (start + static_cast<float>(k) * step) * fb[k];
    }
    previousGain_ = gain;
}

void Overdrive::compute() {
    const float g = std::max(effect::kMinDrive, inputValue(kDrive));
    const float makeUp = g < 1.0f ? 1.0f / g : 1.0f;
    const float* in = inputBlock(kSignal);
    float* out = block_.data();
    for (int k0 = 0; k0 < blockSize_; k0 += kGroup)
        for (int k = k0; k < k0 + kGroup; ++k) {
            const float gx = g * in[k];
            out[k] = makeUp * gx / (1.0f + std::fabs(gx));
        }
}

}  // namespace tolvane
