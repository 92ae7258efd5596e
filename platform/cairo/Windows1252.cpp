#include "platform/cairo/Windows1252.h"

namespace tolvane {
namespace {

// 0x80-0x9F; the unassigned bytes map to the C1 control of their own number.
constexpr char32_t kHighControls[32] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,  // 0x80
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,  // 0x88
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,  // 0x90
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,  // 0x98
};

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        // Every character of the set lies below U+10000.
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

}  // namespace

char32_t windows1252CodePoint(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? kHighControls[byte - 0x80] : static_cast<char32_t>(byte);
}

unsigned char windows1252FromCodePoint(char32_t codePoint) {
    if (codePoint < 0x80 || (codePoint >= 0xA0 && codePoint <= 0xFF)) return static_cast<unsigned char>(codePoint);
    for (int i = 0; i < 32; ++i)
        if (kHighControls[i] == codePoint) return static_cast<unsigned char>(0x80 + i);
    return 0;
}

std::string windows1252ToUtf8(const char* text) {
    std::string out;
    if (!text) return out;
    for (const char* p = text; *p; ++p) appendUtf8(out, windows1252CodePoint(static_cast<unsigned char>(*p)));
    return out;
}

std::string utf8ToWindows1252(const std::string& text) {
    std::string out;
    std::size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        int length = lead < 0x80 ? 1 : (lead >> 5) == 0x6 ? 2 : (lead >> 4) == 0xE ? 3 : (lead >> 3) == 0x1E ? 4 : 0;
        if (length == 0 || i + static_cast<std::size_t>(length) > text.size()) {
            ++i;  // a stray continuation byte, an invalid lead or a cut sequence
            continue;
        }
        char32_t c = length == 1 ? lead : lead & (0x7F >> length);
        bool wellFormed = true;
        for (int k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]);
            if ((next & 0xC0) != 0x80) {
                wellFormed = false;
                break;
            }
            c = (c << 6) | (next & 0x3F);
        }
        constexpr char32_t kShortest[5] = {0, 0, 0x80, 0x800, 0x10000};
        if (!wellFormed || c < kShortest[length]) {
            ++i;  // overlong forms are malformed too
            continue;
        }
        i += static_cast<std::size_t>(length);
        if (const unsigned char byte = windows1252FromCodePoint(c)) out += static_cast<char>(byte);
    }
    return out;
}

}  // namespace tolvane
