#include "gui/ThreeWaySwitch.h"

#include "gui/BitmapResource.h"

namespace tolvane {

ThreeWaySwitch::ThreeWaySwitch(const Rect& bounds, ControlListener* listener, std::int32_t tag,
                               std::int32_t imageHeight, BitmapResource* bitmap, Point offset, std::int32_t style)
    : Control(bounds, listener, tag, bitmap), imageHeight_(imageHeight), offset_(offset), style_(style) {
    min_ = -1.0f;
    max_ = 1.0f;
}

void ThreeWaySwitch::draw(Canvas& canvas) {
    if (!background_) return;
    int image = value_ < 0.0f ? 0 : (value_ > 0.0f ? 2 : 1);
    Point source{offset_.h, offset_.v + image * imageHeight_};
    if (transparent_)
        background_->drawTransparent(canvas, bounds_, source);
    else
        background_->draw(canvas, bounds_, source);
    setDirty(false);
}

void ThreeWaySwitch::moveTo(Canvas* canvas, float value) {
    if (value == value_) return;
    value_ = value;
    reportChange(canvas);
}

void ThreeWaySwitch::onMouseDown(Canvas& canvas, Point where) {
    if (!(canvas.getMouseButtons() & kLeftButton)) return;
    const float atPress = value_;
    const bool horizontal = (style_ & kSwitchHorizontal) != 0;
    trackMouse(canvas, where, [&](Point p, int) {
        float next = atPress;
        if (bounds_.contains(p)) {
            bool firstHalf = horizontal ? p.h < bounds_.left + bounds_.width() / 2
                                        : p.v < bounds_.top + bounds_.height() / 2;
            next = firstHalf ? -1.0f : 1.0f;
        }
        moveTo(&canvas, next);
    });
    value_ = 0.0f;
    reportChange(&canvas);
}

bool ThreeWaySwitch::onWheel(Canvas* canvas, Point, float distance) {
    value_ = distance > 0.0f ? -1.0f : 1.0f;
    reportChange(canvas);
    value_ = 0.0f;
    reportChange(canvas);
    return true;
}

}  // namespace tolvane
