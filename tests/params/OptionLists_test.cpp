#include "params/OptionLists.h"

#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

struct ListCase {
    const char* name;
    const OptionList& list;
    int count;
    const char* firstShort;
    const char* firstLong;
    const char* lastShort;
    const char* lastLong;
};

const ListCase kLists[] = {
    {"offOn", options::offOn, 2, "Off", "Off", "On", "On"},
    {"bypassOn", options::bypassOn, 2, "Bypass", "Bypass", "On", "On"},
    {"oscWaveforms", options::oscWaveforms, 12, "SinL", "Sine (Low Quality)", "PulseH", "Pulse (High Quality)"},
    {"osc1Connections", options::osc1Connections, 16, "E1->N", "ENV1 -> (none)", "L2->PW", "LFO2 -> Freq + PWM"},
    {"osc2Connections", options::osc2Connections, 32, "E1->N", "ENV1 -> (none)", "L2>PWF",
     "LFO2 -> Freq + PWM + FM"},
    {"filterTypes", options::filterTypes, 16, "LP6", "Lowpass 6dB/Oct", "BR24", "Band Reject 24(12+12)dB/Oct"},
    {"saturationCurves", options::saturationCurves, 3, "Hard", "Hard Clip", "Soft", "Soft Clip"},
    {"filterConnections", options::filterConnections, 16, "E1->N", "ENV1 -> (none)", "L2->FR",
     "LFO2 -> Freq + Reso"},
    {"ampConnections", options::ampConnections, 4, "E1/L1", "ENV1 / LFO1", "E2/L2", "ENV2 / LFO2"},
    {"attackCurves", options::attackCurves, 3, "1", "1 (Fast)", "3", "3 (Slow)"},
    {"decayCurves", options::decayCurves, 3, "1", "1 (Linear)", "3", "3 (Fast)"},
    {"lfoWaveforms", options::lfoWaveforms, 64, "------", "(none)", "sTSqHR", "Sin+Tri+Saw+Sqr+S&H+Rnd"},
    {"lfoModes", options::lfoModes, 8, "P.....", "Poly", "M.TrTe", "Mono / Trigger / Tempo Sync"},
    {"lfoModesWithoutTempo", options::lfoModesWithoutTempo, 8, "P...**", "Poly", "M.Tr**",
     "Mono/Trig/[not available]"},
    {"feedbackConnections", options::feedbackConnections, 2, "Para", "Parallel", "Cross", "L/R Cross"},
    {"modSources", options::modSources, 138, "-", "(not assigned)", "Const.", "Constant"},
    {"modSensSources", options::modSensSources, 137, "-", "(not assigned)", "PolyAT", "Polyphonic Aftertouch"},
    {"modDestinations", options::modDestinations, 26, "-", "(not assigned)", "LFO2Ph", "LFO2 Phase"},
    {"bendRanges", options::bendRanges, 25, "0", "0 (disabled)", "24", "24"},
    {"midiChannels", options::midiChannels, 17, "OMNI", "OMNI", "16", "16"},
    {"controllerNames", options::controllerNames, 129, "-", "(not assigned)", "learn", "Learn..."},
};

TEST(OptionLists, CountsEndsAndTextLengths) {
    for (const ListCase& c : kLists) {
        SCOPED_TRACE(c.name);
        ASSERT_EQ(c.list.count(), c.count);
        EXPECT_STREQ(c.list.shortText(0), c.firstShort);
        EXPECT_STREQ(c.list.longText(0), c.firstLong);
        EXPECT_STREQ(c.list.shortText(c.count - 1), c.lastShort);
        EXPECT_STREQ(c.list.longText(c.count - 1), c.lastLong);
        // Out-of-range indices clamp to the ends.
        EXPECT_STREQ(c.list.shortText(-1), c.firstShort);
        EXPECT_STREQ(c.list.longText(c.count), c.lastLong);
        for (int i = 0; i < c.count; ++i) {
            EXPECT_GE(std::strlen(c.list.shortText(i)), 1u) << i;
            EXPECT_LE(std::strlen(c.list.shortText(i)), 8u) << i;  // fits the host's display
            EXPECT_GE(std::strlen(c.list.longText(i)), 1u) << i;
        }
    }
}

// Controllers 64, 120 and 123 are never offered; their places show the next controller.
TEST(OptionLists, SourcesAndControllersSkipReservedControllers) {
    struct Entry {
        int index;
        const char* sourceShort;
        const char* sourceLong;
        const char* controllerShort;
        const char* controllerLong;
    };
    const Entry entries[] = {
        {1, "ctl1", "Control 1", "1", "1 (Modulation)"},
        {3, "ctl3", "Control 3", "3", "3"},
        {32, "ctl32", "Control 32", "32", "32 (Bank LSB)"},
        {33, "ctl33", "Control 33", "33", "33 (#1 LSB)"},
        {63, "ctl63", "Control 63", "63", "63 (#31 LSB)"},
        {64, "ctl65", "Control 65", "65", "65 (Portamento)"},
        {65, "ctl65", "Control 65", "65", "65 (Portamento)"},
        {66, "ctl66", "Control 66", "66", "66 (Sostenuto)"},
        {119, "ctl119", "Control 119", "119", "119"},
        {120, "ctl121", "Control 121", "121", "121 (Reset Ctl.)"},
        {121, "ctl121", "Control 121", "121", "121 (Reset Ctl.)"},
        {122, "ctl122", "Control 122", "122", "122 (Local Ctl.)"},
        {123, "ctl124", "Control 124", "124", "124 (Omni Off)"},
        {124, "ctl124", "Control 124", "124", "124 (Omni Off)"},
        {125, "ctl125", "Control 125", "125", "125 (Omni On)"},
        {127, "ctl127", "Control 127", "127", "127 (Poly On)"},
    };
    for (const Entry& e : entries) {
        SCOPED_TRACE(e.index);
        EXPECT_STREQ(options::modSources.shortText(e.index), e.sourceShort);
        EXPECT_STREQ(options::modSources.longText(e.index), e.sourceLong);
        EXPECT_STREQ(options::modSensSources.shortText(e.index), e.sourceShort);
        EXPECT_STREQ(options::controllerNames.shortText(e.index), e.controllerShort);
        EXPECT_STREQ(options::controllerNames.longText(e.index), e.controllerLong);
    }
    // Every other controller reads as its own number, and its long text starts with it.
    for (int c = 1; c <= 127; ++c) {
        if (c == 64 || c == 120 || c == 123) continue;
        std::string number = std::to_string(c);
        EXPECT_EQ(options::controllerNames.shortText(c), number);
        std::string longText = options::controllerNames.longText(c);
        EXPECT_TRUE(longText == number || longText.rfind(number + " (", 0) == 0) << longText;
        EXPECT_EQ(options::modSources.longText(c), "Control " + number);
    }
    const char* namedShort[] = {"ENV1", "ENV2", "LFO1", "LFO2", "Key", "Vel", "Bend", "Ch.AT", "PolyAT", "Const."};
    for (int k = 0; k < 10; ++k) EXPECT_STREQ(options::modSources.shortText(128 + k), namedShort[k]);
    EXPECT_STREQ(options::modSources.longText(134), "Pitch Bend");
    EXPECT_STREQ(options::modSources.longText(135), "Channel Aftertouch");
}

TEST(OptionLists, ConnectionsAreTargetTimesFourPlusSource) {
    struct Connection {
        const OptionList& list;
        int index;
        const char* shortText;
        const char* longText;
    };
    const Connection connections[] = {
        {options::osc2Connections, 1, "E2->N", "ENV2 -> (none)"},
        {options::osc2Connections, 6, "L1->P", "LFO1 -> Frequency"},
        {options::osc2Connections, 13, "E2->PW", "ENV2 -> Freq + PWM"},
        {options::osc2Connections, 21, "E2->PF", "ENV2 -> Freq + FM"},
        {options::osc2Connections, 27, "L2->WF", "LFO2 -> PWM + FM"},
        {options::osc2Connections, 28, "E1>PWF", "ENV1 -> Freq + PWM + FM"},
        {options::filterConnections, 5, "E2->F", "ENV2 -> Frequency"},
        {options::filterConnections, 10, "L1->R", "LFO1 -> Resonance"},
        {options::filterConnections, 12, "E1->FR", "ENV1 -> Freq + Reso"},
    };
    for (const Connection& c : connections) {
        EXPECT_STREQ(c.list.shortText(c.index), c.shortText) << c.index;
        EXPECT_STREQ(c.list.longText(c.index), c.longText) << c.index;
    }
    // OSC1 offers the OSC2 connections without FM.
    for (int i = 0; i < 16; ++i) {
        EXPECT_STREQ(options::osc1Connections.shortText(i), options::osc2Connections.shortText(i));
        EXPECT_STREQ(options::osc1Connections.longText(i), options::osc2Connections.longText(i));
    }
}

std::vector<std::string> split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    size_t start = 0;
    for (size_t at; (at = text.find(separator, start)) != std::string::npos; start = at + separator.size())
        parts.push_back(text.substr(start, at - start));
    parts.push_back(text.substr(start));
    return parts;
}

TEST(OptionLists, LfoWaveformTextsFollowTheSetBits) {
    const std::vector<std::string> fullNames = {"Sine", "Triangle", "Sawtooth", "Square", "Sample&Hold", "Random"};
    const std::vector<std::string> shortNames = {"Sin", "Tri", "Saw", "Sqr", "S&H", "Rnd"};
    const char letters[] = "sTSqHR";
    for (int mask = 0; mask < 64; ++mask) {
        SCOPED_TRACE(mask);
        std::string shortText = options::lfoWaveforms.shortText(mask);
        std::string longText = options::lfoWaveforms.longText(mask);
        ASSERT_EQ(shortText.size(), 6u);
        std::vector<int> bits;
        for (int b = 0; b < 6; ++b) {
            bool set = (mask >> b) & 1;
            EXPECT_EQ(shortText[b], set ? letters[b] : '-');
            if (set) bits.push_back(b);
        }
        if (bits.empty()) {
            EXPECT_EQ(longText, "(none)");
            continue;
        }
        bool packed = bits.size() >= 5;
        if (bits.size() >= 2) {
            EXPECT_EQ(longText.find(' ') == std::string::npos, packed);
        }
        std::vector<std::string> words = split(longText, packed ? "+" : " + ");
        ASSERT_EQ(words.size(), bits.size());
        for (size_t k = 0; k < bits.size(); ++k)
            EXPECT_EQ(words[k], bits.size() <= 2 ? fullNames[bits[k]] : shortNames[bits[k]]);
    }
    EXPECT_STREQ(options::lfoWaveforms.longText(3), "Sine + Triangle");
    EXPECT_STREQ(options::lfoWaveforms.longText(48), "Sample&Hold + Random");
    EXPECT_STREQ(options::lfoWaveforms.longText(7), "Sin + Tri + Saw");
    EXPECT_STREQ(options::lfoWaveforms.longText(26), "Tri + Sqr + S&H");
    EXPECT_STREQ(options::lfoWaveforms.longText(31), "Sin+Tri+Saw+Sqr+S&H");
}

// Without a host tempo every short mode text ends in "**"; the long texts of the synced modes
// say that the tempo is not available.
TEST(OptionLists, LfoModesWithoutTempo) {
    for (int mode = 0; mode < 8; ++mode) {
        std::string withTempo = options::lfoModes.shortText(mode);
        std::string without = options::lfoModesWithoutTempo.shortText(mode);
        EXPECT_EQ(withTempo.substr(0, 4), without.substr(0, 4));
        EXPECT_EQ(without.substr(4), "**");
        EXPECT_EQ(withTempo.substr(4), (mode & 4) ? "Te" : "..");
        std::string longWithout = options::lfoModesWithoutTempo.longText(mode);
        if (mode & 4) {
            EXPECT_NE(longWithout.find("not available"), std::string::npos);
        } else {
            EXPECT_EQ(longWithout, options::lfoModes.longText(mode));
        }
    }
    EXPECT_STREQ(options::lfoModesWithoutTempo.longText(4), "Poly/[tempo not available]");
}

}  // namespace
}  // namespace tolvane
