#include "editor/FilterTypeWidget.h"

#include "editor/EditorSkin.h"
#include "dsp/Mappings.h"

namespace tolvane {

FilterTypeWidget::FilterTypeWidget(SynthEditor& editor, int index, const layout::Control& types,
                                   const layout::Control& slopes)
    : ParamWidget(editor, index), slopeColumns_(slopes.columnStep) {
    types_.addRun(types);
    slopes_.addRun(slopes);
    const int c = quantise(value_, kCodes);
    type_ = c / 4;
    slope_ = c % 4;
    show();
}

// The slope pictures belong to the type: column (4 type + i) × 15.
void FilterTypeWidget::show() {
    types_.showChoice(type_);
    for (int i = 0; i < 4; ++i) {
        slopes_.setColumn(i, (4 * type_ + i) * slopeColumns_);
        slopes_.setOn(i, paired(type_) ? i / 2 == slope_ / 2 : i == slope_);
    }
}

void FilterTypeWidget::attach(EditorFrame& frame) {
    ParamWidget::attach(frame);
    types_.attach(frame, editor_, this, 0);
    slopes_.attach(frame, editor_, this, kSlopeTag);
    show();
}

void FilterTypeWidget::detach() {
    if (frame_) {
        types_.detach(*frame_);
        slopes_.detach(*frame_);
    }
    ParamWidget::detach();
}

void FilterTypeWidget::setValue(float value) {
    value_ = value;
    const int c = quantise(value, kCodes);
    if (c == code() && isAttached()) return;
    type_ = c / 4;
    slope_ = c % 4;
    show();
}

void FilterTypeWidget::valueChanged(Canvas* canvas, Control* control) {
    int position = types_.positionOf(control);
    if (position >= 0) {
        type_ = position;
    } else if ((position = slopes_.positionOf(control)) >= 0) {
        slope_ = position;
    } else {
        return;
    }
    show();
    send(optionValue(code(), kCodes));
    if (canvas && frame_) {
        types_.redrawChanged(*frame_);
        slopes_.redrawChanged(*frame_);
    }
}

}  // namespace tolvane
