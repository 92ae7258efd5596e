// The factory bank: 512 constant programs, four banks of 128. Bank A opens with the designed
// sounds; every other slot holds the init program "InitProg".
#pragma once

#include "params/ProgramRecord.h"

namespace tolvane {

constexpr int kNumDesignedPrograms = 64;

// Record of host program `index` (0..511); indices outside are clamped.
const ProgramRecord& factoryProgram(int index);

}  // namespace tolvane
