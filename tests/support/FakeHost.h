// A host callback for tests: answers the version query, reports a tempo (or none) and records the
// calls the plug-in makes.
#pragma once

#include <atomic>
#include <vector>

#include "host/Vst2.h"

namespace tolvane::testing {

struct FakeHost {
    struct Call {
        int opcode;
        int index;
        vst2::intptr value;
        float opt;
    };

    vst2::intptr version = 2400;
    bool giveTime = true;
    vst2::VstTimeInfo time{};
    std::vector<Call> calls;
    bool record = true;

    FakeHost() {
        time.sampleRate = 44100.0;
        time.tempo = 120.0;
        time.flags = vst2::kVstTempoValid;
    }

    int count(int opcode) const {
        int n = 0;
        for (const Call& c : calls) n += c.opcode == opcode;
        return n;
    }

    // The callback passed to the plug-in; the FakeHost is found through a global set by install().
    static vst2::intptr VST_CALL callback(vst2::AEffect*, vst2::int32 opcode, vst2::int32 index, vst2::intptr value,
                                          void*, float opt);
    void install() { current() = this; }
    static FakeHost*& current() {
        static FakeHost* host = nullptr;
        return host;
    }
};

inline vst2::intptr VST_CALL FakeHost::callback(vst2::AEffect*, vst2::int32 opcode, vst2::int32 index,
                                                vst2::intptr value, void*, float opt) {
    FakeHost* host = current();
    if (!host) return 0;
    if (host->record) host->calls.push_back(Call{opcode, index, value, opt});
    switch (opcode) {
        case vst2::audioMasterVersion: return host->version;
        case vst2::audioMasterGetTime: return host->giveTime ? reinterpret_cast<vst2::intptr>(&host->time) : 0;
        default: return 0;
    }
}

}  // namespace tolvane::testing
