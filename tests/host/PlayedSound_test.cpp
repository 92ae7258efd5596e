// What a musician hears, measured on audio rendered through the plug-in's effect record.
#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "engine/voice/SynthEngine.h"
#include "support/AudioAnalysis.h"
#include "support/HostSession.h"
#include "support/PluginFixture.h"

namespace tolvane {
namespace {

using testing::cents;
using testing::PluginFixture;
using testing::renderSession;
using testing::TimedMidi;

constexpr double kRate = 44100.0;

// The init sound: one middle-quality sine, filter wide open, effect dry; drift switched off.
void sinePatch(PluginFixture& f) {
    f.dispatch(vst2::effSetProgram, 0, 64);
    f.effect->setParameter(f.effect, param::VoiceDetune, 0.0f);
}

TEST(PlayedSound, NotesPlayAtTheirPitch) {
    struct Case {
        int note;
        int bend;  // 14-bit value, 8192 = centre
        double hz;
    } cases[] = {
        {69, 8192, 440.0},
        {81, 8192, 880.0},
        {57, 8192, 220.0},
        {69, 16383, 440.0 * std::pow(2.0, 2.0 * 8191.0 / 8192.0 / 12.0)},  // range 2, fully up
        {69, 0, 440.0 * std::pow(2.0, -2.0 / 12.0)},
    };
    for (const Case& c : cases) {
        PluginFixture f;
        sinePatch(f);
        std::vector<float> left, right;
        std::vector<TimedMidi> events = {
            {0, {0xE0, static_cast<unsigned char>(c.bend & 0x7F), static_cast<unsigned char>(c.bend >> 7)}},
            {64, {0x90, static_cast<unsigned char>(c.note), 100}},
        };
        renderSession(f.effect, events, static_cast<int>(kRate * 1.5), 512, left, right);
        double hz = testing::zeroCrossingFrequency(left, static_cast<std::size_t>(kRate * 0.5),
                                                   static_cast<std::size_t>(kRate * 1.5), kRate);
        EXPECT_NEAR(cents(hz, c.hz), 0.0, 3.0) << "note " << c.note << " bend " << c.bend << ": " << hz << " Hz";
        EXPECT_GT(testing::rms(left, static_cast<std::size_t>(kRate * 0.5), left.size()), 0.01);
        EXPECT_EQ(left, right) << "a dry mono voice sounds the same on both sides";
    }
}

TEST(PlayedSound, AReleasedNoteFadesToSilenceAndStopsCosting) {
    PluginFixture f;
    sinePatch(f);
    std::vector<float> left, right;
    std::vector<TimedMidi> events = {{0, {0x90, 60, 100}}, {static_cast<std::int64_t>(kRate * 0.5), {0x80, 60, 0}}};
    renderSession(f.effect, events, static_cast<int>(kRate * 1.0), 256, left, right);
    EXPECT_GT(testing::peak(left, 0, static_cast<std::size_t>(kRate * 0.5)), 0.05);
    // The shortest release is a few milliseconds; a tenth of a second later only the effect's tiny
    // guard offset remains.
    EXPECT_LT(testing::peak(left, static_cast<std::size_t>(kRate * 0.6), left.size()), 1e-4);
    EXPECT_EQ(f.plugin->engine().amp().voiceSum().voicesRendered(), 0);
}

// Events on multiples of 64 samples land on the engine's block grid whatever the host's buffers.
TEST(PlayedSound, HostBlockSizeDoesNotChangeTheSound) {
    std::vector<TimedMidi> events = {
        {0, {0x90, 60, 100}},     {640, {0x90, 64, 90}},  {1280, {0xE0, 0, 80}},  {3200, {0x80, 60, 0}},
        {4096, {0xB0, 1, 100}},   {6400, {0x90, 67, 70}}, {9600, {0x80, 64, 0}},  {12800, {0x80, 67, 0}},
    };
    std::vector<float> referenceLeft, referenceRight;
    {
        PluginFixture f;
        renderSession(f.effect, events, 16000, 64, referenceLeft, referenceRight);
    }
    ASSERT_GT(testing::rms(referenceLeft, 0, referenceLeft.size()), 0.001);
    for (int block : {1, 7, 100, 512, 4096}) {
        PluginFixture f;
        std::vector<float> left, right;
        renderSession(f.effect, events, 16000, block, left, right);
        EXPECT_EQ(left, referenceLeft) << "blocks of " << block;
        EXPECT_EQ(right, referenceRight) << "blocks of " << block;
    }
}

TEST(PlayedSound, ProcessAddsAndProcessReplacingOverwrites) {
    PluginFixture a, b;
    std::vector<float> l1(256, 0.25f), r1(256, 0.25f), l2(256, 0.25f), r2(256, 0.25f);
    for (PluginFixture* f : {&a, &b}) f->render(0, {{0x90, 60, 100}});
    float* out1[2] = {l1.data(), r1.data()};
    float* out2[2] = {l2.data(), r2.data()};
    a.effect->process(a.effect, nullptr, out1, 256);
    b.effect->processReplacing(b.effect, nullptr, out2, 256);
    for (int i = 0; i < 256; ++i) {
        EXPECT_FLOAT_EQ(l1[i], l2[i] + 0.25f);
        EXPECT_FLOAT_EQ(r1[i], r2[i] + 0.25f);
    }
}

// A host buffer that the samples carried over from the previous one cover whole computes no block; the
// events of its list must still play, in the next block, whatever lists the host sends after it.
TEST(PlayedSound, EventsOfABufferWithoutANewBlockAreNotLost) {
    // Off the block grid: with buffers of 32, the note at 40 arrives in a buffer that computes nothing.
    std::vector<TimedMidi> events = {
        {40, {0x90, 60, 100}}, {4100, {0x80, 60, 0}}, {5030, {0x90, 64, 100}}, {9001, {0x80, 64, 0}},
    };
    auto notes = [](const std::vector<float>& x) {
        return std::array<double, 2>{testing::rms(x, 0, 4000), testing::rms(x, 5100, 9000)};
    };
    std::vector<float> referenceLeft, referenceRight;
    {
        PluginFixture f;
        renderSession(f.effect, events, 12000, 64, referenceLeft, referenceRight);
    }
    const auto reference = notes(referenceLeft);
    ASSERT_GT(reference[0], 0.001);
    ASSERT_GT(reference[1], 0.001);
    for (int block : {1, 7, 32, 48, 100}) {
        PluginFixture f;
        std::vector<float> left, right;
        renderSession(f.effect, events, 12000, block, left, right);
        const auto heard = notes(left);
        // Each note starts at most one block later than with buffers of 64: the same level, nearly.
        for (int k = 0; k < 2; ++k)
            EXPECT_NEAR(heard[k], reference[k], 0.05 * reference[k]) << "note " << k << ", blocks of " << block;
    }
}
}  // namespace
}  // namespace tolvane
