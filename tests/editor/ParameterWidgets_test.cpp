// Knobs and button rows of the editor driven with the mouse: what they send to the plug-in (through the
// host's automation) and what they draw.
#include <cmath>

#include "editor/ButtonWidgets.h"
#include "editor/DragKnob.h"
#include "editor/EditorSkin.h"
#include "editor/KnobWidget.h"
#include "tests/editor/EditorTestSupport.h"

namespace tolvane {
namespace {

using testing::centreOf;

const Rect kPulseWidthKnob = area(54, 43, 22, 22);  // "OSC1 Pulse Width"

std::vector<PointerStep> upwards(Point from, int steps, int pixelsEach, int buttons = kLeftButton) {
    std::vector<PointerStep> drag;
    for (int i = 1; i <= steps; ++i) drag.push_back(PointerStep{Point{from.h, from.v - i * pixelsEach}, buttons});
    return drag;
}

class KnobTest : public testing::EditorTest {};

TEST_F(KnobTest, ShiftSlowsTheDragTenfoldAndChangingItNeverMakesTheValueJump) {
    hostSets(2, 0.5f);
    Point at = centreOf(kPulseWidthKnob);
    std::vector<PointerStep> drag;
    auto move = [&](int pixels, int buttons) {
        at.v -= pixels;
        drag.push_back(PointerStep{at, buttons});
    };
    for (int i = 0; i < 5; ++i) move(2, kLeftButton);               // 10 px: +0.05
    move(2, kLeftButton | kShiftKey);                               // Shift pressed: re-anchored here
    for (int i = 0; i < 5; ++i) move(2, kLeftButton | kShiftKey);  // 10 px fine: +0.005
    move(2, kLeftButton);                                           // Shift let go: re-anchored
    move(4, kLeftButton);                                           // 4 px: +0.02
    press(centreOf(kPulseWidthKnob), kLeftButton, drag);
    std::vector<float> sent = automated(2);
    EXPECT_NEAR(sent.back(), 0.5f + 0.05f + 0.005f + 0.02f, 1e-5);
    // No step moves the value by more than its own pixels do (the largest is the last, 4 px = 0.02).
    for (std::size_t i = 1; i < sent.size(); ++i) EXPECT_LT(std::fabs(sent[i] - sent[i - 1]), 0.0201f) << i;
}

// The value follows the distance dragged, so a flick that moves far between two polls (a fast hand, a
// late idle) is a large move in its own direction, never a jump to the opposite end.
TEST_F(KnobTest, AFastFlickMovesAsFarAsItWent) {
    const Point centre = centreOf(kPulseWidthKnob);
    hostSets(2, 0.2f);
    press(centre, kLeftButton, {PointerStep{Point{centre.h + 150, centre.v}, kLeftButton}});
    EXPECT_NEAR(lastAutomated(2), 0.95f, 1e-5);
    hostSets(2, 0.9f);
    press(centre, kLeftButton, {PointerStep{Point{centre.h, centre.v + 120}, kLeftButton}});
    EXPECT_NEAR(lastAutomated(2), 0.3f, 1e-5);
}

TEST_F(KnobTest, ControlClickResetsToTheMiddleAndTheRangeEndsHold) {
    hostSets(2, 0.9f);
    press(centreOf(kPulseWidthKnob), kLeftButton | kControlKey);
    EXPECT_FLOAT_EQ(lastAutomated(2), 0.5f);
    press(centreOf(kPulseWidthKnob), kLeftButton, upwards(centreOf(kPulseWidthKnob), 30, 5));
    EXPECT_FLOAT_EQ(lastAutomated(2), 1.0f);
    std::vector<PointerStep> down;
    for (int i = 1; i <= 50; ++i) down.push_back(PointerStep{Point{65 - 5 * i, 54}, kLeftButton});
    press(centreOf(kPulseWidthKnob), kLeftButton, down);
    EXPECT_FLOAT_EQ(lastAutomated(2), 0.0f);
}

// The host's linear mode is the toolkit's linear drag: 200 pixels for the range, 300 with Shift (the
// editor's own drag would take 2000), and pressing or letting go of Shift never makes the value jump.
TEST_F(KnobTest, TheHostsLinearModeUsesItsOwnShiftRangeWithoutJumps) {
    ASSERT_EQ(plugin.dispatch(vst2::effSetEditKnobMode, 0, kLinearKnobMode), 1);
    hostSets(2, 0.2f);
    const Point at = centreOf(kPulseWidthKnob);
    press(at, kLeftButton, {{Point{at.h, at.v - 40}, kLeftButton},               // 40 up at 1/200
                            {Point{at.h, at.v - 40}, kLeftButton | kShiftKey},   // Shift goes down
                            {Point{at.h, at.v - 70}, kLeftButton | kShiftKey},   // 30 up at 1/300
                            {Point{at.h, at.v - 70}, kLeftButton},               // Shift let go
                            {Point{at.h, at.v - 100}, kLeftButton}});            // 30 up at 1/200
    const float a = 0.2f + 40.0f / 200.0f, b = a + 30.0f / 300.0f, c = b + 30.0f / 200.0f;
    const std::vector<float> sent = automated(2);
    ASSERT_EQ(sent.size(), 4u) << "the press, then one change per movement, none when only Shift changes";
    EXPECT_NEAR(sent[1], a, 1e-5);
    EXPECT_NEAR(sent[2], b, 1e-5);
    EXPECT_NEAR(sent[3], c, 1e-5);
}

TEST_F(KnobTest, ArrowKeysTurnTheKnobLastPressedAndNothingElse) {
    vst2::intptr virtRight = kVirtualKeyRight;
    EXPECT_EQ(plugin.dispatch(vst2::effEditKeyDown, 0, virtRight, nullptr, 0.0f), -1) << "no control has the focus";
    hostSets(2, 0.5f);
    press(centreOf(kPulseWidthKnob), kLeftButton);  // a click without a drag
    plugin.host.calls.clear();
    EXPECT_EQ(plugin.dispatch(vst2::effEditKeyDown, 0, virtRight, nullptr, 0.0f), 1);
    EXPECT_NEAR(lastAutomated(2), 0.6f, 1e-6);
    EXPECT_EQ(plugin.dispatch(vst2::effEditKeyDown, 0, virtRight, nullptr, kKeyModifierShift), 1);
    EXPECT_NEAR(lastAutomated(2), 0.61f, 1e-6);
    // While the name is being edited, keys from the host move no knob.
    press(Point{420, 299});
    plugin.host.calls.clear();
    EXPECT_EQ(plugin.dispatch(vst2::effEditKeyDown, 0, virtRight, nullptr, 0.0f), -1);
    EXPECT_EQ(plugin.host.count(vst2::audioMasterAutomate), 0);
}

// ---- button rows

class ButtonsTest : public testing::EditorTest {
protected:
    void click(int x, int y) { press(Point{x + 3, y + 3}); }
};

TEST_F(ButtonsTest, RadioPairsSendWaveformMajorQualityMinorAndShowTheState) {
    // "OSC1 Waveform": the second row picks the waveform, the first the quality; state = 3 wave + quality.
    const Point waves[4] = {{8, 38}, {23, 38}, {8, 50}, {23, 50}};
    const Point qualities[3] = {{8, 80}, {18, 80}, {28, 80}};
    hostSets(0, 1.0f);  // the last state: Pulse, High
    for (int w = 0; w < 4; ++w)
        EXPECT_TRUE(shows(skin::kWaveforms, area(waves[w].h, waves[w].v, 15, 12), Point{15 * w, w == 3 ? 12 : 0})) << w;
    for (int q = 0; q < 3; ++q)
        EXPECT_TRUE(shows(skin::kQuality, area(qualities[q].h, qualities[q].v, 10, 12), Point{10 * q, q == 2 ? 12 : 0}))
            << q;

    click(waves[2].h, waves[2].v);  // Sawtooth, High
    EXPECT_FLOAT_EQ(lastAutomated(0), (3 * 2 + 2 + 0.5f) / 12);
    click(qualities[0].h, qualities[0].v);  // Sawtooth, Low
    EXPECT_FLOAT_EQ(lastAutomated(0), (3 * 2 + 0 + 0.5f) / 12);
    plugin.host.calls.clear();
    click(qualities[0].h, qualities[0].v);  // the lit button again: stays lit, same value again
    EXPECT_EQ(automated(0), std::vector<float>{(3 * 2 + 0 + 0.5f) / 12});
    EXPECT_TRUE(shows(skin::kQuality, area(8, 80, 10, 12), Point{0, 12}));
    EXPECT_TRUE(shows(skin::kWaveforms, area(8, 50, 15, 12), Point{30, 12}));
    EXPECT_TRUE(shows(skin::kWaveforms, area(23, 50, 15, 12), Point{45, 0})) << "the old waveform went off";
}

TEST_F(ButtonsTest, BitFieldsSetAndClearTheirBits) {
    // "LFO1 Waveform": six bits. 0.999 selects state 63, all lit.
    const Point bits[6] = {{554, 38}, {569, 38}, {554, 50}, {569, 50}, {554, 62}, {569, 62}};
    hostSets(57, 0.999f);
    for (int b = 0; b < 6; ++b)
        EXPECT_TRUE(shows(skin::kWaveforms, area(bits[b].h, bits[b].v, 15, 12), Point{15 * b, 12})) << b;
    click(bits[0].h, bits[0].v);
    EXPECT_FLOAT_EQ(lastAutomated(57), (62 + 0.5f) / 64);
    hostSets(57, 0.0f);
    click(bits[4].h, bits[4].v);
    click(bits[1].h, bits[1].v);
    EXPECT_FLOAT_EQ(lastAutomated(57), (16 + 2 + 0.5f) / 64);
    EXPECT_TRUE(shows(skin::kWaveforms, area(bits[0].h, bits[0].v, 15, 12), Point{0, 0}));
}

TEST_F(ButtonsTest, ConnectionsCombineASourceWithTargetBits) {
    struct Case {
        int index;
        int x;          // the column of the widget's buttons
        int bitsTop;    // y of the first target bit
        int bitsCount;  // 2 or 3 target bits
        int states;
    };
    for (Case c : {Case{6, 41, 218, 2, 16}, Case{18, 167, 216, 3, 32}, Case{39, 359, 218, 2, 16}}) {
        hostSets(c.index, 0.0f);
        click(c.x, 176);                                  // LFO1: source 2
        click(c.x, c.bitsTop + 12 * (c.bitsCount - 1));   // the last target bit
        const int expected = (1 << (c.bitsCount - 1)) * 4 + 2;
        EXPECT_FLOAT_EQ(lastAutomated(c.index), (expected + 0.5f) / c.states) << c.index;
    }
    // "Amplifier Mod Connection": an envelope in the first row, an LFO in the second; state = 2 lfo + env.
    hostSets(42, 0.0f);
    click(431, 50);
    click(431, 108);
    EXPECT_FLOAT_EQ(lastAutomated(42), 3.5f / 4);
}

TEST_F(ButtonsTest, SwitchesSendOneOrZeroAndTwoButtonRowsSendQuarterValues) {
    hostSets(29, 0.7f);  // "Filter On/Bypass" on
    EXPECT_TRUE(shows(skin::kOnOffSwitch, area(302, 9, 16, 12), Point{0, 12}));
    click(302, 9);
    EXPECT_FLOAT_EQ(lastAutomated(29), 0.0f);
    click(302, 9);
    EXPECT_FLOAT_EQ(lastAutomated(29), 1.0f);
    // "Effect Feedback Connection" has the two states of its two buttons.
    click(653, 140);
    EXPECT_FLOAT_EQ(lastAutomated(71), 0.75f);
    click(638, 140);
    EXPECT_FLOAT_EQ(lastAutomated(71), 0.25f);
}

}  // namespace
}  // namespace tolvane
