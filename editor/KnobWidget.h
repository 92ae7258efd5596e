// A parameter shown and edited by one knob of a film strip.
#pragma once

#include "editor/ParamWidget.h"
#include "gui/Geometry.h"

namespace tolvane {

class DragKnob;

class KnobWidget : public ParamWidget {
public:
    // The knob's top-left corner and the strip's resource id.
    KnobWidget(SynthEditor& editor, int index, Point position, int strip);

    void valueChanged(Canvas* canvas, Control* control) override;
    void attach(EditorFrame& frame) override;
    void detach() override;
    void setValue(float value) override;

    DragKnob* knob() const { return knob_; }
    Point position() const { return position_; }

private:
    Point position_;
    int strip_;
    DragKnob* knob_ = nullptr;
};

}  // namespace tolvane
