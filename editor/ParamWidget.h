// A widget bound to one value index of the editor. It keeps the value while the editor is open and owns
// toolkit controls only while its page is shown: attach creates them on the frame with the stored value,
// detach removes them again. A change made with a control goes to the plug-in as an automated parameter
// change. The base class itself stands in for the reserved indices, which have no control.
#pragma once

#include <cstdint>

#include "gui/ControlListener.h"

namespace tolvane {

class BitmapResource;
class Canvas;
class Control;
class EditorFrame;
class SynthEditor;
class TextDisplay;

class ParamWidget : public ControlListener {
public:
    // index -1: a widget that stands for no parameter (program selector, name, file menu).
    ParamWidget(SynthEditor& editor, int index);
    ~ParamWidget() override;
    ParamWidget(const ParamWidget&) = delete;
    ParamWidget& operator=(const ParamWidget&) = delete;

    void valueChanged(Canvas* canvas, Control* control) override;
    virtual void attach(EditorFrame& frame);
    virtual void detach();
    // A value from outside: stored, and shown while attached.
    virtual void setValue(float value);

    // Gives a text display the editor's text look.
    static void applyTextLook(TextDisplay& display, int align);

    int index() const { return index_; }
    float value() const { return value_; }
    bool isAttached() const { return frame_ != nullptr; }

protected:
    // Stores the value and hands it to the plug-in as if the user changed the parameter.
    void send(float value);
    // Adds a new control to the frame, which takes over the creator's reference; null (and the control
    // released) when the widget is not attached.
    template <typename C>
    C* addControl(C* control);
    // Removes a control from the frame, releasing it, and clears the pointer.
    template <typename C>
    void removeControl(C*& control);
    // Draws a control that changed at once (a change made by the user shows while the mouse is held).
    void redrawNow(Control* control);
    BitmapResource* bitmap(int id) const;

    SynthEditor& editor_;
    const int index_;
    float value_ = 0.0f;
    EditorFrame* frame_ = nullptr;

private:
    bool addToFrame(Control* control);
    void removeFromFrame(Control* control);
};

template <typename C>
C* ParamWidget::addControl(C* control) {
    return addToFrame(control) ? control : nullptr;
}

template <typename C>
void ParamWidget::removeControl(C*& control) {
    if (!control) return;
    removeFromFrame(control);
    control = nullptr;
}

}  // namespace tolvane
