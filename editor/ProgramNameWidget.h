// The current program's name in an editable field. A name typed into it (cut to kMaxProgramNameLength
// characters, the length a program keeps everywhere) renames the program in the plug-in.
#pragma once

#include "editor/ParamWidget.h"
#include "params/ProgramRecord.h"

namespace tolvane {

class TextField;

class ProgramNameWidget : public ParamWidget {
public:
    static constexpr int kMaxNameLength = kMaxProgramNameLength;

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
