#include "tools/skin/SkinBitmaps.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "tools/skin/SkinPaint.h"

namespace tolvane::skin {

namespace {

constexpr double kPi = 3.14159265358979323846;

// ---------------------------------------------------------------------------------------------------------
// Knobs. The pointer follows the editor's knob law: value 0 at lower left (225 degrees), value 1 at lower
// right (-45 degrees), 270 degrees clockwise through the top, the gap at the bottom. Cairo's y axis points
// down, so a mathematical angle a is drawn at Cairo angle -a.

double pointerAngle(double value) { return 1.25 * kPi - 1.5 * kPi * value; }

void pointerLine(cairo_t* cr, double cx, double cy, double angle, double from, double to) {
    cairo_move_to(cr, cx + from * std::cos(angle), cy - from * std::sin(angle));
    cairo_line_to(cr, cx + to * std::cos(angle), cy - to * std::sin(angle));
}

// The main knob: a dark cap inside a track ring whose amber arc grows from the minimum to the value.
void drawMainKnob(cairo_t* cr, double top, double value) {
    const double cx = 11.0;
    const double cy = top + 11.0;
    const double startCairo = 0.75 * kPi;  // mathematical 225 degrees
    const double sweep = 1.5 * kPi;

    cairo_set_line_cap(cr, CAIRO_LINE_CAP_BUTT);
    cairo_set_line_width(cr, 2.0);
    setColour(cr, {18, 17, 16});
    cairo_arc(cr, cx, cy, 9.4, startCairo, startCairo + sweep);
    cairo_stroke(cr);
    if (value > 0.0) {
        setColour(cr, palette::amber);
        cairo_arc(cr, cx, cy, 9.4, startCairo, startCairo + sweep * value);
        cairo_stroke(cr);
    }

    // Cap with a soft shadow below it, lit from above.
    setColour(cr, {10, 10, 9}, 0.55);
    cairo_arc(cr, cx, cy + 0.8, 7.2, 0, 2 * kPi);
    cairo_fill(cr);
    cairo_pattern_t* cap = cairo_pattern_create_linear(0, cy - 7, 0, cy + 7);
    cairo_pattern_add_color_stop_rgb(cap, 0, 104 / 255.0, 100 / 255.0, 94 / 255.0);
    cairo_pattern_add_color_stop_rgb(cap, 1, 36 / 255.0, 35 / 255.0, 33 / 255.0);
    cairo_arc(cr, cx, cy, 6.7, 0, 2 * kPi);
    cairo_set_source(cr, cap);
    cairo_fill_preserve(cr);
    cairo_pattern_destroy(cap);
    setColour(cr, {12, 12, 11});
    cairo_set_line_width(cr, 0.8);
    cairo_stroke(cr);
    cairo_pattern_t* face = cairo_pattern_create_linear(0, cy - 5, 0, cy + 5);
    cairo_pattern_add_color_stop_rgb(face, 0, 62 / 255.0, 60 / 255.0, 56 / 255.0);
    cairo_pattern_add_color_stop_rgb(face, 1, 78 / 255.0, 75 / 255.0, 70 / 255.0);
    cairo_arc(cr, cx, cy, 5.3, 0, 2 * kPi);
    cairo_set_source(cr, face);
    cairo_fill(cr);

    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(cr, 1.7);
    setColour(cr, {246, 238, 222});
    pointerLine(cr, cx, cy, pointerAngle(value), 1.8, 6.4);
    cairo_stroke(cr);
}

// The modulation knob: a brushed silver cap with a black pointer and no ring.
void drawModKnob(cairo_t* cr, double top, double value) {
    const double cx = 11.0;
    const double cy = top + 11.0;

    setColour(cr, {8, 8, 7}, 0.6);
    cairo_arc(cr, cx, cy + 0.9, 9.9, 0, 2 * kPi);
    cairo_fill(cr);

    // The knurled skirt: alternating light and dark teeth around the rim.
    for (int tooth = 0; tooth < 36; ++tooth) {
        double a0 = 2 * kPi * tooth / 36.0;
        double a1 = 2 * kPi * (tooth + 0.5) / 36.0;
        cairo_move_to(cr, cx, cy);
        cairo_arc(cr, cx, cy, 9.6, a0, a1);
        cairo_close_path(cr);
        double shade = 0.5 + 0.5 * std::sin(a0 - 0.25 * kPi);  // lighter towards the upper left
        setColour(cr, mix({86, 85, 82}, {190, 188, 182}, 1.0 - shade));
        cairo_fill(cr);
        cairo_move_to(cr, cx, cy);
        cairo_arc(cr, cx, cy, 9.6, a1, 2 * kPi * (tooth + 1) / 36.0);
        cairo_close_path(cr);
        setColour(cr, mix({60, 59, 57}, {140, 138, 133}, 1.0 - shade));
        cairo_fill(cr);
    }
    setColour(cr, {20, 20, 19});
    cairo_set_line_width(cr, 0.8);
    cairo_arc(cr, cx, cy, 9.6, 0, 2 * kPi);
    cairo_stroke(cr);

    cairo_pattern_t* face = cairo_pattern_create_linear(cx - 7, cy - 7, cx + 7, cy + 7);
    cairo_pattern_add_color_stop_rgb(face, 0, 236 / 255.0, 234 / 255.0, 228 / 255.0);
    cairo_pattern_add_color_stop_rgb(face, 1, 150 / 255.0, 148 / 255.0, 142 / 255.0);
    cairo_arc(cr, cx, cy, 7.4, 0, 2 * kPi);
    cairo_set_source(cr, face);
    cairo_fill_preserve(cr);
    cairo_pattern_destroy(face);
    setColour(cr, {70, 69, 66});
    cairo_set_line_width(cr, 0.6);
    cairo_stroke(cr);

    cairo_set_line_cap(cr, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(cr, 1.8);
    setColour(cr, {16, 16, 15});
    pointerLine(cr, cx, cy, pointerAngle(value), 1.2, 8.6);
    cairo_stroke(cr);
}

BmpImage knobStrip(void (*drawKnob)(cairo_t*, double, double)) {
    Surface s(kKnobSize, kKnobSize * kKnobFrames);
    for (int frame = 0; frame < kKnobFrames; ++frame) {
        cairo_save(s.cr());
        cairo_rectangle(s.cr(), 0, frame * kKnobSize, kKnobSize, kKnobSize);
        cairo_clip(s.cr());
        drawKnob(s.cr(), frame * kKnobSize, frame / double(kKnobFrames - 1));
        cairo_restore(s.cr());
    }
    return s.toBmp();
}

// ---------------------------------------------------------------------------------------------------------
// Buttons. Every button bitmap has two rows of equal height: the upper row "off", the lower row "on".

using LegendDraw = std::function<void(cairo_t*, double x, double y, double w, double h, Colour ink)>;

struct Legend {
    int x;
    int width;
    LegendDraw draw;
};

BmpImage buttonStrip(int width, int rowHeight, const std::vector<Legend>& legends) {
    Surface s(width, 2 * rowHeight);
    for (int row = 0; row < 2; ++row) {
        for (const Legend& legend : legends) {
            int y = row * rowHeight;
            Colour ink = drawKey(s.cr(), legend.x, y, legend.width, rowHeight, row == 1);
            cairo_save(s.cr());
            cairo_rectangle(s.cr(), legend.x + 1, y + 1, legend.width - 2, rowHeight - 2);
            cairo_clip(s.cr());
            legend.draw(s.cr(), legend.x, y, legend.width, rowHeight, ink);
            cairo_restore(s.cr());
        }
    }
    return s.toBmp();
}

LegendDraw text(std::string legend, Font font = legendFont) {
    return [legend, font](cairo_t* cr, double x, double y, double w, double h, Colour ink) {
        // 8-pixel capitals are 6 pixels tall: the baseline three below the middle centres them, the
        // odd half pixel going upwards, away from the key's darker lower edge.
        double baseline = y + std::floor(h / 2.0) + 3.0;
        // A legend wider than its key is squeezed until it keeps a pixel clear inside either edge.
        Font fitted = font;
        double room = w - 4.0;
        double width = textWidth(cr, legend, fitted);
        if (width > room) fitted.stretch *= room / width;
        drawText(cr, legend, x + w / 2.0, baseline, Align::Centre, fitted, ink);
    };
}

// An icon drawn as a polyline through points given in the unit square (0,0 lower left, 1,1 upper right),
// mapped onto a box inset from the key's edges.
LegendDraw plot(std::vector<std::pair<double, double>> points, double insetX, double insetY, double lineWidth = 1.1,
               bool sharp = false) {
    return [points, insetX, insetY, lineWidth, sharp](cairo_t* cr, double x, double y, double w, double h, Colour ink) {
        double left = x + insetX;
        double width = w - 2 * insetX;
        double bottom = y + h - insetY;
        double height = h - 2 * insetY;
        for (std::size_t i = 0; i < points.size(); ++i) {
            double px = left + points[i].first * width;
            double py = bottom - points[i].second * height;
            if (i == 0)
                cairo_move_to(cr, px, py);
            else
                cairo_line_to(cr, px, py);
        }
        cairo_set_line_join(cr, sharp ? CAIRO_LINE_JOIN_MITER : CAIRO_LINE_JOIN_ROUND);
        cairo_set_line_cap(cr, sharp ? CAIRO_LINE_CAP_SQUARE : CAIRO_LINE_CAP_ROUND);
        cairo_set_line_width(cr, lineWidth);
        setColour(cr, ink);
        cairo_stroke(cr);
    };
}

std::vector<std::pair<double, double>> sampled(const std::function<double(double)>& f, int steps = 24) {
    std::vector<std::pair<double, double>> points;
    for (int i = 0; i <= steps; ++i) {
        double t = i / double(steps);
        points.emplace_back(t, f(t));
    }
    return points;
}

// Waveform icons, one period (two for the sawtooth) in a 15 x 12 key.
LegendDraw waveIcon(int waveform) {
    const double ix = 3.0;
    const double iy = 3.2;
    switch (waveform) {
        case 0:
            return plot(sampled([](double t) { return 0.5 + 0.5 * std::sin(2 * kPi * t); }), ix, iy);
        case 1:
            return plot({{0, 0.5}, {0.25, 1}, {0.75, 0}, {1, 0.5}}, ix, iy, 1.1, true);
        case 2:
            return plot({{0, 0}, {0.5, 1}, {0.5, 0}, {1, 1}, {1, 0}}, ix, iy);
        case 3:
            return plot({{0, 0}, {0, 1}, {0.5, 1}, {0.5, 0}, {1, 0}, {1, 1}}, ix, iy);
        case 4:
            return plot({{0, 0.35}, {0.2, 0.35}, {0.2, 1}, {0.4, 1}, {0.4, 0}, {0.6, 0}, {0.6, 0.7}, {0.8, 0.7},
                         {0.8, 0.2}, {1, 0.2}},
                        ix, iy);
        default:
            return plot({{0, 0.5}, {0.12, 0.85}, {0.22, 0.3}, {0.33, 0.6}, {0.45, 0.05}, {0.56, 0.75}, {0.66, 1},
                         {0.77, 0.4}, {0.88, 0.55}, {1, 0.15}},
                        ix, iy, 1.0);
    }
}

// Filter type keys: a small response curve followed by the type's letters.
LegendDraw filterTypeLegend(int type) {
    static const char* const names[] = {"LP", "HP", "BP", "BR"};
    std::string name = names[type];
    return [type, name](cairo_t* cr, double x, double y, double /*w*/, double h, Colour ink) {
        // The curve takes the left 14 pixels of the 30-pixel key, the letters are centred in the rest.
        std::function<double(double)> response;
        switch (type) {
            case 0: response = [](double t) { return t < 0.45 ? 1.0 : std::max(0.0, 1.0 - (t - 0.45) * 1.9); }; break;
            case 1: response = [](double t) { return t > 0.55 ? 1.0 : std::max(0.0, 1.0 - (0.55 - t) * 1.9); }; break;
            case 2: response = [](double t) { return std::exp(-std::pow((t - 0.5) * 4.2, 2)); }; break;
            default: response = [](double t) { return 1.0 - std::exp(-std::pow((t - 0.5) * 4.2, 2)); }; break;
        }
        plot(sampled(response), 3.0, 3.2, 1.1)(cr, x, y, 14.0, h, ink);
        double baseline = y + std::floor(h / 2.0) + 3.0;
        drawText(cr, name, x + 20.5, baseline, Align::Centre, legendFont, ink);
    };
}

// Saturation curves, shown as what each does to one period of a loud sine: hard clipping squares it
// off with steep edges, the middle curve leaves a rounded trapezoid, soft clipping hardly bends it.
LegendDraw saturationIcon(int curve) {
    auto shaped = [curve](double t) {
        double x = std::sin(2 * kPi * t);
        double y = curve == 0 ? std::max(-1.0, std::min(1.0, 4.0 * x))
                 : curve == 1 ? std::tanh(2.0 * x) / std::tanh(2.0)
                              : std::tanh(0.7 * x) / std::tanh(0.7);
        return 0.5 + 0.5 * y;
    };
    return plot(sampled(shaped, 48), 2.0, 2.2, 1.0, curve == 0);
}

// Envelope segment shapes. Attack: fast (quick rise), linear, slow. Decay: linear, middle, fast.
LegendDraw envelopeIcon(int shape) {
    switch (shape) {
        case 0: return plot(sampled([](double t) { return 1 - std::pow(1 - t, 3); }), 2.5, 2.2, 1.0);
        case 1: return plot({{0, 0}, {1, 1}}, 2.5, 2.2, 1.0);
        case 2: return plot(sampled([](double t) { return std::pow(t, 3); }), 2.5, 2.2, 1.0);
        case 3: return plot({{0, 1}, {1, 0}}, 2.5, 2.2, 1.0);
        case 4: return plot(sampled([](double t) { return std::pow(1 - t, 2.2); }), 2.5, 2.2, 1.0);
        default: return plot(sampled([](double t) { return std::pow(1 - t, 6); }), 2.5, 2.2, 1.0);
    }
}

// Feedback routing: two parallel paths, or crossed from left to right and back.
LegendDraw feedbackIcon(bool cross) {
    if (cross) {
        return [](cairo_t* cr, double x, double y, double w, double h, Colour ink) {
            plot({{0, 0}, {1, 1}}, 3.5, 3.2)(cr, x, y, w, h, ink);
            plot({{0, 1}, {1, 0}}, 3.5, 3.2)(cr, x, y, w, h, ink);
        };
    }
    return [](cairo_t* cr, double x, double y, double w, double h, Colour ink) {
        plot({{0, 0}, {1, 0}}, 3.5, 3.7)(cr, x, y, w, h, ink);
        plot({{0, 1}, {1, 1}}, 3.5, 3.7)(cr, x, y, w, h, ink);
    };
}

// A round lamp in the middle of a dark key: unlit brown, or glowing amber.
void lamp(cairo_t* cr, double cx, double cy, bool lit) {
    const double radius = 3.5;
    if (lit) {
        // A soft halo on the key around the lamp, then the lamp itself, hot in the middle.
        cairo_pattern_t* halo = cairo_pattern_create_radial(cx, cy, radius, cx, cy, radius + 2.5);
        cairo_pattern_add_color_stop_rgba(halo, 0, 229 / 255.0, 176 / 255.0, 52 / 255.0, 0.6);
        cairo_pattern_add_color_stop_rgba(halo, 1, 229 / 255.0, 176 / 255.0, 52 / 255.0, 0.0);
        cairo_set_source(cr, halo);
        cairo_arc(cr, cx, cy, radius + 2.5, 0, 2 * kPi);
        cairo_fill(cr);
        cairo_pattern_destroy(halo);
    }
    cairo_pattern_t* glass = cairo_pattern_create_radial(cx - 0.7, cy - 0.9, 0.2, cx, cy, radius);
    if (lit) {
        cairo_pattern_add_color_stop_rgb(glass, 0, 1.0, 0.97, 0.82);
        cairo_pattern_add_color_stop_rgb(glass, 0.5, 229 / 255.0, 176 / 255.0, 52 / 255.0);
        cairo_pattern_add_color_stop_rgb(glass, 1, 150 / 255.0, 96 / 255.0, 12 / 255.0);
    } else {
        cairo_pattern_add_color_stop_rgb(glass, 0, 110 / 255.0, 84 / 255.0, 40 / 255.0);
        cairo_pattern_add_color_stop_rgb(glass, 1, 40 / 255.0, 27 / 255.0, 6 / 255.0);
    }
    cairo_set_source(cr, glass);
    cairo_arc(cr, cx, cy, radius, 0, 2 * kPi);
    cairo_fill_preserve(cr);
    cairo_pattern_destroy(glass);
    setColour(cr, {14, 10, 4});
    cairo_set_line_width(cr, 0.8);
    cairo_stroke(cr);
}

std::vector<Legend> textRow(const std::vector<std::string>& names, int width, Font font = legendFont) {
    std::vector<Legend> legends;
    for (std::size_t i = 0; i < names.size(); ++i)
        legends.push_back({static_cast<int>(i) * width, width, text(names[i], font)});
    return legends;
}

// The on/off switch keeps its dark key in both rows; only the lamp lights.
BmpImage onOffSwitch() {
    Surface s(16, 24);
    for (int row = 0; row < 2; ++row) {
        drawKey(s.cr(), 0, 12 * row, 16, 12, false);
        cairo_save(s.cr());
        cairo_rectangle(s.cr(), 1, 12 * row + 1, 14, 10);
        cairo_clip(s.cr());
        lamp(s.cr(), 8.0, 12 * row + 6.0, row == 1);
        cairo_restore(s.cr());
    }
    return s.toBmp();
}

BmpImage pageTabs() {
    std::vector<Legend> legends = textRow({"PAGE 1", "PAGE 2"}, 42);
    legends.push_back({90, 36, text("FILE")});
    BmpImage image = buttonStrip(126, 12, legends);
    return image;
}

BmpImage bankButtons() { return buttonStrip(48, 12, textRow({"A", "B", "C", "D"}, 12)); }
BmpImage commandButtons() { return buttonStrip(64, 12, textRow({"RECALL", "INIT"}, 32)); }
BmpImage unisonLegato() { return buttonStrip(72, 12, textRow({"UNISON", "LEGATO"}, 36)); }
// The quality keys are only 10 pixels wide, too narrow for a hinted face: their letters are drawn
// pixel by pixel from 5 x 7 patterns.
LegendDraw pixelLetter(const char* const rows[7]) {
    std::vector<std::string> pattern(rows, rows + 7);
    return [pattern](cairo_t* cr, double x, double y, double w, double h, Colour ink) {
        int left = static_cast<int>(x + (w - 5) / 2.0 + 0.5);
        int top = static_cast<int>(y + (h - 7) / 2.0);
        for (int row = 0; row < 7; ++row)
            for (int col = 0; col < 5; ++col)
                if (pattern[row][col] == '#') fillRect(cr, left + col, top + row, 1, 1, ink);
    };
}

BmpImage qualityButtons() {
    static const char* const low[7] = {"#....", "#....", "#....", "#....", "#....", "#....", "#####"};
    static const char* const middle[7] = {"#...#", "##.##", "#.#.#", "#.#.#", "#...#", "#...#", "#...#"};
    static const char* const high[7] = {"#...#", "#...#", "#...#", "#####", "#...#", "#...#", "#...#"};
    return buttonStrip(30, 12, {{0, 10, pixelLetter(low)}, {10, 10, pixelLetter(middle)}, {20, 10, pixelLetter(high)}});
}
BmpImage syncSwitch() { return buttonStrip(30, 12, textRow({"SYNC"}, 30)); }
BmpImage lfoModes() { return buttonStrip(90, 12, textRow({"MONO", "TRIG", "SYNC"}, 30)); }
BmpImage modSources() { return buttonStrip(96, 12, textRow({"ENV1", "ENV2", "LFO1", "LFO2"}, 24)); }
BmpImage modTargets() { return buttonStrip(96, 12, textRow({"FREQ", "PW", "FM", "RESO"}, 24)); }

// A strip of `count` keys of one width side by side, key i drawn by legend(i).
template <typename MakeLegend>
BmpImage iconStrip(int count, int width, int rowHeight, MakeLegend legend) {
    std::vector<Legend> legends;
    for (int i = 0; i < count; ++i) legends.push_back({i * width, width, legend(i)});
    return buttonStrip(count * width, rowHeight, legends);
}

BmpImage waveformButtons() { return iconStrip(6, 15, 12, waveIcon); }
BmpImage filterTypes() { return iconStrip(4, 30, 12, filterTypeLegend); }

// Slope keys, four per filter type. Low and high pass have one key per slope; band pass and band reject
// switch their keys in pairs, so each pair is drawn as one wide key split across its two columns.
BmpImage filterSlopes() {
    std::vector<Legend> legends;
    for (int type = 0; type < 4; ++type) {
        int base = type * 60;
        if (type < 2) {
            const char* slopes[] = {"6", "12", "18", "24"};
            for (int i = 0; i < 4; ++i) legends.push_back({base + i * 15, 15, text(slopes[i])});
        } else {
            legends.push_back({base, 30, text("12 dB")});
            legends.push_back({base + 30, 30, text("24 dB")});
        }
    }
    return buttonStrip(240, 12, legends);
}

BmpImage saturationCurves() { return iconStrip(3, 12, 10, saturationIcon); }
BmpImage envelopeCurves() { return iconStrip(6, 12, 10, envelopeIcon); }

BmpImage feedbackButtons() { return iconStrip(2, 15, 12, [](int cross) { return feedbackIcon(cross != 0); }); }

// ---------------------------------------------------------------------------------------------------------
// Step switches: three 9-pixel images (left half pressed, released, right half pressed), each a pair of
// small keys with arrows.

void arrow(cairo_t* cr, double x, double y, int direction, int count, Colour ink) {
    // A key of 9 x 9 at (x, y); count arrows (1 or 2) pointing left (-1) or right (+1).
    setColour(cr, ink);
    double width = count == 1 ? 3.0 : 2.5;
    double total = count * width;
    double left = x + (9.0 - total) / 2.0;
    for (int i = 0; i < count; ++i) {
        double x0 = left + i * width;
        double x1 = x0 + width;
        if (direction < 0) {
            cairo_move_to(cr, x1, y + 2.0);
            cairo_line_to(cr, x1, y + 7.0);
            cairo_line_to(cr, x0, y + 4.5);
        } else {
            cairo_move_to(cr, x0, y + 2.0);
            cairo_line_to(cr, x0, y + 7.0);
            cairo_line_to(cr, x1, y + 4.5);
        }
        cairo_close_path(cr);
        cairo_fill(cr);
    }
}

// One column of a step switch: left key with (leftDir, leftCount), right key with (rightDir, rightCount).
void stepColumn(cairo_t* cr, int x, int leftDir, int leftCount, int rightDir, int rightCount) {
    for (int state = 0; state < 3; ++state) {
        int y = state * 9;
        Colour inkLeft = drawKey(cr, x, y, 9, 9, state == 0);
        Colour inkRight = drawKey(cr, x + 9, y, 9, 9, state == 2);
        arrow(cr, x, y, leftDir, leftCount, inkLeft);
        arrow(cr, x + 9, y, rightDir, rightCount, inkRight);
    }
}

BmpImage stepSwitch() {
    Surface s(18, 27);
    stepColumn(s.cr(), 0, -1, 1, +1, 1);
    return s.toBmp();
}

// Program steps: the down column goes back by 10 (left) or 1 (right), the up column on by 1 or 10.
BmpImage programStepSwitches() {
    Surface s(36, 27);
    stepColumn(s.cr(), 0, -1, 2, -1, 1);
    stepColumn(s.cr(), 18, +1, 1, +1, 2);
    return s.toBmp();
}

// ---------------------------------------------------------------------------------------------------------
// Digits: seven segments lit in amber, the unlit ones faintly visible, on the displays' back colour.

// The segments run between six nodes on a 2-pixel stroke: long edges on whole pixels so the digits stay
// sharp, 45-degree points at the nodes, and a small gap where two segments meet.
void segment(cairo_t* cr, double x0, double y0, double x1, double y1) {
    const double half = 1.0;
    const double gap = 0.4;
    if (y0 == y1) {
        cairo_move_to(cr, x0 + gap, y0);
        cairo_line_to(cr, x0 + gap + half, y0 - half);
        cairo_line_to(cr, x1 - gap - half, y0 - half);
        cairo_line_to(cr, x1 - gap, y0);
        cairo_line_to(cr, x1 - gap - half, y0 + half);
        cairo_line_to(cr, x0 + gap + half, y0 + half);
    } else {
        cairo_move_to(cr, x0, y0 + gap);
        cairo_line_to(cr, x0 + half, y0 + gap + half);
        cairo_line_to(cr, x0 + half, y1 - gap - half);
        cairo_line_to(cr, x0, y1 - gap);
        cairo_line_to(cr, x0 - half, y1 - gap - half);
        cairo_line_to(cr, x0 - half, y0 + gap + half);
    }
    cairo_close_path(cr);
    cairo_fill(cr);
}

void sevenSegmentDigit(cairo_t* cr, double top, int digit) {
    // Segment bits a b c d e f g: top, upper right, lower right, bottom, lower left, upper left, middle.
    static const int kSegments[10] = {0x3F, 0x06, 0x5B, 0x4F, 0x66, 0x6D, 0x7D, 0x07, 0x7F, 0x6F};
    const double left = 2, right = 8;
    const double upper = top + 2, middle = top + 7, lower = top + 12;
    struct Bar {
        double x0, y0, x1, y1;
    };
    const Bar bars[7] = {
        {left, upper, right, upper},    {right, upper, right, middle}, {right, middle, right, lower},
        {left, lower, right, lower},    {left, middle, left, lower},   {left, upper, left, middle},
        {left, middle, right, middle},
    };
    for (int s = 0; s < 7; ++s) {
        bool lit = (kSegments[digit] >> s) & 1;
        setColour(cr, lit ? palette::amber : palette::ghostSegment);
        segment(cr, bars[s].x0, bars[s].y0, bars[s].x1, bars[s].y1);
    }
}

// ---------------------------------------------------------------------------------------------------------

BmpImage page1() { return drawPage1Background(); }
BmpImage page2() { return drawPage2Background(); }

}  // namespace

BmpImage drawMainKnobStrip() { return knobStrip(drawMainKnob); }
BmpImage drawModKnobStrip() { return knobStrip(drawModKnob); }

BmpImage drawDigits() {
    Surface s(10, 130);
    fillRect(s.cr(), 0, 0, 10, 130, palette::displayBack);
    for (int d = 0; d < 10; ++d) sevenSegmentDigit(s.cr(), d * 13, d);
    return s.toBmp();
}

BmpImage drawAboutImage() {
    using namespace palette;
    Surface s(186, 142);
    cairo_t* cr = s.cr();
    fillRect(cr, 0, 0, 186, 142, displayFrame);
    cairo_pattern_t* back = cairo_pattern_create_linear(0, 0, 0, 142);
    cairo_pattern_add_color_stop_rgb(back, 0, 40 / 255.0, 38 / 255.0, 35 / 255.0);
    cairo_pattern_add_color_stop_rgb(back, 1, 18 / 255.0, 17 / 255.0, 16 / 255.0);
    cairo_rectangle(cr, 1, 1, 184, 140);
    cairo_set_source(cr, back);
    cairo_fill(cr);
    cairo_pattern_destroy(back);
    setColour(cr, amber);
    cairo_set_line_width(cr, 1.0);
    cairo_rectangle(cr, 3.5, 3.5, 179, 135);
    cairo_stroke(cr);

    // A sawtooth turning into a sine across the top: the synthesizer's two halves, raw and filtered.
    cairo_set_line_width(cr, 1.2);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    for (int i = 0; i <= 160; ++i) {
        double t = i / 160.0;
        double phase = std::fmod(t * 4.0, 1.0);
        double saw = 2.0 * phase - 1.0;
        double sine = std::sin(2 * kPi * (t * 4.0 - 0.25 + 0.5));
        double blend = std::min(1.0, std::max(0.0, (t - 0.2) / 0.6));
        double y = 30.0 - 9.0 * ((1 - blend) * saw + blend * -sine * 0.95);
        if (i == 0)
            cairo_move_to(cr, 13 + t * 160, y);
        else
            cairo_line_to(cr, 13 + t * 160, y);
    }
    setColour(cr, mix(amber, {18, 17, 16}, 0.35));
    cairo_stroke(cr);

    drawText(cr, "Tolvane2", 93, 76, Align::Centre, Font{26.0, true, 1.0}, amber);
    drawText(cr, "POLYPHONIC VIRTUAL-ANALOGUE SYNTHESIZER", 93, 90, Align::Centre, Font{7.0, true, kNarrow}, labelDim);
    drawText(cr, "Version 2.0", 93, 108, Align::Centre, Font{10.0, false, 1.0}, label);
    fillRect(cr, 43, 116, 100, 1, mix(amber, {18, 17, 16}, 0.6));
    drawText(cr, "Brindlecot", 93, 130, Align::Centre, Font{10.0, true, 1.0}, amber);
    return s.toBmp();
}

const std::vector<SkinBitmap>& skinBitmaps() {
    static const std::vector<SkinBitmap> bitmaps = {
        {128, "page1-background", 718, 310, page1},
        {129, "page2-background", 718, 310, page2},
        {130, "about", 186, 142, drawAboutImage},
        {131, "knob-strip", 22, 2816, drawMainKnobStrip},
        {132, "mod-knob-strip", 22, 2816, drawModKnobStrip},
        {133, "digits", 10, 130, drawDigits},
        {134, "step-switch", 18, 27, stepSwitch},
        {135, "program-step-switches", 36, 27, programStepSwitches},
        {136, "on-off-switch", 16, 24, onOffSwitch},
        {137, "page-tabs-file", 126, 24, pageTabs},
        {138, "bank-buttons", 48, 24, bankButtons},
        {139, "program-commands", 64, 24, commandButtons},
        {140, "unison-legato", 72, 24, unisonLegato},
        {141, "waveforms", 90, 24, waveformButtons},
        {142, "quality", 30, 24, qualityButtons},
        {143, "sync", 30, 24, syncSwitch},
        {144, "filter-types", 120, 24, filterTypes},
        {145, "filter-slopes", 240, 24, filterSlopes},
        {146, "saturation-curves", 36, 20, saturationCurves},
        {147, "envelope-curves", 72, 20, envelopeCurves},
        {148, "lfo-modes", 90, 24, lfoModes},
        {149, "feedback-routing", 30, 24, feedbackButtons},
        {150, "mod-sources", 96, 24, modSources},
        {151, "mod-targets", 96, 24, modTargets},
    };
    return bitmaps;
}

}  // namespace tolvane::skin
