#include "host/SynthPlugin.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "params/FactoryBank.h"
#include "params/ProgramFiles.h"
#include "support/PluginFixture.h"
#include "support/TempFolder.h"

namespace tolvane {
namespace {

using testing::PluginFixture;
using testing::TempFolder;
using testing::writeContents;

// What a host reads from the effect record and asks through the dispatcher before it renders anything.
TEST(SynthPlugin, EffectRecordAndFixedAnswers) {
    PluginFixture f;
    const vst2::AEffect* e = f.effect;
    EXPECT_EQ(e->magic, 0x56737450);
    EXPECT_EQ(e->numPrograms, 512);
    EXPECT_EQ(e->numParams, 176);
    EXPECT_EQ(e->numInputs, 0);
    EXPECT_EQ(e->numOutputs, 2);
    EXPECT_EQ(e->flags, 0x139) << "editor, mono, replacing, program chunks, synth";
    EXPECT_EQ(e->uniqueID, ('R' << 24) | ('w' << 16) | ('4' << 8) | 'k');
    EXPECT_EQ(e->version, 1);
    EXPECT_EQ(e->initialDelay, 0);
    EXPECT_FLOAT_EQ(e->ioRatio, 1.0f);
    EXPECT_EQ(e->processDoubleReplacing, nullptr);

    struct Case {
        int opcode;
        vst2::intptr expected;
    } cases[] = {
        {vst2::effIdentify, 0x4E764566}, {vst2::effGetChunk, 0},          {vst2::effSetChunk, 0},
        {vst2::effCanBeAutomated, 1},    {vst2::effString2Parameter, 0},  {vst2::effGetNumProgramCategories, 1},
        {vst2::effCopyProgram, 0},       {vst2::effConnectInput, 1},      {vst2::effConnectOutput, 1},
        {vst2::effGetInputProperties, 0}, {vst2::effGetPlugCategory, 2},  {vst2::effGetVendorVersion, 0x20000},
        {vst2::effKeysRequired, 1},      {vst2::effGetVstVersion, 2200},  {vst2::effGetCurrentMidiProgram, -1},
        {vst2::effGetVu, 0},             {vst2::effOpen, 0},              {16, 0},
        {50, 0},                         {100, 0},
    };
    for (const Case& c : cases) EXPECT_EQ(f.dispatch(c.opcode), c.expected) << "opcode " << c.opcode;

    char text[256] = {};
    EXPECT_EQ(f.dispatch(vst2::effGetEffectName, 0, 0, text), 1);
    EXPECT_STREQ(text, "Tolvane2");
    EXPECT_EQ(f.dispatch(vst2::effGetVendorString, 0, 0, text), 1);
    EXPECT_STREQ(text, "Brindlecot");
    std::memset(text, 0, sizeof text);
    EXPECT_EQ(f.dispatch(vst2::effGetProductString, 0, 0, text), 0) << "the product string is filled but answers 0";
    EXPECT_STREQ(text, "Tolvane2");

    // canDo is exact and case-sensitive.
    auto canDo = [&](const char* s) { return f.dispatch(vst2::effCanDo, 0, 0, const_cast<char*>(s)); };
    EXPECT_EQ(canDo("receiveVstEvents"), 1);
    EXPECT_EQ(canDo("receiveVstMidiEvent"), 1);
    EXPECT_EQ(canDo("sendVstEvents"), -1);
    EXPECT_EQ(canDo(""), -1);
    EXPECT_EQ(canDo("receivevstevents"), -1);

    vst2::VstPinProperties pin{};
    EXPECT_EQ(f.dispatch(vst2::effGetOutputProperties, 0, 0, &pin), 1);
    EXPECT_STREQ(pin.label, "Tolvane2 L Out");
    EXPECT_STREQ(pin.shortLabel, "Tol2L");
    EXPECT_EQ(pin.flags, 3);
    EXPECT_EQ(f.dispatch(vst2::effGetOutputProperties, 1, 0, &pin), 1);
    EXPECT_STREQ(pin.label, "Tolvane2 R Out");
    EXPECT_STREQ(pin.shortLabel, "Tol2R");
    std::memset(&pin, 0x55, sizeof pin);
    EXPECT_EQ(f.dispatch(vst2::effGetOutputProperties, 2, 0, &pin), 0);
    EXPECT_EQ(static_cast<unsigned char>(pin.label[0]), 0x55) << "an unknown pin leaves the record untouched";

    vst2::ERect* rect = nullptr;
    EXPECT_EQ(f.dispatch(vst2::effEditGetRect, 0, 0, &rect), 1);
    ASSERT_NE(rect, nullptr);
    EXPECT_EQ(rect->top, 0);
    EXPECT_EQ(rect->left, 0);
    EXPECT_EQ(rect->bottom, 310);
    EXPECT_EQ(rect->right, 718);
}

TEST(SynthPlugin, ParameterNamesLabelsAndDisplays) {
    PluginFixture f;
    EXPECT_EQ(f.text(vst2::effGetParamName, 0), "Wave1");
    EXPECT_EQ(f.text(vst2::effGetParamName, 82), "Voulme");
    EXPECT_EQ(f.text(vst2::effGetParamName, 107), "M1SAssgn");
    EXPECT_EQ(f.text(vst2::effGetParamName, 130), "-");
    // Program 0 plays "PulseM" on both oscillators with 8 voices.
    EXPECT_EQ(f.text(vst2::effGetParamDisplay, 0), "PulseM");
    EXPECT_EQ(f.text(vst2::effGetParamDisplay, 77), "8");
    EXPECT_EQ(f.text(vst2::effGetParamLabel, 2), "%");
    EXPECT_EQ(f.text(vst2::effGetParamDisplay, 126), "-");
    EXPECT_EQ(f.text(vst2::effGetParamDisplay, 144), "-") << "no controller";
    EXPECT_EQ(f.text(vst2::effGetParamDisplay, 160), "-") << "no parameter";
    // A host that hands a short buffer gets at most eight characters.
    for (int i = 0; i < kNumParameters; ++i) {
        EXPECT_LE(f.text(vst2::effGetParamDisplay, i).size(), 8u) << i;
        EXPECT_LE(f.text(vst2::effGetParamName, i).size(), 8u) << i;
    }
}

TEST(SynthPlugin, TempoAwareDisplaysFollowTheHostTempo) {
    PluginFixture f;
    const int polls = f.host.count(vst2::audioMasterGetTime);
    f.render(300);
    EXPECT_EQ(f.host.count(vst2::audioMasterGetTime), polls + 1) << "the tempo is asked once per host call";
    f.host.giveTime = false;
    f.render(64);
    EXPECT_FLOAT_EQ(f.plugin->tempo(), -1.0f);
    f.plugin->setParameter(param::Lfo1Mode, 4.5f / 8.0f);  // Poly / Tempo Sync
    f.plugin->setParameter(param::DelayTempoSync, 1.0f);
    char text[64];
    f.plugin->formatterOf(param::Lfo1Mode)->display(4.5f / 8.0f, text);
    EXPECT_STREQ(text, "P...**");
    f.plugin->formatterOf(param::Lfo1Mode)->fullText(4.5f / 8.0f, text);
    EXPECT_STREQ(text, "Poly/[tempo not available]");
    f.plugin->formatterOf(param::DelayTempoSync)->display(1.0f, text);
    EXPECT_STREQ(text, "[NA]");

    f.host.giveTime = true;
    f.host.time.tempo = 120.0;
    f.render(64);
    EXPECT_FLOAT_EQ(f.plugin->tempo(), 120.0f);
    f.plugin->setParameter(param::Lfo1Speed, 12.5f / 31.0f);  // division 12: "1"
    f.plugin->formatterOf(param::Lfo1Speed)->display(0.0f, text);
    EXPECT_STREQ(text, "1");
    f.plugin->setParameter(param::EffectDelayTime, 1.0f);  // "2" = 4 s at 120 bpm, limited by the delay line
    f.plugin->formatterOf(param::EffectDelayTime)->fullText(1.0f, text);
    EXPECT_STREQ(text, "2 [limited up to 2sec]");
    f.plugin->setParameter(param::EffectDelayTime, 0.6f);  // "1/3" = 2/3 s
    f.plugin->formatterOf(param::EffectDelayTime)->fullText(0.6f, text);
    EXPECT_STREQ(text, "1/3");
}

TEST(SynthPlugin, ProgramsAndTheirStatusLines) {
    PluginFixture f;
    EXPECT_EQ(f.text(vst2::effGetProgramName), "Lavender Myst");
    EXPECT_EQ(f.statusLine1(), "Tolvane2");

    char name[64];
    EXPECT_EQ(f.dispatch(vst2::effGetProgramNameIndexed, 511, 0, name), 1);
    EXPECT_STREQ(name, "InitProg");
    EXPECT_EQ(f.dispatch(vst2::effGetProgramNameIndexed, 63, 7, name), 1) << "the category is ignored";
    EXPECT_STREQ(name, "Infinity");
    EXPECT_EQ(f.dispatch(vst2::effGetProgramNameIndexed, 512, 0, name), 0);

    f.dispatch(vst2::effSetProgram, 0, 130);
    EXPECT_EQ(f.dispatch(vst2::effGetProgram), 130);
    std::string l1, l2;
    f.status(l1, l2);
    EXPECT_EQ(l1, "Program B-3");
    EXPECT_EQ(l2, "");
    f.dispatch(vst2::effSetProgram, 0, 511);
    EXPECT_EQ(f.statusLine1(), "Program D-128");
    f.dispatch(vst2::effSetProgram, 0, 512);
    EXPECT_EQ(f.dispatch(vst2::effGetProgram), 511) << "512 and above are ignored";
    f.dispatch(vst2::effSetProgram, 0, 128);
    EXPECT_EQ(f.statusLine1(), "Program B-1");
    EXPECT_EQ(f.text(vst2::effGetProgramName), "InitProg");
    f.dispatch(vst2::effSetProgramName, 0, 0, const_cast<char*>("Renamed"));
    EXPECT_EQ(f.text(vst2::effGetProgramName), "InitProg") << "the host cannot rename programs";
}

TEST(SynthPlugin, GetParameterAnswersTheValueLastSet) {
    PluginFixture f;
    EXPECT_FLOAT_EQ(f.effect->getParameter(f.effect, 33), 0.485f);
    EXPECT_FLOAT_EQ(f.effect->getParameter(f.effect, 150), 0.005f);
    EXPECT_FLOAT_EQ(f.effect->getParameter(f.effect, 170), 0.995f);
    f.effect->setParameter(f.effect, 33, 0.9f);
    EXPECT_FLOAT_EQ(f.effect->getParameter(f.effect, 33), 0.9f);
    f.effect->setParameter(f.effect, param::NumberOfVoices, 1.0f);
    EXPECT_EQ(f.text(vst2::effGetParamDisplay, param::NumberOfVoices), "64") << "the display follows the value";
    f.effect->setParameter(f.effect, 33, 2.0f);
    EXPECT_FLOAT_EQ(f.effect->getParameter(f.effect, 33), 1.0f) << "a careless value is answered as limited";
    f.effect->setParameter(f.effect, 33, 0.9f);
    std::string l1, l2;
    f.status(l1, l2);
    EXPECT_EQ(l1, "Filter Cutoff Frequency");
    EXPECT_NE(l2.find(" Hz"), std::string::npos);
    f.effect->setParameter(f.effect, -1, 0.5f);  // ignored
    f.effect->setParameter(f.effect, 176, 0.5f);
    EXPECT_EQ(f.statusLine1(), "Filter Cutoff Frequency");
    f.dispatch(vst2::effSetProgram, 0, 0);
    EXPECT_FLOAT_EQ(f.effect->getParameter(f.effect, 33), 0.485f) << "edits never change the stored program";
}

TEST(SynthPlugin, ParametersReachTheEngineAtTheNextBlock) {
    PluginFixture f;
    EXPECT_EQ(f.plugin->router().voiceCount(), 8);
    f.effect->setParameter(f.effect, param::NumberOfVoices, 1.0f);
    EXPECT_EQ(f.plugin->router().voiceCount(), 8) << "not before the next block";
    f.render(64);
    EXPECT_EQ(f.plugin->router().voiceCount(), 64);
    f.effect->setParameter(f.effect, param::MidiChannel, 3.5f / 17.0f);
    f.effect->setParameter(f.effect, param::Unison, 1.0f);
    f.render(64);
    EXPECT_EQ(f.plugin->router().midiChannel(), 2);
    EXPECT_TRUE(f.plugin->router().unison());
    // Out-of-range values from a careless host are limited, never passed on.
    f.effect->setParameter(f.effect, param::NumberOfVoices, 7.0f);
    f.render(64);
    EXPECT_EQ(f.plugin->router().voiceCount(), 64);
    f.effect->setParameter(f.effect, param::NumberOfVoices, std::nanf(""));
    f.render(64);
    EXPECT_EQ(f.plugin->router().voiceCount(), 1);
}

// Where samples fall on the 64-sample grid is heard in PlayedSound.HostBlockSizeDoesNotChangeTheSound.
TEST(SynthPlugin, ResumeAsksForMidiAndRestartsTheBlockCount) {
    PluginFixture f;
    f.render(300);
    EXPECT_EQ(f.plugin->tick(), 5u);
    f.dispatch(vst2::effMainsChanged, 0, 0);
    f.dispatch(vst2::effMainsChanged, 0, 1);
    EXPECT_EQ(f.host.count(vst2::audioMasterWantMidi), 1);
    f.render(64);
    EXPECT_EQ(f.plugin->tick(), 1u) << "rendering starts again from tick 1 after suspend and resume";
}

TEST(SynthPlugin, MidiProgramChangeAndBankSelect) {
    PluginFixture f;
    f.dispatch(vst2::effSetProgram, 0, 300);
    f.render(64, {{0xC0, 5, 0}});
    EXPECT_EQ(f.dispatch(vst2::effGetProgram), 261);
    EXPECT_EQ(f.statusLine1(), "Program C-6");
    f.dispatch(vst2::effSetProgram, 0, 3);
    f.render(64, {{0xB0, 0, 6}});
    EXPECT_EQ(f.dispatch(vst2::effGetProgram), 259);
    f.dispatch(vst2::effSetProgram, 0, 10);
    f.render(64, {{0xB0, 0, 5}});
    EXPECT_EQ(f.dispatch(vst2::effGetProgram), 138);
}

TEST(SynthPlugin, ControllerMapsAndLearn) {
    PluginFixture f;
    // Map 1: controller 7 drives the filter cutoff.
    f.effect->setParameter(f.effect, 144, 7.5f / 129.0f);
    f.effect->setParameter(f.effect, 160, 33.5f / 100.0f);
    f.render(64, {{0xB0, 7, 127}});
    EXPECT_FLOAT_EQ(f.plugin->synthEditor().value(33), 1.0f);
    f.render(64, {{0xB0, 7, 0}});
    EXPECT_FLOAT_EQ(f.plugin->synthEditor().value(33), 0.0f);
    EXPECT_EQ(f.statusLine1(), "Filter Cutoff Frequency");

    // Map 2 learns: sustain does not teach it, controller 74 does, and the same message does not move
    // the map's target.
    f.effect->setParameter(f.effect, 145, 1.0f);
    f.effect->setParameter(f.effect, 161, 2.5f / 100.0f);
    f.render(64);
    EXPECT_EQ(f.plugin->router().mapControl(1), 128);
    f.render(64, {{0xB0, 64, 127}});
    EXPECT_EQ(f.plugin->router().mapControl(1), 128);
    float pulseWidth = f.plugin->synthEditor().value(2);
    f.render(64, {{0xB0, 74, 100}});
    EXPECT_EQ(f.plugin->router().mapControl(1), 74);
    EXPECT_NEAR(f.plugin->synthEditor().value(145), 74.5f / 129.0f, 1e-6);
    EXPECT_FLOAT_EQ(f.plugin->synthEditor().value(2), pulseWidth);
    f.render(64, {{0xB0, 74, 127}});
    EXPECT_FLOAT_EQ(f.plugin->synthEditor().value(2), 1.0f);
    // Maps are not part of programs; getParameter answers what learning set.
    f.dispatch(vst2::effSetProgram, 0, 5);
    f.render(64);
    EXPECT_EQ(f.plugin->router().mapControl(1), 74);
    EXPECT_NEAR(f.effect->getParameter(f.effect, 145), 74.5f / 129.0f, 1e-6);

    // A map set to sustain (64), all sound off (120) or all notes off (123) takes the next controller.
    f.effect->setParameter(f.effect, 144, 64.5f / 129.0f);
    f.effect->setParameter(f.effect, 145, 120.5f / 129.0f);
    f.effect->setParameter(f.effect, 146, 123.5f / 129.0f);
    f.effect->setParameter(f.effect, 147, 0.0f);
    f.render(64);
    EXPECT_EQ(f.plugin->router().mapControl(0), 65);
    EXPECT_EQ(f.plugin->router().mapControl(1), 121);
    EXPECT_EQ(f.plugin->router().mapControl(2), 124);
    EXPECT_EQ(f.plugin->router().mapControl(3), 0);
}

// The host's program numbers -3..-8 are the editor's file commands. The statuses and refusals of every
// file kind are FileCommands' tests; here a loaded program keeps the plug-in's program number and a damaged
// file leaves the edit buffer alone.
TEST(SynthPlugin, FileCommandsLoadIntoTheCurrentProgram) {
    PluginFixture f;
    TempFolder folder;
    ProgramRecord record = factoryProgram(0);
    record.setName("From File");
    record.values[param::FilterCutoff] = 0.25f;
    writeContents(folder.file("good.prog"), writeProgramFile(record));
    FileBytes bytes = writeProgramFile(factoryProgram(5));
    bytes[20 + 3] = 2;  // count 2
    writeContents(folder.file("bad.prog"), bytes);

    f.dispatch(vst2::effSetProgram, 0, 200);
    f.dialogs->outcome = DialogChoice::Outcome::Chosen;
    f.dialogs->path = folder.file("good.prog");
    f.dispatch(vst2::effSetProgram, 0, -3);
    std::string l1, l2;
    f.status(l1, l2);
    EXPECT_EQ(l1, "Program loaded: B-73");
    EXPECT_EQ(l2, "");
    EXPECT_EQ(f.dispatch(vst2::effGetProgram), 200);
    EXPECT_FLOAT_EQ(f.plugin->synthEditor().value(param::FilterCutoff), 0.25f);
    char name[32];
    f.plugin->synthEditor().programName(name);
    EXPECT_STREQ(name, "From File");

    f.plugin->synthEditor().setParameter(param::FilterCutoff, 0.3f);
    f.dialogs->path = folder.file("bad.prog");
    f.dispatch(vst2::effSetProgram, 0, -3);
    f.status(l1, l2);
    EXPECT_EQ(l1 + " / " + l2, "File I/O error / Invalid format");
    EXPECT_FLOAT_EQ(f.plugin->synthEditor().value(param::FilterCutoff), 0.3f);
    f.plugin->synthEditor().programName(name);
    EXPECT_STREQ(name, "From File");

    f.dialogs->outcome = DialogChoice::Outcome::Cancelled;
    f.dispatch(vst2::effSetProgram, 0, -5);
    EXPECT_EQ(f.statusLine1(), "") << "a command clears the status; a cancel shows nothing";

    // Load and save of a program, bank and maps; other negative numbers are no command.
    f.dialogs->asked.clear();
    for (int command = -3; command >= -9; --command) f.dispatch(vst2::effSetProgram, 0, command);
    const std::vector<std::pair<FileKind, bool>> asked = {
        {FileKind::Program, false}, {FileKind::Bank, false}, {FileKind::ControllerMap, false},
        {FileKind::Program, true},  {FileKind::Bank, true},  {FileKind::ControllerMap, true}};
    EXPECT_EQ(f.dialogs->asked, asked);
}

TEST(SynthPlugin, BankRoundTripReplacesTheCurrentBank) {
    PluginFixture f;
    f.dispatch(vst2::effSetProgram, 0, 130);  // bank B
    BankPrograms bank;
    for (int i = 0; i < kProgramsPerBank; ++i) {
        bank.programs[i] = factoryProgram(64);
        char name[32];
        std::snprintf(name, sizeof name, "Bank Sound %d", i);
        bank.programs[i].setName(name);
        bank.programs[i].values[param::FilterCutoff] = static_cast<float>(i) / 127.0f;
    }
    TempFolder folder;
    writeContents(folder.file("in.bank"), writeBankFile(bank));
    f.dialogs->outcome = DialogChoice::Outcome::Chosen;
    f.dialogs->path = folder.file("in.bank");
    f.dispatch(vst2::effSetProgram, 0, -4);
    EXPECT_EQ(f.statusLine1(), "Bank B loaded");
    char name[64];
    f.dispatch(vst2::effGetProgramNameIndexed, 128 + 7, 0, name);
    EXPECT_STREQ(name, "Bank Sound 7");
    f.dispatch(vst2::effGetProgramNameIndexed, 7, 0, name);
    EXPECT_STREQ(name, "Slow Sync Strings") << "other banks keep their programs";
    EXPECT_EQ(f.text(vst2::effGetProgramName), "Bank Sound 2") << "the current program is applied again";
    EXPECT_FLOAT_EQ(f.effect->getParameter(f.effect, param::FilterCutoff), 2.0f / 127.0f);

    f.dialogs->path = folder.file("out.bank");
    f.dispatch(vst2::effSetProgram, 0, -7);
    EXPECT_EQ(f.statusLine1(), "Bank B saved");
    const FileBytes bytes = testing::fileContents(folder.file("out.bank"));
    BankPrograms back;
    ASSERT_EQ(readBankFile(bytes.data(), bytes.size(), back), FileResult::Ok);
    EXPECT_STREQ(back.programs[127].name, "Bank Sound 127");
}

}  // namespace
}  // namespace tolvane
