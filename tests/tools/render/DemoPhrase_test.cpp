#include "tools/render/DemoPhrase.h"

#include <cmath>
#include <map>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(DemoPhrase, EveryNoteEndsAndTheTimingSitsOnTheBeatGrid) {
    const std::vector<MidiMessage> phrase = demoPhrase();
    ASSERT_FALSE(phrase.empty());
    // A sixteenth note at 120 bpm is 0.125 s; every note starts on that grid.
    const double sixteenth = 60.0 / kDemoTempo / 4.0;
    std::map<int, int> sounding;  // key -> number of unfinished notes
    double previous = 0.0;
    int notes = 0;
    for (const MidiMessage& m : phrase) {
        ASSERT_EQ(m.size, 3);
        EXPECT_GE(m.seconds, previous);
        previous = m.seconds;
        const int key = m.bytes[1];
        EXPECT_GE(key, 36);
        EXPECT_LE(key, 96);
        if (m.bytes[0] == 0x90) {
            EXPECT_GT(m.bytes[2], 0);
            EXPECT_LT(m.bytes[2], 128);
            const double steps = m.seconds / sixteenth;
            EXPECT_NEAR(steps, std::round(steps), 1e-9) << m.seconds;
            EXPECT_EQ(sounding[key], 0) << "key " << key << " struck again while sounding at " << m.seconds;
            ++sounding[key];
            ++notes;
        } else {
            ASSERT_EQ(m.bytes[0], 0x80);
            EXPECT_EQ(sounding[key], 1) << "key " << key << " released while silent at " << m.seconds;
            --sounding[key];
        }
    }
    for (const auto& [key, count] : sounding) EXPECT_EQ(count, 0) << "key " << key << " never released";
    EXPECT_GT(notes, 60);
    // About twenty seconds, and the last release is the phrase's end.
    EXPECT_NEAR(demoPhraseSeconds(), previous, 1e-12);
    EXPECT_GT(demoPhraseSeconds(), 18.0);
    EXPECT_LT(demoPhraseSeconds(), 22.0);
}

}  // namespace
}  // namespace tolvane
