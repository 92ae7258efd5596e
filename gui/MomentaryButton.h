// A button that is on only while it is held: the second image shows while the value is non-zero.
#pragma once

#include "gui/Control.h"

namespace tolvane {

class MomentaryButton : public Control {
public:
    MomentaryButton(const Rect& bounds, ControlListener* listener, std::int32_t tag, std::int32_t imageHeight,
                    BitmapResource* bitmap, Point offset);

    void draw(Canvas& canvas) override;
    void onMouseDown(Canvas& canvas, Point where) override;

private:
    std::int32_t imageHeight_;
    Point offset_;
};

}  // namespace tolvane
