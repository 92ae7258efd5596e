// A program, bank or controller-map file applied through a host's parameter setter: a program's 144
// values, the chosen program's record of a bank (program 0's when none is chosen), or the 32 map values.
// The VST and the LV2 renderings use it with their own setters (parameters or control ports).
#pragma once

#include <cstdio>
#include <string>

#include "params/FileStorage.h"
#include "params/ProgramFiles.h"

namespace tolvane {

// set(index, value, error) sets one parameter and answers false, with the error, when it cannot.
template <typename Setter>
bool applyFileValues(const std::string& path, int program, Setter&& set, std::string& error) {
    FileBytes bytes;
    FileResult result = readWholeFile(path, bytes);
    if (result != FileResult::Ok) {
        error = path + ": " + fileResultSecondLine(result);
        return false;
    }
    auto setAll = [&](int first, const float* values, int count) {
        for (int i = 0; i < count; ++i)
            if (!set(first + i, values[i], error)) return false;
        return true;
    };
    ProgramRecord record;
    if (readProgramFile(bytes.data(), bytes.size(), record) == FileResult::Ok) {
        std::printf("Loaded program \"%.31s\" from %s\n", record.name, path.c_str());
        return setAll(0, record.values, kNumProgramValues);
    }
    BankPrograms bank;
    if (readBankFile(bytes.data(), bytes.size(), bank) == FileResult::Ok) {
        const ProgramRecord& chosen = bank.programs[(program < 0 ? 0 : program) % kProgramsPerBank];
        std::printf("Loaded program \"%.31s\" of the bank %s\n", chosen.name, path.c_str());
        return setAll(0, chosen.values, kNumProgramValues);
    }
    float maps[kNumMapValues];
    result = readControllerMapFile(bytes.data(), bytes.size(), maps);
    if (result == FileResult::Ok) {
        std::printf("Loaded controller maps from %s\n", path.c_str());
        return setAll(kFirstMapParameter, maps, kNumMapValues);
    }
    error = path + ": not a program, bank or controller-map file (" + fileResultSecondLine(result) + ")";
    return false;
}

}  // namespace tolvane
