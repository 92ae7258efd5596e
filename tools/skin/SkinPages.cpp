// The two page backgrounds: section panels with titled headers around the controls of each page, a label
// next to every control, recessed wells under the displays, and the common strip along the bottom.
#include <cstdint>
#include <string>
#include <vector>

#include "tools/skin/SkinBitmaps.h"
#include "tools/skin/SkinLayout.h"
#include "tools/skin/SkinPaint.h"

namespace tolvane::skin {

namespace {

using namespace palette;

constexpr int kPanelTop = 4;
constexpr int kPanelBottom = 256;
constexpr int kHeaderHeight = 18;
constexpr int kStripTop = 259;
constexpr int kStripBottom = 308;

// The texts drawn on the page being built, to be checked against the page's controls.
struct DrawnText {
    std::string text;
    Box box;
};
std::vector<DrawnText> gDrawnTexts;
std::vector<std::string> gCollisions;

Box noteText(const std::string& text, Box box) {
    gDrawnTexts.push_back({text, box});
    return box;
}

void checkTexts(int page, const std::vector<Placement>& controls) {
    for (const DrawnText& drawn : gDrawnTexts) {
        for (const Placement& p : controls) {
            Box control{double(p.x), double(p.y), double(p.x + p.width), double(p.y + p.height)};
            if (drawn.box.overlaps(control)) {
                gCollisions.push_back("page " + std::to_string(page) + ": \"" + drawn.text + "\" lies under the control at (" +
                                      std::to_string(p.x) + "," + std::to_string(p.y) + ")");
            }
        }
    }
    gDrawnTexts.clear();
}

// The gutter between the panels: near-black with a faint deterministic grain.
void gutterGrain(cairo_t* cr) {
    fillRect(cr, 0, 0, kEditorWidth, kEditorHeight, gutter);
    std::uint32_t seed = 0x2545F491u;
    for (int y = 0; y < kEditorHeight; ++y) {
        for (int x = 0; x < kEditorWidth; ++x) {
            seed = seed * 1664525u + 1013904223u;
            int shade = static_cast<int>(seed >> 29);  // 0..7
            if (shade >= 6) fillRect(cr, x, y, 1, 1, mix(gutter, {40, 38, 35}, (shade - 5) * 0.25));
        }
    }
}

// A section panel: a flat face (the colour every control image is drawn on) with a dark outline and
// a light inner edge along the top and left.
void panelFace(cairo_t* cr, int x0, int y0, int x1, int y1) {
    fillRect(cr, x0, y0, x1 - x0, y1 - y0, panelEdgeDark);
    fillRect(cr, x0 + 1, y0 + 1, x1 - x0 - 2, y1 - y0 - 2, panel);
    fillRect(cr, x0 + 1, y0 + 1, x1 - x0 - 2, 1, panelEdgeLight);
    fillRect(cr, x0 + 1, y0 + 1, 1, y1 - y0 - 2, mix(panel, panelEdgeLight, 0.5));
}

// A header bar across the top of a panel with the section's title in amber.
void headerBar(cairo_t* cr, int x0, int x1, int y, int height, const std::string& title, double titleCentre) {
    Colour top = mix(header, panel, 0.45);
    cairo_pattern_t* shade = cairo_pattern_create_linear(0, y, 0, y + height);
    cairo_pattern_add_color_stop_rgb(shade, 0, top.r / 255.0, top.g / 255.0, top.b / 255.0);
    cairo_pattern_add_color_stop_rgb(shade, 1, header.r / 255.0, header.g / 255.0, header.b / 255.0);
    cairo_rectangle(cr, x0, y, x1 - x0, height);
    cairo_set_source(cr, shade);
    cairo_fill(cr);
    cairo_pattern_destroy(shade);
    fillRect(cr, x0, y + height - 1, x1 - x0, 1, mix(header, amber, 0.45));
    double baseline = y + height / 2.0 + 3.5;
    noteText(title, drawText(cr, title, titleCentre, baseline, Align::Centre, titleFont, amber));
}

void section(cairo_t* cr, int x0, int x1, const std::string& title, double titleCentre = 0) {
    panelFace(cr, x0, kPanelTop, x1, kPanelBottom);
    if (titleCentre == 0) titleCentre = (x0 + x1) / 2.0;
    headerBar(cr, x0 + 1, x1 - 1, kPanelTop + 1, kHeaderHeight, title, titleCentre);
}

// A groove across a panel carrying a small title: splits a section into parts.
void groove(cairo_t* cr, int x0, int x1, int y, const std::string& title = {}, double centre = 0) {
    fillRect(cr, x0, y, x1 - x0, 1, panelEdgeDark);
    fillRect(cr, x0, y + 1, x1 - x0, 1, panelEdgeLight);
    if (title.empty()) return;
    double width = textWidth(cr, title, labelFont);
    fillRect(cr, centre - width / 2.0 - 3, y, width + 6, 2, panel);
    noteText(title, drawText(cr, title, centre, y + 3, Align::Centre, labelFont, mix(amber, label, 0.35)));
}

// Labels. A label above a control sits on a baseline three pixels above the control's top edge.
void labelAt(cairo_t* cr, const std::string& text, double x, double baseline, Align align = Align::Centre,
             Colour c = label) {
    noteText(text, drawText(cr, text, x, baseline, align, labelFont, c));
}

void labelAbove(cairo_t* cr, const std::string& text, int x, int y, int width) {
    labelAt(cr, text, x + width / 2.0, y - 3);
}

void knobLabel(cairo_t* cr, const std::string& text, int x, int y) { labelAbove(cr, text, x, y, 22); }

// A recessed well in the displays' back colour around a control drawn by the toolkit or a digit display.
void well(cairo_t* cr, int x, int y, int w, int h, int margin) {
    recess(cr, x - margin, y - margin, w + 2 * margin, h + 2 * margin, displayBack);
}

// The parts of a modulation row shared by both oscillators and the filter: the groove that names the
// A and B halves, and the depth and velocity labels over the knobs on either side.
void modulationLabels(cairo_t* cr, int x0, int x1, int split, int knobAX, int knobBX) {
    groove(cr, x0, split, 133, "MOD A", (x0 + split) / 2.0);
    groove(cr, split, x1, 133, "MOD B", (split + x1) / 2.0);
    knobLabel(cr, "DEPTH", knobAX, 157);
    knobLabel(cr, "DEPTH", knobBX, 157);
    knobLabel(cr, "VEL", knobAX, 223);
    knobLabel(cr, "VEL", knobBX, 223);
}

// ---------------------------------------------------------------------------------------------------------
// The common strip along the bottom, the same on both pages.

void commonStrip(cairo_t* cr) {
    const int top = kStripTop;
    const int bottom = kStripBottom;
    const int labelBaseline = 274;

    // Voice settings.
    panelFace(cr, 3, top, 254, bottom);
    labelAt(cr, "VOICES", 23, labelBaseline);
    well(cr, 13, 278, 20, 13, 2);
    labelAt(cr, "V.DETUNE", 128, labelBaseline);
    labelAt(cr, "PORTAMENTO", 181, labelBaseline);
    labelAt(cr, "VOLUME", 234, labelBaseline);

    // Program selection.
    panelFace(cr, 258, top, 394, bottom);
    labelAt(cr, "BANK", 283, labelBaseline);
    labelAt(cr, "PROGRAM", 325, labelBaseline);
    well(cr, 310, 278, 30, 13, 2);

    // Status lines and program name in one display window.
    panelFace(cr, 397, top, 562, bottom);
    recess(cr, 399, 261, 160, 46, displayBack);
    fillRect(cr, 401, 290, 156, 1, mix(displayBack, amber, 0.25));

    // Product name (the about overlay's click area), page tabs and file menu.
    panelFace(cr, 566, top, 715, bottom);
    noteText("Tolvane2", drawText(cr, "Tolvane2", 588, 281, Align::Left, Font{13.0, true, 1.0}, amber));
    noteText("BRINDLECOT", drawText(cr, "BRINDLECOT", 707, 280, Align::Right, Font{7.0, true, 1.0}, labelDim));
}

}  // namespace

// ---------------------------------------------------------------------------------------------------------

BmpImage drawPage1Background() {
    Surface s(kEditorWidth, kEditorHeight);
    cairo_t* cr = s.cr();
    gutterGrain(cr);

    // OSC1
    section(cr, 3, 124, "OSC1");
    labelAbove(cr, "WAVE", 8, 38, 30);
    labelAbove(cr, "QUALITY", 8, 80, 30);
    knobLabel(cr, "PW", 54, 43);
    knobLabel(cr, "KEY", 96, 43);
    knobLabel(cr, "PITCH", 54, 99);
    knobLabel(cr, "DETUNE", 96, 99);
    modulationLabels(cr, 4, 123, 65, 12, 96);

    // OSC2
    section(cr, 128, 249, "OSC2");
    labelAbove(cr, "WAVE", 134, 38, 30);
    labelAt(cr, "QUALITY", 167, 76, Align::Left);
    knobLabel(cr, "PW", 180, 43);
    knobLabel(cr, "KEY", 222, 43);
    knobLabel(cr, "FM", 138, 99);
    knobLabel(cr, "PITCH", 180, 99);
    knobLabel(cr, "DETUNE", 222, 99);
    modulationLabels(cr, 129, 248, 191, 138, 222);

    // Mixer
    section(cr, 252, 297, "MIXER");
    knobLabel(cr, "OSC1", 264, 43);
    knobLabel(cr, "OSC2", 264, 87);
    knobLabel(cr, "RING", 264, 131);
    knobLabel(cr, "NOISE", 264, 174);
    knobLabel(cr, "COLOR", 264, 223);

    // Filter
    section(cr, 299, 417, "FILTER");
    labelAbove(cr, "TYPE", 302, 38, 30);
    labelAbove(cr, "SLOPE", 302, 96, 30);
    knobLabel(cr, "SATURATION", 348, 43);
    labelAt(cr, "CURVE", 380, 77, Align::Left, labelDim);
    knobLabel(cr, "KEY", 390, 43);
    knobLabel(cr, "CUTOFF", 348, 99);
    knobLabel(cr, "RESO", 390, 99);
    modulationLabels(cr, 300, 416, 359, 306, 390);

    // Amplifier
    section(cr, 420, 461, "AMP");
    labelAbove(cr, "ENV", 431, 38, 24);
    labelAbove(cr, "LFO", 431, 96, 24);
    groove(cr, 421, 460, 133, "MOD", 440.5);
    knobLabel(cr, "LFO AMT", 432, 157);
    knobLabel(cr, "VEL", 432, 223);

    // Envelopes
    const char* envTitles[] = {"ENV1", "ENV2"};
    for (int env = 0; env < 2; ++env) {
        int x0 = 463 + 44 * env;
        int kx = 474 + 42 * env;
        int bx = 467 + 42 * env;
        section(cr, x0, x0 + 42, envTitles[env]);
        knobLabel(cr, "ATTACK", kx, 43);
        labelAt(cr, "CURVE", bx + 18, 90, Align::Centre, labelDim);
        knobLabel(cr, "DECAY", kx, 107);
        labelAt(cr, "CURVE", bx + 18, 154, Align::Centre, labelDim);
        knobLabel(cr, "SUSTAIN", kx, 172);
        knobLabel(cr, "RELEASE", kx, 223);
    }

    // LFOs
    const char* lfoTitles[] = {"LFO1", "LFO2"};
    for (int lfo = 0; lfo < 2; ++lfo) {
        int x0 = 551 + 41 * lfo;
        int bx = 554 + 42 * lfo;
        section(cr, x0, x0 + 39 + lfo, lfoTitles[lfo]);
        labelAbove(cr, "WAVE", bx, 38, 30);
        labelAbove(cr, "MODE", bx, 102, 30);
        knobLabel(cr, "RATE", bx + 4, 172);
        knobLabel(cr, "PHASE", bx + 4, 223);
    }

    // Effect
    section(cr, 635, 715, "EFFECT", 685);  // clear of the on/off switch at the left of the header
    knobLabel(cr, "TIME", 642, 43);
    knobLabel(cr, "MIX", 684, 43);
    knobLabel(cr, "DIFFUSE", 684, 88);
    knobLabel(cr, "FDBK", 642, 110);
    labelAt(cr, "ROUTE", 653, 162, Align::Centre, labelDim);
    knobLabel(cr, "DRIVE", 684, 133);
    knobLabel(cr, "LO CUT", 642, 178);
    knobLabel(cr, "HI CUT", 684, 178);
    groove(cr, 636, 714, 206, "MOD", 675);
    knobLabel(cr, "RATE", 642, 223);
    knobLabel(cr, "DEPTH", 684, 223);

    commonStrip(cr);
    std::vector<Placement> controls = page1Controls();
    for (const Placement& p : stripControls()) controls.push_back(p);
    checkTexts(1, controls);
    return s.toBmp();
}

namespace {

// A small solid triangle pointing up or down, used to point a label at the menu it names.
void pointer(cairo_t* cr, double x, double baseline, bool up, Colour c) {
    setColour(cr, c);
    double top = baseline - 5.5;
    if (up) {
        cairo_move_to(cr, x, baseline);
        cairo_line_to(cr, x + 5, baseline);
        cairo_line_to(cr, x + 2.5, top + 1);
    } else {
        cairo_move_to(cr, x, top + 1);
        cairo_line_to(cr, x + 5, top + 1);
        cairo_line_to(cr, x + 2.5, baseline);
    }
    cairo_close_path(cr);
    cairo_fill(cr);
}

// One assignable slot: its depth knob, the sensitivity menu and knob below it, and its source and
// destination menus in the middle column.
void modSlotLabels(cairo_t* cr, int knobX, int depthY, int menuX, int sourceY) {
    knobLabel(cr, "DEPTH", knobX, depthY);
    labelAbove(cr, "SENS", knobX - 12, depthY + 44, 45);
    well(cr, knobX - 12, depthY + 44, 45, 12, 1);
    well(cr, menuX, sourceY, 65, 12, 1);
    well(cr, menuX, sourceY + 27, 65, 12, 1);
    // Between the two menus: the source above, the destination below.
    double baseline = sourceY + 23;
    pointer(cr, menuX + 2, baseline, true, labelDim);
    labelAt(cr, "SRC", menuX + 9, baseline, Align::Left, labelDim);
    labelAt(cr, "DEST", menuX + 56, baseline, Align::Right, labelDim);
    pointer(cr, menuX + 58, baseline, false, labelDim);
}

// Two slots share a block: the first owns the left knob column and the upper menus, the second the right
// knob column and the lower menus. A stepped groove between them shows which menus belong to which knobs.
void modSlotPair(cairo_t* cr, int x0, int top, int bottom, int headerHeight, int first) {
    const int x1 = x0 + 186;
    panelFace(cr, x0, top, x1, bottom);
    const int headerBottom = top + 1 + headerHeight;
    const int stepX = x0 + 131;  // between the menus and the right knob column
    const int bendX = x0 + 55;   // between the left knob column and the menus
    const int stepY = top + (top == kPanelTop ? 81 : 65);
    headerBar(cr, x0 + 1, stepX, top + 1, headerHeight, "MOD " + std::to_string(first), (x0 + stepX) / 2.0);
    headerBar(cr, stepX + 2, x1 - 1, top + 1, headerHeight, "MOD " + std::to_string(first + 1),
              (stepX + x1) / 2.0);
    fillRect(cr, stepX, top + 1, 2, headerHeight, panel);

    // The stepped groove: down from the header, across, and down to the bottom.
    Colour dark = panelEdgeDark;
    Colour light = panelEdgeLight;
    fillRect(cr, stepX, headerBottom, 1, stepY - headerBottom, dark);
    fillRect(cr, stepX + 1, headerBottom, 1, stepY - headerBottom + 1, light);
    fillRect(cr, bendX, stepY, stepX - bendX + 1, 1, dark);
    fillRect(cr, bendX + 1, stepY + 1, stepX - bendX + 1, 1, light);
    fillRect(cr, bendX, stepY, 1, bottom - 1 - stepY, dark);
    fillRect(cr, bendX + 1, stepY + 1, 1, bottom - 2 - stepY, light);
}

}  // namespace

BmpImage drawPage2Background() {
    Surface s(kEditorWidth, kEditorHeight);
    cairo_t* cr = s.cr();
    gutterGrain(cr);

    // Master tuning and MIDI settings.
    section(cr, 3, 42, "MIDI");
    labelAt(cr, "CHANNEL", 23, 38);
    well(cr, 13, 41, 20, 13, 2);
    labelAt(cr, "BEND", 23, 120);
    well(cr, 13, 123, 20, 13, 2);
    headerBar(cr, 4, 41, 160, 11, "TUNE", 22.5);
    knobLabel(cr, "MASTER", 12, 191);

    // The eight assignable modulation slots, in four blocks of two.
    const int blockX[2] = {45, 233};
    for (int column = 0; column < 2; ++column) {
        int x0 = blockX[column];
        int first = 1 + 2 * column;
        modSlotPair(cr, x0, kPanelTop, 137, kHeaderHeight, first);
        modSlotPair(cr, x0, 139, kPanelBottom, 11, first + 4);
    }
    const int knobX[8] = {62, 194, 250, 382, 62, 194, 250, 382};
    const int depthY[8] = {43, 43, 43, 43, 161, 161, 161, 161};
    const int menuX[8] = {106, 106, 294, 294, 106, 106, 294, 294};
    const int sourceY[8] = {37, 95, 37, 95, 155, 213, 155, 213};
    for (int slot = 0; slot < 8; ++slot) modSlotLabels(cr, knobX[slot], depthY[slot], menuX[slot], sourceY[slot]);

    // Controller maps: sixteen rows of controller and target menus in one well.
    section(cr, 423, 715, "CONTROLLER MAPS");
    labelAt(cr, "CONTROLLER", 494, 36);
    labelAt(cr, "PARAMETER", 621, 36);
    recess(cr, 446, 38, 255, 211, displayBack);
    for (int map = 1; map <= 16; ++map)
        labelAt(cr, std::to_string(map), 443, 40 + 13 * (map - 1) + 9, Align::Right);

    commonStrip(cr);
    std::vector<Placement> controls = page2Controls();
    for (const Placement& p : stripControls()) controls.push_back(p);
    checkTexts(2, controls);
    return s.toBmp();
}

std::vector<std::string> labelCollisions() { return gCollisions; }

}  // namespace tolvane::skin
