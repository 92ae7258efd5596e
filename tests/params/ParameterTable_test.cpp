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

std::string displayOf(const ParameterTable& table, int index, float v) {
    char text[kFormatterTextSize];
    table.formatter(index)->display(v, text);
    return text;
}

std::string fullTextOf(const ParameterTable& table, int index, float v) {
    char text[kFormatterTextSize];
    table.formatter(index)->fullText(v, text);
    return text;
}

std::string labelOf(const ParameterTable& table, int index) {
    char text[kFormatterTextSize];
    table.formatter(index)->label(text);
    return text;
}

TEST(ParameterTable, NamesLetterForLetter) {
    ParameterTable table;
    struct Name {
        int index;
        const char* longName;
        const char* shortName;
    };
    const Name names[] = {
        {0, "OSC1 Waveform", "Wave1"},
        {8, "OSC1 Mod A Velocity Sens", "SensA"},
        {11, "OSC1 Mod B Velocity Sens", "Sens1B"},
        {26, "Mixer RingMod(1x2) Level", "MixRing"},
        {29, "Filter On/Bypass", "F.OnOff"},
        {33, "Filter Cutoff Frequency", "F.Freq"},
        {66, "Delay Time Tempo Sync", "EffTempo"},
        {81, "Portamento", "Port."},
        {82, "Output Voulme", "Voulme"},
        {107, "Assignable Mod 1 Sens Assign", "M1SAssgn"},
        {123, "Master Tune", "Tune"},
        {125, "MIDI Input Channel", "MIDI Ch"},
        {126, "(reserved)", "-"},
        {143, "(reserved)", "-"},
        {144, "Controller Map 1: Control", "CMap01"},
        {159, "Controller Map 16: Control", "CMap16"},
        {175, "Controller Map 16: Parameter", "PMap16"},
    };
    for (const Name& n : names) {
        EXPECT_STREQ(table.longName(n.index), n.longName) << n.index;
        EXPECT_STREQ(table.shortName(n.index), n.shortName) << n.index;
    }
    EXPECT_STREQ(table.longName(176), "");
    EXPECT_STREQ(table.shortName(-1), "");

    // The slot and map families are numbered in order.
    for (int k = 1; k <= 8; ++k) {
        std::string slot = "Assignable Mod " + std::to_string(k);
        std::string m = "M" + std::to_string(k);
        EXPECT_EQ(table.longName(ModDepth1 + k - 1), slot + " Depth");
        EXPECT_EQ(table.shortName(ModDepth1 + k - 1), m + " Depth");
        EXPECT_EQ(table.longName(ModSens1 + k - 1), slot + " Sens");
        EXPECT_EQ(table.longName(ModSource1 + k - 1), slot + " Source");
        EXPECT_EQ(table.shortName(ModSource1 + k - 1), m + " Src");
        EXPECT_EQ(table.longName(ModDestination1 + k - 1), slot + " Destination");
    }
    for (int k = 1; k <= 16; ++k) {
        char number[3] = {static_cast<char>('0' + k / 10), static_cast<char>('0' + k % 10), '\0'};
        EXPECT_EQ(table.shortName(MapControl1 + k - 1), std::string("CMap") + number);
        EXPECT_EQ(table.longName(MapParameter1 + k - 1),
                  "Controller Map " + std::to_string(k) + ": Parameter");
    }

    // Short names fit the host's 8 characters; long names are distinct apart from the reserved ones.
    std::set<std::string> longNames;
    for (int i = 0; i < kNumParameters; ++i) {
        size_t shortLength = std::strlen(table.shortName(i));
        EXPECT_GE(shortLength, 1u) << i;
        EXPECT_LE(shortLength, 8u) << i;
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
    EXPECT_EQ(table.formatter(-1), nullptr);
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

struct TextCase {
    int index;
    float v;
    const char* display;
    const char* full;
};

TEST(ParameterTable, ValuesReadThroughTheirFormatters) {
    ParameterTable table;
    const TextCase cases[] = {
        {Osc1Waveform, 0.125f, "SinM", "Sine (Middle Quality)"},
        {Osc1Sync, 0.5f, "On", "On"},
        {Osc1Pitch, 0.5f, "+0", "+0 note"},
        {Osc2Pitch, 1.0f, "+48", "+48 note"},
        {Osc1ModAConnection, 0.03125f, "E1->N", "ENV1 -> (none)"},
        {Osc2ModAConnection, 0.015625f, "E1->N", "ENV1 -> (none)"},
        {NoiseColor, 0.5f, "50.00", "50.00 % filtered"},
        {FilterOn, 0.49f, "Bypass", "Bypass"},
        {FilterType, 0.09375f, "LP12", "Lowpass 12dB/Oct"},
        {FilterSaturationCurve, 0.5f, "Mid", "Middle Clip"},
        {FilterModAConnection, 0.03125f, "E1->N", "ENV1 -> (none)"},
        {AmpModConnection, 0.125f, "E1/L1", "ENV1 / LFO1"},
        {AmpModConnection, 0.375f, "E2/L1", "ENV2 / LFO1"},
        {Env1Attack, 0.0f, "0.0020", "0.0020 sec"},
        {Env1AttackCurve, 0.0f, "1", "1 (Fast)"},
        {Env2DecayCurve, 1.0f, "3", "3 (Fast)"},
        {Lfo1Waveform, 0.023438f, "s-----", "Sine"},
        {EffectFeedback, 0.5f, "+0.00", "+0.00 %"},
        {EffectFeedbackConnection, 0.75f, "Cross", "L/R Cross"},
        {NumberOfVoices, 0.117188f, "8", "8 voices"},
        {Unison, 1.0f, "On", "On"},
        {VoiceDetune, 0.03f, "3.00", "3.00 cent"},
        {Portamento, 0.0f, "Off", "Off"},
        {ModSource1, 1.5f / 138.0f, "ctl1", "Control 1"},
        {ModSensSource1, 1.0f, "PolyAT", "Polyphonic Aftertouch"},
        {ModDestination1, 10.5f / 26.0f, "FiltS", "Saturaiton Level"},
        {MasterTune, 0.5f, "+0.00", "+0.00 cent"},
        {PitchBendRange, 0.0f, "0", "0 (disabled)"},
        {MidiChannel, 0.0f, "OMNI", "OMNI"},
        {131, 0.7f, "-", "-"},
        {MapControl1, 64.5f / 129.0f, "65", "65 (Portamento)"},
        {MapControl1 + 3, 1.0f, "learn", "Learn..."},
        {MapParameter1, 0.995f, "-", "(not assigned)"},
        {MapParameter1 + 2, 0.335f, "F.Freq", "Filter Cutoff Frequency"},
    };
    for (const TextCase& c : cases) {
        SCOPED_TRACE(table.longName(c.index));
        EXPECT_EQ(displayOf(table, c.index, c.v), c.display);
        EXPECT_EQ(fullTextOf(table, c.index, c.v), c.full);
    }
    EXPECT_EQ(labelOf(table, Env1Decay), " sec");
    EXPECT_EQ(labelOf(table, EffectLowCut), " Hz");
    EXPECT_EQ(labelOf(table, FilterCutoff), "Hz");
    EXPECT_EQ(labelOf(table, Osc2Detune), "cent");
    EXPECT_EQ(labelOf(table, Osc2Pitch), "note");
    EXPECT_EQ(labelOf(table, Portamento), "sec");
    EXPECT_EQ(labelOf(table, Osc2ModBDepth), "%");
    EXPECT_EQ(labelOf(table, FilterType), "");
}

// Every numeric display, read back, is the parameter's value in its unit, computed here in closed
// form, to within the rounding of the text (and a hundredth of a semitone for the cutoff).
// Half a unit in the last place of a number text.
double halfLastDigit(const std::string& text) {
    size_t point = text.find('.');
    int decimals = point == std::string::npos ? 0 : static_cast<int>(text.size() - point - 1);
    return 0.5 * std::pow(10.0, -decimals);
}

TEST(ParameterTable, NumericDisplaysMatchClosedForms) {
    ParameterTable table;
    auto exp = [](double x) { return std::exp(x); };
    auto pct = [](double v) { return 100.0 * v; };
    auto keyFollow = [](double v) { return 200.0 * v; };
    auto level = [&](double v) { return 200.0 * (exp(2.0 * v) - 1.0) / (exp(2.0) - 1.0); };
    auto bipolar = [](double v) { return 100.0 * (2.0 * v - 1.0); };
    auto depth = [](double v) { double s = 2.0 * v - 1.0; return 100.0 * s * std::fabs(s); };
    auto geometric = [](double lo, double hi) { return [=](double v) { return lo * std::pow(hi / lo, v); }; };
    auto cutoff = [](double v) { return 440.0 * std::pow(2.0, (24.0 + 128.0 * v - 69.0) / 12.0); };
    auto glide = [&](double v) { return -0.01 + 16.01 * (exp(5.0 * v) - 1.0) / (exp(5.0) - 1.0); };

    struct Closed {
        int index;
        std::function<double(double)> value;
        double relativeTolerance;
    };
    const Closed closed[] = {
        {Osc1PulseWidth, pct, 0}, {Osc1KeyFollow, keyFollow, 0}, {Osc1Detune, bipolar, 0},
        {Osc1ModADepth, depth, 1e-6}, {MixerRingLevel, level, 1e-5}, {NoiseColor, pct, 0},
        {FilterSaturationLevel, [&](double v) { return 100.0 * geometric(0.1, 4.0)(v); }, 1e-5},
        {FilterCutoff, cutoff, 6e-4}, {Env1Attack, geometric(0.002, 20.0), 1e-5},
        {Env2Decay, geometric(0.004, 40.0), 1e-5}, {Env1Release, geometric(0.004, 40.0), 1e-5},
        {EffectFeedback, bipolar, 0}, {EffectOverdrive, [&](double v) { return 100.0 * geometric(0.01, 10.0)(v); }, 1e-5},
        {EffectLowCut, geometric(20.0, 22000.0), 1e-5}, {EffectModSpeed, geometric(0.02, 50.0), 1e-5},
        {VoiceDetune, pct, 0}, {OutputVolume, level, 1e-5}, {ModDepth1 + 4, depth, 1e-6},
        {MasterTune, bipolar, 0},
    };
    for (const Closed& c : closed) {
        SCOPED_TRACE(table.longName(c.index));
        for (int step = 0; step <= 40; ++step) {
            float v = static_cast<float>(step) / 40.0f;
            std::string text = displayOf(table, c.index, v);
            double expected = c.value(v);
            double tolerance = halfLastDigit(text) + 1e-9 + c.relativeTolerance * std::fabs(expected);
            EXPECT_NEAR(std::strtod(text.c_str(), nullptr), expected, tolerance) << "v = " << v << ": " << text;
        }
    }
    // Portamento reads "Off" until the glide time turns positive, then seconds.
    for (int step = 0; step <= 40; ++step) {
        float v = static_cast<float>(step) / 40.0f;
        std::string text = displayOf(table, Portamento, v);
        if (glide(v) <= 0.0) {
            EXPECT_EQ(text, "Off");
        } else {
            EXPECT_NEAR(std::strtod(text.c_str(), nullptr), glide(v), halfLastDigit(text) + 1e-5 * glide(v)) << text;
        }
    }
}

TEST(ParameterTable, InitValuesDescribeThePlainStartingSound) {
    ParameterTable table;
    EXPECT_EQ(displayOf(table, Osc1Waveform, table.initValue(Osc1Waveform)), "SinM");
    EXPECT_EQ(displayOf(table, Osc2Waveform, table.initValue(Osc2Waveform)), "SinM");
    EXPECT_EQ(displayOf(table, FilterOn, table.initValue(FilterOn)), "On");
    EXPECT_EQ(displayOf(table, FilterType, table.initValue(FilterType)), "LP12");
    EXPECT_EQ(displayOf(table, NumberOfVoices, table.initValue(NumberOfVoices)), "8");
    EXPECT_EQ(displayOf(table, PitchBendRange, table.initValue(PitchBendRange)), "2");
    EXPECT_EQ(displayOf(table, Osc1Pitch, table.initValue(Osc1Pitch)), "+0");
    EXPECT_FLOAT_EQ(table.initValue(EffectDelayTime), 0.385f);
    EXPECT_FLOAT_EQ(table.initValue(OutputVolume), 0.595f);
    for (int i = 0; i < kNumProgramValues; ++i) {
        EXPECT_GE(table.initValue(i), 0.0f) << i;
        EXPECT_LE(table.initValue(i), 1.0f) << i;
        if (i >= kFirstReserved) {
            EXPECT_EQ(table.initValue(i), 0.0f) << i;
        }
    }
    EXPECT_EQ(table.initValue(MapControl1), 0.0f);
}

}  // namespace
}  // namespace tolvane
