#include "gui/ToggleButton.h"

#include "gui/BitmapResource.h"

namespace tolvane {

ToggleButton::ToggleButton(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* bitmap,
                           Point offset)
    : Control(bounds, listener, tag, bitmap), offset_(offset) {}

void ToggleButton::draw(Canvas& canvas) {
    if (!background_) return;
    Point source{offset_.h, offset_.v + (value_ == 0.0f ? 0 : background_->getHeight() / 2)};
    if (transparent_)
        background_->drawTransparent(canvas, bounds_, source);
    else
        background_->draw(canvas, bounds_, source);
}

void ToggleButton::setOffset(Point offset) {
    if (offset == offset_) return;
    offset_ = offset;
    setDirty(true);
}

void ToggleButton::onMouseDown(Canvas& canvas, Point) {
    if (!(canvas.getMouseButtons() & kLeftButton)) return;
    value_ = static_cast<int>(value_) == 0 ? 1.0f : 0.0f;
    idleWhileTracking();
    reportChange(&canvas);
}

}  // namespace tolvane
