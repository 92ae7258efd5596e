// A text display that can be edited: a press (or a double click) opens the platform's single-line edit
// field over it; Return, focus loss or a press elsewhere ends the editing.
#pragma once

#include <memory>

#include "gui/Platform.h"
#include "gui/TextDisplay.h"

namespace tolvane {

using EditFormatter = void (*)(const char* text, char* shown);
using EditFormatterWithData = void (*)(const char* text, char* shown, void* data);

class TextField : public TextDisplay, private TextEditListener {
public:
    static constexpr int kMaxTextLength = 255;

    TextField(const Rect& bounds, ControlListener* listener, std::int32_t tag, const char* initialText,
              BitmapResource* background, std::int32_t style);

    void draw(Canvas& canvas) override;
    void onMouseDown(Canvas& canvas, Point where) override;
    void loseFocus(Canvas* canvas) override;
    void takeFocus(Canvas* canvas) override;

    virtual void setText(const char* text);
    virtual void getText(char* buffer) const;

    const char* text() const { return text_; }
    // The most characters the field takes, while typing and when the edit ends (at most kMaxTextLength).
    void setMaxLength(int length) { maxLength_ = length < 0 ? 0 : (length > kMaxTextLength ? kMaxTextLength : length); }
    bool isEditing() const { return session_ != nullptr; }
    bool wasReturnPressed() const { return returnPressed_; }

protected:
    ~TextField() override;

private:
    void textEditEnded() override;

    char text_[kMaxTextLength + 1] = {};
    std::unique_ptr<TextEditSession> session_;
    std::int64_t lastClickTime_ = -1;
    bool returnPressed_ = false;
    int maxLength_ = kMaxTextLength;
    EditFormatter editFormatter_ = nullptr;
    EditFormatterWithData editFormatterWithData_ = nullptr;
    void* editFormatterData_ = nullptr;
};

}  // namespace tolvane
