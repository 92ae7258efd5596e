// The whole state a host keeps with its session: what the plug-in sounds like now and every program it
// can select. Pure reader over a byte buffer and writer to a byte vector, in the manner of the files.
//
// Layout, all numbers big-endian:
//   0    16  magic "Tolvane state  " and its terminating zero
//   16    4  version word, format version in the upper 16 bits (1)
//   20    4  count: how many program records follow the fixed part (0..512)
//   24    4  current program number (0..511)
//   28  608  the edit buffer: a program record (name and the 144 values of parameters 0..143)
//   636 128  the 32 controller-map values (parameters 144..175)
//   764      count entries of 612 bytes: a program number, then its record
// The programs that are not listed are the factory bank's. The writer lists only the programs whose
// name or values differ from the factory bank's, in rising order, so an untouched bank costs nothing;
// the reader accepts only rising numbers (no program twice).
//
// Records are checked as in the files (a name of at most kMaxProgramNameLength characters, values
// from 0.0 to 1.0), the map values too. The reader checks the whole buffer before it writes anything:
// on failure its output is untouched. Bytes after the last entry are not examined.
#pragma once

#include <cstddef>
#include <cstdint>

#include "params/FileResult.h"
#include "params/ParameterIds.h"
#include "params/ProgramFiles.h"
#include "params/ProgramRecord.h"

namespace tolvane {

constexpr std::size_t kSessionFixedSize = kFileHeaderSize + 4 + kRecordSize + kControllerMapBodySize;  // 764
constexpr std::size_t kSessionEntrySize = 4 + kRecordSize;                                            // 612

struct SessionState {
    int currentProgram = 0;
    ProgramRecord editBuffer{};
    float mapValues[kNumMapValues] = {};
    ProgramRecord programs[kNumPrograms];  // the plug-in's bank, all 512
};

// Refuses what the file readers refuse, with the same results: a short buffer or a failing record,
// number or entry is CannotLoad; a wrong magic or a count above 512 is InvalidFormat; a version other
// than 1 is UnknownVersion.
FileResult readSessionState(const std::uint8_t* data, std::size_t size, SessionState& out);

// Writes what the reader accepts (names cut, values limited to 0.0 .. 1.0, the program number kept
// within 0..511).
FileBytes writeSessionState(const SessionState& state);

}  // namespace tolvane
