// A row of two-image buttons of one widget: where each button sits, which bitmap column it shows, and
// the toolkit buttons while the widget is attached.
#pragma once

#include <cstdint>
#include <vector>

#include "editor/LayoutTable.h"
#include "gui/Geometry.h"

namespace tolvane {

class ControlListener;
class EditorFrame;
class SynthEditor;
class ToggleButton;

struct ButtonPlace {
    Rect area;
    int bitmap;  // resource id: the upper row of the bitmap is "off", the lower row "on"
    int column;  // x of the button's column in the bitmap
};

// Button i of a run of the layout table.
constexpr ButtonPlace buttonPlace(const layout::Control& run, int i) { return {run.at(i), run.bitmap, run.columnOf(i)}; }

class ButtonRow {
public:
    void add(const ButtonPlace& place) { places_.push_back(place); }
    void addRun(const layout::Control& run) {
        for (int i = 0; i < run.count; ++i) add(buttonPlace(run, i));
    }
    int size() const { return static_cast<int>(places_.size()); }
    const ButtonPlace& place(int position) const { return places_[static_cast<std::size_t>(position)]; }

    // Creates the buttons, tagged tagBase + position, and adds them to the frame.
    void attach(EditorFrame& frame, SynthEditor& editor, ControlListener* listener, std::int32_t tagBase);
    void detach(EditorFrame& frame);
    bool isAttached() const { return !buttons_.empty(); }

    // The button's position in this row, or -1 when the control is not one of them.
    int positionOf(const void* control) const;
    ToggleButton* button(int position) const;

    // Lights exactly one button (none for -1), or the buttons of the set bits.
    void showChoice(int choice);
    void showBits(int bits);
    void setOn(int position, bool on);
    // Another column of the bitmap for one button.
    void setColumn(int position, int column);
    // Draws the buttons that changed.
    void redrawChanged(EditorFrame& frame);

private:
    std::vector<ButtonPlace> places_;
    std::vector<ToggleButton*> buttons_;
    std::vector<bool> on_;  // kept while detached, shown when attached
};

}  // namespace tolvane
