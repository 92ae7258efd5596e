// Where every control of the editor sits: one table that the editor builds its widgets from and that the
// skin generator frames and labels on the page backgrounds, so the two cannot drift apart.
//
// A row is a run of `count` equal controls laid out in a grid, `perLine` to a line, `dx` and `dy` apart;
// control i shows bitmap column `column + i * columnStep`. For a widget made of buttons (a switch, a row of
// choices, the program banks) the run is that widget's buttons, and a widget with two rows of buttons has
// two runs, `part` 0 and 1. Knobs, menus and number displays are one control per row.
// Only the geometry lives here; what a widget does with its value stays with the widget.
#pragma once

#include <array>
#include <cstddef>

#include "editor/EditorSkin.h"

namespace tolvane::layout {

// What the editor makes of a row.
enum class Widget : unsigned char {
    Knob,        // a film-strip knob; `bitmap` is its strip
    Switch,      // one on/off button
    Radio,       // one button of the run lit
    Bits,        // every button a bit of the value
    RadioPair,   // one lit in part 0 and one in part 1, the value combining both
    RadioBits,   // a choice in part 0, bits in part 1
    FilterType,  // the filter's types (part 0) and slopes (part 1)
    Menu,        // a text menu of options
    Number,      // two digits (part 0) with a three-way step switch under them (part 1)
    // The fixed controls of the common strip (no parameter of their own):
    ProgramBanks,
    ProgramDigits,   // three digits, a menu of the bank's programs on click
    ProgramSteps,    // step down and up
    ProgramCommands, // RECALL and INIT
    StatusLines,
    ProgramName,
    PageTabs,
    FileMenu,
};

// How the skin draws a row's controls in a preview, and what it keeps its labels clear of.
enum class Kind : unsigned char { Knob, Button, Digits, StepSwitch, Text };

struct Control {
    int index;  // the parameter, or -1 for a fixed control
    Widget widget;
    int part;
    int x, y, width, height;
    int bitmap;  // resource id, 0 for text
    int column;
    int count;
    int perLine;
    int dx, dy;
    int columnStep;

    constexpr Kind kind() const {
        switch (widget) {
            case Widget::Knob: return Kind::Knob;
            case Widget::Menu:
            case Widget::StatusLines:
            case Widget::ProgramName: return Kind::Text;
            case Widget::ProgramDigits: return Kind::Digits;
            case Widget::ProgramSteps: return Kind::StepSwitch;
            case Widget::Number: return part == 0 ? Kind::Digits : Kind::StepSwitch;
            default: return Kind::Button;
        }
    }
    // The area of control i of the run.
    constexpr Rect at(int i) const {
        return area(x + dx * (i % perLine), y + dy * (i / perLine), width, height);
    }
    constexpr int columnOf(int i) const { return column + columnStep * i; }
};

// ---- rows

constexpr Control knob(int index, int x, int y, int strip = skin::kKnobStrip) {
    return {index, Widget::Knob, 0, x, y, skin::kKnobSize, skin::kKnobSize, strip, 0, 1, 1, 0, 0, 0};
}
// `count` buttons of w x h side by side, `perLine` to a line, columns `column`, `column + w`, ...
constexpr Control buttons(int index, Widget widget, int part, int x, int y, int w, int h, int bitmap, int count,
                          int perLine, int column = 0) {
    return {index, widget, part, x, y, w, h, bitmap, column, count, perLine, w, h, w};
}
constexpr Control button(int index, Widget widget, int x, int y, int w, int h, int bitmap, int column = 0) {
    return buttons(index, widget, 0, x, y, w, h, bitmap, 1, 1, column);
}
// The four modulation sources of a connection: one column of keys.
constexpr Control sources(int index, int x) {
    return buttons(index, Widget::RadioBits, 0, x, 152, 24, 12, skin::kModSources, 4, 1);
}
// Its targets, one key under the other, with the given column step through the targets' bitmap.
constexpr Control targets(int index, int x, int y, int count, int columnStep) {
    return {index, Widget::RadioBits, 1, x, y, 24, 12, skin::kModTargets, 0, count, 1, 24, 12, columnStep};
}
constexpr Control menu(int index, int x, int y, int width) {
    return {index, Widget::Menu, 0, x, y, width, 12, 0, 0, 1, 1, 0, 0, 0};
}
constexpr Control digits(int index, int x, int y) {
    return {index, Widget::Number, 0, x, y, 2 * skin::kDigitWidth, skin::kDigitHeight, skin::kDigits, 0, 1, 1, 0, 0, 0};
}
// The step switch under a number's digits.
constexpr Control steps(int index, int x, int y) {
    return {index, Widget::Number, 1, x + 1, y + 16, skin::kStepSwitchWidth, skin::kStepSwitchHeight,
            skin::kStepSwitch, 0, 1, 1, 0, 0, 0};
}

// The envelope curve keys: three 12 x 10 keys in a row, at columns from `column`.
constexpr Control curves(int index, int x, int y, int column) {
    return buttons(index, Widget::Radio, 0, x, y, 12, 10, skin::kEnvelopeCurves, 3, 3, column);
}

// ---- page 1: oscillators, mixer, filter, amplifier, envelopes, LFOs and effect (values 0-76)

inline constexpr Control kPage1[] = {
    // OSC1
    buttons(0, Widget::RadioPair, 0, 8, 80, 10, 12, skin::kQuality, 3, 3),
    buttons(0, Widget::RadioPair, 1, 8, 38, 15, 12, skin::kWaveforms, 4, 2),
    button(1, Widget::Switch, 8, 102, 30, 12, skin::kSync),
    knob(2, 54, 43),
    knob(3, 54, 99),
    knob(4, 96, 99),
    knob(5, 96, 43),
    sources(6, 41),
    targets(6, 41, 218, 2, 24),
    knob(7, 12, 157),
    knob(8, 12, 223),
    sources(9, 65),
    targets(9, 65, 218, 2, 24),
    knob(10, 96, 157),
    knob(11, 96, 223),
    // OSC2
    buttons(12, Widget::RadioPair, 0, 134, 67, 10, 12, skin::kQuality, 3, 3),
    buttons(12, Widget::RadioPair, 1, 134, 38, 15, 12, skin::kWaveforms, 4, 2),
    knob(13, 138, 99),
    knob(14, 180, 43),
    knob(15, 180, 99),
    knob(16, 222, 99),
    knob(17, 222, 43),
    sources(18, 167),
    targets(18, 167, 216, 3, 24),
    knob(19, 138, 157),
    knob(20, 138, 223),
    sources(21, 191),
    targets(21, 191, 216, 3, 24),
    knob(22, 222, 157),
    knob(23, 222, 223),
    // Mixer
    knob(24, 264, 43),
    knob(25, 264, 87),
    knob(26, 264, 131),
    knob(27, 264, 174),
    knob(28, 264, 223),
    // Filter
    button(29, Widget::Switch, 302, 9, 16, 12, skin::kOnOffSwitch),
    buttons(30, Widget::FilterType, 0, 302, 38, 30, 12, skin::kFilterTypes, 4, 1),
    buttons(30, Widget::FilterType, 1, 302, 96, 15, 12, skin::kFilterSlopes, 4, 2),
    knob(31, 348, 43),
    buttons(32, Widget::Radio, 0, 341, 69, 12, 10, skin::kSaturationCurves, 3, 3),
    knob(33, 348, 99),
    knob(34, 390, 99),
    knob(35, 390, 43),
    sources(36, 335),
    targets(36, 335, 218, 2, 72),
    knob(37, 306, 157),
    knob(38, 306, 223),
    sources(39, 359),
    targets(39, 359, 218, 2, 72),
    knob(40, 390, 157),
    knob(41, 390, 223),
    // Amplifier: two of the four sources above, the other two below
    buttons(42, Widget::RadioPair, 0, 431, 38, 24, 12, skin::kModSources, 2, 1),
    buttons(42, Widget::RadioPair, 1, 431, 96, 24, 12, skin::kModSources, 2, 1, 48),
    knob(43, 432, 157),
    knob(44, 432, 223),
    // ENV1
    knob(45, 474, 43),
    curves(46, 467, 71, 0),
    knob(47, 474, 107),
    curves(48, 467, 135, 36),
    knob(49, 474, 172),
    knob(50, 474, 223),
    // ENV2
    knob(51, 516, 43),
    curves(52, 509, 71, 0),
    knob(53, 516, 107),
    curves(54, 509, 135, 36),
    knob(55, 516, 172),
    knob(56, 516, 223),
    // LFO1
    buttons(57, Widget::Bits, 0, 554, 38, 15, 12, skin::kWaveforms, 6, 2),
    buttons(58, Widget::Bits, 0, 554, 102, 30, 12, skin::kLfoModes, 3, 1),
    knob(59, 558, 172),
    knob(60, 558, 223),
    // LFO2
    buttons(61, Widget::Bits, 0, 596, 38, 15, 12, skin::kWaveforms, 6, 2),
    buttons(62, Widget::Bits, 0, 596, 102, 30, 12, skin::kLfoModes, 3, 1),
    knob(63, 600, 172),
    knob(64, 600, 223),
    // Effect
    button(65, Widget::Switch, 638, 9, 16, 12, skin::kOnOffSwitch),
    button(66, Widget::Switch, 638, 72, 30, 12, skin::kLfoModes, 60),
    knob(67, 684, 43),
    knob(68, 642, 43),
    knob(69, 684, 88),
    knob(70, 642, 110),
    buttons(71, Widget::Radio, 0, 638, 140, 15, 12, skin::kFeedbackRouting, 2, 2),
    knob(72, 684, 133),
    knob(73, 642, 178),
    knob(74, 684, 178),
    knob(75, 642, 223),
    knob(76, 684, 223),
};

// ---- page 2: modulation slots, tuning, MIDI and controller maps (values 83-175)

constexpr int kModStrip = skin::kModKnobStrip;
constexpr int kSourceMenuWidth = 65;
constexpr int kSensMenuWidth = 45;
constexpr int kMapControlWidth = 92;
constexpr int kMapTargetWidth = 156;

// The eight assignable slots, each a depth knob with the sensitivity knob 62 below it and the sensitivity
// source menu between them, and a source menu with the destination menu 27 below it; the knob strips
// alternate as the panels were drawn. Then tuning, the MIDI settings and the sixteen controller maps.
constexpr std::array<Control, 5 * 8 + 5 + 2 * 16> page2Table() {
    constexpr Point depthAt[8] = {{62, 43}, {194, 43}, {250, 43}, {382, 43}, {62, 161}, {194, 161}, {250, 161}, {382, 161}};
    constexpr Point sourceAt[8] = {{106, 37}, {106, 95}, {294, 37}, {294, 95}, {106, 155}, {106, 213}, {294, 155}, {294, 213}};
    constexpr int strips[8] = {kModStrip, skin::kKnobStrip, kModStrip, skin::kKnobStrip,
                               skin::kKnobStrip, kModStrip, skin::kKnobStrip, kModStrip};
    std::array<Control, 5 * 8 + 5 + 2 * 16> t{};
    std::size_t n = 0;
    for (int s = 0; s < 8; ++s) {
        const Point d = depthAt[s];
        const Point m = sourceAt[s];
        t[n++] = knob(83 + s, d.h, d.v, strips[s]);                       // depth
        t[n++] = knob(91 + s, d.h, d.v + 62, strips[s]);                  // sensitivity
        t[n++] = menu(99 + s, m.h, m.v, kSourceMenuWidth);                // source
        t[n++] = menu(107 + s, d.h - 12, d.v + 44, kSensMenuWidth);       // sensitivity source
        t[n++] = menu(115 + s, m.h, m.v + 27, kSourceMenuWidth);          // destination
    }
    t[n++] = knob(123, 12, 191);  // master tune
    t[n++] = digits(124, 13, 123);  // pitch bend range
    t[n++] = steps(124, 13, 123);
    t[n++] = digits(125, 13, 41);  // MIDI channel
    t[n++] = steps(125, 13, 41);
    for (int map = 0; map < 16; ++map) {
        t[n++] = menu(144 + map, 448, 40 + 13 * map, kMapControlWidth);
        t[n++] = menu(160 + map, 543, 40 + 13 * map, kMapTargetWidth);
    }
    return t;
}
inline constexpr auto kPage2 = page2Table();

// ---- the common strip along the bottom, on both pages (values 77-82 and the fixed controls)

inline constexpr Control kStrip[] = {
    digits(77, 13, 278),  // voices
    steps(77, 13, 278),
    button(78, Widget::Switch, 52, 269, 36, 12, skin::kUnisonLegato, 0),
    button(79, Widget::Switch, 52, 290, 36, 12, skin::kUnisonLegato, 36),
    knob(80, 117, 279, kModStrip),
    knob(81, 170, 279, kModStrip),
    knob(82, 223, 279, kModStrip),
    buttons(-1, Widget::ProgramBanks, 0, 271, 277, 12, 12, skin::kBankButtons, 4, 2),
    {-1, Widget::ProgramDigits, 0, 310, 278, 3 * skin::kDigitWidth, skin::kDigitHeight, skin::kDigits, 0, 1, 1, 0, 0, 0},
    buttons(-1, Widget::ProgramSteps, 0, 307, 294, skin::kStepSwitchWidth, skin::kStepSwitchHeight,
            skin::kProgramStepSwitches, 2, 2),
    {-1, Widget::ProgramCommands, 0, 355, 269, 32, 12, skin::kProgramCommands, 0, 2, 1, 0, 21, 32},
    {-1, Widget::StatusLines, 0, 401, 263, 156, 12, 0, 0, 2, 1, 0, 13, 0},
    {-1, Widget::ProgramName, 0, 401, 293, 156, 12, 0, 0, 1, 1, 0, 0, 0},
    buttons(-1, Widget::PageTabs, 0, 584, 290, 42, 12, skin::kPageTabsAndFile, 2, 2),
    button(-1, Widget::FileMenu, 674, 290, 36, 12, skin::kPageTabsAndFile, 90),
};

// The row of a table with this widget and part, or nullptr.
template <typename Table>
constexpr const Control* find(const Table& table, Widget widget, int part = 0) {
    for (const Control& c : table)
        if (c.widget == widget && c.part == part) return &c;
    return nullptr;
}

}  // namespace tolvane::layout
