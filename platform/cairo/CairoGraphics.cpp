#include "platform/cairo/CairoGraphics.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/cairo/Windows1252.h"

namespace tolvane {
namespace {

Rect intersect(const Rect& a, const Rect& b) {
    Rect r{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right), std::min(a.bottom, b.bottom)};
    if (r.right <= r.left || r.bottom <= r.top) return Rect{};
    return r;
}

bool isEmpty(const Rect& r) { return r.right <= r.left || r.bottom <= r.top; }

}  // namespace

void setColor(cairo_t* cr, Color color) {
    cairo_set_source_rgb(cr, color.red / 255.0, color.green / 255.0, color.blue / 255.0);
}

void selectFont(cairo_t* cr, const FontSpec& font) {
    // The face is asked for by name; fontconfig maps "Arial" to a metric-compatible face where one exists.
    cairo_select_font_face(cr, font.face ? font.face : "Arial",
                           font.italic ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
                           font.weight >= 600 ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(cr, font.size > 0 ? font.size : 12);
}

double textWidth(cairo_t* cr, const FontSpec& font, const char* text) {
    cairo_save(cr);
    selectFont(cr, font);
    cairo_text_extents_t extents;
    cairo_text_extents(cr, windows1252ToUtf8(text).c_str(), &extents);
    cairo_restore(cr);
    return extents.x_advance;
}

void showText(cairo_t* cr, const char* text) { cairo_show_text(cr, windows1252ToUtf8(text).c_str()); }

// ---- images

CairoImage::CairoImage(const BmpImage& pixels) : width_(pixels.width), height_(pixels.height) {
    opaque_ = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width_, height_);
    cairo_surface_flush(opaque_);
    unsigned char* data = cairo_image_surface_get_data(opaque_);
    int stride = cairo_image_surface_get_stride(opaque_);
    if (data) {
        // Both keep 0x00RRGGBB in a native 32-bit word per pixel.
        for (int y = 0; y < height_; ++y) {
            auto* row = reinterpret_cast<std::uint32_t*>(data + static_cast<std::ptrdiff_t>(y) * stride);
            for (int x = 0; x < width_; ++x) row[x] = pixels.at(x, y) & 0x00FFFFFFu;
        }
    }
    cairo_surface_mark_dirty(opaque_);
}

CairoImage::~CairoImage() {
    if (keyed_) cairo_surface_destroy(keyed_);
    cairo_surface_destroy(opaque_);
}

cairo_surface_t* CairoImage::keyed(Color key) const {
    if (keyed_ && keyedFor_ == key) return keyed_;
    if (keyed_) cairo_surface_destroy(keyed_);
    keyedFor_ = key;
    keyed_ = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width_, height_);
    cairo_surface_flush(keyed_);
    const unsigned char* from = cairo_image_surface_get_data(opaque_);
    unsigned char* to = cairo_image_surface_get_data(keyed_);
    int fromStride = cairo_image_surface_get_stride(opaque_);
    int toStride = cairo_image_surface_get_stride(keyed_);
    const std::uint32_t keyValue = static_cast<std::uint32_t>(key.red) << 16 | static_cast<std::uint32_t>(key.green) << 8 | key.blue;
    if (from && to) {
        for (int y = 0; y < height_; ++y) {
            auto* src = reinterpret_cast<const std::uint32_t*>(from + static_cast<std::ptrdiff_t>(y) * fromStride);
            auto* dst = reinterpret_cast<std::uint32_t*>(to + static_cast<std::ptrdiff_t>(y) * toStride);
            for (int x = 0; x < width_; ++x) {
                std::uint32_t rgb = src[x] & 0x00FFFFFFu;
                dst[x] = rgb == keyValue ? 0u : (0xFF000000u | rgb);
            }
        }
    }
    cairo_surface_mark_dirty(keyed_);
    return keyed_;
}

// ---- drawing

CairoGraphics::CairoGraphics(cairo_surface_t* target, const Rect& clip) : cr_(cairo_create(target)), clip_(clip) {
    cairo_rectangle(cr_, clip.left, clip.top, clip.width(), clip.height());
    cairo_clip(cr_);
    cairo_set_antialias(cr_, CAIRO_ANTIALIAS_NONE);
    cairo_font_options_t* options = cairo_font_options_create();
    cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
    cairo_set_font_options(cr_, options);
    cairo_font_options_destroy(options);
}

CairoGraphics::~CairoGraphics() { cairo_destroy(cr_); }

void CairoGraphics::touch(const Rect& area) {
    Rect r = intersect(area, clip_);
    if (isEmpty(r)) return;
    if (isEmpty(damage_)) {
        damage_ = r;
        return;
    }
    damage_ = Rect{std::min(damage_.left, r.left), std::min(damage_.top, r.top), std::max(damage_.right, r.right),
                   std::max(damage_.bottom, r.bottom)};
}

void CairoGraphics::blit(cairo_surface_t* surface, const Rect& dest, Point source) {
    if (isEmpty(dest)) return;
    cairo_save(cr_);
    cairo_rectangle(cr_, dest.left, dest.top, dest.width(), dest.height());
    cairo_clip(cr_);
    cairo_set_source_surface(cr_, surface, dest.left - source.h, dest.top - source.v);
    cairo_pattern_set_filter(cairo_get_source(cr_), CAIRO_FILTER_NEAREST);
    cairo_set_operator(cr_, CAIRO_OPERATOR_OVER);
    cairo_paint(cr_);
    cairo_restore(cr_);
    touch(dest);
}

void CairoGraphics::copyImage(const PlatformImage& image, const Rect& dest, Point source) {
    blit(static_cast<const CairoImage&>(image).opaque(), dest, source);
}

void CairoGraphics::copyImageKeyed(const PlatformImage& image, const Rect& dest, Point source, Color key) {
    blit(static_cast<const CairoImage&>(image).keyed(key), dest, source);
}

void CairoGraphics::fillRect(const Rect& area, Color color) {
    if (isEmpty(area)) return;
    cairo_save(cr_);
    setColor(cr_, color);
    cairo_rectangle(cr_, area.left, area.top, area.width(), area.height());
    cairo_fill(cr_);
    cairo_restore(cr_);
    touch(area);
}

// Thin lines are rasterised here, pixel by pixel (Bresenham), so that the end pixel is left out exactly;
// wider lines are stroked with round ends.
void CairoGraphics::drawLine(Point from, Point to, Color color, int width, LineStyle style) {
    if (from == to) return;
    cairo_save(cr_);
    setColor(cr_, color);
    if (width <= 1) {
        int x = from.h, y = from.v;
        const int dx = std::abs(to.h - from.h), sx = from.h < to.h ? 1 : -1;
        const int dy = -std::abs(to.v - from.v), sy = from.v < to.v ? 1 : -1;
        int error = dx + dy;
        int index = 0;
        while (!(x == to.h && y == to.v)) {
            if (style == LineStyle::solid || index % 6 < 3) {
                cairo_rectangle(cr_, x, y, 1, 1);
                touch(Rect{x, y, x + 1, y + 1});
            }
            ++index;
            int twice = 2 * error;
            if (twice >= dy) {
                error += dy;
                x += sx;
            }
            if (twice <= dx) {
                error += dx;
                y += sy;
            }
        }
        cairo_fill(cr_);
    } else {
        cairo_set_line_width(cr_, width);
        cairo_set_line_cap(cr_, CAIRO_LINE_CAP_ROUND);
        if (style == LineStyle::dotted) {
            const double dashes[] = {3.0 * width, 3.0 * width};
            cairo_set_dash(cr_, dashes, 2, 0.0);
        }
        cairo_move_to(cr_, from.h + 0.5, from.v + 0.5);
        cairo_line_to(cr_, to.h + 0.5, to.v + 0.5);
        cairo_stroke(cr_);
        touch(Rect{std::min(from.h, to.h) - width, std::min(from.v, to.v) - width, std::max(from.h, to.h) + width + 1,
                   std::max(from.v, to.v) + width + 1});
    }
    cairo_restore(cr_);
}

void CairoGraphics::drawText(const char* text, const Rect& box, const FontSpec& font, Color color,
                             const Color* opaqueBack, int align) {
    if (!text || !*text || isEmpty(box)) return;
    const std::string utf8 = windows1252ToUtf8(text);
    cairo_save(cr_);
    cairo_rectangle(cr_, box.left, box.top, box.width(), box.height());
    cairo_clip(cr_);
    selectFont(cr_, font);
    cairo_font_extents_t fontExtents;
    cairo_font_extents(cr_, &fontExtents);
    cairo_text_extents_t extents;
    cairo_text_extents(cr_, utf8.c_str(), &extents);

    const double lineHeight = fontExtents.ascent + fontExtents.descent;
    double x = box.left;
    if (align == kTextAlignCenter)
        x = box.left + (box.width() - extents.x_advance) / 2.0;
    else if (align == kTextAlignRight)
        x = box.right - extents.x_advance;
    x = std::floor(x);
    const double top = std::floor(box.top + (box.height() - lineHeight) / 2.0);
    const double baseline = std::floor(top + fontExtents.ascent + 0.5);

    if (opaqueBack) {
        setColor(cr_, *opaqueBack);
        cairo_rectangle(cr_, x, top, std::ceil(extents.x_advance), std::ceil(lineHeight));
        cairo_fill(cr_);
    }
    setColor(cr_, color);
    cairo_move_to(cr_, x, baseline);
    cairo_show_text(cr_, utf8.c_str());
    if (font.underline) {
        cairo_rectangle(cr_, x, baseline + 1, std::ceil(extents.x_advance), 1);
        cairo_fill(cr_);
    }
    cairo_restore(cr_);
    touch(box);
}

}  // namespace tolvane
