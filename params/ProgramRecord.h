// A program: a name and the normalised values of parameters 0..143.
// The same 608-byte layout is used in the factory bank and (big-endian) in files.
#pragma once

#include <cstddef>
#include <cstring>

#include "params/ParameterIds.h"

namespace tolvane {

struct ProgramRecord {
    char name[32];                       // zero-terminated, zero padded
    float values[kNumProgramValues];     // 0.0 .. 1.0

    void setName(const char* text) {
        std::memset(name, 0, sizeof(name));
        for (std::size_t i = 0; text && i < sizeof(name) - 1 && text[i]; ++i) name[i] = text[i];
    }
};

static_assert(sizeof(ProgramRecord) == 608, "ProgramRecord is 608 bytes");
static_assert(offsetof(ProgramRecord, values) == 32, "values follow the 32-byte name");

}  // namespace tolvane
