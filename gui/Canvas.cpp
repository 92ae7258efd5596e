#include "gui/Canvas.h"

#include "gui/EditorFrame.h"

namespace tolvane {
namespace {

constexpr int kFontSizes[kFontCount] = {12, 18, 14, 12, 11, 10, 9, 13};

int validFontId(int id) { return id < 0 || id >= kFontCount ? 0 : id; }

}  // namespace

Canvas::Canvas(EditorFrame* frame, GraphicsContext* context) : frame_(frame), context_(context) {
    clip_ = frame ? frame->getBounds() : Rect{0, 0, 1000, 1000};
    fontSize_ = kFontSizes[0];
}

FontSpec Canvas::fontFor(int id, int size, int style) {
    id = validFontId(id);
    FontSpec font;
    font.face = id == 7 ? "Symbol" : "Arial";
    font.size = size > 0 ? size : kFontSizes[id];
    font.weight = (style & kTextBold) || id == 0 ? 700 : 400;
    font.italic = (style & kTextItalic) != 0;
    font.underline = (style & kTextUnderline) != 0;
    return font;
}

void Canvas::setFont(int id, int size, int style) {
    fontId_ = validFontId(id);
    fontSize_ = size > 0 ? size : kFontSizes[fontId_];
    textStyle_ = style;
}

FontSpec Canvas::currentFont() const { return fontFor(fontId_, fontSize_, textStyle_); }

void Canvas::moveTo(Point p) { penPosition_ = p; }

void Canvas::lineTo(Point p) {
    line(penPosition_, p);
    penPosition_ = p;
}

void Canvas::line(Point from, Point to) {
    if (!context_) return;
    Point a{from.h + offset_.h, from.v + offset_.v};
    Point b{to.h + offset_.h, to.v + offset_.v};
    context_->drawLine(a, b, frameColor_, lineWidth_ < 1 ? 1 : lineWidth_,
                       lineStyle_ == kLineDotted ? LineStyle::dotted : LineStyle::solid);
}

void Canvas::drawRectangle(const Rect& r) {
    // The last segment ends on the first corner, which the first segment already drew.
    moveTo({r.left, r.top});
    lineTo({r.right, r.top});
    lineTo({r.right, r.bottom});
    lineTo({r.left, r.bottom});
    lineTo({r.left, r.top});
}

void Canvas::fillRect(const Rect& r) {
    if (!context_) return;
    Rect inside{r.left + 1, r.top + 1, r.right, r.bottom};
    if (inside.right <= inside.left || inside.bottom <= inside.top) return;
    context_->fillRect(inside.offsetBy(offset_.h, offset_.v), fillColor_);
}

void Canvas::drawString(const char* text, const Rect& r, bool opaque, int align) {
    if (!context_ || !text) return;
    Rect box = r.offsetBy(offset_.h, offset_.v);
    if (align != kTextAlignCenter && align != kTextAlignRight) {
        box.left += 1;
        align = kTextAlignLeft;
    }
    context_->drawText(text, box, currentFont(), fontColor_, opaque ? &fillColor_ : nullptr, align);
}

int Canvas::getMouseButtons() const { return frame_ ? frame_->getMouseButtons() : 0; }

void Canvas::getMousePosition(Point& where) const {
    where = Point{};
    if (frame_) frame_->getMousePosition(where);
}

}  // namespace tolvane
