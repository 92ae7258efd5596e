// Reader for Standard MIDI Files of format 0 and 1.
//
// The reader merges all tracks into one time-ordered list of channel messages whose times are in
// seconds: the tempo changes of every track form one tempo map that converts ticks to seconds.
// System-exclusive events are skipped, meta events other than tempo, time signature and end of
// track are ignored. Malformed or truncated input is refused with a message naming the track and
// byte offset; the reader never reads outside the given bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tools/render/MidiMessage.h"

namespace tolvane {

// Piecewise-linear mapping from ticks to seconds.
class TempoMap {
public:
    static constexpr std::uint32_t kDefaultMicrosPerQuarter = 500000;  // 120 beats per minute

    // Metrical time: ticks per quarter note, tempo from the map (120 bpm until the first change).
    void setTicksPerQuarter(int ticksPerQuarter);
    // Time-code time: a fixed number of ticks per second; tempo changes do not apply.
    void setTicksPerSecond(double ticksPerSecond);
    // Changes must arrive in ascending tick order; a later change at the same tick replaces an earlier one.
    void addChange(std::uint64_t tick, std::uint32_t microsPerQuarter);

    double secondsAt(std::uint64_t tick) const;
    // Tempo in effect at the given tick, in beats per minute (for time-code files: 120).
    double bpmAt(std::uint64_t tick) const;

private:
    struct Segment {
        std::uint64_t tick;
        double seconds;         // time at the segment's first tick
        double secondsPerTick;  // inside the segment
        std::uint32_t microsPerQuarter;
    };
    const Segment& segmentFor(std::uint64_t tick) const;

    bool metrical_ = true;
    double ticksPerQuarter_ = 96.0;
    std::vector<Segment> segments_{{0, 0.0, 0.5 / 96.0, kDefaultMicrosPerQuarter}};
};

class MidiFile {
public:
    // Both answer false and fill error on failure; the object is then empty.
    bool load(const std::string& path, std::string& error);
    bool read(const std::uint8_t* data, std::size_t size, std::string& error);

    int format() const { return format_; }
    int trackCount() const { return trackCount_; }
    // Channel messages of all tracks, in time order (ties keep track order, then file order).
    const std::vector<MidiMessage>& events() const { return events_; }
    // Time of the last event of any track, end-of-track markers included.
    double lengthSeconds() const { return lengthSeconds_; }
    const TempoMap& tempoMap() const { return tempoMap_; }
    // Time signature at the start (4/4 when the file gives none).
    int timeSignatureNumerator() const { return timeSigNumerator_; }
    int timeSignatureDenominator() const { return timeSigDenominator_; }

private:
    void clear();

    int format_ = 0;
    int trackCount_ = 0;
    std::vector<MidiMessage> events_;
    double lengthSeconds_ = 0.0;
    TempoMap tempoMap_;
    int timeSigNumerator_ = 4;
    int timeSigDenominator_ = 4;
};

}  // namespace tolvane
