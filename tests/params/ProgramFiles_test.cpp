#include "params/ProgramFiles.h"

#include <cmath>
#include <limits>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "params/FileResult.h"
#include "tests/params/FileImage.h"

namespace tolvane {
namespace {

using testing::FileImage;
using testing::sampleValue;

const char* kProgram = "Tolvane program";
const char* kBank = "Tolvane bank   ";
const char* kMap = "Tolvane ctl.map";

enum class Kind { Program, Bank, Map };

// Reads the image with the reader of the kind; the outputs are discarded.
FileResult readAs(Kind kind, const std::vector<std::uint8_t>& b) {
    switch (kind) {
    case Kind::Program: {
        ProgramRecord r;
        return readProgramFile(b.data(), b.size(), r);
    }
    case Kind::Bank: {
        auto bank = std::make_unique<BankPrograms>();
        return readBankFile(b.data(), b.size(), *bank);
    }
    case Kind::Map: {
        float v[32];
        return readControllerMapFile(b.data(), b.size(), v);
    }
    }
    return FileResult::Ok;
}

FileImage& v2Record(FileImage& f, const std::string& name, int seed) {
    f.field(name, 32);
    for (int i = 0; i < 144; ++i) f.f32(sampleValue(seed, i));
    return f;
}

FileImage& v1Record(FileImage& f, const std::string& name, int seed) {
    f.field(name, 32);
    for (int i = 0; i < 70; ++i) f.f32(sampleValue(seed, i));
    return f.zeros(8);
}

// A complete, valid file of the kind with the given version word (version 1 where the kind has it).
FileImage validFile(Kind kind, std::uint32_t versionWord) {
    FileImage f;
    bool v1 = (versionWord >> 16) == 1;
    switch (kind) {
    case Kind::Program:
        f.header(kProgram, versionWord, 1);
        v1 ? v1Record(f, "Old Pad", 3) : v2Record(f, "Pad", 3);
        break;
    case Kind::Bank:
        f.header(kBank, versionWord, 128);
        for (int i = 0; i < 128; ++i) v1 ? v1Record(f, "B" + std::to_string(i), i) : v2Record(f, "B" + std::to_string(i), i);
        break;
    case Kind::Map:
        f.header(kMap, versionWord, 1);
        for (int i = 0; i < 32; ++i) f.f32(sampleValue(7, i));
        break;
    }
    return f;
}

std::string kindName(Kind k) { return k == Kind::Program ? "program" : k == Kind::Bank ? "bank" : "map"; }

TEST(FileReaders, HeaderChecksInOrderForEveryKind) {
    for (Kind kind : {Kind::Program, Kind::Bank, Kind::Map}) {
        SCOPED_TRACE(kindName(kind));
        const char* magic = kind == Kind::Program ? kProgram : kind == Kind::Bank ? kBank : kMap;
        std::uint32_t count = kind == Kind::Bank ? 128 : 1;
        FileImage valid = validFile(kind, 0x00020000);

        EXPECT_EQ(readAs(kind, valid.bytes), FileResult::Ok);
        EXPECT_EQ(readAs(kind, {}), FileResult::CannotLoad);
        EXPECT_EQ(readAs(kind, {valid.bytes.begin(), valid.bytes.begin() + 23}), FileResult::CannotLoad);

        // The magic is compared byte for byte, the terminating zero included.
        auto wrongMagic = valid.bytes;
        wrongMagic[8] ^= 0x20;
        EXPECT_EQ(readAs(kind, wrongMagic), FileResult::InvalidFormat);
        auto unterminated = valid.bytes;
        unterminated[15] = ' ';
        EXPECT_EQ(readAs(kind, unterminated), FileResult::InvalidFormat);

        for (std::uint32_t wrongCount : {count + 1, count << 24}) {
            FileImage f;
            f.header(magic, 0x00020000, wrongCount);
            f.bytes.insert(f.bytes.end(), valid.bytes.begin() + 24, valid.bytes.end());
            EXPECT_EQ(readAs(kind, f.bytes), FileResult::InvalidFormat) << "count " << wrongCount;
        }

        // Only the upper 16 bits of the version word count.
        struct { std::uint32_t word; bool accepted; } versions[] = {
            {0x00000000, false}, {0x00010000, kind != Kind::Map}, {0x00020000, true},
            {0x00030000, false}, {0x0002FFFF, true}, {0x01020000, false},
        };
        for (const auto& v : versions) {
            FileImage f = validFile(kind, v.word);
            EXPECT_EQ(readAs(kind, f.bytes), v.accepted ? FileResult::Ok : FileResult::UnknownVersion)
                << std::hex << "version word 0x" << v.word;
        }
    }
}

TEST(FileReaders, TruncatedBodiesCannotLoadButTrailingBytesAreIgnored) {
    struct { Kind kind; std::uint32_t version; std::size_t size; } cases[] = {
        {Kind::Program, 0x00020000, 24 + 608},
        {Kind::Program, 0x00010000, 24 + 320},
        {Kind::Bank, 0x00020000, 24 + 128 * 608},
        {Kind::Bank, 0x00010000, 24 + 128 * 320},
        {Kind::Map, 0x00020000, 24 + 128},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(kindName(c.kind) + " version " + std::to_string(c.version >> 16));
        FileImage f = validFile(c.kind, c.version);
        ASSERT_EQ(f.bytes.size(), c.size);
        EXPECT_EQ(readAs(c.kind, f.bytes), FileResult::Ok);
        EXPECT_EQ(readAs(c.kind, {f.bytes.begin(), f.bytes.end() - 1}), FileResult::CannotLoad);
        EXPECT_EQ(readAs(c.kind, {f.bytes.begin(), f.bytes.begin() + 24}), FileResult::CannotLoad);
        f.zeros(5);
        EXPECT_EQ(readAs(c.kind, f.bytes), FileResult::Ok);
    }
}

TEST(FileReaders, NameMustEndWithinTwentyFiveBytes) {
    for (std::uint32_t version : {0x00020000u, 0x00010000u}) {
        SCOPED_TRACE(version >> 16);
        auto program = [version](const std::string& name) {
            FileImage f;
            f.header(kProgram, version, 1);
            version == 0x00020000 ? v2Record(f, name, 1) : v1Record(f, name, 1);
            return f.bytes;
        };
        const auto ok = program(std::string(24, 'n'));
        ProgramRecord r;
        ASSERT_EQ(readProgramFile(ok.data(), ok.size(), r), FileResult::Ok);
        EXPECT_EQ(std::string(r.name), std::string(24, 'n'));
        EXPECT_EQ(readAs(Kind::Program, program(std::string(25, 'n'))), FileResult::CannotLoad);
        EXPECT_EQ(readAs(Kind::Program, program(std::string(32, 'n'))), FileResult::CannotLoad);
    }
}

TEST(FileReaders, ValuesMustLieFromZeroToOne) {
    const float justAbove = std::nextafter(1.0f, 2.0f);
    const float justBelow = std::nextafter(0.0f, -1.0f);
    const float nan = std::numeric_limits<float>::quiet_NaN();
    struct { float value; bool accepted; } values[] = {
        {0.0f, true}, {1.0f, true}, {justAbove, false}, {justBelow, false}, {nan, false},
    };
    // (kind, version word, byte offset of the value under test)
    struct { Kind kind; std::uint32_t version; std::size_t offset; } places[] = {
        {Kind::Program, 0x00020000, 24 + 32},                       // first value
        {Kind::Program, 0x00020000, 24 + 32 + 143 * 4},             // last value
        {Kind::Program, 0x00010000, 24 + 32 + 69 * 4},              // last old value
        {Kind::Map, 0x00020000, 24 + 31 * 4},                       // last map value
        {Kind::Bank, 0x00010000, 24 + 127 * 320 + 32 + 10 * 4},     // inside the last old record
    };
    for (const auto& place : places) {
        for (const auto& v : values) {
            FileImage f = validFile(place.kind, place.version);
            FileImage value;
            value.f32(v.value);
            std::memcpy(&f.bytes[place.offset], value.bytes.data(), 4);
            EXPECT_EQ(readAs(place.kind, f.bytes), v.accepted ? FileResult::Ok : FileResult::CannotLoad)
                << kindName(place.kind) << " offset " << place.offset << " value " << v.value;
        }
    }
    // The 8 unused bytes after an old record are not values.
    FileImage old = validFile(Kind::Program, 0x00010000);
    std::memset(&old.bytes[24 + 312], 0xFF, 8);
    EXPECT_EQ(readAs(Kind::Program, old.bytes), FileResult::Ok);
}

TEST(FileReaders, DecodeBigEndianValuesAndTheNameUpToItsZero) {
    FileImage f;
    f.header(kProgram, 0x00020000, 1).field("Glass", 32);
    for (int i = 0; i < 144; ++i) f.f32(i == 0 ? 0.75f : 0.1f);
    // Bytes after the name's zero are not part of the name.
    f.bytes[24 + 20] = 'x';

    ProgramRecord r;
    ASSERT_EQ(readProgramFile(f.bytes.data(), f.bytes.size(), r), FileResult::Ok);
    EXPECT_STREQ(r.name, "Glass");
    for (int i = 5; i < 32; ++i) EXPECT_EQ(r.name[i], 0) << "name byte " << i;
    EXPECT_EQ(r.values[0], 0.75f);
    EXPECT_EQ(r.values[143], 0.1f);
}

TEST(FileReaders, BankOfVersionOneRecordsIsConverted) {
    FileImage f;
    f.header(kBank, 0x00010000, 128);
    for (int i = 0; i < 128; ++i) {
        f.field("Old " + std::to_string(i), 32);
        for (int k = 0; k < 70; ++k) f.f32(k == 0 ? (i % 12 + 0.5f) / 12.0f : 0.5f);
        f.zeros(8);
    }
    auto bank = std::make_unique<BankPrograms>();
    ASSERT_EQ(readBankFile(f.bytes.data(), f.bytes.size(), *bank), FileResult::Ok);
    // Old waveform index q·4 + w becomes w·3 + q.
    for (int i : {0, 1, 4, 11, 127}) {
        int old = i % 12;
        int expected = (old % 4) * 3 + old / 4;
        EXPECT_EQ(std::string(bank->programs[i].name), "Old " + std::to_string(i));
        EXPECT_FLOAT_EQ(bank->programs[i].values[0], (expected + 0.5f) / 12.0f) << "record " << i;
        EXPECT_EQ(bank->programs[i].values[65], 1.0f);  // the effect is always on in old programs
    }
}

// The header layout itself; the readers, checked against independently built images above, check the rest
// of what the writers produce when the file commands save and load again.
TEST(FileWriters, WriteVersionTwoWithBigEndianHeader) {
    ProgramRecord r{};
    r.setName("Pad");
    r.values[0] = 0.75f;
    FileBytes b = writeProgramFile(r);
    ASSERT_EQ(b.size(), 24u + 608u);
    EXPECT_EQ(std::memcmp(b.data(), "Tolvane program\0\0\2\0\0\0\0\0\1Pad\0", 28), 0);
    const std::uint8_t threeQuarters[] = {0x3F, 0x40, 0x00, 0x00};
    EXPECT_EQ(std::memcmp(b.data() + 56, threeQuarters, 4), 0);
    auto bank = std::make_unique<BankPrograms>();
    EXPECT_EQ(std::memcmp(writeBankFile(*bank).data() + 16, "\0\2\0\0\0\0\0\x80", 8), 0);
}

TEST(FileWriters, WhatIsSavedAlwaysLoadsAgain) {
    // A 31-character name and values the reader would refuse are stored in loadable form.
    ProgramRecord r{};
    const char longName[] = "A name that is far too long!!!!";
    static_assert(sizeof longName == 32, "31 characters and the zero");
    std::memcpy(r.name, longName, sizeof longName);
    r.values[0] = 1.5f;
    r.values[1] = -0.25f;
    r.values[2] = std::numeric_limits<float>::quiet_NaN();
    r.values[3] = 0.5f;
    FileBytes b = writeProgramFile(r);
    ProgramRecord back;
    ASSERT_EQ(readProgramFile(b.data(), b.size(), back), FileResult::Ok);
    EXPECT_EQ(std::string(back.name), "A name that is far too l");
    EXPECT_EQ(back.values[0], 1.0f);
    EXPECT_EQ(back.values[1], 0.0f);
    EXPECT_EQ(back.values[2], 0.0f);
    EXPECT_EQ(back.values[3], 0.5f);
}

}  // namespace
}  // namespace tolvane
