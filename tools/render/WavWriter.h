// Stereo WAV writer: 16-bit or 24-bit PCM, or 32-bit IEEE float, at any sample rate.
//
// The file is written under a temporary name in the target's folder and renamed over the target by
// finish(), so an existing file is replaced only by a complete one. PCM samples are clipped to
// [-1, 1] and scaled by 2^(bits-1) - 1, rounding to the nearest step; float samples are stored as
// they are. A sample that is not a finite number is an error, not a sound: finish() then refuses the
// file, naming how many there were and when the first came, and the target stays as it was.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace tolvane {

enum class WavFormat { Pcm16, Pcm24, Float32 };

class WavWriter {
public:
    WavWriter() = default;
    ~WavWriter();  // an unfinished file is removed
    WavWriter(const WavWriter&) = delete;
    WavWriter& operator=(const WavWriter&) = delete;

    bool open(const std::string& path, int sampleRate, WavFormat format, std::string& error);
    bool write(const float* left, const float* right, std::size_t frames, std::string& error);
    // Completes the header, closes the file and renames it over the target.
    bool finish(std::string& error);

    std::uint64_t framesWritten() const { return frames_; }
    static int bytesPerSample(WavFormat format);

private:
    void abandon();
    bool writeHeader(std::string& error);

    std::FILE* file_ = nullptr;
    std::string path_;
    std::string tempPath_;
    int sampleRate_ = 0;
    WavFormat format_ = WavFormat::Pcm24;
    std::uint64_t frames_ = 0;
    std::uint64_t nonFinite_ = 0;       // samples that were not finite numbers
    std::uint64_t firstNonFinite_ = 0;  // the frame of the first one
    std::vector<std::uint8_t> buffer_;
};

}  // namespace tolvane
