#include "params/Version1Program.h"

#include <algorithm>
#include <cmath>
#include <string>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

// The expected values are worked out here in double precision with the library's exp and log, from the
// old and new value ranges, and with the option tables written out by hand.

double oldCurve(double min, double max, double c, double v) {
    return min + (max - min) / (std::exp(c) - 1.0) * (std::exp(c * v) - 1.0);
}

// The normalised value an exponential min..max parameter needs to reach x.
double expPosition(double min, double max, double x) {
    if (x <= 0.0) return 0.0;
    double n = (std::log(x) - std::log(min)) / (std::log(max) - std::log(min));
    return std::clamp(n, 0.0, 1.0);
}

double opt(int k, int n) { return (k + 0.5) / n; }
int index(double v, int n) { return std::min(n - 1, static_cast<int>(v * n)); }

// Old oscillator waveform index (Low/Middle/High x Sine/Triangle/Sawtooth/Pulse) to the new index
// (Sine/Triangle/Sawtooth/Pulse x Low/Middle/High).
const int kNewWaveform[12] = {0, 3, 6, 9, 1, 4, 7, 10, 2, 5, 8, 11};
// Old filter mode 0..35 to the new filter type and saturation curve; on from 12, full saturation from 24.
const int kFilterType[36] = {0, 0, 0, 1, 1, 1, 2, 2, 2, 3, 3, 3, 0, 0, 0, 1, 1, 1,
                             2, 2, 2, 3, 3, 3, 4, 4, 4, 5, 5, 5, 6, 6, 6, 7, 7, 7};
const int kFilterCurve[36] = {0, 1, 2, 0, 1, 2, 0, 1, 2, 0, 1, 2, 0, 1, 2, 0, 1, 2,
                              0, 1, 2, 0, 1, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 2, 2};
// Old LFO waveform 0..11 to the new waveform bit set (of 64) and mode (of 8).
const int kLfoBits[12] = {1, 2, 4, 8, 16, 32, 1, 2, 4, 8, 16, 32};
const int kLfoMode[12] = {0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1};
const bool kLfoStepped[12] = {false, false, false, false, true, true, false, false, false, false, true, true};
// Old voice mode to Unison and Legato.
const float kUnison[4] = {0, 1, 0, 1};
const float kLegato[4] = {0, 0, 1, 1};

void expectedLfo(double wave, double speed, double* out) {
    int k = index(wave, 12);
    out[0] = opt(kLfoBits[k], 64);
    out[1] = opt(kLfoMode[k], 8);
    double hz = oldCurve(0.05, 20, 5, speed) * (kLfoStepped[k] ? 2.0 : 1.0);
    out[2] = expPosition(0.02, 50, hz);
}

// The whole converted record as the conversion table describes it.
void expectedConversion(const float (&o)[70], double (&n)[144]) {
    std::fill(n, n + 144, -1.0);  // any index left unset shows up as a mismatch
    n[0] = opt(kNewWaveform[index(o[0], 12)], 12);
    n[1] = 0;
    n[2] = o[1]; n[3] = o[2]; n[4] = o[3]; n[5] = o[4];
    n[6] = opt(index(o[5], 16), 16);
    n[7] = o[6]; n[8] = o[7];
    n[9] = opt(index(o[8], 16), 16);
    n[10] = o[9]; n[11] = o[10];
    n[12] = opt(kNewWaveform[index(o[11], 12)], 12);
    n[13] = 0;
    n[14] = o[12]; n[15] = o[13]; n[16] = o[14]; n[17] = o[15];
    n[18] = opt(index(o[16], 16), 32);
    n[19] = o[17]; n[20] = o[18];
    n[21] = opt(index(o[19], 16), 32);
    for (int j = 22; j <= 28; ++j) n[j] = o[j - 2];
    int m = index(o[27], 36);
    n[29] = m >= 12 ? 1.0 : 0.0;
    n[30] = opt(kFilterType[m], 16);
    n[31] = m >= 24 ? 1.0 : expPosition(0.1, 4, oldCurve(0.1, 4, 4, o[28]));
    n[32] = opt(kFilterCurve[m], 3);
    n[33] = std::clamp((24.0 + 112.0 * o[29] - 24.0) / 128.0, 0.0, 1.0);
    n[34] = o[30]; n[35] = o[31];
    n[36] = opt(index(o[32], 16), 16);
    n[37] = o[33]; n[38] = o[34];
    n[39] = opt(index(o[35], 16), 16);
    n[40] = o[36]; n[41] = o[37];
    n[42] = opt(index(o[38], 4), 4);
    n[43] = o[39]; n[44] = o[40];
    auto attack = [&](int i) { return expPosition(0.002, 20, oldCurve(0.005, 16, 5, o[i])); };
    auto decay = [&](int i) { return expPosition(0.004, 40, oldCurve(0.02, 16, 5, o[i])); };
    n[45] = attack(41); n[46] = o[42]; n[47] = decay(43); n[48] = 0.5; n[49] = o[44]; n[50] = decay(45);
    n[51] = attack(46); n[52] = o[47]; n[53] = decay(48); n[54] = 0.5; n[55] = o[49]; n[56] = decay(50);
    expectedLfo(o[51], o[52], &n[57]);
    n[60] = 0;
    expectedLfo(o[53], o[54], &n[61]);
    n[64] = 0;
    n[65] = 1; n[66] = 0; n[67] = o[55];
    n[68] = expPosition(0.001, 1, oldCurve(0.001, 1, 5, o[56]));
    n[69] = o[57]; n[70] = o[58]; n[71] = 0;
    n[72] = expPosition(0.01, 10, oldCurve(0.01, 10, 4, o[59]));
    n[73] = expPosition(20, 22000, oldCurve(20, 22000, 5, o[60]));
    n[74] = expPosition(20, 22000, oldCurve(20, 22000, 5, o[61]));
    n[75] = expPosition(0.02, 50, oldCurve(0.05, 20, 5, o[62]));
    n[76] = o[63]; n[77] = o[64];
    n[78] = kUnison[index(o[65], 4)];
    n[79] = kLegato[index(o[65], 4)];
    n[80] = 0.02; n[81] = o[67]; n[82] = o[68];
    for (int j = 83; j <= 90; ++j) n[j] = 0.5;
    for (int j = 91; j <= 98; ++j) n[j] = 0;
    for (int j = 99; j <= 106; ++j) n[j] = 0.5 / 138;
    for (int j = 107; j <= 114; ++j) n[j] = 0.5 / 137;
    for (int j = 115; j <= 122; ++j) n[j] = 0.5 / 26;
    n[123] = o[66];
    n[124] = 2.5 / 25;
    n[125] = o[69];
    for (int j = 126; j < 144; ++j) n[j] = 0;
}

ProgramRecord convert(const float (&o)[70], const char* name = "Old") {
    char field[32] = {};
    std::strncpy(field, name, 31);
    return convertVersion1Program(field, o);
}

void expectConversion(const float (&o)[70]) {
    double expected[144];
    expectedConversion(o, expected);
    ProgramRecord r = convert(o);
    for (int j = 0; j < 144; ++j) {
        // The fast logarithm and exponential agree with the library to a few parts in a million.
        EXPECT_NEAR(r.values[j], expected[j], 2e-5) << "new index " << j;
    }
}

// Old values away from the option boundaries, so that float and double agree on every index.
void sampleRecord(unsigned seed, float (&o)[70]) {
    unsigned state = seed;
    for (float& v : o) {
        state = state * 1664525u + 1013904223u;
        int step = static_cast<int>((state >> 8) % 720);  // 1/720 steps: multiples of 1/12, 1/16, 1/36...
        v = (step + 0.37f) / 720.0f;
    }
}

TEST(Version1Program, WholeRecordFollowsTheConversionTable) {
    for (unsigned seed : {1u, 2u, 3u, 99u, 12345u}) {
        SCOPED_TRACE(seed);
        float o[70];
        sampleRecord(seed, o);
        expectConversion(o);
    }
    float zeros[70] = {};
    expectConversion(zeros);
    float ones[70];
    std::fill(ones, ones + 70, 1.0f);
    expectConversion(ones);
}

TEST(Version1Program, EveryOptionOfTheReorderedParameters) {
    float o[70];
    sampleRecord(7, o);
    // Each option of the old oscillator waveforms, filter modes, LFO waveforms and voice modes.
    for (int k = 0; k < 36; ++k) {
        SCOPED_TRACE(k);
        if (k < 12) {
            o[0] = o[11] = o[51] = o[53] = static_cast<float>((k + 0.5) / 12);
        }
        if (k < 16) o[5] = o[8] = o[16] = o[19] = o[32] = o[35] = static_cast<float>((k + 0.5) / 16);
        if (k < 4) o[38] = o[65] = static_cast<float>((k + 0.5) / 4);
        o[27] = static_cast<float>((k + 0.5) / 36);
        expectConversion(o);
    }
}

TEST(Version1Program, NamedExamples) {
    float o[70];
    sampleRecord(5, o);
    o[0] = 0.4f;           // old index 4 is Middle Sine, the second waveform of the new list ("SinM")
    o[27] = 30.5f / 36.0f; // old filter mode 30: on, type 6 ("HP18"), saturation at full whatever the old level
    o[28] = 0.1f;
    o[41] = 1.0f;          // 16 s attack sits at ln(8000)/ln(10000), about 0.903, between 2 ms and 20 s
    o[60] = 0.0f;          // the ends of the cut frequency ranges coincide
    o[61] = 1.0f;
    ProgramRecord r = convert(o, "Vintage");
    EXPECT_STREQ(r.name, "Vintage");
    EXPECT_EQ(static_cast<int>(r.values[0] * 12), 1);
    EXPECT_EQ(r.values[29], 1.0f);
    EXPECT_EQ(static_cast<int>(r.values[30] * 16), 6);
    EXPECT_EQ(r.values[31], 1.0f);
    EXPECT_NEAR(r.values[45], std::log(16.0 / 0.002) / std::log(10000.0), 2e-5);
    EXPECT_NEAR(r.values[73], 0.0, 2e-5);
    EXPECT_NEAR(r.values[74], 1.0, 2e-5);
}

}  // namespace
}  // namespace tolvane
