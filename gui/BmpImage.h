// Decoding of uncompressed Windows bitmap files (24- and 32-bit) into 0x00RRGGBB pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tolvane {

struct BmpImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;  // 0x00RRGGBB, rows top to bottom

    std::uint32_t at(int x, int y) const { return pixels[static_cast<std::size_t>(y) * width + x]; }
};

// Decodes a BI_RGB bitmap of 24 or 32 bits per pixel, bottom-up or top-down.
// Returns false (and leaves out empty) for anything else or for a truncated file.
bool decodeBmp(const unsigned char* data, std::size_t size, BmpImage& out);

// Encodes a 24-bit bottom-up BI_RGB bitmap file.
std::vector<unsigned char> encodeBmp24(const BmpImage& image);

}  // namespace tolvane
