#include "tools/render/WavWriter.h"

#include <cerrno>
#include <cmath>
#include <cstring>

#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tolvane {

namespace {

constexpr int kChannels = 2;
constexpr std::uint16_t kFormatPcm = 1;
constexpr std::uint16_t kFormatIeeeFloat = 3;

void put16(std::vector<std::uint8_t>& out, std::uint32_t v) {
    out.push_back(static_cast<std::uint8_t>(v));
    out.push_back(static_cast<std::uint8_t>(v >> 8));
}

void put32(std::vector<std::uint8_t>& out, std::uint32_t v) {
    put16(out, v & 0xFFFF);
    put16(out, v >> 16);
}

void putTag(std::vector<std::uint8_t>& out, const char* tag) { out.insert(out.end(), tag, tag + 4); }

// Clip to [-1, 1] and scale by fullScale, rounding to the nearest step; values that are not finite become 0.
std::int32_t toPcm(float sample, float fullScale) {
    if (!std::isfinite(sample)) return 0;
    const float clipped = sample > 1.0f ? 1.0f : (sample < -1.0f ? -1.0f : sample);
    return static_cast<std::int32_t>(std::lround(clipped * fullScale));
}

std::string systemError() { return std::strerror(errno); }

}  // namespace

int WavWriter::bytesPerSample(WavFormat format) {
    switch (format) {
        case WavFormat::Pcm16: return 2;
        case WavFormat::Pcm24: return 3;
        case WavFormat::Float32: return 4;
    }
    return 4;
}

WavWriter::~WavWriter() { abandon(); }

void WavWriter::abandon() {
    if (file_) {
        std::fclose(file_);
        file_ = nullptr;
        ::unlink(tempPath_.c_str());
    }
}

bool WavWriter::open(const std::string& path, int sampleRate, WavFormat format, std::string& error) {
    abandon();
    if (sampleRate <= 0) {
        error = "invalid sample rate " + std::to_string(sampleRate);
        return false;
    }
    path_ = path;
    sampleRate_ = sampleRate;
    format_ = format;
    frames_ = 0;
    nonFinite_ = 0;

    // A unique temporary name next to the target, so that the final rename stays on one file system.
    std::vector<char> pattern(path.begin(), path.end());
    const char suffix[] = ".partXXXXXX";
    pattern.insert(pattern.end(), suffix, suffix + sizeof suffix);
    const int fd = ::mkstemp(pattern.data());
    if (fd < 0) {
        error = "cannot write " + path + ": " + systemError();
        return false;
    }
    tempPath_ = pattern.data();
    ::fchmod(fd, 0644);
    file_ = ::fdopen(fd, "wb");
    if (!file_) {
        error = "cannot write " + path + ": " + systemError();
        ::close(fd);
        ::unlink(tempPath_.c_str());
        return false;
    }
    // The header is written now with zero sizes and again with the real sizes by finish().
    if (!writeHeader(error)) {
        abandon();
        return false;
    }
    return true;
}

bool WavWriter::writeHeader(std::string& error) {
    const int sampleBytes = bytesPerSample(format_);
    const bool isFloat = format_ == WavFormat::Float32;
    const std::uint32_t blockAlign = kChannels * sampleBytes;
    const std::uint64_t dataBytes = frames_ * blockAlign;
    // fmt chunk: 16 bytes for PCM; 18 (with an empty extension) plus a fact chunk for float.
    const std::uint32_t fmtBytes = isFloat ? 18 : 16;
    const std::uint32_t factBytes = isFloat ? 8 + 4 : 0;
    const std::uint64_t riffBytes = 4 + (8 + fmtBytes) + factBytes + (8 + dataBytes);

    std::vector<std::uint8_t> header;
    putTag(header, "RIFF");
    put32(header, static_cast<std::uint32_t>(riffBytes));
    putTag(header, "WAVE");
    putTag(header, "fmt ");
    put32(header, fmtBytes);
    put16(header, isFloat ? kFormatIeeeFloat : kFormatPcm);
    put16(header, kChannels);
    put32(header, static_cast<std::uint32_t>(sampleRate_));
    put32(header, static_cast<std::uint32_t>(sampleRate_) * blockAlign);
    put16(header, blockAlign);
    put16(header, sampleBytes * 8);
    if (isFloat) {
        put16(header, 0);  // no extension bytes
        putTag(header, "fact");
        put32(header, 4);
        put32(header, static_cast<std::uint32_t>(frames_));
    }
    putTag(header, "data");
    put32(header, static_cast<std::uint32_t>(dataBytes));

    if (std::fseek(file_, 0, SEEK_SET) != 0 || std::fwrite(header.data(), 1, header.size(), file_) != header.size()) {
        error = "cannot write " + path_ + ": " + systemError();
        return false;
    }
    return true;
}

bool WavWriter::write(const float* left, const float* right, std::size_t frames, std::string& error) {
    if (!file_) {
        error = "the WAV file is not open";
        return false;
    }
    const int sampleBytes = bytesPerSample(format_);
    // RIFF sizes are 32-bit: keep the whole file below 4 GiB.
    const std::uint64_t limit = (0xFFFFFFFFull - 64) / (kChannels * sampleBytes);
    if (frames_ + frames > limit) {
        error = "the WAV file would exceed 4 GiB";
        return false;
    }
    buffer_.resize(frames * kChannels * sampleBytes);
    std::uint8_t* out = buffer_.data();
    for (std::size_t i = 0; i < frames; ++i) {
        for (const float sample : {left[i], right[i]}) {
            if (!std::isfinite(sample) && nonFinite_++ == 0) firstNonFinite_ = frames_ + i;
            switch (format_) {
                case WavFormat::Pcm16: {
                    const std::uint32_t v = static_cast<std::uint32_t>(toPcm(sample, 32767.0f));
                    *out++ = static_cast<std::uint8_t>(v);
                    *out++ = static_cast<std::uint8_t>(v >> 8);
                    break;
                }
                case WavFormat::Pcm24: {
                    const std::uint32_t v = static_cast<std::uint32_t>(toPcm(sample, 8388607.0f));
                    *out++ = static_cast<std::uint8_t>(v);
                    *out++ = static_cast<std::uint8_t>(v >> 8);
                    *out++ = static_cast<std::uint8_t>(v >> 16);
                    break;
                }
                case WavFormat::Float32: {
                    const float finite = std::isfinite(sample) ? sample : 0.0f;
                    std::uint32_t v;
                    std::memcpy(&v, &finite, sizeof v);
                    *out++ = static_cast<std::uint8_t>(v);
                    *out++ = static_cast<std::uint8_t>(v >> 8);
                    *out++ = static_cast<std::uint8_t>(v >> 16);
                    *out++ = static_cast<std::uint8_t>(v >> 24);
                    break;
                }
            }
        }
    }
    if (std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size()) {
        error = "cannot write " + path_ + ": " + systemError();
        abandon();
        return false;
    }
    frames_ += frames;
    return true;
}

bool WavWriter::finish(std::string& error) {
    if (!file_) {
        error = "the WAV file is not open";
        return false;
    }
    if (nonFinite_ > 0) {
        char detail[160];
        std::snprintf(detail, sizeof detail, "%llu samples are not finite numbers, the first at %.6f s (frame %llu)",
                      static_cast<unsigned long long>(nonFinite_),
                      static_cast<double>(firstNonFinite_) / static_cast<double>(sampleRate_),
                      static_cast<unsigned long long>(firstNonFinite_));
        error = "the rendering is broken: " + std::string(detail) + "; " + path_ + " was not written";
        abandon();
        return false;
    }
    if (!writeHeader(error)) {
        abandon();
        return false;
    }
    const bool flushed = std::fflush(file_) == 0;
    const bool closed = std::fclose(file_) == 0;
    file_ = nullptr;
    if (!flushed || !closed) {
        error = "cannot write " + path_ + ": " + systemError();
        ::unlink(tempPath_.c_str());
        return false;
    }
    if (std::rename(tempPath_.c_str(), path_.c_str()) != 0) {
        error = "cannot replace " + path_ + ": " + systemError();
        ::unlink(tempPath_.c_str());
        return false;
    }
    return true;
}

}  // namespace tolvane
