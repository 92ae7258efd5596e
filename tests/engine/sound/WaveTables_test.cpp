#include <cmath>

#include <gtest/gtest.h>

#include "engine/sound/ResidualTables.h"
#include "engine/sound/WaveTables.h"

namespace tolvane {
namespace {

float at(const ResidualTable& table, double t) { return table.lookup(static_cast<float>(t * 256.0)); }

TEST(ResidualTables, StepResidualIsATaperedBandLimitedStepAndRampResidualItsIntegral) {
    const StepResidualTable& r = stepResidualTable();
    const RampResidualTable& q = rampResidualTable();
    EXPECT_FLOAT_EQ(r.value[0], -0.5f);
    EXPECT_NEAR(r.slope[0] * 256.0f, 1.0f, 1e-3) << "unit slope per sample at the step";
    // Si(pi t)/pi - 0.5 and its running integral, both after the taper.
    const double step[][2] = {{0.5, -0.063308}, {1, 0.087457}, {2, -0.044310}, {4, -0.017238}, {8, -0.002628}};
    for (const auto& p : step) EXPECT_NEAR(at(r, p[0]), p[1], 1e-4) << "R at " << p[0];
    const double ramp[][2] = {{0, 1.0 / (M_PI * M_PI)}, {0.5, -0.031654}, {1, -0.011563}, {4, 0.000826}};
    for (const auto& p : ramp) EXPECT_NEAR(at(q, p[0]), p[1], 1e-5) << "Q at " << p[0];

    // The ringing peaks near whole samples; the taper moves the first maximum to just before t = 1.
    int peak = 0;
    for (int i = 0; i < 2 * 256; ++i)
        if (r.value[i] > r.value[peak]) peak = i;
    EXPECT_GT(peak, 250);
    EXPECT_LT(peak, 256);
    EXPECT_NEAR(r.value[peak], 0.087465, 1e-4);
    // Q's slope per sample is R, up to the taper's own slope (Q times the taper's slope, at most ~1e-3).
    for (int i = 0; i < 4095; i += 37) EXPECT_NEAR(256.0 * q.slope[i], 0.5 * (r.value[i] + r.value[i + 1]), 1.5e-3) << i;
    // Both end at 0 and their last slope leads there.
    for (const ResidualTable* t : {static_cast<const ResidualTable*>(&r), static_cast<const ResidualTable*>(&q)}) {
        EXPECT_NEAR(t->value[4095], 0.0f, 1e-6);
        EXPECT_FLOAT_EQ(t->slope[4095], -t->value[4095]);
    }
}

// Cosine or sine amplitude of harmonic k of a table, by a direct DFT.
double harmonic(const PeriodicTable& t, int k, bool sine) {
    double sum = 0.0;
    for (int i = 0; i < t.size(); ++i) {
        double x = 2.0 * M_PI * k * i / t.size();
        sum += t.values()[i] * (sine ? std::sin(x) : std::cos(x));
    }
    return 2.0 * sum / t.size();
}

TEST(WaveTables, EachTableHoldsExactlyItsHarmonics) {
    for (int h = 1; h <= 8; ++h) {  // the Fourier series of 0.5 - p, cut after h harmonics
        const PeriodicTable& t = sawTableSet().forHarmonics(h);
        ASSERT_EQ(t.size(), 1252);
        for (int k = 1; k <= 12; ++k) {
            EXPECT_NEAR(harmonic(t, k, true), k <= h ? 1.0 / (M_PI * k) : 0.0, 1e-6) << "saw " << h << " harmonic " << k;
            EXPECT_NEAR(harmonic(t, k, false), 0.0, 1e-6);
        }
    }
    for (int j = 0; j < 8; ++j) {  // odd cosines 4 / (3 pi k^2) up to 2j + 1
        const PeriodicTable& t = triangleTableSet().entry(j);
        ASSERT_EQ(t.size(), 728);
        for (int k = 1; k <= 18; ++k) {
            double expected = (k % 2 == 1 && k <= 2 * j + 1) ? 4.0 / (3.0 * M_PI * k * k) : 0.0;
            EXPECT_NEAR(harmonic(t, k, false), expected, 1e-6) << "triangle " << j << " harmonic " << k;
            EXPECT_NEAR(harmonic(t, k, true), 0.0, 1e-6);
        }
    }
    EXPECT_FLOAT_EQ(triangleTableSet().entry(0).values()[0], 0.4244132f);
    EXPECT_NEAR(sawTableSet().forHarmonics(8).values()[0], 0.0f, 1e-7);
}

TEST(WaveTables, LookupsInterpolateAndTheLastPointLeadsBackToTheFirst) {
    const PeriodicTable& t = triangleTableSet().entry(2);
    const int n = t.size();
    const float* v = t.values();
    EXPECT_NEAR(t.lookup((n - 0.5f) / n), 0.5f * (v[n - 1] + v[0]), 1e-6);
    EXPECT_NEAR(t.lookup(100.25f / n), 0.75f * v[100] + 0.25f * v[101], 1e-6);
    EXPECT_FLOAT_EQ(t.lookup(1.0f), v[0]) << "a phase that rounded up to 1 reads the start of the cycle";
}

}  // namespace
}  // namespace tolvane
