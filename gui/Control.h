// A view that carries a value between a minimum and a maximum and reports changes to its listener.
#pragma once

#include <cstdint>

#include "gui/Canvas.h"
#include "gui/ControlListener.h"
#include "gui/View.h"

namespace tolvane {

class BitmapResource;

class Control : public View {
public:
    Control(const Rect& bounds, ControlListener* listener, std::int32_t tag, BitmapResource* background = nullptr);

    // Dirty when the value moved since it was last drawn, or when marked.
    bool isDirty() const override;
    void setDirty(bool dirty = true) override;

    virtual void setValue(float value);
    virtual float getValue() const;
    float getMax() const { return max_; }
    void setBackground(BitmapResource* background);

    std::int32_t getTag() const { return tag_; }

protected:
    ~Control() override;

    // Lets the editor idle while a control follows the mouse.
    void idleWhileTracking();
    void clampValue();
    // Tells the listener, if there is one.
    void reportChange(Canvas* canvas);
    // Buttons and modifiers from the canvas, else from the frame's window.
    int currentButtons(Canvas* canvas) const;
    void beginEdit();
    void endEdit();

    // Follows the mouse while the left button is held: each round reads the buttons, hands the current
    // point and those buttons to `step`, reads the new pointer position and lets the editor idle.
    template <typename Step>
    void trackMouse(Canvas& canvas, Point start, Step step);

    ControlListener* listener_;
    std::int32_t tag_;
    float value_ = 0.0f;
    float min_ = 0.0f;
    float max_ = 1.0f;
    float previousValue_ = 1.0f;
    float defaultValue_ = 0.5f;
    float wheelStep_ = 0.1f;
    BitmapResource* background_ = nullptr;
};

template <typename Step>
void Control::trackMouse(Canvas& canvas, Point start, Step step) {
    Point where = start;
    int buttons = 0;
    do {
        buttons = canvas.getMouseButtons();
        step(where, buttons);
        canvas.getMousePosition(where);
        idleWhileTracking();
    } while (buttons & kLeftButton);
}

}  // namespace tolvane
