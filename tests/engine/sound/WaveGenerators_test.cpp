#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/ValueSource.h"
#include "engine/sound/SyncGenerators.h"
#include "tests/engine/ScriptedSignal.h"

namespace tolvane {
namespace {

using testing::ScriptedSignal;

// Closed forms the generators are measured against.
double wrap(double p) { return p - std::floor(p); }
double additiveSaw(double p, int harmonics) {
    double sum = 0.0;
    for (int k = 1; k <= harmonics; ++k) sum += std::sin(2 * M_PI * k * p) / k;
    return sum / M_PI;
}
double additiveTriangle(double p, int highest) {
    double sum = 0.0;
    for (int k = 1; k <= highest; k += 2) sum += std::cos(2 * M_PI * k * p) / (k * k);
    return sum * 4.0 / (3.0 * M_PI);
}
// Coefficient of harmonic k (sine or cosine) of a signal whose phase at sample 0 is 0.
double coefficient(const std::vector<float>& x, double f, int k, bool sine) {
    double sum = 0.0;
    for (std::size_t n = 0; n < x.size(); ++n) {
        double angle = 2 * M_PI * k * n * f;
        sum += x[n] * (sine ? std::sin(angle) : std::cos(angle));
    }
    return 2.0 * sum / x.size();
}

// One voice of generator inputs from value sources.
struct Rig {
    ModuleGraph graph;
    Poly<ValueSource> frequency{graph, 0, kRuleFromInputs, 0.01f}, width{graph, 0, kRuleFromInputs, 0.5f};
    Poly<ValueSource> master{graph, 0, kRuleFromInputs, 0.01f}, depth{graph, 0, kRuleFromInputs, 0.0f};
    Poly<ScriptedSignal> modulator{graph, 0, kRuleFromInputs, 0.4f};  // the FM modulator
    std::vector<std::unique_ptr<PolyModule>> generators;
    int tick = 0;

    explicit Rig(float f = 0.01f) { frequency.at(0).set(f); }
    template <class G = WaveGenerator>
    G& make(GeneratorMode mode, int index, float phase) {
        generators.push_back(makeGeneratorContainer(graph, mode, index));
        PolyModule& g = *generators.back();
        g.connectInput(&frequency, WaveGenerator::kFrequency);
        if (readsPulseWidth(index)) g.connectInput(&width, WaveGenerator::kPulseWidth);
        if (mode == GeneratorMode::Sync) g.connectInput(&master, WaveGenerator::kMasterIncrement);
        if (mode == GeneratorMode::Fm) {
            g.connectInput(&depth, WaveGenerator::kFmDepth);
            g.connectInput(&modulator, WaveGenerator::kModulator);
        }
        auto& generator = static_cast<G&>(*g.instance(0));
        generator.setPhase(phase);
        return generator;
    }
    std::vector<float> blocks(WaveGenerator& g, int count = 1) {
        std::vector<float> out;
        for (int b = 0; b < count; ++b) g.update(++tick), out.insert(out.end(), g.block(), g.block() + g.blockSize());
        return out;
    }
};

// The residual path at any increment: a phase-modulated High sawtooth with a silent modulator.
std::vector<float> residualSaw(float f, float phase) {
    Rig rig(f);
    rig.depth.at(0).set(1.0f);
    rig.modulator.at(0).level = 0.0f;
    return rig.blocks(rig.make(GeneratorMode::Fm, kSawHigh, phase));
}

TEST(WaveGenerators, LowSawtoothFallsByTheIncrementAndWraps) {
    Rig rig(0.25f);
    auto out = rig.blocks(rig.make(GeneratorMode::Plain, kSawLow, 0.0f), 2);
    const float cycle[] = {0.5f, 0.25f, 0.0f, -0.25f};
    for (std::size_t n = 0; n < out.size(); ++n) ASSERT_EQ(out[n], cycle[n % 4]) << n;
}

TEST(WaveGenerators, SinesFollowTheSineOfTheirPhaseAcrossBlocks) {
    const double tolerance[] = {5e-5, 2e-6, 2e-5};  // Low recurses in single precision, High accumulates its phase
    for (int index : {kSineLow, kSineMiddle, kSineHigh}) {
        Rig rig(0.0123f);
        auto out = rig.blocks(rig.make(GeneratorMode::Plain, index, 0.3f), 3);
        for (std::size_t n = 0; n < out.size(); ++n)
            ASSERT_NEAR(out[n], 0.5 * std::sin(2 * M_PI * (0.3 + n * 0.0123f)), tolerance[index]) << index << " " << n;
    }
}

TEST(WaveGenerators, MiddleShapesAreTheNaiveOnesDelayedAndContinuousInValueAndSlope) {
    Rig rig(0.0371f);
    auto out = rig.blocks(rig.make(GeneratorMode::Plain, kSawMiddle, 0.6f), 4);
    double p = 0.6;
    for (std::size_t n = 0; n < out.size(); ++n, p = wrap(p + 0.0371f)) {
        if (p < 2 * 0.0371 + 1e-5) continue;
        ASSERT_NEAR(out[n], 0.5 - (p - 0.0371), 2e-5) << n;  // delayed by f
    }

    for (float f : {0.01f, 0.0625f, 0.3f}) {
        wave::MiddleSaw saw(f);
        wave::MiddleTriangle triangle(f);
        EXPECT_FLOAT_EQ(saw(0.0f), f - 0.5f);
        EXPECT_FLOAT_EQ(triangle(0.0f), 0.5f - f);
        EXPECT_NEAR(triangle(0.5f), f - 0.5f, 1e-6);
        // Across a joint the value moves by at most e times the slopes, the slope by 2e times the
        // curvature (1/f^2 for the sawtooth, 4/f for the triangle).
        const float e = 1e-3f * f;
        auto joint = [&](const auto& shape, float at, float curvature) {
            float slopes = std::fabs(shape.slope(at - e)) + std::fabs(shape.slope(at + e));
            EXPECT_NEAR(shape(at - e), shape(at + e), 1.5f * e * slopes + 1e-5f) << at << " f " << f;
            EXPECT_NEAR(shape.slope(at - e), shape.slope(at + e), 3.0f * e * curvature + 1e-3f) << at << " f " << f;
        };
        EXPECT_NEAR(saw(1.0f - e), saw(0.0f), 2 * e);
        EXPECT_NEAR(triangle(1.0f - e), triangle(0.0f), 3 * e);
        for (float at : {f, 2 * f}) joint(saw, at, 1.0f / (f * f));
        for (float at : {f, 0.5f, f + 0.5f}) joint(triangle, at, 4.0f / f);
    }
}

TEST(WaveGenerators, PulsesHaveTheirTwoLevelsNoDcAndCancelAtTheExtremeWidths) {
    const float f = 1.0f / 256.0f;
    for (int index : {kPulseLow, kPulseMiddle, kPulseHigh}) {
        for (float w : {0.5f, 0.25f, 0.0f, 1.0f}) {
            Rig rig(f);
            rig.width.at(0).set(w);
            auto out = rig.blocks(rig.make(GeneratorMode::Plain, index, 0.0f), 4);
            double sum = 0.0;
            for (std::size_t n = 0; n < out.size(); ++n) {
                sum += out[n];
                double p = n * f, fromEdge = std::min({p, std::fabs(p - w), 1.0 - p}) / f;
                if (w == 0.0f || w == 1.0f) {
                    ASSERT_NEAR(out[n], 0.0f, 1e-6) << index;  // the sawtooths cancel
                } else if (fromEdge > 17) {
                    ASSERT_NEAR(out[n], p < w ? 1.0 - w : -w, 1e-4) << index << " sample " << n;
                }
            }
            EXPECT_NEAR(sum / out.size(), 0.0, 2e-3) << index << " width " << w;
        }
    }
}

TEST(WaveGenerators, HighResidualPathsHaveTheHarmonicsOfTheContinuousWaveforms) {
    // The naive waveform's aliases fold onto its harmonics; the corrected one has those of the
    // continuous waveform: sawtooth 1 / (pi k), falling triangle 4 / (pi^2 k^2) for odd k.
    Rig rig(1.0f / 32.0f);
    auto high = rig.blocks(rig.make(GeneratorMode::Plain, kSawHigh, 0.0f), 2);
    for (int k = 1; k <= 8; ++k) {
        EXPECT_NEAR(coefficient(high, 1.0 / 32, k, true), 1.0 / (M_PI * k), 0.01 / (M_PI * k)) << k;
        EXPECT_NEAR(coefficient(high, 1.0 / 32, k, false), 0.0, 1e-4) << k;
    }

    Rig slow(1.0f / 64.0f);
    auto triangle = slow.blocks(slow.make(GeneratorMode::Plain, kTriangleHigh, 0.0f), 2);
    for (int k = 1; k <= 16; ++k) {
        double ideal = k % 2 == 1 ? 4.0 / (M_PI * M_PI * k * k) : 0.0;
        EXPECT_NEAR(coefficient(triangle, 1.0 / 64, k, false), ideal, 0.01 * ideal + 2e-5) << k;
        EXPECT_NEAR(coefficient(triangle, 1.0 / 64, k, true), 0.0, 2e-5) << k;
    }
}

TEST(WaveGenerators, HighSawtoothReadsItsTableBelowNineHarmonicsAndCrossfadesWhenTheRegimeChanges) {
    const float table = 0.06f, residual = 0.05f;  // 8 harmonics fit, and 10
    for (bool towardResidual : {true, false}) {
        const float f = towardResidual ? residual : table;
        Rig rig(towardResidual ? table : residual);
        WaveGenerator& saw = rig.make(GeneratorMode::Plain, kSawHigh, 0.3f);
        rig.blocks(saw);
        for (int block = 0; block < 2; ++block) {  // the crossfade, then the new regime alone
            rig.frequency.at(0).set(f);
            const float start = saw.phase();
            auto out = rig.blocks(saw);
            auto corrected = residualSaw(f, start);
            double p = start;
            for (int n = 0; n < 64; ++n, p = wrap(p + f)) {
                double w = block == 0 ? n / 64.0 : 1.0;  // 0 at the first sample, growing by 1/B
                double a = additiveSaw(p, 8), b = corrected[static_cast<std::size_t>(n)];
                double expected = towardResidual ? (1 - w) * a + w * b : (1 - w) * b + w * a;
                ASSERT_NEAR(out[static_cast<std::size_t>(n)], expected, 3e-4) << towardResidual << " " << block << " " << n;
            }
        }
    }
}

TEST(WaveGenerators, HighTriangleAtSixteenHarmonicsReadsTheFifteenthHarmonicTable) {
    const float f = 0.5f / 16.5f;
    Rig rig(f);
    rig.tick = -1;  // the first block follows construction without a gap
    WaveGenerator& triangle = rig.make(GeneratorMode::Plain, kTriangleHigh, 0.71f);
    // A new free-running High triangle counts as having had one harmonic: its first block crossfades.
    auto out = rig.blocks(triangle, 2);
    double p = 0.71;
    for (int n = 0; n < 128; ++n, p = wrap(p + f)) {
        double w = std::min(1.0, n / 64.0);
        double expected = (1 - w) * additiveTriangle(p, 1) + w * additiveTriangle(p, 15);
        ASSERT_NEAR(out[static_cast<std::size_t>(n)], expected, 3e-4) << n;
    }
}

TEST(WaveGenerators, FmDepthAboveThresholdAtEitherEndModulatesTheWholeBlock) {
    // At or below 0.001 at both ends: exactly the plain generator, and the modulator is not computed.
    for (int index : {kSawLow, kSineMiddle, kPulseHigh}) {
        Rig rig(0.0123f);
        rig.depth.at(0).set(0.001f);
        WaveGenerator& fm = rig.make(GeneratorMode::Fm, index, 0.42f);
        WaveGenerator& plain = rig.make(GeneratorMode::Plain, index, 0.42f);
        for (int b = 1; b <= 3; ++b) {
            fm.update(b), plain.update(b);
            for (int n = 0; n < 64; ++n) ASSERT_EQ(fm.block()[n], plain.block()[n]) << index << " sample " << n;
        }
        EXPECT_EQ(rig.modulator.at(0).renders, 0);
    }
    // Above it at either end: q = p + d m with d ramped across the block.
    Rig rig(0.0123f);
    const float m = rig.modulator.at(0).level;
    rig.depth.at(0).set(0.001f);
    WaveGenerator& fm = rig.make(GeneratorMode::Fm, kSawLow, 0.42f);
    rig.blocks(fm);
    float previous = 0.001f;
    for (float depth : {0.0011f, 0.0f, 0.25f}) {
        rig.depth.at(0).set(depth);
        double p = fm.phase();
        auto out = rig.blocks(fm);
        for (int n = 0; n < 64; ++n, p = wrap(p + 0.0123f)) {
            double d = previous + (n + 1) * (depth - previous) / 64.0;
            ASSERT_NEAR(out[static_cast<std::size_t>(n)], 0.5 - wrap(p + d * m), 1e-5) << depth << " sample " << n;
        }
        previous = depth;
    }
    EXPECT_EQ(rig.modulator.at(0).renders, 3);
}

TEST(WaveGenerators, SyncAtTheSlaveFrequencyChangesNothingOnceTheMasterHasWrapped) {
    const float f = 0.0137f;
    const int pairs[][2] = {
        {kSawLow, kSawLow}, {kSawMiddle, kSawMiddle}, {kTriangleMiddle, kTriangleMiddle}, {kPulseHigh, kPulseMiddle}};
    for (const auto& pair : pairs) {
        // In step from the start, or out of step until the master's first wrap (then the slave follows it).
        for (float slave : {0.2f, 0.7f}) {
            Rig rig(f);
            rig.master.at(0).set(f);
            auto& synced = rig.make<SyncGenerator>(GeneratorMode::Sync, pair[0], slave);
            synced.setMasterPhase(0.2f);
            WaveGenerator& plain = rig.make(GeneratorMode::Plain, pair[1], 0.2f);
            const int settled = slave == 0.2f ? 0 : static_cast<int>(std::ceil(0.8 / f)) + 2;
            for (int b = 1; b <= 4; ++b) {
                synced.update(b), plain.update(b);
                for (int n = 0; n < 64; ++n) {
                    if ((b - 1) * 64 + n <= settled) continue;
                    ASSERT_NEAR(synced.block()[n], plain.block()[n], 2e-4) << pair[0] << " " << n;
                }
            }
        }
    }
}

TEST(WaveGenerators, SyncResetsRestartTheSlaveLowWithAJumpMiddleOverTwoSamples) {
    // The master wraps exactly every 64 samples, after sample 63 of each block.
    const float f = 0.0123f;  // the slave does not wrap on its own within the first block
    Rig rig(f);
    rig.master.at(0).set(1.0f / 64.0f);
    auto& sine = rig.make<SyncGenerator>(GeneratorMode::Sync, kSineLow, 0.3f);
    auto& hard = rig.make<SyncGenerator>(GeneratorMode::Sync, kSawLow, 0.1f);
    auto& smooth = rig.make<SyncGenerator>(GeneratorMode::Sync, kSawMiddle, 0.1f);
    for (auto* g : {&sine, &hard, &smooth}) g->setMasterPhase(0.0f), g->update(1), g->update(2);
    // A synced Low sine starts each master period at its positive peak.
    for (int j = 0; j < 64; ++j) ASSERT_NEAR(sine.block()[j], 0.5 * std::cos(2 * M_PI * j * f), 1e-5) << j;
    EXPECT_EQ(sine.block()[0], 0.5f);
    EXPECT_EQ(hard.block()[0], 0.5f);
    // The Middle sawtooth continues where it was cut (the delayed sawtooth one sample on), meets half way
    // and is back on the regular waveform at 2f.
    const double p63 = 0.1 + 63.0 * f;
    EXPECT_NEAR(smooth.block()[0], 0.5 - p63, 2e-5);
    EXPECT_NEAR(smooth.block()[1], (1.0 - p63 - f) / 2.0, 2e-5);
    EXPECT_NEAR(smooth.block()[2], 0.5 - f, 2e-5);
    EXPECT_NEAR(smooth.block()[3], 0.5 - 2 * f, 2e-5);

    // With any master the slave restarts at the phase elapsed since the master's wrap: m / F samples.
    const float master = 0.0071f;
    rig.master.at(0).set(master);
    auto& saw = rig.make<SyncGenerator>(GeneratorMode::Sync, kSawLow, 0.1f);
    saw.setMasterPhase(0.5f);
    rig.tick = 0;
    auto out = rig.blocks(saw, 4);
    double m = 0.5;
    int wraps = 0;
    for (std::size_t n = 0; n + 1 < out.size(); ++n) {
        m += master;
        if (m < 1.0) continue;
        m -= 1.0, ++wraps;
        ASSERT_NEAR(out[n + 1], 0.5 - f * m / master, 1e-4) << n + 1;
    }
    EXPECT_EQ(wraps, 2);
}

TEST(WaveGenerators, AGapInTheTicksOrAResetForgetsTheRamps) {
    // Low pulse: beyond the width its output is -w, so samples 40 .. 63 show the width they used.
    for (int variant = 0; variant < 3; ++variant) {  // consecutive, gap, reset
        Rig rig(1.0f / 64.0f);
        WaveGenerator& pulse = rig.make(GeneratorMode::Plain, kPulseLow, 0.0f);
        pulse.update(1);
        rig.width.at(0).set(0.25f);
        if (variant == 2) pulse.reset(2);
        pulse.update(variant == 0 ? 2 : 3);
        for (int n = 40; n < 64; ++n)
            ASSERT_NEAR(-pulse.block()[n], variant == 0 ? 0.5 - 0.25 * (n + 1) / 64.0 : 0.25, 1e-6) << variant << " " << n;
    }
    // The harmonic count too: after a gap a change of regime does not crossfade.
    Rig rig(0.06f);
    WaveGenerator& saw = rig.make(GeneratorMode::Plain, kSawHigh, 0.3f);
    saw.update(1);
    rig.frequency.at(0).set(0.05f);
    auto expected = residualSaw(0.05f, saw.phase());
    saw.update(5);
    for (int n = 0; n < 64; ++n) ASSERT_FLOAT_EQ(saw.block()[n], expected[static_cast<std::size_t>(n)]);
}

}  // namespace
}  // namespace tolvane
