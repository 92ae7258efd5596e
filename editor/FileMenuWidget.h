// The file menu: a button that opens the load and save commands of programs, banks and controller maps.
#pragma once

#include "editor/ParamWidget.h"
#include "editor/SynthController.h"
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
    // The command of each entry (the separator's is never run).
    static const EditorCommand kCommands[7];

    explicit FileMenuWidget(SynthEditor& editor);

    void valueChanged(Canvas* canvas, Control* control) override;
    void attach(EditorFrame& frame) override;
    void detach() override;

    FileMenuControl* menu() const { return menu_; }

private:
    FileMenuControl* menu_ = nullptr;
};

}  // namespace tolvane
