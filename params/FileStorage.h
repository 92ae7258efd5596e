// Reading a whole file into memory and replacing a file without ever leaving it half written.
#pragma once

#include <cstddef>
#include <string>

#include "params/ProgramFiles.h"

namespace tolvane {

// Larger than any file this plug-in reads (a bank is under 80 kB); anything bigger is refused unread.
constexpr std::size_t kMaxFileBytes = 1 << 20;

// Reads the whole regular file at path. CannotLoad when it cannot be opened or read, or when it holds
// more than maxBytes; out is then left as it was.
FileResult readWholeFile(const std::string& path, FileBytes& out, std::size_t maxBytes = kMaxFileBytes);

// Writes bytes to a new temporary file in the directory of path, flushes and closes it, and only then
// renames it over path. On any failure the temporary file is removed, a file already at path keeps
// its old contents, and the answer is CannotSave.
FileResult writeFileReplacing(const std::string& path, const FileBytes& bytes);

}  // namespace tolvane
