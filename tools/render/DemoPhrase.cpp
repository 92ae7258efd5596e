#include "tools/render/DemoPhrase.h"

#include <algorithm>
#include <cstdint>

namespace tolvane {

namespace {

struct Note {
    double beat;    // start, in beats from the start of the phrase
    double length;  // in beats
    int key;
    int velocity;
};

constexpr int kBeatsPerBar = 4;
constexpr double kChordGap = 0.1;    // beats of silence before a chord changes, so repeated keys restrike
constexpr double kMelodyLegato = 0.9;  // melody notes sound for this share of their written length

// A minor: Am | F | C | G | Am | F | G | E | F G | Am.
struct Chord {
    double beat;
    double length;
    int bass;
    int keys[3];
};
constexpr Chord kChords[] = {
    {0, 4, 45, {57, 60, 64}},  {4, 4, 41, {53, 57, 60}},  {8, 4, 36, {55, 60, 64}},  {12, 4, 43, {55, 59, 62}},
    {16, 4, 45, {57, 60, 64}}, {20, 4, 41, {53, 57, 60}}, {24, 4, 43, {55, 59, 62}}, {28, 4, 40, {56, 59, 64}},
    {32, 2, 41, {53, 57, 60}}, {34, 2, 43, {55, 59, 62}}, {36, 4, 45, {57, 60, 64}},
};

// Melody: bar, beat in bar, length in beats, key.
struct MelodyNote {
    int bar;
    double beat;
    double length;
    int key;
};
constexpr MelodyNote kMelody[] = {
    {0, 0, 1.5, 76}, {0, 1.5, 0.5, 74}, {0, 2, 1, 72},   {0, 3, 0.5, 71},   {0, 3.5, 0.5, 72},
    {1, 0, 2, 69},   {1, 2, 1, 72},     {1, 3, 1, 77},
    {2, 0, 1.5, 76}, {2, 1.5, 0.5, 74}, {2, 2, 0.5, 76}, {2, 2.5, 1.5, 79},
    {3, 0, 2, 74},   {3, 2, 1, 71},     {3, 3, 1, 67},
    {4, 0, 0.5, 69}, {4, 0.5, 0.5, 72}, {4, 1, 1, 76},   {4, 2, 1.5, 81},   {4, 3.5, 0.5, 79},
    {5, 0, 1, 77},   {5, 1, 1, 76},     {5, 2, 1, 72},   {5, 3, 1, 69},
    {6, 0, 1, 71},   {6, 1, 1, 74},     {6, 2, 1.5, 79}, {6, 3.5, 0.5, 77},
    {7, 0, 2, 76},   {7, 2, 0.5, 74},   {7, 2.5, 0.5, 72}, {7, 3, 1, 71},
    {8, 0, 1, 69},   {8, 1, 1, 72},     {8, 2, 1, 74},   {8, 3, 1, 71},
    {9, 0, 4, 69},
};

std::vector<Note> notes() {
    std::vector<Note> result;
    for (const Chord& chord : kChords) {
        result.push_back(Note{chord.beat, chord.length - kChordGap, chord.bass, 84});
        for (int key : chord.keys) result.push_back(Note{chord.beat, chord.length - kChordGap, key, 68});
    }
    for (const MelodyNote& m : kMelody) {
        // Stronger on the first beat of a bar, a little softer off the beat.
        const int velocity = m.beat == 0 ? 104 : (m.beat - static_cast<int>(m.beat) != 0 ? 88 : 96);
        result.push_back(Note{m.bar * kBeatsPerBar + m.beat, m.length * kMelodyLegato, m.key, velocity});
    }
    return result;
}

double beatsToSeconds(double beats) { return beats * 60.0 / kDemoTempo; }

}  // namespace

std::vector<MidiMessage> demoPhrase() {
    struct Timed {
        MidiMessage message;
        bool on;
    };
    std::vector<Timed> timed;
    for (const Note& note : notes()) {
        MidiMessage on;
        on.seconds = beatsToSeconds(note.beat);
        on.bytes[0] = 0x90;
        on.bytes[1] = static_cast<std::uint8_t>(note.key);
        on.bytes[2] = static_cast<std::uint8_t>(note.velocity);
        on.size = 3;
        MidiMessage off = on;
        off.seconds = beatsToSeconds(note.beat + note.length);
        off.bytes[0] = 0x80;
        off.bytes[2] = 64;
        timed.push_back(Timed{on, true});
        timed.push_back(Timed{off, false});
    }
    std::stable_sort(timed.begin(), timed.end(), [](const Timed& a, const Timed& b) {
        if (a.message.seconds != b.message.seconds) return a.message.seconds < b.message.seconds;
        return !a.on && b.on;
    });
    std::vector<MidiMessage> result;
    result.reserve(timed.size());
    for (const Timed& t : timed) result.push_back(t.message);
    return result;
}

double demoPhraseSeconds() {
    double end = 0.0;
    for (const Note& note : notes()) end = std::max(end, beatsToSeconds(note.beat + note.length));
    return end;
}

}  // namespace tolvane
