#include <algorithm>
#include <array>
#include <cmath>
#include <memory>

#include <gtest/gtest.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/ValueSource.h"
#include "engine/sound/MixerSection.h"
#include "engine/sound/OscillatorSection.h"

namespace tolvane {
namespace {

// A constant audio block that counts its renders.
class CountingSource : public DspModule {
public:
    CountingSource(ModuleGraph& g, float v) : DspModule(g, OutputKind::Block, 0), level(v) {}
    void compute() override {
        ++renders;
        std::fill(block_.begin(), block_.end(), level);
    }
    float level;
    int renders = 0;
};

struct MixerRig {
    ModuleGraph graph;
    std::array<std::unique_ptr<Poly<CountingSource>>, 4> sources;
    std::array<std::unique_ptr<Poly<ValueSource>>, 4> levels;
    Poly<Mixer> mixer{graph, 8, kRuleFromInputs};

    MixerRig() {
        const float values[] = {0.2f, 0.3f, 0.4f, 0.5f};
        for (int i = 0; i < 4; ++i) {
            sources[i] = std::make_unique<Poly<CountingSource>>(graph, 0, kRuleFromInputs, values[i]);
            levels[i] = std::make_unique<Poly<ValueSource>>(graph, 0, kRuleFromInputs, 0.0f);
            mixer.connectInput(sources[i].get(), i);
            mixer.connectInput(levels[i].get(), Mixer::kLevelInput + i);
        }
    }
    void setLevel(int channel, float v) { levels[channel]->at(0).set(v); }
    int renders(int channel) const { return sources[channel]->at(0).renders; }
    float value(int channel) const { return sources[channel]->at(0).level; }
    const float* render(int tick) {
        mixer.at(0).update(tick);
        return mixer.at(0).block();
    }
};

TEST(Mixer, NothingIsRenderedWhileEveryLevelStaysAtZero) {
    MixerRig rig;
    for (int tick = 1; tick <= 2; ++tick) {
        const float* out = rig.render(tick);
        for (int n = 0; n < 64; ++n) ASSERT_EQ(out[n], 0.0f);
    }
    for (int i = 0; i < 4; ++i) EXPECT_EQ(rig.renders(i), 0) << "channel " << i;
    // A level at the silence threshold still counts as silent.
    rig.setLevel(1, 0.00001f);
    rig.render(3);
    EXPECT_EQ(rig.renders(1), 0);
}

TEST(Mixer, SumsOnlyTheChannelsWithLevelWithGainsRampedFromTheLastBlock) {
    MixerRig rig;
    rig.setLevel(0, 0.5f);
    rig.setLevel(2, 0.25f);
    const float* out = rig.render(1);
    for (int n = 0; n < 64; ++n) {
        double k = (n + 1) / 64.0;  // a new mixer's gains start at 0
        ASSERT_NEAR(out[n], 0.5 * k * rig.value(0) + 0.25 * k * rig.value(2), 1e-6) << n;
    }
    out = rig.render(2);
    for (int n = 0; n < 64; ++n) ASSERT_NEAR(out[n], 0.5 * rig.value(0) + 0.25 * rig.value(2), 1e-6);
    EXPECT_EQ(rig.renders(0), 2);
    EXPECT_EQ(rig.renders(1), 0);
    EXPECT_EQ(rig.renders(2), 2);
    EXPECT_EQ(rig.renders(3), 0);
}

TEST(Mixer, AChannelTurnedDownRampsToZeroThenIsNoLongerRendered) {
    MixerRig rig;
    rig.setLevel(3, 0.8f);
    rig.render(1);
    rig.render(2);
    rig.setLevel(3, 0.0f);
    const float* out = rig.render(3);
    for (int n = 0; n < 64; ++n) ASSERT_NEAR(out[n], 0.8 * (1.0 - (n + 1) / 64.0) * rig.value(3), 1e-6) << n;
    EXPECT_EQ(out[63], 0.0f);
    EXPECT_EQ(rig.renders(3), 3);
    out = rig.render(4);
    EXPECT_EQ(rig.renders(3), 3) << "inactive for a whole block after the ramp";
    for (int n = 0; n < 64; ++n) ASSERT_EQ(out[n], 0.0f);

    // After a gap in the ticks the gains start again from 0.
    rig.setLevel(3, 0.8f);
    rig.render(5);
    out = rig.render(9);
    EXPECT_NEAR(out[0], 0.8 / 64.0 * rig.value(3), 1e-7);
}

// The colour filter computed independently in double precision from the same random draws.
struct NoiseModel {
    UniformRandom random;
    double b = 0.0, a = 0.0, s = 0.0;
    static void coefficients(double colour, double rate, double& b, double& a) {
        double c = std::min(0.499, colour / rate);
        double t = std::tan(M_PI * c / 2.0);
        b = t / (t + 1.0);
        a = 1.0 - 2.0 * b;
    }
    // One block toward the coefficients of a colour, ramping from the current ones.
    std::array<double, 64> block(double colour, double rate) {
        double nb, na;
        coefficients(colour, rate, nb, na);
        std::array<double, 64> out{};
        for (int n = 0; n < 64; ++n) {
            double bk = b + (n + 1) * (nb - b) / 64.0;
            double ak = a + (n + 1) * (na - a) / 64.0;
            double w = random.centred();
            double y = bk * w + s;
            s = bk * w + ak * y;
            out[static_cast<std::size_t>(n)] = y;
        }
        b = nb;
        a = na;
        return out;
    }
};

TEST(NoiseGenerator, TakesItsFirstCoefficientsAtOnceThenRampsTowardNewOnes) {
    ModuleGraph graph;
    Poly<ValueSource> colour(graph, 0, kRuleFromInputs, 1000.0f);
    Poly<NoiseGenerator> noise(graph, 1, kRuleFromInputs);
    noise.connectInput(&colour, NoiseGenerator::kColour);
    NoiseModel model;
    model.random = graph.random();
    NoiseModel::coefficients(1000.0, 44100.0, model.b, model.a);  // no ramp in the first block

    auto expected = model.block(1000.0, 44100.0);
    noise.at(0).update(1);
    for (int n = 0; n < 64; ++n) ASSERT_NEAR(noise.at(0).block()[n], expected[static_cast<std::size_t>(n)], 1e-6) << n;

    colour.at(0).set(6000.0f);
    expected = model.block(6000.0, 44100.0);
    noise.at(0).update(2);
    for (int n = 0; n < 64; ++n) ASSERT_NEAR(noise.at(0).block()[n], expected[static_cast<std::size_t>(n)], 1e-5) << n;
    EXPECT_EQ(graph.random().state(), model.random.state()) << "the shared random state is written back";

    // After a reset: the filter state is cleared and the next block takes the coefficients at once.
    noise.at(0).reset(3);
    colour.at(0).set(300.0f);
    model.s = 0.0;
    NoiseModel::coefficients(300.0, 44100.0, model.b, model.a);
    expected = model.block(300.0, 44100.0);
    noise.at(0).update(4);
    for (int n = 0; n < 64; ++n) ASSERT_NEAR(noise.at(0).block()[n], expected[static_cast<std::size_t>(n)], 1e-5) << n;

    // A skipped block does the same.
    colour.at(0).set(3000.0f);
    model.s = 0.0;
    NoiseModel::coefficients(3000.0, 44100.0, model.b, model.a);
    expected = model.block(3000.0, 44100.0);
    noise.at(0).update(6);
    for (int n = 0; n < 64; ++n) ASSERT_NEAR(noise.at(0).block()[n], expected[static_cast<std::size_t>(n)], 1e-5) << n;
}

// Lag-one autocorrelation of a long run of noise at a colour.
double lagOneCorrelation(float colour) {
    ModuleGraph graph;
    Poly<ValueSource> source(graph, 0, kRuleFromInputs, colour);
    Poly<NoiseGenerator> noise(graph, 1, kRuleFromInputs);
    noise.connectInput(&source, NoiseGenerator::kColour);
    double sumProduct = 0.0, sumSquare = 0.0, previous = 0.0;
    for (int tick = 0; tick < 400; ++tick) {
        noise.at(0).update(tick);
        for (int n = 0; n < 64; ++n) {
            double y = noise.at(0).block()[n];
            sumProduct += y * previous;
            sumSquare += y * y;
            previous = y;
        }
    }
    return sumProduct / sumSquare;
}

TEST(NoiseGenerator, ColourDarkensTheNoiseAndIsHeldBelowHalfTheSampleRate) {
    EXPECT_GT(lagOneCorrelation(100.0f), 0.95) << "a low colour gives dark noise";
    // At the top the filter is nearly the two-point average (w[n] + w[n-1]) / 2: correlation one half.
    EXPECT_NEAR(lagOneCorrelation(0.499f * 44100.0f), 0.5, 0.03);
    // Colours at and above 0.499 of the sample rate sound the same.
    ModuleGraph a, b;
    Poly<ValueSource> top(a, 0, kRuleFromInputs, 0.499f * 44100.0f), above(b, 0, kRuleFromInputs, 30000.0f);
    Poly<NoiseGenerator> na(a, 1, kRuleFromInputs), nb(b, 1, kRuleFromInputs);
    na.connectInput(&top, 0);
    nb.connectInput(&above, 0);
    for (int tick = 1; tick <= 3; ++tick) {
        na.at(0).update(tick);
        nb.at(0).update(tick);
        for (int n = 0; n < 64; ++n) ASSERT_EQ(na.at(0).block()[n], nb.at(0).block()[n]);
    }
}

// Two oscillators and the mixing stage for two voices, with shared level sources.
struct Stage {
    ModuleGraph graph;
    Poly<ValueSource> frequency1{graph, 0, kRuleGraphVoices, 0.01f};
    Poly<ValueSource> frequency2{graph, 0, kRuleGraphVoices, 0.01f};
    Poly<ValueSource> width{graph, 0, kRuleGraphVoices, 0.5f};
    Poly<ValueSource> depth{graph, 0, kRuleGraphVoices, 0.0f};
    std::array<std::unique_ptr<Poly<ValueSource>>, 4> levels;
    OscillatorSection osc1{graph, OscillatorRole::Osc1, &frequency1, &width};
    OscillatorSection osc2{graph, OscillatorRole::Osc2, &frequency2, &width, &depth};
    std::unique_ptr<MixerSection> mixing;

    Stage() {
        graph.setVoiceCount(2);
        linkOscillators(osc1, osc2);
        std::array<PolyModule*, 4> levelInputs{};
        for (int i = 0; i < 4; ++i) {
            levels[i] = std::make_unique<Poly<ValueSource>>(graph, 0, kRuleFromInputs, 0.0f);
            levelInputs[i] = levels[i].get();
        }
        mixing = std::make_unique<MixerSection>(graph, osc1, osc2, levelInputs);
    }
    void setLevel(int channel, float v) { levels[channel]->at(0).set(v); }
    const float* voice(int v) { return mixing->mixer().at(v).block(); }
    void render(int tick) { mixing->output()->updateInstances(tick); }
};

TEST(MixerSection, EveryVoiceMixesTheSameNoise) {
    Stage stage;
    stage.mixing->setNoiseColor(2000.0f);
    stage.setLevel(Mixer::kNoise, 1.0f);
    ASSERT_EQ(stage.mixing->mixer().voices(), 2);
    EXPECT_EQ(stage.mixing->noise().voices(), 1) << "one noise generator serves every voice";
    for (int tick = 1; tick <= 3; ++tick) {
        stage.render(tick);
        double energy = 0.0;
        for (int n = 0; n < 64; ++n) {
            ASSERT_EQ(stage.voice(0)[n], stage.voice(1)[n]) << "tick " << tick << " sample " << n;
            energy += stage.voice(0)[n] * stage.voice(0)[n];
        }
        EXPECT_GT(energy, 0.0);
    }
}

TEST(MixerSection, SilentSourcesAreNotComputedUnlessTheRingModulatorNeedsThem) {
    Stage stage;
    auto lastTick = [](PolyModule* m) { return m->instance(0)->lastTick(); };
    stage.render(1);
    stage.render(2);
    EXPECT_EQ(lastTick(stage.osc1.output()), -1);
    EXPECT_EQ(lastTick(stage.osc2.output()), -1);
    EXPECT_EQ(lastTick(&stage.mixing->ringModulator()), -1);
    EXPECT_EQ(lastTick(&stage.mixing->noise()), -1);
    for (int n = 0; n < 64; ++n) ASSERT_EQ(stage.voice(0)[n], 0.0f);

    stage.setLevel(Mixer::kOsc1, 0.5f);
    stage.render(3);
    EXPECT_EQ(lastTick(stage.osc1.output()), 3);
    EXPECT_EQ(lastTick(stage.osc2.output()), -1);

    stage.setLevel(Mixer::kOsc1, 0.0f);
    stage.setLevel(Mixer::kRing, 0.5f);
    stage.render(4);
    stage.render(5);
    EXPECT_EQ(lastTick(stage.osc1.output()), 5) << "the ring modulator pulls both oscillators";
    EXPECT_EQ(lastTick(stage.osc2.output()), 5);
    EXPECT_EQ(lastTick(&stage.mixing->noise()), -1);
}

TEST(MixerSection, RingModulatorMultipliesTheSelectedOscillators) {
    Stage stage;
    stage.osc1.setWaveform(kSineHigh);
    stage.osc2.setWaveform(kSineHigh);
    auto& g1 = static_cast<WaveGenerator&>(*stage.osc1.output()->instance(0));
    auto& g2 = static_cast<WaveGenerator&>(*stage.osc2.output()->instance(0));
    g1.setPhase(0.2f);
    g2.setPhase(0.2f);
    stage.setLevel(Mixer::kRing, 1.0f);
    stage.render(1);
    stage.render(2);
    // Two equal sines of peak 0.5: 0.25 sin^2 = 0.125 (1 - cos 2x), between 0 and 0.25 at twice the
    // frequency.
    double p = 0.2 + 64 * 0.01f;
    for (int n = 0; n < 64; ++n, p += 0.01f) {
        double expected = 0.125 * (1.0 - std::cos(4 * M_PI * p));
        ASSERT_NEAR(stage.voice(0)[n], expected, 2e-6) << n;
        ASSERT_GE(stage.voice(0)[n], -1e-7f);
        ASSERT_LE(stage.voice(0)[n], 0.25f + 1e-7f);
    }
    // The ring modulator's inputs follow the selection.
    stage.osc2.setWaveform(kSawLow);
    EXPECT_EQ(stage.mixing->ringModulator().at(1).input(RingModulator::kOsc2), stage.osc2.output()->instance(1));
    EXPECT_EQ(stage.mixing->mixer().at(1).input(Mixer::kOsc2), stage.osc2.output()->instance(1));
    stage.render(3);
    const float* ring = stage.mixing->ringModulator().at(0).block();
    const float* a = stage.osc1.output()->instance(0)->block();
    const float* b = stage.osc2.output()->instance(0)->block();
    for (int n = 0; n < 64; ++n) ASSERT_FLOAT_EQ(ring[n], a[n] * b[n]);
}

}  // namespace
}  // namespace tolvane
