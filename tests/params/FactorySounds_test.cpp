// The designed programs of bank A, judged by measurements that stand in for the ear, on renders
// through the plug-in's effect record: each program's test phrase (its test note, a triad where it
// must play chords, a tap and a held hit for drums) and a common probe note for telling programs
// apart. Nothing here reads the stored values; the expectations come from the sound brief.
#include <cmath>
#include <map>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "params/FactoryBank.h"
#include "support/HostSession.h"
#include "support/PluginFixture.h"
#include "tools/analyse/SoundCheck.h"

namespace tolvane {
namespace {

using analyse::Category;
using analyse::Measures;
using analyse::ProgramBrief;
using analyse::Stereo;
using analyse::Take;

constexpr double kRate = 44100.0;
constexpr int kInitProgram = 64;  // bank A's first "InitProg"

struct ProgramRenders {
    std::vector<Take> takes;
    std::vector<Stereo> audio;
    std::vector<Measures> measures;
    std::vector<std::vector<double>> probe;  // band levels of the probe note
};

Stereo renderTake(testing::PluginFixture& f, int program, const Take& take) {
    f.dispatch(vst2::effSetProgram, 0, program);
    const auto on = static_cast<std::int64_t>(analyse::kNoteOnSeconds * kRate);
    const auto off = static_cast<std::int64_t>((analyse::kNoteOnSeconds + take.holdSeconds) * kRate);
    std::vector<testing::TimedMidi> events;
    for (const analyse::Note& n : take.notes)
        events.push_back({on, {0x90, static_cast<unsigned char>(n.key), static_cast<unsigned char>(n.velocity)}});
    for (const analyse::Note& n : take.notes) events.push_back({off, {0x80, static_cast<unsigned char>(n.key), 0}});
    Stereo s;
    s.sampleRate = kRate;
    const int frames = static_cast<int>((analyse::kNoteOnSeconds + take.holdSeconds + take.tailSeconds) * kRate);
    testing::renderSession(f.effect, events, frames, 512, s.left, s.right);
    return s;
}

// Every program rendered once for the whole suite, each by a plug-in of its own: every program starts
// from the same oscillator phases and random state, so identical programs render identically.
class FactorySounds : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        const Take probe{"probe", {{60, 100}}, 1.0, 0.5, 0.0};
        for (int p = 0; p <= kInitProgram; ++p) {
            testing::PluginFixture f;
            f.host.record = false;
            ProgramRenders& r = renders()[p];
            r.probe = analyse::bandLevels(renderTake(f, p, probe), 1.5);
            if (p == kInitProgram) break;
            r.takes = analyse::testPhrase(analyse::programBrief(p), true);
            for (const Take& take : r.takes) {
                r.audio.push_back(renderTake(f, p, take));
                r.measures.push_back(analyse::measure(r.audio.back(), take));
            }
        }
    }
    static std::map<int, ProgramRenders>& renders() {
        static std::map<int, ProgramRenders> all;
        return all;
    }
    static const ProgramBrief& brief(int p) { return analyse::programBrief(p); }
    static const Measures& first(int p) { return renders()[p].measures.at(0); }
    static std::string who(int p) { return std::to_string(p) + " " + factoryProgram(p).name; }
};

TEST_F(FactorySounds, EveryProgramSoundsUnlikeTheInitSoundAndEveryOther) {
    // RMS over a spectrogram of 24 bands x 50 ms frames: 0 for identical renders; a changed effect mix
    // or a few cents of detune stay near 1 dB, a different sound is far above.
    constexpr double kAudiblyDifferentDb = 3.0;
    for (int p = 1; p < kNumDesignedPrograms; ++p) {
        EXPECT_GT(analyse::fingerprintDistanceDb(renders()[p].probe, renders()[kInitProgram].probe), kAudiblyDifferentDb)
            << who(p) << " sounds like the init program";
        for (int q = 0; q < p; ++q)
            EXPECT_GT(analyse::fingerprintDistanceDb(renders()[p].probe, renders()[q].probe), kAudiblyDifferentDb)
                << who(p) << " sounds like " << who(q);
    }
}

TEST_F(FactorySounds, PitchedProgramsPlayInTune) {
    for (int p = 0; p < kNumDesignedPrograms; ++p) {
        if (!brief(p).pitched) continue;
        const Measures& m = first(p);
        EXPECT_GT(m.pitchHz, 0.0) << who(p) << ": no fundamental found";
        EXPECT_NEAR(m.pitchCents, 0.0, 8.0) << who(p) << " at " << m.pitchHz << " Hz (octaves allowed)";
    }
}

TEST_F(FactorySounds, HeldNotesAndHitsAreAboutAsLoudAsTheFirstProgram) {
    const double reference = first(0).loudestRmsDb;
    EXPECT_NEAR(reference, -20.0, 1.5) << "the reference program's held C4";
    for (int p = 1; p < kNumDesignedPrograms; ++p)
        EXPECT_NEAR(first(p).loudestRmsDb, reference, 4.0) << who(p) << ": loudest 100 ms, dBFS";
}

TEST_F(FactorySounds, NoTakeClips) {
    for (int p = 0; p < kNumDesignedPrograms; ++p)
        for (std::size_t t = 0; t < renders()[p].takes.size(); ++t)
            EXPECT_LT(renders()[p].measures[t].peakDb, 0.0) << who(p) << ", " << renders()[p].takes[t].label;
}

TEST_F(FactorySounds, EachCategoryHasItsShape) {
    for (int p = 0; p < kNumDesignedPrograms; ++p) {
        const Measures& m = first(p);
        switch (brief(p).category) {
            case Category::Pad:
            case Category::Strings:
                EXPECT_GE(m.onsetSeconds, 0.05) << who(p) << " swells in";
                EXPECT_GT(m.levelAfter1sDb, -10.0) << who(p) << " sustains";
                break;
            case Category::Organ:
                EXPECT_LE(m.onsetSeconds, 0.03) << who(p) << " speaks at once";
                EXPECT_GT(m.levelAfter1sDb, -6.0) << who(p) << " holds its level";
                EXPECT_GE(m.release40Seconds, 0.0) << who(p);
                EXPECT_LE(m.release40Seconds, 0.3) << who(p) << " stops soon after the key";
                break;
            case Category::Lead: EXPECT_LE(m.onsetSeconds, 0.1) << who(p); break;
            case Category::Brass: EXPECT_LE(m.onsetSeconds, 0.3) << who(p); break;
            case Category::Keys:
            case Category::Pluck:
            case Category::Bell:
                EXPECT_LE(m.onsetSeconds, 0.02) << who(p) << " speaks at once";
                EXPECT_LT(m.levelAfter1sDb, brief(p).category == Category::Pluck ? -20.0 : -3.0)
                    << who(p) << " decays while held";
                break;
            case Category::Bass:
                EXPECT_LE(m.onsetSeconds, 0.02) << who(p) << " speaks at once";
                EXPECT_LT(m.centroidHz, 500.0) << who(p) << " has its weight low";
                break;
            case Category::Kick: EXPECT_LT(m.centroidHz, 200.0) << who(p); break;
            case Category::Snare:
            case Category::Clap:
            case Category::Hat:
                EXPECT_GT(m.noisiness, 0.3) << who(p) << " is noisy";
                EXPECT_GT(m.centroidHz, 2000.0) << who(p) << " is bright";
                break;
            default: break;
        }
    }
}

TEST_F(FactorySounds, DrumsDieAwayWithTheKeyHeld) {
    for (int p = 0; p < kNumDesignedPrograms; ++p) {
        if (!analyse::isOneShot(brief(p))) continue;
        const ProgramRenders& r = renders()[p];
        for (std::size_t t = 0; t < r.takes.size(); ++t) {
            if (r.takes[t].label != "held") continue;
            EXPECT_GE(r.measures[t].decay40Seconds, 0.0) << who(p) << " still sounds at the end";
            EXPECT_LT(r.measures[t].decay40Seconds, r.takes[t].holdSeconds) << who(p) << " rings on while held";
        }
    }
}

TEST_F(FactorySounds, TheOpenHatRingsLongerThanTheClosedOne) {
    int closed = -1, open = -1;
    for (int p = 0; p < kNumDesignedPrograms; ++p)
        if (brief(p).category == Category::Hat) (closed < 0 ? closed : open) = p;
    ASSERT_GE(open, 0);
    EXPECT_GT(first(open).decay40Seconds, 3.0 * first(closed).decay40Seconds);
}

}  // namespace
}  // namespace tolvane
