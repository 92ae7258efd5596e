#include "engine/sound/Mixer.h"

#include "engine/sound/WaveGenerator.h"

namespace tolvane {

void Mixer::updateBlock(int tick) {
    if (tick == lastTick_) return;
    if (!follows(tick, lastTick_)) forget();
    lastTick_ = tick;
    updateInputs(tick);
    compute();
}

void Mixer::updateInputs(int tick) {
    activeMask_ = 0;
    for (int i = 0; i < kChannels; ++i) {
        DspModule* level = input(kLevelInput + i);
        level->update(tick);
        levels_[static_cast<std::size_t>(i)] = controlValue(level);
        if (levels_[static_cast<std::size_t>(i)] > kSilence) activeMask_ |= 1u << i;
    }
    renderMask_ = activeMask_ | previousMask_;
    for (int i = 0; i < kChannels; ++i)
        if (renderMask_ & (1u << i)) input(i)->update(tick);
}

// Each gain moves linearly from its previous value to the new level across the block. The sample
// loops run over the active channels only, with one pass for the common cases of one and two.
void Mixer::compute() {
    float* __restrict out = block();
    const int count = blockSize_;
    const float scale = 1.0f / static_cast<float>(count);
    const float* in[kChannels];
    float start[kChannels];
    float step[kChannels];
    int active = 0;
    for (int i = 0; i < kChannels; ++i) {
        auto c = static_cast<std::size_t>(i);
        if (renderMask_ & (1u << i)) {
            in[active] = inputBlock(i);
            start[active] = gains_[c];
            step[active] = (levels_[c] - gains_[c]) * scale;
            ++active;
        }
        gains_[c] = levels_[c];
    }
    previousMask_ = activeMask_;

    // The gain of sample n is start + (n + 1) step. Loops run in groups of 16 samples, which the compiler
    // turns into vector operations.
    if (active == 0) {
        forEachSample(count, [&](int n) { out[n] = 0.0f; });
    } else if (active == 1) {
        const float* __restrict a = in[0];
        const float sa = start[0], da = step[0];
        forEachSample(count, [&](int n) { out[n] = (sa + da * static_cast<float>(n + 1)) * a[n]; });
    } else if (active == 2) {
        const float* __restrict a = in[0];
        const float* __restrict b = in[1];
        const float sa = start[0], da = step[0], sb = start[1], db = step[1];
        forEachSample(count, [&](int n) {
            const float k = static_cast<float>(n + 1);
            out[n] = (sa + da * k) * a[n] + (sb + db * k) * b[n];
        });
    } else {
        forEachSample(count, [&](int n) { out[n] = 0.0f; });
        for (int c = 0; c < active; ++c) {
            const float* __restrict a = in[c];
            const float sa = start[c], da = step[c];
            forEachSample(count, [&](int n) { out[n] += (sa + da * static_cast<float>(n + 1)) * a[n]; });
        }
    }
}

}  // namespace tolvane
