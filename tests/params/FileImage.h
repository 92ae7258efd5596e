// Builds file images byte by byte, independently of the writers under test.
#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace tolvane::testing {

struct FileImage {
    std::vector<std::uint8_t> bytes;

    FileImage& u32(std::uint32_t v) {
        for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<std::uint8_t>(v >> shift));
        return *this;
    }
    FileImage& f32(float f) {
        std::uint32_t bits;
        std::memcpy(&bits, &f, 4);
        return u32(bits);
    }
    // A text in a zero-padded field of fieldSize bytes (the text may fill it entirely).
    FileImage& field(const std::string& text, std::size_t fieldSize) {
        for (std::size_t i = 0; i < fieldSize; ++i) bytes.push_back(i < text.size() ? text[i] : 0);
        return *this;
    }
    FileImage& header(const char* magic, std::uint32_t versionWord, std::uint32_t count) {
        return field(magic, 15).field("", 1).u32(versionWord).u32(count);
    }
    FileImage& zeros(std::size_t n) {
        bytes.insert(bytes.end(), n, 0);
        return *this;
    }
};

// A value from 0 to 1 that differs for each (record, index) pair.
inline float sampleValue(int record, int index) {
    return static_cast<float>((record * 131 + index * 17) % 1000) / 999.0f;
}

}  // namespace tolvane::testing
