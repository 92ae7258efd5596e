// File dialogs on Linux through the desktop's own dialog programs: zenity when it is on PATH, else
// kdialog. The program runs as a child process; the dialog blocks the calling thread until the user
// answers. The chosen path comes back on the child's standard output; a non-zero exit is a cancel.
#pragma once

#include <string>
#include <vector>

#include "params/FileDialogs.h"

namespace tolvane {

class ZenityFileDialogs : public FileDialogs {
public:
    DialogChoice openLoad(FileKind kind) override;
    DialogChoice openSave(FileKind kind) override;

    // The full path of an executable file called name in one of PATH's folders, or empty.
    static std::string findInPath(const std::string& name);

    // The command lines used for each program (argument 0 is the program's name).
    static std::vector<std::string> zenityArguments(FileKind kind, bool save);
    static std::vector<std::string> kdialogArguments(FileKind kind, bool save);

private:
    DialogChoice ask(FileKind kind, bool save);
};

}  // namespace tolvane
