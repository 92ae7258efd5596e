#include "gui/RotaryKnob.h"

#include <cmath>

#include "tests/gui/ToolkitTestSupport.h"

namespace tolvane {
namespace {

using testing::RecordingListener;

constexpr double kPi = 3.14159265358979323846;

// A 40 x 40 knob at (100, 40): centre (120, 60), radius 20.
class RotaryKnobTest : public testing::ToolkitTest {
protected:
    void SetUp() override {
        ToolkitTest::SetUp();
        knob = add(new RotaryKnob(Rect{100, 40, 140, 80}, &listener, 42, nullptr, nullptr, Point{}));
    }

    // Press at `start` holding `buttons`, move through `path` with the same buttons, let go at the last point.
    void drag(Point start, int buttons, std::vector<Point> path) {
        std::vector<PointerStep> steps;
        for (Point p : path) steps.push_back(PointerStep{p, buttons});
        steps.push_back(PointerStep{path.empty() ? start : path.back(), 0});
        window->press(start, buttons, steps);
    }

    // The point at `degrees` (counter-clockwise from the right, y up) and distance 15 from the centre.
    static Point atAngle(double degrees) {
        double a = degrees * kPi / 180.0;
        return Point{120 + static_cast<int>(std::lround(15 * std::cos(a))), 60 - static_cast<int>(std::lround(15 * std::sin(a)))};
    }

    // The knob runs clockwise from 225 degrees (minimum, lower left) through 270 degrees to -45 (maximum).
    static float expectedAt(double degrees) {
        double travelled = std::fmod(225.0 - degrees + 720.0, 360.0);
        return static_cast<float>(travelled / 270.0);
    }

    RecordingListener listener;
    RotaryKnob* knob = nullptr;
};

TEST_F(RotaryKnobTest, CircularDragFollowsTheAngleAndStopsAtTheEndItCameFrom) {
    for (double degrees : {90.0, 0.0, 180.0, 200.0, 135.0, -30.0}) {
        knob->setValue(0.5f);
        drag(atAngle(90.0), kLeftButton, {atAngle(degrees)});
        EXPECT_NEAR(knob->getValue(), expectedAt(degrees), 0.02) << degrees;
    }
    // Clockwise over the top to the maximum side, into the gap (-60), past its middle (250), on to 200.
    knob->setValue(0.5f);
    drag(atAngle(90.0), kLeftButton, {atAngle(0.0), atAngle(-30.0), atAngle(-60.0), atAngle(250.0), atAngle(200.0)});
    EXPECT_EQ(knob->getValue(), 1.0f);
    // And the other way round from the minimum side.
    knob->setValue(0.5f);
    drag(atAngle(90.0), kLeftButton, {atAngle(180.0), atAngle(215.0), atAngle(240.0), atAngle(290.0), atAngle(330.0)});
    EXPECT_EQ(knob->getValue(), 0.0f);
}

TEST_F(RotaryKnobTest, AltReversesTheKnobModeForOneDrag) {
    // Circular mode with Alt: linear. 50 px up from the centre is half of... 0.25 of the range.
    knob->setValue(0.0f);
    drag(Point{120, 60}, kLeftButton | kAltKey, {Point{120, 10}});
    EXPECT_NEAR(knob->getValue(), 0.25f, 1e-5);
    // Linear mode with Alt: circular, so the value follows the pointer's angle.
    editor->setKnobMode(kLinearKnobMode);
    knob->setValue(0.5f);
    drag(atAngle(90.0), kLeftButton | kAltKey, {atAngle(0.0)});
    EXPECT_NEAR(knob->getValue(), expectedAt(0.0), 0.02);
}

TEST_F(RotaryKnobTest, ControlClickAtTheDefaultReportsNothingAndControlShiftDrags) {
    editor->setKnobMode(kLinearKnobMode);
    knob->setValue(0.5f);  // the default value
    drag(Point{120, 60}, kLeftButton | kControlKey, {Point{120, 0}});
    EXPECT_TRUE(listener.values.empty());
    EXPECT_TRUE(host.begun.empty()) << "a click to the default is no drag";
    drag(Point{120, 60}, kLeftButton | kControlKey | kShiftKey, {Point{120, 0}});
    EXPECT_NEAR(knob->getValue(), 0.5f + 60.0f / 300.0f, 1e-5);
}

TEST_F(RotaryKnobTest, WheelStepsByTheWheelStepAndStopsAtTheEndsWithoutReporting) {
    knob->setValue(0.5f);
    window->wheel(Point{120, 60}, 2.0f);
    EXPECT_NEAR(knob->getValue(), 0.7f, 1e-5);
    window->wheel(Point{120, 60}, -1.0f, kShiftKey);
    EXPECT_NEAR(knob->getValue(), 0.69f, 1e-5);
    knob->setValue(0.95f);
    window->wheel(Point{120, 60}, 1.0f);
    window->wheel(Point{120, 60}, 1.0f);
    EXPECT_EQ(knob->getValue(), 1.0f);
    EXPECT_EQ(listener.values.size(), 3u) << "no report when the value is stuck at the end";
    knob->setMouseEnabled(false);
    EXPECT_FALSE(knob->onWheel(nullptr, Point{}, -1.0f));
    EXPECT_EQ(knob->getValue(), 1.0f);
}

}  // namespace
}  // namespace tolvane
