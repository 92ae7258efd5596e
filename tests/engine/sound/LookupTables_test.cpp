#include "engine/sound/LookupTables.h"

#include <cmath>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(LookupTables, SineAndCosineViews) {
    const SineTable& t = sineTable();
    EXPECT_FLOAT_EQ(t.sine(0.25f), 1.0f);
    EXPECT_FLOAT_EQ(t.cosine(0.0f), 1.0f);
    for (float p = 0.0f; p < 1.0f; p += 0.0137f) {
        EXPECT_NEAR(t.sine(p), std::sin(2.0 * M_PI * p), 2e-6);
        EXPECT_NEAR(t.cosine(p), std::cos(2.0 * M_PI * p), 2e-6);
    }
    // The last entry interpolates toward the continuation of the sine.
    EXPECT_NEAR(t.lookup(5119.5f), std::sin(2.0 * M_PI * 5119.5 / 4096.0), 2e-6);
}

TEST(LookupTables, TangentAroundZeroAndQuarter) {
    const TangentTable& t = tangentTable();
    EXPECT_NEAR(t.tanPi(0.0f), 0.0f, 1e-7);
    EXPECT_NEAR(t.tanPi(0.25f), 1.0f, 1e-6);
    EXPECT_NEAR(t.tanPi(0.1f), std::tan(M_PI * 0.1), 1e-4);
}

TEST(LookupTables, NoteFrequencies) {
    const NoteFrequencyTable& t = noteFrequencyTable();
    EXPECT_FLOAT_EQ(t.frequency(69.0f), 440.0f);
    EXPECT_NEAR(t.frequency(60.5f), 261.6256 * std::pow(2.0, 50.0 / 1200.0), 1e-2);
    EXPECT_NEAR(t.note[0], 8.175799f, 1e-5);
    EXPECT_NEAR(t.note[159], 79648.51f, 0.05);
}

}  // namespace
}  // namespace tolvane
