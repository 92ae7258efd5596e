// Three-way switch, momentary button and digit display: the press, drag and clamping rules that the
// editor's own tests do not reach.
#include "gui/DigitDisplay.h"
#include "gui/MomentaryButton.h"
#include "gui/ThreeWaySwitch.h"
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

// ---- three-way switch

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

}  // namespace
}  // namespace tolvane
