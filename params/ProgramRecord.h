// A program: a name and the normalised values of parameters 0..143.
// The same 608-byte layout is used in the factory bank and (big-endian) in files.
#pragma once

#include <cstddef>
#include <cstring>

#include "params/ParameterIds.h"

namespace tolvane {

// The longest program name, in characters, everywhere a name lives: the editor's name field, the host's
// program names, the records in the plug-in's bank, program and bank files, and the session state.
// The 32-byte name field always keeps a zero after it.
constexpr int kMaxProgramNameLength = 24;

struct ProgramRecord {
    char name[32];                       // zero-terminated within kMaxProgramNameLength + 1 bytes, zero padded
    float values[kNumProgramValues];     // 0.0 .. 1.0

    // Stores text cut to kMaxProgramNameLength characters.
    void setName(const char* text) {
        std::memset(name, 0, sizeof(name));
        for (int i = 0; text && i < kMaxProgramNameLength && text[i]; ++i) name[i] = text[i];
    }
};

static_assert(sizeof(ProgramRecord) == 608, "ProgramRecord is 608 bytes");
static_assert(offsetof(ProgramRecord, values) == 32, "values follow the 32-byte name");

}  // namespace tolvane
