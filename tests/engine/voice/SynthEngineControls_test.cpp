#include "engine/voice/SynthEngine.h"

#include <cmath>

#include <gtest/gtest.h>

#include "engine/voice/VoiceAllocator.h"

namespace tolvane {
namespace {

struct EngineRig {
    explicit EngineRig(int voices) : allocator(voices, -1), engine(allocator, mappings) {
        engine.setVoiceDetune(0.0f);
    }
    ValueMappings maps;
    EngineMappings mappings{maps.attackTime, maps.decayTime, maps.rate, maps.saturation, maps.delayTime};
    VoiceAllocator allocator;
    SynthEngine engine;
    int tick = 0;

    void noteOn(int key, int velocity) {
        allocator.pushEvent(0, 0x90, static_cast<std::uint8_t>(key), static_cast<std::uint8_t>(velocity));
    }
    void block(int advance = 1) {
        allocator.processEvents(64);
        allocator.beginEvents(0, 0);
        tick += advance;
        engine.render(tick);
        // The audio units pull the targets of audible voices only; read every voice's targets here.
        const ControlTargets& t = engine.controls();
        for (PolyModule* p : {static_cast<PolyModule*>(t.phaseIncrement[0]), static_cast<PolyModule*>(t.phaseIncrement[1]),
                              static_cast<PolyModule*>(t.pulseWidth[0]), static_cast<PolyModule*>(t.pulseWidth[1]),
                              static_cast<PolyModule*>(t.fmDepth), static_cast<PolyModule*>(t.cutoff),
                              static_cast<PolyModule*>(t.resonance), static_cast<PolyModule*>(t.saturationLevel),
                              static_cast<PolyModule*>(t.ampGain)})
            p->updateInstances(tick);
        for (auto* level : t.mixerLevel) level->updateInstances(tick);
    }
    const ControlTargets& c() const { return engine.controls(); }
};

TEST(SynthEngineControls, SharedAndPerVoiceInstancesFollowTheModulationInUse) {
    EngineRig rig(8);
    rig.engine.setLfoMode(0, Lfo::kMono);
    EXPECT_EQ(rig.c().lfo[0]->instancesInUse(), 1);
    EXPECT_EQ(rig.c().envelope[0]->instancesInUse(), 8);
    EXPECT_EQ(rig.c().ampGain->voices(), 8);
    EXPECT_EQ(rig.c().phaseIncrement[0]->voices(), 8);
    EXPECT_EQ(rig.c().cutoff->voices(), 8);
    EXPECT_EQ(rig.c().mixerLevel[0]->voices(), 1) << "a level fed by shared values stays shared";
    EXPECT_EQ(rig.c().saturationLevel->voices(), 1);

    rig.engine.setSlotSource(0, ModSlots::kEnv1);
    rig.engine.setSlotDestination(0, ModSlots::kLfo1Speed);
    EXPECT_EQ(rig.c().lfo[0]->voices(), 8) << "a per-voice envelope on its speed makes LFO1 per voice";
    rig.engine.setSlotDestination(0, ModSlots::kMixerOsc1);
    EXPECT_EQ(rig.c().lfo[0]->voices(), 1);
    EXPECT_EQ(rig.c().mixerLevel[0]->voices(), 8);

    rig.engine.setSlotDestination(0, ModSlots::kLfo1Speed);
    int allocated = rig.c().lfo[0]->instancesAllocated();
    rig.allocator.setVoiceCount(3);
    rig.engine.refreshSlotSources();
    EXPECT_EQ(rig.c().envelope[0]->voices(), 3);
    EXPECT_EQ(rig.c().lfo[0]->voices(), 3);
    EXPECT_EQ(rig.c().lfo[0]->instancesAllocated(), allocated) << "lowering the voice count keeps the instances";
    EXPECT_GE(allocated, kMaxVoices);

    rig.engine.setLfoMode(1, 0);  // Poly
    EXPECT_EQ(rig.c().lfo[1]->voices(), 3);
}

TEST(SynthEngineControls, LfoRouteMovesPitchByTwelveSemitonesAndPulseWidthByAQuarter) {
    EngineRig rig(1);
    rig.engine.setLfoWaveform(0, LfoWaveform::kSquare);
    rig.engine.setLfoMode(0, Lfo::kMono);
    rig.engine.setLfoSpeed(0, 0.6f);
    rig.engine.setOscModConnection(0, 0, 4 * 3 + 2);  // "LFO1 -> Freq + PWM"
    rig.engine.setOscModDepth(0, 0, 0.5f);
    rig.engine.setOscModVelocitySens(0, 0, 0.0f);
    rig.noteOn(64, 90);
    int ups = 0, downs = 0;
    for (int b = 0; b < 400; ++b) {
        rig.block();
        float lfo = rig.c().lfo[0]->instance(0)->value();
        double note = rig.c().phaseIncrement[0]->at(0).note();
        float width = rig.c().pulseWidth[0]->at(0).value();
        ASSERT_NEAR(note, 64.0 + 12.0 * lfo, 1e-3);
        ASSERT_NEAR(width, 0.5f + 0.25f * lfo, 1e-6);
        (lfo > 0.0f ? ups : downs)++;
        EXPECT_NEAR(rig.c().phaseIncrement[1]->at(0).note(), 64.0, 1e-3) << "OSC2 is not routed";
    }
    EXPECT_GT(ups, 50);
    EXPECT_GT(downs, 50);
}

TEST(SynthEngineControls, AmplitudeCombinesEnvelopeVelocityCurveLfoAndModulation) {
    EngineRig rig(2);
    for (int env = 0; env < 2; ++env) {
        rig.engine.setEnvAttack(env, 0.0f);  // skipped
        rig.engine.setEnvDecay(env, 0.0f);   // 0.004 s
    }
    rig.engine.setEnvSustain(0, 1.0f);
    rig.engine.setEnvSustain(1, 0.3f);
    rig.noteOn(60, 127);
    rig.noteOn(62, 64);
    for (int b = 0; b < 5; ++b) rig.block();
    auto gain = [&](int voice) { return rig.c().ampGain->at(voice).value(); };
    EXPECT_FLOAT_EQ(gain(0), 2.0f) << "sensitivity 1: velocity 127 doubles";
    EXPECT_NEAR(gain(1), 64.0 * 2.0 / 127.0, 1e-6);

    rig.engine.setAmpVelocitySens(0.0f);
    rig.block();
    EXPECT_FLOAT_EQ(gain(0), 1.0f);
    EXPECT_FLOAT_EQ(gain(1), 1.0f) << "no sensitivity: every velocity gives 1";

    rig.engine.setAmpVelocitySens(0.5f);
    rig.engine.setAmpModConnection(1);  // ENV2 / LFO1
    rig.block();
    EXPECT_NEAR(gain(1), 0.3 * (0.5 + 64.0 / 127.0), 1e-6);

    rig.engine.setAmpModConnection(0);
    rig.engine.setAmpVelocitySens(0.0f);
    rig.engine.setLfoWaveform(0, LfoWaveform::kSquare);
    rig.engine.setLfoMode(0, Lfo::kMono);
    rig.engine.setAmpLfoDepth(1.0f);
    bool sawClosed = false, sawDoubled = false;
    for (int b = 0; b < 1500; ++b) {
        rig.block();
        float lfo = rig.c().lfo[0]->instance(0)->value();
        ASSERT_FLOAT_EQ(gain(0), lfo > 0.0f ? 2.0f : 0.0f) << "the LFO gates the voice but never inverts it";
        (lfo > 0.0f ? sawDoubled : sawClosed) = true;
    }
    EXPECT_TRUE(sawClosed && sawDoubled);

    rig.engine.setAmpLfoDepth(0.0f);
    rig.engine.setSlotSource(0, ModSlots::kConstant);
    rig.engine.setSlotDepth(0, -0.25f);
    rig.engine.setSlotDestination(0, ModSlots::kAmplifier);
    rig.block(2);
    EXPECT_FLOAT_EQ(gain(0), 0.75f);
    rig.engine.setSlotDepth(0, -3.0f);
    rig.block(2);
    EXPECT_EQ(gain(0), 0.0f);
}

// Every destination sum reaches the unit it is meant for: a constant routed with depth 0.1 moves it
// by exactly what its formula says.
TEST(SynthEngineControls, EveryDestinationReachesItsTarget) {
    EngineRig rig(1);
    rig.engine.setFilterResonance(0.5f);
    for (int ch = 0; ch < 4; ++ch) rig.engine.setMixerLevel(ch, 0.5f);
    for (int env = 0; env < 2; ++env) {
        rig.engine.setEnvAttack(env, 0.0f);
        rig.engine.setEnvDecay(env, 0.0f);
        rig.engine.setEnvSustain(env, 0.5f);
    }
    rig.noteOn(60, 127);
    rig.block();

    SynthEngine& e = rig.engine;
    const ControlTargets& c = rig.c();
    // What a constant routed with depth d = 0.1 does to the target: add k d, or multiply by k^d
    // (times and rates), or by 1 + d (the amplifier). Oscillator frequencies and the cutoff are read as notes.
    enum Change { kAdd, kPower, kGain };
    const double d = 0.1;
    const struct { int destination; PolyModule* target; Change change; double k; } probes[] = {
        {1, c.pulseWidth[0], kAdd, 0.5},           {2, c.phaseIncrement[0], kAdd, 24.0},
        {3, c.fmDepth, kAdd, 8.0},                 {4, c.pulseWidth[1], kAdd, 0.5},
        {5, c.phaseIncrement[1], kAdd, 24.0},      {6, c.mixerLevel[0], kAdd, 1.0},
        {7, c.mixerLevel[1], kAdd, 1.0},           {8, c.mixerLevel[2], kAdd, 1.0},
        {9, c.mixerLevel[3], kAdd, 1.0},           {10, c.saturationLevel, kPower, 40.0},
        {11, c.cutoff, kAdd, 64.0},                {12, c.resonance, kAdd, 0.5},
        {13, c.ampGain, kGain, 0.0},               {14, &e.envelope(0).attackTime(), kPower, 10000.0},
        {15, &e.envelope(0).decayTime(), kPower, 10000.0}, {16, &e.envelope(0).sustainLevel(), kAdd, 1.0},
        {17, &e.envelope(0).releaseTime(), kPower, 10000.0}, {18, &e.envelope(1).attackTime(), kPower, 10000.0},
        {19, &e.envelope(1).decayTime(), kPower, 10000.0}, {20, &e.envelope(1).sustainLevel(), kAdd, 1.0},
        {21, &e.envelope(1).releaseTime(), kPower, 10000.0}, {22, &e.lfo(0).freeRate(), kPower, 2500.0},
        {23, &e.lfo(0).phaseOffset(), kAdd, 1.0},  {24, &e.lfo(1).freeRate(), kPower, 2500.0},
        {25, &e.lfo(1).phaseOffset(), kAdd, 1.0},
    };
    e.setSlotSource(0, ModSlots::kConstant);
    e.setSlotDepth(0, static_cast<float>(d));
    for (const auto& p : probes) {
        SCOPED_TRACE(p.destination);
        auto read = [&] {
            p.target->updateInstances(rig.tick);
            DspModule* m = p.target->instance(0);
            if (auto* f = dynamic_cast<OscFrequency*>(m)) return static_cast<double>(f->note());
            if (auto* t = dynamic_cast<CutoffTarget*>(m)) return static_cast<double>(t->note());
            return static_cast<double>(m->value());
        };
        e.setSlotDestination(0, 0);
        rig.block(2);
        const double before = read();
        e.setSlotDestination(0, p.destination);
        rig.block(2);
        const double expected = p.change == kAdd ? before + p.k * d
                                : p.change == kPower ? before * std::pow(p.k, d) : before * (1.0 + d);
        EXPECT_NEAR(read(), expected, std::fabs(expected) * 2e-4 + 1e-5);
    }
}

TEST(SynthEngineControls, FilterAndOscillatorSettersReachTheirTargets) {
    EngineRig rig(1);
    rig.engine.setOsc2FmDepth(0.25f);
    rig.engine.setOscPitch(1, -12.0f);
    rig.engine.setOscDetune(1, 0.5f);
    rig.engine.setOscKeyFollow(1, 2.0f);
    rig.engine.setFilterCutoff(100.0f);
    rig.engine.setFilterKeyFollow(0.5f);
    rig.engine.setSaturationLevel(0.25f);
    rig.noteOn(70, 100);
    rig.block();
    const ControlTargets& c = rig.c();
    EXPECT_FLOAT_EQ(c.fmDepth->at(0).value(), 2.0f);
    EXPECT_NEAR(c.phaseIncrement[1]->at(0).note(), 64.0 + 2.0 * 6.0 - 12.0 + 0.5, 1e-4);
    EXPECT_NEAR(c.cutoff->at(0).note(), 100.0 + 0.5 * 6.0, 1e-4);
    EXPECT_NEAR(c.saturationLevel->at(0).value(), 0.1 * std::pow(40.0, 0.25), 1e-5);
    double f = 440.0 * std::pow(2.0, (70.0 - 69.0) / 12.0) / 44100.0;
    EXPECT_NEAR(c.phaseIncrement[0]->at(0).value(), f, f * 6e-4);

    rig.engine.setFilterModConnection(0, 4 + 1);  // ENV2 -> Frequency
    rig.engine.setFilterModDepth(0, 0.5f);
    rig.engine.setEnvAttack(1, 0.0f);
    rig.engine.setEnvSustain(1, 1.0f);
    rig.noteOn(70, 100);
    rig.block(2);
    EXPECT_NEAR(c.cutoff->at(0).note(), 103.0 + 64.0 * 0.5, 1e-4);
}

TEST(SynthEngineControls, ResetSilencesEnvelopesAndMakesGlidesJump) {
    EngineRig rig(1);
    rig.engine.setPortamentoTime(5.0f);
    rig.allocator.setPortamento(true);
    rig.noteOn(60, 100);
    for (int b = 0; b < 10; ++b) rig.block();
    ASSERT_GT(rig.c().envelope[0]->instance(0)->value(), 0.0f);
    rig.noteOn(72, 100);
    rig.block();
    rig.block();
    ASSERT_LT(rig.c().glide->instance(0)->value(), 71.0f);
    rig.engine.reset(0);
    rig.tick = 0;
    EXPECT_EQ(rig.c().envelope[0]->instance(0)->value(), 0.0f);
    rig.block();
    EXPECT_FLOAT_EQ(rig.c().glide->instance(0)->value(), 72.0f);
}

}  // namespace
}  // namespace tolvane
