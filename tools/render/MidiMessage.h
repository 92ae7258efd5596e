// A short MIDI channel message placed on an absolute time line, the common currency of the
// MIDI file reader, the built-in demo phrase and the host's event delivery.
#pragma once

#include <cstdint>

namespace tolvane {

struct MidiMessage {
    double seconds = 0.0;       // from the start of the rendering
    std::uint8_t bytes[3] = {};  // status byte and up to two data bytes
    std::uint8_t size = 0;       // 2 or 3
};

// Number of data bytes that follow a channel status byte (0x80 to 0xEF).
inline int channelDataLength(std::uint8_t status) {
    const int kind = status & 0xF0;
    return (kind == 0xC0 || kind == 0xD0) ? 1 : 2;
}

}  // namespace tolvane
