// The current program's name in an editable field. A name typed into it (cut to 31 characters) renames
// the program in the plug-in.
#pragma once

#include "editor/ParamWidget.h"

namespace tolvane {

class TextField;

class ProgramNameWidget : public ParamWidget {
public:
    static constexpr int kMaxNameLength = 31;

    explicit ProgramNameWidget(SynthEditor& editor);

    void valueChanged(Canvas* canvas, Control* control) override;
    void attach(EditorFrame& frame) override;
    void detach() override;

    void showName(const char* name);
    const char* name() const { return name_; }
    TextField* field() const { return field_; }

private:
    char name_[kMaxNameLength + 1] = {};
    TextField* field_ = nullptr;
};

}  // namespace tolvane
