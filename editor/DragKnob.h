// The editor's knob: a film-strip knob (frames of 22 pixels) that is dragged rather than turned. In the
// circular knob mode (the default) the value moves with the pointer's distance from the press point:
// 200 pixels to the right or upwards cover the whole range, ten times as many with Shift held. Pressing or
// letting go of Shift during a drag starts the measuring afresh from the current point, so the value
// never jumps. The host's linear knob mode uses the toolkit's linear drag unchanged.
#pragma once

#include "gui/FilmStripKnob.h"

namespace tolvane {

class DragKnob : public FilmStripKnob {
public:
    static constexpr int kFrameHeight = 22;
    static constexpr float kDragStep = 0.005f;       // value per pixel
    static constexpr float kFineDragFactor = 0.1f;   // with Shift

    DragKnob(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* strip);

    void onMouseDown(Canvas& canvas, Point where) override;

protected:
    float circularDragValue(Point where, int buttons) override;
    // The value comes from the distance dragged, so a fast flick is a large move, never a gap crossing.
    bool circularDragFollowsAngle() const override { return false; }
    // The listener hears of the press at once, so that the host and the status lines show the parameter
    // before anything moves.
    void dragStarted(Canvas& canvas, int buttons) override;

private:
    bool pressPending_ = false;  // the next drag value is the press itself
    float entry_ = 0.0f;
    Point anchor_;
    bool fine_ = false;
};

}  // namespace tolvane
