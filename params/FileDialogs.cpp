#include "params/FileDialogs.h"

#include <filesystem>

namespace tolvane {

std::string withDefaultExtension(const std::string& path, FileKind kind) {
    std::filesystem::path p(path);
    if (p.filename().empty() || p.has_extension()) return path;
    return path + "." + fileDialogTexts(kind).defaultExtension;
}

}  // namespace tolvane
