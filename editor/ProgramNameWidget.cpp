#include "editor/ProgramNameWidget.h"

#include <cstring>

#include "editor/LayoutTable.h"
#include "editor/SynthController.h"
#include "editor/SynthEditor.h"
#include "gui/TextField.h"

namespace tolvane {

ProgramNameWidget::ProgramNameWidget(SynthEditor& editor) : ParamWidget(editor, -1) {}

void ProgramNameWidget::attach(EditorFrame& frame) {
    ParamWidget::attach(frame);
    auto* field = new TextField(layout::find(layout::kStrip, layout::Widget::ProgramName)->at(0), this, 0, name_, nullptr, 0);
    applyTextLook(*field, kTextAlignLeft);
    field->setMaxLength(kMaxNameLength);
    field_ = addControl(field);
}

void ProgramNameWidget::detach() {
    removeControl(field_);
    ParamWidget::detach();
}

void ProgramNameWidget::showName(const char* name) {
    std::strncpy(name_, name ? name : "", kMaxNameLength);
    name_[kMaxNameLength] = 0;
    if (field_) field_->setText(name_);
}

// Editing ended with a different text.
void ProgramNameWidget::valueChanged(Canvas*, Control* control) {
    if (control != field_) return;
    char text[TextField::kMaxTextLength + 1];
    field_->getText(text);
    text[kMaxNameLength] = 0;
    std::strcpy(name_, text);
    field_->setText(name_);
    editor_.controller().setProgramName(name_);
}

}  // namespace tolvane
