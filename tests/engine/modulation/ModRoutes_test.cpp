#include "engine/modulation/ModRoutes.h"

#include <cmath>

#include <gtest/gtest.h>

#include "engine/modulation/RouteTargets.h"
#include "engine/modulation/ValueContainers.h"
#include "engine/voice/NoteSources.h"
#include "engine/voice/VoiceAllocator.h"

namespace tolvane {
namespace {

constexpr double kSampleRate = 44100.0;

double hzOfNote(double n) { return 440.0 * std::pow(2.0, (n - 69.0) / 12.0); }

// OSC2's three targets on a two-voice allocator; the modulators are fixed values.
struct Rig {
    VoiceAllocator allocator{2, -1};
    NoteSourceContainer<VelocitySource> velocity{allocator};
    Poly<ValueSource> zero{allocator, 0, kRuleFromInputs, 0.0f};
    Poly<ValueSource> env1{allocator, 0, kRuleFromInputs, 0.5f};
    Poly<ValueSource> env2{allocator, 0, kRuleFromInputs, 0.25f};
    Poly<ValueSource> lfo1{allocator, 0, kRuleFromInputs, -0.75f};
    Poly<ValueSource> lfo2{allocator, 0, kRuleFromInputs, 0.125f};
    Poly<ValueSource> slotSum{allocator, 0, kRuleFromInputs, 0.0f};
    Poly<ValueSource> glide{allocator, 0, kRuleFromInputs, 64.0f};
    Poly<ValueSource> pitch{allocator, 0, kRuleFromInputs, 0.0f};
    Poly<ValueSource> width{allocator, 0, kRuleFromInputs, 0.5f};
    Poly<ValueSource> fm{allocator, 0, kRuleFromInputs, 0.0f};
    Poly<OscFrequency> frequency{allocator, OscFrequency::kNumInputs, kRuleFromInputs};
    Poly<PulseWidthTarget> pulseWidth{allocator, PulseWidthTarget::kNumInputs, kRuleFromInputs};
    Poly<FmDepthTarget> fmDepth{allocator, FmDepthTarget::kNumInputs, kRuleFromInputs};
    ModRoutes routes{allocator, velocity, zero, {&env1, &env2, &lfo1, &lfo2}};
    int tick = 0;

    Rig() {
        frequency.connectInput(&slotSum, RouteTarget::kSlotSum);
        frequency.connectInput(&glide, OscFrequency::kGlide);
        frequency.connectInput(&pitch, OscFrequency::kPitch);
        pulseWidth.connectInput(&slotSum, RouteTarget::kSlotSum);
        pulseWidth.connectInput(&width, PulseWidthTarget::kWidth);
        fmDepth.connectInput(&slotSum, RouteTarget::kSlotSum);
        fmDepth.connectInput(&fm, FmDepthTarget::kDepth);
        routes.addTarget(frequency, 4);
        routes.addTarget(pulseWidth, 8);
        routes.addTarget(fmDepth, 16);
    }
    void notes(int velocity0, int velocity1) {
        allocator.beginEvents(0, 0);
        allocator.pushEvent(0, 0x90, 60, static_cast<std::uint8_t>(velocity0));
        allocator.pushEvent(0, 0x90, 62, static_cast<std::uint8_t>(velocity1));
        allocator.processEvents(64);
    }
    void block(int advance = 1) {
        tick += advance;
        // The amounts are pulled by targets only for routed sources; read them here in any case.
        routes.amount(0).updateInstances(tick);
        routes.amount(1).updateInstances(tick);
        frequency.updateInstances(tick);
        pulseWidth.updateInstances(tick);
        fmDepth.updateInstances(tick);
    }
    double note(int voice = 0) { return frequency.at(voice).note(); }
};

TEST(ModRoutes, AmountIsDepthScaledAroundTheVelocity) {
    Rig rig;
    rig.notes(64, 127);
    rig.routes.setDepth(0, 0.5f);
    rig.routes.setVelocitySens(0, 1.0f);
    rig.block();
    EXPECT_NEAR(rig.routes.amount(0).at(0).value(), 0.5 * (1.0 + (128.0 / 127.0 - 1.0)), 1e-6) << "velocity 64: almost d";
    EXPECT_NEAR(rig.routes.amount(0).at(1).value(), 1.0, 1e-6) << "velocity 127: 2d";

    rig.routes.setVelocitySens(0, 0.0f);
    rig.block(2);
    EXPECT_FLOAT_EQ(rig.routes.amount(0).at(0).value(), 0.5f);
    EXPECT_FLOAT_EQ(rig.routes.amount(0).at(1).value(), 0.5f);

    // Depth changes are smoothed over 0.1 s.
    rig.routes.setDepth(0, -0.5f);
    rig.block();
    double c = std::pow(10.0, -3.0 / (kSampleRate / 64.0 * 0.1 + 1.0));
    EXPECT_NEAR(rig.routes.amount(0).at(0).value(), -0.5 * (1.0 - c) + 0.5 * c, 1e-6);
    EXPECT_EQ(rig.routes.amount(1).at(0).value(), 0.0f) << "route B untouched";
}

TEST(ModRoutes, EveryConnectionValueRoutesItsModulatorToItsTargets) {
    const float modulator[4] = {0.5f, 0.25f, -0.75f, 0.125f};
    for (int value = 0; value < 32; ++value) {
        SCOPED_TRACE(value);
        Rig rig;
        rig.routes.setDepth(0, 1.0f);
        rig.routes.setConnection(0, value);
        rig.block();
        double a = modulator[value & 3];
        double freqMod = (value & 4) ? a : 0.0;
        double pwMod = (value & 8) ? a : 0.0;
        double fmMod = (value & 16) ? a : 0.0;
        EXPECT_NEAR(rig.note(), 64.0 + 24.0 * freqMod, 1e-4);
        EXPECT_NEAR(rig.pulseWidth.at(0).value(), std::min(1.0, std::max(0.0, 0.5 + 0.5 * pwMod)), 1e-6);
        EXPECT_NEAR(rig.fmDepth.at(0).value(), std::max(0.0, 8.0 * fmMod), 1e-6);
    }
}

TEST(ModRoutes, RoutesAandBAndTheSlotSumAdd) {
    Rig rig;
    rig.routes.setConnection(0, 4 + 0);   // ENV1 -> Frequency
    rig.routes.setConnection(1, 4 + 2);   // LFO1 -> Frequency
    rig.routes.setDepth(0, 0.5f);
    rig.routes.setDepth(1, 0.25f);
    setValue(rig.slotSum, 0.1f);
    rig.block();
    EXPECT_NEAR(rig.note(), 64.0 + 24.0 * (0.5 * 0.5 + -0.75 * 0.25 + 0.1), 1e-4);
}

TEST(RouteTargets, OscillatorFrequencyComposesKeyFollowPitchAndModulation) {
    Rig rig;
    setValue(rig.glide, 70.0f);
    setValue(rig.pitch, 0.3f);
    rig.frequency.forEach([](OscFrequency& f) {
        f.setKeyFollow(0.5f);
        f.setOffset(7.25f);
    });
    setValue(rig.slotSum, 0.05f);
    rig.block();
    double n = 64.0 + (70.0 - 64.0) * 0.5 + 7.25 + 0.3 + 24.0 * 0.05;
    double expected = hzOfNote(n) / kSampleRate;
    EXPECT_NEAR(rig.frequency.at(0).value(), expected, expected * 6e-4) << "within a cent";

    rig.frequency.forEach([](OscFrequency& f) { f.setKeyFollow(0.0f); });
    setValue(rig.glide, 30.0f);
    setValue(rig.slotSum, 0.0f);
    rig.block();
    EXPECT_NEAR(rig.note(), 64.0 + 7.25 + 0.3, 1e-4) << "key follow 0: every key plays the same pitch";

    setValue(rig.slotSum, 10.0f);
    rig.block();
    EXPECT_FLOAT_EQ(rig.frequency.at(0).value(), 0.499f) << "clamped at 159.99 and then at 0.499";
    setValue(rig.slotSum, -10.0f);
    rig.block();
    EXPECT_NEAR(rig.frequency.at(0).value(), hzOfNote(0.0) / kSampleRate, 1e-7);
}

TEST(RouteTargets, PulseWidthAndFmDepthAreClamped) {
    Rig rig;
    struct Case { float width, fm, sum; };
    for (Case c : {Case{0.9f, 0.0f, 0.6f}, Case{0.1f, 0.2f, -0.5f}}) {
        setValue(rig.width, c.width);
        setValue(rig.fm, c.fm);
        setValue(rig.slotSum, c.sum);
        rig.block();
        EXPECT_NEAR(rig.pulseWidth.at(0).value(), std::min(1.0f, std::max(0.0f, c.width + 0.5f * c.sum)), 1e-6);
        EXPECT_NEAR(rig.fmDepth.at(0).value(), std::max(0.0f, 8.0f * (c.fm + c.sum)), 1e-6);
    }
}

TEST(RouteTargets, CutoffFollowsTheKeyAroundNote64AndIsNeverAboveTheLimit) {
    VoiceAllocator allocator(1, -1);
    Poly<ValueSource> zero{allocator, 0, kRuleFromInputs, 0.0f};
    Poly<ValueSource> sum{allocator, 0, kRuleFromInputs, 0.0f};
    Poly<ValueSource> base{allocator, 0, kRuleFromInputs, 100.0f};
    Poly<ValueSource> key{allocator, 0, kRuleFromInputs, 76.0f};
    Poly<CutoffTarget> cutoff{allocator, CutoffTarget::kNumInputs, kRuleFromInputs};
    for (int k = 0; k < 4; ++k) cutoff.connectInput(&zero, k);
    cutoff.connectInput(&sum, RouteTarget::kSlotSum);
    cutoff.connectInput(&base, CutoffTarget::kBase);
    cutoff.connectInput(&key, CutoffTarget::kKey);

    struct Case { float keyFollow, modulation; double note; };
    const Case cases[] = {{0.5f, 0.0f, 106.0}, {2.0f, -2.0f, 0.0}};
    int tick = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.note);
        cutoff.forEach([&c](CutoffTarget& t) { t.setKeyFollow(c.keyFollow); });
        setValue(sum, c.modulation);
        cutoff.updateInstances(++tick);
        EXPECT_NEAR(cutoff.at(0).note(), c.note, 1e-4);
        double expected = std::min(0.499, hzOfNote(c.note) / kSampleRate);
        EXPECT_NEAR(cutoff.at(0).value(), expected, expected * 6e-4);
    }
    setValue(sum, 0.5f);  // note 144: 33.5 kHz, above the limit
    cutoff.updateInstances(++tick);
    EXPECT_FLOAT_EQ(cutoff.at(0).value(), 0.499f);
    setValue(sum, 5.0f);
    cutoff.updateInstances(++tick);
    EXPECT_FLOAT_EQ(cutoff.at(0).note(), 159.99f);
}

}  // namespace
}  // namespace tolvane
