#include "params/OptionLists.h"

namespace tolvane {
namespace {

// ---------------------------------------------------------------------------------------------
// Compile-time text building for the generated lists.

template <int Count, int Stride>
struct TextBlock {
    char chars[Count * Stride] = {};

    constexpr void append(int index, const char* text) {
        char* entry = chars + index * Stride;
        int length = 0;
        while (entry[length] != '\0') ++length;
        while (*text != '\0' && length < Stride - 1) entry[length++] = *text++;
    }

    constexpr void appendNumber(int index, int n) {
        char digits[12] = {};
        int count = 0;
        do {
            digits[count++] = static_cast<char>('0' + n % 10);
            n /= 10;
        } while (n > 0);
        char text[12] = {};
        for (int i = 0; i < count; ++i) text[i] = digits[count - 1 - i];
        append(index, text);
    }

    constexpr TextColumn column() const { return TextColumn(chars, Stride); }
};

template <int Count, int ShortStride, int LongStride>
struct OptionTexts {
    TextBlock<Count, ShortStride> shortTexts;
    TextBlock<Count, LongStride> longTexts;

    constexpr OptionList list(int count = Count) const {
        return OptionList(count, shortTexts.column(), longTexts.column());
    }
};

// Controllers 64 (sustain), 120 (All Sound Off) and 123 (All Notes Off) keep their fixed meanings,
// so lists that offer controllers show the next controller number in their place.
constexpr int offeredController(int c) { return (c == 64 || c == 120 || c == 123) ? c + 1 : c; }

// ---------------------------------------------------------------------------------------------
// Modulation connections: index = 4 target + source.

constexpr const char* kConnectionSourceShort[4] = {"E1", "E2", "L1", "L2"};
constexpr const char* kConnectionSourceLong[4] = {"ENV1", "ENV2", "LFO1", "LFO2"};

// Every source with every target; a target of three letters leaves room for one arrow character only.
template <int Targets>
constexpr auto makeConnections(const char* const (&targetShort)[Targets], const char* const (&targetLong)[Targets]) {
    OptionTexts<4 * Targets, 8, 32> t{};
    for (int target = 0; target < Targets; ++target) {
        for (int source = 0; source < 4; ++source) {
            int i = 4 * target + source;
            t.shortTexts.append(i, kConnectionSourceShort[source]);
            const char* name = targetShort[target];
            t.shortTexts.append(i, name[1] != 0 && name[2] != 0 ? ">" : "->");
            t.shortTexts.append(i, targetShort[target]);
            t.longTexts.append(i, kConnectionSourceLong[source]);
            t.longTexts.append(i, " -> ");
            t.longTexts.append(i, targetLong[target]);
        }
    }
    return t;
}

constexpr const char* kOscTargetShort[8] = {"N", "P", "W", "PW", "F", "PF", "WF", "PWF"};
constexpr const char* kOscTargetLong[8] = {"(none)", "Frequency", "PWM", "Freq + PWM",
                                           "FM", "Freq + FM", "PWM + FM", "Freq + PWM + FM"};
constexpr const char* kFilterTargetShort[4] = {"N", "F", "R", "FR"};
constexpr const char* kFilterTargetLong[4] = {"(none)", "Frequency", "Resonance", "Freq + Reso"};

constexpr auto makeOscConnections() { return makeConnections(kOscTargetShort, kOscTargetLong); }
constexpr auto makeFilterConnections() { return makeConnections(kFilterTargetShort, kFilterTargetLong); }

// ---------------------------------------------------------------------------------------------
// LFO waveforms: bit 0 sine, 1 triangle, 2 sawtooth, 3 square, 4 sample-and-hold, 5 random.
// The short text has one letter per bit. The long text names the set waveforms: in full when one
// or two are set, abbreviated and spaced for three or four, abbreviated and packed for five or six.

constexpr auto makeLfoWaveforms() {
    constexpr char letters[6] = {'s', 'T', 'S', 'q', 'H', 'R'};
    constexpr const char* fullNames[6] = {"Sine", "Triangle", "Sawtooth", "Square", "Sample&Hold", "Random"};
    constexpr const char* shortNames[6] = {"Sin", "Tri", "Saw", "Sqr", "S&H", "Rnd"};
    OptionTexts<64, 8, 32> t{};
    for (int mask = 0; mask < 64; ++mask) {
        char pattern[7] = {};
        int setCount = 0;
        for (int bit = 0; bit < 6; ++bit) {
            bool set = (mask >> bit) & 1;
            pattern[bit] = set ? letters[bit] : '-';
            if (set) ++setCount;
        }
        t.shortTexts.append(mask, pattern);
        if (setCount == 0) {
            t.longTexts.append(mask, "(none)");
            continue;
        }
        const char* const* names = setCount <= 2 ? fullNames : shortNames;
        const char* separator = setCount <= 4 ? " + " : "+";
        bool first = true;
        for (int bit = 0; bit < 6; ++bit) {
            if (!((mask >> bit) & 1)) continue;
            if (!first) t.longTexts.append(mask, separator);
            t.longTexts.append(mask, names[bit]);
            first = false;
        }
    }
    return t;
}

// ---------------------------------------------------------------------------------------------
// Modulation sources: "-", the controllers 1..127, then the voice and MIDI sources.

constexpr auto makeModSources() {
    constexpr const char* namedShort[10] = {"ENV1", "ENV2", "LFO1", "LFO2", "Key",
                                            "Vel",  "Bend", "Ch.AT", "PolyAT", "Const."};
    constexpr const char* namedLong[10] = {"ENV1", "ENV2", "LFO1", "LFO2", "Key", "Velocity", "Pitch Bend",
                                           "Channel Aftertouch", "Polyphonic Aftertouch", "Constant"};
    OptionTexts<138, 8, 24> t{};
    t.shortTexts.append(0, "-");
    t.longTexts.append(0, "(not assigned)");
    for (int i = 1; i <= 127; ++i) {
        t.shortTexts.append(i, "ctl");
        t.shortTexts.appendNumber(i, offeredController(i));
        t.longTexts.append(i, "Control ");
        t.longTexts.appendNumber(i, offeredController(i));
    }
    for (int k = 0; k < 10; ++k) {
        t.shortTexts.append(128 + k, namedShort[k]);
        t.longTexts.append(128 + k, namedLong[k]);
    }
    return t;
}

// ---------------------------------------------------------------------------------------------
// Controller names of the controller maps: "-", the controllers 1..127, "learn".

constexpr const char* controllerMeaning(int c) {
    switch (c) {
        case 1: return "Modulation";
        case 2: return "Breath";
        case 4: return "Foot Ctl.";
        case 5: return "Portamento";
        case 6: return "Data Entry";
        case 7: return "Volume";
        case 8: return "Balance";
        case 10: return "Pan";
        case 11: return "Expression";
        case 12: return "Effect 1";
        case 13: return "Effect 2";
        case 16: return "General #1";
        case 17: return "General #2";
        case 18: return "General #3";
        case 19: return "General #4";
        case 32: return "Bank LSB";
        case 65: return "Portamento";
        case 66: return "Sostenuto";
        case 67: return "Soft Pedal";
        case 68: return "Legato";
        case 69: return "Hold 2";
        case 70: return "Variation";
        case 71: return "Timbre";
        case 72: return "Release";
        case 73: return "Attack";
        case 74: return "Brightness";
        case 80: return "General #5";
        case 81: return "General #6";
        case 82: return "General #7";
        case 83: return "General #8";
        case 91: return "Effect 1";
        case 92: return "Effect 2";
        case 93: return "Effect 3";
        case 94: return "Effect 4";
        case 95: return "Effect 5";
        case 96: return "Data +1";
        case 97: return "Data -1";
        case 98: return "NRP LSB";
        case 99: return "NRP MSB";
        case 100: return "RP LSB";
        case 101: return "RP MSB";
        case 121: return "Reset Ctl.";
        case 122: return "Local Ctl.";
        case 124: return "Omni Off";
        case 125: return "Omni On";
        case 126: return "Mono On";
        case 127: return "Poly On";
        default: return nullptr;
    }
}

constexpr auto makeControllerNames() {
    OptionTexts<129, 8, 24> t{};
    t.shortTexts.append(0, "-");
    t.longTexts.append(0, "(not assigned)");
    for (int i = 1; i <= 127; ++i) {
        int c = offeredController(i);
        t.shortTexts.appendNumber(i, c);
        t.longTexts.appendNumber(i, c);
        if (c >= 33 && c <= 63) {
            // The least significant bytes of controllers 1..31.
            t.longTexts.append(i, " (#");
            t.longTexts.appendNumber(i, c - 32);
            t.longTexts.append(i, " LSB)");
        } else if (const char* meaning = controllerMeaning(c)) {
            t.longTexts.append(i, " (");
            t.longTexts.append(i, meaning);
            t.longTexts.append(i, ")");
        }
    }
    t.shortTexts.append(128, "learn");
    t.longTexts.append(128, "Learn...");
    return t;
}

// ---------------------------------------------------------------------------------------------
// Plain numbered lists.

constexpr auto makeBendRanges() {
    OptionTexts<25, 4, 16> t{};
    for (int i = 0; i < 25; ++i) {
        t.shortTexts.appendNumber(i, i);
        t.longTexts.appendNumber(i, i);
    }
    t.longTexts.append(0, " (disabled)");
    return t;
}

constexpr auto makeMidiChannels() {
    OptionTexts<17, 8, 8> t{};
    t.shortTexts.append(0, "OMNI");
    t.longTexts.append(0, "OMNI");
    for (int i = 1; i < 17; ++i) {
        t.shortTexts.appendNumber(i, i);
        t.longTexts.appendNumber(i, i);
    }
    return t;
}

constexpr auto kOscConnectionTexts = makeOscConnections();
constexpr auto kFilterConnectionTexts = makeFilterConnections();
constexpr auto kLfoWaveformTexts = makeLfoWaveforms();
constexpr auto kModSourceTexts = makeModSources();
constexpr auto kControllerTexts = makeControllerNames();
constexpr auto kBendRangeTexts = makeBendRanges();
constexpr auto kMidiChannelTexts = makeMidiChannels();

// ---------------------------------------------------------------------------------------------
// Literal lists.

constexpr const char* kOffOn[] = {"Off", "On"};
constexpr const char* kBypassOn[] = {"Bypass", "On"};

constexpr const char* kOscWaveformsShort[] = {"SinL", "SinM", "SinH", "TriL", "TriM", "TriH",
                                              "SawL", "SawM", "SawH", "PulseL", "PulseM", "PulseH"};
constexpr const char* kOscWaveformsLong[] = {
    "Sine (Low Quality)",     "Sine (Middle Quality)",     "Sine (High Quality)",
    "Triangle (Low Quality)", "Triangle (Middle Quality)", "Triangle (High Quality)",
    "Sawtooth (Low Quality)", "Sawtooth (Middle Quality)", "Sawtooth (High Quality)",
    "Pulse (Low Quality)",    "Pulse (Middle Quality)",    "Pulse (High Quality)"};

constexpr const char* kFilterTypesShort[] = {"LP6",  "LP12", "LP18", "LP24", "HP6",  "HP12", "HP18", "HP24",
                                             "BP12", "BP12", "BP24", "BP24", "BR12", "BR12", "BR24", "BR24"};
constexpr const char* kFilterTypesLong[] = {
    "Lowpass 6dB/Oct",  "Lowpass 12dB/Oct",  "Lowpass 18dB/Oct",  "Lowpass 24dB/Oct",
    "Highpass 6dB/Oct", "Highpass 12dB/Oct", "Highpass 18dB/Oct", "Highpass 24dB/Oct",
    "Band Pass 12(6+6)dB/Oct",     "Band Pass 12(6+6)dB/Oct",
    "Band Pass 24(12+12)dB/Oct",   "Band Pass 24(12+12)dB/Oct",
    "Band Reject 12(6+6)dB/Oct",   "Band Reject 12(6+6)dB/Oct",
    "Band Reject 24(12+12)dB/Oct", "Band Reject 24(12+12)dB/Oct"};

constexpr const char* kSaturationCurvesShort[] = {"Hard", "Mid", "Soft"};
constexpr const char* kSaturationCurvesLong[] = {"Hard Clip", "Middle Clip", "Soft Clip"};

constexpr const char* kAmpConnectionsShort[] = {"E1/L1", "E2/L1", "E1/L2", "E2/L2"};
constexpr const char* kAmpConnectionsLong[] = {"ENV1 / LFO1", "ENV2 / LFO1", "ENV1 / LFO2", "ENV2 / LFO2"};

constexpr const char* kCurveNumbers[] = {"1", "2", "3"};
constexpr const char* kAttackCurvesLong[] = {"1 (Fast)", "2 (Linear)", "3 (Slow)"};
constexpr const char* kDecayCurvesLong[] = {"1 (Linear)", "2 (Middle)", "3 (Fast)"};

// Mode bits: 0 Mono, 1 Trigger, 2 Tempo Sync. Without a host tempo the sync flag shows "**".
constexpr const char* kLfoModesShort[] = {"P.....", "M.....", "P.Tr..", "M.Tr..",
                                          "P...Te", "M...Te", "P.TrTe", "M.TrTe"};
constexpr const char* kLfoModesLong[] = {"Poly",
                                         "Mono",
                                         "Poly / Trigger",
                                         "Mono / Trigger",
                                         "Poly / Tempo Sync",
                                         "Mono / Tempo Sync",
                                         "Poly / Trigger / Tempo Sync",
                                         "Mono / Trigger / Tempo Sync"};
constexpr const char* kLfoModesNoTempoShort[] = {"P...**", "M...**", "P.Tr**", "M.Tr**",
                                                 "P...**", "M...**", "P.Tr**", "M.Tr**"};
constexpr const char* kLfoModesNoTempoLong[] = {"Poly",
                                                "Mono",
                                                "Poly / Trigger",
                                                "Mono / Trigger",
                                                "Poly/[tempo not available]",
                                                "Mono/[tempo not available]",
                                                "Poly/Trig/[not available]",
                                                "Mono/Trig/[not available]"};

constexpr const char* kFeedbackShort[] = {"Para", "Cross"};
constexpr const char* kFeedbackLong[] = {"Parallel", "L/R Cross"};

constexpr const char* kDestinationsShort[] = {
    "-",     "PW1",   "Pitch1", "FM2",   "PW2",   "Pitch2", "Mix1",  "Mix2",  "MixR",
    "MixN",  "FiltS", "FiltF",  "FiltR", "Amp",   "ENV1A",  "ENV1D", "ENV1S", "ENV1R",
    "ENV2A", "ENV2D", "ENV2S",  "ENV2R", "LFO1Sp", "LFO1Ph", "LFO2Sp", "LFO2Ph"};
constexpr const char* kDestinationsLong[] = {
    "(not assigned)",    "OSC1 Pulse Width", "OSC1 Pitch",        "OSC2 FM",
    "OSC2 Pulse Width",  "OSC2 Pitch",       "Mixer OSC1 Level",  "Mixer OSC2 Level",
    "Mixer RingMod Level", "Mixer Noise Level", "Saturaiton Level", "Filter Frequency",
    "Filter Resonance",  "Amplifier",        "ENV1 Attack",       "ENV1 Decay",
    "ENV1 Sustain",      "ENV1 Release",     "ENV2 Attack",       "ENV2 Decay",
    "ENV2 Sustain",      "ENV2 Release",     "LFO1 Speed",        "LFO1 Phase",
    "LFO2 Speed",        "LFO2 Phase"};

template <typename T, int N>
constexpr int countOf(const T (&)[N]) {
    return N;
}

template <int N>
constexpr OptionList literalList(const char* const (&shortTexts)[N], const char* const (&longTexts)[N]) {
    return OptionList(N, TextColumn(shortTexts), TextColumn(longTexts));
}

static_assert(countOf(kOscWaveformsShort) == 12 && countOf(kOscWaveformsLong) == 12, "12 waveforms");
static_assert(countOf(kFilterTypesShort) == 16 && countOf(kFilterTypesLong) == 16, "16 filter types");
static_assert(countOf(kDestinationsShort) == 26 && countOf(kDestinationsLong) == 26, "26 destinations");

}  // namespace

namespace options {

constexpr OptionList offOn = literalList(kOffOn, kOffOn);
constexpr OptionList bypassOn = literalList(kBypassOn, kBypassOn);
constexpr OptionList oscWaveforms = literalList(kOscWaveformsShort, kOscWaveformsLong);
constexpr OptionList osc1Connections = kOscConnectionTexts.list(16);
constexpr OptionList osc2Connections = kOscConnectionTexts.list();
constexpr OptionList filterTypes = literalList(kFilterTypesShort, kFilterTypesLong);
constexpr OptionList saturationCurves = literalList(kSaturationCurvesShort, kSaturationCurvesLong);
constexpr OptionList filterConnections = kFilterConnectionTexts.list();
constexpr OptionList ampConnections = literalList(kAmpConnectionsShort, kAmpConnectionsLong);
constexpr OptionList attackCurves = literalList(kCurveNumbers, kAttackCurvesLong);
constexpr OptionList decayCurves = literalList(kCurveNumbers, kDecayCurvesLong);
constexpr OptionList lfoWaveforms = kLfoWaveformTexts.list();
constexpr OptionList lfoModes = literalList(kLfoModesShort, kLfoModesLong);
constexpr OptionList lfoModesWithoutTempo = literalList(kLfoModesNoTempoShort, kLfoModesNoTempoLong);
constexpr OptionList feedbackConnections = literalList(kFeedbackShort, kFeedbackLong);
constexpr OptionList modSources = kModSourceTexts.list();
constexpr OptionList modSensSources = kModSourceTexts.list(137);
constexpr OptionList modDestinations = literalList(kDestinationsShort, kDestinationsLong);
constexpr OptionList bendRanges = kBendRangeTexts.list();
constexpr OptionList midiChannels = kMidiChannelTexts.list();
constexpr OptionList controllerNames = kControllerTexts.list();

}  // namespace options

}  // namespace tolvane
