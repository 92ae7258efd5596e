#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "engine/effect/EffectUnit.h"
#include "tests/engine/ScriptedSignal.h"
#include "engine/framework/ModuleGraph.h"
#include "dsp/Mappings.h"
#include "support/AllocationCounter.h"

namespace tolvane {
namespace {

using testing::ScriptedSignal;
constexpr double kPi = 3.14159265358979323846;
constexpr float kRate = 48000.0f;
constexpr int kBlock = 64;

// The effect fed by a scripted voice sum, rendered block by block the way the engine pulls it.
// The default settings make the wet path nearly linear: all wet, drive 0.01, no feedback, corners at the
// extremes.
struct EffectRig {
    EffectRig() {
        graph.setSampleRate(kRate);
        effect.setMix(1.0f);
        effect.setOutputVolume(1.0f);
        effect.setDrive(0.01f);
        effect.setHighCut(22000.0f);
        effect.setLowCut(1.0f);
    }
    void render(int blocks) {
        for (int b = 0; b < blocks; ++b) {
            effect.update(++tick);
            left.insert(left.end(), effect.left(), effect.left() + kBlock);
            right.insert(right.end(), effect.right(), effect.right() + kBlock);
        }
    }
    void impulse(float height) { voiceSum.at(0).samples = {height}; }
    // Synced to 120 bpm at the division whose value is `index`.
    void syncedDivision(int index) {
        effect.setTempo(120.0f);
        effect.setTempoSync(true);
        effect.setDelayTime((index + 0.5f) / 22.0f);
    }

    ModuleGraph graph;
    ValueMappings mappings;
    Poly<ScriptedSignal> voiceSum{graph, 0, kRuleFromInputs};
    EffectUnit effect{graph, &voiceSum, mappings.delayTime};
    std::vector<float> left, right;
    int tick = 0;
};

// Sum of an echo around sample `centre`, less the level just before it.
double echoArea(const std::vector<float>& x, double centre) {
    const int c = static_cast<int>(centre);
    double base = 0.0;
    for (int n = c - 140; n < c - 60; ++n) base += x[static_cast<std::size_t>(n)];
    base /= 80.0;
    double area = 0.0;
    for (int n = c - 40; n <= c + 40; ++n) area += x[static_cast<std::size_t>(n)] - base;
    return area;
}

// Centre of gravity of an echo near `around` (in samples).
double echoCentre(const std::vector<float>& x, int around) {
    double sum = 0.0, moment = 0.0;
    for (int n = around - 60; n <= around + 60; ++n) {
        const double v = x[static_cast<std::size_t>(n)];
        sum += v;
        moment += v * n;
    }
    return moment / sum;
}

// An impulse comes out of each channel after that channel's delay time. The read head sits half a
// sample early and the high cut adds about half a sample; a sample of tolerance covers both.
TEST(EffectUnit, DelayTimesFromTempoDivisionsFreeTimesAndDiffusion) {
    struct Case {
        bool sync; float tempo, value, diffusion;
        int division; double base, left, right;  // seconds
    };
    const Case cases[] = {
        {true, 120, 0.6f, 0, 13, 240.0 / 3 / 120, 2.0 / 3, 2.0 / 3},           // "1/3"
        {true, 120, 1.0f, 0, 21, 480.0 / 120, 2.0, 2.0},                       // "2" at 4 s plays at 2 s
        {true, 120, 0.5f, 1, 11, 240.0 * 3 / 16 / 120, 0.1875, 0.5625},        // "3/16" spread by 0.5 T and 1.5 T
        {false, 120, 0.5f, 0, -1, 0.001 * std::sqrt(1000.0), 0.0316228, 0.0316228},
        {true, -1, 0.6f, 0.5f, -1, 0.001 * std::pow(1000.0, 0.6), 0.75 * 0.0630957, 1.25 * 0.0630957},
    };
    for (const Case& c : cases) {
        EffectRig rig;
        rig.effect.setTempo(c.tempo);
        rig.effect.setTempoSync(c.sync);
        rig.effect.setDelayTime(c.value);
        rig.effect.setDiffusion(c.diffusion);
        rig.impulse(1.0f);
        EXPECT_EQ(rig.effect.divisionIndex(), c.division);
        EXPECT_NEAR(rig.effect.currentDelaySeconds(), c.base, c.base * 2e-4);

        rig.render(static_cast<int>(c.right * kRate / kBlock) + 4);
        EXPECT_NEAR(echoCentre(rig.left, static_cast<int>(c.left * kRate)), c.left * kRate, 1.0) << c.value;
        EXPECT_NEAR(echoCentre(rig.right, static_cast<int>(c.right * kRate)), c.right * kRate, 1.0) << c.value;
    }
}

// Delays of 9000 and 27000 samples (diffusion 1). Each repeat is scaled by the feedback gain and comes
// one more delay later, plus one block where the loop reads its source's previous block. In parallel
// mode each channel repeats itself; in cross mode a repeat of the left channel comes from the right
// delay and vice versa (the right channel reads the left one's previous block, the left one the right
// one's current block).
TEST(EffectUnit, FeedbackRepeatsDecayByTheGainAndCrossAlternatesChannels) {
    struct Echo { int channel; double at, ratio; };
    struct Case { int connection; double gain; std::vector<Echo> echoes; };
    const double d1 = 9000, d2 = 27000, b = kBlock;
    const Case cases[] = {
        {EffectUnit::kParallel, 0.5, {{0, 2 * d1 + b, 0.5}, {0, 3 * d1 + 2 * b, 0.25}, {1, 2 * d2 + b, 0.5}, {0, d1 + d2, 0}}},
        {EffectUnit::kParallel, -0.7, {{0, 2 * d1 + b, -0.7}, {0, 3 * d1 + 2 * b, 0.49}, {1, 2 * d2 + b, -0.7}}},
        {EffectUnit::kCross, 0.5, {{0, d1 + d2, 0.5}, {1, d1 + d2 + b, 0.5}, {0, 2 * d1 + b, 0}, {1, 2 * d2 + b, 0}}},
    };
    for (const Case& c : cases) {
        EffectRig rig;
        rig.syncedDivision(11);  // "3/16": 0.375 s
        rig.effect.setDiffusion(1.0f);
        rig.effect.setFeedback(static_cast<float>(c.gain));
        rig.effect.setFeedbackConnection(c.connection);
        rig.impulse(0.1f);
        rig.render(static_cast<int>(2 * d2 + 2 * b) / kBlock + 2);
        const double firstLeft = echoArea(rig.left, d1), firstRight = echoArea(rig.right, d2);
        EXPECT_NEAR(firstLeft, 0.1, 0.002);
        EXPECT_NEAR(firstRight, 0.1, 0.002);
        for (const Echo& e : c.echoes) {
            const double first = e.channel == 0 ? firstLeft : firstRight;
            EXPECT_NEAR(echoArea(e.channel == 0 ? rig.left : rig.right, e.at) / first, e.ratio, 0.01)
                << "connection " << c.connection << " gain " << c.gain << " channel " << e.channel << " at " << e.at;
        }
    }
}

// Repeats of 0.25 s at feedback 0.9, half wet; something happens after the first repeat (at 12000).
// Choosing the other connection empties the loop at once; choosing the same one again changes nothing;
// a pause of the wet path (mix 0) starts it from silence. Nothing non-finite stays in the effect: a
// voice-sum block holding NaN, an infinity or a runaway value counts as silence, so the echoes already
// in the loop play on. A NaN that gets into the loop all the same (here through the feedback gain)
// empties the loop when it comes round; the output stays finite.
TEST(EffectUnit, ConnectionChangesPausesAndNonFiniteValuesInTheLoop) {
    const float kNaN = std::numeric_limits<float>::quiet_NaN();
    enum Action { kSameConnection, kOtherConnection, kPauseWet, kNaNInput, kInfiniteInput, kRunawayInput, kNaNInLoop };
    const char* names[] = {"same connection", "other connection", "pause", "NaN input", "infinite input",
                           "runaway input", "NaN in the loop"};
    for (Action action : {kSameConnection, kOtherConnection, kPauseWet, kNaNInput, kInfiniteInput, kRunawayInput, kNaNInLoop}) {
        SCOPED_TRACE(names[action]);
        EffectRig rig;
        rig.syncedDivision(9);
        rig.effect.setFeedback(0.9f);
        rig.effect.setMix(0.5f);
        rig.impulse(0.1f);
        rig.render(200);
        if (action == kPauseWet) {
            rig.effect.setMix(0.0f);
            rig.render(10);
            rig.effect.setMix(0.5f);
        } else if (action == kSameConnection || action == kOtherConnection) {
            rig.effect.setFeedbackConnection(action == kSameConnection ? EffectUnit::kParallel : EffectUnit::kCross);
        } else if (action == kNaNInLoop) {
            rig.effect.setFeedback(kNaN);
            rig.render(1);
            rig.effect.setFeedback(0.9f);
        } else {
            std::vector<float> block(kBlock, 0.0f);
            block[7] = action == kNaNInput ? kNaN : (action == kInfiniteInput ? -std::numeric_limits<float>::infinity() : 1e30f);
            rig.voiceSum.at(0).play(block);
            rig.render(1);
        }
        rig.render(400);
        for (std::size_t n = 0; n < rig.left.size(); ++n)
            ASSERT_TRUE(std::fabs(rig.left[n]) <= 4.0f && std::fabs(rig.right[n]) <= 4.0f) << n;
        // The wet half of the first feedback repeat, which left the loop before any poison came round.
        const double repeat = echoArea(rig.left, 12000.0 + 12064.0);
        if (action == kOtherConnection || action == kPauseWet)
            EXPECT_NEAR(repeat, 0.0, 1e-4);
        else
            EXPECT_NEAR(repeat, 0.045, action == kSameConnection ? 0.001 : 0.002);
        float tail = 0.0f;  // from block 211 on, after the change or the pause
        for (std::size_t n = 211 * kBlock; n < rig.left.size(); ++n)
            tail = std::max({tail, std::fabs(rig.left[n]), std::fabs(rig.right[n])});
        float later = 0.0f;  // after a NaN written at 12800 has come round (at about 24800)
        for (std::size_t n = 26000; n < rig.left.size(); ++n) later = std::max(later, std::fabs(rig.left[n]));
        if (action == kOtherConnection || action == kPauseWet)
            EXPECT_LT(tail, 1e-4f);
        else if (action == kNaNInLoop)
            EXPECT_LT(later, 1e-4f);
        else
            EXPECT_GT(later, 0.01f) << "the echoes play on";
    }
}

// The limiter: linear up to 3.6, then 4 - 0.16 / (s - 3.2), odd-symmetric.
double limited(double s) {
    const double a = std::fabs(s);
    const double y = a <= 3.6 ? a : 4.0 - 0.16 / (a - 3.2);
    return s < 0 ? -y : y;
}

// At mix 0 or bypassed the output is the volume times the dry signal through the limiter, and the delay
// lines are never run.
TEST(EffectUnit, DryPathAtMixZeroOrBypassed) {
    for (bool bypass : {false, true}) {
        EffectRig rig;
        rig.effect.setMix(bypass ? 0.7f : 0.0f);
        rig.effect.setEffectOn(!bypass);
        rig.effect.setOutputVolume(2.0f);
        rig.effect.setFeedback(0.5f);
        std::vector<float>& x = rig.voiceSum.at(0).samples;
        for (int n = 0; n < 20 * kBlock; ++n) x.push_back(static_cast<float>(-6.0 + 12.0 * n / (20 * kBlock)));
        x.insert(x.end(), kBlock, 5.0f);
        x.insert(x.end(), kBlock, -5.0f);
        rig.render(24);
        // The first block fades in from silence.
        for (std::size_t n = kBlock; n < x.size(); ++n) {
            ASSERT_NEAR(rig.left[n], limited(2.0 * (x[n] + 1e-5)), 2e-6) << n;
            ASSERT_EQ(rig.right[n], rig.left[n]);
        }
        EXPECT_NEAR(rig.left[20 * kBlock], 4.0 - 0.16 / 6.8, 1e-5) << "a sum of 10 stays just below 4";
        EXPECT_NEAR(rig.left[21 * kBlock], -(4.0 - 0.16 / 6.8), 1e-5);
        EXPECT_EQ(rig.effect.delayLine(0).lastTick(), -1);
        EXPECT_EQ(rig.effect.delayLine(1).lastTick(), -1);
        EXPECT_EQ(rig.voiceSum.at(0).renders, 24) << "the voice sum is pulled once per block";
    }
}

// The delay time swings by A = 0.0144245 (2/pi) depth / speed around its base, so the pitch of the
// delayed signal deviates by 4 x 0.0144245 x depth whatever the speed (less what the 0.1 s smoothing of
// the delay time takes off at that speed). Measured on the periods of a delayed 1 kHz sine.
TEST(EffectUnit, ModulationDeviatesThePitchByTheDepthAlone) {
    for (float speed : {0.5f, 2.0f}) {
        EffectRig rig;
        rig.syncedDivision(9);  // 0.25 s, longer than any swing here
        rig.effect.setModSpeed(speed);
        rig.effect.setModDepth(0.8f);
        const double period = 48.0;
        rig.voiceSum.at(0).samples = testing::sine(1.0 / period, 0.1, static_cast<int>(2.6 * kRate));
        rig.render(static_cast<int>(2.6 * kRate) / kBlock);

        std::vector<double> crossings;  // upward zero crossings of the right channel
        for (std::size_t n = static_cast<std::size_t>(0.3 * kRate); n < rig.right.size(); ++n)
            if (rig.right[n - 1] < 0.0f && rig.right[n] >= 0.0f)
                crossings.push_back(n - 1 + rig.right[n - 1] / (rig.right[n - 1] - rig.right[n]));
        double shortest = 1e9, longest = 0.0;
        for (std::size_t i = 1; i < crossings.size(); ++i) {
            shortest = std::min(shortest, crossings[i] - crossings[i - 1]);
            longest = std::max(longest, crossings[i] - crossings[i - 1]);
        }

        const double blockRate = kRate / kBlock;
        const double c = std::pow(10.0, -3.0 / (blockRate * 0.1 + 1.0));
        const double w = 2.0 * kPi * speed / blockRate;
        const double smoothing = (1.0 - c) / std::sqrt(1.0 - 2.0 * c * std::cos(w) + c * c);
        const double deviation = 4.0 * 0.0144245 * 0.8 * smoothing;
        EXPECT_NEAR(period / shortest - 1.0, deviation, deviation * 0.02) << speed << " Hz";
        EXPECT_NEAR(1.0 - period / longest, deviation, deviation * 0.02) << speed << " Hz";
    }
}

TEST(EffectUnit, RenderingAndRateChangesDoNotAllocate) {
    EffectRig rig;
    rig.syncedDivision(15);
    rig.effect.setFeedback(0.8f);
    rig.effect.setModDepth(0.5f);
    rig.effect.setDiffusion(0.3f);
    rig.effect.setDrive(3.0f);
    rig.effect.setMix(0.5f);
    rig.voiceSum.at(0).samples = testing::sine(440.0 / kRate, 0.5, 48000);
    rig.left.reserve(400 * kBlock);
    rig.right.reserve(400 * kBlock);
    rig.render(1);
    {
        testing::AllocationCounter sanity;
        delete new std::vector<int>(16);
        ASSERT_GE(sanity.count(), 2u) << "the counter sees allocations";
    }
    testing::AllocationCounter counter;
    rig.render(100);
    rig.effect.setFeedbackConnection(EffectUnit::kCross);
    rig.graph.setSampleRate(96000.0f);
    rig.render(100);
    rig.graph.setSampleRate(192000.0f);
    rig.effect.setEffectOn(false);
    rig.render(50);
    rig.effect.setEffectOn(true);
    rig.graph.setSampleRate(44100.0f);
    rig.render(100);
    EXPECT_EQ(counter.count(), 0u);
    EXPECT_GT(std::fabs(rig.left.back()) + std::fabs(rig.right.back()), 0.0f);
}

}  // namespace
}  // namespace tolvane
