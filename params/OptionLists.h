// The option lists of the parameters: for each option a short text (the display) and a long text
// (the status line), selected by the quantised index.
//
// All lists are constant data. The generated ones (modulation sources, connections, LFO waveforms,
// controller names, ...) are built by the compiler, so they are complete before any code runs and
// reading them never initialises anything.
#pragma once

namespace tolvane {

// A column of texts: either an array of pointers, or texts of a fixed stride in one block of chars.
class TextColumn {
public:
    constexpr explicit TextColumn(const char* const* table) : table_(table), block_(nullptr), stride_(0) {}
    constexpr TextColumn(const char* block, int stride) : table_(nullptr), block_(block), stride_(stride) {}
    const char* at(int index) const { return table_ ? table_[index] : block_ + index * stride_; }

private:
    const char* const* table_;
    const char* block_;
    int stride_;
};

class OptionList {
public:
    constexpr OptionList(int count, TextColumn shortTexts, TextColumn longTexts)
        : count_(count), shortTexts_(shortTexts), longTexts_(longTexts) {}

    int count() const { return count_; }
    // Indices outside 0..count-1 are clamped to the nearest option.
    const char* shortText(int index) const { return shortTexts_.at(clamp(index)); }
    const char* longText(int index) const { return longTexts_.at(clamp(index)); }

private:
    int clamp(int index) const { return index < 0 ? 0 : (index >= count_ ? count_ - 1 : index); }

    int count_;
    TextColumn shortTexts_;
    TextColumn longTexts_;
};

namespace options {

extern const OptionList offOn;                // "Off", "On"
extern const OptionList bypassOn;             // "Bypass", "On"
extern const OptionList oscWaveforms;         // 12: "SinL" .. "PulseH"
extern const OptionList osc1Connections;      // 16: the first four targets of the OSC2 list
extern const OptionList osc2Connections;      // 32: index 4 target + source
extern const OptionList filterTypes;          // 16
extern const OptionList saturationCurves;     // 3
extern const OptionList filterConnections;    // 16: index 4 target + source
extern const OptionList ampConnections;       // 4
extern const OptionList attackCurves;         // 3
extern const OptionList decayCurves;          // 3
extern const OptionList lfoWaveforms;         // 64: one bit per waveform
extern const OptionList lfoModes;             // 8, when the host reports a tempo
extern const OptionList lfoModesWithoutTempo; // 8, when it does not
extern const OptionList feedbackConnections;  // 2: "Para", "Cross"
extern const OptionList modSources;           // 138: "-", controllers 1..127, ENV1 .. "Const."
extern const OptionList modSensSources;       // 137: the sources without "Const."
extern const OptionList modDestinations;      // 26
extern const OptionList bendRanges;           // 25: 0..24 semitones
extern const OptionList midiChannels;         // 17: "OMNI", "1".."16"
extern const OptionList controllerNames;      // 129: "-", controllers 1..127, "learn"

}  // namespace options

}  // namespace tolvane
