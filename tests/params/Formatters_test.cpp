#include "params/Formatters.h"

#include <cmath>
#include <string>

#include <gtest/gtest.h>

#include "dsp/TempoDivisions.h"

namespace tolvane {
namespace {

struct Texts {
    std::string display, label, full;
};

Texts textsOf(const ValueFormatter& f, float v) {
    char display[kFormatterTextSize], label[kFormatterTextSize], full[kFormatterTextSize];
    f.display(v, display);
    f.label(label);
    f.fullText(v, full);
    return {display, label, full};
}

void expectTexts(const ValueFormatter& f, float v, const char* display, const char* label, const char* full) {
    Texts t = textsOf(f, v);
    EXPECT_EQ(t.display, display) << "v = " << v;
    EXPECT_EQ(t.label, label) << "v = " << v;
    EXPECT_EQ(t.full, full) << "v = " << v;
}

TEST(Formatters, PercentKinds) {
    ValueMappings m;
    PercentFormatter level(m.levelCurve, false);
    expectTexts(level, 1.0f, "200.00", "%", "200.00 %");
    expectTexts(level, 0.5f, "53.79", "%", "53.79 %");  // 2 (e - 1)/(e^2 - 1) = 0.53788

    PercentFormatter signedPercent(m.signedUnit, true);
    expectTexts(signedPercent, 1.0f, "+100.0", "%", "+100.00 %");
    expectTexts(signedPercent, 0.0f, "-100.0", "%", "-100.00 %");
    expectTexts(signedPercent, 0.5f, "+0.00", "%", "+0.00 %");

    // Unsigned percentages keep two decimals up to 999.99.
    LinearMapping twenty(0.0f, 20.0f);
    expectTexts(PercentFormatter(twenty, false), 1.0f, "2000.0", "%", "2000.00 %");

    WidePercentFormatter overdrive(m.overdrive, false);
    expectTexts(overdrive, 1.0f, "1000.0", "%", "1000.0 %");
    expectTexts(overdrive, 0.0f, "1.0000", "%", "1.0000 %");
    WidePercentFormatter depth(m.bipolarSquare, true);
    expectTexts(depth, 0.75f, "+25.00", "%", "+25.00 %");
    expectTexts(depth, 0.0f, "-100.0", "%", "-100.0 %");

    CentFormatter detune(m.signedUnit, true);
    expectTexts(detune, 1.0f, "+100.0", "cent", "+100.00 cent");
}

TEST(Formatters, PitchesTimesAndCounts) {
    ValueMappings m;
    SemitoneFormatter semitone(m.semitone);
    expectTexts(semitone, 48.0f / 97.0f, "+0", "note", "+0 note");
    expectTexts(CutoffFormatter(m.cutoffNote), 0.5f, "1318.5", "Hz", "1318.5 Hz");  // note 88: 440 * 2^(19/12)
    expectTexts(UnitFormatter(m.decayTime, " sec"), 0.5f, "0.4000", " sec", "0.4000 sec");  // sqrt(0.004 * 40)

    VoicesFormatter voices;
    expectTexts(voices, 0.0f, "1", "", "1 voice (mono)");
    expectTexts(voices, 1.0f, "64", "", "64 voices");

    PortamentoFormatter portamento(m.portamentoCurve);
    expectTexts(portamento, 0.0f, "Off", "sec", "Off");
    expectTexts(portamento, 1.0f, "16.000", "sec", "16.000 sec");
    // Time -0.01 + 16.01 (e^(5v) - 1)/(e^5 - 1) turns positive at v0 = ln(1 + 0.01 (e^5 - 1)/16.01)/5.
    double v0 = std::log(1.0 + 0.01 * (std::exp(5.0) - 1.0) / 16.01) / 5.0;
    EXPECT_EQ(textsOf(portamento, static_cast<float>(v0 - 0.001)).display, "Off");
    EXPECT_NE(textsOf(portamento, static_cast<float>(v0 + 0.001)).display, "Off");

    expectTexts(ValueFormatter(), 0.25f, "0.2500", "", "0.2500");
}

class FakeLfo : public LfoDisplayState {
public:
    float tempo() const override { return tempo_; }
    int divisionIndex() const override { return division_; }
    float tempo_ = -1.0f;
    int division_ = -1;
};

class FakeDelay : public DelayDisplayState {
public:
    float tempo() const override { return tempo_; }
    int divisionIndex() const override { return division_; }
    float currentDelaySeconds() const override { return seconds_; }
    float tempo_ = -1.0f;
    int division_ = -1;
    float seconds_ = 0.5f;
};

TEST(Formatters, LfoDisplaysFollowTheLfoState) {
    ValueMappings m;
    FakeLfo lfo;
    LfoModeFormatter mode(lfo);
    LfoSpeedFormatter speed(lfo, m.rate);
    const float syncedPoly = 4.5f / 8.0f;

    lfo.tempo_ = 0.0f;
    expectTexts(mode, 1.5f / 8.0f, "M...**", "", "Mono");
    lfo.tempo_ = 120.0f;
    expectTexts(mode, syncedPoly, "P...Te", "", "Poly / Tempo Sync");

    // Free: 0.02 * 2500^v Hz, 1 Hz in the middle.
    expectTexts(speed, 0.5f, "1.0000", "Hz", "1.0000 Hz");
    expectTexts(speed, 1.0f, "50.000", "Hz", "50.000 Hz");
    lfo.division_ = 2;
    expectTexts(speed, 0.08f, "32/3", "", "32/3");
}

TEST(Formatters, DelayDisplaysFollowTheEffectState) {
    ValueMappings m;
    FakeDelay delay;
    DelaySyncFormatter sync(delay);
    DelayTimeFormatter time(delay, m.delayTime);

    expectTexts(sync, 1.0f, "[NA]", "", "[not available]");
    delay.tempo_ = 120.0f;
    expectTexts(sync, 1.0f, "On", "", "On");
    expectTexts(sync, 0.49f, "Off", "", "Off");

    // Free: 0.001 * 1000^v seconds.
    expectTexts(time, 0.0f, "0.0010", "sec", "0.0010 sec");
    expectTexts(time, 0.5f, "0.0316", "sec", "0.0316 sec");

    delay.division_ = delayDivisionIndex(1.0f);  // "2"; above 1 s its full text adds " [limited up to 2sec]"
    delay.seconds_ = 1.0f;
    expectTexts(time, 1.0f, "2", "", "2");
    delay.division_ = 12;
    expectTexts(time, 0.56f, "1/4", "", "1/4");
}

}  // namespace
}  // namespace tolvane
