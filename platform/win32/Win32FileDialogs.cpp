#include "platform/win32/Win32FileDialogs.h"

#include <windows.h>
#include <commdlg.h>

#include <string>

#include "platform/win32/Win32Platform.h"

namespace tolvane {
namespace {

constexpr DWORD kFileNameLength = 1024;

// "description\0pattern\0...\0\0"
std::string filterList(const FileDialogTexts& texts) {
    std::string list;
    for (int i = 0; i < texts.filterCount; ++i) {
        list += texts.filters[i].description;
        list += '\0';
        list += texts.filters[i].pattern;
        list += '\0';
    }
    list += '\0';
    return list;
}

DialogChoice run(FileKind kind, bool save) {
    const FileDialogTexts& texts = fileDialogTexts(kind);
    const std::string filters = filterList(texts);
    char name[kFileNameLength] = {};
    OPENFILENAMEA dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = static_cast<HWND>(activeEditorWindow());
    dialog.lpstrFilter = filters.c_str();
    dialog.nFilterIndex = 1;
    dialog.lpstrFile = name;
    dialog.nMaxFile = kFileNameLength;
    dialog.lpstrTitle = save ? texts.saveTitle : texts.loadTitle;
    dialog.lpstrDefExt = texts.defaultExtension;
    dialog.Flags = save ? (OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_OVERWRITEPROMPT)
                        : (OFN_HIDEREADONLY | OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST);
    const BOOL chosen = save ? GetSaveFileNameA(&dialog) : GetOpenFileNameA(&dialog);
    if (chosen && name[0]) return DialogChoice::chosen(save ? withDefaultExtension(name, kind) : std::string(name));
    // Cancelling leaves no error code; anything else means the dialog could not be shown.
    return CommDlgExtendedError() == 0 ? DialogChoice::cancelled() : DialogChoice::unavailable();
}

}  // namespace

DialogChoice Win32FileDialogs::openLoad(FileKind kind) { return run(kind, false); }

DialogChoice Win32FileDialogs::openSave(FileKind kind) { return run(kind, true); }

}  // namespace tolvane
