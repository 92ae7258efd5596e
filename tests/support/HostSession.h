// MIDI handed to a plug-in's effect record the way a host does it: an event list per buffer, and a
// whole sequence rendered in buffers of a chosen size, each event in the buffer that holds its position.
#pragma once

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

#include "host/Vst2.h"

namespace tolvane::testing {

// The event list a host hands over with one buffer; it owns the events it points to.
class MidiEventList {
public:
    void clear() { midi_.clear(); }
    void add(int deltaFrames, const std::array<unsigned char, 3>& bytes) {
        vst2::VstMidiEvent m;
        std::memset(&m, 0, sizeof m);
        m.type = vst2::kVstMidiType;
        m.byteSize = sizeof m;
        m.deltaFrames = deltaFrames;
        for (int k = 0; k < 3; ++k) m.midiData[k] = static_cast<char>(bytes[k]);
        midi_.push_back(m);
    }
    vst2::VstEvents* list() {
        storage_.assign(sizeof(vst2::VstEvents) + midi_.size() * sizeof(vst2::VstEvent*), 0);
        auto* list = reinterpret_cast<vst2::VstEvents*>(storage_.data());
        list->numEvents = static_cast<int>(midi_.size());
        for (std::size_t i = 0; i < midi_.size(); ++i) list->events[i] = reinterpret_cast<vst2::VstEvent*>(&midi_[i]);
        return list;
    }

private:
    std::vector<vst2::VstMidiEvent> midi_;
    std::vector<char> storage_;
};

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
    MidiEventList midi;
    for (int start = 0; start < frames; start += blockSize) {
        int n = frames - start < blockSize ? frames - start : blockSize;
        midi.clear();
        for (; next < events.size() && events[next].position < start + n; ++next)
            midi.add(static_cast<int>(events[next].position - start), events[next].bytes);
        e->dispatcher(e, vst2::effProcessEvents, 0, 0, midi.list(), 0.0f);
        float* outs[2] = {left.data() + start, right.data() + start};
        e->processReplacing(e, nullptr, outs, n);
    }
}

}  // namespace tolvane::testing
