#include "editor/DragKnob.h"

#include "gui/BitmapResource.h"

namespace tolvane {
namespace {

std::int32_t framesIn(BitmapResource* strip) {
    return strip ? strip->getHeight() / DragKnob::kFrameHeight : 0;
}

}  // namespace

DragKnob::DragKnob(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* strip)
    : FilmStripKnob(bounds, listener, tag, framesIn(strip), kFrameHeight, strip, Point{0, 0}) {}

void DragKnob::onMouseDown(Canvas& canvas, Point where) {
    pressPending_ = true;
    FilmStripKnob::onMouseDown(canvas, where);
    pressPending_ = false;
}

// The value is the entry value plus the movement since the anchor (right and up count positive). The
// first call of a press, and any call where Shift changed, re-anchors at the point and keeps the value.
float DragKnob::circularDragValue(Point where, int buttons) {
    const bool fine = (buttons & kShiftKey) != 0;
    if (pressPending_ || fine != fine_) {
        pressPending_ = false;
        anchor_ = where;
        entry_ = value_;
        fine_ = fine;
        return value_;
    }
    const float moved = static_cast<float>((where.h - anchor_.h) + (anchor_.v - where.v));
    float value = entry_ + moved * kDragStep * (fine_ ? kFineDragFactor : 1.0f);
    if (value <= min_) value = min_;
    if (value > max_) value = max_;
    return value;
}

void DragKnob::dragStarted(Canvas& canvas, int) { reportChange(&canvas); }

}  // namespace tolvane
