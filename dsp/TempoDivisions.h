// Tempo divisions of the LFOs and of the effect delay, shared by the engine and the displays.
//
// A division is named by its length in whole notes (four beats). An LFO division with factor k runs
// k cycles per whole note; a delay division lasts its value / tempo seconds.
#pragma once

namespace tolvane {

constexpr int kNumLfoDivisions = 31;
constexpr int kNumDelayDivisions = 22;

// Names "16" (slowest) .. "1/64" (fastest); indices outside the table are clamped.
const char* lfoDivisionName(int index);
// Cycles per whole note.
float lfoDivisionFactor(int index);

// Names "1/64" (shortest) .. "2" (longest); indices outside the table are clamped.
const char* delayDivisionName(int index);
// Seconds at one beat per minute (240 for a whole note).
float delayDivisionValue(int index);

// The division a speed value selects: clamp(trunc(31 speed), 0, 30).
int lfoDivisionIndex(float speedValue);
// Rate in Hz of division `index` at `tempo` beats per minute: k tempo / 240.
float lfoTempoRate(int index, float tempo);

// The division a delay time value selects: clamp(trunc(22 x), 0, 21).
int delayDivisionIndex(float delayTimeValue);
// Length in seconds of division `index` at `tempo` beats per minute; 0 without a tempo.
float delayDivisionSeconds(int index, float tempo);

}  // namespace tolvane
