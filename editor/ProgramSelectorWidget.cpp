#include "editor/ProgramSelectorWidget.h"

#include <cstring>

#include "editor/EditorSkin.h"
#include "editor/LayoutTable.h"
#include "editor/SynthController.h"
#include "editor/SynthEditor.h"
#include "gui/BitmapResource.h"
#include "gui/ThreeWaySwitch.h"
#include "params/ParameterIds.h"

namespace tolvane {
namespace {

using layout::Widget;
constexpr const layout::Control& kDigitsPlace = *layout::find(layout::kStrip, Widget::ProgramDigits);
constexpr const layout::Control& kStepsPlace = *layout::find(layout::kStrip, Widget::ProgramSteps);
constexpr int kProgramDigits = kDigitsPlace.width / skin::kDigitWidth;

}  // namespace

// ---- the program menu

ProgramMenuControl::ProgramMenuControl(const Rect& bounds, ProgramSelectorWidget& owner, BitmapResource* digits)
    : PopupMenuControl(bounds, &owner, 0, nullptr, nullptr, kCheckCurrentStyle), owner_(owner), digits_(digits) {
    setItemsPerColumn(kItemsPerColumn);
}

int ProgramMenuControl::programOfEntry(int entry) {
    // Entries 10, 21, 32, ... are separators: every block of eleven holds ten names.
    if (entry < 0 || entry % 11 == 10) return -1;
    return entry - entry / 11;
}

// Closed, the menu shows the program number within the bank, 1-128, in three digits with leading zeros.
void ProgramMenuControl::draw(Canvas& canvas) {
    if (digits_) {
        int number = owner_.program() + 1;
        for (int j = kProgramDigits - 1; j >= 0; --j) {
            const int x = bounds_.left + j * skin::kDigitWidth;
            digits_->draw(canvas, area(x, bounds_.top, skin::kDigitWidth, skin::kDigitHeight),
                          Point{0, (number % 10) * skin::kDigitHeight});
            number /= 10;
        }
    }
    setDirty(false);
}

void ProgramMenuControl::takeFocus(Canvas* canvas) {
    owner_.fill(*this);
    PopupMenuControl::takeFocus(canvas);
    removeAllEntries();
    setDirty(true);
}

// ---- the selector

ProgramSelectorWidget::ProgramSelectorWidget(SynthEditor& editor) : ParamWidget(editor, -1) {
    banks_.addRun(*layout::find(layout::kStrip, Widget::ProgramBanks));
}

void ProgramSelectorWidget::attach(EditorFrame& frame) {
    ParamWidget::attach(frame);
    setValue(static_cast<float>(editor_.controller().getProgram()));
    banks_.attach(frame, editor_, this, 0);
    banks_.showChoice(bank_);
    menu_ = addControl(new ProgramMenuControl(kDigitsPlace.at(0), *this, bitmap(kDigitsPlace.bitmap)));
    const layout::Control& s = kStepsPlace;
    down_ = addControl(new ThreeWaySwitch(s.at(0), this, 1, s.height, bitmap(s.bitmap), Point{s.columnOf(0), 0},
                                          kSwitchHorizontal));
    up_ = addControl(new ThreeWaySwitch(s.at(1), this, 2, s.height, bitmap(s.bitmap), Point{s.columnOf(1), 0},
                                        kSwitchHorizontal));
}

void ProgramSelectorWidget::detach() {
    if (frame_) banks_.detach(*frame_);
    removeControl(menu_);
    removeControl(down_);
    removeControl(up_);
    ParamWidget::detach();
}

void ProgramSelectorWidget::setValue(float program) {
    int number = static_cast<int>(program);
    if (number < 0 || number >= kNumPrograms) return;
    value_ = program;
    const int bank = number / kProgramsPerBank;
    const int within = number % kProgramsPerBank;
    if (bank == bank_ && within == program_ && isAttached()) return;
    bank_ = bank;
    program_ = within;
    banks_.showChoice(bank_);
    if (menu_) menu_->setDirty(true);
}

void ProgramSelectorWidget::fill(ProgramMenuControl& menu) {
    char name[64];
    for (int i = 0; i < kProgramsPerBank; ++i) {
        if (i > 0 && i % 10 == 0) menu.addEntry("-");
        std::memset(name, 0, sizeof name);
        editor_.controller().getProgramNameIndexed(0, bank_ * kProgramsPerBank + i, name);
        name[sizeof name - 1] = 0;
        // An empty text would stand for an absent entry.
        menu.addEntry(name[0] ? name : " ");
    }
    menu.setCurrent(ProgramMenuControl::entryOfProgram(program_), true);
}

void ProgramSelectorWidget::select(int bank, int program) {
    if (program < 0) program = 0;
    if (program > kProgramsPerBank - 1) program = kProgramsPerBank - 1;
    if (bank == bank_ && program == program_) return;
    const bool programChanged = program != program_;
    bank_ = bank;
    program_ = program;
    value_ = static_cast<float>(programNumber());
    editor_.controller().setProgram(programNumber());
    if (programChanged && menu_) {
        menu_->setDirty(true);
        redrawNow(menu_);
    }
}

void ProgramSelectorWidget::valueChanged(Canvas* canvas, Control* control) {
    const int bankButton = banks_.positionOf(control);
    if (bankButton >= 0) {
        banks_.showChoice(bankButton);  // the selected bank's button stays lit
        select(bankButton, program_);
        if (canvas && frame_) banks_.redrawChanged(*frame_);
        return;
    }
    if (control == menu_) {
        const int program = ProgramMenuControl::programOfEntry(static_cast<int>(menu_->getValue()));
        if (program >= 0) select(bank_, program);
        return;
    }
    if (control != down_ && control != up_) return;
    ThreeWaySwitch* step = static_cast<ThreeWaySwitch*>(control);
    const float position = step->getValue();
    if (position != 0.0f) {
        // Down: the left half takes 10 off, the right half 1. Up: the left half adds 1, the right half 10.
        int delta;
        if (step == down_) delta = position < 0.0f ? -10 : -1;
        else delta = position < 0.0f ? 1 : 10;
        select(bank_, program_ + delta);
    }
    if (canvas) redrawNow(step);
}

}  // namespace tolvane
