// The product keeps every text (program names, status lines, menu entries, file names shown) in
// Windows-1252, the 8-bit set the Win32 editor draws. Cairo draws UTF-8 only and stops drawing for good on
// a context that was handed anything else, so every text crosses into UTF-8 here, at the drawing boundary,
// and text typed on Linux comes back the other way.
//
// Bytes below 0x80 are ASCII and 0xA0-0xFF are the Latin-1 code points of the same number; 0x80-0x9F hold
// typographic marks and a few letters (the euro sign at 0x80, curly quotes, dashes, S and Z with caron). The
// five bytes that set leaves unassigned (0x81, 0x8D, 0x8F, 0x90, 0x9D) stand for the C1 control of the same
// number, as Windows converts them, so that every byte has a character and a round trip keeps every byte.
#pragma once

#include <string>

namespace tolvane {

// The Unicode code point of a Windows-1252 byte.
char32_t windows1252CodePoint(unsigned char byte);

// The Windows-1252 byte of a code point, or 0 when the set has no such character (and for U+0000).
unsigned char windows1252FromCodePoint(char32_t codePoint);

// A zero-terminated Windows-1252 text as UTF-8.
std::string windows1252ToUtf8(const char* text);

// UTF-8 text as Windows-1252: characters the set lacks and malformed sequences are left out.
std::string utf8ToWindows1252(const std::string& text);

}  // namespace tolvane
