// Told when a control's value was changed by the user.
#pragma once

namespace tolvane {

class Canvas;
class Control;

class ControlListener {
public:
    virtual ~ControlListener() = default;
    // The canvas is absent for changes that did not come from a press (keys, wheel from the host).
    virtual void valueChanged(Canvas* canvas, Control* control) = 0;
};

}  // namespace tolvane
