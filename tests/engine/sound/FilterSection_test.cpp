// The section's switch: type table, bypass, the curve's knee and the consumers that follow the selection.
#include <set>

#include <gtest/gtest.h>

#include "engine/sound/AmpSection.h"
#include "tests/engine/sound/FilterTestRig.h"

namespace tolvane {
namespace {

using test::FilterRig;

float kneeOf(PolyModule& m) { return static_cast<FilterModule*>(m.instance(0))->knee(); }

TEST(FilterSection, TypeIndicesSelectModulesConsumersFollowAndBypassPasses) {
    FilterRig rig;
    Poly<ValueSource> amplitude(rig.graph, 0, kRuleFromInputs, 1.0f);
    AmpSection amp(rig.graph, &amplitude, rig.section.output());
    ASSERT_TRUE(rig.section.connectOutputTo(amp.output(), AmpSection::kAudioInput));

    std::set<PolyModule*> distinct;
    for (int t = 0; t < FilterSection::kTypeCount; ++t) {
        rig.section.setType(t);
        distinct.insert(rig.section.output());
        EXPECT_EQ(amp.output()->inputSource(AmpSection::kAudioInput), rig.section.output()) << t;
        EXPECT_EQ(amp.voiceSum().source(VoiceSum::kAudioInput), rig.section.output()) << t;
    }
    EXPECT_EQ(distinct.size(), 12u);
    for (int t = 8; t < 16; t += 2) {
        rig.section.setType(t);
        PolyModule* first = rig.section.output();
        rig.section.setType(t + 1);
        EXPECT_EQ(rig.section.output(), first) << t;
    }
    rig.section.setType(3);
    EXPECT_EQ(rig.section.output(), &rig.section.module(FilterKind::LowPass24));
    rig.section.setType(12);
    EXPECT_EQ(rig.section.output(), &rig.section.module(FilterKind::BandReject12));

    rig.section.setOn(false);
    EXPECT_EQ(rig.section.output(), &rig.audio);
    EXPECT_EQ(amp.output()->inputSource(AmpSection::kAudioInput), &rig.audio);
    rig.section.setType(5);
    EXPECT_EQ(rig.section.output(), &rig.audio) << "a type chosen while bypassed waits for the switch";
    rig.section.setOn(true);
    EXPECT_EQ(amp.output()->inputSource(AmpSection::kAudioInput), &rig.section.module(FilterKind::HighPass12));

    // Only the selected module runs; bypassed, the samples pass unchanged.
    rig.signal().play(testing::sine(0.01, 0.8, 4 * 64));
    rig.section.setType(3);
    for (int b = 0; b < 3; ++b) amp.voiceSum().update(++rig.tick);
    EXPECT_EQ(rig.filter(FilterKind::LowPass24).lastTick(), rig.tick);
    EXPECT_EQ(rig.filter(FilterKind::LowPass12).lastTick(), -1);
    rig.section.setOn(false);
    amp.voiceSum().update(++rig.tick);
    for (int n = 0; n < 64; ++n) EXPECT_EQ(amp.voiceSum().block()[n], rig.signal().block()[n]) << n;
    EXPECT_EQ(rig.filter(FilterKind::LowPass24).lastTick(), rig.tick - 1);
}

TEST(FilterSection, CurveKneeReachesTheCurrentTypeOnly) {
    FilterRig rig;
    rig.section.setType(1);
    for (int k = 0; k < FilterSection::kKindCount; ++k)
        EXPECT_FLOAT_EQ(kneeOf(rig.section.module(static_cast<FilterKind>(k))), 0.5f);

    rig.section.setCurve(2);
    EXPECT_FLOAT_EQ(kneeOf(rig.section.module(FilterKind::LowPass12)), 0.1f);
    EXPECT_FLOAT_EQ(kneeOf(rig.section.module(FilterKind::HighPass24)), 0.5f);

    rig.section.setType(7);
    EXPECT_FLOAT_EQ(kneeOf(rig.section.module(FilterKind::HighPass24)), 0.1f);
    rig.section.setCurve(0);
    EXPECT_FLOAT_EQ(kneeOf(rig.section.module(FilterKind::HighPass24)), 0.9f);
    EXPECT_FLOAT_EQ(kneeOf(rig.section.module(FilterKind::LowPass12)), 0.1f) << "no longer selected, keeps its knee";
    rig.section.setCurve(7);
    EXPECT_FLOAT_EQ(kneeOf(rig.section.module(FilterKind::HighPass24)), 0.0f);

    // Every instance of the module, also those of voices not in use yet.
    PolyModule& hp24 = rig.section.module(FilterKind::HighPass24);
    for (int i = 0; i < hp24.instancesAllocated(); ++i)
        EXPECT_FLOAT_EQ(static_cast<FilterModule*>(hp24.instanceAt(i))->knee(), 0.0f);
}

}  // namespace
}  // namespace tolvane
