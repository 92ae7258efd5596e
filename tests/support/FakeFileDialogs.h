// File dialogs for tests: answer with a path set beforehand, a cancel, or "no dialog available".
#pragma once

#include <string>

#include "params/FileDialogs.h"

namespace tolvane::testing {

class FakeFileDialogs : public FileDialogs {
public:
    DialogChoice::Outcome outcome = DialogChoice::Outcome::Cancelled;
    std::string path;
    int loads = 0;
    int saves = 0;

    DialogChoice openLoad(FileKind) override {
        ++loads;
        return DialogChoice{outcome, path};
    }
    DialogChoice openSave(FileKind) override {
        ++saves;
        return DialogChoice{outcome, path};
    }
};

}  // namespace tolvane::testing
