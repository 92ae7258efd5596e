#include "params/ProgramFiles.h"

#include <cstring>
#include <memory>

#include "params/Version1Program.h"

namespace tolvane {
namespace {

constexpr char kProgramMagic[16] = "Tolvane program";
constexpr char kBankMagic[16] = "Tolvane bank   ";
constexpr char kControllerMapMagic[16] = "Tolvane ctl.map";
constexpr std::uint32_t kWrittenVersionWord = 0x00020000;
constexpr std::size_t kNameSize = sizeof(ProgramRecord::name);

std::uint32_t readU32(const std::uint8_t* p) { return readBigEndianU32(p); }
float readFloat(const std::uint8_t* p) { return readBigEndianFloat(p); }
void appendU32(FileBytes& out, std::uint32_t v) { appendBigEndianU32(out, v); }
void appendFloat(FileBytes& out, float f) { appendBigEndianFloat(out, f); }

// NaN fails both comparisons and is refused with everything else outside the range.
bool inUnitRange(float v) { return v >= 0.0f && v <= 1.0f; }

float limitToUnitRange(float v) {
    if (!(v >= 0.0f)) return 0.0f;
    return v > 1.0f ? 1.0f : v;
}

// Checks the header and answers the format version (1 or 2) through `version`. The magic and the count
// are checked before the version.
FileResult readHeader(const std::uint8_t* data, std::size_t size, const char (&magic)[16],
                      std::uint32_t count, bool acceptVersion1, int& version) {
    if (size < kFileHeaderSize) return FileResult::CannotLoad;
    if (std::memcmp(data, magic, sizeof magic) != 0 || readU32(data + 20) != count) {
        return FileResult::InvalidFormat;
    }
    version = static_cast<int>(readU32(data + 16) >> 16);
    if (version == 2 || (version == 1 && acceptVersion1)) return FileResult::Ok;
    return FileResult::UnknownVersion;
}

// The name field as loaded: the text up to its first zero byte, which must come within the first 25
// bytes, and zeros after it whatever the file held there.
bool readName(const std::uint8_t* p, char (&name)[32]) {
    const void* end = std::memchr(p, 0, kMaxLoadableNameLength + 1);
    if (!end) return false;
    std::size_t length = static_cast<std::size_t>(static_cast<const std::uint8_t*>(end) - p);
    std::memset(name, 0, sizeof name);
    std::memcpy(name, p, length);
    return true;
}

template <int N>
bool readValues(const std::uint8_t* p, float (&values)[N]) {
    for (int i = 0; i < N; ++i) {
        values[i] = readFloat(p + 4 * i);
        if (!inUnitRange(values[i])) return false;
    }
    return true;
}

// One record of the given version at p (the caller has checked that it is all there).
bool readRecord(const std::uint8_t* p, int version, ProgramRecord& out) {
    if (version == 2) {
        return readName(p, out.name) && readValues(p + kNameSize, out.values);
    }
    char name[32];
    float old[kNumVersion1Values];
    if (!readName(p, name) || !readValues(p + kNameSize, old)) return false;
    out = convertVersion1Program(name, old);
    return true;
}

std::size_t recordSize(int version) { return version == 2 ? kRecordSize : kVersion1RecordSize; }

void appendHeader(FileBytes& out, const char (&magic)[16], std::uint32_t count) {
    out.insert(out.end(), magic, magic + sizeof magic);
    appendU32(out, kWrittenVersionWord);
    appendU32(out, count);
}

void appendRecord(FileBytes& out, const ProgramRecord& record) {
    std::uint8_t name[kNameSize] = {};
    const void* end = std::memchr(record.name, 0, kMaxLoadableNameLength);
    std::size_t length = end ? static_cast<std::size_t>(static_cast<const char*>(end) - record.name)
                             : kMaxLoadableNameLength;
    std::memcpy(name, record.name, length);
    out.insert(out.end(), name, name + kNameSize);
    for (float v : record.values) appendFloat(out, limitToUnitRange(v));
}

}  // namespace

std::uint32_t readBigEndianU32(const std::uint8_t* p) {
    return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) |
           std::uint32_t{p[3]};
}

float readBigEndianFloat(const std::uint8_t* p) {
    std::uint32_t bits = readBigEndianU32(p);
    float f;
    std::memcpy(&f, &bits, sizeof f);
    return f;
}

void appendBigEndianU32(FileBytes& out, std::uint32_t v) {
    out.push_back(static_cast<std::uint8_t>(v >> 24));
    out.push_back(static_cast<std::uint8_t>(v >> 16));
    out.push_back(static_cast<std::uint8_t>(v >> 8));
    out.push_back(static_cast<std::uint8_t>(v));
}

void appendBigEndianFloat(FileBytes& out, float f) {
    std::uint32_t bits;
    std::memcpy(&bits, &f, sizeof bits);
    appendBigEndianU32(out, bits);
}

bool readProgramRecord(const std::uint8_t* p, ProgramRecord& out) {
    ProgramRecord record;
    if (!readRecord(p, 2, record)) return false;
    out = record;
    return true;
}

void appendProgramRecord(FileBytes& out, const ProgramRecord& record) { appendRecord(out, record); }

FileResult readProgramFile(const std::uint8_t* data, std::size_t size, ProgramRecord& out) {
    int version = 0;
    FileResult header = readHeader(data, size, kProgramMagic, 1, true, version);
    if (header != FileResult::Ok) return header;
    if (size - kFileHeaderSize < recordSize(version)) return FileResult::CannotLoad;
    ProgramRecord record;
    if (!readRecord(data + kFileHeaderSize, version, record)) return FileResult::CannotLoad;
    out = record;
    return FileResult::Ok;
}

FileResult readControllerMapFile(const std::uint8_t* data, std::size_t size, float (&out)[kNumMapValues]) {
    int version = 0;
    FileResult header = readHeader(data, size, kControllerMapMagic, 1, false, version);
    if (header != FileResult::Ok) return header;
    if (size - kFileHeaderSize < kControllerMapBodySize) return FileResult::CannotLoad;
    float values[kNumMapValues];
    if (!readValues(data + kFileHeaderSize, values)) return FileResult::CannotLoad;
    std::memcpy(out, values, sizeof values);
    return FileResult::Ok;
}

FileResult readBankFile(const std::uint8_t* data, std::size_t size, BankPrograms& out) {
    int version = 0;
    FileResult header = readHeader(data, size, kBankMagic, kProgramsPerBank, true, version);
    if (header != FileResult::Ok) return header;
    std::size_t stride = recordSize(version);
    if ((size - kFileHeaderSize) / stride < kProgramsPerBank) return FileResult::CannotLoad;
    auto bank = std::make_unique<BankPrograms>();
    for (int i = 0; i < kProgramsPerBank; ++i) {
        if (!readRecord(data + kFileHeaderSize + i * stride, version, bank->programs[i])) {
            return FileResult::CannotLoad;
        }
    }
    out = *bank;
    return FileResult::Ok;
}

FileBytes writeProgramFile(const ProgramRecord& record) {
    FileBytes out;
    out.reserve(kFileHeaderSize + kRecordSize);
    appendHeader(out, kProgramMagic, 1);
    appendRecord(out, record);
    return out;
}

FileBytes writeControllerMapFile(const float (&values)[kNumMapValues]) {
    FileBytes out;
    out.reserve(kFileHeaderSize + kControllerMapBodySize);
    appendHeader(out, kControllerMapMagic, 1);
    for (float v : values) appendFloat(out, limitToUnitRange(v));
    return out;
}

FileBytes writeBankFile(const BankPrograms& bank) {
    FileBytes out;
    out.reserve(kFileHeaderSize + kProgramsPerBank * kRecordSize);
    appendHeader(out, kBankMagic, kProgramsPerBank);
    for (const ProgramRecord& record : bank.programs) appendRecord(out, record);
    return out;
}

}  // namespace tolvane
