#include "gui/Canvas.h"

#include <string>

#include "tests/gui/ToolkitTestSupport.h"

namespace tolvane {
namespace {

using testing::makeBitmap;
using testing::rgb;

class CanvasTest : public testing::ToolkitTest {
protected:
    // Draws on a cleared window through a fresh canvas.
    template <typename Draw>
    void drawOnCleared(Draw draw) {
        frame->withCanvas([&](Canvas& canvas) {
            canvas.setFillColor(kBlackColor);
            canvas.fillRect(Rect{-1, -1, window->width(), window->height()});
            draw(canvas);
        });
    }
    // The pixels of a colour inside a search area, row by row.
    std::vector<std::pair<int, int>> pixelsOf(std::uint32_t colour, const Rect& area) {
        std::vector<std::pair<int, int>> found;
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x)
                if (window->pixel(x, y) == colour) found.emplace_back(x, y);
        return found;
    }
};

TEST_F(CanvasTest, RectangleOutlinesIncludeBothEdgesAndFillsCoverOnlyTheInside) {
    drawOnCleared([](Canvas& canvas) {
        canvas.setFrameColor(kGreenColor);
        canvas.drawRectangle(Rect{5, 5, 9, 8});
        canvas.setFillColor(kBlueColor);
        canvas.fillRect(Rect{5, 5, 9, 8});
        canvas.setFillColor(kRedColor);
        canvas.fillRect(Rect{10, 20, 15, 24});
    });
    // Outline ring of a 5 x 4 block (x 5..9, y 5..8): 5*4 - 3*2 = 14 pixels; inside 3 x 2 = 6 pixels.
    EXPECT_EQ(pixelsOf(rgb(0, 255, 0), Rect{0, 0, 20, 20}).size(), 14u);
    EXPECT_EQ(pixelsOf(rgb(0, 0, 255), Rect{0, 0, 20, 20}).size(), 6u);
    EXPECT_EQ(window->pixel(9, 8), rgb(0, 255, 0));
    // Inside of {10, 20, 15, 24}: x 11..14, y 21..23.
    std::vector<std::pair<int, int>> red = pixelsOf(rgb(255, 0, 0), Rect{0, 0, 40, 40}), inside;
    for (int y = 21; y <= 23; ++y)
        for (int x = 11; x <= 14; ++x) inside.emplace_back(x, y);
    EXPECT_EQ(red, inside);
}

TEST_F(CanvasTest, LinesLeaveOutTheirEndPixelAndFollowTheOffset) {
    drawOnCleared([](Canvas& canvas) {
        canvas.setOffset(Point{3, 2});
        canvas.setFrameColor(kWhiteColor);
        canvas.moveTo(Point{0, 0});
        canvas.lineTo(Point{6, 0});   // x 3..8 at y 2
        canvas.moveTo(Point{0, 10});
        canvas.lineTo(Point{4, 14});  // diagonal: (3,12) (4,13) (5,14) (6,15)
    });
    auto white = pixelsOf(rgb(255, 255, 255), Rect{0, 0, 30, 30});
    std::vector<std::pair<int, int>> expected = {{3, 2}, {4, 2}, {5, 2}, {6, 2}, {7, 2}, {8, 2},
                                                 {3, 12}, {4, 13}, {5, 14}, {6, 15}};
    std::sort(white.begin(), white.end(), [](auto a, auto b) { return a.second != b.second ? a.second < b.second : a.first < b.first; });
    EXPECT_EQ(white, expected);
}

TEST_F(CanvasTest, TextIsDrawnInsideItsRectangleWithTheRequestedAlignment) {
    auto inkColumns = [&](const Rect& area) {
        int first = -1, last = -1;
        for (int x = area.left; x < area.right; ++x)
            for (int y = area.top; y < area.bottom; ++y)
                if (window->pixel(x, y) != 0) {
                    if (first < 0) first = x;
                    last = x;
                }
        return std::make_pair(first, last);
    };
    const Rect box{20, 10, 120, 30};
    for (int align : {kTextAlignLeft, kTextAlignCenter, kTextAlignRight}) {
        drawOnCleared([&](Canvas& canvas) {
            canvas.setFont(4);
            canvas.setFontColor(kWhiteColor);
            canvas.drawString("WWW", box, false, align);
        });
        auto [first, last] = inkColumns(Rect{0, 0, 200, 50});
        ASSERT_GE(first, 0) << "no text drawn, align " << align;
        EXPECT_GE(first, box.left);
        EXPECT_LE(last, box.right);
        int middle = (first + last) / 2;
        if (align == kTextAlignLeft) {
            EXPECT_LT(first, box.left + 5);
        } else if (align == kTextAlignCenter) {
            EXPECT_NEAR(middle, (box.left + box.right) / 2, 3);
        } else {
            EXPECT_GT(last, box.right - 5);
        }
    }
}

TEST_F(CanvasTest, ColourKeyedBitmapsLeaveTheDestinationWhereTheKeyIs) {
    // Left half white (the key), right half yellow.
    BitmapResource* bitmap = makeBitmap(8, 4, [](int x, int) { return x < 4 ? rgb(255, 255, 255) : rgb(255, 255, 0); });
    drawOnCleared([&](Canvas& canvas) {
        canvas.setFillColor(kBlueColor);
        canvas.fillRect(Rect{-1, -1, 30, 30});
        bitmap->drawTransparent(canvas, Rect{10, 10, 18, 14}, Point{0, 0});
        bitmap->draw(canvas, Rect{10, 20, 18, 24}, Point{0, 0});
    });
    EXPECT_EQ(window->pixel(11, 11), rgb(0, 0, 255));
    EXPECT_EQ(window->pixel(15, 11), rgb(255, 255, 0));
    EXPECT_EQ(window->pixel(11, 21), rgb(255, 255, 255));
    EXPECT_EQ(window->pixel(15, 21), rgb(255, 255, 0));
    bitmap->release();
}

}  // namespace
}  // namespace tolvane
