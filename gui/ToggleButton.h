// A two-state button: the upper half of its bitmap shows "off", the lower half "on".
#pragma once

#include "gui/Control.h"

namespace tolvane {

class ToggleButton : public Control {
public:
    // offset: where the button's column starts in the bitmap.
    ToggleButton(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* bitmap,
                 Point offset = Point{0, 0});

    void draw(Canvas& canvas) override;
    void onMouseDown(Canvas& canvas, Point where) override;

    // Moves the button to another column of its bitmap (a button whose picture depends on another choice).
    void setOffset(Point offset);
    Point getOffset() const { return offset_; }

private:
    Point offset_;
};

}  // namespace tolvane
