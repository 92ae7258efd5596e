// A knob turned by dragging: circularly (the value follows the pointer's angle) or linearly (right and up
// increase), with keys and wheel steps. The handle is a line or a small bitmap at the value's angle.
#pragma once

#include "gui/Control.h"

namespace tolvane {

class RotaryKnob : public Control {
public:
    RotaryKnob(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* background,
               BitmapResource* handle, Point offset);

    void draw(Canvas& canvas) override;
    void onMouseDown(Canvas& canvas, Point where) override;
    std::int32_t onKeyDown(const KeyCode& key) override;
    bool onWheel(Canvas* canvas, Point where, float distance) override;

    virtual void drawHandle(Canvas& canvas);
    // Points are relative to the knob's top-left corner.
    virtual void valueToPoint(Point& where) const;
    virtual float valueFromPoint(Point& where) const;
    virtual void setHandleBitmap(BitmapResource* handle);

protected:
    ~RotaryKnob() override;
    // Recomputes the gap, slope and offset from the angles and the current range of values.
    void computeAngles() const;
    // The value a circular drag takes at a point (relative to the knob's top-left) with these buttons held;
    // the first call of a press gives the reference value. By default the value under the point.
    virtual float circularDragValue(Point where, int buttons);
    // Whether that value follows the pointer's angle: then a jump of more than half the range between two
    // polls means the pointer crossed the gap between the ends, and the value stays at the end it came from.
    virtual bool circularDragFollowsAngle() const { return true; }
    // Called once a drag has begun (after the begin-edit), with the buttons of the press.
    virtual void dragStarted(Canvas& canvas, int buttons);

    Color handleColor_ = kWhiteColor;
    Color shadowColor_ = kGreyColor;
    BitmapResource* handle_ = nullptr;
    Point backgroundOffset_;
    std::int32_t inset_ = 3;
    float startAngle_;
    float rangeAngle_;
    float radius_;
    float zoomFactor_ = 1.5f;
    mutable float gapHalfAngle_ = 0.0f;
    mutable float slope_ = 0.0f;
    mutable float angleOffset_ = 0.0f;
};

}  // namespace tolvane
