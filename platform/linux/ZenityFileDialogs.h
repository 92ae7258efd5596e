// File dialogs on Linux through the desktop's own dialog programs: zenity when it is on PATH, else
// kdialog. The program runs as a child process and the calling thread goes on: the request is asked for
// the answer from later idle calls (the blocking pair waits for it). The chosen path comes back on the
// child's standard output; a non-zero exit is a cancel.
#pragma once

#include <string>
#include <vector>

#include "params/FileDialogs.h"

namespace tolvane {

class ZenityFileDialogs : public FileDialogs {
public:
    DialogChoice openLoad(FileKind kind) override;
    DialogChoice openSave(FileKind kind) override;
    std::unique_ptr<DialogRequest> startLoad(FileKind kind) override;
    std::unique_ptr<DialogRequest> startSave(FileKind kind) override;

    // The full path of an executable file called name in one of PATH's folders, or empty.
    static std::string findInPath(const std::string& name);

    // The command lines used for each program (argument 0 is the program's name).
    static std::vector<std::string> zenityArguments(FileKind kind, bool save);
    static std::vector<std::string> kdialogArguments(FileKind kind, bool save);

private:
    static std::unique_ptr<DialogRequest> start(FileKind kind, bool save);
    static DialogChoice wait(DialogRequest& request);
};

}  // namespace tolvane
