// Renders a sequence of MIDI events through a plug-in's effect record the way a host does: in host
// buffers of a chosen size, each event delivered in the buffer that contains its sample position.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "host/Vst2.h"

namespace tolvane::testing {

struct TimedMidi {
    std::int64_t position;  // absolute sample position
    std::array<unsigned char, 3> bytes;
};

// Renders frames samples per channel into left/right with host buffers of blockSize samples.
inline void renderSession(vst2::AEffect* e, const std::vector<TimedMidi>& events, int frames, int blockSize,
                          std::vector<float>& left, std::vector<float>& right) {
    left.assign(static_cast<std::size_t>(frames), 0.0f);
    right.assign(static_cast<std::size_t>(frames), 0.0f);
    std::size_t next = 0;
    std::vector<vst2::VstMidiEvent> midi;
    std::vector<vst2::VstEvent*> pointers;
    std::vector<char> storage;
    for (int start = 0; start < frames; start += blockSize) {
        int n = frames - start < blockSize ? frames - start : blockSize;
        midi.clear();
        while (next < events.size() && events[next].position < start + n) {
            vst2::VstMidiEvent m;
            std::memset(&m, 0, sizeof m);
            m.type = vst2::kVstMidiType;
            m.byteSize = sizeof m;
            m.deltaFrames = static_cast<int>(events[next].position - start);
            for (int k = 0; k < 3; ++k) m.midiData[k] = static_cast<char>(events[next].bytes[k]);
            midi.push_back(m);
            ++next;
        }
        pointers.clear();
        for (auto& m : midi) pointers.push_back(reinterpret_cast<vst2::VstEvent*>(&m));
        storage.assign(sizeof(vst2::VstEvents) + pointers.size() * sizeof(vst2::VstEvent*), 0);
        auto* list = reinterpret_cast<vst2::VstEvents*>(storage.data());
        list->numEvents = static_cast<int>(pointers.size());
        for (std::size_t i = 0; i < pointers.size(); ++i) list->events[i] = pointers[i];
        e->dispatcher(e, vst2::effProcessEvents, 0, 0, list, 0.0f);
        float* outs[2] = {left.data() + start, right.data() + start};
        e->processReplacing(e, nullptr, outs, n);
    }
}

}  // namespace tolvane::testing
