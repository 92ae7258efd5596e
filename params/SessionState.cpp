#include "params/SessionState.h"

#include <cstring>
#include <memory>

#include "params/FactoryBank.h"

namespace tolvane {
namespace {

constexpr char kSessionMagic[16] = "Tolvane state  ";
constexpr std::uint32_t kSessionVersion = 1;

bool inUnitRange(float v) { return v >= 0.0f && v <= 1.0f; }

// A record as the writer stores it, so that "differs from the factory" means "would be read back different".
FileBytes storedForm(const ProgramRecord& record) {
    FileBytes bytes;
    bytes.reserve(kRecordSize);
    appendProgramRecord(bytes, record);
    return bytes;
}

}  // namespace

FileResult readSessionState(const std::uint8_t* data, std::size_t size, SessionState& out) {
    if (!data || size < kFileHeaderSize) return FileResult::CannotLoad;
    const std::uint32_t count = readBigEndianU32(data + 20);
    if (std::memcmp(data, kSessionMagic, sizeof kSessionMagic) != 0 || count > kNumPrograms) {
        return FileResult::InvalidFormat;
    }
    if ((readBigEndianU32(data + 16) >> 16) != kSessionVersion) return FileResult::UnknownVersion;
    if (size < kSessionFixedSize || (size - kSessionFixedSize) / kSessionEntrySize < count) {
        return FileResult::CannotLoad;
    }

    auto state = std::make_unique<SessionState>();
    const std::uint32_t program = readBigEndianU32(data + kFileHeaderSize);
    if (program >= kNumPrograms) return FileResult::CannotLoad;
    state->currentProgram = static_cast<int>(program);
    const std::uint8_t* p = data + kFileHeaderSize + 4;
    if (!readProgramRecord(p, state->editBuffer)) return FileResult::CannotLoad;
    p += kRecordSize;
    for (float& v : state->mapValues) {
        v = readBigEndianFloat(p);
        if (!inUnitRange(v)) return FileResult::CannotLoad;
        p += 4;
    }

    for (int i = 0; i < kNumPrograms; ++i) state->programs[i] = factoryProgram(i);
    std::int64_t previous = -1;
    for (std::uint32_t e = 0; e < count; ++e, p += kSessionEntrySize) {
        const std::uint32_t index = readBigEndianU32(p);
        if (index >= kNumPrograms || static_cast<std::int64_t>(index) <= previous) return FileResult::CannotLoad;
        if (!readProgramRecord(p + 4, state->programs[index])) return FileResult::CannotLoad;
        previous = index;
    }
    out = *state;
    return FileResult::Ok;
}

FileBytes writeSessionState(const SessionState& state) {
    std::uint32_t changed[kNumPrograms];
    std::uint32_t count = 0;
    for (int i = 0; i < kNumPrograms; ++i) {
        if (storedForm(state.programs[i]) != storedForm(factoryProgram(i))) changed[count++] = static_cast<std::uint32_t>(i);
    }

    FileBytes out;
    out.reserve(kSessionFixedSize + count * kSessionEntrySize);
    out.insert(out.end(), kSessionMagic, kSessionMagic + sizeof kSessionMagic);
    appendBigEndianU32(out, kSessionVersion << 16);
    appendBigEndianU32(out, count);
    const int program = state.currentProgram < 0 ? 0 : (state.currentProgram >= kNumPrograms ? kNumPrograms - 1
                                                                                              : state.currentProgram);
    appendBigEndianU32(out, static_cast<std::uint32_t>(program));
    appendProgramRecord(out, state.editBuffer);
    for (float v : state.mapValues) appendBigEndianFloat(out, inUnitRange(v) ? v : (v > 1.0f ? 1.0f : 0.0f));
    for (std::uint32_t e = 0; e < count; ++e) {
        appendBigEndianU32(out, changed[e]);
        appendProgramRecord(out, state.programs[changed[e]]);
    }
    return out;
}

}  // namespace tolvane
