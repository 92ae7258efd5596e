#include "tools/render/WavWriter.h"

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace tolvane {
namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

const float kNaN = std::numeric_limits<float>::quiet_NaN();
const float kInf = std::numeric_limits<float>::infinity();

std::uint32_t le(const std::uint8_t* p, int bytes) {
    std::uint32_t v = 0;
    for (int i = bytes - 1; i >= 0; --i) v = (v << 8) | p[i];
    return v;
}

// Walks the chunk list of a RIFF/WAVE file and checks its header fields; answers the data chunk.
Bytes checkWave(const Bytes& file, std::uint16_t tag, std::uint32_t rate, int bits, std::uint32_t frames) {
    EXPECT_EQ(std::string(file.begin(), file.begin() + 4), "RIFF");
    EXPECT_EQ(le(&file[4], 4), file.size() - 8);
    EXPECT_EQ(std::string(file.begin() + 8, file.begin() + 12), "WAVE");
    const std::uint32_t blockAlign = 2 * bits / 8;
    bool sawFact = false;
    Bytes data;
    for (std::size_t pos = 12; pos + 8 <= file.size();) {
        const std::string id(file.begin() + pos, file.begin() + pos + 4);
        const std::uint32_t size = le(&file[pos + 4], 4);
        const std::uint8_t* body = &file[pos + 8];
        if (id == "fmt ") {
            EXPECT_EQ(size, tag == 3 ? 18u : 16u);
            EXPECT_EQ(le(body, 2), tag);
            EXPECT_EQ(le(body + 2, 2), 2u);
            EXPECT_EQ(le(body + 4, 4), rate);
            EXPECT_EQ(le(body + 8, 4), rate * blockAlign);
            EXPECT_EQ(le(body + 12, 2), blockAlign);
            EXPECT_EQ(le(body + 14, 2), static_cast<std::uint32_t>(bits));
        } else if (id == "fact") {
            sawFact = true;
            EXPECT_EQ(le(body, 4), frames);
        } else if (id == "data") {
            data.assign(body, body + size);
        }
        pos += 8 + size + (size & 1);
    }
    EXPECT_EQ(sawFact, tag == 3);  // float files carry the frame count
    EXPECT_EQ(data.size(), frames * blockAlign);
    return data;
}

class WavWriterTest : public ::testing::Test {
protected:
    // Writes the frames in two calls, so that the header must add both up.
    Bytes writeFile(WavFormat format, int rate, const std::vector<float>& left, const std::vector<float>& right) {
        WavWriter writer;
        std::string error;
        const std::size_t half = left.size() / 2;
        EXPECT_TRUE(writer.open(folder.file("out.wav"), rate, format, error)) << error;
        EXPECT_TRUE(writer.write(left.data(), right.data(), half, error)) << error;
        EXPECT_TRUE(writer.write(left.data() + half, right.data() + half, left.size() - half, error)) << error;
        EXPECT_TRUE(writer.finish(error)) << error;
        return testing::fileContents(folder.file("out.wav"));
    }
    std::size_t files() const { return folder.entries().size(); }

    testing::TempFolder folder;
};

TEST_F(WavWriterTest, PcmSamplesAreRoundedClippedAndInterleaved) {
    const std::vector<float> left{0.0f, 0.5f, 1.0f, 1.5f, -1e30f, 0.25f};
    const std::vector<float> right{-0.5f, -1.0f, -3.0f, 1e-9f, 1e30f, -0.25f};
    // Full scale is 2^(bits-1) - 1. 0.5 of 32767 is 16383.5 and rounds away from zero; 0.25 of
    // 8388607 is 2097151.75. Beyond +-1 clips, however far.
    const struct {
        WavFormat format;
        int bits;
        std::vector<std::int32_t> expected;
    } cases[] = {
        {WavFormat::Pcm16, 16, {0, -16384, 16384, -32767, 32767, -32767, 32767, 0, -32767, 32767, 8192, -8192}},
        {WavFormat::Pcm24, 24,
         {0, -4194304, 4194304, -8388607, 8388607, -8388607, 8388607, 0, -8388607, 8388607, 2097152, -2097152}},
    };
    for (const auto& c : cases) {
        const Bytes data = checkWave(writeFile(c.format, 48000, left, right), 1, 48000, c.bits, 6);
        const int width = c.bits / 8;
        ASSERT_EQ(data.size(), c.expected.size() * width);
        for (std::size_t i = 0; i < c.expected.size(); ++i) {
            // Sign-extend the little-endian sample.
            const std::uint32_t raw = le(&data[i * width], width) << (32 - c.bits);
            EXPECT_EQ(static_cast<std::int32_t>(raw) >> (32 - c.bits), c.expected[i]) << c.bits << "-bit sample " << i;
        }
    }
}

TEST_F(WavWriterTest, FloatSamplesAreStoredUnclipped) {
    const std::vector<float> left{0.125f, 1.5f, -7.25f, 1e30f};
    const std::vector<float> right{-1e-20f, -1.0f, 0.3f, -3e38f};
    const Bytes data = checkWave(writeFile(WavFormat::Float32, 44100, left, right), 3, 44100, 32, 4);
    const float expected[] = {0.125f, -1e-20f, 1.5f, -1.0f, -7.25f, 0.3f, 1e30f, -3e38f};
    ASSERT_EQ(data.size(), sizeof expected);
    for (std::size_t i = 0; i < 8; ++i) {
        float value;
        std::memcpy(&value, &data[4 * i], sizeof value);
        EXPECT_EQ(value, expected[i]) << "sample " << i;
    }
}

TEST_F(WavWriterTest, TargetIsReplacedOnlyByACompleteFile) {
    const fs::path target = folder.path() / "keep.wav";
    { std::ofstream(target) << "old contents"; }
    const float silence[2] = {0.0f, 0.0f};
    std::string error;
    {
        WavWriter abandoned;
        ASSERT_TRUE(abandoned.open(target.string(), 44100, WavFormat::Pcm16, error)) << error;
        ASSERT_TRUE(abandoned.write(silence, silence, 2, error)) << error;
        EXPECT_EQ(files(), 2u);  // the target and the file being written
    }
    const Bytes kept = testing::fileContents(target.string());
    EXPECT_EQ(std::string(kept.begin(), kept.end()), "old contents");
    EXPECT_EQ(files(), 1u);

    const Bytes written = writeFile(WavFormat::Pcm16, 44100, {0.0f, 0.0f}, {0.0f, 0.0f});
    checkWave(written, 1, 44100, 16, 2);
    EXPECT_EQ(files(), 2u);  // keep.wav and out.wav, no leftovers

    WavWriter unwritable;
    const std::string missing = folder.file("no-folder/x.wav");
    EXPECT_FALSE(unwritable.open(missing, 44100, WavFormat::Pcm24, error));
    EXPECT_NE(error.find(missing), std::string::npos) << error;
}

// A rendering with non-finite samples is broken: no format can hold them, so the file is refused with
// their count and the time of the first, in every format, and an existing target stays as it was.
TEST_F(WavWriterTest, NonFiniteSamplesRefuseTheFileWithCountAndFirstTime) {
    const fs::path target = folder.path() / "keep.wav";
    std::vector<float> left(1000, 0.25f), right(1000, -0.25f);
    right[250] = kNaN;  // frame 250 at 1000 Hz: 0.25 s
    left[600] = kInf;
    right[600] = -kInf;
    left[999] = kNaN;
    for (WavFormat format : {WavFormat::Pcm16, WavFormat::Pcm24, WavFormat::Float32}) {
        { std::ofstream(target) << "old contents"; }
        WavWriter writer;
        std::string error;
        ASSERT_TRUE(writer.open(target.string(), 1000, format, error)) << error;
        ASSERT_TRUE(writer.write(left.data(), right.data(), 400, error)) << error;
        ASSERT_TRUE(writer.write(left.data() + 400, right.data() + 400, 600, error)) << error;
        EXPECT_FALSE(writer.finish(error));
        EXPECT_NE(error.find("4 samples are not finite"), std::string::npos) << error;
        EXPECT_NE(error.find("0.250000 s (frame 250)"), std::string::npos) << error;
        const Bytes kept = testing::fileContents(target.string());
        EXPECT_EQ(std::string(kept.begin(), kept.end()), "old contents");
        EXPECT_EQ(files(), 1u) << "no temporary file is left";
    }
}

}  // namespace
}  // namespace tolvane
