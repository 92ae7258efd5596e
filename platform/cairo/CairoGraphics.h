// Drawing for the toolkit's graphics interface on a Cairo surface, shared by the X11 and offscreen platforms.
// Lines and rectangles are drawn without anti-aliasing so that pixels land where the toolkit puts them.
#pragma once

#include <cairo.h>

#include <memory>

#include "gui/BmpImage.h"
#include "gui/Platform.h"

namespace tolvane {

class CairoImage : public PlatformImage {
public:
    explicit CairoImage(const BmpImage& pixels);
    ~CairoImage() override;
    CairoImage(const CairoImage&) = delete;
    CairoImage& operator=(const CairoImage&) = delete;

    int width() const override { return width_; }
    int height() const override { return height_; }

    cairo_surface_t* opaque() const { return opaque_; }
    // The pixels with the key colour made fully transparent; built on first use and kept for that key.
    cairo_surface_t* keyed(Color key) const;

private:
    int width_;
    int height_;
    cairo_surface_t* opaque_;
    mutable cairo_surface_t* keyed_ = nullptr;
    mutable Color keyedFor_;
};

class CairoGraphics : public GraphicsContext {
public:
    // Draws on target, limited to clip (window coordinates, right and bottom exclusive).
    CairoGraphics(cairo_surface_t* target, const Rect& clip);
    ~CairoGraphics() override;
    CairoGraphics(const CairoGraphics&) = delete;
    CairoGraphics& operator=(const CairoGraphics&) = delete;

    void copyImage(const PlatformImage& image, const Rect& dest, Point source) override;
    void copyImageKeyed(const PlatformImage& image, const Rect& dest, Point source, Color key) override;
    void fillRect(const Rect& area, Color color) override;
    void drawLine(Point from, Point to, Color color, int width, LineStyle style) override;
    void drawText(const char* text, const Rect& box, const FontSpec& font, Color color, const Color* opaqueBack,
                  int align) override;

    // What was touched so far (clipped), empty when nothing was drawn.
    const Rect& damage() const { return damage_; }
    cairo_t* cairo() const { return cr_; }

private:
    void blit(cairo_surface_t* surface, const Rect& dest, Point source);
    void touch(const Rect& area);

    cairo_t* cr_;
    Rect clip_;
    Rect damage_;
};

// Text measurement and drawing with the same font choices, for platform code that draws its own
// menus and edit fields. Texts are Windows-1252, as everywhere in the product; these convert them.
void selectFont(cairo_t* cr, const FontSpec& font);
double textWidth(cairo_t* cr, const FontSpec& font, const char* text);
// Draws at the current point in the current font and colour.
void showText(cairo_t* cr, const char* text);
void setColor(cairo_t* cr, Color color);

}  // namespace tolvane
