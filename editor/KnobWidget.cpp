#include "editor/KnobWidget.h"

#include "editor/DragKnob.h"
#include "editor/EditorSkin.h"

namespace tolvane {

KnobWidget::KnobWidget(SynthEditor& editor, int index, Point position, int strip)
    : ParamWidget(editor, index), position_(position), strip_(strip) {}

void KnobWidget::attach(EditorFrame& frame) {
    ParamWidget::attach(frame);
    auto* knob = new DragKnob(area(position_.h, position_.v, skin::kKnobSize, skin::kKnobSize), this, index_,
                              bitmap(strip_));
    knob->setValue(value_);
    knob_ = addControl(knob);
}

void KnobWidget::detach() {
    removeControl(knob_);
    ParamWidget::detach();
}

void KnobWidget::setValue(float value) {
    value_ = value;
    if (knob_) knob_->setValue(value);
}

void KnobWidget::valueChanged(Canvas* canvas, Control* control) {
    if (control != knob_) return;
    send(knob_->getValue());
    if (canvas) redrawNow(knob_);
}

}  // namespace tolvane
