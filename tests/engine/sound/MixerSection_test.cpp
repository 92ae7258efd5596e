#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/ValueSource.h"
#include "engine/sound/MixerSection.h"
#include "engine/sound/OscillatorSection.h"
#include "tests/engine/ScriptedSignal.h"

namespace tolvane {
namespace {

using testing::ScriptedSignal;

struct MixerRig {
    ModuleGraph graph;
    std::array<std::unique_ptr<Poly<ScriptedSignal>>, 4> sources;
    std::array<std::unique_ptr<Poly<ValueSource>>, 4> levels;
    Poly<Mixer> mixer{graph, 8, kRuleFromInputs};
    MixerRig() {
        for (int i = 0; i < 4; ++i) {
            sources[i] = std::make_unique<Poly<ScriptedSignal>>(graph, 0, kRuleFromInputs, 0.2f + 0.1f * i);
            levels[i] = std::make_unique<Poly<ValueSource>>(graph, 0, kRuleFromInputs, 0.0f);
            mixer.connectInput(sources[i].get(), i);
            mixer.connectInput(levels[i].get(), Mixer::kLevelInput + i);
        }
    }
    void level(int channel, float v) { levels[channel]->at(0).set(v); }
    int renders(int channel) const { return sources[channel]->at(0).renders; }
    float in(int channel) const { return sources[channel]->at(0).level; }
    const float* render(int tick) { return mixer.at(0).update(tick), mixer.at(0).block(); }
};

TEST(Mixer, RendersOnlyChannelsWithLevelAndRampsTheirGains) {
    MixerRig rig;
    for (int tick = 1; tick <= 2; ++tick)
        for (int n = 0; n < 64; ++n) ASSERT_EQ(rig.render(tick)[n], 0.0f);
    rig.level(1, 0.00001f);  // at the threshold: still silent
    rig.render(3);
    for (int i = 0; i < 4; ++i) EXPECT_EQ(rig.renders(i), 0) << "channel " << i;

    rig.level(0, 0.5f);
    rig.level(2, 0.25f);
    const float* out = rig.render(4);
    for (int n = 0; n < 64; ++n) {
        double k = (n + 1) / 64.0;  // gains start from the previous levels, here 0
        ASSERT_NEAR(out[n], k * (0.5 * rig.in(0) + 0.25 * rig.in(2)), 1e-6) << n;
    }
    out = rig.render(5);
    for (int n = 0; n < 64; ++n) ASSERT_NEAR(out[n], 0.5 * rig.in(0) + 0.25 * rig.in(2), 1e-6);
    EXPECT_EQ(rig.renders(0), 2);
    EXPECT_EQ(rig.renders(1), 0);
    EXPECT_EQ(rig.renders(3), 0);
}

TEST(Mixer, AChannelTurnedDownRampsToZeroThenIsNoLongerRendered) {
    MixerRig rig;
    rig.level(3, 0.8f);
    rig.render(1), rig.render(2);
    rig.level(3, 0.0f);
    const float* out = rig.render(3);
    for (int n = 0; n < 64; ++n) ASSERT_NEAR(out[n], 0.8 * (1.0 - (n + 1) / 64.0) * rig.in(3), 1e-6) << n;
    out = rig.render(4);
    EXPECT_EQ(rig.renders(3), 3) << "inactive for a whole block after the ramp";
    for (int n = 0; n < 64; ++n) ASSERT_EQ(out[n], 0.0f);
    // After a gap in the ticks the gains start again from 0.
    rig.level(3, 0.8f);
    rig.render(5);
    EXPECT_NEAR(rig.render(9)[0], 0.8 / 64.0 * rig.in(3), 1e-7);
}

// The colour filter in double precision from the same random draws: y = b w + s, s = b w + a y with
// b = t / (t + 1), a = 1 - 2b, t = tan(pi c / 2), b and a ramped from the previous block's.
struct NoiseModel {
    UniformRandom random;
    double b = 0.0, a = 0.0, s = 0.0;
    static void coefficients(double hz, double& b, double& a) {
        double t = std::tan(M_PI * std::min(0.499, hz / 44100.0) / 2.0);
        b = t / (t + 1.0), a = 1.0 - 2.0 * b;
    }
    void restart(double hz) { s = 0.0, coefficients(hz, b, a); }
    std::array<double, 64> block(double hz) {
        double nb, na;
        coefficients(hz, nb, na);
        std::array<double, 64> out{};
        for (int n = 0; n < 64; ++n) {
            double bk = b + (n + 1) * (nb - b) / 64.0, ak = a + (n + 1) * (na - a) / 64.0, w = random.centred();
            double y = bk * w + s;
            s = bk * w + ak * y;
            out[static_cast<std::size_t>(n)] = y;
        }
        b = nb, a = na;
        return out;
    }
};

TEST(NoiseGenerator, TakesItsCoefficientsAtOnceAfterAResetOrGapAndRampsOtherwise) {
    ModuleGraph graph;
    Poly<ValueSource> colour(graph, 0, kRuleFromInputs, 1000.0f);
    Poly<NoiseGenerator> noise(graph, 1, kRuleFromInputs);
    noise.connectInput(&colour, NoiseGenerator::kColour);
    NoiseModel model;
    model.random = graph.random();
    // The first block, a new colour, a reset, a gap, and a colour above 0.499 of the sample rate.
    struct Step { float hz; int tick; bool restart; } steps[] = {
        {1000.0f, 1, true}, {6000.0f, 2, false}, {300.0f, 4, true}, {3000.0f, 6, true}, {30000.0f, 7, false}};
    for (const Step& step : steps) {
        colour.at(0).set(step.hz);
        if (step.tick == 4) noise.at(0).reset(3);
        if (step.restart) model.restart(step.hz);
        auto expected = model.block(step.hz);
        noise.at(0).update(step.tick);
        for (int n = 0; n < 64; ++n)
            ASSERT_NEAR(noise.at(0).block()[n], expected[static_cast<std::size_t>(n)], 1e-5) << step.tick << " " << n;
        EXPECT_EQ(graph.random().state(), model.random.state()) << "the shared random state is written back";
    }
}

// Two oscillators and the mixing stage for two voices.
struct Stage {
    ModuleGraph graph;
    Poly<ValueSource> frequency{graph, 0, kRuleGraphVoices, 0.01f}, width{graph, 0, kRuleGraphVoices, 0.5f};
    Poly<ValueSource> depth{graph, 0, kRuleGraphVoices, 0.0f};
    std::array<std::unique_ptr<Poly<ValueSource>>, 4> levels;
    OscillatorSection osc1{graph, OscillatorRole::Osc1, &frequency, &width};
    OscillatorSection osc2{graph, OscillatorRole::Osc2, &frequency, &width, &depth};
    std::unique_ptr<MixerSection> mixing;
    Stage() {
        graph.setVoiceCount(2);
        linkOscillators(osc1, osc2);
        std::array<PolyModule*, 4> inputs{};
        for (int i = 0; i < 4; ++i) {
            levels[i] = std::make_unique<Poly<ValueSource>>(graph, 0, kRuleFromInputs, 0.0f);
            inputs[i] = levels[i].get();
        }
        mixing = std::make_unique<MixerSection>(graph, osc1, osc2, inputs);
    }
    void level(int channel, float v) { levels[channel]->at(0).set(v); }
    const float* voice(int v) { return mixing->mixer().at(v).block(); }
    void render(int tick) { mixing->output()->updateInstances(tick); }
    static int lastTick(PolyModule* m) { return m->instance(0)->lastTick(); }
};

TEST(MixerSection, EveryVoiceMixesTheSameNoise) {
    Stage stage;
    stage.mixing->setNoiseColor(2000.0f);
    stage.level(Mixer::kNoise, 1.0f);
    ASSERT_EQ(stage.mixing->mixer().voices(), 2);
    EXPECT_EQ(stage.mixing->noise().voices(), 1);
    for (int tick = 1; tick <= 3; ++tick) {
        stage.render(tick);
        for (int n = 0; n < 64; ++n) ASSERT_EQ(stage.voice(0)[n], stage.voice(1)[n]) << tick << " " << n;
    }
    EXPECT_NE(stage.voice(0)[10], 0.0f);
}

TEST(MixerSection, SilentSourcesAreNotComputedUnlessTheRingModulatorNeedsThem) {
    Stage stage;
    stage.render(1), stage.render(2);
    for (PolyModule* m : {stage.osc1.output(), stage.osc2.output(), static_cast<PolyModule*>(&stage.mixing->ringModulator()),
                          static_cast<PolyModule*>(&stage.mixing->noise())})
        EXPECT_EQ(Stage::lastTick(m), -1);
    stage.level(Mixer::kOsc1, 0.5f);
    stage.render(3);
    EXPECT_EQ(Stage::lastTick(stage.osc1.output()), 3);
    EXPECT_EQ(Stage::lastTick(stage.osc2.output()), -1);
    stage.level(Mixer::kOsc1, 0.0f);
    stage.level(Mixer::kRing, 0.5f);
    stage.render(4), stage.render(5);
    EXPECT_EQ(Stage::lastTick(stage.osc1.output()), 5);
    EXPECT_EQ(Stage::lastTick(stage.osc2.output()), 5);
}

TEST(MixerSection, RingModulatorMultipliesTheSelectedOscillators) {
    Stage stage;
    stage.osc1.setWaveform(kSineHigh);
    stage.osc2.setWaveform(kSineHigh);
    static_cast<WaveGenerator*>(stage.osc1.output()->instance(0))->setPhase(0.2f);
    static_cast<WaveGenerator*>(stage.osc2.output()->instance(0))->setPhase(0.2f);
    stage.level(Mixer::kRing, 1.0f);
    stage.render(1), stage.render(2);
    // Two equal sines of peak 0.5: 0.25 sin^2 = 0.125 (1 - cos 2x), from 0 to 0.25 at twice the frequency.
    double p = 0.2 + 64 * 0.01f;
    for (int n = 0; n < 64; ++n, p += 0.01f)
        ASSERT_NEAR(stage.voice(0)[n], 0.125 * (1.0 - std::cos(4 * M_PI * p)), 2e-6) << n;
    // Its inputs, like the mixer's, follow the selection.
    stage.osc2.setWaveform(kSawLow);
    EXPECT_EQ(stage.mixing->mixer().at(1).input(Mixer::kOsc2), stage.osc2.output()->instance(1));
    stage.render(3);
    const float* a = stage.osc1.output()->instance(0)->block();
    const float* b = stage.osc2.output()->instance(0)->block();
    for (int n = 0; n < 64; ++n) ASSERT_FLOAT_EQ(stage.mixing->ringModulator().at(0).block()[n], a[n] * b[n]);
}

}  // namespace
}  // namespace tolvane
