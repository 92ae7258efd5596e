// The open and save dialogs of the file menu, as an interface that each platform implements, and the
// texts they show, as plain tables that every implementation shares.
#pragma once

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

// The kind whose dialog lists the path's extension ("x.prg" is a program, "x.BNK" a bank; case is
// ignored); false for an extension no dialog lists.
bool fileKindOfPath(const std::string& path, FileKind& kind);

struct DialogChoice {
    enum class Outcome { Chosen, Cancelled, Unavailable };
    Outcome outcome = Outcome::Cancelled;
    std::string path;  // set when Chosen

    static DialogChoice chosen(std::string p) { return {Outcome::Chosen, std::move(p)}; }
    static DialogChoice cancelled() { return {Outcome::Cancelled, {}}; }
    static DialogChoice unavailable() { return {Outcome::Unavailable, {}}; }
};

// Both calls block until the user has answered. A save dialog asks before overwriting and answers a
// path that already carries the default extension when the user typed none.
class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    virtual DialogChoice openLoad(FileKind kind) = 0;
    virtual DialogChoice openSave(FileKind kind) = 0;
};

}  // namespace tolvane
