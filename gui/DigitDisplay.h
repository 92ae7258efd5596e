// A number drawn digit by digit from a vertical strip of the digit images 0-9.
#pragma once

#include "gui/Control.h"

namespace tolvane {

class DigitDisplay : public Control {
public:
    static constexpr int kMaxDigits = 7;

    // xs and ys: where each digit goes (window coordinates), most significant first.
    DigitDisplay(const Rect& bounds, ControlListener* listener, std::int32_t tag, float initialValue,
                 std::int32_t digitCount, const std::int32_t* xs, const std::int32_t* ys, std::int32_t digitWidth,
                 std::int32_t digitHeight, BitmapResource* bitmap);

    void draw(Canvas& canvas) override;

    std::int32_t getDigitCount() const { return digitCount_; }

private:
    std::int32_t digitCount_;
    std::int32_t xs_[kMaxDigits] = {};
    std::int32_t ys_[kMaxDigits] = {};
    std::int32_t digitWidth_;
    std::int32_t digitHeight_;
};

}  // namespace tolvane
