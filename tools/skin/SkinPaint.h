// Drawing helpers of the skin generator: the palette, a Cairo image surface that converts into a BmpImage,
// and the small shapes (bevels, rounded keys, labels) that every bitmap of the skin is built from.
#pragma once

#include <cairo.h>

#include <string>

#include "gui/BmpImage.h"

namespace tolvane::skin {

struct Colour {
    int r = 0;
    int g = 0;
    int b = 0;
};

// The one palette of the skin. Text controls of the editor draw amber on deep brown with a black frame;
// the panel repeats those two colours as its accent.
namespace palette {
inline constexpr Colour amber{229, 176, 52};
inline constexpr Colour displayBack{51, 34, 0};
inline constexpr Colour displayFrame{0, 0, 0};
inline constexpr Colour ghostSegment{72, 50, 8};
inline constexpr Colour gutter{17, 16, 15};
inline constexpr Colour panel{44, 42, 39};  // every knob and button sits on this flat colour
inline constexpr Colour panelEdgeDark{8, 8, 7};
inline constexpr Colour panelEdgeLight{66, 63, 59};
inline constexpr Colour header{27, 26, 24};
inline constexpr Colour label{206, 199, 186};
inline constexpr Colour labelDim{150, 143, 131};
inline constexpr Colour keyTop{78, 75, 70};
inline constexpr Colour keyBottom{55, 53, 50};
inline constexpr Colour keyEdge{12, 12, 11};
inline constexpr Colour keyInk{196, 189, 176};
inline constexpr Colour litTop{250, 204, 96};
inline constexpr Colour litBottom{214, 154, 34};
inline constexpr Colour litEdge{78, 52, 4};
inline constexpr Colour litInk{44, 28, 0};
}  // namespace palette

// An ARGB32 Cairo surface with its context; everything drawn on it is opaque.
class Surface {
public:
    Surface(int width, int height);
    ~Surface();
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;

    cairo_t* cr() const { return cr_; }
    cairo_surface_t* surface() const { return surface_; }
    int width() const { return width_; }
    int height() const { return height_; }

    BmpImage toBmp();

private:
    int width_;
    int height_;
    cairo_surface_t* surface_;
    cairo_t* cr_;
};

// Copies a BmpImage onto a context at (x, y), clipped to the given source rectangle.
void paintBmp(cairo_t* cr, const BmpImage& image, int srcX, int srcY, int width, int height, int x, int y);

void setColour(cairo_t* cr, Colour c, double alpha = 1.0);
Colour mix(Colour a, Colour b, double t);
void fillRect(cairo_t* cr, double x, double y, double w, double h, Colour c);
void roundedRect(cairo_t* cr, double x, double y, double w, double h, double radius);

// A sunken well: dark top and left edges, light bottom and right edges, filled with the given colour.
void recess(cairo_t* cr, int x, int y, int w, int h, Colour fill);

// A key (button face) filling the cell (x, y, w, h): a rounded body, dark edge, top highlight.
// Lit keys glow amber. Returns the ink colour for the key's legend.
Colour drawKey(cairo_t* cr, int x, int y, int w, int h, bool lit);

enum class Align { Left, Centre, Right };

struct Font {
    double size = 8.0;
    bool bold = true;
    double stretch = 1.0;  // horizontal scale; below 1 squeezes the face into a narrow one
};

// Labels and key legends use the face squeezed to a narrow width rather than a separate condensed
// family, so the skin needs no font beyond the one the editor itself uses.
inline constexpr double kNarrow = 0.86;
inline constexpr Font labelFont{8.0, true, kNarrow};
inline constexpr Font legendFont{8.0, true, kNarrow};
inline constexpr Font titleFont{9.0, true, 1.0};

void selectFont(cairo_t* cr, Font font);
double textWidth(cairo_t* cr, const std::string& text, Font font);
struct Box {
    double x0, y0, x1, y1;  // left, top, right, bottom edges

    bool overlaps(const Box& other) const {
        return x0 < other.x1 && other.x0 < x1 && y0 < other.y1 && other.y0 < y1;
    }
};

// Draws text with its baseline at y; x is the left edge, centre or right edge by the alignment.
// The text starts on a whole pixel so that hinted glyphs stay sharp. Returns the box of the ink.
Box drawText(cairo_t* cr, const std::string& text, double x, double baseline, Align align, Font font, Colour c);

}  // namespace tolvane::skin
