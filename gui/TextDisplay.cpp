#include "gui/TextDisplay.h"

#include <cstdio>

#include "gui/BitmapResource.h"

namespace tolvane {

TextDisplay::TextDisplay(const Rect& bounds, BitmapResource* background, std::int32_t style)
    : TextDisplay(bounds, nullptr, 0, background, style) {}

TextDisplay::TextDisplay(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* background,
                         std::int32_t style)
    : Control(bounds, listener, tag, background), style_(style) {}

void TextDisplay::draw(Canvas& canvas) {
    char text[kTextBufferSize] = {};
    if (formatterWithData_)
        formatterWithData_(value_, text, formatterData_);
    else if (formatter_)
        formatter_(value_, text);
    else
        std::snprintf(text, sizeof text, "%2.2f", static_cast<double>(value_));
    text[kTextBufferSize - 1] = '\0';
    drawText(canvas, text);
    setDirty(false);
}

void TextDisplay::drawText(Canvas& canvas, const char* text) {
    if (style_ & kNoDrawStyle) return;
    const bool bevel = (style_ & (kBevelBackFirstStyle | kBevelFrameFirstStyle)) != 0;
    if (!background_ && !transparent_) {
        canvas.setFillColor(backColor_);
        canvas.fillRect(bounds_);
        if (!bevel) {
            canvas.setFrameColor(frameColor_);
            canvas.drawRectangle(bounds_);
        }
    } else if (background_) {
        if (transparent_)
            background_->drawTransparent(canvas, bounds_, backgroundOffset_);
        else
            background_->draw(canvas, bounds_, backgroundOffset_);
    }
    if (bevel) {
        Color first = (style_ & kBevelBackFirstStyle) ? backColor_ : frameColor_;
        Color second = (style_ & kBevelBackFirstStyle) ? frameColor_ : backColor_;
        canvas.setLineWidth(1);
        canvas.setFrameColor(first);
        canvas.moveTo(Point{bounds_.left, bounds_.bottom});
        canvas.lineTo(Point{bounds_.left, bounds_.top});
        canvas.lineTo(Point{bounds_.right, bounds_.top});
        canvas.setFrameColor(second);
        canvas.lineTo(Point{bounds_.right, bounds_.bottom});
        canvas.lineTo(Point{bounds_.left, bounds_.bottom});
    }
    if (style_ & kNoTextStyle) return;
    canvas.setFont(fontId_, 0, textStyle_);
    canvas.setFillColor(backColor_);
    if (style_ & kShadowTextStyle) {
        canvas.setFontColor(shadowColor_);
        canvas.drawString(text, bounds_.offsetBy(1, 1), !textTransparent_, align_);
    }
    canvas.setFontColor(fontColor_);
    canvas.drawString(text, bounds_, !textTransparent_, align_);
}

void TextDisplay::setFont(std::int32_t fontId) {
    if (fontId == fontId_) return;
    fontId_ = fontId;
    setDirty(true);
}

void TextDisplay::setFontColor(Color color) {
    if (color == fontColor_) return;
    fontColor_ = color;
    setDirty(true);
}

void TextDisplay::setBackColor(Color color) {
    if (color == backColor_) return;
    backColor_ = color;
    setDirty(true);
}

void TextDisplay::setFrameColor(Color color) {
    if (color == frameColor_) return;
    frameColor_ = color;
    setDirty(true);
}

void TextDisplay::setShadowColor(Color color) {
    if (color == shadowColor_) return;
    shadowColor_ = color;
    setDirty(true);
}

void TextDisplay::setHorizontalAlign(std::int32_t align) { align_ = align; }
void TextDisplay::setBackgroundOffset(Point offset) { backgroundOffset_ = offset; }

void TextDisplay::setStyle(std::int32_t style) { style_ = style; }

}  // namespace tolvane
