// A box that shows a value as text: filled or drawn from a background bitmap, optionally bevelled or
// shadowed, with the text from a formatter.
#pragma once

#include "gui/Control.h"

namespace tolvane {

enum TextDisplayStyle : std::int32_t {
    kMultipleCheckStyle = 0x1,    // menus: several entries may be checked
    kShadowTextStyle = 0x4,
    kBevelBackFirstStyle = 0x80,  // top and left edges in the back colour, the others in the frame colour
    kBevelFrameFirstStyle = 0x100,
    kPopupAtTopStyle = 0x200,     // menus open at the top edge
    kCheckCurrentStyle = 0x400,   // menus: check mark on the current entry
    kNoTextStyle = 0x800,
    kNoDrawStyle = 0x1000,
    kDoubleClickStyle = 0x2000,   // text fields: edit only on a double click
};

constexpr int kTextBufferSize = 256;

using TextFormatter = void (*)(float value, char* text);
using TextFormatterWithData = void (*)(float value, char* text, void* data);
using TextParser = bool (*)(const char* text, float& value, void* data);

class TextDisplay : public Control {
public:
    TextDisplay(const Rect& bounds, BitmapResource* background, std::int32_t style);

    void draw(Canvas& canvas) override;

    virtual void setFont(std::int32_t fontId);
    virtual void setFontColor(Color color);
    virtual void setBackColor(Color color);
    virtual void setFrameColor(Color color);
    virtual void setShadowColor(Color color);
    virtual void setHorizontalAlign(std::int32_t align);
    virtual void setBackgroundOffset(Point offset);
    virtual void setStyle(std::int32_t style);

protected:
    TextDisplay(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* background,
                std::int32_t style);

    // Background, frame and text for the given text.
    void drawText(Canvas& canvas, const char* text);

    TextFormatter formatter_ = nullptr;
    TextFormatterWithData formatterWithData_ = nullptr;
    void* formatterData_ = nullptr;
    TextParser parser_ = nullptr;
    std::int32_t align_ = kTextAlignCenter;
    std::int32_t style_;
    std::int32_t fontId_ = 3;
    std::int32_t textStyle_ = 0;
    Color fontColor_ = kWhiteColor;
    Color backColor_ = kBlackColor;
    Color frameColor_ = kBlackColor;
    Color shadowColor_ = kRedColor;
    Point backgroundOffset_;
    bool textTransparent_ = true;
};

}  // namespace tolvane
