#include "gui/DigitDisplay.h"

#include "gui/BitmapResource.h"

namespace tolvane {

DigitDisplay::DigitDisplay(const Rect& bounds, ControlListener* listener, std::int32_t tag, float initialValue,
                           std::int32_t digitCount, const std::int32_t* xs, const std::int32_t* ys,
                           std::int32_t digitWidth, std::int32_t digitHeight, BitmapResource* bitmap)
    : Control(bounds, listener, tag, bitmap), digitWidth_(digitWidth), digitHeight_(digitHeight) {
    digitCount_ = digitCount < 0 ? 0 : (digitCount > kMaxDigits ? kMaxDigits : digitCount);
    for (int j = 0; j < digitCount_; ++j) {
        xs_[j] = xs ? xs[j] : bounds.left + j * digitWidth;
        ys_[j] = ys ? ys[j] : bounds.top;
    }
    float maximum = 1.0f;
    for (int j = 0; j < digitCount_; ++j) maximum *= 10.0f;
    max_ = maximum - 1.0f;
    value_ = initialValue;
}

void DigitDisplay::draw(Canvas& canvas) {
    if (background_) {
        double shown = static_cast<double>(static_cast<std::int64_t>(value_));
        if (shown > max_) shown = max_;
        if (shown < min_) shown = min_;
        std::int64_t number = static_cast<std::int64_t>(shown);
        if (number < 0) number = 0;
        // Least significant digit goes into the last position.
        for (int j = digitCount_ - 1; j >= 0; --j) {
            int digit = static_cast<int>(number % 10);
            number /= 10;
            Rect dest{xs_[j], ys_[j], xs_[j] + digitWidth_, ys_[j] + digitHeight_};
            Point source{0, digit * digitHeight_};
            if (transparent_)
                background_->drawTransparent(canvas, dest, source);
            else
                background_->draw(canvas, dest, source);
        }
    }
    setDirty(false);
}

}  // namespace tolvane
