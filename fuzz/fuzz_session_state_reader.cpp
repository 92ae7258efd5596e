// Fuzzes the session state reader: it must never read outside the buffer, and whatever it accepts is
// a state of loadable records that saves and loads again unchanged.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "params/SessionState.h"

namespace {

bool loadable(const tolvane::ProgramRecord& r) {
    if (!std::memchr(r.name, 0, tolvane::kMaxProgramNameLength + 1)) return false;
    for (float v : r.values) {
        if (!(v >= 0.0f && v <= 1.0f)) return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tolvane;
    static auto state = std::make_unique<SessionState>();
    static auto again = std::make_unique<SessionState>();
    if (readSessionState(data, size, *state) != FileResult::Ok) return 0;

    if (state->currentProgram < 0 || state->currentProgram >= kNumPrograms) __builtin_trap();
    if (!loadable(state->editBuffer)) __builtin_trap();
    for (float v : state->mapValues) {
        if (!(v >= 0.0f && v <= 1.0f)) __builtin_trap();
    }
    for (const ProgramRecord& r : state->programs) {
        if (!loadable(r)) __builtin_trap();
    }
    FileBytes saved = writeSessionState(*state);
    if (readSessionState(saved.data(), saved.size(), *again) != FileResult::Ok) __builtin_trap();
    if (writeSessionState(*again) != saved) __builtin_trap();
    return 0;
}
