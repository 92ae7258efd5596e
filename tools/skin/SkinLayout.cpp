#include "tools/skin/SkinLayout.h"

#include "editor/LayoutTable.h"

namespace tolvane::skin {

namespace {

using layout::Widget;

ControlKind kindOf(layout::Kind kind) {
    switch (kind) {
        case layout::Kind::Knob: return ControlKind::Knob;
        case layout::Kind::Button: return ControlKind::Button;
        case layout::Kind::Digits: return ControlKind::Digits;
        case layout::Kind::StepSwitch: return ControlKind::StepSwitch;
        case layout::Kind::Text: break;
    }
    return ControlKind::TextArea;
}

// A plausible state for the preview: knobs half way, the first choice of a row lit, a few numbers and texts.
double previewState(const layout::Control& row, int i) {
    switch (row.widget) {
        case Widget::Knob: return 0.5;
        case Widget::Radio:
        case Widget::RadioPair:
        case Widget::ProgramBanks:
        case Widget::FilterType: return i == 0 ? 1.0 : 0.0;
        case Widget::RadioBits: return row.part == 0 && i == 0 ? 1.0 : 0.0;
        case Widget::Number: return row.index == 77 ? 8 : row.index == 124 ? 2 : 0;
        case Widget::ProgramDigits: return 1;
        default: return 0.0;
    }
}

std::string previewText(const layout::Control& row, int i) {
    if (row.widget == Widget::StatusLines) return i == 0 ? "Tolvane2" : "Version 2.0";
    if (row.widget == Widget::ProgramName) return "Init";
    return "- - -";
}

template <typename Table>
std::vector<Placement> placementsOf(const Table& table) {
    std::vector<Placement> out;
    for (const layout::Control& row : table) {
        for (int i = 0; i < row.count; ++i) {
            const Rect a = row.at(i);
            out.push_back({kindOf(row.kind()), a.left, a.top, a.width(), a.height(), row.bitmap, row.columnOf(i),
                           previewState(row, i), row.kind() == layout::Kind::Text ? previewText(row, i) : ""});
        }
    }
    return out;
}

}  // namespace

std::vector<Placement> page1Controls() { return placementsOf(layout::kPage1); }
std::vector<Placement> page2Controls() { return placementsOf(layout::kPage2); }
std::vector<Placement> stripControls() { return placementsOf(layout::kStrip); }

}  // namespace tolvane::skin
