#include "gui/MomentaryButton.h"

#include "gui/BitmapResource.h"

namespace tolvane {

MomentaryButton::MomentaryButton(const Rect& bounds, ControlListener* listener, std::int32_t tag,
                                 std::int32_t imageHeight, BitmapResource* bitmap, Point offset)
    : Control(bounds, listener, tag, bitmap), imageHeight_(imageHeight), offset_(offset) {}

void MomentaryButton::draw(Canvas& canvas) {
    if (!background_) return;
    Point source{offset_.h, offset_.v + (value_ != 0.0f ? imageHeight_ : 0)};
    if (transparent_)
        background_->drawTransparent(canvas, bounds_, source);
    else
        background_->draw(canvas, bounds_, source);
    setDirty(false);
}

// Held alone, the left button pushes the button while the pointer stays over it; with a modifier the press
// flips it once. Either way the button springs back to 0 afterwards.
void MomentaryButton::onMouseDown(Canvas& canvas, Point where) {
    int buttons = canvas.getMouseButtons();
    if (!(buttons & kLeftButton)) return;
    if (buttons == kLeftButton) {
        beginEdit();
        const float atPress = value_;
        const float pushed = atPress == 0.0f ? 1.0f : 0.0f;
        trackMouse(canvas, where, [&](Point p, int) {
            float next = bounds_.contains(p) ? pushed : atPress;
            if (next != value_) {
                value_ = next;
                reportChange(&canvas);
            }
        });
        endEdit();
    } else {
        value_ = value_ == 0.0f ? 1.0f : 0.0f;
        reportChange(&canvas);
    }
    value_ = 0.0f;
    reportChange(&canvas);
}

}  // namespace tolvane
