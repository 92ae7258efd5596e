#include "tools/render/VstHost.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>


namespace tolvane {
namespace {

using vst2::AEffect;
using vst2::int32;
using vst2::intptr;

// A plug-in that records what its host does to it. An entry function has no context argument, so
// the recording is one global that each test resets.
struct Fake {
    struct Block {
        int frames = 0;
        bool eventsDelivered = false;                  // an event list arrived before this block
        std::vector<std::pair<int, int>> events;       // deltaFrames, key
        bool hasTime = false;
        vst2::VstTimeInfo time{};
    };
    vst2::HostCallback host = nullptr;
    AEffect effect{};
    intptr versionAnswer = 0;
    bool returnNull = false;
    std::vector<std::pair<int32, intptr>> calls;  // dispatcher opcodes and values, event lists aside
    float sampleRate = 0.0f;
    std::vector<std::pair<int, float>> parameters;
    std::vector<Block> blocks;
    Block next;
    bool inputsSilent = true;
    long long counter = 0;
} fake;

intptr VST_CALL fakeDispatcher(AEffect*, int32 opcode, int32, intptr value, void* ptr, float opt) {
    if (opcode == vst2::effProcessEvents) {
        const auto* list = static_cast<const vst2::VstEvents*>(ptr);
        fake.next.eventsDelivered = true;
        for (int i = 0; i < list->numEvents; ++i) {
            const auto* e = reinterpret_cast<const vst2::VstMidiEvent*>(list->events[i]);
            EXPECT_EQ(e->type, vst2::kVstMidiType);
            EXPECT_EQ(e->byteSize, 32);
            EXPECT_EQ(static_cast<unsigned char>(e->midiData[0]), 0x90);
            fake.next.events.emplace_back(e->deltaFrames, e->midiData[1]);
        }
        return 1;
    }
    fake.calls.emplace_back(opcode, value);
    if (opcode == vst2::effSetSampleRate) fake.sampleRate = opt;
    if (opcode == vst2::effMainsChanged && value == 1)
        fake.host(&fake.effect, vst2::audioMasterWantMidi, 0, 1, nullptr, 0.0f);
    return 0;
}

void endBlock(float** inputs, int frames) {
    fake.next.frames = frames;
    for (int c = 0; c < fake.effect.numInputs; ++c)
        for (int i = 0; i < frames; ++i) fake.inputsSilent = fake.inputsSilent && inputs[c][i] == 0.0f;
    const auto* time = reinterpret_cast<const vst2::VstTimeInfo*>(
        fake.host(&fake.effect, vst2::audioMasterGetTime, 0, vst2::kVstTempoValid, nullptr, 0.0f));
    fake.next.hasTime = time != nullptr;
    if (time) fake.next.time = *time;
    fake.blocks.push_back(fake.next);
    fake.next = Fake::Block{};
}

// Replacing: left carries the running frame number and right its negative.
void VST_CALL fakeProcessReplacing(AEffect*, float** inputs, float** outputs, int32 frames) {
    for (int i = 0; i < frames; ++i, ++fake.counter) {
        outputs[0][i] = static_cast<float>(fake.counter);
        outputs[1][i] = -static_cast<float>(fake.counter);
    }
    endBlock(inputs, frames);
}

// Accumulating: adds 0.75 to whatever the outputs hold.
void VST_CALL fakeProcess(AEffect*, float** inputs, float** outputs, int32 frames) {
    for (int c = 0; c < fake.effect.numOutputs; ++c)
        for (int i = 0; i < frames; ++i) outputs[c][i] += 0.75f;
    endBlock(inputs, frames);
}

void VST_CALL fakeSetParameter(AEffect*, int32 index, float value) { fake.parameters.emplace_back(index, value); }

AEffect* VST_CALL fakeEntry(vst2::HostCallback host) {
    fake.host = host;
    fake.versionAnswer = host(nullptr, vst2::audioMasterVersion, 0, 0, nullptr, 0.0f);
    return fake.returnNull ? nullptr : &fake.effect;
}

class VstHostTest : public ::testing::Test {
protected:
    void SetUp() override {
        fake = Fake{};
        AEffect& e = fake.effect;
        e.magic = vst2::kEffectMagic;
        e.dispatcher = &fakeDispatcher;
        e.process = &fakeProcess;
        e.processReplacing = &fakeProcessReplacing;
        e.setParameter = &fakeSetParameter;
        e.numPrograms = 8;
        e.numParams = 4;
        e.numOutputs = 2;
        e.flags = vst2::effFlagsCanReplacing | vst2::effFlagsIsSynth;
    }

    // Creates and starts the fake, renders, and collects both channels.
    void render(VstHost& host, double rate, int block, std::uint64_t frames, const std::vector<MidiMessage>& messages) {
        std::string error;
        ASSERT_TRUE(host.create(&fakeEntry, error)) << error;
        ASSERT_TRUE(host.start(rate, block, error)) << error;
        auto collect = [this](const float* l, const float* r, int n) {
            left.insert(left.end(), l, l + n);
            right.insert(right.end(), r, r + n);
            return true;
        };
        ASSERT_TRUE(host.render(messages, frames, collect, error)) << error;
    }

    std::vector<float> left, right;
};

MidiMessage noteOn(double seconds, int key) {
    MidiMessage m;
    m.seconds = seconds;
    m.bytes[0] = 0x90;
    m.bytes[1] = static_cast<std::uint8_t>(key);
    m.bytes[2] = 100;
    m.size = 3;
    return m;
}

TEST_F(VstHostTest, EventsArriveInTheirBlockWithFrameOffsets) {
    // At 1000 Hz a millisecond is a frame. 250.4 rounds to frame 250 (block 2, offset 50), 349.4 to
    // 349 (block 3, offset 49); 449.9 rounds to 450, past the end, and is not sent.
    VstHost host;
    render(host, 1000.0, 100, 450,
           {noteOn(0.0, 1), noteOn(0.099, 2), noteOn(0.1, 3), noteOn(0.2504, 4), noteOn(0.3494, 5),
            noteOn(0.4499, 6)});
    const std::vector<std::vector<std::pair<int, int>>> expected{{{0, 1}, {99, 2}}, {{0, 3}}, {{50, 4}}, {{49, 5}}, {}};
    const int expectedFrames[] = {100, 100, 100, 100, 50};
    ASSERT_EQ(fake.blocks.size(), expected.size());
    for (std::size_t b = 0; b < expected.size(); ++b) {
        EXPECT_EQ(fake.blocks[b].frames, expectedFrames[b]) << "block " << b;
        EXPECT_TRUE(fake.blocks[b].eventsDelivered) << "block " << b;
        EXPECT_EQ(fake.blocks[b].events, expected[b]) << "block " << b;
    }
    ASSERT_EQ(left.size(), 450u);
    for (std::size_t i = 0; i < 450; ++i) {
        ASSERT_EQ(left[i], static_cast<float>(i));
        ASSERT_EQ(right[i], -static_cast<float>(i));
    }
}

TEST_F(VstHostTest, TimeInfoFollowsTheRenderingOrIsAbsent) {
    VstHost host;
    host.setTempo(120.0);
    host.setTimeSignature(3, 4);
    render(host, 1000.0, 1000, 4000, {});
    // 120 bpm is two quarter notes per second; a block is a second; a 3/4 bar is three quarters.
    const double barStart[] = {0.0, 0.0, 3.0, 6.0};
    ASSERT_EQ(fake.blocks.size(), 4u);
    for (std::size_t b = 0; b < 4; ++b) {
        const vst2::VstTimeInfo& t = fake.blocks[b].time;
        ASSERT_TRUE(fake.blocks[b].hasTime);
        EXPECT_TRUE(t.flags & vst2::kVstTempoValid);
        EXPECT_EQ(t.tempo, 120.0);
        EXPECT_EQ(t.sampleRate, 1000.0);
        EXPECT_EQ(t.samplePos, 1000.0 * b);
        EXPECT_NEAR(t.ppqPos, 2.0 * b, 1e-9);
        EXPECT_NEAR(t.barStartPos, barStart[b], 1e-9) << "block " << b;
        EXPECT_EQ(t.timeSigNumerator * 10 + t.timeSigDenominator, 34);
    }

    VstHost untimed;
    untimed.setTempo(0.0);
    render(untimed, 44100.0, 64, 200, {});
    ASSERT_EQ(fake.blocks.size(), 8u);  // 64 + 64 + 64 + 8 more
    EXPECT_EQ(fake.blocks.back().frames, 8);
    for (std::size_t b = 4; b < 8; ++b) EXPECT_FALSE(fake.blocks[b].hasTime);
}

TEST_F(VstHostTest, OpensConfiguresAndClosesInOrder) {
    std::string error;
    {
        VstHost host;
        ASSERT_TRUE(host.create(&fakeEntry, error)) << error;
        EXPECT_EQ(fake.versionAnswer, 2400);
        ASSERT_TRUE(host.start(48000.0, 256, error)) << error;
        EXPECT_TRUE(host.pluginWantsMidi());
        ASSERT_TRUE(host.setProgram(7, error)) << error;
        ASSERT_TRUE(host.setParameter(3, 0.25f, error)) << error;
        // Out-of-range requests never reach the plug-in.
        EXPECT_FALSE(host.setProgram(8, error));
        EXPECT_FALSE(host.setParameter(4, 0.5f, error));
        EXPECT_FALSE(host.setParameter(0, 1.5f, error));
    }  // the destructor switches the plug-in off and closes it
    const std::vector<std::pair<int32, intptr>> expected{
        {vst2::effOpen, 0},         {vst2::effSetSampleRate, 0}, {vst2::effSetBlockSize, 256},
        {vst2::effMainsChanged, 1}, {vst2::effSetProgram, 7},    {vst2::effMainsChanged, 0},
        {vst2::effClose, 0}};
    EXPECT_EQ(fake.calls, expected);
    EXPECT_EQ(fake.sampleRate, 48000.0f);
    const std::vector<std::pair<int, float>> parameters{{3, 0.25f}};
    EXPECT_EQ(fake.parameters, parameters);
}

TEST_F(VstHostTest, AccumulatingPluginWithInputsAndOneOutput) {
    // Without the replacing flag the host must clear the outputs before each call; a single output
    // feeds both channels; inputs must exist and be silent.
    fake.effect.flags = vst2::effFlagsIsSynth;
    fake.effect.numInputs = 2;
    fake.effect.numOutputs = 1;
    VstHost host;
    render(host, 44100.0, 32, 100, {});
    ASSERT_EQ(left.size(), 100u);
    for (std::size_t i = 0; i < 100; ++i) {
        ASSERT_EQ(left[i], 0.75f) << i;
        ASSERT_EQ(right[i], 0.75f) << i;
    }
    EXPECT_TRUE(fake.inputsSilent);
}

TEST_F(VstHostTest, RefusesMissingOrForeignPlugins) {
    std::string error;
    fake.returnNull = true;
    EXPECT_FALSE(VstHost().create(&fakeEntry, error));
    EXPECT_NE(error.find("returned no effect"), std::string::npos) << error;
    fake.returnNull = false;
    fake.effect.magic = 0x12345678;
    EXPECT_FALSE(VstHost().create(&fakeEntry, error));
    EXPECT_NE(error.find("magic"), std::string::npos) << error;
    EXPECT_TRUE(fake.calls.empty());  // a refused plug-in is neither opened nor closed

    EXPECT_FALSE(VstHost().loadModule("/nonexistent/plugin.so", error));
    EXPECT_NE(error.find("/nonexistent/plugin.so"), std::string::npos) << error;
    const auto text = std::filesystem::path(::testing::TempDir()) / "not-a-module.so";
    { std::ofstream(text) << "plain text"; }
    EXPECT_FALSE(VstHost().loadModule(text.string(), error));
    EXPECT_NE(error.find("cannot load plug-in"), std::string::npos) << error;
    std::filesystem::remove(text);
}

}  // namespace
}  // namespace tolvane
