// The drawing context of one drawing pass: offset, colours, pen, font and the drawing operations,
// with the pixel conventions the controls were drawn for (see drawRectangle and fillRect).
#pragma once

#include <cstdint>

#include "gui/Geometry.h"
#include "gui/Platform.h"

namespace tolvane {

class EditorFrame;

enum TextStyle { kTextBold = 1, kTextItalic = 2, kTextUnderline = 4 };

enum CanvasLineStyle { kLineSolid = 0, kLineDotted = 1 };

constexpr int kFontCount = 8;

class Canvas {
public:
    // Either may be absent: without a context nothing is drawn, without a frame the pointer reads as idle.
    Canvas(EditorFrame* frame, GraphicsContext* context);
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;

    GraphicsContext* graphics() const { return context_; }
    EditorFrame* getFrame() const { return frame_; }

    // Added to every coordinate that is drawn.
    void setOffset(Point offset) { offset_ = offset; }
    Point getOffset() const { return offset_; }

    void moveTo(Point p);
    void lineTo(Point p);
    // Outline through all four corners, both edges included: covers left..right and top..bottom.
    void drawRectangle(const Rect& r);
    // Fills the inside of that outline: left+1 .. right-1 and top+1 .. bottom-1.
    void fillRect(const Rect& r);

    void setLineStyle(int style) { lineStyle_ = style; }
    void setLineWidth(int width) { lineWidth_ = width; }
    void setFrameColor(Color c) { frameColor_ = c; }
    void setFillColor(Color c) { fillColor_ = c; }
    void setFontColor(Color c) { fontColor_ = c; }

    // Font id 0-7 from the font table (another id means 0); size 0 takes the table's size;
    // style bits: kTextBold, kTextItalic, kTextUnderline.
    void setFont(int id, int size = 0, int style = 0);
    FontSpec currentFont() const;
    // The font that id, size and style give (used by the text field for its edit window, weight forced to 400).
    static FontSpec fontFor(int id, int size, int style);

    // align 1 centres, 2 aligns right, anything else aligns left one pixel inside the rectangle.
    void drawString(const char* text, const Rect& r, bool opaque = false, int align = kTextAlignCenter);

    // kLeftButton ... kAltKey, read live from the window (0 without one).
    int getMouseButtons() const;
    // Pointer position in window coordinates ((0,0) without a window).
    void getMousePosition(Point& where) const;

private:
    void line(Point from, Point to);

    EditorFrame* frame_;
    GraphicsContext* context_;
    Point offset_;
    Rect clip_;
    Point penPosition_;
    int fontId_ = 0;
    int fontSize_ = 12;
    int textStyle_ = 0;
    Color fontColor_ = kWhiteColor;
    Color frameColor_ = kWhiteColor;
    Color fillColor_ = kBlackColor;
    int lineWidth_ = 1;
    int lineStyle_ = kLineSolid;
};

}  // namespace tolvane
