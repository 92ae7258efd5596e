#include "engine/modulation/Envelope.h"

#include <cmath>

#include <gtest/gtest.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/modulation/ValueContainers.h"
#include "dsp/Mappings.h"

namespace tolvane {
namespace {

constexpr double kBlockRate = 44100.0 / 64.0;  // 689.0625 blocks per second

// Normalised values whose mapped times sit well away from a step boundary.
constexpr float kAttack02s = 0.5f;   // 0.002 x 10000^0.5 = 0.2 s   -> 137.8 blocks
constexpr float kDecay04s = 0.5f;    // 0.004 x 10000^0.5 = 0.4 s   -> 275.6 blocks
constexpr int kAttack02sSteps = 137;
constexpr int kDecay04sSteps = 275;

double attackSeconds(double v) { return 0.002 * std::pow(10000.0, v); }
float decayValueFor(double seconds) { return static_cast<float>(std::log(seconds / 0.004) / std::log(10000.0)); }

// Level after k of N steps of a segment from p to q with curvature c, as a closed form.
double segment(double p, double q, double c, int k, int n) {
    if (c > -0.0001 && c < 0.0001) c = c < 0.0 ? -0.0001 : 0.0001;
    return p + (q - p) * (1.0 - std::exp(c * k / n)) / (1.0 - std::exp(c));
}

struct Rig {
    ModuleGraph graph;
    ValueMappings maps;
    Poly<ValueSource> gate{graph, 0, kRuleFromInputs, 0.0f};
    Poly<ValueSource> trigger{graph, 0, kRuleFromInputs, 0.0f};
    Poly<ValueSource> zero{graph, 0, kRuleFromInputs, 0.0f};
    Envelope env{graph, gate, trigger, maps.attackTime, maps.decayTime, {&zero, &zero, &zero, &zero}};
    int tick = 0;

    Rig() {
        env.setAttack(kAttack02s);
        env.setDecay(kDecay04s);
        env.setSustain(0.5f);
        env.setRelease(kDecay04s);
    }
    // One block with the gate (and trigger) given; returns the envelope's output.
    float block(bool gateOn, bool triggerOn = false) {
        setValue(gate, gateOn ? 1.0f : 0.0f);
        setValue(trigger, triggerOn ? 1.0f : 0.0f);
        env.output().updateInstances(++tick);
        return env.output().at(0).value();
    }
    float noteOn() { return block(true, true); }
};

TEST(Envelope, AttackRisesAlongEachCurveInItsStepCount) {
    ASSERT_EQ(static_cast<int>(kBlockRate * attackSeconds(kAttack02s)), kAttack02sSteps);
    const double curvatures[] = {-4.0, 0.0, 3.0};  // "1 (Fast)", "2 (Linear)", "3 (Slow)"
    for (int curve = 0; curve < 3; ++curve) {
        SCOPED_TRACE(curve);
        Rig rig;
        rig.env.setAttackCurve(curve);
        const int n = kAttack02sSteps;
        float out = rig.noteOn();
        for (int k = 1; k < n; ++k, out = rig.block(true))
            ASSERT_NEAR(out, segment(0.0, 1.0, curvatures[curve], k, n), 2e-6) << "step " << k;
        EXPECT_EQ(out, 1.0f) << "the attack ends exactly at 1 after " << n << " blocks";
        EXPECT_EQ(rig.env.output().at(0).stage(), EnvelopeCore::kDecayStage);
    }
}

TEST(Envelope, DecaysToTheSustainLevelInItsStepCountAndHolds) {
    ASSERT_EQ(static_cast<int>(kBlockRate * 0.004 * 100.0), kDecay04sSteps);
    const double curvatures[] = {-2.0, -4.0, -6.0};
    for (int curve = 0; curve < 3; ++curve) {
        SCOPED_TRACE(curve);
        Rig rig;
        rig.env.setAttack(0.0f);  // skipped: the decay starts at once
        rig.env.setDecayCurve(curve);
        rig.env.setSustain(0.25f);
        EXPECT_EQ(rig.noteOn(), 1.0f);
        const int n = kDecay04sSteps;
        for (int j = 1; j < n; ++j)
            ASSERT_NEAR(rig.block(true), segment(1.0, 0.25, curvatures[curve], j, n), 2e-6) << "step " << j;
        for (int j = 0; j < 20; ++j) EXPECT_EQ(rig.block(true), 0.25f);
    }
}

TEST(Envelope, AttackShorterThanTwoBlocksIsSkippedAndTwoBlocksAreNot) {
    Rig rig;
    rig.env.setAttack(0.0f);  // 0.002 s: 1.378 blocks
    EXPECT_EQ(rig.noteOn(), 1.0f);
    EXPECT_NEAR(rig.block(true), segment(1.0, 0.5, -4.0, 1, kDecay04sSteps), 2e-6) << "decay starts in the next block";

    Rig two;
    two.env.setAttack(static_cast<float>(std::log(1.5) / std::log(10000.0)));  // 0.003 s: 2.07 blocks
    two.env.setAttackCurve(1);
    EXPECT_NEAR(two.noteOn(), 0.5f, 1e-4);
    EXPECT_EQ(two.block(true), 1.0f);
}

TEST(Envelope, ReleaseDuringTheAttackStartsFromTheLevelReached) {
    Rig rig;
    rig.noteOn();
    float level = 0.0f;
    for (int k = 2; k <= 50; ++k) level = rig.block(true);
    EXPECT_NEAR(level, 50.0 / kAttack02sSteps, 1e-4);
    const int n = kDecay04sSteps;
    for (int j = 1; j < n; ++j) ASSERT_NEAR(rig.block(false), segment(level, 0.0, -4.0, j, n), 2e-6) << "step " << j;
    EXPECT_EQ(rig.block(false), 0.0f);
    EXPECT_EQ(rig.env.output().at(0).stage(), EnvelopeCore::kIdle);
}

TEST(Envelope, NewNoteDuringTheReleaseRestartsTheAttackFromTheReleaseLevel) {
    Rig rig;
    rig.env.setAttack(0.0f);
    rig.noteOn();
    for (int k = 0; k < 400; ++k) rig.block(true);
    float level = 0.0f;
    for (int k = 0; k < 40; ++k) level = rig.block(false);
    ASSERT_GT(level, 0.05f);
    ASSERT_LT(level, 0.5f);
    rig.env.setAttack(kAttack02s);
    EXPECT_NEAR(rig.noteOn(), segment(level, 1.0, 0.0, 1, kAttack02sSteps), 2e-6);
}

TEST(Envelope, ChangingTheReleaseTimeHalfwayKeepsTheLevelAndFinishesInHalfTheNewTime) {
    Rig rig;
    rig.env.setAttack(0.0f);
    rig.env.setSustain(1.0f);
    rig.noteOn();
    rig.block(true);
    const int n = kDecay04sSteps;
    float previous = 1.0f, last = 1.0f;
    for (int j = 1; j <= 137; ++j) {
        previous = last;
        last = rig.block(false);
    }
    const double newTime = 0.8;
    rig.env.setRelease(decayValueFor(newTime));
    float first = rig.block(false);
    EXPECT_LT(std::fabs(first - last), 2.0f * std::fabs(last - previous)) << "no jump at the change";

    int remaining = n - 137;
    int expectedSteps = static_cast<int>(kBlockRate * (static_cast<double>(remaining) / n) * newTime);
    // The new segment has expectedSteps steps; its last one is the 0 that ends the release.
    int blocks = 1;
    while (blocks < 2000) {
        ++blocks;
        if (rig.block(false) == 0.0f) break;
    }
    EXPECT_EQ(blocks, expectedSteps);
    EXPECT_NEAR(blocks / kBlockRate, newTime / 2.0, 0.01);
}

TEST(Envelope, LoweringTheSustainGlidesToItOverTheFullDecayTime) {
    Rig rig;
    rig.env.setAttack(0.0f);
    rig.noteOn();
    for (int k = 0; k < 300; ++k) rig.block(true);
    ASSERT_EQ(rig.block(true), 0.5f);
    rig.env.setSustain(0.25f);
    const int n = kDecay04sSteps;
    for (int j = 1; j < n; ++j) ASSERT_NEAR(rig.block(true), segment(0.5, 0.25, -4.0, j, n), 2e-6) << "step " << j;
    EXPECT_EQ(rig.block(true), 0.25f);
}

}  // namespace
}  // namespace tolvane
