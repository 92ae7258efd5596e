#include "gui/BmpImage.h"

namespace tolvane {
namespace {

std::uint32_t readLE(const unsigned char* p, int bytes) {
    std::uint32_t v = 0;
    for (int i = bytes - 1; i >= 0; --i) v = (v << 8) | p[i];
    return v;
}

void writeLE(std::vector<unsigned char>& out, std::uint32_t v, int bytes) {
    for (int i = 0; i < bytes; ++i) out.push_back(static_cast<unsigned char>((v >> (8 * i)) & 0xFF));
}

}  // namespace

bool decodeBmp(const unsigned char* data, std::size_t size, BmpImage& out) {
    out = BmpImage{};
    if (!data || size < 54 || data[0] != 'B' || data[1] != 'M') return false;
    std::uint32_t pixelOffset = readLE(data + 10, 4);
    std::uint32_t headerSize = readLE(data + 14, 4);
    if (headerSize < 40) return false;
    std::int32_t width = static_cast<std::int32_t>(readLE(data + 18, 4));
    std::int32_t rawHeight = static_cast<std::int32_t>(readLE(data + 22, 4));
    std::uint32_t planes = readLE(data + 26, 2);
    std::uint32_t bits = readLE(data + 28, 2);
    std::uint32_t compression = readLE(data + 30, 4);
    if (planes != 1 || (bits != 24 && bits != 32) || compression != 0) return false;
    if (width <= 0 || rawHeight == 0 || width > 16384 || rawHeight > 16384 || rawHeight < -16384) return false;
    bool topDown = rawHeight < 0;
    int height = topDown ? -rawHeight : rawHeight;
    std::size_t bytesPerPixel = bits / 8;
    std::size_t stride = (static_cast<std::size_t>(width) * bytesPerPixel + 3) & ~static_cast<std::size_t>(3);
    if (pixelOffset > size || stride * static_cast<std::size_t>(height) > size - pixelOffset) return false;

    out.width = width;
    out.height = height;
    out.pixels.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        int fileRow = topDown ? y : height - 1 - y;
        const unsigned char* row = data + pixelOffset + stride * static_cast<std::size_t>(fileRow);
        for (int x = 0; x < width; ++x) {
            const unsigned char* p = row + static_cast<std::size_t>(x) * bytesPerPixel;
            out.pixels[static_cast<std::size_t>(y) * width + x] =
                (static_cast<std::uint32_t>(p[2]) << 16) | (static_cast<std::uint32_t>(p[1]) << 8) | p[0];
        }
    }
    return true;
}

std::vector<unsigned char> encodeBmp24(const BmpImage& image) {
    std::size_t stride = (static_cast<std::size_t>(image.width) * 3 + 3) & ~static_cast<std::size_t>(3);
    std::size_t pixelBytes = stride * static_cast<std::size_t>(image.height);
    std::vector<unsigned char> out;
    out.reserve(54 + pixelBytes);
    out.push_back('B');
    out.push_back('M');
    writeLE(out, static_cast<std::uint32_t>(54 + pixelBytes), 4);
    writeLE(out, 0, 4);
    writeLE(out, 54, 4);
    writeLE(out, 40, 4);
    writeLE(out, static_cast<std::uint32_t>(image.width), 4);
    writeLE(out, static_cast<std::uint32_t>(image.height), 4);
    writeLE(out, 1, 2);
    writeLE(out, 24, 2);
    writeLE(out, 0, 4);
    writeLE(out, static_cast<std::uint32_t>(pixelBytes), 4);
    writeLE(out, 2835, 4);  // 72 dpi
    writeLE(out, 2835, 4);
    writeLE(out, 0, 4);
    writeLE(out, 0, 4);
    for (int y = image.height - 1; y >= 0; --y) {
        std::size_t start = out.size();
        for (int x = 0; x < image.width; ++x) {
            std::uint32_t c = image.at(x, y);
            out.push_back(static_cast<unsigned char>(c & 0xFF));
            out.push_back(static_cast<unsigned char>((c >> 8) & 0xFF));
            out.push_back(static_cast<unsigned char>((c >> 16) & 0xFF));
        }
        while (out.size() - start < stride) out.push_back(0);
    }
    return out;
}

}  // namespace tolvane
