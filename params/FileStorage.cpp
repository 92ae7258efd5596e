#include "params/FileStorage.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <system_error>

namespace tolvane {
namespace {

namespace fs = std::filesystem;

// Windows builds replace files with the system's own calls (platform/win32): its C runtime knows no
// exclusive-create mode.
#if !defined(_WIN32)
// A name nobody else is likely to use, hidden beside the target: ".name.tmp-<hex>".
fs::path temporaryPathFor(const fs::path& target, unsigned attempt) {
    static std::atomic<unsigned> counter{0};
    auto now = static_cast<unsigned long long>(std::chrono::steady_clock::now().time_since_epoch().count());
    unsigned long long tag = now * 2654435761ull + counter.fetch_add(1) * 40503ull + attempt;
    char suffix[32];
    std::snprintf(suffix, sizeof suffix, ".tmp-%llx", tag & 0xFFFFFFFFFFFFull);
    return target.parent_path() / ("." + target.filename().string() + suffix);
}

bool writeAll(std::FILE* file, const FileBytes& bytes) {
    if (!bytes.empty() && std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size()) return false;
    return std::fflush(file) == 0 && !std::ferror(file);
}
#endif

}  // namespace

FileResult readWholeFile(const std::string& path, FileBytes& out, std::size_t maxBytes) {
    std::error_code ec;
    if (!fs::is_regular_file(path, ec)) return FileResult::CannotLoad;
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (!file) return FileResult::CannotLoad;

    // Read up to one byte past the limit, so that a file that grew since it was checked is caught too.
    FileBytes bytes;
    std::uint8_t chunk[16384];
    bool failed = false;
    for (;;) {
        std::size_t n = std::fread(chunk, 1, sizeof chunk, file);
        bytes.insert(bytes.end(), chunk, chunk + n);
        if (bytes.size() > maxBytes) {
            failed = true;
            break;
        }
        if (n < sizeof chunk) {
            failed = std::ferror(file) != 0;
            break;
        }
    }
    std::fclose(file);
    if (failed) return FileResult::CannotLoad;
    out.swap(bytes);
    return FileResult::Ok;
}

#if !defined(_WIN32)
FileResult writeFileReplacing(const std::string& path, const FileBytes& bytes) {
    const fs::path target(path);
    if (target.filename().empty()) return FileResult::CannotSave;

    // "x": never open a file that is already there, in case another writer picked the same name.
    fs::path temporary;
    std::FILE* file = nullptr;
    for (unsigned attempt = 0; attempt < 8 && !file; ++attempt) {
        temporary = temporaryPathFor(target, attempt);
        file = std::fopen(temporary.string().c_str(), "wbx");
    }
    if (!file) return FileResult::CannotSave;

    bool written = writeAll(file, bytes);
    bool closed = std::fclose(file) == 0;
    std::error_code ec;
    if (written && closed) {
        fs::rename(temporary, target, ec);
        if (!ec) return FileResult::Ok;
    }
    fs::remove(temporary, ec);
    return FileResult::CannotSave;
}

#endif

}  // namespace tolvane
