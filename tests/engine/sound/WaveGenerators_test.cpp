#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/UniformRandom.h"
#include "engine/framework/ValueSource.h"
#include "engine/sound/SyncGenerators.h"
#include "engine/sound/WaveGenerator.h"

namespace tolvane {
namespace {

// A block signal of constant level that counts its renders: stands in for the FM modulator.
class ConstantSignal : public DspModule {
public:
    explicit ConstantSignal(ModuleGraph& g) : DspModule(g, OutputKind::Block, 0) {}
    void compute() override {
        ++renders;
        std::fill(block_.begin(), block_.end(), level);
    }
    float level = 0.4f;
    int renders = 0;
};

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

// One voice of generator inputs built from value sources, and a tick counter.
struct Rig {
    ModuleGraph graph;
    Poly<ValueSource> frequency{graph, 0, kRuleFromInputs, 0.01f};
    Poly<ValueSource> width{graph, 0, kRuleFromInputs, 0.5f};
    Poly<ValueSource> master{graph, 0, kRuleFromInputs, 0.01f};
    Poly<ValueSource> depth{graph, 0, kRuleFromInputs, 0.0f};
    Poly<ConstantSignal> modulator{graph, 0, kRuleFromInputs};
    std::vector<std::unique_ptr<PolyModule>> generators;
    int tick = 0;

    WaveGenerator& make(GeneratorMode mode, int index, float phase) {
        generators.push_back(makeGeneratorContainer(graph, mode, index));
        PolyModule& g = *generators.back();
        g.connectInput(&frequency, WaveGenerator::kFrequency);
        if (readsPulseWidth(index)) g.connectInput(&width, WaveGenerator::kPulseWidth);
        if (mode == GeneratorMode::Sync) g.connectInput(&master, WaveGenerator::kMasterIncrement);
        if (mode == GeneratorMode::Fm) {
            g.connectInput(&depth, WaveGenerator::kFmDepth);
            g.connectInput(&modulator, WaveGenerator::kModulator);
        }
        auto& generator = static_cast<WaveGenerator&>(*g.instance(0));
        generator.setPhase(phase);
        return generator;
    }
    void setFrequency(float f) { frequency.at(0).set(f); }
    void setWidth(float w) { width.at(0).set(w); }
    void setDepth(float d) { depth.at(0).set(d); }

    // Renders one block at the given tick (the next one by default).
    std::vector<float> block(WaveGenerator& g, int at = -1) {
        tick = at < 0 ? tick + 1 : at;
        g.update(tick);
        return std::vector<float>(g.block(), g.block() + g.blockSize());
    }
    std::vector<float> blocks(WaveGenerator& g, int count) {
        std::vector<float> out;
        for (int b = 0; b < count; ++b) {
            auto next = block(g);
            out.insert(out.end(), next.begin(), next.end());
        }
        return out;
    }
};

TEST(WaveGenerators, LowSawtoothFallsByTheIncrementAndWraps) {
    Rig rig;
    rig.setFrequency(0.25f);
    WaveGenerator& saw = rig.make(GeneratorMode::Plain, kSawLow, 0.0f);
    auto out = rig.blocks(saw, 2);
    const float cycle[] = {0.5f, 0.25f, 0.0f, -0.25f};
    for (std::size_t n = 0; n < out.size(); ++n) ASSERT_EQ(out[n], cycle[n % 4]) << "sample " << n;
}

TEST(WaveGenerators, MiddleSawtoothIsTheNaiveSawtoothDelayedWithASmoothJump) {
    Rig rig;
    const float f = 0.0371f;
    rig.setFrequency(f);
    WaveGenerator& saw = rig.make(GeneratorMode::Plain, kSawMiddle, 0.6f);
    auto out = rig.blocks(saw, 4);
    double p = 0.6;
    double largestStep = 0.0;
    for (std::size_t n = 0; n < out.size(); ++n, p = wrap(p + f)) {
        if (p >= 2 * f + 1e-5) {
            ASSERT_NEAR(out[n], 0.5 - (p - f), 2e-5) << "sample " << n;
        }
        if (n > 0) largestStep = std::max(largestStep, std::fabs(double(out[n]) - out[n - 1]));
    }
    // The unit jump is spread over two samples by a quadratic step: two samples straddling its middle
    // differ by at most 0.75 - f (a naive sawtooth jumps by 1).
    EXPECT_LT(largestStep, 0.75);
    EXPECT_GT(largestStep, 0.5 - 2 * f);
}

TEST(WaveGenerators, MiddleShapesAreContinuousInValueAndSlope) {
    for (float f : {0.01f, 0.0625f, 0.2f, 0.3f}) {
        wave::MiddleSaw saw(f);
        wave::MiddleTriangle triangle(f);
        EXPECT_FLOAT_EQ(saw(0.0f), f - 0.5f);
        EXPECT_FLOAT_EQ(triangle(0.0f), 0.5f - f);
        EXPECT_NEAR(triangle(0.5f), f - 0.5f, 1e-6);
        // Across a joint a continuous function moves by at most e times the slopes on either side, and a
        // continuous slope by at most 2e times the curvature (1/f^2 for the sawtooth, 4/f for the triangle).
        const float e = 1e-3f * f;
        auto checkJoint = [&](const auto& shape, float joint, float curvature, const char* name) {
            float left = shape(joint - e), right = shape(joint + e);
            float slopes = std::fabs(shape.slope(joint - e)) + std::fabs(shape.slope(joint + e));
            EXPECT_NEAR(left, right, e * slopes * 1.5f + 1e-5f) << name << " value at " << joint << " f " << f;
            EXPECT_NEAR(shape.slope(joint - e), shape.slope(joint + e), 3.0f * e * curvature + 1e-3f)
                << name << " slope at " << joint << " f " << f;
        };
        // The wrap: the end of the cycle meets its start.
        EXPECT_NEAR(saw(1.0f - e), saw(0.0f), 2 * e);
        EXPECT_NEAR(triangle(1.0f - e), triangle(0.0f), 3 * e);
        for (float joint : {f, 2 * f}) checkJoint(saw, joint, 1.0f / (f * f), "saw");
        for (float joint : {f, 0.5f, f + 0.5f}) checkJoint(triangle, joint, 4.0f / f, "triangle");
        // The slopes are the derivatives of the values (central differences are exact on parabolas).
        for (float p = 0.013f; p < 0.98f; p += 0.031f) {
            bool nearJoint = false;
            for (float joint : {f, 2 * f, 0.5f, f + 0.5f}) nearJoint = nearJoint || std::fabs(p - joint) < 2 * e;
            if (nearJoint) continue;
            EXPECT_NEAR(saw.slope(p), (saw(p + e) - saw(p - e)) / (2 * e), 0.02f) << p;
            EXPECT_NEAR(triangle.slope(p), (triangle(p + e) - triangle(p - e)) / (2 * e), 0.05f) << p;
        }
    }
}

TEST(WaveGenerators, PulsesHaveTheirTwoLevelsNoDcAndCancelAtTheExtremeWidths) {
    const float f = 1.0f / 256.0f;  // 256 samples per period: four blocks
    for (int index : {kPulseLow, kPulseMiddle, kPulseHigh}) {
        for (float w : {0.5f, 0.25f}) {
            Rig rig;
            rig.setFrequency(f);
            rig.setWidth(w);
            WaveGenerator& pulse = rig.make(GeneratorMode::Plain, index, 0.0f);
            auto out = rig.blocks(pulse, 4);
            double sum = 0.0;
            for (std::size_t n = 0; n < out.size(); ++n) {
                sum += out[n];
                double p = n * f;
                // Away from the edges (16 samples covers the High residuals) the two levels are exact.
                double fromEdge = std::min({p, std::fabs(p - w), 1.0 - p}) / f;
                if (fromEdge > 17) {
                    EXPECT_NEAR(out[n], p < w ? 1.0 - w : -w, 1e-4) << index << " sample " << n;
                }
            }
            EXPECT_NEAR(sum / out.size(), 0.0, 2e-3) << "waveform " << index << " width " << w;
        }
        for (float w : {0.0f, 1.0f}) {
            Rig rig;
            rig.setFrequency(0.0173f);
            rig.setWidth(w);
            WaveGenerator& pulse = rig.make(GeneratorMode::Plain, index, 0.37f);
            for (float v : rig.blocks(pulse, 3)) ASSERT_NEAR(v, 0.0f, 1e-6) << "waveform " << index << " width " << w;
        }
    }
}

TEST(WaveGenerators, HighSawtoothReadsTheHarmonicTableWhileFewerThanNineHarmonicsFit) {
    Rig rig;
    const float f = 0.06f;  // trunc(0.5 / f) = 8
    rig.setFrequency(f);
    WaveGenerator& saw = rig.make(GeneratorMode::Plain, kSawHigh, 0.123f);
    auto out = rig.blocks(saw, 2);
    double p = 0.123;
    for (std::size_t n = 0; n < out.size(); ++n, p = wrap(p + f))
        ASSERT_NEAR(out[n], additiveSaw(p, 8), 3e-4) << "sample " << n;
}

// Sine and cosine coefficients of harmonic k of a rendered signal whose phase at sample 0 is p0.
double sineCoefficient(const std::vector<float>& x, double p0, double f, int k) {
    double sum = 0.0;
    for (std::size_t n = 0; n < x.size(); ++n) sum += x[n] * std::sin(2 * M_PI * k * (p0 + n * f));
    return 2.0 * sum / x.size();
}
double cosineCoefficient(const std::vector<float>& x, double p0, double f, int k) {
    double sum = 0.0;
    for (std::size_t n = 0; n < x.size(); ++n) sum += x[n] * std::cos(2 * M_PI * k * (p0 + n * f));
    return 2.0 * sum / x.size();
}

TEST(WaveGenerators, HighResidualPathsHaveTheHarmonicsOfTheContinuousWaveforms) {
    // Whole periods per two blocks, enough harmonics for the residual path. Its harmonics are those of
    // the continuous waveform (sawtooth 1 / (pi k), falling triangle 4 / (pi^2 k^2) for odd k); the naive
    // waveform's are not, because its aliases fold onto them.
    {
        const float f = 1.0f / 32.0f;
        Rig rig;
        rig.setFrequency(f);
        WaveGenerator& high = rig.make(GeneratorMode::Plain, kSawHigh, 0.0f);
        WaveGenerator& low = rig.make(GeneratorMode::Plain, kSawLow, 0.0f);
        auto highOut = rig.blocks(high, 2);
        rig.tick = 0;
        auto lowOut = rig.blocks(low, 2);
        for (int k = 1; k <= 8; ++k) {
            double ideal = 1.0 / (M_PI * k);
            EXPECT_NEAR(sineCoefficient(highOut, 0.0, f, k), ideal, 0.01 * ideal) << "saw harmonic " << k;
            EXPECT_NEAR(cosineCoefficient(highOut, 0.0, f, k), 0.0, 1e-4) << "saw harmonic " << k;
        }
        EXPECT_GT(std::fabs(sineCoefficient(lowOut, 0.0, f, 8) - 1.0 / (8 * M_PI)), 0.1 / (8 * M_PI));
    }
    {
        const float f = 1.0f / 64.0f;
        Rig rig;
        rig.setFrequency(f);
        WaveGenerator& high = rig.make(GeneratorMode::Plain, kTriangleHigh, 0.0f);
        auto out = rig.blocks(high, 2);
        for (int k = 1; k <= 16; ++k) {
            double ideal = k % 2 == 1 ? 4.0 / (M_PI * M_PI * k * k) : 0.0;
            EXPECT_NEAR(cosineCoefficient(out, 0.0, f, k), ideal, 0.01 * ideal + 2e-5) << "triangle harmonic " << k;
            EXPECT_NEAR(sineCoefficient(out, 0.0, f, k), 0.0, 2e-5) << "triangle harmonic " << k;
        }
    }
}

// The residual path at any increment: a phase-modulated High sawtooth whose modulator is silent.
std::vector<float> residualSawBlock(float f, float phase) {
    Rig rig;
    rig.setFrequency(f);
    rig.setDepth(1.0f);
    rig.modulator.at(0).level = 0.0f;
    WaveGenerator& fm = rig.make(GeneratorMode::Fm, kSawHigh, phase);
    return rig.block(fm);
}

TEST(WaveGenerators, HighSawtoothCrossfadesOverOneBlockWhenTheRegimeChanges) {
    const float table = 0.06f;     // 8 harmonics fit: the 8-harmonic table
    const float residual = 0.05f;  // 10 harmonics fit: the residual path
    for (bool towardResidual : {true, false}) {
        Rig rig;
        rig.setFrequency(towardResidual ? table : residual);
        WaveGenerator& saw = rig.make(GeneratorMode::Plain, kSawHigh, 0.3f);
        rig.block(saw);
        const float start = saw.phase();
        const float f = towardResidual ? residual : table;
        rig.setFrequency(f);
        auto mixed = rig.block(saw);
        auto corrected = residualSawBlock(f, start);
        double p = start;
        for (int n = 0; n < 64; ++n, p = wrap(p + f)) {
            double w = n / 64.0;  // 0 at the first sample, growing by 1/B
            double oldValue = towardResidual ? additiveSaw(p, 8) : corrected[static_cast<std::size_t>(n)];
            double newValue = towardResidual ? corrected[static_cast<std::size_t>(n)] : additiveSaw(p, 8);
            ASSERT_NEAR(mixed[static_cast<std::size_t>(n)], (1 - w) * oldValue + w * newValue, 3e-4)
                << (towardResidual ? "toward residual" : "toward table") << " sample " << n;
        }
        // The next block stays in the new regime without a crossfade.
        const float next = saw.phase();
        auto settled = rig.block(saw);
        auto reference = residualSawBlock(f, next);
        p = next;
        for (int n = 0; n < 64; ++n, p = wrap(p + f)) {
            double expected = towardResidual ? reference[static_cast<std::size_t>(n)] : additiveSaw(p, 8);
            ASSERT_NEAR(settled[static_cast<std::size_t>(n)], expected, 3e-4) << "settled sample " << n;
        }
    }
    // A change of harmonic count that keeps the table does not crossfade.
    Rig rig;
    rig.setFrequency(0.06f);
    WaveGenerator& saw = rig.make(GeneratorMode::Plain, kSawHigh, 0.3f);
    rig.block(saw);
    rig.setFrequency(0.061f);
    double p = saw.phase();
    auto out = rig.block(saw);
    for (int n = 0; n < 64; ++n, p = wrap(p + 0.061f)) ASSERT_NEAR(out[static_cast<std::size_t>(n)], additiveSaw(p, 8), 3e-4);
}

TEST(WaveGenerators, HighTriangleAtSixteenHarmonicsReadsTheFifteenthHarmonicTable) {
    Rig rig;
    const float f = 0.5f / 16.5f;  // 16 harmonics fit: entry 7, odd harmonics 1 .. 15
    rig.setFrequency(f);
    WaveGenerator& triangle = rig.make(GeneratorMode::Plain, kTriangleHigh, 0.71f);
    // A new free-running High triangle counts as having had one harmonic: its first block (tick 0, no
    // gap after construction) crossfades from the one-harmonic table.
    auto first = rig.block(triangle, 0);
    double p = 0.71;
    for (int n = 0; n < 64; ++n, p = wrap(p + f)) {
        double w = n / 64.0;
        ASSERT_NEAR(first[static_cast<std::size_t>(n)], (1 - w) * additiveTriangle(p, 1) + w * additiveTriangle(p, 15), 3e-4) << n;
    }
    auto second = rig.block(triangle);
    for (int n = 0; n < 64; ++n, p = wrap(p + f))
        ASSERT_NEAR(second[static_cast<std::size_t>(n)], additiveTriangle(p, 15), 3e-4) << n;

    // One more harmonic fits: the residual path, whose peak is close to the naive triangle's 0.5.
    rig.setFrequency(0.5f / 17.5f);
    rig.block(triangle);
    auto residual = rig.blocks(triangle, 2);
    EXPECT_NEAR(*std::max_element(residual.begin(), residual.end()), 0.5f, 0.03f);
}

TEST(WaveGenerators, FmDepthAtOrBelowThresholdRendersThePlainWaveformWithoutTheModulator) {
    struct Case { int index; float f; } cases[] = {{kSawLow, 0.0123f}, {kSineMiddle, 0.0123f}, {kPulseHigh, 0.03f}};
    for (const Case& c : cases) {
        Rig rig;
        rig.setFrequency(c.f);
        rig.setWidth(0.3f);
        rig.setDepth(0.001f);
        WaveGenerator& fm = rig.make(GeneratorMode::Fm, c.index, 0.42f);
        WaveGenerator& plain = rig.make(GeneratorMode::Plain, c.index, 0.42f);
        for (int b = 1; b <= 3; ++b) {
            fm.update(b);
            plain.update(b);
            for (int n = 0; n < 64; ++n) ASSERT_EQ(fm.block()[n], plain.block()[n]) << c.index << " sample " << n;
        }
        EXPECT_EQ(rig.modulator.at(0).renders, 0) << "the modulator is not even computed";
    }
}

TEST(WaveGenerators, FmDepthAboveThresholdAtEitherEndModulatesTheWholeBlock) {
    Rig rig;
    const float f = 0.0123f;
    const float m = rig.modulator.at(0).level;
    rig.setFrequency(f);
    rig.setDepth(0.001f);
    WaveGenerator& fm = rig.make(GeneratorMode::Fm, kSawLow, 0.42f);
    rig.block(fm);
    ASSERT_EQ(rig.modulator.at(0).renders, 0);
    struct Step { float depth; float previous; } steps[] = {{0.0011f, 0.001f}, {0.0f, 0.0011f}, {0.25f, 0.0f}};
    for (const Step& s : steps) {
        rig.setDepth(s.depth);
        double p = fm.phase();
        auto out = rig.block(fm);
        for (int n = 0; n < 64; ++n, p = wrap(p + f)) {
            double d = s.previous + (n + 1) * (s.depth - s.previous) / 64.0;
            ASSERT_NEAR(out[static_cast<std::size_t>(n)], 0.5 - wrap(p + d * m), 1e-5) << "depth " << s.depth << " sample " << n;
        }
    }
    EXPECT_EQ(rig.modulator.at(0).renders, 3);
}

TEST(WaveGenerators, SyncAtTheSlaveFrequencyChangesNothing) {
    struct Case { int syncIndex; int plainIndex; } cases[] = {
        {kSawLow, kSawLow}, {kSawMiddle, kSawMiddle}, {kTriangleMiddle, kTriangleMiddle}, {kPulseHigh, kPulseMiddle}};
    const float f = 0.0137f;
    for (const Case& c : cases) {
        // Slave and master in step: every reset lands where the slave already is.
        Rig rig;
        rig.setFrequency(f);
        rig.master.at(0).set(f);
        auto& synced = static_cast<SyncGenerator&>(rig.make(GeneratorMode::Sync, c.syncIndex, 0.3f));
        synced.setMasterPhase(0.3f);
        WaveGenerator& plain = rig.make(GeneratorMode::Plain, c.plainIndex, 0.3f);
        for (int b = 1; b <= 4; ++b) {
            synced.update(b);
            plain.update(b);
            for (int n = 0; n < 64; ++n) ASSERT_NEAR(synced.block()[n], plain.block()[n], 2e-4) << c.syncIndex << " block " << b << " sample " << n;
        }
        // Out of step: after the first master wrap the slave follows the master's phase.
        Rig apart;
        apart.setFrequency(f);
        apart.master.at(0).set(f);
        auto& late = static_cast<SyncGenerator&>(apart.make(GeneratorMode::Sync, c.syncIndex, 0.7f));
        late.setMasterPhase(0.2f);
        WaveGenerator& follower = apart.make(GeneratorMode::Plain, c.plainIndex, 0.2f);
        int firstWrap = static_cast<int>(std::ceil(0.8 / f)) - 1;
        for (int b = 1; b <= 4; ++b) {
            late.update(b);
            follower.update(b);
            for (int n = 0; n < 64; ++n)
                if ((b - 1) * 64 + n > firstWrap + 2) {
                    ASSERT_NEAR(late.block()[n], follower.block()[n], 2e-4) << c.syncIndex << " sample " << n;
                }
        }
    }
}

TEST(WaveGenerators, SyncedLowSineRestartsEachMasterPeriodAtItsPositivePeak) {
    Rig rig;
    const float f = 0.037f;
    rig.setFrequency(f);
    rig.master.at(0).set(1.0f / 64.0f);  // the master wraps exactly every 64 samples
    auto& sine = static_cast<SyncGenerator&>(rig.make(GeneratorMode::Sync, kSineLow, 0.3f));
    sine.setMasterPhase(0.0f);
    auto out = rig.blocks(sine, 4);
    for (int period = 1; period < 4; ++period) {
        EXPECT_EQ(out[static_cast<std::size_t>(64 * period)], 0.5f) << "period " << period;
        for (int j = 0; j < 64; ++j)
            ASSERT_NEAR(out[static_cast<std::size_t>(64 * period + j)], 0.5 * std::cos(2 * M_PI * j * f), 1e-5) << j;
    }
}

TEST(WaveGenerators, MiddleSyncBridgesTheResetOverTwoSamples) {
    const float f = 0.0123f;
    const float p0 = 0.1f;
    Rig rig;
    rig.setFrequency(f);
    rig.master.at(0).set(1.0f / 64.0f);
    auto& smooth = static_cast<SyncGenerator&>(rig.make(GeneratorMode::Sync, kSawMiddle, p0));
    auto& hard = static_cast<SyncGenerator&>(rig.make(GeneratorMode::Sync, kSawLow, p0));
    smooth.setMasterPhase(0.0f);
    hard.setMasterPhase(0.0f);
    smooth.update(1);
    hard.update(1);
    smooth.update(2);
    hard.update(2);
    // The master wraps after sample 63, where the slave was at p63; the slave restarts at 0.
    const double p63 = p0 + 63.0 * f;
    const float* out = smooth.block();
    // Where the cut happened the waveform continues (the delayed sawtooth's value one sample on) ...
    EXPECT_NEAR(out[0], 0.5 - p63, 2e-5);
    // ... half way the parabolas meet ...
    EXPECT_NEAR(out[1], (1.0 - p63 - f) / 2.0, 2e-5);
    // ... and at 2f the regular waveform takes over.
    EXPECT_NEAR(out[2], 0.5 - f, 2e-5);
    EXPECT_NEAR(out[3], 0.5 - 2 * f, 2e-5);
    // The Low sync sawtooth jumps straight to the top.
    EXPECT_EQ(hard.block()[0], 0.5f);
}

TEST(WaveGenerators, AGapInTheTicksOrAResetForgetsTheRamps) {
    // Low pulse: below the width the output is -w, so each sample shows the width it used.
    auto lowSamples = [](const std::vector<float>& out, int first) {
        std::vector<float> widths;
        for (int n = first; n < 64; ++n) widths.push_back(-out[static_cast<std::size_t>(n)]);
        return widths;
    };
    for (int variant = 0; variant < 3; ++variant) {
        Rig rig;
        rig.setFrequency(1.0f / 64.0f);
        rig.setWidth(0.5f);
        WaveGenerator& pulse = rig.make(GeneratorMode::Plain, kPulseLow, 0.0f);
        pulse.update(1);
        rig.setWidth(0.25f);
        if (variant == 2) pulse.reset(2);
        pulse.update(variant == 0 ? 2 : 3);
        std::vector<float> out(pulse.block(), pulse.block() + 64);
        auto widths = lowSamples(out, 40);  // samples 40 .. 63 lie above either width
        for (std::size_t i = 0; i < widths.size(); ++i) {
            double k = 40.0 + i + 1.0;
            double expected = variant == 0 ? 0.5 - 0.25 * k / 64.0 : 0.25;
            ASSERT_NEAR(widths[i], expected, 1e-6) << "variant " << variant << " sample " << 40 + i;
        }
    }
    // The harmonic count is forgotten too: after a gap a regime change does not crossfade.
    Rig rig;
    rig.setFrequency(0.06f);
    WaveGenerator& saw = rig.make(GeneratorMode::Plain, kSawHigh, 0.3f);
    saw.update(1);
    rig.setFrequency(0.05f);
    float start = saw.phase();
    saw.update(5);
    Rig fresh;
    fresh.setFrequency(0.05f);
    WaveGenerator& reference = fresh.make(GeneratorMode::Plain, kSawHigh, start);
    reference.update(1);
    for (int n = 0; n < 64; ++n) ASSERT_FLOAT_EQ(saw.block()[n], reference.block()[n]);
}

TEST(WaveGenerators, EveryInstanceStartsAtTheNextRandomPhaseOfTheEngine) {
    ModuleGraph graph;
    auto plain = makeGeneratorContainer(graph, GeneratorMode::Plain, kSawHigh);
    auto synced = makeGeneratorContainer(graph, GeneratorMode::Sync, kPulseLow);
    UniformRandom sequence;  // a fresh engine's sequence
    ASSERT_EQ(plain->instancesAllocated(), 64);
    for (int i = 0; i < 64; ++i)
        ASSERT_EQ(static_cast<WaveGenerator*>(plain->instanceAt(i))->phase(), sequence.unipolar()) << i;
    for (int i = 0; i < 64; ++i) {
        auto* g = static_cast<SyncGenerator*>(synced->instanceAt(i));
        ASSERT_EQ(g->phase(), sequence.unipolar());
        ASSERT_EQ(g->masterPhase(), sequence.unipolar());
    }
}

}  // namespace
}  // namespace tolvane
