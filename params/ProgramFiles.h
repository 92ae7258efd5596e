// Program, bank and controller-map files: pure readers over a byte buffer and writers to a byte vector.
//
// Every file starts with a 24-byte header: a 16-byte magic text including its terminating zero, a version
// word whose upper 16 bits are the format version, and a record count. All numbers, floats included, are
// big-endian. The bodies:
//   program (.prog, version 2)    one 608-byte record: 32-byte name, 144 values
//   program (.prg, version 1)     one 320-byte record: 32-byte name, 70 old values, 8 unused bytes
//   controller map (.cmap, v2)    32 values: 16 map controls, then 16 map targets
//   bank (.bank v2 / .bnk v1)     128 records in the record format of the header's version
// A record is accepted when its name has a zero byte within its first 25 bytes and every value lies
// from 0.0 to 1.0. Version-1 records are converted to the current layout after they pass their checks.
//
// A reader checks the whole buffer before it writes anything: on failure its output is untouched.
// Bytes after the body are not examined. Writers always write version 2.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "params/FileResult.h"
#include "params/ParameterIds.h"
#include "params/ProgramRecord.h"
#include "params/Version1Program.h"

namespace tolvane {

using FileBytes = std::vector<std::uint8_t>;

constexpr std::size_t kFileHeaderSize = 24;
constexpr std::size_t kRecordSize = sizeof(ProgramRecord);  // 608
constexpr std::size_t kVersion1RecordSize = 320;
constexpr std::size_t kControllerMapBodySize = 4 * kNumMapValues;  // 128
// A name must end within this many characters to load (the zero byte may be the 25th byte).
constexpr int kMaxLoadableNameLength = kMaxProgramNameLength;

// The 128 programs of one bank, as a loaded or saved bank file holds them.
struct BankPrograms {
    ProgramRecord programs[kProgramsPerBank];
};

FileResult readProgramFile(const std::uint8_t* data, std::size_t size, ProgramRecord& out);
FileResult readControllerMapFile(const std::uint8_t* data, std::size_t size, float (&out)[kNumMapValues]);
FileResult readBankFile(const std::uint8_t* data, std::size_t size, BankPrograms& out);

// The writers store what the readers accept: names are cut to 24 characters and values limited to
// 0.0 .. 1.0 (anything that is not a number becomes 0.0), so a saved file always loads again.
FileBytes writeProgramFile(const ProgramRecord& record);
FileBytes writeControllerMapFile(const float (&values)[kNumMapValues]);
FileBytes writeBankFile(const BankPrograms& bank);

// Building blocks of the formats, shared with the session state (params/SessionState.h).
std::uint32_t readBigEndianU32(const std::uint8_t* p);
float readBigEndianFloat(const std::uint8_t* p);
void appendBigEndianU32(FileBytes& out, std::uint32_t v);
void appendBigEndianFloat(FileBytes& out, float f);
// A version-2 record of kRecordSize bytes at p, checked as the readers check it; out is untouched on failure.
bool readProgramRecord(const std::uint8_t* p, ProgramRecord& out);
// A version-2 record as the writers write it (name cut, values limited).
void appendProgramRecord(FileBytes& out, const ProgramRecord& record);

}  // namespace tolvane
