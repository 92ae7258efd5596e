// The block count runs for days: it passes 2^31 after eight days at 192 kHz and wraps to 0 after twice
// that. Neither point may be heard.
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "support/PluginFixture.h"

namespace tolvane {
namespace {

using testing::PluginFixture;

// Renders a phrase (a chord, a slide with portamento, the effect mixed in, an LFO on the cutoff) in
// 64-sample host buffers, restarted at `firstTick`.
std::vector<float> phrase(std::uint32_t firstTick, std::uint32_t& lastTick) {
    PluginFixture f;
    f.plugin->restartTicksAt(firstTick);
    f.effect->setParameter(f.effect, 36, 6.5f / 16.0f);  // Filter Mod A: LFO1 -> Frequency
    f.effect->setParameter(f.effect, 37, 0.8f);
    f.effect->setParameter(f.effect, 67, 0.5f);  // Effect Mix Level
    f.effect->setParameter(f.effect, 81, 0.6f);  // Portamento
    std::vector<float> out;
    for (int block = 0; block < 80; ++block) {
        std::vector<std::array<unsigned char, 3>> midi;
        if (block == 0) midi = {{0x90, 48, 100}, {0x90, 55, 90}};
        if (block == 19) midi = {{0x90, 67, 110}};  // just before the wrap
        if (block == 23) midi = {{0x80, 48, 0}};    // just after it
        f.render(64, midi);
        out.insert(out.end(), f.left.begin(), f.left.end());
        out.insert(out.end(), f.right.begin(), f.right.end());
    }
    lastTick = f.plugin->tick();
    return out;
}

TEST(TickWrap, RenderingAcrossTheSignedAndTheUnsignedWrapSoundsTheSame) {
    std::uint32_t last = 0;
    const std::vector<float> reference = phrase(0, last);
    ASSERT_EQ(last, 80u);
    for (std::uint32_t start : {0x7FFFFFFFu - 20u, 0xFFFFFFFFu - 20u}) {
        const std::vector<float> wrapped = phrase(start, last);
        EXPECT_EQ(last, start + 80u) << "the count wraps modulo 2^32";
        ASSERT_EQ(wrapped.size(), reference.size());
        for (std::size_t i = 0; i < reference.size(); ++i)
            ASSERT_EQ(wrapped[i], reference[i]) << "start " << start << ", sample " << i;
    }
}

}  // namespace
}  // namespace tolvane
