#include "dsp/TempoDivisions.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

// Length in whole notes of a division named "a" or "a/b".
double wholeNotes(const char* name) {
    char* end = nullptr;
    double a = std::strtod(name, &end);
    return *end == '/' ? a / std::strtod(end + 1, nullptr) : a;
}

TEST(TempoDivisions, LfoFactorsAreCyclesPerNamedLength) {
    double previous = 0.0;
    for (int i = 0; i < kNumLfoDivisions; ++i) {
        double k = lfoDivisionFactor(i);
        EXPECT_NEAR(k, 1.0 / wholeNotes(lfoDivisionName(i)), 1e-6 * k) << lfoDivisionName(i);
        EXPECT_GT(k, previous) << "divisions run from slow to fast";
        previous = k;
    }
    EXPECT_STREQ(lfoDivisionName(0), "16");
    EXPECT_STREQ(lfoDivisionName(2), "32/3");
    EXPECT_STREQ(lfoDivisionName(30), "1/64");
    EXPECT_STREQ(lfoDivisionName(99), "1/64");
}

TEST(TempoDivisions, LfoIndexAndRate) {
    EXPECT_EQ(lfoDivisionIndex(0.0f), 0);
    EXPECT_EQ(lfoDivisionIndex(-0.3f), 0);
    EXPECT_EQ(lfoDivisionIndex(std::numeric_limits<float>::quiet_NaN()), 0);
    EXPECT_EQ(lfoDivisionIndex(12.5f / 31.0f), 12);
    EXPECT_EQ(lfoDivisionIndex(0.999f), 30);
    EXPECT_EQ(lfoDivisionIndex(1.0f), 30);
    EXPECT_EQ(lfoDivisionIndex(3.0f), 30);
    // One whole note at 90 beats per minute lasts 8/3 s: "1/64" runs at 64 x 90 / 240 Hz (the LFO's test
    // checks "1" and "3/2" at 120).
    EXPECT_NEAR(lfoTempoRate(30, 90.0f), 64.0 * 90.0 / 240.0, 1e-4);
}

TEST(TempoDivisions, DelayValuesAreSecondsPerNamedLength) {
    for (int i = 0; i < kNumDelayDivisions; ++i) {
        EXPECT_NEAR(delayDivisionValue(i), 240.0 * wholeNotes(delayDivisionName(i)), 1e-4) << i;
        // The delay offers the LFO's divisions from "1/64" up to "2", shortest first.
        EXPECT_STREQ(delayDivisionName(i), lfoDivisionName(kNumLfoDivisions - 1 - i));
    }
    EXPECT_EQ(delayDivisionIndex(0.0f), 0);
    EXPECT_NEAR(delayDivisionSeconds(12, 120.0f), 0.5, 1e-6);
    EXPECT_EQ(delayDivisionSeconds(12, 0.0f), 0.0f);
    EXPECT_EQ(delayDivisionSeconds(12, -1.0f), 0.0f);
}

}  // namespace
}  // namespace tolvane
