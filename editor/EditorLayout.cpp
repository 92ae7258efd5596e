#include "editor/EditorLayout.h"

#include <memory>

#include "editor/ButtonWidgets.h"
#include "editor/EditorSkin.h"
#include "editor/FilterTypeWidget.h"
#include "editor/KnobWidget.h"
#include "editor/ListMenuWidget.h"
#include "editor/MenuTables.h"
#include "editor/NumberWidget.h"
#include "editor/WidgetPage.h"
#include "params/ParameterIds.h"

namespace tolvane {
namespace {

using namespace skin;

// Places of the buttons of one row: all share a size and a bitmap.
struct Row {
    int width;
    int height;
    int bitmap;
    std::initializer_list<Point> at;
    std::initializer_list<int> columns;
};

template <typename AddButton>
void addRow(const Row& row, AddButton add) {
    auto column = row.columns.begin();
    for (Point p : row.at) add(ButtonPlace{area(p.h, p.v, row.width, row.height), row.bitmap, *column++});
}

class PageBuilder {
public:
    PageBuilder(WidgetPage& page, SynthEditor& editor) : page_(page), editor_(editor) {}

    void knob(int index, int x, int y, int strip = kKnobStrip) {
        page_.add(std::make_unique<KnobWidget>(editor_, index, Point{x, y}, strip));
    }
    void toggle(int index, const ButtonPlace& button) { page_.add(std::make_unique<SwitchWidget>(editor_, index, button)); }
    void radio(int index, const Row& row) {
        auto* w = page_.add(std::make_unique<RadioWidget>(editor_, index));
        addRow(row, [w](const ButtonPlace& b) { w->add(b); });
    }
    void bits(int index, const Row& row) {
        auto* w = page_.add(std::make_unique<BitFieldWidget>(editor_, index));
        addRow(row, [w](const ButtonPlace& b) { w->add(b); });
    }
    void radioPair(int index, const Row& first, const Row& second) {
        auto* w = page_.add(std::make_unique<RadioPairWidget>(editor_, index));
        addRow(first, [w](const ButtonPlace& b) { w->addFirst(b); });
        addRow(second, [w](const ButtonPlace& b) { w->addSecond(b); });
    }
    void radioBits(int index, const Row& radio, const Row& bits) {
        auto* w = page_.add(std::make_unique<RadioBitsWidget>(editor_, index));
        addRow(radio, [w](const ButtonPlace& b) { w->addFirst(b); });
        addRow(bits, [w](const ButtonPlace& b) { w->addSecond(b); });
    }
    void menu(int index, const MenuTable& table, int x, int y) {
        page_.add(std::make_unique<ListMenuWidget>(editor_, index, table, Point{x, y}));
    }
    void number(int index, const NumberRule& rule, int x, int y) {
        page_.add(std::make_unique<NumberWidget>(editor_, index, rule, Point{x, y}));
    }
    void placeholder(int index) { page_.add(std::make_unique<ParamWidget>(editor_, index)); }
    void filterType(int index) { page_.add(std::make_unique<FilterTypeWidget>(editor_, index)); }

private:
    WidgetPage& page_;
    SynthEditor& editor_;
};

// An oscillator or filter modulation connection: four sources in a column, then the target bits.
void connection(PageBuilder& b, int index, int x, std::initializer_list<Point> bitsAt,
                std::initializer_list<int> bitColumns) {
    b.radioBits(index, Row{24, 12, kModSources, {{x, 152}, {x, 164}, {x, 176}, {x, 188}}, {0, 24, 48, 72}},
                Row{24, 12, kModTargets, bitsAt, bitColumns});
}

}  // namespace

void addPage1Widgets(WidgetPage& page, SynthEditor& editor) {
    PageBuilder b(page, editor);
    // OSC1
    b.radioPair(0, Row{10, 12, kQuality, {{8, 80}, {18, 80}, {28, 80}}, {0, 10, 20}},
                Row{15, 12, kWaveforms, {{8, 38}, {23, 38}, {8, 50}, {23, 50}}, {0, 15, 30, 45}});
    b.toggle(1, ButtonPlace{area(8, 102, 30, 12), kSync, 0});
    b.knob(2, 54, 43);
    b.knob(3, 54, 99);
    b.knob(4, 96, 99);
    b.knob(5, 96, 43);
    connection(b, 6, 41, {{41, 218}, {41, 230}}, {0, 24});
    b.knob(7, 12, 157);
    b.knob(8, 12, 223);
    connection(b, 9, 65, {{65, 218}, {65, 230}}, {0, 24});
    b.knob(10, 96, 157);
    b.knob(11, 96, 223);
    // OSC2
    b.radioPair(12, Row{10, 12, kQuality, {{134, 67}, {144, 67}, {154, 67}}, {0, 10, 20}},
                Row{15, 12, kWaveforms, {{134, 38}, {149, 38}, {134, 50}, {149, 50}}, {0, 15, 30, 45}});
    b.knob(13, 138, 99);
    b.knob(14, 180, 43);
    b.knob(15, 180, 99);
    b.knob(16, 222, 99);
    b.knob(17, 222, 43);
    connection(b, 18, 167, {{167, 216}, {167, 228}, {167, 240}}, {0, 24, 48});
    b.knob(19, 138, 157);
    b.knob(20, 138, 223);
    connection(b, 21, 191, {{191, 216}, {191, 228}, {191, 240}}, {0, 24, 48});
    b.knob(22, 222, 157);
    b.knob(23, 222, 223);
    // Mixer
    b.knob(24, 264, 43);
    b.knob(25, 264, 87);
    b.knob(26, 264, 131);
    b.knob(27, 264, 174);
    b.knob(28, 264, 223);
    // Filter
    b.toggle(29, ButtonPlace{area(302, 9, 16, 12), kOnOffSwitch, 0});
    b.filterType(30);
    b.knob(31, 348, 43);
    b.radio(32, Row{12, 10, kSaturationCurves, {{341, 69}, {353, 69}, {365, 69}}, {0, 12, 24}});
    b.knob(33, 348, 99);
    b.knob(34, 390, 99);
    b.knob(35, 390, 43);
    connection(b, 36, 335, {{335, 218}, {335, 230}}, {0, 72});
    b.knob(37, 306, 157);
    b.knob(38, 306, 223);
    connection(b, 39, 359, {{359, 218}, {359, 230}}, {0, 72});
    b.knob(40, 390, 157);
    b.knob(41, 390, 223);
    // Amplifier
    b.radioPair(42, Row{24, 12, kModSources, {{431, 38}, {431, 50}}, {0, 24}},
                Row{24, 12, kModSources, {{431, 96}, {431, 108}}, {48, 72}});
    b.knob(43, 432, 157);
    b.knob(44, 432, 223);
    // Envelopes
    for (int env = 0; env < 2; ++env) {
        const int first = 45 + 6 * env;
        const int x = 474 + 42 * env;
        const int buttonX = x - 7;
        b.knob(first, x, 43);
        b.radio(first + 1, Row{12, 10, kEnvelopeCurves, {{buttonX, 71}, {buttonX + 12, 71}, {buttonX + 24, 71}}, {0, 12, 24}});
        b.knob(first + 2, x, 107);
        b.radio(first + 3,
                Row{12, 10, kEnvelopeCurves, {{buttonX, 135}, {buttonX + 12, 135}, {buttonX + 24, 135}}, {36, 48, 60}});
        b.knob(first + 4, x, 172);
        b.knob(first + 5, x, 223);
    }
    // LFOs
    for (int lfo = 0; lfo < 2; ++lfo) {
        const int first = 57 + 4 * lfo;
        const int x = 554 + 42 * lfo;
        b.bits(first, Row{15, 12, kWaveforms,
                          {{x, 38}, {x + 15, 38}, {x, 50}, {x + 15, 50}, {x, 62}, {x + 15, 62}},
                          {0, 15, 30, 45, 60, 75}});
        b.bits(first + 1, Row{30, 12, kLfoModes, {{x, 102}, {x, 114}, {x, 126}}, {0, 30, 60}});
        b.knob(first + 2, x + 4, 172);
        b.knob(first + 3, x + 4, 223);
    }
    // Effect
    b.toggle(65, ButtonPlace{area(638, 9, 16, 12), kOnOffSwitch, 0});
    b.toggle(66, ButtonPlace{area(638, 72, 30, 12), kLfoModes, 60});
    b.knob(67, 684, 43);
    b.knob(68, 642, 43);
    b.knob(69, 684, 88);
    b.knob(70, 642, 110);
    b.radio(71, Row{15, 12, kFeedbackRouting, {{638, 140}, {653, 140}}, {0, 15}});
    b.knob(72, 684, 133);
    b.knob(73, 642, 178);
    b.knob(74, 684, 178);
    b.knob(75, 642, 223);
    b.knob(76, 684, 223);
}

void addPage2Widgets(WidgetPage& page, SynthEditor& editor) {
    PageBuilder b(page, editor);
    // The eight slots: depth and sensitivity knobs, with the strips as the panels were drawn.
    const Point depthAt[8] = {{62, 43}, {194, 43}, {250, 43}, {382, 43}, {62, 161}, {194, 161}, {250, 161}, {382, 161}};
    const int strips[8] = {kModKnobStrip, kKnobStrip, kModKnobStrip, kKnobStrip,
                           kKnobStrip,    kModKnobStrip, kKnobStrip, kModKnobStrip};
    for (int slot = 0; slot < 8; ++slot) b.knob(param::ModDepth1 + slot, depthAt[slot].h, depthAt[slot].v, strips[slot]);
    for (int slot = 0; slot < 8; ++slot)
        b.knob(param::ModSens1 + slot, depthAt[slot].h, depthAt[slot].v + 62, strips[slot]);
    const Point sourceAt[8] = {{106, 37}, {106, 95}, {294, 37}, {294, 95}, {106, 155}, {106, 213}, {294, 155}, {294, 213}};
    for (int slot = 0; slot < 8; ++slot)
        b.menu(param::ModSource1 + slot, menus::modSource(), sourceAt[slot].h, sourceAt[slot].v);
    const Point sensAt[8] = {{50, 87}, {182, 87}, {238, 87}, {370, 87}, {50, 205}, {182, 205}, {238, 205}, {370, 205}};
    for (int slot = 0; slot < 8; ++slot)
        b.menu(param::ModSensSource1 + slot, menus::sensSource(), sensAt[slot].h, sensAt[slot].v);
    for (int slot = 0; slot < 8; ++slot)
        b.menu(param::ModDestination1 + slot, menus::destination(), sourceAt[slot].h, sourceAt[slot].v + 27);
    b.knob(param::MasterTune, 12, 191);
    b.number(param::PitchBendRange, numbers::bendRange, 13, 123);
    b.number(param::MidiChannel, numbers::channel, 13, 41);
    for (int index = kFirstReserved; index < kFirstMapParameter; ++index) b.placeholder(index);
    for (int map = 0; map < kNumControllerMaps; ++map) b.menu(param::MapControl1 + map, menus::controller(), 448, 40 + 13 * map);
    for (int map = 0; map < kNumControllerMaps; ++map) b.menu(param::MapParameter1 + map, menus::target(), 543, 40 + 13 * map);
}

void addStripWidgets(WidgetPage& strip, SynthEditor& editor) {
    PageBuilder b(strip, editor);
    b.number(param::NumberOfVoices, numbers::voices, 13, 278);
    b.toggle(param::Unison, ButtonPlace{area(52, 269, 36, 12), kUnisonLegato, 0});
    b.toggle(param::Legato, ButtonPlace{area(52, 290, 36, 12), kUnisonLegato, 36});
    b.knob(param::VoiceDetune, 117, 279, kModKnobStrip);
    b.knob(param::Portamento, 170, 279, kModKnobStrip);
    b.knob(param::OutputVolume, 223, 279, kModKnobStrip);
}

}  // namespace tolvane
