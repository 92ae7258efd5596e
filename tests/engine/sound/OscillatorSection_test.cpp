#include <cmath>

#include <gtest/gtest.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/ValueSource.h"
#include "engine/sound/OscillatorSection.h"

namespace tolvane {
namespace {

// A consumer of an oscillator's output.
class Probe : public DspModule {
public:
    explicit Probe(ModuleGraph& g) : DspModule(g, OutputKind::Block, 1) {}
};

// Two linked oscillators for four voices.
struct Voices {
    ModuleGraph graph;
    Poly<ValueSource> frequency1{graph, 0, kRuleGraphVoices, 0.01f}, frequency2{graph, 0, kRuleGraphVoices, 0.0137f};
    Poly<ValueSource> width{graph, 0, kRuleGraphVoices, 0.5f}, depth{graph, 0, kRuleGraphVoices, 0.0f};
    OscillatorSection osc1{graph, OscillatorRole::Osc1, &frequency1, &width};
    OscillatorSection osc2{graph, OscillatorRole::Osc2, &frequency2, &width, &depth};
    Poly<Probe> out1{graph, 1, kRuleFromInputs}, out2{graph, 1, kRuleFromInputs};
    Voices() {
        graph.setVoiceCount(4);
        linkOscillators(osc1, osc2);
        osc1.connectOutputTo(&out1, 0);
        osc2.connectOutputTo(&out2, 0);
    }
    static WaveGenerator& at(PolyModule* container, int voice) {
        return static_cast<WaveGenerator&>(*container->instance(voice));
    }
    // Every OSC2 generator's modulator is OSC1's selected generator, voice by voice.
    bool modulatorsFollowOsc1() const {
        for (int i = 0; i < kWaveformCount; ++i)
            for (int v = 0; v < 4; ++v)
                if (osc2.generator(i)->instance(v)->input(WaveGenerator::kModulator) != osc1.output()->instance(v))
                    return false;
        return true;
    }
};

TEST(OscillatorSection, SelectionReroutesTheConsumersAndLeavesEveryOtherGeneratorAlone) {
    Voices v;
    ASSERT_EQ(v.out1.voices(), 4);
    EXPECT_EQ(v.out1.at(3).input(0), v.osc1.generator(kSineMiddle)->instance(3));
    WaveGenerator& sine = Voices::at(v.osc1.generator(kSineMiddle), 2);
    const float sinePhase = sine.phase();
    v.osc1.setWaveform(kSawHigh);
    WaveGenerator& saw = Voices::at(v.osc1.generator(kSawHigh), 2);
    EXPECT_EQ(v.out1.at(2).input(0), &saw);
    EXPECT_TRUE(v.modulatorsFollowOsc1());
    for (int tick = 1; tick <= 3; ++tick) v.out1.updateInstances(tick);
    EXPECT_EQ(saw.lastTick(), 3);
    EXPECT_EQ(sine.lastTick(), -1) << "an unselected generator is not rendered";
    EXPECT_EQ(sine.phase(), sinePhase);

    // Sync takes the same waveform from the synced set; switching back finds the saw as it was left.
    const float sawPhase = saw.phase();
    v.osc1.setSync(true);
    EXPECT_EQ(v.out1.at(1).input(0), v.osc1.generator(kSawHigh, true)->instance(1));
    EXPECT_TRUE(v.modulatorsFollowOsc1());
    EXPECT_EQ(v.osc1.generator(kSawHigh, true)->instance(3)->input(WaveGenerator::kMasterIncrement),
              v.frequency2.instance(3));
    v.out1.updateInstances(4);
    v.osc1.setSync(false);
    EXPECT_EQ(v.out1.at(2).input(0), &saw);
    EXPECT_EQ(saw.phase(), sawPhase);

    v.osc1.setWaveform(99);
    EXPECT_EQ(v.osc1.waveform(), kPulseHigh);
    v.osc2.setSync(true);
    EXPECT_FALSE(v.osc2.sync()) << "OSC2 has no sync";
}

TEST(OscillatorSection, Osc2ModulatesItsPhaseWithOsc1sOutput) {
    Voices v;
    v.osc1.setWaveform(kSineLow);
    v.osc2.setWaveform(kSawLow);
    v.depth.forEach([](ValueSource& s) { s.set(0.3f); });
    WaveGenerator& carrier = Voices::at(v.osc2.output(), 1);
    WaveGenerator& modulator = Voices::at(v.osc1.output(), 1);
    double p = carrier.phase();
    v.out2.updateInstances(1);
    EXPECT_EQ(modulator.lastTick(), 1) << "the modulated generator pulls its modulator";
    for (int n = 0; n < 64; ++n, p += 0.0137f) {
        double q = p + 0.3 * modulator.block()[n];
        ASSERT_NEAR(carrier.block()[n], 0.5 - (q - std::floor(q)), 1e-5) << n;
    }
}

}  // namespace
}  // namespace tolvane
