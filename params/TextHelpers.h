// Number-to-text helpers for parameter displays and status lines.
//
// Every helper writes a zero-terminated text into the caller's buffer and returns that buffer.
// None of them allocates, locks or calls a library transcendental function, so they may run on
// the audio thread (a mapped MIDI controller formats the status line while a block is rendered).
// Buffers must hold at least kNumberTextSize characters; the suffix helpers cut the result at
// kNumberTextSize - 1 characters.
#pragma once

namespace tolvane {

constexpr int kNumberTextSize = 64;

// Decimal digits of n, "-" in front when n < 0, "+" when n >= 0 and forceSign.
char* intToText(char* text, int n, bool forceSign = false);

// x rounded half up (in magnitude) to `decimals` places (0..15). At least one integer digit is
// written, so 0.004 with two decimals reads "0.00". When the scaled magnitude exceeds 1e8 the text
// is "+Huge!" or "-Huge!".
char* fixedToText(char* text, float x, int decimals, bool forceSign = false);

// x with as many decimals as fit in `width` characters, the sign counting as one character:
// width 6 gives "440.00", "0.0020", "22000", "+100.0".
char* floatToText(char* text, float x, int width, bool forceSign = false);

char* intWithSuffix(char* text, int n, const char* suffix, bool forceSign = false);
char* fixedWithSuffix(char* text, float x, int decimals, const char* suffix, bool forceSign = false);
char* floatWithSuffix(char* text, float x, int width, const char* suffix, bool forceSign = false);

// Fixed-width helpers of the plug-in base layer, for displays of at most 8 characters.

// "-" for negative values, the integer digits, and then the point and as many decimals as fit in
// 8 characters; " Huge!  " from a magnitude of 1e8 up (1e7 for negative values).
char* floatText8(char* text, float x);

// The integer right-aligned in 7 characters; " Huge!  " from 100000000 up.
char* integerText7(char* text, int n);

// Level as decibels through floatText8; "  -oo   " for levels of 0 or below.
char* decibelText(char* text, float level);

// Frequency of a period of `samples` samples (0 when the count is 0), through floatText8.
char* hzFromSamplesText(char* text, float samples, float sampleRate);

// Duration of `samples` samples in milliseconds, through floatText8.
char* msFromSamplesText(char* text, float samples, float sampleRate);

}  // namespace tolvane
