// A number shown in two digits with a step switch below it: the left half of the switch counts down, the
// right half up, within the number's range. Used for the voice count, the pitch bend range and the MIDI
// channel, each with its own rule between value and number.
#pragma once

#include "editor/ParamWidget.h"
#include "gui/Geometry.h"

namespace tolvane {

class DigitDisplay;
class ThreeWaySwitch;

struct NumberRule {
    int lowest;
    int highest;
    int (*toNumber)(float value);
    float (*toValue)(int number);
};

namespace numbers {
extern const NumberRule voices;     // 1-64: min(64, trunc(64 v) + 1), sent as (n - 0.5) / 64
extern const NumberRule bendRange;  // 0-24: min(24, trunc(25 v)), sent as (n + 0.5) / 25
extern const NumberRule channel;    // 0-16 (0 = omni): min(16, trunc(17 v)), sent as (n + 0.5) / 17
}  // namespace numbers

class NumberWidget : public ParamWidget {
public:
    // digits: the area of the two digits; steps: the three-way switch that steps the number.
    NumberWidget(SynthEditor& editor, int index, const NumberRule& rule, const Rect& digits, const Rect& steps);

    void valueChanged(Canvas* canvas, Control* control) override;
    void attach(EditorFrame& frame) override;
    void detach() override;
    void setValue(float value) override;

    int number() const { return number_; }
    DigitDisplay* display() const { return display_; }
    ThreeWaySwitch* stepSwitch() const { return switch_; }

private:
    const NumberRule& rule_;
    Rect digits_;
    Rect steps_;
    int number_;
    DigitDisplay* display_ = nullptr;
    ThreeWaySwitch* switch_ = nullptr;
};

}  // namespace tolvane
