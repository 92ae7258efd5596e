#include "tools/skin/SkinPaint.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tolvane::skin {

namespace {

// Cairo's font selection goes through fontconfig: Liberation Sans where it is installed, otherwise whatever
// fontconfig substitutes for it (Arial shares its metrics, DejaVu Sans is the usual last resort).
const char* const kFamily = "Liberation Sans";

void applyFontOptions(cairo_t* cr) {
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_FULL);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
    cairo_font_options_set_subpixel_order(options, CAIRO_SUBPIXEL_ORDER_DEFAULT);
    cairo_set_font_options(cr, options);
    cairo_font_options_destroy(options);
}

}  // namespace

Surface::Surface(int width, int height)
    : width_(width),
      height_(height),
      surface_(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height)),
      cr_(cairo_create(surface_)) {
    applyFontOptions(cr_);
    fillRect(cr_, 0, 0, width, height, palette::panel);
}

Surface::~Surface() {
    cairo_destroy(cr_);
    cairo_surface_destroy(surface_);
}

BmpImage Surface::toBmp() {
    cairo_surface_flush(surface_);
    BmpImage image;
    image.width = width_;
    image.height = height_;
    image.pixels.resize(static_cast<std::size_t>(width_) * height_);
    const unsigned char* data = cairo_image_surface_get_data(surface_);
    int stride = cairo_image_surface_get_stride(surface_);
    for (int y = 0; y < height_; ++y) {
        const auto* row = reinterpret_cast<const std::uint32_t*>(data + static_cast<std::size_t>(y) * stride);
        for (int x = 0; x < width_; ++x) image.pixels[static_cast<std::size_t>(y) * width_ + x] = row[x] & 0xFFFFFFu;
    }
    return image;
}

void paintBmp(cairo_t* cr, const BmpImage& image, int srcX, int srcY, int width, int height, int x, int y) {
    cairo_surface_t* tile = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
    unsigned char* data = cairo_image_surface_get_data(tile);
    int stride = cairo_image_surface_get_stride(tile);
    for (int row = 0; row < height; ++row) {
        auto* out = reinterpret_cast<std::uint32_t*>(data + static_cast<std::size_t>(row) * stride);
        for (int col = 0; col < width; ++col) {
            int sx = srcX + col;
            int sy = srcY + row;
            bool inside = sx >= 0 && sy >= 0 && sx < image.width && sy < image.height;
            out[col] = inside ? image.at(sx, sy) : 0;
        }
    }
    cairo_surface_mark_dirty(tile);
    cairo_save(cr);
    cairo_set_source_surface(cr, tile, x, y);
    cairo_pattern_set_filter(cairo_get_source(cr), CAIRO_FILTER_NEAREST);
    cairo_rectangle(cr, x, y, width, height);
    cairo_fill(cr);
    cairo_restore(cr);
    cairo_surface_destroy(tile);
}

void setColour(cairo_t* cr, Colour c, double alpha) {
    cairo_set_source_rgba(cr, c.r / 255.0, c.g / 255.0, c.b / 255.0, alpha);
}

Colour mix(Colour a, Colour b, double t) {
    auto lerp = [t](int u, int v) { return static_cast<int>(std::lround(u + (v - u) * t)); };
    return {lerp(a.r, b.r), lerp(a.g, b.g), lerp(a.b, b.b)};
}

void fillRect(cairo_t* cr, double x, double y, double w, double h, Colour c) {
    setColour(cr, c);
    cairo_rectangle(cr, x, y, w, h);
    cairo_fill(cr);
}

void roundedRect(cairo_t* cr, double x, double y, double w, double h, double radius) {
    const double pi = 3.14159265358979323846;
    cairo_new_sub_path(cr);
    cairo_arc(cr, x + w - radius, y + radius, radius, -pi / 2, 0);
    cairo_arc(cr, x + w - radius, y + h - radius, radius, 0, pi / 2);
    cairo_arc(cr, x + radius, y + h - radius, radius, pi / 2, pi);
    cairo_arc(cr, x + radius, y + radius, radius, pi, 3 * pi / 2);
    cairo_close_path(cr);
}

void recess(cairo_t* cr, int x, int y, int w, int h, Colour fill) {
    fillRect(cr, x, y, w, h, palette::panelEdgeDark);
    fillRect(cr, x + 1, y + h - 1, w - 1, 1, palette::panelEdgeLight);
    fillRect(cr, x + w - 1, y + 1, 1, h - 1, palette::panelEdgeLight);
    fillRect(cr, x + 1, y + 1, w - 2, h - 2, fill);
}

Colour drawKey(cairo_t* cr, int x, int y, int w, int h, bool lit) {
    using namespace palette;
    fillRect(cr, x, y, w, h, panel);
    double radius = std::min(2.0, std::min(w, h) / 4.0);
    Colour top = lit ? litTop : keyTop;
    Colour bottom = lit ? litBottom : keyBottom;
    Colour edge = lit ? litEdge : keyEdge;

    roundedRect(cr, x + 0.5, y + 0.5, w - 1.0, h - 1.0, radius);
    cairo_pattern_t* body = cairo_pattern_create_linear(0, y + 1, 0, y + h - 1);
    cairo_pattern_add_color_stop_rgb(body, 0, top.r / 255.0, top.g / 255.0, top.b / 255.0);
    cairo_pattern_add_color_stop_rgb(body, 1, bottom.r / 255.0, bottom.g / 255.0, bottom.b / 255.0);
    cairo_set_source(cr, body);
    cairo_fill_preserve(cr);
    cairo_pattern_destroy(body);
    setColour(cr, edge);
    cairo_set_line_width(cr, 1.0);
    cairo_stroke(cr);

    // A one-pixel sheen under the top edge gives the key its height.
    Colour sheen = lit ? Colour{255, 232, 160} : Colour{104, 100, 94};
    fillRect(cr, x + 2, y + 1, w - 4, 1, mix(top, sheen, 0.7));
    return lit ? litInk : keyInk;
}

void selectFont(cairo_t* cr, Font font) {
    cairo_select_font_face(cr, kFamily, CAIRO_FONT_SLANT_NORMAL,
                           font.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_matrix_t matrix;
    cairo_matrix_init_scale(&matrix, font.size * font.stretch, font.size);
    cairo_set_font_matrix(cr, &matrix);
}

double textWidth(cairo_t* cr, const std::string& text, Font font) {
    selectFont(cr, font);
    cairo_text_extents_t extents;
    cairo_text_extents(cr, text.c_str(), &extents);
    return extents.x_advance;
}

Box drawText(cairo_t* cr, const std::string& text, double x, double baseline, Align align, Font font, Colour c) {
    selectFont(cr, font);
    cairo_text_extents_t extents;
    cairo_text_extents(cr, text.c_str(), &extents);
    double left = x;
    if (align == Align::Centre) left = x - extents.x_advance / 2.0;
    if (align == Align::Right) left = x - extents.x_advance;
    left = std::round(left);
    baseline = std::round(baseline);
    setColour(cr, c);
    cairo_move_to(cr, left, baseline);
    cairo_show_text(cr, text.c_str());
    cairo_new_path(cr);
    return {left + extents.x_bearing, baseline + extents.y_bearing, left + extents.x_bearing + extents.width,
            baseline + extents.y_bearing + extents.height};
}

}  // namespace tolvane::skin
