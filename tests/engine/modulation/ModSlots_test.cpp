#include "engine/modulation/ModSlots.h"

#include <cmath>

#include <gtest/gtest.h>

#include "engine/modulation/ValueContainers.h"
#include "engine/voice/VoiceAllocator.h"

namespace tolvane {
namespace {

constexpr int kFilterFrequency = ModSlots::kFilterFrequency;

// Slots on a two-voice allocator; ENV1, ENV2, LFO1, LFO2 are fixed values.
struct Rig {
    VoiceAllocator allocator{2, -1};
    ModSlots slots{allocator};
    Poly<ValueSource> env1{allocator, 0, kRuleFromInputs, 0.8f};
    Poly<ValueSource> env2{allocator, 0, kRuleFromInputs, 0.4f};
    Poly<ValueSource> lfo1{allocator, 0, kRuleFromInputs, -0.5f};
    Poly<ValueSource> lfo2{allocator, 0, kRuleFromInputs, 0.25f};
    int tick = 0;

    Rig() { slots.setModulators(&env1, &env2, &lfo1, &lfo2); }
    void send(int status, int d1, int d2) {
        allocator.beginEvents(0, 0);
        allocator.pushEvent(0, static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(d1),
                            static_cast<std::uint8_t>(d2));
        allocator.processEvents(64);
    }
    // Updates destination d for the next tick (or after a gap, so that smoothed values jump).
    float sum(int d, int voice = 0, int advance = 1) {
        tick += advance;
        slots.destination(d).updateInstances(tick);
        return slots.destination(d).at(voice).value();
    }
    void route(int slot, int source, float depth, int destination) {
        slots.setSource(slot, source);
        slots.setDepth(slot, depth);
        slots.setDestination(slot, destination);
    }
};

TEST(ModSlots, SensitivityScalesUnipolarAndBipolarSourcesDifferently) {
    Rig rig;
    rig.send(0x90, 60, 100);  // voice 0, velocity 100
    rig.route(0, ModSlots::kConstant, 0.5f, kFilterFrequency);
    EXPECT_FLOAT_EQ(rig.sum(kFilterFrequency), 0.5f) << "no sensitivity source: s d";

    const double q = 100.0 / 127.0;
    rig.slots.setSensSource(0, ModSlots::kVelocity);
    struct Case { float k; double expected; };
    for (Case c : {Case{1.0f, 0.5 * q}, Case{0.0f, 0.25}, Case{0.5f, 0.5 * ((q - 0.5) * 0.5 + 0.5)}}) {
        rig.slots.setSens(0, c.k);
        EXPECT_NEAR(rig.sum(kFilterFrequency, 0, 2), c.expected, 1e-6) << "unipolar, k = " << c.k;
    }

    rig.slots.setSensSource(0, ModSlots::kPitchBend);
    rig.slots.setSens(0, 1.0f);
    rig.send(0xE0, 0x00, 0x00);
    EXPECT_NEAR(rig.sum(kFilterFrequency, 0, 2), 0.0, 1e-6) << "bend fully down";
    rig.send(0xE0, 0x7F, 0x7F);
    EXPECT_NEAR(rig.sum(kFilterFrequency, 0, 2), 0.5 * (1.0 + 8191.0 / 8192.0), 1e-6) << "bend fully up: almost 2 s d";

    rig.slots.setSensSource(0, ModSlots::kLfo1);
    EXPECT_NEAR(rig.sum(kFilterFrequency, 0, 2), 0.5 * (1.0 - 0.5), 1e-6);
    rig.slots.setSensSource(0, ModSlots::kEnv2);  // unipolar
    EXPECT_NEAR(rig.sum(kFilterFrequency, 0, 2), 0.5 * 0.4, 1e-6);
}

TEST(ModSlots, SlotsOnOneDestinationAddAndCanCancel) {
    Rig rig;
    rig.route(0, ModSlots::kLfo1, 0.5f, kFilterFrequency);
    rig.route(1, ModSlots::kLfo1, -0.5f, kFilterFrequency);
    EXPECT_EQ(rig.sum(kFilterFrequency), 0.0f);
    rig.route(2, ModSlots::kEnv1, 0.25f, kFilterFrequency);
    EXPECT_NEAR(rig.sum(kFilterFrequency), 0.8 * 0.25, 1e-7);
    EXPECT_EQ(rig.sum(ModSlots::kAmplifier), 0.0f) << "a destination nobody targets is exactly 0";
}

TEST(ModSlots, DestinationChangesMoveTheModulationAndSourceNoneDisconnects) {
    Rig rig;
    rig.route(0, ModSlots::kEnv2, 1.0f, ModSlots::kOsc1Pitch);
    EXPECT_FLOAT_EQ(rig.sum(ModSlots::kOsc1Pitch), 0.4f);
    rig.slots.setDestination(0, ModSlots::kMixerNoise);
    EXPECT_EQ(rig.sum(ModSlots::kOsc1Pitch), 0.0f);
    EXPECT_FLOAT_EQ(rig.sum(ModSlots::kMixerNoise), 0.4f);
    rig.slots.setSource(0, ModSlots::kNone);
    EXPECT_EQ(rig.slots.destination(ModSlots::kMixerNoise).mask(), 0u) << "no source, no connection";
    rig.slots.setSource(0, 500);  // outside the list: not assigned
    EXPECT_EQ(rig.slots.source(0), ModSlots::kNone);
    EXPECT_EQ(rig.sum(ModSlots::kMixerNoise), 0.0f);
    rig.slots.setSource(0, ModSlots::kLfo2);
    EXPECT_FLOAT_EQ(rig.sum(ModSlots::kMixerNoise), 0.25f);
    rig.slots.setDestination(0, 0);
    EXPECT_EQ(rig.slots.destination(ModSlots::kMixerNoise).mask(), 0u) << "destination 0 feeds nothing";
}

TEST(ModSlots, ControllerSourcesSkipSustainAndTheAllOffMessagesAndGlide) {
    EXPECT_EQ(ModSlots::controllerOf(63), 63);
    EXPECT_EQ(ModSlots::controllerOf(64), 65);
    EXPECT_EQ(ModSlots::controllerOf(120), 121);
    EXPECT_EQ(ModSlots::controllerOf(123), 124);

    Rig rig;
    rig.route(0, 64, 1.0f, ModSlots::kSaturation);
    rig.send(0xB0, 64, 127);  // sustain pedal down
    EXPECT_EQ(rig.sum(ModSlots::kSaturation), 0.0f) << "sustain never modulates";
    rig.send(0xB0, 65, 127);
    EXPECT_FLOAT_EQ(rig.sum(ModSlots::kSaturation, 0, 2), 1.0f) << "index 64 follows controller 65";

    // A second slot on another controller: a change glides, with the 0.1 s smoothing of controllers.
    rig.route(1, 7, 1.0f, ModSlots::kAmplifier);
    rig.send(0xB0, 7, 0);
    EXPECT_EQ(rig.sum(ModSlots::kAmplifier, 0, 2), 0.0f);
    rig.send(0xB0, 7, 127);
    EXPECT_NEAR(rig.sum(ModSlots::kAmplifier), 1.0 - std::pow(10.0, -3.0 / (44100.0 / 64.0 * 0.1 + 1.0)), 1e-6);
    EXPECT_FLOAT_EQ(rig.sum(ModSlots::kSaturation, 0, 2), 1.0f) << "the first slot still reads controller 65";
}

TEST(ModSlots, VoiceSourcesArePerVoice) {
    Rig rig;
    rig.send(0x90, 60, 127);
    rig.send(0x90, 72, 32);
    rig.send(0xA0, 72, 100);  // poly aftertouch on the second key
    rig.route(0, ModSlots::kKey, 1.0f, ModSlots::kOsc2Pitch);
    rig.route(1, ModSlots::kVelocity, 1.0f, ModSlots::kOsc1PulseWidth);
    rig.route(2, ModSlots::kPolyAftertouch, 1.0f, ModSlots::kOsc2Fm);
    EXPECT_EQ(rig.slots.destination(ModSlots::kOsc2Pitch).voices(), 2);
    EXPECT_NEAR(rig.sum(ModSlots::kOsc2Pitch, 0), 60.0 / 127.0, 1e-6);
    EXPECT_NEAR(rig.slots.destination(ModSlots::kOsc2Pitch).at(1).value(), 72.0 / 127.0, 1e-6);
    EXPECT_NEAR(rig.sum(ModSlots::kOsc1PulseWidth, 0), 1.0, 1e-6);
    EXPECT_NEAR(rig.slots.destination(ModSlots::kOsc1PulseWidth).at(1).value(), 32.0 / 127.0, 1e-6);
    EXPECT_EQ(rig.sum(ModSlots::kOsc2Fm, 0), 0.0f);
    EXPECT_NEAR(rig.slots.destination(ModSlots::kOsc2Fm).at(1).value(), 100.0 / 127.0, 1e-6);

    rig.route(3, ModSlots::kChannelAftertouch, 1.0f, ModSlots::kMixerRing);
    EXPECT_EQ(rig.slots.destination(ModSlots::kMixerRing).voices(), 1) << "channel aftertouch is shared";
}

}  // namespace
}  // namespace tolvane
