#include "tools/skin/SkinLayout.h"

namespace tolvane::skin {

namespace {

Placement knob(int x, int y, int bitmap, double value) { return {ControlKind::Knob, x, y, 22, 22, bitmap, 0, value, {}}; }

Placement button(int x, int y, int w, int h, int bitmap, int column, bool lit) {
    return {ControlKind::Button, x, y, w, h, bitmap, column, lit ? 1.0 : 0.0, {}};
}

Placement digits(int x, int y, int count, int number) {
    return {ControlKind::Digits, x, y, 10 * count, 13, 133, 0, static_cast<double>(number), {}};
}

Placement stepSwitch(int x, int y, int bitmap, int column) { return {ControlKind::StepSwitch, x, y, 18, 9, bitmap, column, 0, {}}; }

Placement textArea(int x, int y, int w, std::string text) { return {ControlKind::TextArea, x, y, w, 12, 0, 0, 0, std::move(text)}; }

// A connection group: four source keys in a column, then the target keys further down.
void connection(std::vector<Placement>& out, int x, int sourceY, int lit, int targetY, std::vector<int> targetColumns,
                int targetBits) {
    for (int i = 0; i < 4; ++i) out.push_back(button(x, sourceY + 12 * i, 24, 12, 150, 24 * i, i == lit));
    for (std::size_t i = 0; i < targetColumns.size(); ++i)
        out.push_back(button(x, targetY + 12 * static_cast<int>(i), 24, 12, 151, targetColumns[i], (targetBits >> i) & 1));
}

}  // namespace

std::vector<Placement> page1Controls() {
    std::vector<Placement> c;
    // OSC1
    const int wave1X[] = {8, 23, 8, 23}, wave1Y[] = {38, 38, 50, 50};
    for (int i = 0; i < 4; ++i) c.push_back(button(wave1X[i], wave1Y[i], 15, 12, 141, 15 * i, i == 2));
    for (int i = 0; i < 3; ++i) c.push_back(button(8 + 10 * i, 80, 10, 12, 142, 10 * i, i == 2));
    c.push_back(button(8, 102, 30, 12, 143, 0, false));
    c.push_back(knob(54, 43, 131, 0.5));
    c.push_back(knob(54, 99, 131, 0.495));
    c.push_back(knob(96, 99, 131, 0.5));
    c.push_back(knob(96, 43, 131, 0.5));
    connection(c, 41, 152, 0, 218, {0, 24}, 1);
    c.push_back(knob(12, 157, 131, 0.62));
    c.push_back(knob(12, 223, 131, 0.0));
    connection(c, 65, 152, 2, 218, {0, 24}, 2);
    c.push_back(knob(96, 157, 131, 0.5));
    c.push_back(knob(96, 223, 131, 0.25));
    // OSC2
    const int wave2X[] = {134, 149, 134, 149}, wave2Y[] = {38, 38, 50, 50};
    for (int i = 0; i < 4; ++i) c.push_back(button(wave2X[i], wave2Y[i], 15, 12, 141, 15 * i, i == 3));
    for (int i = 0; i < 3; ++i) c.push_back(button(134 + 10 * i, 67, 10, 12, 142, 10 * i, i == 1));
    c.push_back(knob(138, 99, 131, 0.18));
    c.push_back(knob(180, 43, 131, 0.35));
    c.push_back(knob(180, 99, 131, 0.62));
    c.push_back(knob(222, 99, 131, 0.53));
    c.push_back(knob(222, 43, 131, 0.5));
    connection(c, 167, 152, 1, 216, {0, 24, 48}, 4);
    c.push_back(knob(138, 157, 131, 0.8));
    c.push_back(knob(138, 223, 131, 0.4));
    connection(c, 191, 152, 3, 216, {0, 24, 48}, 3);
    c.push_back(knob(222, 157, 131, 0.5));
    c.push_back(knob(222, 223, 131, 0.0));
    // Mixer
    const int mixY[] = {43, 87, 131, 174, 223};
    const double mixValue[] = {0.5, 0.42, 0.0, 0.12, 0.7};
    for (int i = 0; i < 5; ++i) c.push_back(knob(264, mixY[i], 131, mixValue[i]));
    // Filter
    c.push_back(button(302, 9, 16, 12, 136, 0, true));
    for (int i = 0; i < 4; ++i) c.push_back(button(302, 38 + 12 * i, 30, 12, 144, 30 * i, i == 0));
    const int slopeX[] = {302, 317, 302, 317}, slopeY[] = {96, 96, 108, 108};
    for (int i = 0; i < 4; ++i) c.push_back(button(slopeX[i], slopeY[i], 15, 12, 145, 15 * i, i == 3));
    c.push_back(knob(348, 43, 131, 0.5));
    for (int i = 0; i < 3; ++i) c.push_back(button(341 + 12 * i, 69, 12, 10, 146, 12 * i, i == 1));
    c.push_back(knob(348, 99, 131, 0.72));
    c.push_back(knob(390, 99, 131, 0.3));
    c.push_back(knob(390, 43, 131, 0.5));
    connection(c, 335, 152, 0, 218, {0, 72}, 1);
    c.push_back(knob(306, 157, 131, 0.78));
    c.push_back(knob(306, 223, 131, 0.3));
    connection(c, 359, 152, 2, 218, {0, 72}, 0);
    c.push_back(knob(390, 157, 131, 0.5));
    c.push_back(knob(390, 223, 131, 0.0));
    // Amplifier
    c.push_back(button(431, 38, 24, 12, 150, 0, false));
    c.push_back(button(431, 50, 24, 12, 150, 24, true));
    c.push_back(button(431, 96, 24, 12, 150, 48, true));
    c.push_back(button(431, 108, 24, 12, 150, 72, false));
    c.push_back(knob(432, 157, 131, 0.5));
    c.push_back(knob(432, 223, 131, 0.35));
    // ENV1 and ENV2
    for (int env = 0; env < 2; ++env) {
        int kx = 474 + 42 * env;
        int bx = 467 + 42 * env;
        c.push_back(knob(kx, 43, 131, env == 0 ? 0.0 : 0.3));
        for (int i = 0; i < 3; ++i) c.push_back(button(bx + 12 * i, 71, 12, 10, 147, 12 * i, i == 1));
        c.push_back(knob(kx, 107, 131, 0.5));
        for (int i = 0; i < 3; ++i) c.push_back(button(bx + 12 * i, 135, 12, 10, 147, 36 + 12 * i, i == 1 + env));
        c.push_back(knob(kx, 172, 131, env == 0 ? 0.5 : 0.8));
        c.push_back(knob(kx, 223, 131, env == 0 ? 0.0 : 0.45));
    }
    // LFO1 and LFO2
    for (int lfo = 0; lfo < 2; ++lfo) {
        int bx = 554 + 42 * lfo;
        for (int i = 0; i < 6; ++i)
            c.push_back(button(bx + 15 * (i % 2), 38 + 12 * (i / 2), 15, 12, 141, 15 * i, i == (lfo == 0 ? 1 : 4)));
        for (int i = 0; i < 3; ++i) c.push_back(button(bx, 102 + 12 * i, 30, 12, 148, 30 * i, lfo == 1 && i == 2));
        c.push_back(knob(bx + 4, 172, 131, lfo == 0 ? 0.5 : 0.66));
        c.push_back(knob(bx + 4, 223, 131, lfo == 0 ? 0.02 : 0.25));
    }
    // Effect
    c.push_back(button(638, 9, 16, 12, 136, 0, true));
    c.push_back(button(638, 72, 30, 12, 148, 60, false));
    c.push_back(knob(684, 43, 131, 0.3));
    c.push_back(knob(642, 43, 131, 0.385));
    c.push_back(knob(684, 88, 131, 0.5));
    c.push_back(knob(642, 110, 131, 0.6));
    c.push_back(button(638, 140, 15, 12, 149, 0, false));
    c.push_back(button(653, 140, 15, 12, 149, 15, true));
    c.push_back(knob(684, 133, 131, 0.1));
    c.push_back(knob(642, 178, 131, 0.0));
    c.push_back(knob(684, 178, 131, 1.0));
    c.push_back(knob(642, 223, 131, 0.5));
    c.push_back(knob(684, 223, 131, 0.2));
    return c;
}

std::vector<Placement> page2Controls() {
    std::vector<Placement> c;
    // The assignable slots: depth and sensitivity knobs, then the three menus of each slot.
    const int knobX[8] = {62, 194, 250, 382, 62, 194, 250, 382};
    const int depthY[8] = {43, 43, 43, 43, 161, 161, 161, 161};
    const int strip[8] = {132, 131, 132, 131, 131, 132, 131, 132};
    const double depth[8] = {0.75, 0.5, 0.3, 0.5, 0.9, 0.5, 0.5, 0.5};
    const double sens[8] = {0.0, 0.0, 0.6, 0.0, 0.25, 0.0, 0.0, 0.0};
    for (int s = 0; s < 8; ++s) c.push_back(knob(knobX[s], depthY[s], strip[s], depth[s]));
    for (int s = 0; s < 8; ++s) c.push_back(knob(knobX[s], depthY[s] + 62, strip[s], sens[s]));
    const int menuX[8] = {106, 106, 294, 294, 106, 106, 294, 294};
    const int sourceY[8] = {37, 95, 37, 95, 155, 213, 155, 213};
    const char* source[8] = {"LFO1", "- - -", "ENV2", "- - -", "Control 1", "- - -", "- - -", "- - -"};
    const char* dest[8] = {"OSC1 Pitch", "- - -", "Filter Freq.", "- - -", "LFO1 Speed", "- - -", "- - -", "- - -"};
    const int sensX[8] = {50, 182, 238, 370, 50, 182, 238, 370};
    const char* sensSource[8] = {"- - -", "- - -", "Velocity", "- - -", "Ctl 2", "- - -", "- - -", "- - -"};
    for (int s = 0; s < 8; ++s) {
        c.push_back(textArea(menuX[s], sourceY[s], 65, source[s]));
        c.push_back(textArea(sensX[s], depthY[s] + 44, 45, sensSource[s]));
        c.push_back(textArea(menuX[s], sourceY[s] + 27, 65, dest[s]));
    }
    c.push_back(knob(12, 191, 131, 0.5));
    c.push_back(digits(13, 123, 2, 2));
    c.push_back(stepSwitch(14, 139, 134, 0));
    c.push_back(digits(13, 41, 2, 0));
    c.push_back(stepSwitch(14, 57, 134, 0));
    const char* controls[4] = {"1 (Modulation)", "7 (Volume)", "74", "Learn..."};
    const char* targets[4] = {"Assignable Mod 1 Depth", "Output Voulme", "Filter Cutoff Frequency", "Effect Mix Level"};
    for (int m = 0; m < 16; ++m) {
        c.push_back(textArea(448, 40 + 13 * m, 92, m < 4 ? controls[m] : "- - -"));
        c.push_back(textArea(543, 40 + 13 * m, 156, m < 4 ? targets[m] : "- - -"));
    }
    return c;
}

std::vector<Placement> stripControls() {
    std::vector<Placement> c;
    c.push_back(digits(13, 278, 2, 8));
    c.push_back(stepSwitch(14, 294, 134, 0));
    c.push_back(button(52, 269, 36, 12, 140, 0, false));
    c.push_back(button(52, 290, 36, 12, 140, 36, true));
    c.push_back(knob(117, 279, 132, 0.03));
    c.push_back(knob(170, 279, 132, 0.0));
    c.push_back(knob(223, 279, 132, 0.595));
    const int bankX[] = {271, 283, 271, 283}, bankY[] = {277, 277, 289, 289};
    for (int i = 0; i < 4; ++i) c.push_back(button(bankX[i], bankY[i], 12, 12, 138, 12 * i, i == 0));
    c.push_back(digits(310, 278, 3, 1));
    c.push_back(stepSwitch(307, 294, 135, 0));
    c.push_back(stepSwitch(325, 294, 135, 18));
    c.push_back(button(355, 269, 32, 12, 139, 0, false));
    c.push_back(button(355, 290, 32, 12, 139, 32, false));
    c.push_back(textArea(401, 263, 156, "Tolvane2"));
    c.push_back(textArea(401, 276, 156, "Version 2.0"));
    c.push_back(textArea(401, 293, 156, "Init"));
    c.push_back(button(584, 290, 42, 12, 137, 0, true));
    c.push_back(button(626, 290, 42, 12, 137, 42, false));
    c.push_back(button(674, 290, 36, 12, 137, 90, false));
    return c;
}

}  // namespace tolvane::skin
