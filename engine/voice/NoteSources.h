// Per-voice units that read the allocator's note state once per block, and the shared latest-trigger
// source. Instance k of a note-source container reads voice k.
#pragma once

#include <array>

#include "engine/framework/DspModule.h"
#include "engine/framework/PolyModule.h"
#include "engine/voice/VoiceAllocator.h"

namespace tolvane {

class NoteSource : public DspModule {
public:
    explicit NoteSource(ModuleGraph& graph) : DspModule(graph) {}
    void setVoice(int voice) { voice_ = voice; }
    int voice() const { return voice_; }

protected:
    const VoiceState& state() const { return static_cast<const VoiceAllocator&>(owner()).state(voice_); }
    int voice_ = 0;
};

// 1.0 while the voice's gate is on.
class GateSource : public NoteSource {
public:
    using NoteSource::NoteSource;
    void compute() override { scalar_ = state().gate ? 1.0f : 0.0f; }
};

// 1.0 in the block in which the voice was (re)started.
class TriggerSource : public NoteSource {
public:
    using NoteSource::NoteSource;
    void compute() override { scalar_ = state().trigger ? 1.0f : 0.0f; }
};

// velocity / 127.
class VelocitySource : public NoteSource {
public:
    using NoteSource::NoteSource;
    void compute() override { scalar_ = static_cast<float>(state().velocity) * 0.007874016f; }
};

// The voice's current note as a note number (the glide's input).
class CurrentNoteSource : public NoteSource {
public:
    using NoteSource::NoteSource;
    void compute() override { scalar_ = static_cast<float>(state().currentNote); }
};

// The voice's current note / 127 (the "Key" modulation source).
class KeySource : public NoteSource {
public:
    using NoteSource::NoteSource;
    void compute() override { scalar_ = static_cast<float>(state().currentNote) / 127.0f; }
};

// The voice's polyphonic aftertouch / 127.
class PolyPressureSource : public NoteSource {
public:
    using NoteSource::NoteSource;
    void compute() override { scalar_ = static_cast<float>(state().pressure) / 127.0f; }
};

// A velocity response: entry 0 and 127 hold the end values, entries between are spaced linearly.
// With the ends 0 and 1 the output equals velocity / 127.
class VelocityCurve : public NoteSource {
public:
    explicit VelocityCurve(ModuleGraph& graph) : NoteSource(graph) { setEnds(0.0f, 1.0f); }
    void setEnds(float first, float last);
    // The curve of a sensitivity S around a centre M: from M - M S to M + M S.
    void setSensitivity(float sensitivity, float centre) { setEnds(centre - centre * sensitivity, centre + centre * sensitivity); }
    float entry(int velocity) const { return table_[static_cast<std::size_t>(velocity & 0x7F)]; }
    void compute() override { scalar_ = table_[static_cast<std::size_t>(state().velocity & 0x7F)]; }

private:
    std::array<float, 128> table_{};
};

// The trigger of the allocator's latest state: what shared (mono) units restart from.
class LatestTriggerSource : public DspModule {
public:
    explicit LatestTriggerSource(ModuleGraph& graph) : DspModule(graph) {}
    void compute() override {
        scalar_ = static_cast<const VoiceAllocator&>(owner()).latestState().trigger ? 1.0f : 0.0f;
    }
};

// A per-voice container of note sources: instance k reads voice k, whatever the voice count.
template <typename T>
class NoteSourceContainer : public Poly<T> {
public:
    explicit NoteSourceContainer(ModuleGraph& graph) : Poly<T>(graph, 0, kRuleGraphVoices) {
        for (int i = 0; i < this->instancesAllocated(); ++i) this->allocatedAt(i).setVoice(i);
    }
};

}  // namespace tolvane
