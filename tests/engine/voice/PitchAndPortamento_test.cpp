#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "engine/voice/NoteSources.h"
#include "engine/voice/PitchUnit.h"
#include "engine/voice/Portamento.h"
#include "engine/voice/VoiceAllocator.h"

namespace tolvane {
namespace {

constexpr double kBlockRate = 44100.0 / 64.0;

double coefficientFor(double seconds) { return std::pow(10.0, -3.0 / (kBlockRate * seconds + 1.0)); }

struct Rig {
    explicit Rig(int voices) : allocator(voices, -1) {}
    VoiceAllocator allocator;
    NoteSourceContainer<TriggerSource> trigger{allocator};
    Portamento portamento{allocator, trigger};
    PitchUnit pitch{allocator};
    int tick = 0;

    void send(int status, int d1, int d2) {
        allocator.pushEvent(0, static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(d1),
                            static_cast<std::uint8_t>(d2));
    }
    // One block: the events queued since the last block apply at its start.
    void block(int advance = 1) {
        allocator.processEvents(64);
        allocator.beginEvents(0, 0);
        tick += advance;
        portamento.output().updateInstances(tick);
        pitch.output().updateInstances(tick);
    }
    float glide(int voice = 0) { return portamento.output().at(voice).value(); }
    float semitones(int voice = 0) { return pitch.output().at(voice).value(); }
};

TEST(Portamento, GlideCoversSixtyDecibelsOfTheIntervalInAboutThePortamentoTime) {
    Rig rig(1);
    rig.allocator.setPortamento(true);
    const double t = 0.5;
    rig.portamento.setTime(static_cast<float>(t));
    rig.send(0x90, 60, 100);
    for (int b = 0; b < 3000; ++b) rig.block();
    ASSERT_NEAR(rig.glide(), 60.0f, 1e-4);

    rig.send(0x90, 72, 100);
    rig.block();
    EXPECT_FLOAT_EQ(rig.glide(), 60.0f) << "the trigger block jumps to the previous note";
    double c = coefficientFor(t);
    int blocksInT = static_cast<int>(kBlockRate * t);
    for (int j = 1; j <= blocksInT; ++j) {
        rig.block();
        ASSERT_NEAR(rig.glide(), 72.0 - 12.0 * std::pow(c, j), 2e-4) << "block " << j;
    }
    double remaining = (72.0 - rig.glide()) / 12.0;
    EXPECT_GT(remaining, 0.9e-3);
    EXPECT_LT(remaining, 1.1e-3);
}

TEST(Portamento, WithoutPortamentoOrAfterATickGapTheGlideJumps) {
    Rig rig(1);
    rig.portamento.setTime(1.0f);
    rig.send(0x90, 60, 100);
    rig.block();
    rig.send(0x90, 67, 100);
    rig.block();
    EXPECT_FLOAT_EQ(rig.glide(), 67.0f) << "portamento off: the voice starts on its key";

    rig.allocator.setPortamento(true);
    rig.send(0x90, 48, 100);
    rig.block();
    rig.block();
    ASSERT_GT(rig.glide(), 60.0f) << "gliding down from 67";
    rig.block(2);  // a skipped block
    EXPECT_FLOAT_EQ(rig.glide(), 48.0f);

    // Negative times count as 0: c = 10^-3, almost immediate.
    rig.portamento.setTime(-3.0f);
    rig.send(0x90, 60, 100);
    rig.block();
    rig.block();
    EXPECT_NEAR(rig.glide(), 60.0 - 12.0 * 0.001, 1e-4);
}

TEST(PitchUnit, BendReachesItsRangeAndIsSmoothedOverFiftyMilliseconds) {
    Rig rig(1);
    rig.pitch.setVoiceDetune(0.0f);
    rig.send(0xE0, 0x7F, 0x7F);  // 8191
    rig.block();
    EXPECT_NEAR(rig.semitones(), 2.0 * 8191.0 / 8192.0, 1e-6) << "the first update takes the value directly";

    rig.send(0xE0, 0x00, 0x00);  // -8192
    rig.block(2);
    EXPECT_EQ(rig.semitones(), -2.0f) << "after a tick gap the smoother jumps";

    rig.send(0xE0, 0x00, 0x40);  // centre
    rig.block();
    double c = coefficientFor(0.05);
    EXPECT_NEAR(rig.semitones(), -2.0 * c, 1e-5);
    // 60 dB of the step after about 0.05 s (blockRate T + 1 blocks).
    int blocks = static_cast<int>(std::lround(kBlockRate * 0.05 + 1.0));
    for (int b = 2; b <= blocks; ++b) {
        rig.block();
        ASSERT_NEAR(rig.semitones(), -2.0 * std::pow(c, b), 1e-5) << "block " << b;
    }
    EXPECT_GT(-rig.semitones() / 2.0, 0.8e-3);
    EXPECT_LT(-rig.semitones() / 2.0, 1.25e-3);

    rig.pitch.setBendRange(12.0f);
    rig.pitch.setMasterTune(-0.5f);
    rig.send(0xE0, 0x00, 0x60);  // +4096
    rig.block(2);
    EXPECT_FLOAT_EQ(rig.semitones(), 6.0f - 0.5f);
    rig.pitch.setBendRange(0.0f);
    rig.block(2);
    EXPECT_FLOAT_EQ(rig.semitones(), -0.5f) << "range 0 disables the bend";
}

TEST(PitchUnit, DetuneDriftWandersWithinItsDepthAndDiffersPerVoice) {
    const int voices = 8;
    Rig rig(voices);
    const float depth = 0.3f;
    rig.pitch.setVoiceDetune(depth);
    std::vector<float> lo(voices, 1e9f), hi(voices, -1e9f), last(voices, 0.0f);
    // The steepest drift: from -depth to +depth in ten seconds.
    const double maxStep = 2.0 * depth * 0.1 / kBlockRate + 1e-6;
    for (int b = 0; b < 30000; ++b) {
        rig.block();
        for (int v = 0; v < voices; ++v) {
            float d = rig.pitch.drift().at(v).value();
            if (b > 0) {
                ASSERT_LE(std::fabs(d - last[static_cast<std::size_t>(v)]), maxStep) << "voice " << v << " block " << b;
            }
            last[static_cast<std::size_t>(v)] = d;
            lo[static_cast<std::size_t>(v)] = std::min(lo[static_cast<std::size_t>(v)], d);
            hi[static_cast<std::size_t>(v)] = std::max(hi[static_cast<std::size_t>(v)], d);
        }
    }
    for (int v = 0; v < voices; ++v) {
        EXPECT_GE(lo[static_cast<std::size_t>(v)], -depth);
        EXPECT_LE(hi[static_cast<std::size_t>(v)], depth);
        EXPECT_GT(hi[static_cast<std::size_t>(v)] - lo[static_cast<std::size_t>(v)], 0.1f * depth) << "voice " << v << " moves";
    }
    EXPECT_NE(rig.semitones(0), rig.semitones(1));

    rig.pitch.setVoiceDetune(0.0f);
    rig.block(2);
    for (int v = 1; v < voices; ++v) EXPECT_EQ(rig.semitones(v), rig.semitones(0)) << "no detune, no difference";
}

}  // namespace
}  // namespace tolvane
