// Summing the voices: gain ramps between blocks and the silence test that stops rendering a voice.
#include <vector>

#include <gtest/gtest.h>

#include "engine/sound/AmpSection.h"
#include "tests/engine/sound/FilterTestRig.h"

namespace tolvane {
namespace {

using testing::ScriptedSignal;

// Voice i plays a constant i + 1, so that each voice's share of the sum can be told apart.
struct SumRig {
    explicit SumRig(int voices) {
        graph.setVoiceCount(voices);
        for (int v = 0; v < voices; ++v) audio.at(v).level = static_cast<float>(v + 1);
    }
    ModuleGraph graph;
    Poly<ValueSource> amplitude{graph, 0, kRuleGraphVoices, 0.0f};
    Poly<ScriptedSignal> audio{graph, 0, kRuleGraphVoices};
    AmpSection amp{graph, &amplitude, &audio};
    int tick = 0;

    std::vector<float> render() {
        amp.voiceSum().update(++tick);
        const float* y = amp.voiceSum().block();
        return std::vector<float>(y, y + 64);
    }
    int renders(int voice) { return audio.at(voice).renders; }
};

// The expected gain ramp: sample n (0-based) of a block from a to b.
float ramp(float a, float b, int n) { return a + (b - a) * static_cast<float>(n + 1) / 64.0f; }

TEST(VoiceSum, FadesInHoldsFadesOutThenSkips) {
    SumRig rig(4);
    rig.amplitude.at(1).set(0.5f);
    std::vector<float> y = rig.render();
    for (int n = 0; n < 64; ++n) EXPECT_NEAR(y[n], 2.0f * ramp(0.0f, 0.5f, n), 1e-6) << n;
    y = rig.render();
    for (int n = 0; n < 64; ++n) EXPECT_FLOAT_EQ(y[n], 1.0f);

    rig.amplitude.at(1).set(0.0f);
    y = rig.render();
    for (int n = 0; n < 64; ++n) EXPECT_NEAR(y[n], 2.0f * ramp(0.5f, 0.0f, n), 1e-6) << n;
    EXPECT_EQ(y[63], 0.0f);
    EXPECT_EQ(rig.renders(1), 3);

    y = rig.render();
    EXPECT_EQ(rig.renders(1), 3) << "silent for this block and the last: not rendered";
    EXPECT_EQ(rig.amp.voiceSum().voicesRendered(), 0);
    for (float v : y) EXPECT_EQ(v, 0.0f);
    for (int v : {0, 2, 3}) EXPECT_EQ(rig.renders(v), 0) << "voices that never sounded cost nothing";
}

TEST(VoiceSum, SilenceThresholdAndRestartFromThePreviousAmplitude) {
    SumRig rig(8);
    const float below = 0.000009f;
    rig.amplitude.at(2).set(0.5f);
    rig.render();
    rig.amplitude.at(2).set(below);
    std::vector<float> y = rig.render();  // still rendered: audible in the previous block
    EXPECT_NEAR(y[63], 3.0f * below, 1e-9);
    EXPECT_EQ(rig.renders(2), 2);
    rig.render();
    rig.render();
    EXPECT_EQ(rig.renders(2), 2);
    EXPECT_FLOAT_EQ(rig.amp.voiceSum().previousAmplitude(2), below);

    // Restarted: ramps up from where it was left, not from 0 and not from the last audible value.
    rig.amplitude.at(2).set(1.0f);
    y = rig.render();
    for (int n = 0; n < 64; ++n) EXPECT_NEAR(y[n], 3.0f * ramp(below, 1.0f, n), 1e-6) << n;

    // The threshold itself counts as audible; a negative amplitude as silence.
    rig.amplitude.at(2).set(0.0f);
    rig.render();
    rig.render();
    rig.amplitude.at(5).set(0.00001f);
    rig.amplitude.at(6).set(-0.5f);
    y = rig.render();
    rig.render();
    EXPECT_EQ(rig.renders(5), 2);
    EXPECT_EQ(rig.renders(6), 0);
    EXPECT_NEAR(y[63], 6.0f * 0.00001f, 1e-9);
}

TEST(VoiceSum, ResetFadesEveryVoiceInAgain) {
    SumRig rig(4);
    rig.amplitude.at(0).set(1.0f);
    rig.amplitude.at(3).set(0.25f);
    rig.render();
    std::vector<float> y = rig.render();
    EXPECT_FLOAT_EQ(y[10], 1.0f * 1.0f + 4.0f * 0.25f);

    rig.amp.voiceSum().reset(++rig.tick);
    EXPECT_EQ(rig.audio.at(3).lastTick(), rig.tick) << "the reset reaches the voices' audio";
    EXPECT_EQ(rig.amp.voiceSum().previousAmplitude(0), 0.0f);
    y = rig.render();
    for (int n = 0; n < 64; ++n) EXPECT_NEAR(y[n], ramp(0.0f, 1.0f, n) + 4.0f * ramp(0.0f, 0.25f, n), 1e-6) << n;
}

}  // namespace
}  // namespace tolvane
