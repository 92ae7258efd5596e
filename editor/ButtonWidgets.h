// Parameters shown as rows of buttons, and how their values map onto the buttons.
//
// A row is either single-choice (one of its R buttons is lit: R states) or a bit field (each of its B
// buttons is one bit: 2^B states). A widget has one or two rows; with two, the state is
// second × (states of the first row) + first. A parameter value v selects state min(N - 1, trunc(N v))
// of the widget's N states, and state s is sent as (s + 0.5) / N. N counts the buttons actually added.
#pragma once

#include "editor/ButtonRow.h"
#include "editor/ParamWidget.h"

namespace tolvane {

class ToggleButton;

// An on/off button: on for values of 0.5 and above; sends 1.0 or 0.0.
class SwitchWidget : public ParamWidget {
public:
    SwitchWidget(SynthEditor& editor, int index, const ButtonPlace& button);

    void valueChanged(Canvas* canvas, Control* control) override;
    void attach(EditorFrame& frame) override;
    void detach() override;
    void setValue(float value) override;

    const ButtonRow& row() const { return row_; }

private:
    ButtonRow row_;
};

class ButtonGroupWidget : public ParamWidget {
public:
    enum class RowKind { choice, bits };
    static constexpr std::int32_t kSecondRowTag = 0x10000;

    ButtonGroupWidget(SynthEditor& editor, int index, RowKind firstKind, RowKind secondKind);

    void addFirst(const ButtonPlace& button) { first_.add(button); }
    void addSecond(const ButtonPlace& button) { second_.add(button); }

    void valueChanged(Canvas* canvas, Control* control) override;
    void attach(EditorFrame& frame) override;
    void detach() override;
    void setValue(float value) override;

    // The number of states and the current one.
    int stateCount() const;
    int state() const { return state_; }
    const ButtonRow& first() const { return first_; }
    const ButtonRow& second() const { return second_; }

private:
    static int statesOf(const ButtonRow& row, RowKind kind);
    int stateFor(float value) const;
    void show();
    // The row's part of the state after its button at position was pressed.
    int pressed(ButtonRow& row, RowKind kind, int part, int position);

    ButtonRow first_;
    ButtonRow second_;
    RowKind firstKind_;
    RowKind secondKind_;
    int state_ = 0;
};

// One row, one button lit.
class RadioWidget : public ButtonGroupWidget {
public:
    RadioWidget(SynthEditor& editor, int index) : ButtonGroupWidget(editor, index, RowKind::choice, RowKind::choice) {}
    void add(const ButtonPlace& button) { addFirst(button); }
};

// One row of independent bits.
class BitFieldWidget : public ButtonGroupWidget {
public:
    BitFieldWidget(SynthEditor& editor, int index) : ButtonGroupWidget(editor, index, RowKind::bits, RowKind::bits) {}
    void add(const ButtonPlace& button) { addFirst(button); }
};

// Two single-choice rows.
class RadioPairWidget : public ButtonGroupWidget {
public:
    RadioPairWidget(SynthEditor& editor, int index)
        : ButtonGroupWidget(editor, index, RowKind::choice, RowKind::choice) {}
};

// A single-choice row and a row of bits.
class RadioBitsWidget : public ButtonGroupWidget {
public:
    RadioBitsWidget(SynthEditor& editor, int index)
        : ButtonGroupWidget(editor, index, RowKind::choice, RowKind::bits) {}
};

}  // namespace tolvane
