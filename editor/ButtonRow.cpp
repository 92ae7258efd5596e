#include "editor/ButtonRow.h"

#include "editor/SynthEditor.h"
#include "gui/EditorFrame.h"
#include "gui/ToggleButton.h"

namespace tolvane {

void ButtonRow::attach(EditorFrame& frame, SynthEditor& editor, ControlListener* listener, std::int32_t tagBase) {
    if (isAttached()) return;
    on_.resize(places_.size(), false);
    for (std::size_t i = 0; i < places_.size(); ++i) {
        const ButtonPlace& place = places_[i];
        auto* button = new ToggleButton(place.area, listener, tagBase + static_cast<std::int32_t>(i),
                                        editor.bitmap(place.bitmap), Point{place.column, 0});
        button->setValue(on_[i] ? 1.0f : 0.0f);
        frame.addView(button);
        buttons_.push_back(button);
    }
}

void ButtonRow::detach(EditorFrame& frame) {
    for (ToggleButton* button : buttons_) frame.removeView(button, true);
    buttons_.clear();
}

int ButtonRow::positionOf(const void* control) const {
    for (std::size_t i = 0; i < buttons_.size(); ++i)
        if (buttons_[i] == control) return static_cast<int>(i);
    return -1;
}

ToggleButton* ButtonRow::button(int position) const {
    if (position < 0 || position >= static_cast<int>(buttons_.size())) return nullptr;
    return buttons_[static_cast<std::size_t>(position)];
}

void ButtonRow::setOn(int position, bool on) {
    if (position < 0 || position >= size()) return;
    on_.resize(places_.size(), false);
    on_[static_cast<std::size_t>(position)] = on;
    if (ToggleButton* b = button(position)) b->setValue(on ? 1.0f : 0.0f);
}

void ButtonRow::showChoice(int choice) {
    for (int i = 0; i < size(); ++i) setOn(i, i == choice);
}

void ButtonRow::showBits(int bits) {
    for (int i = 0; i < size(); ++i) setOn(i, (bits >> i) & 1);
}

void ButtonRow::setColumn(int position, int column) {
    if (position < 0 || position >= size()) return;
    places_[static_cast<std::size_t>(position)].column = column;
    if (ToggleButton* b = button(position)) b->setOffset(Point{column, 0});
}

void ButtonRow::redrawChanged(EditorFrame& frame) {
    for (ToggleButton* button : buttons_) {
        if (!button->isDirty()) continue;
        frame.redrawView(button);
        button->setDirty(false);
    }
}

}  // namespace tolvane
