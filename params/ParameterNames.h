// Long names (status line) and short names (host, at most 8 characters) of the 176 parameters.
#pragma once

namespace tolvane {

// Texts for indices 0..kNumParameters-1; other indices get an empty text.
const char* parameterLongName(int index);
const char* parameterShortName(int index);

}  // namespace tolvane
