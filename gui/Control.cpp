#include "gui/Control.h"

#include "gui/BitmapResource.h"
#include "gui/Canvas.h"
#include "gui/EditorBase.h"
#include "gui/EditorFrame.h"

namespace tolvane {

Control::Control(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* background)
    : View(bounds), listener_(listener), tag_(tag) {
    setBackground(background);
}

Control::~Control() {
    if (background_) background_->release();
}

bool Control::isDirty() const { return dirty_ || previousValue_ != value_; }

void Control::setDirty(bool dirty) {
    dirty_ = dirty;
    // Marking moves the previous value away from the value so that the next comparison differs.
    if (dirty)
        previousValue_ = value_ == -1.0f ? 0.0f : -1.0f;
    else
        previousValue_ = value_;
}

void Control::idleWhileTracking() {
    if (!frame_) return;
    if (EditorBase* editor = frame_->getEditorBase()) editor->idlePump();
}

void Control::setValue(float value) { value_ = value; }
float Control::getValue() const { return value_; }

void Control::setBackground(BitmapResource* background) {
    if (background) background->addRef();
    if (background_) background_->release();
    background_ = background;
}

void Control::clampValue() {
    if (value_ > max_) value_ = max_;
    if (value_ < min_) value_ = min_;
}

void Control::reportChange(Canvas* canvas) {
    if (listener_) listener_->valueChanged(canvas, this);
}

int Control::currentButtons(Canvas* canvas) const {
    if (canvas) return canvas->getMouseButtons();
    return frame_ ? frame_->getMouseButtons() : 0;
}

void Control::beginEdit() {
    if (frame_) frame_->beginEdit(tag_);
}

void Control::endEdit() {
    if (frame_) frame_->endEdit(tag_);
}

}  // namespace tolvane
