// What a host saves with a session comes back whole: through the effect record's chunk opcodes, a fresh
// instance given the chunk answers and sounds like the instance that made it.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "params/FactoryBank.h"
#include "params/ProgramFiles.h"
#include "support/AudioAnalysis.h"
#include "support/HostSession.h"
#include "support/PluginFixture.h"
#include "support/TempFolder.h"

namespace tolvane {
namespace {

using testing::PluginFixture;
using testing::TempFolder;
using testing::TimedMidi;
using Bytes = std::vector<unsigned char>;

constexpr int kBankChunk = 0;
constexpr int kProgramChunk = 1;
constexpr int kSettleSamples = 3 * 64;  // what an instance renders before its chunk is taken

Bytes getChunk(PluginFixture& f, int which) {
    void* data = nullptr;
    vst2::intptr size = f.dispatch(vst2::effGetChunk, which, 0, &data);
    if (size <= 0 || !data) return {};
    const auto* p = static_cast<const unsigned char*>(data);
    return Bytes(p, p + size);
}

vst2::intptr setChunk(PluginFixture& f, int which, Bytes bytes) {
    return f.dispatch(vst2::effSetChunk, which, static_cast<vst2::intptr>(bytes.size()), bytes.data());
}

// Everything a host can ask of an instance without rendering.
struct Answers {
    std::vector<float> values;
    std::vector<std::string> displays;
    std::vector<std::string> programNames;
    int program = -1;
    std::string programName;
    std::string status1, status2;
};

Answers answers(PluginFixture& f) {
    Answers a;
    for (int i = 0; i < kNumParameters; ++i) {
        a.values.push_back(f.effect->getParameter(f.effect, i));
        a.displays.push_back(f.text(vst2::effGetParamDisplay, i));
    }
    for (int p = 0; p < kNumPrograms; ++p) {
        char name[64] = {};
        f.dispatch(vst2::effGetProgramNameIndexed, p, 0, name);
        a.programNames.push_back(name);
    }
    a.program = static_cast<int>(f.dispatch(vst2::effGetProgram));
    a.programName = f.text(vst2::effGetProgramName);
    f.status(a.status1, a.status2);
    return a;
}

void expectSameAnswers(const Answers& got, const Answers& want) {
    for (int i = 0; i < kNumParameters; ++i) {
        EXPECT_EQ(got.values[i], want.values[i]) << "getParameter " << i;
        EXPECT_EQ(got.displays[i], want.displays[i]) << "display " << i;
    }
    EXPECT_EQ(got.programNames, want.programNames);
    EXPECT_EQ(got.program, want.program);
    EXPECT_EQ(got.programName, want.programName);
}

// Both channels of a phrase that exercises the edited sound: chords, a bend, the mapped controller,
// and releases into the effect's tail. The instance is suspended and resumed first, as a host does
// before playing, so that every instance starts the phrase from the same engine state.
std::vector<float> play(PluginFixture& f) {
    f.dispatch(vst2::effMainsChanged, 0, 0);
    f.dispatch(vst2::effMainsChanged, 0, 1);
    const std::vector<TimedMidi> phrase = {
        {0, {0x90, 48, 100}},    {1500, {0x90, 55, 90}},  {4000, {0xE0, 0, 80}},  {6000, {0xB0, 1, 90}},
        {9000, {0x80, 48, 0}},   {9100, {0x90, 60, 127}}, {14000, {0x80, 55, 0}}, {15000, {0x80, 60, 0}},
    };
    std::vector<float> left, right;
    testing::renderSession(f.effect, phrase, 24000, 300, left, right);
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

// A session as a musician leaves it: a bank loaded into bank B, a program of it selected, renamed and
// edited, a controller map set up and its controller moved (a change made on the audio thread).
void shapeSession(PluginFixture& f, TempFolder& folder) {
    f.dispatch(vst2::effSetProgram, 0, 130);
    auto bank = std::make_unique<BankPrograms>();
    for (int i = 0; i < kProgramsPerBank; ++i) {
        bank->programs[i] = factoryProgram(i % kNumDesignedPrograms);
        char name[32];
        std::snprintf(name, sizeof name, "Loaded %d", i);
        bank->programs[i].setName(name);
        bank->programs[i].values[param::FilterResonance] = static_cast<float>(i) / 127.0f;
    }
    const std::string path = folder.file("session.bank");
    testing::writeContents(path, writeBankFile(*bank));
    f.dialogs->outcome = DialogChoice::Outcome::Chosen;
    f.dialogs->path = path;
    f.dispatch(vst2::effSetProgram, 0, static_cast<int>(EditorCommand::LoadBank));
    f.dispatch(vst2::effSetProgram, 0, 128 + 9);
    f.plugin->setProgramName("Session Lead");

    const struct {
        int index;
        float value;
    } edits[] = {
        {param::Osc1Waveform, 8.5f / 12.0f},  {param::FilterCutoff, 0.6f},    {param::FilterResonance, 0.7f},
        {param::Lfo1Speed, 0.3f},             {param::EffectOn, 1.0f},        {param::EffectMix, 0.4f},
        {param::EffectDelayTime, 0.2f},       {param::EffectFeedback, 0.7f},  {param::VoiceDetune, 0.0f},
        {param::NumberOfVoices, 3.5f / 64.0f}, {param::MasterTune, 0.55f},    {130, 0.25f},
        {param::MapControl1, 1.5f / 129.0f},  {param::MapParameter1, (param::FilterCutoff + 0.5f) / 100.0f},
    };
    for (const auto& e : edits) f.effect->setParameter(f.effect, e.index, e.value);
    f.render(64);
    f.render(64, {{0xB0, 1, 30}});  // the map moves the cutoff
    f.render(kSettleSamples - 128);
}

TEST(StateChunks, ABankChunkRestoresTheWholeSessionInAFreshInstance) {
    TempFolder folder;
    PluginFixture original;
    shapeSession(original, folder);
    ASSERT_NEAR(original.effect->getParameter(original.effect, param::FilterCutoff), 30.0f / 127.0f, 1e-6)
        << "the controller map's move is the value last set";
    const Bytes chunk = getChunk(original, kBankChunk);
    const Answers before = answers(original);
    EXPECT_EQ(before.programNames[128 + 9], "Session Lead");
    EXPECT_EQ(before.programNames[128 + 10], "Loaded 10");
    // Only the 128 loaded programs differ from the factory bank: the fixed part and 128 entries.
    EXPECT_EQ(chunk.size(), 764u + 128u * 612u);

    PluginFixture restored;
    EXPECT_EQ(setChunk(restored, kBankChunk, chunk), 1);
    restored.render(kSettleSamples);
    expectSameAnswers(answers(restored), before);
    EXPECT_EQ(getChunk(restored, kBankChunk), chunk) << "the state saves again unchanged";

    PluginFixture untouched;
    untouched.render(kSettleSamples);
    const std::vector<float> heard = play(original);
    ASSERT_GT(testing::rms(heard, 0, heard.size()), 0.01);
    EXPECT_NE(play(untouched), heard) << "the phrase tells the edited sound from the factory one";
    EXPECT_EQ(play(restored), heard);
}

TEST(StateChunks, AProgramChunkCarriesTheEditBufferAsAProgramFile) {
    TempFolder folder;
    PluginFixture original;
    original.dispatch(vst2::effSetProgram, 0, 5);
    original.plugin->setProgramName("Edited Five");
    original.effect->setParameter(original.effect, param::FilterCutoff, 0.35f);
    original.effect->setParameter(original.effect, param::Env1Attack, 0.1f);
    original.effect->setParameter(original.effect, param::EffectMix, 0.3f);
    original.render(kSettleSamples);
    const Bytes chunk = getChunk(original, kProgramChunk);

    original.dialogs->outcome = DialogChoice::Outcome::Chosen;
    original.dialogs->path = folder.file("edited.prog");
    original.dispatch(vst2::effSetProgram, 0, static_cast<int>(EditorCommand::SaveProgram));
    EXPECT_EQ(chunk, testing::fileContents(folder.file("edited.prog"))) << "the bytes \"Save Program...\" writes";

    // Another instance on another program takes the sound and the name; its program number and its
    // bank stay.
    PluginFixture restored;
    restored.dispatch(vst2::effSetProgram, 0, 200);
    EXPECT_EQ(setChunk(restored, kProgramChunk, chunk), 1);
    restored.render(kSettleSamples);
    const Answers got = answers(restored);
    const Answers want = answers(original);
    for (int i = 0; i < kNumParameters; ++i) EXPECT_EQ(got.values[i], want.values[i]) << i;
    EXPECT_EQ(got.program, 200);
    EXPECT_EQ(got.programName, "Edited Five");
    EXPECT_EQ(got.programNames[200], "InitProg");
    EXPECT_EQ(got.programNames[5], factoryProgram(5).name);
    EXPECT_EQ(play(restored), play(original));
}

// A host that hands the state back while notes sound (undo, reopening a snapshot) cuts nothing when
// it is the same program: the instance plays on exactly as a twin that was left alone.
TEST(StateChunks, TheSameProgramsStateLoadsWithoutAReset) {
    PluginFixture left, twin;
    for (PluginFixture* f : {&left, &twin}) {
        f->dispatch(vst2::effSetProgram, 0, 64);
        f->effect->setParameter(f->effect, param::Osc1Waveform, 8.5f / 12.0f);
        f->effect->setParameter(f->effect, param::FilterCutoff, 0.55f);
        f->render(512, {{0x90, 60, 100}});
    }
    const Bytes chunk = getChunk(left, kBankChunk);
    EXPECT_EQ(chunk.size(), 764u) << "an untouched bank stores no program";
    ASSERT_EQ(setChunk(left, kBankChunk, chunk), 1);
    left.render(2048);
    twin.render(2048);
    ASSERT_GT(testing::rms(twin.left, 0, twin.left.size()), 0.01);
    EXPECT_EQ(left.left, twin.left);

    // Another program number in the state is a program change: the engine starts afresh.
    Bytes other = chunk;
    other[27] = 65;  // current program 65, the same sound as 64
    ASSERT_EQ(setChunk(left, kBankChunk, other), 1);
    left.render(2048);
    twin.render(2048);
    EXPECT_EQ(left.dispatch(vst2::effGetProgram), 65);
    EXPECT_NE(left.left, twin.left);
}

// A chunk that fails any check changes nothing, and the status lines say why as they do for files.
TEST(StateChunks, ADamagedChunkChangesNothing) {
    TempFolder folder;
    PluginFixture source;
    shapeSession(source, folder);
    const Bytes bank = getChunk(source, kBankChunk);
    const Bytes program = getChunk(source, kProgramChunk);
    ASSERT_EQ(bank.size(), 764u + 128u * 612u);

    auto putU32 = [](Bytes& b, std::size_t at, std::uint32_t v) {
        for (int k = 0; k < 4; ++k) b[at + k] = static_cast<unsigned char>(v >> (24 - 8 * k));
    };
    auto putFloat = [&](Bytes& b, std::size_t at, float v) {
        std::uint32_t bits;
        std::memcpy(&bits, &v, 4);
        putU32(b, at, bits);
    };
    const std::size_t editValues = 24 + 4 + 32;  // header, program number, name
    const std::size_t maps = 24 + 4 + 608;
    const std::size_t firstEntry = 764, secondEntry = 764 + 612;
    const struct Case {
        const char* what;
        int which;
        std::function<void(Bytes&)> damage;
        const char* reason;
    } cases[] = {
        {"empty", kBankChunk, [](Bytes& b) { b.clear(); }, "Cannot load file"},
        {"cut in the last entry", kBankChunk, [](Bytes& b) { b.pop_back(); }, "Cannot load file"},
        {"wrong magic", kBankChunk, [](Bytes& b) { b[8] = 'X'; }, "Invalid format"},
        {"a program file as a bank", kBankChunk, [&](Bytes& b) { b = program; }, "Invalid format"},
        {"more than 512 programs", kBankChunk, [&](Bytes& b) { putU32(b, 20, 513); }, "Invalid format"},
        {"version 2", kBankChunk, [&](Bytes& b) { putU32(b, 16, 0x00020000); }, "Unknown file ver."},
        {"program 512", kBankChunk, [&](Bytes& b) { putU32(b, 24, 512); }, "Cannot load file"},
        {"NaN in the edit buffer", kBankChunk, [&](Bytes& b) { putFloat(b, editValues + 4 * 33, std::nanf("")); },
         "Cannot load file"},
        {"map value above 1", kBankChunk, [&](Bytes& b) { putFloat(b, maps + 4 * 5, 1.0001f); }, "Cannot load file"},
        {"name without its end", kBankChunk, [&](Bytes& b) { std::memset(&b[28], 'a', 32); }, "Cannot load file"},
        {"a program twice", kBankChunk, [&](Bytes& b) { putU32(b, secondEntry, 128); }, "Cannot load file"},
        {"program number 600", kBankChunk, [&](Bytes& b) { putU32(b, firstEntry, 600); }, "Cannot load file"},
        {"negative value in the last program", kBankChunk,
         [&](Bytes& b) { putFloat(b, b.size() - 4, -0.001f); }, "Cannot load file"},
        {"truncated program", kProgramChunk, [&](Bytes& b) { b = program; b.resize(b.size() - 1); },
         "Cannot load file"},
        {"NaN in a program", kProgramChunk, [&](Bytes& b) { b = program; putFloat(b, 24 + 32, std::nanf("")); },
         "Cannot load file"},
        {"a bank as a program", kProgramChunk, [](Bytes&) {}, "Invalid format"},
    };
    for (const Case& c : cases) {
        PluginFixture f;
        f.dispatch(vst2::effSetProgram, 0, 3);
        f.effect->setParameter(f.effect, param::FilterCutoff, 0.2f);
        f.effect->setParameter(f.effect, param::MapControl1 + 5, 0.5f);
        f.render(64);
        Bytes damaged = bank;
        c.damage(damaged);
        const Answers before = answers(f);
        EXPECT_EQ(setChunk(f, c.which, damaged), 0) << c.what;
        f.render(64);
        Answers after = answers(f);
        expectSameAnswers(after, before);
        EXPECT_EQ(after.status1, "File I/O error") << c.what;
        EXPECT_EQ(after.status2, c.reason) << c.what;
    }
}

}  // namespace
}  // namespace tolvane
