// Replacing a file on Windows: the bytes go to a new file beside the target (created exclusively, so no
// other writer's file is ever touched), are flushed to the disk, and only then does MoveFileExA put it in
// the target's place. A failure removes the new file and leaves the target as it was.
#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdio>

#include "params/FileStorage.h"

namespace tolvane {
namespace {

bool writeAll(HANDLE file, const FileBytes& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const DWORD chunk = static_cast<DWORD>(std::min<std::size_t>(bytes.size() - done, 1u << 20));
        DWORD written = 0;
        if (!WriteFile(file, bytes.data() + done, chunk, &written, nullptr) || written == 0) return false;
        done += written;
    }
    return FlushFileBuffers(file) != 0;
}

}  // namespace

FileResult writeFileReplacing(const std::string& path, const FileBytes& bytes) {
    const std::size_t slash = path.find_last_of("\\/");
    const std::string folder = slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
    const std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    if (name.empty()) return FileResult::CannotSave;

    static std::atomic<unsigned> counter{0};
    std::string temporary;
    HANDLE file = INVALID_HANDLE_VALUE;
    for (unsigned attempt = 0; attempt < 8 && file == INVALID_HANDLE_VALUE; ++attempt) {
        char suffix[48];
        std::snprintf(suffix, sizeof suffix, ".tmp-%08lx%04x", static_cast<unsigned long>(GetTickCount()),
                      (counter.fetch_add(1) * 40503u + attempt) & 0xFFFFu);
        temporary = folder + "." + name + suffix;
        file = CreateFileA(temporary.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    if (file == INVALID_HANDLE_VALUE) return FileResult::CannotSave;

    const bool written = writeAll(file, bytes);
    const bool closed = CloseHandle(file) != 0;
    if (written && closed &&
        MoveFileExA(temporary.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return FileResult::Ok;
    DeleteFileA(temporary.c_str());
    return FileResult::CannotSave;
}

}  // namespace tolvane
