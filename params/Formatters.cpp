#include "params/Formatters.h"

#include "dsp/FastMath.h"
#include "params/ParameterNames.h"
#include "dsp/TempoDivisions.h"

namespace tolvane {
namespace {

constexpr int kDisplayWidth = 6;

void copyText(char* text, const char* source) {
    int i = 0;
    while (source[i] != '\0' && i < kFormatterTextSize - 1) {
        text[i] = source[i];
        ++i;
    }
    text[i] = '\0';
}

void appendText(char* text, const char* source) {
    int i = 0;
    while (text[i] != '\0') ++i;
    copyText(text + i, source);
}

}  // namespace

// --- ValueFormatter ------------------------------------------------------------------------------

void ValueFormatter::display(float v, char* text) const { floatToText(text, v, kDisplayWidth); }

void ValueFormatter::label(char* text) const { text[0] = '\0'; }

void ValueFormatter::fullText(float v, char* text) const { display(v, text); }

// --- OptionFormatter ---------------------------------------------------------------------------

void OptionFormatter::display(float v, char* text) const {
    copyText(text, options_.shortText(quantise(v, options_.count())));
}

void OptionFormatter::label(char* text) const { text[0] = '\0'; }

void OptionFormatter::fullText(float v, char* text) const {
    copyText(text, options_.longText(quantise(v, options_.count())));
}

// --- PercentFormatter and its relatives --------------------------------------------------------

void PercentFormatter::percentDisplay(float x, char* text) const {
    float limit = signed_ ? 99.99f : 999.99f;
    if (x < -99.99f || x > limit)
        floatToText(text, x, kDisplayWidth, signed_);
    else
        fixedToText(text, x, 2, signed_);
}

void PercentFormatter::display(float v, char* text) const { percentDisplay(percent(v), text); }

void PercentFormatter::label(char* text) const { copyText(text, "%"); }

void PercentFormatter::fullText(float v, char* text) const {
    fixedWithSuffix(text, percent(v), 2, " %", signed_);
}

void WidePercentFormatter::display(float v, char* text) const {
    floatToText(text, 100.0f * mapping_.map(v), kDisplayWidth, signed_);
}

void WidePercentFormatter::label(char* text) const { copyText(text, "%"); }

void WidePercentFormatter::fullText(float v, char* text) const {
    floatWithSuffix(text, 100.0f * mapping_.map(v), kDisplayWidth, " %", signed_);
}

void FilteredFormatter::fullText(float v, char* text) const {
    fixedWithSuffix(text, percent(v), 2, " % filtered", false);
}

void CentFormatter::label(char* text) const { copyText(text, "cent"); }

void CentFormatter::fullText(float v, char* text) const {
    fixedWithSuffix(text, percent(v), 2, " cent", isSigned());
}

// --- Semitones, frequencies, units -------------------------------------------------------------

void SemitoneFormatter::display(float v, char* text) const { intToText(text, semitones(v), true); }

void SemitoneFormatter::label(char* text) const { copyText(text, "note"); }

void SemitoneFormatter::fullText(float v, char* text) const {
    intWithSuffix(text, semitones(v), " note", true);
}

void CutoffFormatter::display(float v, char* text) const {
    floatToText(text, noteToHz(mapping_.map(v)), kDisplayWidth);
}

void CutoffFormatter::label(char* text) const { copyText(text, "Hz"); }

void CutoffFormatter::fullText(float v, char* text) const {
    floatWithSuffix(text, noteToHz(mapping_.map(v)), kDisplayWidth, " Hz");
}

void UnitFormatter::display(float v, char* text) const { floatToText(text, mapping_.map(v), kDisplayWidth); }

void UnitFormatter::label(char* text) const { copyText(text, unit_); }

void UnitFormatter::fullText(float v, char* text) const {
    floatWithSuffix(text, mapping_.map(v), kDisplayWidth, unit_);
}

// --- Voices, portamento, reserved, controller map targets --------------------------------------

void VoicesFormatter::display(float v, char* text) const { intToText(text, voices(v)); }

void VoicesFormatter::label(char* text) const { text[0] = '\0'; }

void VoicesFormatter::fullText(float v, char* text) const {
    int n = voices(v);
    if (n == 1)
        copyText(text, "1 voice (mono)");
    else
        intWithSuffix(text, n, " voices");
}

void PortamentoFormatter::display(float v, char* text) const {
    float t = mapping_.map(v);
    if (t <= 0.0f)
        copyText(text, "Off");
    else
        floatToText(text, t, kDisplayWidth);
}

void PortamentoFormatter::label(char* text) const { copyText(text, "sec"); }

void PortamentoFormatter::fullText(float v, char* text) const {
    float t = mapping_.map(v);
    if (t <= 0.0f)
        copyText(text, "Off");
    else
        floatWithSuffix(text, t, kDisplayWidth, " sec");
}

void ReservedFormatter::display(float, char* text) const { copyText(text, "-"); }

void ReservedFormatter::label(char* text) const { text[0] = '\0'; }

void ReservedFormatter::fullText(float, char* text) const { copyText(text, "-"); }

void MapParameterFormatter::display(float v, char* text) const {
    int target = quantise(v, kSteps);
    copyText(text, target == kNone ? "-" : parameterShortName(target));
}

void MapParameterFormatter::label(char* text) const { text[0] = '\0'; }

void MapParameterFormatter::fullText(float v, char* text) const {
    int target = quantise(v, kSteps);
    copyText(text, target == kNone ? "(not assigned)" : parameterLongName(target));
}

// --- Tempo-aware formatters --------------------------------------------------------------------

const OptionList& LfoModeFormatter::modes() const {
    return lfo_.tempo() > 0.0f ? options::lfoModes : options::lfoModesWithoutTempo;
}

void LfoModeFormatter::display(float v, char* text) const {
    const OptionList& list = modes();
    copyText(text, list.shortText(quantise(v, list.count())));
}

void LfoModeFormatter::label(char* text) const { text[0] = '\0'; }

void LfoModeFormatter::fullText(float v, char* text) const {
    const OptionList& list = modes();
    copyText(text, list.longText(quantise(v, list.count())));
}

void LfoSpeedFormatter::display(float v, char* text) const {
    if (synced())
        copyText(text, lfoDivisionName(lfo_.divisionIndex()));
    else
        floatToText(text, rate_.map(v), kDisplayWidth);
}

void LfoSpeedFormatter::label(char* text) const { copyText(text, synced() ? "" : "Hz"); }

void LfoSpeedFormatter::fullText(float v, char* text) const {
    if (synced())
        copyText(text, lfoDivisionName(lfo_.divisionIndex()));
    else
        floatWithSuffix(text, rate_.map(v), kDisplayWidth, " Hz");
}

void DelaySyncFormatter::display(float v, char* text) const {
    if (delay_.tempo() > 0.0f)
        copyText(text, switchOn(v) ? "On" : "Off");
    else
        copyText(text, "[NA]");
}

void DelaySyncFormatter::label(char* text) const { text[0] = '\0'; }

void DelaySyncFormatter::fullText(float v, char* text) const {
    if (delay_.tempo() > 0.0f)
        copyText(text, switchOn(v) ? "On" : "Off");
    else
        copyText(text, "[not available]");
}

void DelayTimeFormatter::display(float v, char* text) const {
    if (synced())
        copyText(text, delayDivisionName(delay_.divisionIndex()));
    else
        floatToText(text, delayTime_.map(v), kDisplayWidth);
}

void DelayTimeFormatter::label(char* text) const { copyText(text, synced() ? "" : "sec"); }

void DelayTimeFormatter::fullText(float v, char* text) const {
    if (!synced()) {
        floatWithSuffix(text, delayTime_.map(v), kDisplayWidth, " sec");
        return;
    }
    copyText(text, delayDivisionName(delay_.divisionIndex()));
    if (delay_.currentDelaySeconds() > 1.0f) appendText(text, " [limited up to 2sec]");
}

}  // namespace tolvane
