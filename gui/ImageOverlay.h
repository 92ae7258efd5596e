// An image shown over the editor as its modal view: a press on its click area opens it, a press on the
// image closes it again.
#pragma once

#include "gui/Control.h"

namespace tolvane {

class ImageOverlay : public Control {
public:
    ImageOverlay(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* bitmap,
                 const Rect& overlay, Point offset);

    void draw(Canvas& canvas) override;
    void onMouseDown(Canvas& canvas, Point where) override;

private:
    Rect overlay_;
    Point offset_;
    Rect savedBounds_;
};

}  // namespace tolvane
