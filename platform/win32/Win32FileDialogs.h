// The file menu's open and save dialogs on Windows: GetOpenFileNameA and GetSaveFileNameA, owned by the
// editor window, with the kind's title, filters and default extension.
#pragma once

#include "params/FileDialogs.h"

namespace tolvane {

class Win32FileDialogs : public FileDialogs {
public:
    DialogChoice openLoad(FileKind kind) override;
    DialogChoice openSave(FileKind kind) override;
};

}  // namespace tolvane
