// Loads the built plug-in module the way a host does: dlopen, then only its exported entry point.
#include <dlfcn.h>

#include <cmath>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "host/Vst2.h"

#ifdef TOLVANE_PLUGIN_PATH

namespace {

vst2::intptr gVersionAnswer = 2400;

vst2::intptr VST_CALL hostCallback(vst2::AEffect*, vst2::int32 opcode, vst2::int32, vst2::intptr, void*, float) {
    if (opcode == vst2::audioMasterVersion) return gVersionAnswer;
    return 0;
}

class PluginModule : public ::testing::Test {
protected:
    void SetUp() override {
        handle_ = dlopen(TOLVANE_PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
        ASSERT_NE(handle_, nullptr) << dlerror();
        entry_ = reinterpret_cast<vst2::EntryProc>(dlsym(handle_, "VSTPluginMain"));
        legacy_ = reinterpret_cast<vst2::EntryProc>(dlsym(handle_, "main"));
        gVersionAnswer = 2400;
    }
    void TearDown() override {
        if (handle_) dlclose(handle_);
    }
    void* handle_ = nullptr;
    vst2::EntryProc entry_ = nullptr;
    vst2::EntryProc legacy_ = nullptr;
};

TEST_F(PluginModule, BothEntryPointsRunAWholeSession) {
    ASSERT_NE(entry_, nullptr);
    ASSERT_NE(legacy_, nullptr);
    EXPECT_EQ(dlsym(handle_, "_ZN7tolvane11SynthPluginC1EPFlPN4vst27AEffectEiilPvfESt10unique_ptrINS_11FileDialogsESt14default_deleteIS7_EE"), nullptr)
        << "internal symbols stay hidden";
    gVersionAnswer = 0;
    EXPECT_EQ(entry_(hostCallback), nullptr) << "a host without version is refused";
    EXPECT_EQ(legacy_(hostCallback), nullptr) << "a host without version is refused";
    gVersionAnswer = 2400;
    for (vst2::EntryProc proc : {entry_, legacy_}) {
        vst2::AEffect* e = proc(hostCallback);
        ASSERT_NE(e, nullptr);
        EXPECT_EQ(e->magic, vst2::kEffectMagic);
        EXPECT_EQ(e->numParams, 176);
        e->dispatcher(e, vst2::effOpen, 0, 0, nullptr, 0.0f);
        e->dispatcher(e, vst2::effSetSampleRate, 0, 0, nullptr, 48000.0f);
        e->dispatcher(e, vst2::effSetBlockSize, 0, 256, nullptr, 0.0f);
        e->dispatcher(e, vst2::effMainsChanged, 0, 1, nullptr, 0.0f);

        vst2::VstMidiEvent note{};
        note.type = vst2::kVstMidiType;
        note.byteSize = sizeof note;
        note.midiData[0] = static_cast<char>(0x90);
        note.midiData[1] = 60;
        note.midiData[2] = 100;
        struct {
            vst2::int32 numEvents;
            vst2::intptr reserved;
            vst2::VstEvent* events[1];
        } list{1, 0, {reinterpret_cast<vst2::VstEvent*>(&note)}};
        EXPECT_EQ(e->dispatcher(e, vst2::effProcessEvents, 0, 0, &list, 0.0f), 1);

        std::vector<float> left(256, 9.0f), right(256, 9.0f);
        float* outs[2] = {left.data(), right.data()};
        e->processReplacing(e, nullptr, outs, 256);
        for (float s : left) EXPECT_TRUE(std::isfinite(s));
        e->setParameter(e, 33, 0.7f);
        EXPECT_FLOAT_EQ(e->getParameter(e, 33), 0.7f);

        e->dispatcher(e, vst2::effMainsChanged, 0, 0, nullptr, 0.0f);
        EXPECT_EQ(e->dispatcher(e, vst2::effClose, 0, 0, nullptr, 0.0f), 1);
    }
}

}  // namespace

#endif
