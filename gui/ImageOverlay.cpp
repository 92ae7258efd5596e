#include "gui/ImageOverlay.h"

#include "gui/BitmapResource.h"
#include "gui/EditorFrame.h"

namespace tolvane {

ImageOverlay::ImageOverlay(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* bitmap,
                           const Rect& overlay, Point offset)
    : Control(bounds, listener, tag, bitmap), overlay_(overlay), offset_(offset), savedBounds_(bounds) {}

void ImageOverlay::draw(Canvas& canvas) {
    if (value_ != 0.0f && background_) {
        if (transparent_)
            background_->drawTransparent(canvas, overlay_, offset_);
        else
            background_->draw(canvas, overlay_, offset_);
    }
    setDirty(false);
}

void ImageOverlay::onMouseDown(Canvas& canvas, Point) {
    if (!(canvas.getMouseButtons() & kLeftButton) || !frame_) return;
    if (value_ == 0.0f) {
        // Only one modal view at a time.
        if (!frame_->setModalView(this)) {
            setDirty(true);
            return;
        }
        value_ = 1.0f;
        savedBounds_ = bounds_;
        setBounds(overlay_);
        draw(canvas);
    } else {
        value_ = 0.0f;
        setBounds(savedBounds_);
        frame_->setModalView(nullptr);
        frame_->draw(canvas);
    }
    reportChange(&canvas);
    setDirty(true);
}

}  // namespace tolvane
