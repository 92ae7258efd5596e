#include "gui/FilmStripKnob.h"

#include "gui/BitmapResource.h"

namespace tolvane {

FilmStripKnob::FilmStripKnob(const Rect& bounds, ControlListener* listener, std::int32_t tag,
                             std::int32_t frameCount, std::int32_t frameHeight, BitmapResource* bitmap, Point offset)
    : RotaryKnob(bounds, listener, tag, bitmap, nullptr, offset), frameCount_(frameCount), frameHeight_(frameHeight) {}

// Value 0 shows the first frame and 1 the last; in between the strip position is truncated down to the
// start of a frame.
void FilmStripKnob::draw(Canvas& canvas) {
    if (value_ >= 0.0f && background_ && frameHeight_ > 0 && frameCount_ > 0) {
        float position = inverse_ ? 1.0f - value_ : value_;
        std::int32_t y = static_cast<std::int32_t>(static_cast<float>((frameCount_ - 1) * frameHeight_) * position);
        y -= y % frameHeight_;
        if (y < 0) y = 0;
        if (y > (frameCount_ - 1) * frameHeight_) y = (frameCount_ - 1) * frameHeight_;
        Point source{backgroundOffset_.h, backgroundOffset_.v + y};
        if (transparent_)
            background_->drawTransparent(canvas, bounds_, source);
        else
            background_->draw(canvas, bounds_, source);
    }
    setDirty(false);
}

}  // namespace tolvane
