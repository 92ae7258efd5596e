// Buttons, switches, digit display and image overlay: drawing (pixel checks on bitmaps built here) and
// the press and drag rules.
#include "gui/DigitDisplay.h"
#include "gui/ImageOverlay.h"
#include "gui/MomentaryButton.h"
#include "gui/ThreeWaySwitch.h"
#include "gui/ToggleButton.h"
#include "tests/gui/ToolkitTestSupport.h"

namespace tolvane {
namespace {

using testing::makeBitmap;
using testing::RecordingListener;
using testing::rgb;

class ControlsTest : public testing::ToolkitTest {
protected:
    std::uint32_t shownAt(Control* control, int x, int y) {
        frame->redrawView(control);
        return window->pixel(x, y);
    }
    RecordingListener listener;
};

// ---- toggle buttons

TEST_F(ControlsTest, ToggleButtonPressFlipsOnTheIntegerPartAndAlwaysReports) {
    ToggleButton* button = add(new ToggleButton(Rect{0, 0, 10, 10}, &listener, 5, nullptr));
    struct Case {
        float before, after;
    };
    for (Case c : {Case{0.5f, 1.0f}, Case{1.5f, 0.0f}, Case{-0.5f, 1.0f}}) {
        button->setValue(c.before);
        window->press(Point{5, 5}, kLeftButton);
        EXPECT_EQ(button->getValue(), c.after) << c.before;
    }
    EXPECT_EQ(listener.values.size(), 3u);
    window->press(Point{5, 5}, kRightButton);
    EXPECT_EQ(listener.values.size(), 3u) << "only the left button toggles";
}

// ---- three-way switch

TEST_F(ControlsTest, ThreeWaySwitchShowsOneImagePerState) {
    // Three images of 9 pixels: green 10, 20, 30 from the top.
    BitmapResource* bitmap = makeBitmap(18, 27, [](int, int y) { return rgb(0, 10 * (1 + y / 9), 0); });
    ThreeWaySwitch* sw = add(new ThreeWaySwitch(Rect{10, 10, 28, 19}, &listener, 0, 9, bitmap, Point{}, kSwitchHorizontal));
    bitmap->release();
    EXPECT_EQ(shownAt(sw, 12, 12), rgb(0, 20, 0));
    sw->setValue(-1.0f);
    EXPECT_EQ(shownAt(sw, 12, 12), rgb(0, 10, 0));
    sw->setValue(1.0f);
    EXPECT_EQ(shownAt(sw, 12, 12), rgb(0, 30, 0));
}

TEST_F(ControlsTest, ThreeWaySwitchFollowsTheHalvesWhileHeldAndSpringsBackAfterWheelSteps) {
    add(new ThreeWaySwitch(Rect{10, 30, 28, 48}, &listener, 0, 9, nullptr, Point{}, kSwitchVertical));
    // Pressed in the bottom half (y >= 39), moved to the top half, outside (the value before the press),
    // released.
    window->press(Point{20, 45}, kLeftButton,
                  {{Point{20, 32}, kLeftButton}, {Point{60, 60}, kLeftButton}, {Point{60, 60}, 0}});
    EXPECT_EQ(listener.values, (std::vector<float>{1.0f, -1.0f, 0.0f, 0.0f}));

    // A wheel step flips once and springs back.
    listener.values.clear();
    window->wheel(Point{15, 40}, 1.0f);
    window->wheel(Point{15, 40}, -1.0f);
    EXPECT_EQ(listener.values, (std::vector<float>{-1.0f, 0.0f, 1.0f, 0.0f}));
}

// ---- momentary button

TEST_F(ControlsTest, MomentaryButtonIsOnWhileHeldOverItAndBracketsTheGesture) {
    BitmapResource* bitmap = makeBitmap(32, 24, [](int, int y) { return y < 12 ? rgb(1, 1, 1) : rgb(2, 2, 2); });
    MomentaryButton* button = add(new MomentaryButton(Rect{10, 10, 42, 22}, &listener, -1, 12, bitmap, Point{}));
    bitmap->release();
    std::vector<std::uint32_t> shown;
    listener.onChange = [&](Control* c) { shown.push_back(shownAt(c, 20, 15)); };
    window->press(Point{20, 15}, kLeftButton,
                  {{Point{100, 100}, kLeftButton}, {Point{30, 15}, kLeftButton}, {Point{30, 15}, 0}});
    EXPECT_EQ(listener.values, (std::vector<float>{1.0f, 0.0f, 1.0f, 0.0f}));
    EXPECT_EQ(shown, (std::vector<std::uint32_t>{rgb(2, 2, 2), rgb(1, 1, 1), rgb(2, 2, 2), rgb(1, 1, 1)}));
    EXPECT_EQ(host.begun, std::vector<std::int32_t>{-1});
    EXPECT_EQ(host.ended, std::vector<std::int32_t>{-1});
    EXPECT_EQ(button->getValue(), 0.0f);
}

// ---- digit display

TEST_F(ControlsTest, DigitDisplayClampsToWhatItsDigitsCanShow) {
    // Ten digit images of 4 x 5, digit d in green 20 d + 5.
    BitmapResource* digits = makeBitmap(4, 50, [](int, int y) { return rgb(0, 20 * (y / 5) + 5, 0); });
    const std::int32_t xs[] = {10, 20, 30};
    const std::int32_t ys[] = {5, 5, 15};
    DigitDisplay* display = add(new DigitDisplay(Rect{10, 5, 34, 20}, nullptr, 0, 47.9f, 3, xs, ys, 4, 5, digits));
    digits->release();
    auto digitAt = [&](int x, int y) { return static_cast<int>(((window->pixel(x, y) >> 8) & 0xFF) - 5) / 20; };
    auto show = [&](float value) {
        display->setValue(value);
        frame->redrawView(display);
        return std::vector<int>{digitAt(11, 6), digitAt(21, 6), digitAt(31, 16)};
    };
    EXPECT_EQ(show(1234.0f), (std::vector<int>{9, 9, 9}));
    EXPECT_EQ(show(-5.0f), (std::vector<int>{0, 0, 0}));
    EXPECT_EQ(display->getMax(), 999.0f);
    DigitDisplay* nine = add(new DigitDisplay(Rect{}, nullptr, 0, 0.0f, 9, nullptr, nullptr, 4, 5, nullptr));
    EXPECT_EQ(nine->getDigitCount(), 7) << "at most seven digits";
    EXPECT_EQ(nine->getMax(), 9999999.0f);
}

// ---- image overlay

TEST_F(ControlsTest, ASecondOverlayCannotOpenWhileOneIsShown) {
    ImageOverlay* first = add(new ImageOverlay(Rect{10, 10, 30, 20}, &listener, 1, nullptr, Rect{50, 50, 90, 80}, Point{}));
    ImageOverlay* second = add(new ImageOverlay(Rect{100, 10, 120, 20}, &listener, 2, nullptr, Rect{0, 0, 20, 20}, Point{}));
    window->press(Point{15, 15}, kLeftButton);
    ASSERT_EQ(frame->getModalView(), first);
    second->setDirty(false);
    window->setPointer(Point{105, 15}, kLeftButton);
    frame->withCanvas([&](Canvas& canvas) { second->onMouseDown(canvas, Point{105, 15}); });
    EXPECT_EQ(frame->getModalView(), first);
    EXPECT_EQ(second->getValue(), 0.0f);
    EXPECT_EQ(second->getBounds(), (Rect{100, 10, 120, 20}));
    EXPECT_TRUE(second->isDirty());
    EXPECT_EQ(listener.values, std::vector<float>{1.0f});
}

}  // namespace
}  // namespace tolvane
