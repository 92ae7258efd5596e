#include "params/FileDialogs.h"

#include <cctype>
#include <filesystem>

namespace tolvane {

std::string withDefaultExtension(const std::string& path, FileKind kind) {
    std::filesystem::path p(path);
    if (p.filename().empty() || p.has_extension()) return path;
    return path + "." + fileDialogTexts(kind).defaultExtension;
}

bool fileKindOfPath(const std::string& path, FileKind& kind) {
    const std::string extension = std::filesystem::path(path).extension().string();
    for (int k = 0; k < 3; ++k) {
        const FileDialogTexts& texts = kFileDialogTexts[k];
        for (int f = 0; f < texts.filterCount; ++f) {
            const std::string pattern = texts.filters[f].pattern;  // "*.prog"
            if (pattern == "*.*" || pattern.size() - 1 != extension.size()) continue;
            bool same = true;
            for (std::size_t i = 0; i < extension.size() && same; ++i)
                same = std::tolower(static_cast<unsigned char>(extension[i])) ==
                       std::tolower(static_cast<unsigned char>(pattern[i + 1]));
            if (same) {
                kind = static_cast<FileKind>(k);
                return true;
            }
        }
    }
    return false;
}

}  // namespace tolvane
