// The program selector of the common strip: four bank buttons (A-D), the program menu (closed, the program
// number 1-128 in digits; open, the bank's 128 names in columns), and two step switches (down by 10 or 1,
// up by 1 or 10). The selection is the plug-in's current program, bank × 128 + program.
#pragma once

#include "editor/ButtonRow.h"
#include "editor/ParamWidget.h"
#include "gui/PopupMenuControl.h"

namespace tolvane {

class ProgramSelectorWidget;
class ThreeWaySwitch;

class ProgramMenuControl : public PopupMenuControl {
public:
    static constexpr int kItemsPerColumn = 33;

    ProgramMenuControl(const Rect& bounds, ProgramSelectorWidget& owner, BitmapResource* digits);

    void draw(Canvas& canvas) override;
    void takeFocus(Canvas* canvas) override;

    // Entry positions and programs within the bank: a separator stands before every tenth name.
    static int entryOfProgram(int program) { return program + program / 10; }
    static int programOfEntry(int entry);

private:
    ProgramSelectorWidget& owner_;
    BitmapResource* digits_;
};

class ProgramSelectorWidget : public ParamWidget {
public:
    explicit ProgramSelectorWidget(SynthEditor& editor);

    void valueChanged(Canvas* canvas, Control* control) override;
    void attach(EditorFrame& frame) override;
    void detach() override;
    // The program number 0-511.
    void setValue(float program) override;

    int bank() const { return bank_; }
    int program() const { return program_; }
    int programNumber() const { return bank_ * 128 + program_; }
    const ButtonRow& bankButtons() const { return banks_; }
    ProgramMenuControl* menu() const { return menu_; }

private:
    friend class ProgramMenuControl;
    void fill(ProgramMenuControl& menu);
    void select(int bank, int program);

    ButtonRow banks_;
    ProgramMenuControl* menu_ = nullptr;
    ThreeWaySwitch* down_ = nullptr;
    ThreeWaySwitch* up_ = nullptr;
    int bank_ = 0;
    int program_ = 0;
};

}  // namespace tolvane
