// Table-driven exponential, logarithm and note-to-frequency conversion.
// The value mappings use these so that results do not depend on the C library.
#pragma once

namespace tolvane {

// e^x for x in (-89, 89); 0 for x <= -89. Tables of e^i and e^(j/512) with linear interpolation.
float fastExp(float x);

// ln x for x > 0, from the float's exponent and a 512-entry table of log2(1 + k/512).
float fastLn(float x);

// Frequency in Hz of a fractional note number 0 <= n < 160 (note 69 = 440 Hz),
// resolved to hundredths of a semitone without interpolation.
float noteToHz(float n);

}  // namespace tolvane
