#include "engine/sound/Mixer.h"

#include "engine/sound/WaveGenerator.h"

namespace tolvane {

void Mixer::updateBlock(int tick) {
    if (tick == lastTick_) return;
    if (tick != lastTick_ + 1) forget();
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

void Mixer::compute() {
    float* out = block();
    const int count = blockSize_;
    const float scale = 1.0f / static_cast<float>(count);
    forEachSample(count, [&](int n) { out[n] = 0.0f; });
    for (int i = 0; i < kChannels; ++i) {
        auto c = static_cast<std::size_t>(i);
        if (renderMask_ & (1u << i)) {
            const float* in = inputBlock(i);
            const float g0 = gains_[c];
            const float step = (levels_[c] - g0) * scale;
            forEachSample(count, [&](int n) { out[n] += (g0 + step * static_cast<float>(n + 1)) * in[n]; });
        }
        gains_[c] = levels_[c];
    }
    previousMask_ = activeMask_;
}

}  // namespace tolvane
