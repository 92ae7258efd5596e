#include "tools/render/MidiFile.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

namespace tolvane {

// ---------------------------------------------------------------------------------------------
// Tempo map

void TempoMap::setTicksPerQuarter(int ticksPerQuarter) {
    metrical_ = true;
    ticksPerQuarter_ = ticksPerQuarter;
    segments_.assign(1, Segment{0, 0.0, kDefaultMicrosPerQuarter * 1e-6 / ticksPerQuarter_, kDefaultMicrosPerQuarter});
}

void TempoMap::setTicksPerSecond(double ticksPerSecond) {
    metrical_ = false;
    segments_.assign(1, Segment{0, 0.0, 1.0 / ticksPerSecond, kDefaultMicrosPerQuarter});
}

void TempoMap::addChange(std::uint64_t tick, std::uint32_t microsPerQuarter) {
    if (!metrical_ || microsPerQuarter == 0) return;
    const double secondsPerTick = microsPerQuarter * 1e-6 / ticksPerQuarter_;
    Segment& last = segments_.back();
    if (tick <= last.tick) {
        // Same tick as the current segment: the later change wins.
        last.secondsPerTick = secondsPerTick;
        last.microsPerQuarter = microsPerQuarter;
        return;
    }
    const double seconds = last.seconds + static_cast<double>(tick - last.tick) * last.secondsPerTick;
    segments_.push_back(Segment{tick, seconds, secondsPerTick, microsPerQuarter});
}

const TempoMap::Segment& TempoMap::segmentFor(std::uint64_t tick) const {
    // The last segment that starts at or before the tick; the first one starts at tick 0.
    auto after = std::upper_bound(segments_.begin(), segments_.end(), tick,
                                  [](std::uint64_t t, const Segment& s) { return t < s.tick; });
    return *(after - 1);
}

double TempoMap::secondsAt(std::uint64_t tick) const {
    const Segment& s = segmentFor(tick);
    return s.seconds + static_cast<double>(tick - s.tick) * s.secondsPerTick;
}

double TempoMap::bpmAt(std::uint64_t tick) const {
    if (!metrical_) return 120.0;
    return 60e6 / segmentFor(tick).microsPerQuarter;
}

// ---------------------------------------------------------------------------------------------
// File reader

namespace {

struct TrackEvent {
    std::uint64_t tick;
    std::uint8_t bytes[3];
    std::uint8_t size;
};

struct TempoChange {
    std::uint64_t tick;
    std::uint32_t microsPerQuarter;
};

std::string hexByte(unsigned value) {
    char text[8];
    std::snprintf(text, sizeof text, "0x%02X", value & 0xFFu);
    return text;
}

std::uint32_t bigEndian32(const std::uint8_t* p) {
    return (std::uint32_t{p[0]} << 24) | (std::uint32_t{p[1]} << 16) | (std::uint32_t{p[2]} << 8) | p[3];
}

std::uint16_t bigEndian16(const std::uint8_t* p) { return static_cast<std::uint16_t>((p[0] << 8) | p[1]); }

// Parses one MTrk chunk body, data[begin, end). Offsets in messages are file offsets.
class TrackParser {
public:
    TrackParser(const std::uint8_t* data, std::size_t begin, std::size_t end, int trackNumber)
        : data_(data), pos_(begin), end_(end), track_(trackNumber) {}

    bool parse(std::vector<TrackEvent>& events, std::vector<TempoChange>& tempos, std::uint64_t& endTick,
               int& sigNumerator, int& sigDenominator, bool& sawSignature, std::string& error) {
        std::uint64_t tick = 0;
        std::uint8_t running = 0;
        while (pos_ < end_) {
            std::uint32_t delta = 0;
            if (!readNumber(delta, "delta time", error)) return false;
            tick += delta;
            if (pos_ >= end_) return fail("the track ends between a delta time and its event", error);
            const std::size_t eventOffset = pos_;
            const std::uint8_t lead = data_[pos_];

            if (lead == 0xFF) {
                ++pos_;
                if (pos_ >= end_) return fail("the track ends inside a meta event", error);
                const std::uint8_t type = data_[pos_++];
                std::uint32_t length = 0;
                if (!readNumber(length, "meta event length", error)) return false;
                if (length > end_ - pos_) return fail("a meta event runs past the end of the track", error);
                const std::uint8_t* body = data_ + pos_;
                pos_ += length;
                running = 0;
                if (type == 0x2F) {  // end of track: anything after it is not part of the track
                    endTick = tick;
                    return true;
                }
                if (type == 0x51) {
                    if (length < 3) return fail("a tempo event is shorter than three bytes", error);
                    const std::uint32_t micros = (std::uint32_t{body[0]} << 16) | (std::uint32_t{body[1]} << 8) | body[2];
                    if (micros == 0) return fail("a tempo event gives zero microseconds per quarter note", error);
                    tempos.push_back(TempoChange{tick, micros});
                } else if (type == 0x58 && length >= 2 && tick == 0 && !sawSignature && body[0] > 0 &&
                           body[1] <= 6) {
                    sigNumerator = body[0];
                    sigDenominator = 1 << body[1];
                    sawSignature = true;
                }
            } else if (lead == 0xF0 || lead == 0xF7) {
                // System exclusive (or an escaped sequence): skipped.
                ++pos_;
                std::uint32_t length = 0;
                if (!readNumber(length, "system-exclusive length", error)) return false;
                if (length > end_ - pos_) return fail("a system-exclusive event runs past the end of the track", error);
                pos_ += length;
                running = 0;
            } else if (lead > 0xF0) {
                pos_ = eventOffset;
                return fail("status byte " + hexByte(lead) + " cannot appear in a MIDI file", error);
            } else {
                std::uint8_t status = running;
                if (lead & 0x80) {
                    status = lead;
                    running = lead;
                    ++pos_;
                } else if (running == 0) {
                    return fail("data byte " + hexByte(lead) + " without a preceding status byte", error);
                }
                const int count = channelDataLength(status);
                if (static_cast<std::size_t>(count) > end_ - pos_)
                    return fail("the track ends inside a channel message", error);
                TrackEvent event{tick, {status, 0, 0}, static_cast<std::uint8_t>(count + 1)};
                for (int i = 0; i < count; ++i) {
                    const std::uint8_t value = data_[pos_];
                    if (value & 0x80)
                        return fail("data byte " + hexByte(value) + " has its top bit set", error);
                    event.bytes[1 + i] = value;
                    ++pos_;
                }
                events.push_back(event);
            }
        }
        // A track without an end-of-track marker ends at its last event.
        endTick = tick;
        return true;
    }

private:
    // Variable-length number: seven bits per byte, most significant first, at most four bytes.
    bool readNumber(std::uint32_t& value, const char* what, std::string& error) {
        value = 0;
        for (int i = 0; i < 4; ++i) {
            if (pos_ >= end_) return fail(std::string("the track ends inside a ") + what, error);
            const std::uint8_t byte = data_[pos_++];
            value = (value << 7) | (byte & 0x7F);
            if (!(byte & 0x80)) return true;
        }
        return fail(std::string("a ") + what + " is longer than four bytes", error);
    }

    bool fail(const std::string& what, std::string& error) const {
        error = "track " + std::to_string(track_) + ", byte offset " + std::to_string(pos_) + ": " + what;
        return false;
    }

    const std::uint8_t* data_;
    std::size_t pos_;
    std::size_t end_;
    int track_;
};

}  // namespace

void MidiFile::clear() {
    format_ = 0;
    trackCount_ = 0;
    events_.clear();
    lengthSeconds_ = 0.0;
    tempoMap_ = TempoMap();
    timeSigNumerator_ = 4;
    timeSigDenominator_ = 4;
}

bool MidiFile::load(const std::string& path, std::string& error) {
    clear();
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot open MIDI file " + path;
        return false;
    }
    in.seekg(0, std::ios::end);
    const std::streamoff size = in.tellg();
    constexpr std::streamoff kLargest = 256 << 20;
    if (size < 0 || size > kLargest) {
        error = path + " is too large to be a MIDI file";
        return false;
    }
    in.seekg(0, std::ios::beg);
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    if (size > 0 && !in.read(reinterpret_cast<char*>(bytes.data()), size)) {
        error = "cannot read MIDI file " + path;
        return false;
    }
    if (!read(bytes.data(), bytes.size(), error)) {
        error = path + ": " + error;
        return false;
    }
    return true;
}

bool MidiFile::read(const std::uint8_t* data, std::size_t size, std::string& error) {
    clear();
    auto fail = [&](const std::string& what) {
        clear();
        error = what;
        return false;
    };

    if (size < 8 || std::string(reinterpret_cast<const char*>(data), 4) != "MThd")
        return fail("not a Standard MIDI File (no MThd header)");
    const std::uint32_t headerLength = bigEndian32(data + 4);
    if (headerLength < 6) return fail("the MIDI header is shorter than six bytes");
    if (headerLength > size - 8) return fail("the MIDI file is truncated inside its header");

    const int format = bigEndian16(data + 8);
    const int declaredTracks = bigEndian16(data + 10);
    const std::uint16_t division = bigEndian16(data + 12);
    if (format == 2) return fail("format 2 MIDI files (independent sequences) are not supported");
    if (format > 2) return fail("unknown MIDI file format " + std::to_string(format));
    if (declaredTracks == 0) return fail("the MIDI file declares no tracks");

    if (division & 0x8000) {
        // Time code: the high byte is minus the frames per second, the low byte the ticks per frame.
        const int framesPerSecond = -static_cast<std::int8_t>(division >> 8);
        const int ticksPerFrame = division & 0xFF;
        if ((framesPerSecond != 24 && framesPerSecond != 25 && framesPerSecond != 29 && framesPerSecond != 30) ||
            ticksPerFrame == 0)
            return fail("invalid time-code division " + std::to_string(division));
        const double fps = framesPerSecond == 29 ? 30000.0 / 1001.0 : framesPerSecond;
        tempoMap_.setTicksPerSecond(fps * ticksPerFrame);
    } else {
        if (division == 0) return fail("the MIDI file gives zero ticks per quarter note");
        tempoMap_.setTicksPerQuarter(division);
    }

    std::vector<TrackEvent> events;
    std::vector<TempoChange> tempos;
    std::uint64_t endTick = 0;
    bool sawSignature = false;
    int tracksRead = 0;
    std::size_t pos = 8 + static_cast<std::size_t>(headerLength);
    while (tracksRead < declaredTracks) {
        if (size - pos < 8)
            return fail("the MIDI file declares " + std::to_string(declaredTracks) + " tracks but ends after " +
                        std::to_string(tracksRead));
        const bool isTrack = std::string(reinterpret_cast<const char*>(data + pos), 4) == "MTrk";
        const std::uint32_t length = bigEndian32(data + pos + 4);
        const std::size_t remaining = size - pos - 8;
        if (length > remaining) {
            return fail((isTrack ? "track " + std::to_string(tracksRead + 1) : std::string("a chunk")) +
                        " is truncated: it declares " + std::to_string(length) + " bytes but " +
                        std::to_string(remaining) + " remain");
        }
        if (isTrack) {
            ++tracksRead;
            std::uint64_t trackEnd = 0;
            TrackParser parser(data, pos + 8, pos + 8 + length, tracksRead);
            std::string what;
            if (!parser.parse(events, tempos, trackEnd, timeSigNumerator_, timeSigDenominator_, sawSignature, what))
                return fail(what);
            endTick = std::max(endTick, trackEnd);
        }
        // Chunks of unknown type are skipped.
        pos += 8 + static_cast<std::size_t>(length);
    }

    // One tempo map for all tracks; ties keep track order.
    std::stable_sort(tempos.begin(), tempos.end(),
                     [](const TempoChange& a, const TempoChange& b) { return a.tick < b.tick; });
    for (const TempoChange& change : tempos) tempoMap_.addChange(change.tick, change.microsPerQuarter);

    // Tracks were appended in order, so a stable sort by tick keeps track order and then file order on ties.
    std::stable_sort(events.begin(), events.end(),
                     [](const TrackEvent& a, const TrackEvent& b) { return a.tick < b.tick; });
    events_.reserve(events.size());
    for (const TrackEvent& event : events) {
        MidiMessage message;
        message.seconds = tempoMap_.secondsAt(event.tick);
        message.bytes[0] = event.bytes[0];
        message.bytes[1] = event.bytes[1];
        message.bytes[2] = event.bytes[2];
        message.size = event.size;
        events_.push_back(message);
    }
    format_ = format;
    trackCount_ = tracksRead;
    lengthSeconds_ = tempoMap_.secondsAt(endTick);
    return true;
}

}  // namespace tolvane
