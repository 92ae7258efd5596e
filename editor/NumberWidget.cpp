#include "editor/NumberWidget.h"

#include "editor/EditorSkin.h"
#include "gui/DigitDisplay.h"
#include "gui/ThreeWaySwitch.h"
#include "dsp/Mappings.h"

namespace tolvane {
namespace numbers {

const NumberRule voices{1, 64, [](float v) { return quantise(v, 64) + 1; },
                        [](int n) { return (static_cast<float>(n) - 0.5f) / 64.0f; }};
const NumberRule bendRange{0, 24, [](float v) { return quantise(v, 25); }, [](int n) { return optionValue(n, 25); }};
const NumberRule channel{0, 16, [](float v) { return quantise(v, 17); }, [](int n) { return optionValue(n, 17); }};

}  // namespace numbers

NumberWidget::NumberWidget(SynthEditor& editor, int index, const NumberRule& rule, const Rect& digits,
                           const Rect& steps)
    : ParamWidget(editor, index), rule_(rule), digits_(digits), steps_(steps), number_(rule.toNumber(value_)) {}

void NumberWidget::attach(EditorFrame& frame) {
    ParamWidget::attach(frame);
    const std::int32_t xs[2] = {digits_.left, digits_.left + skin::kDigitWidth};
    const std::int32_t ys[2] = {digits_.top, digits_.top};
    display_ = addControl(new DigitDisplay(digits_, nullptr, index_, static_cast<float>(number_), 2, xs, ys, skin::kDigitWidth,
                                           skin::kDigitHeight, bitmap(skin::kDigits)));
    switch_ = addControl(new ThreeWaySwitch(steps_, this, index_, skin::kStepSwitchHeight, bitmap(skin::kStepSwitch),
                                            Point{0, 0}, kSwitchHorizontal));
}

void NumberWidget::detach() {
    removeControl(display_);
    removeControl(switch_);
    ParamWidget::detach();
}

void NumberWidget::setValue(float value) {
    value_ = value;
    number_ = rule_.toNumber(value);
    if (display_) display_->setValue(static_cast<float>(number_));
}

// Each step to a side moves the number by one; the switch's return to the middle does nothing.
void NumberWidget::valueChanged(Canvas* canvas, Control* control) {
    if (control != switch_) return;
    const float position = switch_->getValue();
    if (position == 0.0f) {
        if (canvas) redrawNow(switch_);
        return;
    }
    int number = number_ + (position < 0.0f ? -1 : 1);
    if (number < rule_.lowest) number = rule_.lowest;
    if (number > rule_.highest) number = rule_.highest;
    number_ = number;
    if (display_) display_->setValue(static_cast<float>(number));
    send(rule_.toValue(number));
    if (canvas) {
        redrawNow(display_);
        redrawNow(switch_);
    }
}

}  // namespace tolvane
