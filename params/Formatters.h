// Display formatters: how a parameter's normalised value v reads as text.
//
// Each formatter gives three texts: the display (what the host shows, normally at most 8
// characters), the label (the unit) and the full text (display with unit, or the long option name,
// for the status line). One formatter object serves every parameter that displays alike.
// Nothing here allocates: the texts go into caller buffers of at least kFormatterTextSize chars.
#pragma once

#include "dsp/Mappings.h"
#include "params/OptionLists.h"
#include "dsp/TempoDisplayState.h"
#include "params/TextHelpers.h"

namespace tolvane {

constexpr int kFormatterTextSize = kNumberTextSize;

class ValueFormatter {
public:
    virtual ~ValueFormatter() = default;
    // Plain number: up to 6 characters.
    virtual void display(float v, char* text) const;
    // No unit.
    virtual void label(char* text) const;
    // The display text.
    virtual void fullText(float v, char* text) const;
};

// One of N options: the short text, the long text for the status line.
class OptionFormatter : public ValueFormatter {
public:
    explicit OptionFormatter(const OptionList& options) : options_(options) {}
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;
    int count() const { return options_.count(); }
    const OptionList& options() const { return options_; }

private:
    const OptionList& options_;
};

// Percentages with two decimals. Values out of the usual range (below -99.99, or above 99.99 signed
// and 999.99 unsigned) drop decimals to stay within six characters.
class PercentFormatter : public ValueFormatter {
public:
    PercentFormatter(const ValueMapping& mapping, bool signedDisplay)
        : mapping_(mapping), signed_(signedDisplay) {}
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;

protected:
    float percent(float v) const { return 100.0f * mapping_.map(v); }
    void percentDisplay(float x, char* text) const;
    bool isSigned() const { return signed_; }

private:
    const ValueMapping& mapping_;
    bool signed_;
};

// Percentages over a wide range (1 to 1000 %), always six characters.
class WidePercentFormatter : public ValueFormatter {
public:
    WidePercentFormatter(const ValueMapping& mapping, bool signedDisplay)
        : mapping_(mapping), signed_(signedDisplay) {}
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;

private:
    const ValueMapping& mapping_;
    bool signed_;
};

// A percentage of filtering (noise colour).
class FilteredFormatter : public PercentFormatter {
public:
    explicit FilteredFormatter(const ValueMapping& mapping) : PercentFormatter(mapping, false) {}
    void fullText(float v, char* text) const override;
};

// Hundredths of a semitone, shown like percentages of a semitone.
class CentFormatter : public PercentFormatter {
public:
    CentFormatter(const ValueMapping& mapping, bool signedDisplay) : PercentFormatter(mapping, signedDisplay) {}
    void label(char* text) const override;
    void fullText(float v, char* text) const override;
};

// Whole semitones, always signed.
class SemitoneFormatter : public ValueFormatter {
public:
    explicit SemitoneFormatter(const ValueMapping& mapping) : mapping_(mapping) {}
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;

private:
    int semitones(float v) const { return static_cast<int>(mapping_.map(v)); }
    const ValueMapping& mapping_;
};

// A note number shown as its frequency in Hz.
class CutoffFormatter : public ValueFormatter {
public:
    explicit CutoffFormatter(const ValueMapping& noteMapping) : mapping_(noteMapping) {}
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;

private:
    const ValueMapping& mapping_;
};

// The mapped value with a unit (" sec", " Hz": the label keeps the leading blank).
class UnitFormatter : public ValueFormatter {
public:
    UnitFormatter(const ValueMapping& mapping, const char* unit) : mapping_(mapping), unit_(unit) {}
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;

private:
    const ValueMapping& mapping_;
    const char* unit_;
};

// Voice count 1..64.
class VoicesFormatter : public ValueFormatter {
public:
    static constexpr int kCount = 64;
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;

private:
    static int voices(float v) { return quantise(v, kCount) + 1; }
};

// Glide time in seconds; "Off" when the mapped time is not positive.
class PortamentoFormatter : public ValueFormatter {
public:
    explicit PortamentoFormatter(const ValueMapping& mapping) : mapping_(mapping) {}
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;

private:
    const ValueMapping& mapping_;
};

// A reserved index shows "-".
class ReservedFormatter : public ValueFormatter {
public:
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;
};

// The target of a controller map: parameters 0..98 by name, 99 for none.
class MapParameterFormatter : public ValueFormatter {
public:
    static constexpr int kSteps = 100;
    static constexpr int kNone = 99;
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;
};

// ---------------------------------------------------------------------------------------------
// Tempo-aware formatters: their texts depend on the state of the module they describe.

// LFO mode; tempo-synced modes are marked "**" while the host reports no tempo.
class LfoModeFormatter : public ValueFormatter {
public:
    explicit LfoModeFormatter(const LfoDisplayState& lfo) : lfo_(lfo) {}
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;

private:
    const OptionList& modes() const;
    const LfoDisplayState& lfo_;
};

// LFO speed in Hz while the LFO runs free, the tempo division while it is synced.
class LfoSpeedFormatter : public ValueFormatter {
public:
    LfoSpeedFormatter(const LfoDisplayState& lfo, const ValueMapping& rate) : lfo_(lfo), rate_(rate) {}
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;

private:
    bool synced() const { return lfo_.divisionIndex() >= 0; }
    const LfoDisplayState& lfo_;
    const ValueMapping& rate_;
};

// Delay tempo sync switch; "[NA]" while the host reports no tempo.
class DelaySyncFormatter : public ValueFormatter {
public:
    explicit DelaySyncFormatter(const DelayDisplayState& delay) : delay_(delay) {}
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;

private:
    const DelayDisplayState& delay_;
};

// Delay time in seconds, or the note division while synced. A synced time that the effect has to
// play longer than a second is marked as limited by the delay line.
class DelayTimeFormatter : public ValueFormatter {
public:
    DelayTimeFormatter(const DelayDisplayState& delay, const ValueMapping& delayTime)
        : delay_(delay), delayTime_(delayTime) {}
    void display(float v, char* text) const override;
    void label(char* text) const override;
    void fullText(float v, char* text) const override;

private:
    bool synced() const { return delay_.divisionIndex() >= 0; }
    const DelayDisplayState& delay_;
    const ValueMapping& delayTime_;
};

}  // namespace tolvane
