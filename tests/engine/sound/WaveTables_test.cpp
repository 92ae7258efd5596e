#include <cmath>

#include <gtest/gtest.h>

#include "engine/sound/ResidualTables.h"
#include "engine/sound/WaveTables.h"

namespace tolvane {
namespace {

// A residual at t samples after the discontinuity.
float at(const ResidualTable& table, double t) { return table.lookup(static_cast<float>(t * 256.0)); }

TEST(ResidualTables, StepResidualHasTheShapeOfATaperedBandLimitedStep) {
    const StepResidualTable& r = stepResidualTable();
    EXPECT_FLOAT_EQ(r.value[0], -0.5f);
    EXPECT_NEAR(r.slope[0] * 256.0f, 1.0f, 1e-3) << "unit slope per sample at the step";

    // Values of Si(pi t)/pi - 0.5 after the taper; the taper may move them a little.
    struct Point { double t, value; } points[] = {{0.5, -0.063308}, {1.0, 0.087457}, {2.0, -0.044310},
                                                  {4.0, -0.017238}, {8.0, -0.002628}};
    for (const Point& p : points) EXPECT_NEAR(at(r, p.t), p.value, 1.5e-3) << "t = " << p.t;

    // The kernel is a sinc with its cut-off at half the sample rate: its zeros at whole samples make R
    // turn there, alternately a maximum and a minimum.
    for (int k = 1; k < 15; ++k) {
        int i = 256 * k;
        bool turn = (r.slope[i - 1] > 0.0f) != (r.slope[i] > 0.0f) || std::fabs(r.slope[i]) < 2e-7f;
        EXPECT_TRUE(turn) << "whole sample " << k;
    }
    // It ends at 0, and the last slope leads to 0.
    EXPECT_NEAR(r.value[4095], 0.0f, 1e-6);
    EXPECT_FLOAT_EQ(r.slope[4095], -r.value[4095]);
}

TEST(ResidualTables, RampResidualIsTheRunningIntegralOfTheStepResidual) {
    const StepResidualTable& r = stepResidualTable();
    const RampResidualTable& q = rampResidualTable();
    const double kInversePiSquared = 1.0 / (M_PI * M_PI);
    EXPECT_NEAR(q.value[0], kInversePiSquared, 1e-3);
    EXPECT_NEAR(at(q, 0.5), -0.031654, 1e-3);
    EXPECT_NEAR(at(q, 1.0), -0.011563, 1e-3);
    EXPECT_NEAR(at(q, 4.0), 0.000826, 1e-3);
    EXPECT_NEAR(q.value[4095], 0.0f, 1e-7);
    EXPECT_FLOAT_EQ(q.slope[4095], -q.value[4095]);

    // Slope of Q per sample = R, everywhere along the table.
    for (int i = 0; i < 4095; i += 37) {
        double slopePerSample = 256.0 * (q.value[i + 1] - q.value[i]);
        double midpoint = 0.5 * (r.value[i] + r.value[i + 1]);
        EXPECT_NEAR(slopePerSample, midpoint, 2e-4) << "point " << i;
    }
    // The minimum lies a little after half a sample.
    int lowest = 0;
    for (int i = 1; i < 512; ++i)
        if (q.value[i] < q.value[lowest]) lowest = i;
    EXPECT_NEAR(lowest / 256.0, 0.609, 0.02);
    EXPECT_NEAR(q.value[lowest], -0.034977, 5e-4);
}

// Cosine and sine amplitudes of harmonic k of a table, by a direct DFT.
void harmonic(const PeriodicTable& t, int k, double& cosine, double& sine) {
    cosine = sine = 0.0;
    for (int i = 0; i < t.size(); ++i) {
        double x = 2.0 * M_PI * k * i / t.size();
        cosine += t.values()[i] * std::cos(x);
        sine += t.values()[i] * std::sin(x);
    }
    cosine *= 2.0 / t.size();
    sine *= 2.0 / t.size();
}

TEST(WaveTables, SawTablesHoldExactlyTheirHarmonics) {
    const SawTableSet& set = sawTableSet();
    for (int h = 1; h <= 8; ++h) {
        const PeriodicTable& t = set.forHarmonics(h);
        ASSERT_EQ(t.size(), 1252);
        EXPECT_NEAR(t.values()[0], 0.0f, 1e-7);
        for (int k = 1; k <= 12; ++k) {
            double c, s;
            harmonic(t, k, c, s);
            double expected = k <= h ? 1.0 / (M_PI * k) : 0.0;  // the Fourier series of 0.5 - p
            EXPECT_NEAR(s, expected, 1e-6) << "table " << h << " harmonic " << k;
            EXPECT_NEAR(c, 0.0, 1e-6);
        }
    }
    const PeriodicTable& one = set.forHarmonics(1);
    for (int i = 0; i < 1252; i += 97) EXPECT_NEAR(one.values()[i], 0.3183099 * std::sin(2 * M_PI * i / 1252), 1e-7);
}

TEST(WaveTables, TriangleTablesHoldTheOddHarmonicsUpToTheirEntry) {
    const TriangleTableSet& set = triangleTableSet();
    for (int j = 0; j < 8; ++j) {
        const PeriodicTable& t = set.entry(j);
        ASSERT_EQ(t.size(), 728);
        for (int k = 1; k <= 18; ++k) {
            double c, s;
            harmonic(t, k, c, s);
            double expected = (k % 2 == 1 && k <= 2 * j + 1) ? 4.0 / (3.0 * M_PI * k * k) : 0.0;
            EXPECT_NEAR(c, expected, 1e-6) << "entry " << j << " harmonic " << k;
            EXPECT_NEAR(s, 0.0, 1e-6);
        }
    }
    EXPECT_FLOAT_EQ(set.entry(0).values()[0], 0.4244132f);
    // Adding harmonics brings the peak toward pi / 6.
    EXPECT_GT(set.entry(7).values()[0], 0.51f);
    EXPECT_LT(set.entry(7).values()[0], static_cast<float>(M_PI / 6.0));
}

TEST(WaveTables, LookupsInterpolateAndWrapToTheStartOfTheCycle) {
    const PeriodicTable& t = triangleTableSet().entry(2);
    const int n = t.size();
    const float* v = t.values();
    // Between the last point and the first: half way toward value[0].
    float p = (static_cast<float>(n) - 0.5f) / static_cast<float>(n);
    EXPECT_NEAR(t.lookup(p), 0.5f * (v[n - 1] + v[0]), 1e-6);
    EXPECT_FLOAT_EQ(t.slopes()[n - 1], v[0] - v[n - 1]);
    // Exact points, a fractional point, and a phase that rounded up to 1.
    EXPECT_FLOAT_EQ(t.lookup(0.0f), v[0]);
    EXPECT_NEAR(t.lookup(100.25f / n), 0.75f * v[100] + 0.25f * v[101], 1e-6);
    EXPECT_FLOAT_EQ(t.lookup(1.0f), v[0]);
    // Far from the points the interpolated table follows the closed form closely.
    for (float q = 0.0f; q < 1.0f; q += 0.0173f) {
        double expected = 0.0;
        for (int k = 1; k <= 5; k += 2) expected += std::cos(2 * M_PI * k * q) / (k * k);
        EXPECT_NEAR(t.lookup(q), expected * 4.0 / (3.0 * M_PI), 2e-4);
    }
}

}  // namespace
}  // namespace tolvane
