#include "tools/render/MidiFile.h"

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Builds track bodies event by event: a delta time in ticks followed by the raw event bytes.
struct Track {
    Bytes bytes;
    Track& at(std::uint32_t delta, std::initializer_list<int> event) {
        // Variable-length number, most significant group first.
        Bytes groups{static_cast<std::uint8_t>(delta & 0x7F)};
        while (delta >>= 7) groups.insert(groups.begin(), static_cast<std::uint8_t>(0x80 | (delta & 0x7F)));
        bytes.insert(bytes.end(), groups.begin(), groups.end());
        for (int b : event) bytes.push_back(static_cast<std::uint8_t>(b));
        return *this;
    }
    Track& tempo(std::uint32_t delta, std::uint32_t micros) {
        return at(delta, {0xFF, 0x51, 3, int(micros >> 16), int((micros >> 8) & 0xFF), int(micros & 0xFF)});
    }
    Track& end(std::uint32_t delta) { return at(delta, {0xFF, 0x2F, 0}); }
};

void append32(Bytes& out, std::uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<std::uint8_t>(v >> shift));
}

Bytes chunk(const char* tag, const Bytes& body) {
    Bytes out(tag, tag + 4);
    append32(out, static_cast<std::uint32_t>(body.size()));
    out.insert(out.end(), body.begin(), body.end());
    return out;
}

Bytes smf(int format, std::uint16_t division, const std::vector<Track>& tracks, int declaredTracks = -1) {
    const int count = declaredTracks < 0 ? static_cast<int>(tracks.size()) : declaredTracks;
    Bytes header{0, static_cast<std::uint8_t>(format), static_cast<std::uint8_t>(count >> 8),
                 static_cast<std::uint8_t>(count & 0xFF), static_cast<std::uint8_t>(division >> 8),
                 static_cast<std::uint8_t>(division & 0xFF)};
    Bytes out = chunk("MThd", header);
    for (const Track& t : tracks) {
        const Bytes c = chunk("MTrk", t.bytes);
        out.insert(out.end(), c.begin(), c.end());
    }
    return out;
}

struct Expected {
    double seconds;
    Bytes bytes;
};

void expectEvents(const MidiFile& file, const std::vector<Expected>& expected) {
    ASSERT_EQ(file.events().size(), expected.size());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const MidiMessage& m = file.events()[i];
        EXPECT_NEAR(m.seconds, expected[i].seconds, 1e-9) << "event " << i;
        ASSERT_EQ(m.size, expected[i].bytes.size()) << "event " << i;
        for (std::size_t b = 0; b < expected[i].bytes.size(); ++b)
            EXPECT_EQ(m.bytes[b], expected[i].bytes[b]) << "event " << i << " byte " << b;
    }
}

// Reads a file that must be accepted.
void readValid(MidiFile& file, const Bytes& bytes) {
    std::string error;
    ASSERT_TRUE(file.read(bytes.data(), bytes.size(), error)) << error;
}

TEST(MidiFile, FormatZeroWithRunningStatusAndTempoChange) {
    // 96 ticks per quarter. 120 bpm: 1/192 s per tick; from tick 192 on, 60 bpm: 1/96 s per tick.
    Track t;
    t.tempo(0, 500000)
        .at(0, {0x90, 60, 100})
        .at(96, {64, 100})  // running status: another note-on, at 0.5 s
        .tempo(96, 1000000)  // tick 192 = 1.0 s; the meta event ends the running status
        .at(48, {0x80, 60, 64})  // tick 240 = 1.0 + 48/96 = 1.5 s
        .at(48, {0xC0, 5})       // tick 288 = 2.0 s, one data byte
        .at(0, {7})              // running status with one data byte
        .end(96);                // tick 384 = 3.0 s
    MidiFile file;
    readValid(file, smf(0, 96, {t}));
    EXPECT_EQ(file.format(), 0);
    EXPECT_EQ(file.trackCount(), 1);
    expectEvents(file, {{0.0, {0x90, 60, 100}},
                        {0.5, {0x90, 64, 100}},
                        {1.5, {0x80, 60, 64}},
                        {2.0, {0xC0, 5}},
                        {2.0, {0xC0, 7}}});
    EXPECT_NEAR(file.lengthSeconds(), 3.0, 1e-9);
    EXPECT_NEAR(file.tempoMap().bpmAt(191), 120.0, 1e-9);
    EXPECT_NEAR(file.tempoMap().bpmAt(192), 60.0, 1e-9);
}

TEST(MidiFile, FormatOneMergesTracksThroughOneTempoMap) {
    // 480 ticks per quarter. Tempo: 100 bpm (0.6 s per quarter) from 0, 150 bpm (0.4 s) from tick
    // 960, and 200 bpm (0.3 s) from tick 1200, that last change written in the third track.
    //   tick  960: 2 quarters at 0.6         = 1.2 s
    //   tick 1200: 1.2 + 0.5 quarter at 0.4  = 1.4 s
    //   tick 1440: 1.4 + 0.5 quarter at 0.3  = 1.55 s
    //   tick 2400: 1.55 + 2 quarters at 0.3  = 2.15 s
    Track conductor;
    conductor.tempo(0, 600000).at(0, {0xFF, 0x58, 4, 3, 2, 24, 8}).tempo(960, 400000).end(960);
    Track melody;
    melody.at(480, {0x90, 69, 90})      // 0.6 s
        .at(480, {0xB0, 7, 100})        // tick 960 = 1.2 s
        .at(480, {0x80, 69, 0});        // tick 1440 = 1.55 s (no end-of-track marker)
    Track other;
    other.at(0, {0xF0, 3, 0x43, 0x12, 0xF7})  // system exclusive: skipped
        .at(960, {0x91, 48, 80})              // tick 960, after the melody track's event at that tick
        .tempo(240, 300000)
        .end(1200);                           // tick 2400
    MidiFile file;
    readValid(file, smf(1, 480, {conductor, melody, other}));
    EXPECT_EQ(file.format(), 1);
    EXPECT_EQ(file.trackCount(), 3);
    expectEvents(file, {{0.6, {0x90, 69, 90}},
                        {1.2, {0xB0, 7, 100}},
                        {1.2, {0x91, 48, 80}},
                        {1.55, {0x80, 69, 0}}});
    EXPECT_NEAR(file.lengthSeconds(), 2.15, 1e-9);
    EXPECT_EQ(file.timeSignatureNumerator(), 3);
    EXPECT_EQ(file.timeSignatureDenominator(), 4);
}

TEST(MidiFile, TimeCodeDivisionIgnoresTempo) {
    // 25 frames per second, 40 ticks per frame: 1000 ticks per second.
    Track t;
    t.tempo(0, 250000).at(1500, {0x90, 60, 1}).end(500);
    const std::uint16_t division = static_cast<std::uint16_t>((0x100 - 25) << 8 | 40);
    MidiFile file;
    readValid(file, smf(0, division, {t}));
    expectEvents(file, {{1.5, {0x90, 60, 1}}});
    EXPECT_NEAR(file.lengthSeconds(), 2.0, 1e-9);
}

TEST(MidiFile, SkipsUnknownChunksAndIgnoresBytesAfterEndOfTrack) {
    Track t;
    t.at(0, {0x90, 60, 1}).end(96).at(0, {0x90, 62, 1});
    Bytes bytes = smf(0, 96, {});
    bytes[11] = 1;  // one track, after an unknown chunk
    const Bytes extra = chunk("XFIH", {1, 2, 3});
    const Bytes track = chunk("MTrk", t.bytes);
    bytes.insert(bytes.end(), extra.begin(), extra.end());
    bytes.insert(bytes.end(), track.begin(), track.end());
    MidiFile file;
    readValid(file, bytes);
    expectEvents(file, {{0.0, {0x90, 60, 1}}});
    EXPECT_NEAR(file.lengthSeconds(), 0.5, 1e-9);
}

TEST(MidiFile, RefusesMalformedFilesWithAReason) {
    auto withTrack = [](std::initializer_list<int> body, std::uint16_t division = 96, int format = 0) {
        Track t;
        for (int b : body) t.bytes.push_back(static_cast<std::uint8_t>(b));
        return smf(format, division, {t});
    };

    const struct {
        const char* name;
        Bytes bytes;
        const char* reason;
    } cases[] = {
        {"empty", {}, "MThd"},
        {"other format", {'R', 'I', 'F', 'F', 0, 0, 0, 4, 'W', 'A', 'V', 'E'}, "MThd"},
        {"format 2", withTrack({0, 0xFF, 0x2F, 0}, 96, 2), "format 2"},
        {"unknown format", withTrack({0, 0xFF, 0x2F, 0}, 96, 7), "format 7"},
        {"zero division", withTrack({0, 0xFF, 0x2F, 0}, 0), "zero ticks"},
        {"bad time code", withTrack({0, 0xFF, 0x2F, 0}, 0xE500 | 10), "time-code"},
        {"missing track", smf(1, 96, {Track().end(0)}, 2), "declares 2 tracks but ends after 1"},
        {"data without status", withTrack({0, 60, 1}), "without a preceding status"},
        {"five-byte delta", withTrack({0x81, 0x81, 0x81, 0x81, 0x01, 0x90, 60, 1}), "longer than four bytes"},
        {"meta past the end", withTrack({0, 0xFF, 0x01, 10, 'a', 'b'}), "runs past the end"},
        {"sysex past the end", withTrack({0, 0xF0, 0x7F}), "runs past the end"},
        {"short tempo", withTrack({0, 0xFF, 0x51, 2, 1, 2}), "shorter than three"},
        {"real-time status", withTrack({0, 0xF8}), "cannot appear"},
        {"data byte with top bit", withTrack({0, 0x90, 60, 0x90}), "top bit"},
        {"cut channel message", withTrack({0, 0x90, 60}), "inside a channel message"},
        {"cut delta", withTrack({0, 0x90, 60, 1, 0x81}), "inside a delta time"},
    };
    for (const auto& c : cases) {
        MidiFile file;
        std::string error;
        EXPECT_FALSE(file.read(c.bytes.data(), c.bytes.size(), error)) << c.name;
        EXPECT_NE(error.find(c.reason), std::string::npos) << c.name << ": " << error;
        EXPECT_TRUE(file.events().empty()) << c.name;
    }
}

// Cutting a file short anywhere, inside the header or inside a track chunk, is refused.
TEST(MidiFile, EveryTruncationOfAValidFileIsRefused) {
    Track a;
    a.tempo(0, 500000).at(0, {0xFF, 0x58, 4, 4, 2, 24, 8}).end(0);
    Track b;
    b.at(0, {0x90, 60, 100}).at(10, {62, 100}).at(0, {0xF0, 2, 1, 0xF7}).at(200, {0xE0, 0, 64}).end(10);
    const Bytes whole = smf(1, 96, {a, b});
    MidiFile file;
    readValid(file, whole);
    std::string error;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        // A copy of exactly this size, so that reading past it is a fault a sanitizer would see.
        const Bytes part(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        error.clear();
        EXPECT_FALSE(file.read(part.data(), part.size(), error)) << "size " << size;
        EXPECT_FALSE(error.empty()) << "size " << size;
    }
}

}  // namespace
}  // namespace tolvane
