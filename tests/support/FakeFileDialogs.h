// File dialogs for tests: answer with a path set beforehand, a cancel, or "no dialog available", and
// remember what was asked.
#pragma once

#include <memory>
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
    // While set, a dialog started with startLoad/startSave stays open (its request has no answer yet).
    bool waiting = false;

    std::unique_ptr<DialogRequest> startLoad(FileKind kind) override { return start(kind, false); }
    std::unique_ptr<DialogRequest> startSave(FileKind kind) override { return start(kind, true); }

    void choose(const std::string& chosen) {
        outcome = DialogChoice::Outcome::Chosen;
        path = chosen;
    }

private:
    class OpenDialog : public DialogRequest {
    public:
        explicit OpenDialog(FakeFileDialogs& owner) : owner_(owner) {}
        bool poll(DialogChoice& choice) override {
            if (owner_.waiting) return false;
            choice = DialogChoice{owner_.outcome, owner_.path};
            return true;
        }

    private:
        FakeFileDialogs& owner_;
    };

    std::unique_ptr<DialogRequest> start(FileKind kind, bool save) {
        ++(save ? saves : loads);
        asked.emplace_back(kind, save);
        return std::make_unique<OpenDialog>(*this);
    }
};

}  // namespace tolvane::testing
