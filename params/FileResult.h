// Outcome of reading, writing or choosing a file, and the two status lines the user sees for it.
#pragma once

namespace tolvane {

enum class FileResult {
    Ok,
    CannotLoad,      // cannot be opened or read in full, or a record fails its checks
    InvalidFormat,   // wrong magic or record count
    UnknownVersion,  // a version this reader does not accept
    CannotSave,      // cannot be created, written or moved into place
    NoDialog,        // no file dialog is available on this system
    UnknownType,     // a dropped file whose extension names none of the file kinds
};

// First status line: "File I/O error" for every failure, empty for Ok.
const char* fileResultFirstLine(FileResult result);
// Second status line: the reason, empty for Ok.
const char* fileResultSecondLine(FileResult result);

}  // namespace tolvane
