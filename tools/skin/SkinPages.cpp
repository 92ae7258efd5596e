// The two page backgrounds: section panels with titled headers around the controls of each page, a label
// next to every control, recessed wells under the displays, and the common strip along the bottom.
#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "editor/LayoutTable.h"
#include "params/ParameterIds.h"
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

// The editor's controls of a parameter: its run of the layout table (part 0 or 1) and the width of the
// run's first line.
template <typename Table>
const layout::Control* findIn(const Table& table, int index, int part) {
    for (const layout::Control& c : table)
        if (c.index == index && c.part == part) return &c;
    return nullptr;
}

const layout::Control& control(int index, int part = 0) {
    if (const layout::Control* c = findIn(layout::kPage1, index, part)) return *c;
    if (const layout::Control* c = findIn(layout::kPage2, index, part)) return *c;
    if (const layout::Control* c = findIn(layout::kStrip, index, part)) return *c;
    throw std::logic_error("the layout has no control for parameter " + std::to_string(index));
}

int runWidth(const layout::Control& c) { return (std::min(c.count, c.perLine) - 1) * c.dx + c.width; }

void knobLabel(cairo_t* cr, const std::string& text, int index) {
    const layout::Control& knob = control(index);
    labelAbove(cr, text, knob.x, knob.y, knob.width);
}

// A label above a run of buttons.
void runLabel(cairo_t* cr, const std::string& text, int index, int part = 0) {
    const layout::Control& run = control(index, part);
    labelAbove(cr, text, run.x, run.y, runWidth(run));
}

// A dim label centred under a run of small buttons.
void runLabelBelow(cairo_t* cr, const std::string& text, int index) {
    const layout::Control& run = control(index);
    labelAt(cr, text, run.x + runWidth(run) / 2.0, run.y + run.height + 9, Align::Centre, labelDim);
}

// A recessed well in the displays' back colour around a control drawn by the toolkit or a digit display.
void well(cairo_t* cr, int x, int y, int w, int h, int margin) {
    recess(cr, x - margin, y - margin, w + 2 * margin, h + 2 * margin, displayBack);
}

// The parts of a modulation row shared by both oscillators and the filter: the groove that names the
// A and B halves, and the depth and velocity labels over the knobs on either side (each connection is
// followed by its depth and velocity sensitivity).
void modulationLabels(cairo_t* cr, int x0, int x1, int split, int connectionA, int connectionB) {
    groove(cr, x0, split, 133, "MOD A", (x0 + split) / 2.0);
    groove(cr, split, x1, 133, "MOD B", (split + x1) / 2.0);
    for (int connection : {connectionA, connectionB}) {
        knobLabel(cr, "DEPTH", connection + 1);
        knobLabel(cr, "VEL", connection + 2);
    }
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

namespace {

using namespace param;

void osc1Panel(cairo_t* cr) {
    section(cr, 3, 124, "OSC1");
    runLabel(cr, "WAVE", Osc1Waveform, 1);
    runLabel(cr, "QUALITY", Osc1Waveform, 0);
    knobLabel(cr, "PW", Osc1PulseWidth);
    knobLabel(cr, "KEY", Osc1KeyFollow);
    knobLabel(cr, "PITCH", Osc1Pitch);
    knobLabel(cr, "DETUNE", Osc1Detune);
    modulationLabels(cr, 4, 123, 65, Osc1ModAConnection, Osc1ModBConnection);
}

void osc2Panel(cairo_t* cr) {
    section(cr, 128, 249, "OSC2");
    runLabel(cr, "WAVE", Osc2Waveform, 1);
    labelAt(cr, "QUALITY", 167, 76, Align::Left);  // beside its keys, under the wave keys
    knobLabel(cr, "PW", Osc2PulseWidth);
    knobLabel(cr, "KEY", Osc2KeyFollow);
    knobLabel(cr, "FM", Osc2FmDepth);
    knobLabel(cr, "PITCH", Osc2Pitch);
    knobLabel(cr, "DETUNE", Osc2Detune);
    modulationLabels(cr, 129, 248, 191, Osc2ModAConnection, Osc2ModBConnection);
}

void mixerPanel(cairo_t* cr) {
    section(cr, 252, 297, "MIXER");
    const char* titles[5] = {"OSC1", "OSC2", "RING", "NOISE", "COLOR"};
    for (int i = 0; i < 5; ++i) knobLabel(cr, titles[i], MixerOsc1Level + i);
}

void filterPanel(cairo_t* cr) {
    section(cr, 299, 417, "FILTER");
    runLabel(cr, "TYPE", FilterType, 0);
    runLabel(cr, "SLOPE", FilterType, 1);
    knobLabel(cr, "SATURATION", FilterSaturationLevel);
    labelAt(cr, "CURVE", 380, 77, Align::Left, labelDim);  // to the right of the curve keys
    knobLabel(cr, "KEY", FilterKeyFollow);
    knobLabel(cr, "CUTOFF", FilterCutoff);
    knobLabel(cr, "RESO", FilterResonance);
    modulationLabels(cr, 300, 416, 359, FilterModAConnection, FilterModBConnection);
}

void ampPanel(cairo_t* cr) {
    section(cr, 420, 461, "AMP");
    runLabel(cr, "ENV", AmpModConnection, 0);
    runLabel(cr, "LFO", AmpModConnection, 1);
    groove(cr, 421, 460, 133, "MOD", 440.5);
    knobLabel(cr, "LFO AMT", AmpLfoDepth);
    knobLabel(cr, "VEL", AmpVelocitySens);
}

void envelopePanel(cairo_t* cr, int env) {
    const int first = env == 0 ? Env1Attack : Env2Attack;
    const int x0 = 463 + 44 * env;
    section(cr, x0, x0 + 42, env == 0 ? "ENV1" : "ENV2");
    knobLabel(cr, "ATTACK", first);
    runLabelBelow(cr, "CURVE", first + 1);
    knobLabel(cr, "DECAY", first + 2);
    runLabelBelow(cr, "CURVE", first + 3);
    knobLabel(cr, "SUSTAIN", first + 4);
    knobLabel(cr, "RELEASE", first + 5);
}

void lfoPanel(cairo_t* cr, int lfo) {
    const int first = lfo == 0 ? Lfo1Waveform : Lfo2Waveform;
    const int x0 = 551 + 41 * lfo;
    section(cr, x0, x0 + 39 + lfo, lfo == 0 ? "LFO1" : "LFO2");
    runLabel(cr, "WAVE", first);
    runLabel(cr, "MODE", first + 1);
    knobLabel(cr, "RATE", first + 2);
    knobLabel(cr, "PHASE", first + 3);
}

void effectPanel(cairo_t* cr) {
    section(cr, 635, 715, "EFFECT", 685);  // clear of the on/off switch at the left of the header
    knobLabel(cr, "TIME", EffectDelayTime);
    knobLabel(cr, "MIX", EffectMix);
    knobLabel(cr, "DIFFUSE", EffectDiffusion);
    knobLabel(cr, "FDBK", EffectFeedback);
    const layout::Control& route = control(EffectFeedbackConnection);
    labelAt(cr, "ROUTE", route.x + runWidth(route) / 2.0, route.y + route.height + 10, Align::Centre, labelDim);
    knobLabel(cr, "DRIVE", EffectOverdrive);
    knobLabel(cr, "LO CUT", EffectLowCut);
    knobLabel(cr, "HI CUT", EffectHighCut);
    groove(cr, 636, 714, 206, "MOD", 675);
    knobLabel(cr, "RATE", EffectModSpeed);
    knobLabel(cr, "DEPTH", EffectModDepth);
}

// The texts drawn on the page must lie clear of the page's controls and of the strip's.
void checkPageTexts(int page) {
    std::vector<Placement> controls = page == 1 ? page1Controls() : page2Controls();
    for (const Placement& p : stripControls()) controls.push_back(p);
    checkTexts(page, controls);
}

}  // namespace

BmpImage drawPage1Background() {
    Surface s(kEditorWidth, kEditorHeight);
    cairo_t* cr = s.cr();
    gutterGrain(cr);
    osc1Panel(cr);
    osc2Panel(cr);
    mixerPanel(cr);
    filterPanel(cr);
    ampPanel(cr);
    for (int env = 0; env < 2; ++env) envelopePanel(cr, env);
    for (int lfo = 0; lfo < 2; ++lfo) lfoPanel(cr, lfo);
    effectPanel(cr);
    commonStrip(cr);
    checkPageTexts(1);
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
void modSlotLabels(cairo_t* cr, int slot) {
    knobLabel(cr, "DEPTH", ModDepth1 + slot);
    const layout::Control& sens = control(ModSensSource1 + slot);
    labelAbove(cr, "SENS", sens.x, sens.y, sens.width);
    well(cr, sens.x, sens.y, sens.width, sens.height, 1);
    const layout::Control& source = control(ModSource1 + slot);
    const layout::Control& destination = control(ModDestination1 + slot);
    well(cr, source.x, source.y, source.width, source.height, 1);
    well(cr, destination.x, destination.y, destination.width, destination.height, 1);
    const int menuX = source.x;
    // Between the two menus: the source above, the destination below.
    double baseline = source.y + 23;
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
    const layout::Control& channel = control(MidiChannel);
    labelAbove(cr, "CHANNEL", channel.x, channel.y, channel.width);
    well(cr, channel.x, channel.y, channel.width, channel.height, 2);
    const layout::Control& bend = control(PitchBendRange);
    labelAbove(cr, "BEND", bend.x, bend.y, bend.width);
    well(cr, bend.x, bend.y, bend.width, bend.height, 2);
    headerBar(cr, 4, 41, 160, 11, "TUNE", 22.5);
    knobLabel(cr, "MASTER", MasterTune);

    // The eight assignable modulation slots, in four blocks of two.
    const int blockX[2] = {45, 233};
    for (int column = 0; column < 2; ++column) {
        int x0 = blockX[column];
        int first = 1 + 2 * column;
        modSlotPair(cr, x0, kPanelTop, 137, kHeaderHeight, first);
        modSlotPair(cr, x0, 139, kPanelBottom, 11, first + 4);
    }
    for (int slot = 0; slot < 8; ++slot) modSlotLabels(cr, slot);

    // Controller maps: sixteen rows of controller and target menus in one well.
    section(cr, 423, 715, "CONTROLLER MAPS");
    labelAt(cr, "CONTROLLER", 494, 36);
    labelAt(cr, "PARAMETER", 621, 36);
    recess(cr, 446, 38, 255, 211, displayBack);
    for (int map = 0; map < kNumControllerMaps; ++map) {
        const layout::Control& menu = control(MapControl1 + map);
        labelAt(cr, std::to_string(map + 1), menu.x - 5, menu.y + 9, Align::Right);
    }

    commonStrip(cr);
    checkPageTexts(2);
    return s.toBmp();
}

std::vector<std::string> labelCollisions() { return gCollisions; }

}  // namespace tolvane::skin
