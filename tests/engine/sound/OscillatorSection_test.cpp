#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/ValueSource.h"
#include "engine/sound/OscillatorSection.h"

namespace tolvane {
namespace {

// A consumer that copies its audio input.
class Probe : public DspModule {
public:
    explicit Probe(ModuleGraph& g) : DspModule(g, OutputKind::Block, 1) {}
    void compute() override { std::copy(inputBlock(0), inputBlock(0) + blockSize_, block_.begin()); }
};

// Two linked oscillators for four voices, fed by per-voice value sources.
struct Voices {
    static constexpr int kVoices = 4;
    ModuleGraph graph;
    Poly<ValueSource> frequency1{graph, 0, kRuleGraphVoices, 0.01f};
    Poly<ValueSource> frequency2{graph, 0, kRuleGraphVoices, 0.0137f};
    Poly<ValueSource> width{graph, 0, kRuleGraphVoices, 0.5f};
    Poly<ValueSource> depth{graph, 0, kRuleGraphVoices, 0.0f};
    OscillatorSection osc1{graph, OscillatorRole::Osc1, &frequency1, &width};
    OscillatorSection osc2{graph, OscillatorRole::Osc2, &frequency2, &width, &depth};
    Poly<Probe> out1{graph, 1, kRuleFromInputs};
    Poly<Probe> out2{graph, 1, kRuleFromInputs};

    Voices() {
        graph.setVoiceCount(kVoices);
        linkOscillators(osc1, osc2);
        osc1.connectOutputTo(&out1, 0);
        osc2.connectOutputTo(&out2, 0);
    }
    static WaveGenerator& generator(PolyModule* container, int voice) {
        return static_cast<WaveGenerator&>(*container->instance(voice));
    }
};

TEST(OscillatorSection, SelectionReroutesTheConsumersAndLeavesEveryOtherGeneratorAlone) {
    Voices v;
    ASSERT_EQ(v.out1.voices(), Voices::kVoices);
    EXPECT_EQ(v.osc1.waveform(), kSineMiddle);
    for (int voice = 0; voice < Voices::kVoices; ++voice)
        EXPECT_EQ(v.out1.at(voice).input(0), v.osc1.generator(kSineMiddle)->instance(voice));

    WaveGenerator& sine = Voices::generator(v.osc1.generator(kSineMiddle), 2);
    const float sinePhase = sine.phase();
    v.osc1.setWaveform(kSawHigh);
    WaveGenerator& saw = Voices::generator(v.osc1.generator(kSawHigh), 2);
    EXPECT_EQ(v.out1.at(2).input(0), &saw);
    for (int tick = 1; tick <= 3; ++tick) v.out1.updateInstances(tick);
    EXPECT_EQ(saw.lastTick(), 3);
    EXPECT_EQ(sine.lastTick(), -1) << "an unselected generator is not rendered";
    EXPECT_EQ(sine.phase(), sinePhase);
    for (int n = 0; n < 64; ++n) ASSERT_EQ(v.out1.at(2).block()[n], saw.block()[n]);

    // Sync picks the same waveform from the synced set; switching back finds the free-running saw as
    // it was left.
    const float sawPhase = saw.phase();
    v.osc1.setSync(true);
    EXPECT_EQ(v.out1.at(1).input(0), v.osc1.generator(kSawHigh, true)->instance(1));
    v.out1.updateInstances(4);
    v.osc1.setSync(false);
    EXPECT_EQ(v.out1.at(2).input(0), &saw);
    EXPECT_EQ(saw.phase(), sawPhase);

    // Out-of-range indices are clamped; OSC2 has no sync.
    v.osc1.setWaveform(99);
    EXPECT_EQ(v.osc1.waveform(), kPulseHigh);
    v.osc1.setWaveform(-3);
    EXPECT_EQ(v.osc1.waveform(), kSineLow);
    v.osc2.setSync(true);
    EXPECT_FALSE(v.osc2.sync());
}

TEST(OscillatorSection, LinkingGivesOsc1ItsSyncMasterAndOsc2ItsModulator) {
    Voices v;
    auto checkModulators = [&](const char* when) {
        for (int i = 0; i < kWaveformCount; ++i)
            for (int voice = 0; voice < Voices::kVoices; ++voice)
                ASSERT_EQ(v.osc2.generator(i)->instance(voice)->input(WaveGenerator::kModulator),
                          v.osc1.output()->instance(voice))
                    << when << ": OSC2 waveform " << i << " voice " << voice;
    };
    checkModulators("initially");
    v.osc1.setWaveform(kTriangleLow);
    checkModulators("after OSC1's waveform changed");
    v.osc1.setSync(true);
    checkModulators("after OSC1's sync changed");
    v.osc2.setWaveform(kPulseMiddle);
    checkModulators("after OSC2's waveform changed");
    for (int i = 0; i < kWaveformCount; ++i)
        EXPECT_EQ(v.osc1.generator(i, true)->instance(3)->input(WaveGenerator::kMasterIncrement), v.frequency2.instance(3));
}

TEST(OscillatorSection, Osc2ModulatesItsPhaseWithOsc1sOutput) {
    Voices v;
    v.osc1.setWaveform(kSineLow);
    v.osc2.setWaveform(kSawLow);
    const float depth = 0.3f;
    v.depth.forEach([depth](ValueSource& s) { s.set(depth); });
    WaveGenerator& carrier = Voices::generator(v.osc2.output(), 1);
    WaveGenerator& modulator = Voices::generator(v.osc1.output(), 1);
    double p = carrier.phase();
    v.out2.updateInstances(1);
    EXPECT_EQ(modulator.lastTick(), 1) << "the modulator is pulled by the modulated generator";
    for (int n = 0; n < 64; ++n, p += 0.0137f) {
        double q = p + depth * modulator.block()[n];
        ASSERT_NEAR(v.out2.at(1).block()[n], 0.5 - (q - std::floor(q)), 1e-5) << n;
    }
}

}  // namespace
}  // namespace tolvane
