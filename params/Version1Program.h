// Conversion of version-1 programs (70 values, an older parameter layout) to the current 144 values.
#pragma once

#include "params/ProgramRecord.h"

namespace tolvane {

// old values: the 70 normalised values of a version-1 record, each 0.0 .. 1.0 (checked by the reader).
// The name field is copied as it is.
ProgramRecord convertVersion1Program(const char (&name)[32], const float (&old)[70]);

}  // namespace tolvane
