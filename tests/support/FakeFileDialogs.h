// File dialogs for tests: answer with a path set beforehand, a cancel, or "no dialog available", and
// remember what was asked.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "params/FileDialogs.h"

namespace tolvane::testing {

class FakeFileDialogs : public FileDialogs {
public:
    DialogChoice::Outcome outcome = DialogChoice::Outcome::Cancelled;
    std::string path;
    int loads = 0;
    int saves = 0;
    std::vector<std::pair<FileKind, bool>> asked;  // kind, save

    DialogChoice openLoad(FileKind kind) override {
        ++loads;
        asked.emplace_back(kind, false);
        return DialogChoice{outcome, path};
    }
    DialogChoice openSave(FileKind kind) override {
        ++saves;
        asked.emplace_back(kind, true);
        return DialogChoice{outcome, path};
    }
    void choose(const std::string& chosen) {
        outcome = DialogChoice::Outcome::Chosen;
        path = chosen;
    }
};

}  // namespace tolvane::testing
