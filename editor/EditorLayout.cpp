#include "editor/EditorLayout.h"

#include <memory>

#include "editor/ButtonWidgets.h"
#include "editor/FilterTypeWidget.h"
#include "editor/KnobWidget.h"
#include "editor/LayoutTable.h"
#include "editor/ListMenuWidget.h"
#include "editor/MenuTables.h"
#include "editor/NumberWidget.h"
#include "editor/WidgetPage.h"
#include "params/ParameterIds.h"

namespace tolvane {
namespace {

using layout::Control;
using layout::Widget;

// The options a menu parameter offers.
const MenuTable& menuOf(int index) {
    if (index < param::ModSensSource1) return menus::modSource();
    if (index < param::ModDestination1) return menus::sensSource();
    if (index < kFirstReserved) return menus::destination();
    if (index < param::MapParameter1) return menus::controller();
    return menus::target();
}

const NumberRule& numberRuleOf(int index) {
    if (index == param::PitchBendRange) return numbers::bendRange;
    if (index == param::MidiChannel) return numbers::channel;
    return numbers::voices;
}

// The parameter's rows of a table: its first run and, for widgets of two rows, its second.
template <typename Table>
void rowsOf(const Table& table, int index, const Control*& first, const Control*& second) {
    first = second = nullptr;
    for (const Control& c : table) {
        if (c.index != index) continue;
        (c.part == 0 ? first : second) = &c;
    }
}

// Makes the widget of one parameter from its rows; a parameter without rows gets a widget without controls.
std::unique_ptr<ParamWidget> makeWidget(SynthEditor& editor, int index, const Control* first, const Control* second) {
    if (!first) return std::make_unique<ParamWidget>(editor, index);
    const Rect a = first->at(0);
    switch (first->widget) {
        case Widget::Knob:
            return std::make_unique<KnobWidget>(editor, index, Point{a.left, a.top}, first->bitmap);
        case Widget::Switch:
            return std::make_unique<SwitchWidget>(editor, index, ButtonPlace{a, first->bitmap, first->column});
        case Widget::Menu: return std::make_unique<ListMenuWidget>(editor, index, menuOf(index), a);
        case Widget::Number:
            return std::make_unique<NumberWidget>(editor, index, numberRuleOf(index), a, second->at(0));
        case Widget::FilterType: return std::make_unique<FilterTypeWidget>(editor, index, *first, *second);
        default: break;
    }
    std::unique_ptr<ButtonGroupWidget> group;
    switch (first->widget) {
        case Widget::Radio: group = std::make_unique<RadioWidget>(editor, index); break;
        case Widget::Bits: group = std::make_unique<BitFieldWidget>(editor, index); break;
        case Widget::RadioPair: group = std::make_unique<RadioPairWidget>(editor, index); break;
        default: group = std::make_unique<RadioBitsWidget>(editor, index); break;
    }
    for (int i = 0; i < first->count; ++i) group->addFirst(buttonPlace(*first, i));
    if (second)
        for (int i = 0; i < second->count; ++i) group->addSecond(buttonPlace(*second, i));
    return group;
}

template <typename Table>
void addWidgets(WidgetPage& page, SynthEditor& editor, const Table& table, int firstIndex, int endIndex) {
    for (int index = firstIndex; index < endIndex; ++index) {
        const Control* first;
        const Control* second;
        rowsOf(table, index, first, second);
        page.add(makeWidget(editor, index, first, second));
    }
}

}  // namespace

void addPage1Widgets(WidgetPage& page, SynthEditor& editor) {
    addWidgets(page, editor, layout::kPage1, 0, param::NumberOfVoices);
}

void addPage2Widgets(WidgetPage& page, SynthEditor& editor) {
    addWidgets(page, editor, layout::kPage2, param::ModDepth1, kNumParameters);
}

void addStripWidgets(WidgetPage& strip, SynthEditor& editor) {
    addWidgets(strip, editor, layout::kStrip, param::NumberOfVoices, param::ModDepth1);
}

}  // namespace tolvane
