#include "params/TextHelpers.h"

#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

// A number, its decimals (fixed point) or width (float), whether to sign it, and the text.
struct Case {
    float x;
    int digits;
    bool sign;
    const char* expected;
};

TEST(TextHelpers, FixedPointRoundsAndSigns) {
    const Case cases[] = {
        {7.0f, 2, true, "+7.00"},      {0.5f, 0, false, "1"},         {0.0f, 3, true, "+0.000"},
        {-0.004f, 2, false, "-0.00"}, {1e9f, 0, false, "+Huge!"},   {-1e9f, 0, true, "-Huge!"},
        {2e6f, 2, false, "+Huge!"},   {12345678.0f, 0, false, "12345678"}, {1e8f, 0, false, "+Huge!"},
    };
    char text[kNumberTextSize];
    for (const Case& c : cases) {
        EXPECT_STREQ(fixedToText(text, c.x, c.digits, c.sign), c.expected) << c.x << " / " << c.digits;
    }
}

TEST(TextHelpers, FixedPointAgreesWithPrintfAwayFromTies) {
    char text[kNumberTextSize];
    char reference[64];
    for (int decimals = 0; decimals <= 4; ++decimals) {
        for (double x = -2000.0; x < 2000.0; x += 1.2345678) {
            float xf = static_cast<float>(x);
            double scaled = std::fabs(static_cast<double>(xf)) * std::pow(10.0, decimals);
            if (std::fabs(scaled - std::floor(scaled) - 0.5) < 0.01) continue;  // half-way cases round differently
            std::snprintf(reference, sizeof reference, "%.*f", decimals, static_cast<double>(xf));
            // printf writes "-0.00" only for negative numbers, like the helper.
            EXPECT_STREQ(fixedToText(text, xf, decimals), reference) << xf;
        }
    }
}

TEST(TextHelpers, FloatFillsTheWidth) {
    const Case cases[] = {
        {440.0f, 6, false, "440.00"}, {0.002f, 6, false, "0.0020"}, {22000.0f, 6, false, "22000"},
        {123456.0f, 6, false, "123456"}, {100.0f, 6, true, "+100.0"}, {-0.5f, 6, true, "-0.500"},
        {0.0f, 6, false, "0.0000"},   {5.0f, 1, false, "5"},        {0.25f, 8, false, "0.250000"},
        // The digits are counted before rounding, so a carry into a new digit makes the text longer.
        {9.99999f, 6, false, "10.0000"},
    };
    char text[kNumberTextSize];
    for (const Case& c : cases) {
        EXPECT_STREQ(floatToText(text, c.x, c.digits, c.sign), c.expected) << c.x << " / " << c.digits;
    }
}

TEST(TextHelpers, IntegersAndSuffixes) {
    char text[kNumberTextSize];
    EXPECT_STREQ(intToText(text, 0, true), "+0");
    EXPECT_STREQ(intToText(text, -48, true), "-48");
    EXPECT_STREQ(intToText(text, INT_MIN), std::to_string(INT_MIN).c_str());
    EXPECT_STREQ(intToText(text, INT_MAX), std::to_string(INT_MAX).c_str());

    // A suffix that would overflow the buffer is cut, and the text stays terminated.
    std::string longSuffix(200, 'x');
    fixedWithSuffix(text, 1.0f, 2, longSuffix.c_str());
    EXPECT_EQ(std::strlen(text), static_cast<size_t>(kNumberTextSize - 1));
    EXPECT_EQ(std::string(text, 4), "1.00");
}

TEST(TextHelpers, EightCharacterBaseLayerTexts) {
    char text[kNumberTextSize];
    EXPECT_STREQ(floatText8(text, -1.5f), "-1.50000");
    EXPECT_STREQ(floatText8(text, 12345678.0f), "12345678");
    EXPECT_STREQ(floatText8(text, -1234567.0f), "-1234567");
    EXPECT_STREQ(floatText8(text, 1e8f), " Huge!  ");
    EXPECT_STREQ(floatText8(text, -1e7f), " Huge!  ");
    EXPECT_STREQ(floatText8(text, -9.999999f), "-10.0000") << "a carry into a new digit costs a decimal";

    EXPECT_STREQ(integerText7(text, -5), "     -5");
    EXPECT_STREQ(integerText7(text, 99999999), "99999999");
    EXPECT_STREQ(integerText7(text, 100000000), " Huge!  ");

    EXPECT_STREQ(decibelText(text, 0.0f), "  -oo   ");
    // 20 log10(0.5) = -6.0206
    EXPECT_STREQ(decibelText(text, 0.5f), "-6.02060");

    EXPECT_STREQ(hzFromSamplesText(text, 100.0f, 44100.0f), "441.0000");
    EXPECT_STREQ(msFromSamplesText(text, 441.0f, 44100.0f), "10.00000");
}

}  // namespace
}  // namespace tolvane
