// The file menu: a button that opens the load and save commands. Each command reaches the plug-in as a
// negative program number: -3 to -5 load a program, a bank or the controller maps, -6 to -8 save them.
#pragma once

#include "editor/ParamWidget.h"
#include "gui/PopupMenuControl.h"

namespace tolvane {

class FileMenuControl : public PopupMenuControl {
public:
    FileMenuControl(const Rect& bounds, ControlListener* listener, BitmapResource* bitmap);
    // Shows the pressed picture while the menu is open.
    void takeFocus(Canvas* canvas) override;
};

class FileMenuWidget : public ParamWidget {
public:
    static const char* const kEntries[7];
    // The command of each entry (0 for the separator).
    static const int kCommands[7];

    explicit FileMenuWidget(SynthEditor& editor);

    void valueChanged(Canvas* canvas, Control* control) override;
    void attach(EditorFrame& frame) override;
    void detach() override;

    FileMenuControl* menu() const { return menu_; }

private:
    FileMenuControl* menu_ = nullptr;
};

}  // namespace tolvane
