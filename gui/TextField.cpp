#include "gui/TextField.h"

#include <cstring>
#include <string>

#include "gui/EditorFrame.h"

namespace tolvane {
namespace {

constexpr int kMinimumDoubleClickTime = 250;

void copyText(char* to, const char* from) {
    std::strncpy(to, from ? from : "", TextField::kMaxTextLength);
    to[TextField::kMaxTextLength] = '\0';
}

}  // namespace

TextField::TextField(const Rect& bounds, ControlListener* listener, std::int32_t tag, const char* initialText,
                     BitmapResource* background, std::int32_t style)
    : TextDisplay(bounds, listener, tag, background, style) {
    copyText(text_, initialText);
}

TextField::~TextField() { session_.reset(); }

void TextField::draw(Canvas& canvas) {
    char shown[kTextBufferSize] = {};
    if (editFormatterWithData_)
        editFormatterWithData_(text_, shown, editFormatterData_);
    else if (editFormatter_)
        editFormatter_(text_, shown);
    else
        std::memcpy(shown, text_, sizeof text_);
    shown[kTextBufferSize - 1] = '\0';
    drawText(canvas, shown);
    setDirty(false);
}

void TextField::onMouseDown(Canvas& canvas, Point) {
    if (!isMouseEnabled() || !frame_ || !(canvas.getMouseButtons() & kLeftButton)) return;
    if (frame_->getFocusView() == this) return;
    if (style_ & kDoubleClickStyle) {
        // Only the second of two presses close enough together opens the field.
        std::int64_t now = frame_->ticks();
        Platform* platform = currentPlatform();
        int limit = platform ? platform->doubleClickTime() : 0;
        if (limit < kMinimumDoubleClickTime) limit = kMinimumDoubleClickTime;
        if (lastClickTime_ < 0 || now - lastClickTime_ >= limit) {
            lastClickTime_ = now;
            return;
        }
        lastClickTime_ = -1;
    }
    frame_->setFocusView(this);
    takeFocus(&canvas);
}

void TextField::takeFocus(Canvas* canvas) {
    if (session_ || !frame_ || !frame_->getNativeWindow()) return;
    Point offset = canvas ? canvas->getOffset() : Point{};
    TextEditRequest request;
    request.area = Rect{bounds_.left, bounds_.top, bounds_.right + 1, bounds_.bottom + 1}.offsetBy(offset.h, offset.v);
    request.text = text_;
    request.font = Canvas::fontFor(fontId_, 0, textStyle_);
    request.font.weight = 400;
    request.fontColor = fontColor_;
    request.backColor = backColor_;
    request.align = align_;
    request.maxLength = maxLength_;
    returnPressed_ = false;
    session_ = frame_->getNativeWindow()->beginTextEdit(request, *this);
    if (!session_ && frame_->getFocusView() == this) frame_->setFocusView(nullptr);
}

void TextField::textEditEnded() { loseFocus(nullptr); }

// Ends the editing: the field's window goes, the text comes back, and the listener hears of it only when
// the text differs.
void TextField::loseFocus(Canvas*) {
    if (!session_) return;
    std::unique_ptr<TextEditSession> session = std::move(session_);
    if (frame_ && frame_->getFocusView() == this) frame_->setFocusView(nullptr);
    std::string edited = session->text();
    returnPressed_ = session->returnPressed();
    session.reset();
    if (edited.size() > static_cast<std::size_t>(maxLength_)) edited.resize(static_cast<std::size_t>(maxLength_));

    if (edited != text_) {
        copyText(text_, edited.c_str());
        setDirty(true);
        if (frame_) {
            frame_->withCanvas([this](Canvas& canvas) {
                if (parentView_) {
                    const Rect& parent = parentView_->getBounds();
                    canvas.setOffset(Point{parent.left, parent.top});
                }
                reportChange(&canvas);
            });
        } else {
            reportChange(nullptr);
        }
    }
    View* told = parentView_ ? parentView_ : frame_;
    if (told) told->notify(this, "LooseFocus");
}

void TextField::setText(const char* text) {
    const char* next = text ? text : "";
    if (std::strncmp(next, text_, kMaxTextLength) == 0) return;
    copyText(text_, next);
    setDirty(true);
}

void TextField::getText(char* buffer) const {
    if (buffer) std::memcpy(buffer, text_, sizeof text_);
}

}  // namespace tolvane
