#include "editor/FileMenuWidget.h"

#include "editor/EditorSkin.h"
#include "editor/LayoutTable.h"
#include "editor/SynthController.h"
#include "editor/SynthEditor.h"
#include "gui/EditorFrame.h"

namespace tolvane {
namespace {

constexpr const layout::Control& kPlace = *layout::find(layout::kStrip, layout::Widget::FileMenu);
constexpr int kColumn = kPlace.column;
constexpr int kPressedRow = kPlace.height;

}  // namespace

const char* const FileMenuWidget::kEntries[7] = {"Load Program...", "Load Bank...", "Load Controller Map...", "-",
                                                 "Save Program...", "Save Bank...", "Save Controller Map..."};
const EditorCommand FileMenuWidget::kCommands[7] = {
    EditorCommand::LoadProgram, EditorCommand::LoadBank, EditorCommand::LoadMaps,    EditorCommand::Recall,
    EditorCommand::SaveProgram, EditorCommand::SaveBank, EditorCommand::SaveMaps};

FileMenuControl::FileMenuControl(const Rect& bounds, ControlListener* listener, BitmapResource* bitmap)
    : PopupMenuControl(bounds, listener, 0, bitmap, nullptr, kNoTextStyle) {
    setBackgroundOffset(Point{kColumn, 0});
    for (const char* entry : FileMenuWidget::kEntries) addEntry(entry);
}

void FileMenuControl::takeFocus(Canvas* canvas) {
    setBackgroundOffset(Point{kColumn, kPressedRow});
    if (frame_) frame_->redrawView(this);
    else if (canvas) draw(*canvas);
    PopupMenuControl::takeFocus(canvas);
    setBackgroundOffset(Point{kColumn, 0});
    setDirty(true);
}

FileMenuWidget::FileMenuWidget(SynthEditor& editor) : ParamWidget(editor, -1) {}

void FileMenuWidget::attach(EditorFrame& frame) {
    ParamWidget::attach(frame);
    menu_ = addControl(new FileMenuControl(kPlace.at(0), this, bitmap(kPlace.bitmap)));
}

void FileMenuWidget::detach() {
    removeControl(menu_);
    ParamWidget::detach();
}

void FileMenuWidget::valueChanged(Canvas*, Control* control) {
    if (control != menu_) return;
    const int entry = static_cast<int>(menu_->getValue());
    if (entry < 0 || entry >= 7 || kEntries[entry][0] == '-') return;
    editor_.controller().runCommand(kCommands[entry]);
}

}  // namespace tolvane
