#include "params/Version1Program.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

ProgramRecord convert(const float (&o)[70], const char* name = "Old") {
    char field[32] = {};
    std::strncpy(field, name, 31);
    return convertVersion1Program(field, o);
}

// A record with every old value in the middle of its range.
void middleRecord(float (&o)[70]) { std::fill(o, o + 70, 0.5f); }

TEST(Version1Program, NamedExamples) {
    float o[70];
    middleRecord(o);
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

TEST(Version1Program, WorkedOptionExamples) {
    // old value -> what the new parameter reads as (an option index of n, or a value)
    struct Case {
        int oldIndex;
        float oldValue;
        int newIndex;
        int options;  // 0: compare the value itself
        double expected;
    };
    const Case cases[] = {
        {0, 11.5f / 12, 0, 12, 11},         // High Pulse stays the last waveform
        {0, 2.5f / 12, 0, 12, 6},           // old Low Sawtooth: the third shape, low quality first
        {27, 5.5f / 36, 29, 0, 0.0},        // old filter modes below 12 are bypassed
        {27, 13.5f / 36, 29, 0, 1.0},       // from 12 on
        {65, 1.5f / 4, 78, 0, 1.0},         // voice mode 1: unison without legato
        {65, 1.5f / 4, 79, 0, 0.0},
        {65, 3.5f / 4, 79, 0, 1.0},         // voice mode 3: both
        {51, 7.5f / 12, 58, 8, 1},          // the second half of the old LFO waveforms is tempo-synced
        {16, 3.5f / 16, 18, 32, 3},         // OSC2 keeps its old connections as the first sixteen
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.oldIndex);
        float o[70];
        middleRecord(o);
        o[c.oldIndex] = c.oldValue;
        const float v = convert(o).values[c.newIndex];
        if (c.options > 0)
            EXPECT_EQ(std::min(c.options - 1, static_cast<int>(v * c.options)), c.expected);
        else
            EXPECT_EQ(v, c.expected);
    }
    // Values the old format did not have start where the new ones begin: no voice detune drift, the
    // slots unassigned, a bend range of two semitones.
    float o[70];
    middleRecord(o);
    const ProgramRecord r = convert(o);
    EXPECT_EQ(static_cast<int>(r.values[124] * 25), 2);
    EXPECT_EQ(static_cast<int>(r.values[99] * 138), 0);
}

}  // namespace
}  // namespace tolvane
