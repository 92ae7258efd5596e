// After start-up, rendering allocates nothing: not for notes, not for controller maps and learning,
// not for program changes, voice-count changes or parameters handed over from other threads.
#include <gtest/gtest.h>

#include "support/PluginFixture.h"

namespace tolvane {
namespace {

using testing::PluginFixture;

TEST(RenderAllocation, ProcessingAllocatesNothingAfterStartUp) {
    PluginFixture f;
    f.host.record = false;
    // Map 1: controller 20 sets the number of voices; map 2 is armed for learning.
    f.effect->setParameter(f.effect, 144, 20.5f / 129.0f);
    f.effect->setParameter(f.effect, 160, 77.5f / 100.0f);
    f.effect->setParameter(f.effect, 145, 1.0f);
    f.render(256);  // warm-up: the first block applies the changes above

    f.allocationsWhileProcessing = 0;
    std::vector<std::array<unsigned char, 3>> midi;
    for (int round = 0; round < 4; ++round) {
        midi.clear();
        midi.push_back({0xB0, 20, 127});  // 64 voices
        for (int k = 0; k < 70; ++k) midi.push_back({0x90, static_cast<unsigned char>(30 + k), 100});
        midi.push_back({0xB0, 64, 127});
        midi.push_back({0xE0, 0, 0x50});
        midi.push_back({0xB0, 74, 64});  // learnt by map 2 in the first round
        midi.push_back({0xA0, 40, 90});
        f.render(4096, midi);
        midi.clear();
        for (int k = 0; k < 70; ++k) midi.push_back({0x80, static_cast<unsigned char>(30 + k), 0});
        midi.push_back({0xB0, 64, 0});
        midi.push_back({0xB0, 20, 10});  // fewer voices
        midi.push_back({0xC0, static_cast<unsigned char>(round), 0});
        midi.push_back({0xB0, 0, static_cast<unsigned char>(round)});
        midi.push_back({0xB0, 123, 0});
        f.render(1000, midi);
        f.effect->setParameter(f.effect, param::NumberOfVoices, round % 2 ? 1.0f : 0.0f);
        f.effect->setParameter(f.effect, param::Unison, round % 2 ? 1.0f : 0.0f);
        f.effect->setParameter(f.effect, param::FilterCutoff, 0.25f * round);
        f.dispatch(vst2::effSetProgram, 0, 64 + round);
        f.render(333);
    }
    EXPECT_EQ(f.allocationsWhileProcessing, 0u);
}

}  // namespace
}  // namespace tolvane
