#include "editor/ParamWidget.h"

#include "editor/EditorSkin.h"
#include "editor/SynthController.h"
#include "editor/SynthEditor.h"
#include "gui/Control.h"
#include "gui/EditorFrame.h"
#include "gui/TextDisplay.h"

namespace tolvane {

ParamWidget::ParamWidget(SynthEditor& editor, int index) : editor_(editor), index_(index) {
    // Start from the value the editor holds, so that the first drawing already shows it.
    if (index_ >= 0) value_ = editor_.value(index_);
}

ParamWidget::~ParamWidget() = default;

void ParamWidget::valueChanged(Canvas*, Control*) {}

void ParamWidget::attach(EditorFrame& frame) { frame_ = &frame; }

void ParamWidget::detach() { frame_ = nullptr; }

void ParamWidget::setValue(float value) { value_ = value; }

void ParamWidget::send(float value) {
    value_ = value;
    if (index_ >= 0) editor_.controller().setParameterAutomated(index_, value);
}

void ParamWidget::redrawNow(Control* control) {
    if (!frame_ || !control || !control->isDirty()) return;
    frame_->redrawView(control);
    control->setDirty(false);
}

BitmapResource* ParamWidget::bitmap(int id) const { return editor_.bitmap(id); }

void ParamWidget::applyTextLook(TextDisplay& display, int align) {
    display.setFont(skin::kTextFont);
    display.setFontColor(skin::kTextColour);
    display.setBackColor(skin::kTextBackColour);
    display.setFrameColor(skin::kTextFrameColour);
    display.setHorizontalAlign(align);
}

bool ParamWidget::addToFrame(Control* control) {
    if (!frame_) {
        control->release();
        return false;
    }
    return frame_->addView(control);
}

void ParamWidget::removeFromFrame(Control* control) {
    if (frame_) frame_->removeView(control, true);
}

}  // namespace tolvane
