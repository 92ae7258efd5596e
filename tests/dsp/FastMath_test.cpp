#include "dsp/FastMath.h"

#include <cmath>

#include <gtest/gtest.h>

#include "dsp/Mappings.h"

namespace tolvane {
namespace {

TEST(FastMath, ExponentialFollowsLibraryWithinTableResolution) {
    for (float x = -20.0f; x < 20.0f; x += 0.173f) {
        double expected = std::exp(static_cast<double>(x));
        EXPECT_NEAR(fastExp(x), expected, expected * 2e-6) << "x = " << x;
    }
    EXPECT_EQ(fastExp(-89.0f), 0.0f);
    EXPECT_FLOAT_EQ(fastExp(0.0f), 1.0f);
}

TEST(FastMath, LogarithmFollowsLibraryWithinTableResolution) {
    for (float x = 1e-4f; x < 1e5f; x *= 1.37f) {
        EXPECT_NEAR(fastLn(x), std::log(static_cast<double>(x)), 2e-6 + 1e-6 * std::fabs(std::log(x)))
            << "x = " << x;
    }
}

TEST(FastMath, NoteToHzUsesHundredthSemitoneSteps) {
    EXPECT_NEAR(noteToHz(69.0f), 440.0f, 1e-3);
    EXPECT_NEAR(noteToHz(24.0f), 32.703f, 1e-3);
    EXPECT_NEAR(noteToHz(152.0f), 53159.0f, 1.0);
    // 60.5: 261.6256 Hz times 2^(50/1200)
    EXPECT_NEAR(noteToHz(60.5f), 261.6256 * std::pow(2.0, 50.0 / 1200.0), 1e-2);
    // No interpolation inside a hundredth of a semitone.
    EXPECT_EQ(noteToHz(69.001f), noteToHz(69.0f));
}

TEST(Mappings, QuantisationAndSemitones) {
    EXPECT_EQ(quantise(1.0f, 12), 11);
    EXPECT_EQ(quantise(0.999f, 12), 11);
    EXPECT_EQ(quantise(0.0833f, 12), 0);
    EXPECT_EQ(quantise(-0.5f, 12), 0);
    ValueMappings m;
    EXPECT_EQ(m.semitone.map(0.0f), -48.0f);
    EXPECT_EQ(m.semitone.map(1.0f), 48.0f);
    EXPECT_EQ(m.semitone.map(0.5f), 0.0f);
    EXPECT_EQ(m.semitone.map(47.6f / 97.0f), 0.0f);
    EXPECT_EQ(m.semitone.map(49.4f / 97.0f), 0.0f);
    EXPECT_EQ(m.semitone.map(49.6f / 97.0f), 1.0f);
}

}  // namespace
}  // namespace tolvane
