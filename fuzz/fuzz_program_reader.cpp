// Fuzzes the program file reader: it must never read outside the buffer, and whatever it accepts is a
// loadable record that saves and loads again unchanged.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "params/ProgramFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tolvane;
    ProgramRecord record;
    if (readProgramFile(data, size, record) != FileResult::Ok) return 0;

    if (!std::memchr(record.name, 0, kMaxLoadableNameLength + 1)) __builtin_trap();
    for (float v : record.values) {
        if (!(v >= 0.0f && v <= 1.0f)) __builtin_trap();
    }
    FileBytes saved = writeProgramFile(record);
    ProgramRecord again;
    if (readProgramFile(saved.data(), saved.size(), again) != FileResult::Ok) __builtin_trap();
    if (std::memcmp(&again, &record, sizeof record) != 0) __builtin_trap();
    return 0;
}
