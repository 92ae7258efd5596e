// A plug-in object driven through its effect record, as a host drives it.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "host/SynthPlugin.h"
#include "support/AllocationCounter.h"
#include "support/FakeFileDialogs.h"
#include "support/FakeHost.h"
#include "support/HostSession.h"

namespace tolvane::testing {

class PluginFixture {
public:
    PluginFixture() {
        host.install();
        auto dialogsOwned = std::make_unique<FakeFileDialogs>();
        dialogs = dialogsOwned.get();
        plugin = new SynthPlugin(&FakeHost::callback, std::move(dialogsOwned));
        effect = plugin->effect();
    }
    ~PluginFixture() {
        if (effect) dispatch(vst2::effClose);
        FakeHost::current() = nullptr;
    }
    PluginFixture(const PluginFixture&) = delete;
    PluginFixture& operator=(const PluginFixture&) = delete;

    vst2::intptr dispatch(int opcode, int index = 0, vst2::intptr value = 0, void* ptr = nullptr, float opt = 0.0f) {
        vst2::intptr r = effect->dispatcher(effect, opcode, index, value, ptr, opt);
        if (opcode == vst2::effClose) effect = nullptr;
        return r;
    }

    std::string text(int opcode, int index = 0, vst2::intptr value = 0) {
        char buffer[256];
        std::memset(buffer, 0x7F, sizeof buffer);
        buffer[255] = 0;
        dispatch(opcode, index, value, buffer);
        return buffer;
    }

    void status(std::string& line1, std::string& line2) {
        char a[SynthEditor::kStatusTextSize], b[SynthEditor::kStatusTextSize];
        plugin->synthEditor().statusLines(a, b);
        line1 = a;
        line2 = b;
    }
    std::string statusLine1() {
        std::string a, b;
        status(a, b);
        return a;
    }

    // Renders frames samples with processReplacing, after delivering the given MIDI events at offset 0.
    void render(int frames, const std::vector<std::array<unsigned char, 3>>& midi = {}) {
        MidiEventList events;
        for (const auto& m : midi) events.add(0, m);
        vst2::VstEvents* list = events.list();
        left.assign(static_cast<std::size_t>(frames), 0.0f);
        right.assign(static_cast<std::size_t>(frames), 0.0f);
        float* outs[2] = {left.data(), right.data()};
        AllocationCounter counter;  // what the plug-in allocates on the audio thread
        dispatch(vst2::effProcessEvents, 0, 0, list);
        effect->processReplacing(effect, nullptr, outs, frames);
        allocationsWhileProcessing += counter.count();
    }

    FakeHost host;
    FakeFileDialogs* dialogs = nullptr;
    SynthPlugin* plugin = nullptr;
    vst2::AEffect* effect = nullptr;
    std::vector<float> left, right;
    std::size_t allocationsWhileProcessing = 0;
};

}  // namespace tolvane::testing
