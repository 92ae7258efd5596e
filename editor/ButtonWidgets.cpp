#include "editor/ButtonWidgets.h"

#include "gui/EditorFrame.h"
#include "gui/ToggleButton.h"
#include "dsp/Mappings.h"

namespace tolvane {

// ---- switch

SwitchWidget::SwitchWidget(SynthEditor& editor, int index, const ButtonPlace& button) : ParamWidget(editor, index) {
    row_.add(button);
    row_.setOn(0, switchOn(value_));
}

void SwitchWidget::attach(EditorFrame& frame) {
    ParamWidget::attach(frame);
    row_.attach(frame, editor_, this, 0);
}

void SwitchWidget::detach() {
    if (frame_) row_.detach(*frame_);
    ParamWidget::detach();
}

void SwitchWidget::setValue(float value) {
    value_ = value;
    row_.setOn(0, switchOn(value));
}

void SwitchWidget::valueChanged(Canvas* canvas, Control* control) {
    if (row_.positionOf(control) != 0) return;
    const bool on = control->getValue() != 0.0f;
    row_.setOn(0, on);
    send(on ? 1.0f : 0.0f);
    if (canvas && frame_) row_.redrawChanged(*frame_);
}

// ---- rows of buttons

ButtonGroupWidget::ButtonGroupWidget(SynthEditor& editor, int index, RowKind firstKind, RowKind secondKind)
    : ParamWidget(editor, index), firstKind_(firstKind), secondKind_(secondKind) {}

int ButtonGroupWidget::statesOf(const ButtonRow& row, RowKind kind) {
    if (row.size() == 0) return 1;
    return kind == RowKind::choice ? row.size() : 1 << row.size();
}

int ButtonGroupWidget::stateCount() const { return statesOf(first_, firstKind_) * statesOf(second_, secondKind_); }

int ButtonGroupWidget::stateFor(float value) const { return quantise(value, stateCount()); }

void ButtonGroupWidget::show() {
    const int firstStates = statesOf(first_, firstKind_);
    const int firstPart = state_ % firstStates;
    const int secondPart = state_ / firstStates;
    if (firstKind_ == RowKind::choice) first_.showChoice(firstPart); else first_.showBits(firstPart);
    if (secondKind_ == RowKind::choice) second_.showChoice(secondPart); else second_.showBits(secondPart);
}

void ButtonGroupWidget::attach(EditorFrame& frame) {
    ParamWidget::attach(frame);
    state_ = stateFor(value_);
    first_.attach(frame, editor_, this, 0);
    second_.attach(frame, editor_, this, kSecondRowTag);
    show();
}

void ButtonGroupWidget::detach() {
    if (frame_) {
        first_.detach(*frame_);
        second_.detach(*frame_);
    }
    ParamWidget::detach();
}

void ButtonGroupWidget::setValue(float value) {
    value_ = value;
    const int state = stateFor(value);
    if (state == state_ && isAttached()) return;  // an unchanged state leaves the buttons alone
    state_ = state;
    show();
}

// A single-choice row: the pressed button becomes the choice (pressing the lit one keeps it lit).
// A bit row: the pressed button's new state sets or clears its bit.
int ButtonGroupWidget::pressed(ButtonRow& row, RowKind kind, int part, int position) {
    ToggleButton* button = row.button(position);
    if (kind == RowKind::choice) {
        row.showChoice(position);
        return position;
    }
    const bool on = button && button->getValue() != 0.0f;
    row.setOn(position, on);
    return on ? (part | (1 << position)) : (part & ~(1 << position));
}

void ButtonGroupWidget::valueChanged(Canvas* canvas, Control* control) {
    const int firstStates = statesOf(first_, firstKind_);
    int firstPart = state_ % firstStates;
    int secondPart = state_ / firstStates;
    int position = first_.positionOf(control);
    if (position >= 0) {
        firstPart = pressed(first_, firstKind_, firstPart, position);
    } else if ((position = second_.positionOf(control)) >= 0) {
        secondPart = pressed(second_, secondKind_, secondPart, position);
    } else {
        return;
    }
    state_ = secondPart * firstStates + firstPart;
    send(optionValue(state_, stateCount()));
    if (canvas && frame_) {
        first_.redrawChanged(*frame_);
        second_.redrawChanged(*frame_);
    }
}

}  // namespace tolvane
