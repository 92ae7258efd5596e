// What a sound designer checks by ear, measured: the test phrase of each factory program and the
// figures taken from its renders.
//
// Every program of bank A has a brief: its category, the note it is judged at, whether it must play
// chords, whether it is a drum. The test phrase follows from the brief: the test note held, the same
// an octave higher, and a major triad where the program is polyphonic; a drum gets a short tap and a
// hit held down, at its hit velocity and, where the brief asks for one, a soft velocity. Each take
// starts from a freshly selected program, so no take hears another's tail.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace tolvane::analyse {

enum class Category {
    Pad, Strings, Organ, Lead, Brass, Keys, Pluck, Bell, Bass, Kick, Snare, Clap, Tom, Hat, Percussion, Effect,
};
const char* categoryName(Category c);

struct ProgramBrief {
    Category category;
    int testNote;        // MIDI note, C4 = 60
    bool polyphonic;     // must play a triad
    bool pitched;        // has a fundamental that follows the keyboard
    int velocity;        // of the main take (100, drums 110)
    int softVelocity;    // a second, soft take when the brief asks for one; 0 for none
    const char* summary; // one line for the bank's table
};

// Briefs of programs 0..63.
const ProgramBrief& programBrief(int program);
bool isOneShot(const ProgramBrief& brief);  // drums and hits: decay with the key held

struct Note {
    int key;
    int velocity;
};

struct Take {
    std::string label;        // "note", "octave", "triad", "tap", "held", "soft"
    std::vector<Note> notes;  // started together at 0.1 s
    double holdSeconds;       // key down time
    double tailSeconds;       // rendered after the keys are released
    double expectedHz;        // the played key's frequency; 0 for drums, chords and unpitched sounds
};

constexpr double kNoteOnSeconds = 0.1;

// Takes of a program's test phrase; `quick` shortens holds and tails for the test suite.
std::vector<Take> testPhrase(const ProgramBrief& brief, bool quick = false);

// Stereo audio of one take.
struct Stereo {
    std::vector<float> left, right;
    double sampleRate = 44100.0;
};

// Renders one take of a program from a freshly selected program.
using TakeRenderer = std::function<Stereo(int program, const Take& take)>;

struct Measures {
    double onsetSeconds = 0;       // from note-on until the level first reaches half its peak (-6 dB)
    double levelAfter1sDb = 0;     // the 100 ms around 1 s after note-on against the loudest 100 ms
    double release40Seconds = -1;  // from note-off until the sound stays 40 dB below its peak; -1 = not within the take
    double decay40Seconds = -1;    // from note-on until it stays 40 dB below its peak (with the key held)
    double pitchHz = 0;            // fundamental while held; 0 when none is found
    double pitchCents = 0;         // median against the played key, folded into -600..600 (octaves allowed)
    double centroidHz = 0;         // spectral centroid while sounding
    double noisiness = 0;          // aperiodicity while sounding: 0 a steady tone .. 1 noise
    double stereoWidth = 0;        // RMS of L - R over RMS of L + R
    double peakDb = -200;          // sample peak, dBFS
    double loudestRmsDb = -200;    // loudest 100 ms RMS of both channels, dBFS
};

Measures measure(const Stereo& audio, const Take& take);

// Level envelope: RMS of both channels over 10 ms windows every 5 ms.
std::vector<double> levelEnvelope(const Stereo& audio, double hopSeconds = 0.005);

// Fundamental of a steady stretch, by the cumulative-mean-normalised difference function (YIN);
// 0 when no period between 20 Hz and 5 kHz stands out.
double fundamentalHz(const std::vector<float>& x, std::size_t from, std::size_t length, double sampleRate);

// How far a stretch is from periodic: the lowest point of YIN's normalised difference for periods
// between 0.125 and 50 ms, about 0 for a steady tone and near 1 for noise.
double aperiodicity(const std::vector<float>& x, std::size_t from, std::size_t length, double sampleRate);

// Mean power spectrum (Hann frames of `size`, hop size/2) of samples [from, to) of the mono sum.
std::vector<double> meanPowerSpectrum(const Stereo& audio, std::size_t from, std::size_t to, int size);
double spectralCentroidHz(const std::vector<double>& power, double sampleRate);

// Band levels (dB) of the mono sum: 24 third-octave-ish bands from 40 Hz to 16 kHz per 50 ms frame; a
// fingerprint for telling sounds apart.
std::vector<std::vector<double>> bandLevels(const Stereo& audio, double seconds);
// How differently two sounds spread over frequency and over time, whatever their level: the larger of
// the RMS differences (dB) of their mean band spectra and of their level contours, each relative to its
// own maximum and floored 60 dB below. The random phases of two renders of one sound stay near 1 dB.
double fingerprintDistanceDb(const std::vector<std::vector<double>>& a, const std::vector<std::vector<double>>& b);

double toDb(double x);

}  // namespace tolvane::analyse
