// A parameter chosen from a list menu: closed, the menu shows a short text for the current entry; pressed,
// it fills itself from its table, reports the current value (so that the status lines name the parameter
// while the menu is open), runs, and empties itself again.
#pragma once

#include "editor/ParamWidget.h"
#include "gui/PopupMenuControl.h"

namespace tolvane {

struct MenuTable;
class ListMenuWidget;

// The popup menu of a list widget: its entries exist only while it is open.
class ListMenuControl : public PopupMenuControl {
public:
    ListMenuControl(const Rect& bounds, ListMenuWidget& owner, std::int32_t tag);

    void draw(Canvas& canvas) override;
    void takeFocus(Canvas* canvas) override;

private:
    ListMenuWidget& owner_;
};

class ListMenuWidget : public ParamWidget {
public:
    ListMenuWidget(SynthEditor& editor, int index, const MenuTable& table, const Rect& area);

    void valueChanged(Canvas* canvas, Control* control) override;
    void attach(EditorFrame& frame) override;
    void detach() override;
    void setValue(float value) override;

    const char* closedText() const;
    const MenuTable& table() const { return table_; }
    ListMenuControl* menu() const { return menu_; }

private:
    friend class ListMenuControl;
    void fill(ListMenuControl& menu);

    const MenuTable& table_;
    Rect area_;
    int entry_;
    ListMenuControl* menu_ = nullptr;
};

}  // namespace tolvane
