#include "gui/BmpImage.h"

#include <gtest/gtest.h>

namespace tolvane {
namespace {

TEST(BmpImage, EncodeDecodeRoundTripKeepsPixelsAndOrientation) {
    BmpImage image;
    image.width = 5;  // odd width: rows need padding
    image.height = 3;
    for (int y = 0; y < 3; ++y)
        for (int x = 0; x < 5; ++x) image.pixels.push_back(static_cast<std::uint32_t>((x * 40) << 16 | (y * 90) << 8 | 7));
    std::vector<unsigned char> file = encodeBmp24(image);
    ASSERT_EQ(file.size(), 54u + 16u * 3u);
    BmpImage back;
    ASSERT_TRUE(decodeBmp(file.data(), file.size(), back));
    EXPECT_EQ(back.width, 5);
    EXPECT_EQ(back.height, 3);
    EXPECT_EQ(back.pixels, image.pixels);
}

TEST(BmpImage, RejectsTruncatedAndUnsupportedFiles) {
    BmpImage image;
    image.width = 4;
    image.height = 4;
    image.pixels.assign(16, 0x123456);
    std::vector<unsigned char> file = encodeBmp24(image);
    BmpImage out;
    EXPECT_FALSE(decodeBmp(file.data(), file.size() - 1, out));
    EXPECT_TRUE(out.pixels.empty());
    std::vector<unsigned char> rle = file;
    rle[30] = 1;  // compressed
    EXPECT_FALSE(decodeBmp(rle.data(), rle.size(), out));
    EXPECT_FALSE(decodeBmp(nullptr, 0, out));
}

}  // namespace
}  // namespace tolvane
