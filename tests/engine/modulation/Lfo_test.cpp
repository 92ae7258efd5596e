#include "engine/modulation/Lfo.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/modulation/ValueContainers.h"
#include "engine/voice/NoteSources.h"
#include "engine/voice/VoiceAllocator.h"
#include "dsp/Mappings.h"

namespace tolvane {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr double kBlockRate = 44100.0 / 64.0;

// A waveform unit read at chosen points: rate 0, phase 0, the point given as the phase offset.
struct ShapeRig {
    ModuleGraph graph;
    Poly<ValueSource> rate{graph, 0, kRuleFromInputs, 0.0f};
    Poly<ValueSource> offset{graph, 0, kRuleFromInputs, 0.0f};
    Poly<ValueSource> trigger{graph, 0, kRuleFromInputs, 0.0f};
    Poly<LfoWaveform> wave{graph, LfoWaveform::kNumInputs, kRuleFromInputs};
    int tick = 0;
    ShapeRig() {
        wave.connectInput(&rate, LfoWaveform::kRate);
        wave.connectInput(&offset, LfoWaveform::kPhaseOffset);
        wave.connectInput(&trigger, LfoWaveform::kTrigger);
        wave.at(0).setPhase(0.0f);
    }
    float at(float x, int mask) {
        wave.at(0).setMask(mask);
        setValue(offset, x);
        wave.updateInstances(++tick);
        return wave.at(0).value();
    }
};

double sine(double x) { return std::sin(2.0 * kPi * x); }
double triangle(double x) { return x < 0.5 ? 4.0 * x - 1.0 : 3.0 - 4.0 * x; }
double saw(double x) { return 1.0 - 2.0 * x; }
double square(double x) { return x < 0.5 ? 1.0 : -1.0; }

TEST(Lfo, EachWaveformAndMixesOfThemAreTheMeanOfTheirShapes) {
    ShapeRig rig;
    const float points[] = {0.0f, 0.1f, 0.25f, 0.4f, 0.5f, 0.625f, 0.75f, 0.9f, 0.99f};
    for (float x : points) {
        SCOPED_TRACE(x);
        EXPECT_EQ(rig.at(x, 0), 0.0f) << "no waveform selected";
        EXPECT_NEAR(rig.at(x, LfoWaveform::kSine), sine(x), 2e-6);
        EXPECT_NEAR(rig.at(x, LfoWaveform::kTriangle), triangle(x), 1e-6);
        EXPECT_NEAR(rig.at(x, LfoWaveform::kSawtooth), saw(x), 1e-6);
        EXPECT_EQ(rig.at(x, LfoWaveform::kSquare), square(x));
        EXPECT_NEAR(rig.at(x, LfoWaveform::kSine | LfoWaveform::kSquare), (sine(x) + square(x)) / 2.0, 2e-6);
        EXPECT_NEAR(rig.at(x, LfoWaveform::kSine | LfoWaveform::kTriangle | LfoWaveform::kSawtooth | LfoWaveform::kSquare),
                    (sine(x) + triangle(x) + saw(x) + square(x)) / 4.0, 2e-6);
    }
    // The offset wraps: 1.25 and -0.75 read the same point as 0.25.
    EXPECT_NEAR(rig.at(1.25f, LfoWaveform::kSawtooth), saw(0.25), 1e-6);
    EXPECT_NEAR(rig.at(-0.75f, LfoWaveform::kSawtooth), saw(0.25), 1e-6);
}

TEST(Lfo, RandomShapesHoldOnePointPerCycleAndGlideToTheNext) {
    ShapeRig rig;
    rig.wave.at(0).setMask(LfoWaveform::kSampleHold);
    setValue(rig.rate, static_cast<float>(kBlockRate / 10.0));  // ten blocks per cycle
    std::vector<float> held, glided;
    for (int b = 0; b < 60; ++b) {
        rig.wave.updateInstances(++rig.tick);
        held.push_back(rig.wave.at(0).value());
    }
    for (int cycle = 0; cycle < 5; ++cycle) {
        float first = held[static_cast<std::size_t>(cycle * 10 + 1)];
        EXPECT_GE(first, -1.0f);
        EXPECT_LT(first, 1.0f);
        for (int b = 2; b < 9; ++b) EXPECT_EQ(held[static_cast<std::size_t>(cycle * 10 + b)], first) << "held within a cycle";
    }
    EXPECT_NE(held[1], held[21]);

    // The smoothed random moves linearly within a cycle towards the value held in the next one.
    ShapeRig smooth;
    smooth.wave.at(0).setMask(LfoWaveform::kRandom | LfoWaveform::kSampleHold);
    int i0 = smooth.wave.at(0).readIndex();
    float a = smooth.wave.at(0).ringValue(i0), b = smooth.wave.at(0).ringValue(i0 + 1);
    for (float x : {0.0f, 0.3f, 0.8f}) EXPECT_NEAR(smooth.at(x, LfoWaveform::kRandom), a + (b - a) * x, 1e-6);
    EXPECT_NEAR(smooth.at(0.5f, LfoWaveform::kRandom | LfoWaveform::kSampleHold), (a + (a + b) / 2.0f) / 2.0f, 1e-6);
    EXPECT_NEAR(smooth.at(1.0f, LfoWaveform::kSampleHold), b, 1e-6) << "the next cycle holds where the glide ended";
}

// An LFO on a four-voice allocator with its note sources, modulation inputs at zero.
struct LfoRig {
    VoiceAllocator allocator{4, -1};
    ValueMappings maps;
    NoteSourceContainer<TriggerSource> trigger{allocator};
    Poly<LatestTriggerSource> latest{allocator, 0, kRuleFromInputs};
    Poly<ValueSource> zero{allocator, 0, kRuleFromInputs, 0.0f};
    Lfo lfo{allocator, trigger, latest, maps.rate, &zero, &zero};
    int tick = 0;

    void block(int noteOn = -1) {
        allocator.beginEvents(0, 0);
        if (noteOn >= 0) allocator.pushEvent(0, 0x90, static_cast<std::uint8_t>(noteOn), 100);
        allocator.processEvents(64);
        lfo.output().updateInstances(++tick);
    }
    float rate(int voice = 0) const { return lfo.jitter().at(voice).value(); }
    float phase(int voice) const { return lfo.output().at(voice).phase(); }
};

TEST(Lfo, TempoSyncLocksTheRateToWholeNoteDivisionsOrWithoutTempoRunsFree) {
    LfoRig rig;
    rig.lfo.setMode(Lfo::kTempoSync);
    EXPECT_EQ(rig.lfo.tempo(), 120.0f) << "120 until the host reports a tempo";
    struct Case { int index; double hz; };
    for (Case c : {Case{12, 0.5}, Case{10, 1.0 / 3.0}, Case{0, 120.0 / 240.0 / 16.0}, Case{30, 64.0 * 0.5}}) {
        SCOPED_TRACE(c.index);
        rig.lfo.setSpeed((c.index + 0.5f) / 31.0f);
        EXPECT_EQ(rig.lfo.divisionInUse(), c.index);
        rig.block();
        EXPECT_NEAR(rig.rate(), c.hz, c.hz * 0.001 + 1e-7);
    }
    EXPECT_EQ(Lfo::divisionIndex(1.0f), 30);
    EXPECT_EQ(Lfo::divisionIndex(0.0f), 0);

    // At tempo 90 "1" (index 12) takes 240/90 s per cycle, and the phase moves on by that rate.
    rig.lfo.setTempo(90.0f);
    rig.lfo.setSpeed(12.5f / 31.0f);
    rig.block();
    const float start = rig.phase(0);
    for (int b = 0; b < 100; ++b) rig.block();
    EXPECT_NEAR(rig.rate(), 90.0 / 240.0, 0.375e-3);
    EXPECT_NEAR(std::fmod(rig.phase(0) - start + 1.0f, 1.0f), 100 * (90.0 / 240.0) / kBlockRate, 1e-5);

    // Without a host tempo a tempo-synced LFO runs at its free rate.
    rig.lfo.setSpeed(0.25f);
    rig.lfo.setTempo(-1.0f);
    EXPECT_EQ(rig.lfo.divisionInUse(), -1);
    rig.block();
    double free = 0.02 * std::pow(2500.0, 0.25);
    EXPECT_NEAR(rig.rate(), free, free * 0.0011);
    rig.lfo.setTempo(120.0f);
    EXPECT_EQ(rig.lfo.divisionInUse(), 7);
    rig.block();
    EXPECT_NEAR(rig.rate(), 0.33333334 * 0.5, 0.5 * 0.0011);
}

TEST(Lfo, TriggerRestartsTheSharedLfoOnEveryNoteAndAPolyLfoOnlyWithItsVoice) {
    LfoRig mono;
    mono.lfo.setMode(Lfo::kMono | Lfo::kTrigger);
    mono.lfo.setWaveform(LfoWaveform::kSawtooth);
    mono.lfo.setPhase(0.25f);
    for (int note : {60, 62, 64}) {
        for (int b = 0; b < 37; ++b) mono.block();
        mono.block(note);
        EXPECT_NEAR(mono.lfo.output().at(0).value(), saw(0.25), 1e-6) << "the first block after a trigger reads the offset";
    }

    LfoRig poly;
    poly.lfo.setMode(Lfo::kTrigger);
    poly.lfo.setWaveform(LfoWaveform::kSawtooth);
    for (int b = 0; b < 10; ++b) poly.block();
    float other = poly.phase(1);
    poly.block(60);  // takes voice 0
    float step = poly.rate(1) / static_cast<float>(kBlockRate);
    EXPECT_NEAR(poly.lfo.output().at(0).value(), 1.0f, 1e-6) << "voice 0 restarted at phase 0";
    EXPECT_NEAR(poly.phase(1), std::fmod(other + step, 1.0f), 1e-5) << "voice 1 ran on";
    EXPECT_NEAR(poly.phase(0), step, 1e-3);

    // Switching the trigger off scatters the phases again.
    poly.lfo.setMode(0);
    poly.block();
    EXPECT_GT(std::fabs(poly.phase(0) - poly.phase(2)) + std::fabs(poly.phase(1) - poly.phase(3)), 0.0f);
}

}  // namespace
}  // namespace tolvane
