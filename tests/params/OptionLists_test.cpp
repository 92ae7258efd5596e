#include "params/OptionLists.h"

#include <cstring>
#include <string>

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
    {"oscWaveforms", options::oscWaveforms, 12, "SinL", "Sine (Low Quality)", "PulseH", "Pulse (High Quality)"},
    {"osc1Connections", options::osc1Connections, 16, "E1->N", "ENV1 -> (none)", "L2->PW", "LFO2 -> Freq + PWM"},
    {"osc2Connections", options::osc2Connections, 32, "E1->N", "ENV1 -> (none)", "L2>PWF",
     "LFO2 -> Freq + PWM + FM"},
    {"filterTypes", options::filterTypes, 16, "LP6", "Lowpass 6dB/Oct", "BR24", "Band Reject 24(12+12)dB/Oct"},
    {"filterConnections", options::filterConnections, 16, "E1->N", "ENV1 -> (none)", "L2->FR",
     "LFO2 -> Freq + Reso"},
    {"ampConnections", options::ampConnections, 4, "E1/L1", "ENV1 / LFO1", "E2/L2", "ENV2 / LFO2"},
    {"lfoWaveforms", options::lfoWaveforms, 64, "------", "(none)", "sTSqHR", "Sin+Tri+Saw+Sqr+S&H+Rnd"},
    {"lfoModes", options::lfoModes, 8, "P.....", "Poly", "M.TrTe", "Mono / Trigger / Tempo Sync"},
    {"lfoModesWithoutTempo", options::lfoModesWithoutTempo, 8, "P...**", "Poly", "M.Tr**",
     "Mono/Trig/[not available]"},
    {"modSources", options::modSources, 138, "-", "(not assigned)", "Const.", "Constant"},
    {"modSensSources", options::modSensSources, 137, "-", "(not assigned)", "PolyAT", "Polyphonic Aftertouch"},
    {"modDestinations", options::modDestinations, 26, "-", "(not assigned)", "LFO2Ph", "LFO2 Phase"},
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
    const struct { int index; const char* source; const char* controllerLong; } entries[] = {
        {1, "ctl1", "1 (Modulation)"},  {32, "ctl32", "32 (Bank LSB)"},   {63, "ctl63", "63 (#31 LSB)"},
        {64, "ctl65", "65 (Portamento)"}, {65, "ctl65", "65 (Portamento)"}, {119, "ctl119", "119"},
        {120, "ctl121", "121 (Reset Ctl.)"}, {123, "ctl124", "124 (Omni Off)"}, {124, "ctl124", "124 (Omni Off)"},
    };
    for (const auto& e : entries) {
        SCOPED_TRACE(e.index);
        EXPECT_STREQ(options::modSources.shortText(e.index), e.source);
        EXPECT_STREQ(options::modSensSources.shortText(e.index), e.source);
        EXPECT_EQ(options::modSources.longText(e.index), "Control " + std::string(e.source + 3));
        EXPECT_EQ(options::controllerNames.shortText(e.index), std::string(e.source + 3));
        EXPECT_STREQ(options::controllerNames.longText(e.index), e.controllerLong);
    }
    // Every other controller reads as its own number, and its long text starts with it.
    for (int c = 1; c <= 127; ++c) {
        if (c == 64 || c == 120 || c == 123) continue;
        std::string number = std::to_string(c), longText = options::controllerNames.longText(c);
        EXPECT_EQ(options::controllerNames.shortText(c), number);
        EXPECT_TRUE(longText == number || longText.rfind(number + " (", 0) == 0) << longText;
        EXPECT_EQ(options::modSources.longText(c), "Control " + number);
    }
    const char* namedShort[] = {"ENV1", "ENV2", "LFO1", "LFO2", "Key", "Vel", "Bend", "Ch.AT", "PolyAT", "Const."};
    for (int k = 0; k < 10; ++k) EXPECT_STREQ(options::modSources.shortText(128 + k), namedShort[k]);
    EXPECT_STREQ(options::modSources.longText(134), "Pitch Bend");
    EXPECT_STREQ(options::modSources.longText(135), "Channel Aftertouch");
}

TEST(OptionLists, ConnectionsAreTargetTimesFourPlusSource) {
    const struct { const OptionList& list; int index; const char* shortText; const char* longText; } connections[] = {
        {options::osc2Connections, 6, "L1->P", "LFO1 -> Frequency"},
        {options::osc2Connections, 13, "E2->PW", "ENV2 -> Freq + PWM"},
        {options::osc2Connections, 21, "E2->PF", "ENV2 -> Freq + FM"},
        {options::osc2Connections, 27, "L2->WF", "LFO2 -> PWM + FM"},
        {options::osc2Connections, 28, "E1>PWF", "ENV1 -> Freq + PWM + FM"},
        {options::filterConnections, 5, "E2->F", "ENV2 -> Frequency"},
        {options::filterConnections, 10, "L1->R", "LFO1 -> Resonance"},
        {options::filterConnections, 12, "E1->FR", "ENV1 -> Freq + Reso"},
    };
    for (const auto& c : connections) {
        EXPECT_STREQ(c.list.shortText(c.index), c.shortText) << c.index;
        EXPECT_STREQ(c.list.longText(c.index), c.longText) << c.index;
    }
    // OSC1 offers the OSC2 connections without FM.
    for (int i = 0; i < 16; ++i) {
        EXPECT_STREQ(options::osc1Connections.shortText(i), options::osc2Connections.shortText(i));
        EXPECT_STREQ(options::osc1Connections.longText(i), options::osc2Connections.longText(i));
    }
}

// Short texts mark the set bits with their letters; long texts name one or two shapes in full, three or
// four by abbreviations joined with " + ", five or six joined with "+".
TEST(OptionLists, LfoWaveformTextsFollowTheSetBits) {
    const struct { int mask; const char* shortText; const char* longText; } masks[] = {
        {1, "s-----", "Sine"},
        {3, "sT----", "Sine + Triangle"},
        {7, "sTS---", "Sin + Tri + Saw"},
        {60, "--SqHR", "Saw + Sqr + S&H + Rnd"},
        {31, "sTSqH-", "Sin+Tri+Saw+Sqr+S&H"},
    };
    for (const auto& m : masks) {
        EXPECT_STREQ(options::lfoWaveforms.shortText(m.mask), m.shortText) << m.mask;
        EXPECT_STREQ(options::lfoWaveforms.longText(m.mask), m.longText) << m.mask;
    }
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
}

}  // namespace
}  // namespace tolvane
