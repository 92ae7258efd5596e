// Rectangles, points and colours of the editor surface.
// Coordinates are integer pixels of the frame's client area, origin top-left, y downwards.
#pragma once

#include <cstdint>

namespace tolvane {

struct Point {
    std::int32_t h = 0;
    std::int32_t v = 0;

    bool operator==(const Point& o) const { return h == o.h && v == o.v; }
    bool operator!=(const Point& o) const { return !(*this == o); }
};

struct Rect {
    std::int32_t left = 0;
    std::int32_t top = 0;
    std::int32_t right = 0;
    std::int32_t bottom = 0;

    std::int32_t width() const { return right - left; }
    std::int32_t height() const { return bottom - top; }

    Rect offsetBy(std::int32_t dh, std::int32_t dv) const { return {left + dh, top + dv, right + dh, bottom + dv}; }

    // Edges count as inside.
    bool contains(Point p) const { return p.h >= left && p.h <= right && p.v >= top && p.v <= bottom; }
    bool overlaps(const Rect& o) const { return left <= o.right && o.left <= right && top <= o.bottom && o.top <= bottom; }

    bool operator==(const Rect& o) const {
        return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
    }
    bool operator!=(const Rect& o) const { return !(*this == o); }
};

// Red, green, blue and a fourth byte that nothing reads.
struct Color {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    std::uint8_t unused = 0;

    bool operator==(const Color& o) const { return red == o.red && green == o.green && blue == o.blue; }
    bool operator!=(const Color& o) const { return !(*this == o); }
};

constexpr Color kBlackColor{0, 0, 0, 0};
constexpr Color kWhiteColor{255, 255, 255, 0};
constexpr Color kGreyColor{127, 127, 127, 0};
constexpr Color kRedColor{255, 0, 0, 0};
constexpr Color kGreenColor{0, 255, 0, 0};
constexpr Color kBlueColor{0, 0, 255, 0};
constexpr Color kYellowColor{255, 255, 0, 0};
constexpr Color kMagentaColor{255, 0, 255, 0};
constexpr Color kCyanColor{0, 255, 255, 0};
// Pixels of this colour are left out when a bitmap is drawn with colour-key transparency.
constexpr Color kTransparentKeyColor{255, 255, 255, 0};

}  // namespace tolvane
