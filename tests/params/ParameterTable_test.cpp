#include "params/ParameterTable.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iterator>
#include <set>
#include <string>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

using namespace param;

// The display (or, with full = true, the status-line text) of value v of a parameter.
std::string textOf(const ParameterTable& table, int index, float v, bool full = false) {
    char text[kFormatterTextSize];
    full ? table.formatter(index)->fullText(v, text) : table.formatter(index)->display(v, text);
    return text;
}

TEST(ParameterTable, NamesLetterForLetter) {
    ParameterTable table;
    const struct { int index; const char* longName; const char* shortName; } names[] = {
        {0, "OSC1 Waveform", "Wave1"},           {8, "OSC1 Mod A Velocity Sens", "SensA"},
        {11, "OSC1 Mod B Velocity Sens", "Sens1B"}, {26, "Mixer RingMod(1x2) Level", "MixRing"},
        {29, "Filter On/Bypass", "F.OnOff"},      {66, "Delay Time Tempo Sync", "EffTempo"},
        {81, "Portamento", "Port."},             {82, "Output Voulme", "Voulme"},
        {107, "Assignable Mod 1 Sens Assign", "M1SAssgn"}, {125, "MIDI Input Channel", "MIDI Ch"},
        {126, "(reserved)", "-"},                {143, "(reserved)", "-"},
        {144, "Controller Map 1: Control", "CMap01"}, {175, "Controller Map 16: Parameter", "PMap16"},
    };
    for (const auto& n : names) {
        EXPECT_STREQ(table.longName(n.index), n.longName) << n.index;
        EXPECT_STREQ(table.shortName(n.index), n.shortName) << n.index;
    }
    EXPECT_STREQ(table.longName(176), "");
    EXPECT_STREQ(table.shortName(-1), "");

    // The slot and map families are numbered in order.
    for (int k = 1; k <= 8; ++k) {
        const std::string slot = "Assignable Mod " + std::to_string(k), m = "M" + std::to_string(k);
        EXPECT_EQ(table.longName(ModDepth1 + k - 1), slot + " Depth");
        EXPECT_EQ(table.shortName(ModSource1 + k - 1), m + " Src");
        EXPECT_EQ(table.longName(ModDestination1 + k - 1), slot + " Destination");
    }
    for (int k = 1; k <= 16; ++k) {
        EXPECT_EQ(table.shortName(MapControl1 + k - 1), (k < 10 ? "CMap0" : "CMap") + std::to_string(k));
        EXPECT_EQ(table.longName(MapParameter1 + k - 1), "Controller Map " + std::to_string(k) + ": Parameter");
    }

    // Short names fit the host's 8 characters; long names are distinct apart from the reserved ones.
    std::set<std::string> longNames;
    for (int i = 0; i < kNumParameters; ++i) {
        EXPECT_GE(std::strlen(table.shortName(i)), 1u) << i;
        EXPECT_LE(std::strlen(table.shortName(i)), 8u) << i;
        if (i < kFirstReserved || i >= kFirstMapParameter) {
            EXPECT_TRUE(longNames.insert(table.longName(i)).second) << i;
        }
    }
}

TEST(ParameterTable, FormattersAndStepCounts) {
    ParameterTable table;
    const int tempoAware[] = {Lfo1Mode, Lfo1Speed, Lfo2Mode, Lfo2Speed, DelayTempoSync, EffectDelayTime};
    for (int i = 0; i < kNumParameters; ++i) {
        bool owned = std::find(std::begin(tempoAware), std::end(tempoAware), i) != std::end(tempoAware);
        EXPECT_EQ(ParameterTable::isTempoAware(i), owned) << i;
        EXPECT_EQ(table.formatter(i) == nullptr, owned) << i;
        // An option display must choose among exactly as many options as the parameter has steps.
        if (auto* option = dynamic_cast<const OptionFormatter*>(table.formatter(i))) {
            EXPECT_EQ(option->count(), table.steps(i)) << i;
        }
    }
    EXPECT_EQ(table.formatter(kNumParameters), nullptr);

    const std::pair<int, int> steps[] = {
        {Osc1Waveform, 12}, {Osc1Sync, 2},     {Osc1Pitch, 0},       {Osc1ModAConnection, 16},
        {Osc2ModBConnection, 32}, {FilterType, 16}, {FilterCutoff, 0}, {AmpModConnection, 4},
        {Lfo1Waveform, 64}, {Lfo2Mode, 8},     {Lfo1Speed, 0},       {DelayTempoSync, 2},
        {EffectDelayTime, 0}, {EffectFeedbackConnection, 2}, {NumberOfVoices, 64}, {Portamento, 0},
        {ModSource1 + 7, 138}, {ModSensSource1, 137}, {ModDestination1 + 3, 26}, {PitchBendRange, 25},
        {MidiChannel, 17}, {130, 0}, {MapControl1 + 5, 129}, {MapParameter1 + 15, 100},
    };
    for (const auto& s : steps) EXPECT_EQ(table.steps(s.first), s.second) << s.first;
}

// Each index reads through the formatter (and option list or mapping) meant for it.
TEST(ParameterTable, ValuesReadThroughTheirFormatters) {
    ParameterTable table;
    const struct { int index; float v; const char* display; const char* full; } cases[] = {
        {Osc1Waveform, 0.125f, "SinM", "Sine (Middle Quality)"},
        {Osc1Sync, 0.5f, "On", "On"},
        {Osc2Pitch, 1.0f, "+48", "+48 note"},
        {Osc1ModAConnection, 0.03125f, "E1->N", "ENV1 -> (none)"},
        {Osc2ModAConnection, 0.015625f, "E1->N", "ENV1 -> (none)"},
        {NoiseColor, 0.5f, "50.00", "50.00 % filtered"},
        {FilterOn, 0.49f, "Bypass", "Bypass"},
        {FilterType, 0.09375f, "LP12", "Lowpass 12dB/Oct"},
        {FilterSaturationCurve, 0.5f, "Mid", "Middle Clip"},
        {AmpModConnection, 0.375f, "E2/L1", "ENV2 / LFO1"},
        {Env1AttackCurve, 0.0f, "1", "1 (Fast)"},
        {Env2DecayCurve, 1.0f, "3", "3 (Fast)"},
        {Lfo1Waveform, 0.023438f, "s-----", "Sine"},
        {EffectFeedbackConnection, 0.75f, "Cross", "L/R Cross"},
        {NumberOfVoices, 0.117188f, "8", "8 voices"},
        {ModSource1, 1.5f / 138.0f, "ctl1", "Control 1"},
        {ModSensSource1, 1.0f, "PolyAT", "Polyphonic Aftertouch"},
        {ModDestination1, 10.5f / 26.0f, "FiltS", "Saturaiton Level"},
        {PitchBendRange, 0.0f, "0", "0 (disabled)"},
        {MidiChannel, 0.0f, "OMNI", "OMNI"},
        {MapControl1 + 3, 1.0f, "learn", "Learn..."},
        {MapParameter1 + 2, 0.335f, "F.Freq", "Filter Cutoff Frequency"},
        {MapParameter1, 0.985f, "M8 Sens", "Assignable Mod 8 Sens"},
        {MapParameter1, 0.995f, "-", "(not assigned)"},
        {MapParameter1, 1.0f, "-", "(not assigned)"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(table.longName(c.index));
        EXPECT_EQ(textOf(table, c.index, c.v), c.display);
        EXPECT_EQ(textOf(table, c.index, c.v, true), c.full);
    }
    const std::pair<int, const char*> labels[] = {
        {Env1Decay, " sec"}, {EffectLowCut, " Hz"}, {FilterCutoff, "Hz"}, {Osc2Detune, "cent"},
        {Osc2Pitch, "note"}, {Portamento, "sec"}, {Osc2ModBDepth, "%"}, {FilterType, ""},
    };
    for (const auto& [index, label] : labels) {
        char text[kFormatterTextSize];
        table.formatter(index)->label(text);
        EXPECT_STREQ(text, label) << index;
    }
}

// Half a unit in the last place of a number text.
double halfLastDigit(const std::string& text) {
    size_t point = text.find('.');
    int decimals = point == std::string::npos ? 0 : static_cast<int>(text.size() - point - 1);
    return 0.5 * std::pow(10.0, -decimals);
}

// Every numeric display, read back, is the parameter's value in its unit, computed here in closed
// form, to within the rounding of the text (and a hundredth of a semitone for the cutoff).
TEST(ParameterTable, NumericDisplaysMatchClosedForms) {
    ParameterTable table;
    auto pct = [](double v) { return 100.0 * v; };
    auto level = [](double v) { return 200.0 * (std::exp(2.0 * v) - 1.0) / (std::exp(2.0) - 1.0); };
    auto bipolar = [](double v) { return 100.0 * (2.0 * v - 1.0); };
    auto depth = [](double v) { double s = 2.0 * v - 1.0; return 100.0 * s * std::fabs(s); };
    auto geometric = [](double lo, double hi) { return [=](double v) { return lo * std::pow(hi / lo, v); }; };
    auto cutoff = [](double v) { return 440.0 * std::pow(2.0, (24.0 + 128.0 * v - 69.0) / 12.0); };
    auto glide = [](double v) { return -0.01 + 16.01 * (std::exp(5.0 * v) - 1.0) / (std::exp(5.0) - 1.0); };

    const struct { int index; std::function<double(double)> value; double relativeTolerance; } closed[] = {
        {Osc1PulseWidth, pct, 0}, {Osc1KeyFollow, [](double v) { return 200.0 * v; }, 0}, {Osc1Detune, bipolar, 0},
        {Osc1ModADepth, depth, 1e-6}, {MixerRingLevel, level, 1e-5}, {NoiseColor, pct, 0},
        {FilterSaturationLevel, [&](double v) { return 100.0 * geometric(0.1, 4.0)(v); }, 1e-5},
        {FilterCutoff, cutoff, 6e-4}, {Env1Attack, geometric(0.002, 20.0), 1e-5},
        {Env2Decay, geometric(0.004, 40.0), 1e-5}, {Env1Release, geometric(0.004, 40.0), 1e-5},
        {EffectFeedback, bipolar, 0}, {EffectOverdrive, [&](double v) { return 100.0 * geometric(0.01, 10.0)(v); }, 1e-5},
        {EffectLowCut, geometric(20.0, 22000.0), 1e-5}, {EffectModSpeed, geometric(0.02, 50.0), 1e-5},
        {VoiceDetune, pct, 0}, {OutputVolume, level, 1e-5}, {ModDepth1 + 4, depth, 1e-6},
        {MasterTune, bipolar, 0}, {Portamento, glide, 1e-5},
    };
    for (const auto& c : closed) {
        SCOPED_TRACE(table.longName(c.index));
        for (int step = 0; step <= 40; ++step) {
            float v = static_cast<float>(step) / 40.0f;
            std::string text = textOf(table, c.index, v);
            double expected = c.value(v);
            if (c.index == Portamento && expected <= 0.0) {
                EXPECT_EQ(text, "Off") << "the glide reads Off until its time turns positive";
                continue;
            }
            double tolerance = halfLastDigit(text) + 1e-9 + c.relativeTolerance * std::fabs(expected);
            EXPECT_NEAR(std::strtod(text.c_str(), nullptr), expected, tolerance) << "v = " << v << ": " << text;
        }
    }
}

TEST(ParameterTable, InitValuesDescribeThePlainStartingSound) {
    ParameterTable table;
    const std::pair<int, const char*> readings[] = {
        {Osc1Waveform, "SinM"}, {Osc2Waveform, "SinM"}, {FilterOn, "On"}, {FilterType, "LP12"},
        {NumberOfVoices, "8"},  {PitchBendRange, "2"},  {Osc1Pitch, "+0"},
    };
    for (const auto& [index, display] : readings) EXPECT_EQ(textOf(table, index, table.initValue(index)), display);
    EXPECT_FLOAT_EQ(table.initValue(EffectDelayTime), 0.385f);
    EXPECT_FLOAT_EQ(table.initValue(OutputVolume), 0.595f);
    for (int i = 0; i < kNumProgramValues; ++i) {
        EXPECT_GE(table.initValue(i), 0.0f) << i;
        EXPECT_LE(table.initValue(i), i >= kFirstReserved ? 0.0f : 1.0f) << i;
    }
    EXPECT_EQ(table.initValue(MapControl1), 0.0f);
}

}  // namespace
}  // namespace tolvane
