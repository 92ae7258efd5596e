// Fuzzes the controller-map file reader: it must never read outside the buffer, and whatever it
// accepts saves and loads again unchanged.
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "params/ProgramFiles.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tolvane;
    float values[kNumMapValues];
    if (readControllerMapFile(data, size, values) != FileResult::Ok) return 0;

    for (float v : values) {
        if (!(v >= 0.0f && v <= 1.0f)) __builtin_trap();
    }
    FileBytes saved = writeControllerMapFile(values);
    float again[kNumMapValues];
    if (readControllerMapFile(saved.data(), saved.size(), again) != FileResult::Ok) __builtin_trap();
    if (std::memcmp(again, values, sizeof values) != 0) __builtin_trap();
    return 0;
}
