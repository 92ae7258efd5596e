// A spring-loaded switch with three images (values -1, 0 and +1): pressing one half pushes it to that side
// while the button is held; it always returns to 0.
#pragma once

#include "gui/Control.h"

namespace tolvane {

enum ThreeWaySwitchStyle { kSwitchVertical = 0, kSwitchHorizontal = 1 };

class ThreeWaySwitch : public Control {
public:
    ThreeWaySwitch(const Rect& bounds, ControlListener* listener, std::int32_t tag, std::int32_t imageHeight,
                   BitmapResource* bitmap, Point offset, std::int32_t style);

    void draw(Canvas& canvas) override;
    void onMouseDown(Canvas& canvas, Point where) override;
    bool onWheel(Canvas* canvas, Point where, float distance) override;

private:
    void moveTo(Canvas* canvas, float value);

    std::int32_t imageHeight_;
    Point offset_;
    std::int32_t style_;
};

}  // namespace tolvane
