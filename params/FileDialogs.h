// The open and save dialogs of the file menu, as an interface that each platform implements, and the
// texts they show, as plain tables that every implementation shares.
#pragma once

#include <memory>
#include <string>
#include <utility>

namespace tolvane {

enum class FileKind { Program = 0, Bank = 1, ControllerMap = 2 };

struct FileFilter {
    const char* description;  // shown to the user, e.g. "Tolvane Programs(*.prog)"
    const char* pattern;      // e.g. "*.prog"; "*.*" means every file
};

struct FileDialogTexts {
    const char* loadTitle;
    const char* saveTitle;
    const FileFilter* filters;  // in the order the dialog lists them; the first is selected
    int filterCount;
    const char* defaultExtension;  // without the dot
};

inline constexpr FileFilter kProgramFileFilters[] = {
    {"Tolvane Programs(*.prog)", "*.prog"},
    {"Ver.1 Programs(*.prg)", "*.prg"},
    {"All Files(*.*)", "*.*"},
};
inline constexpr FileFilter kBankFileFilters[] = {
    {"Tolvane Banks(*.bank)", "*.bank"},
    {"Ver.1 Banks(*.bnk)", "*.bnk"},
    {"All Files(*.*)", "*.*"},
};
inline constexpr FileFilter kControllerMapFileFilters[] = {
    {"Tolvane Controller Maps(*.cmap)", "*.cmap"},
    {"All Files(*.*)", "*.*"},
};

// Indexed by FileKind.
inline constexpr FileDialogTexts kFileDialogTexts[] = {
    {"Load Program", "Save Program", kProgramFileFilters, 3, "prog"},
    {"Load Bank", "Save Bank", kBankFileFilters, 3, "bank"},
    {"Load Controller Map", "Save Controller Map", kControllerMapFileFilters, 2, "cmap"},
};

inline const FileDialogTexts& fileDialogTexts(FileKind kind) { return kFileDialogTexts[static_cast<int>(kind)]; }

// A path whose file name has no extension gets the kind's default one ("sound" -> "sound.prog");
// any other path is answered unchanged.
std::string withDefaultExtension(const std::string& path, FileKind kind);

struct DialogChoice {
    enum class Outcome { Chosen, Cancelled, Unavailable };
    Outcome outcome = Outcome::Cancelled;
    std::string path;  // set when Chosen

    static DialogChoice chosen(std::string p) { return {Outcome::Chosen, std::move(p)}; }
    static DialogChoice cancelled() { return {Outcome::Cancelled, {}}; }
    static DialogChoice unavailable() { return {Outcome::Unavailable, {}}; }
};

// A dialog that may still be open. The file commands ask it from the editor's idle calls until it has
// an answer, so the host's GUI thread goes on painting and idling meanwhile. Destroying an unanswered
// request closes its dialog and forgets the answer.
class DialogRequest {
public:
    virtual ~DialogRequest() = default;
    // True once the user has answered, with the answer in choice; false while the dialog is open.
    virtual bool poll(DialogChoice& choice) = 0;
};

// A request answered before it is returned: what a platform whose dialogs are modal hands back.
class AnsweredRequest : public DialogRequest {
public:
    explicit AnsweredRequest(DialogChoice choice) : choice_(std::move(choice)) {}
    bool poll(DialogChoice& choice) override {
        choice = choice_;
        return true;
    }

private:
    DialogChoice choice_;
};

// A platform implements either the blocking pair (modal dialogs: the request then answers at once) or
// the starting pair, which must not wait for the user. A save dialog asks before overwriting and answers
// a path that already carries the default extension when the user typed none.
class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    virtual DialogChoice openLoad(FileKind kind) = 0;
    virtual DialogChoice openSave(FileKind kind) = 0;
    virtual std::unique_ptr<DialogRequest> startLoad(FileKind kind) {
        return std::make_unique<AnsweredRequest>(openLoad(kind));
    }
    virtual std::unique_ptr<DialogRequest> startSave(FileKind kind) {
        return std::make_unique<AnsweredRequest>(openSave(kind));
    }
};

}  // namespace tolvane
