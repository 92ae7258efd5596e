// After start-up, rendering allocates nothing: not for notes, not for controller maps and learning,
// not for program changes, voice-count changes or parameters handed over from other threads, and not
// with the whole engine at its largest.
#include <gtest/gtest.h>

#include "engine/voice/SynthEngine.h"
#include "support/PluginFixture.h"

namespace tolvane {
namespace {

using testing::PluginFixture;
using Midi = std::vector<std::array<unsigned char, 3>>;

TEST(RenderAllocation, ProcessingAllocatesNothingAfterStartUp) {
    PluginFixture f;
    f.host.record = false;
    auto set = [&](int index, float value) { f.effect->setParameter(f.effect, index, value); };
    // Map 1: controller 20 sets the number of voices; map 2 is armed for learning.
    set(144, 20.5f / 129.0f);
    set(160, 77.5f / 100.0f);
    set(145, 1.0f);
    f.render(256);  // warm-up: the first block applies the changes above

    f.allocationsWhileProcessing = 0;
    Midi midi;
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
        set(param::NumberOfVoices, round % 2 ? 1.0f : 0.0f);
        set(param::Unison, round % 2 ? 1.0f : 0.0f);
        set(param::FilterCutoff, 0.25f * round);
        f.dispatch(vst2::effSetProgram, 0, 64 + round);
        f.render(333);
    }
    EXPECT_EQ(f.allocationsWhileProcessing, 0u) << "notes, maps, learning and program changes";

    // The whole engine at its largest: 64 voices sounding, every route and slot in use, the effect with
    // feedback, sync, FM, ring and noise, while programs and connections change between blocks.
    auto everything = [&](int variant) {
        set(param::NumberOfVoices, 1.0f);
        set(param::Osc1Sync, 1.0f);
        set(param::Osc1Waveform, (8.5f + variant % 3) / 12.0f);
        set(param::Osc2Waveform, (11.5f - variant % 4) / 12.0f);
        set(param::Osc2FmDepth, 0.4f);
        for (int i = 0; i < 4; ++i) set(param::MixerOsc1Level + i, 0.5f);
        for (int route : {param::Osc1ModAConnection, param::Osc1ModBConnection, param::FilterModAConnection,
                          param::FilterModBConnection})
            set(route, (15.5f - variant) / 16.0f);
        for (int route : {param::Osc2ModAConnection, param::Osc2ModBConnection}) set(route, (31.5f - variant) / 32.0f);
        for (int slot = 0; slot < 8; ++slot) {
            set(param::ModSource1 + slot, (128.5f + (slot + variant) % 10) / 138.0f);
            set(param::ModSensSource1 + slot, (129.5f + slot % 8) / 137.0f);
            set(param::ModDestination1 + slot, (1.5f + 3 * slot + variant) / 26.0f);
            set(param::ModDepth1 + slot, 0.8f);
            set(param::ModSens1 + slot, 0.5f);
        }
        set(param::Lfo1Mode, (variant % 8 + 0.5f) / 8.0f);
        set(param::FilterType, (variant % 16 + 0.5f) / 16.0f);
        set(param::EffectOn, 1.0f);
        set(param::EffectMix, 0.5f);
        set(param::EffectFeedback, 0.9f);
        set(param::EffectFeedbackConnection, variant % 2 ? 0.75f : 0.25f);
    };
    Midi notes;
    for (int k = 0; k < 64; ++k) notes.push_back({0x90, static_cast<unsigned char>(32 + k), 100});
    for (int variant = 0; variant < 6; ++variant) {
        everything(variant);
        f.render(2048, variant == 0 ? notes : Midi{{0xB0, 1, 90}});
        EXPECT_EQ(f.plugin->engine().amp().voiceSum().voicesRendered(), 64) << variant;
    }
    EXPECT_EQ(f.allocationsWhileProcessing, 0u) << "the whole engine at its largest";
}

}  // namespace
}  // namespace tolvane
