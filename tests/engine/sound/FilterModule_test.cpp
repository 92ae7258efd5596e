// The limiter, where each type applies it, and the per-block behaviour of a filter module: ramps of
// coefficients and level, and what a skipped block or a reset clears.
#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "engine/sound/LookupTables.h"
#include "engine/sound/Saturation.h"
#include "tests/engine/sound/FilterTestRig.h"

namespace tolvane {
namespace {

using test::FilterRig;
using test::kPi;

TEST(Saturation, WorkedValuesAndShape) {
    // L = 1, middle knee: s = 0.5, m = 0.5.
    EXPECT_FLOAT_EQ(saturate(0.4f, 1.0f, 0.5f), 0.4f);
    EXPECT_FLOAT_EQ(saturate(0.5f, 1.0f, 0.5f), 0.5f);
    EXPECT_FLOAT_EQ(saturate(1.0f, 1.0f, 0.5f), 0.75f);
    EXPECT_FLOAT_EQ(saturate(-1.0f, 1.0f, 0.5f), -0.75f);
    EXPECT_FLOAT_EQ(saturate(100.0f, 1.0f, 0.5f), 1.0f - 0.25f / 100.0f);
    EXPECT_LT(saturate(100.0f, 1.0f, 0.5f), 1.0f);
    // Knee 0 bends from the start: L v / (v + L).
    EXPECT_FLOAT_EQ(saturate(1.0f, 1.0f, 0.0f), 0.5f);
    EXPECT_FLOAT_EQ(saturate(3.0f, 2.0f, 0.0f), 1.2f);

    // For every knee: odd, continuous with slope 1 at the knee, rising, bounded by the level.
    for (float knee : {0.9f, 0.5f, 0.1f}) {
        const float L = 2.0f, s = knee * L;
        float previous = -1e9f;
        for (float v = -50.0f; v <= 50.0f; v += 0.01f) {
            float y = saturate(v, L, knee);
            EXPECT_NEAR(saturate(-v, L, knee), -y, 1e-6f);
            EXPECT_LT(std::fabs(y), L);
            EXPECT_GE(y, previous);
            previous = y;
        }
        const float h = 1e-3f;
        EXPECT_NEAR((saturate(s + h, L, knee) - s) / h, 1.0f, 1e-2f) << knee;
    }
}

// Renders a type from cleared state on a loud sine, once with the limit far away and once with L = 1.
struct LimitedRun {
    std::vector<float> linear;
    std::vector<float> limited;
};

LimitedRun runLimited(FilterKind kind, float r) {
    FilterRig rig;
    LimitedRun run;
    rig.set(kind <= FilterKind::HighPass24 ? 0.0625f : 0.125f, r, 1000.0f);
    rig.signal().play(testing::sine(300.0 / 8192, 3.0, 40 * 64));
    run.linear = rig.renderSamples(kind, 40);
    rig.tick += 1;  // skip a block: states cleared
    rig.set(kind <= FilterKind::HighPass24 ? 0.0625f : 0.125f, r, 1.0f);
    rig.signal().play(testing::sine(300.0 / 8192, 3.0, 40 * 64));
    run.limited = rig.renderSamples(kind, 40);
    return run;
}

TEST(FilterModule, OtherTypesLimitOnlyTheirOutput) {
    for (FilterKind kind : {FilterKind::HighPass6, FilterKind::HighPass12, FilterKind::HighPass18,
                            FilterKind::HighPass24, FilterKind::BandPass12, FilterKind::BandPass24,
                            FilterKind::BandReject12, FilterKind::BandReject24}) {
        LimitedRun run = runLimited(kind, 0.8f);
        double worst = 0.0, loudest = 0.0;
        for (std::size_t n = 0; n < run.linear.size(); ++n) {
            worst = std::max(worst, static_cast<double>(std::fabs(run.limited[n] - saturate(run.linear[n], 1.0f, 0.5f))));
            loudest = std::max(loudest, static_cast<double>(std::fabs(run.linear[n])));
        }
        EXPECT_LT(worst, 1e-5) << static_cast<int>(kind);
        EXPECT_GT(loudest, 1.0) << "the limiter must be reached";
    }
    for (FilterKind kind : {FilterKind::LowPass6, FilterKind::LowPass12, FilterKind::LowPass18, FilterKind::LowPass24}) {
        LimitedRun run = runLimited(kind, 0.8f);
        double worst = 0.0;
        for (std::size_t n = 0; n < run.linear.size(); ++n) {
            worst = std::max(worst, static_cast<double>(std::fabs(run.limited[n] - saturate(run.linear[n], 1.0f, 0.5f))));
            EXPECT_LT(std::fabs(run.limited[n]), 1.0f);
        }
        EXPECT_GT(worst, 0.02) << static_cast<int>(kind) << ": limiting inside the loop changes the filtering";
    }
}

TEST(FilterModule, LevelRampsAcrossTheBlock) {
    // BR12 passes DC at unity, so its limiter sees v = 10 throughout: the output traces sat(10) while L
    // moves from 1 to 2, sample n of 64 using 1 + n / 64.
    FilterRig rig;
    rig.set(0.125f, 0.0f, 1.0f);
    rig.signal().level = 10.0f;
    rig.renderSamples(FilterKind::BandReject12, 100);
    const float* y = rig.render(FilterKind::BandReject12);
    EXPECT_NEAR(y[63], saturate(10.0f, 1.0f, 0.5f), 1e-5) << "an unchanged level stays put";
    rig.level.at(0).set(2.0f);
    y = rig.render(FilterKind::BandReject12);
    for (int n = 0; n < 64; ++n) EXPECT_NEAR(y[n], saturate(10.0f, 1.0f + (n + 1) / 64.0f, 0.5f), 1e-4) << n;
    EXPECT_FLOAT_EQ(rig.filter(FilterKind::BandReject12).previousLevel(), 2.0f);
}

TEST(FilterModule, CoefficientsRampOnlyWhenCutoffOrResonanceChange) {
    // LP6 from rest answers an impulse x0 in its first sample with b x0: the first block uses the new
    // coefficients outright; a changed cutoff moves b by 1/64 of the way at the first sample; an unchanged
    // cutoff keeps the coefficients bit for bit (a change of level alone designs nothing).
    auto b = [](double c) {
        double t = std::tan(kPi * c / 2.0);
        return t / (t + 1.0);
    };
    const float x0 = 0.001f;
    FilterRig rig;
    rig.set(0.0625f, 0.0f, 4.0f);
    rig.signal().play({x0});
    EXPECT_NEAR(rig.render(FilterKind::LowPass6)[0] / x0, b(0.0625), 1e-5);

    rig.renderSamples(FilterKind::LowPass6, 400);  // back to rest
    rig.cutoff.at(0).set(0.25f);
    rig.signal().play({x0});
    EXPECT_NEAR(rig.render(FilterKind::LowPass6)[0] / x0, b(0.0625) + (b(0.25) - b(0.0625)) / 64.0, 1e-5);
    // The block ends on the new coefficients exactly, not on an accumulated approximation.
    FilterModule& f = rig.filter(FilterKind::LowPass6);
    const float t = tangentTable().tanPi(0.125f);
    EXPECT_EQ(f.coefficients()[0], t / (t + 1.0f));
    EXPECT_EQ(f.coefficients()[1], 1.0f - 2.0f * (t / (t + 1.0f)));

    std::vector<float> designed(f.coefficients(), f.coefficients() + f.coefficientCount());
    rig.renderSamples(FilterKind::LowPass6, 400);
    rig.level.at(0).set(3.0f);
    rig.signal().play({x0});
    EXPECT_NEAR(rig.render(FilterKind::LowPass6)[0] / x0, b(0.25), 1e-5);
    EXPECT_EQ(std::memcmp(designed.data(), f.coefficients(), designed.size() * sizeof(float)), 0);
}

TEST(FilterModule, SkippedBlockOrResetStartsFromRest) {
    // Three LP24 modules share one input stream: one runs on, one misses a block, one is reset. After the
    // gap or reset the module must match a module that never ran, sample for sample.
    auto drive = [](FilterRig& rig, int blocks) {
        rig.signal().play(testing::sine(200.0 / 8192, 0.5, blocks * 64));
        return rig.renderSamples(FilterKind::LowPass24, blocks);
    };
    FilterRig fresh, gapped, reset, continued;
    for (FilterRig* rig : {&fresh, &gapped, &reset, &continued}) rig->set(0.1f, 0.7f, 4.0f);
    drive(gapped, 10);
    drive(reset, 10);
    drive(continued, 10);
    for (FilterRig* rig : {&gapped, &reset, &continued}) rig->set(0.2f, 0.3f, 4.0f);
    fresh.set(0.2f, 0.3f, 4.0f);

    gapped.tick += 1;
    reset.filter(FilterKind::LowPass24).reset(++reset.tick);
    EXPECT_EQ(reset.filter(FilterKind::LowPass24).previousCutoff(), FilterModule::kUnsetCutoff);

    std::vector<float> a = drive(fresh, 3), b = drive(gapped, 3), c = drive(reset, 3), d = drive(continued, 3);
    EXPECT_EQ(a, b);
    EXPECT_EQ(a, c);
    EXPECT_NE(a, d) << "a module that kept running carries its state and ramps its coefficients";
    for (int i = 0; i < 4; ++i) EXPECT_NE(continued.filter(FilterKind::LowPass24).sectionState(i), 0.0f);
}

// A NaN (or a state that ran away) would stay in a filter for good. Every type outputs the block where
// its states stopped being finite as silence and then plays on exactly like a filter that starts from
// rest. An infinite input sample leaves every type finite too: either the limiter in the loop absorbs it
// or the states turn non-finite and the block is silenced.
TEST(FilterModule, NonFiniteStateSilencesOneBlockThenRestartsFromRest) {
    const int B = 64;
    const std::vector<float> input = testing::sine(0.01, 0.5, 4 * B);
    for (int kind = 0; kind < 12; ++kind) {
        const auto k = static_cast<FilterKind>(kind);
        auto renderWith = [&](float bad) {
            std::vector<float> poisoned = input;
            poisoned[static_cast<std::size_t>(B + 5)] = bad;  // in the second block
            FilterRig rig;
            rig.set(0.02f, 0.8f, 4.0f);
            rig.signal().play(poisoned);
            return rig.renderSamples(k, 4);
        };
        const std::vector<float> out = renderWith(std::numeric_limits<float>::quiet_NaN());
        // The reference meets the same samples from the third block on, with nothing before.
        FilterRig fresh;
        fresh.set(0.02f, 0.8f, 4.0f);
        fresh.signal().play(std::vector<float>(input.begin() + 2 * B, input.end()));
        const std::vector<float> expected = fresh.renderSamples(k, 2);
        for (int n = 0; n < B; ++n) ASSERT_EQ(out[static_cast<std::size_t>(B + n)], 0.0f) << kind << " " << n;
        for (int n = 0; n < 2 * B; ++n)
            ASSERT_EQ(out[static_cast<std::size_t>(2 * B + n)], expected[static_cast<std::size_t>(n)]) << kind << " " << n;

        for (float x : renderWith(std::numeric_limits<float>::infinity())) ASSERT_TRUE(std::isfinite(x)) << kind;
    }
}

}  // namespace
}  // namespace tolvane
