// MIDI event queue, controller state and voice allocation.
//
// Events are queued with their sample offsets and applied at 64-sample block boundaries. The allocator
// writes one small note state per voice; the engine's note sources read those states once per block.
//
// One object, three views. The voice allocator is also the engine's module graph (it owns the rates, the
// voice count and the lists of units, because the voice count is what every per-voice container follows),
// and in the plug-in it is a ControllerRouter (params/), which adds controller maps, learning, bank select
// and program change to the controller handling. Whoever holds it names it by the view it uses: the engine
// holds `allocator_` (voice states and the graph), the plug-in holds `router_` (the same object, built as
// a router, handed to the engine as its allocator).
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/NodePool.h"
#include "dsp/EngineLimits.h"

namespace tolvane {

struct MidiEventEntry {
    std::uint32_t position = 0;  // sample offset in the host's current buffer
    std::uint8_t status = 0;
    std::uint8_t data1 = 0;
    std::uint8_t data2 = 0;
};

struct VoiceState {
    std::uint8_t trigger = 0;         // 1 in the block the voice was (re)started
    std::uint8_t gate = 0;            // 1 while the key (or the sustain pedal) holds the voice
    std::uint8_t velocity = 0;        // note-on velocity 1..127
    std::uint8_t releaseVelocity = 0; // note-off velocity
    std::uint8_t currentNote = 64;    // the note the pitch starts from in this block
    std::uint8_t pressure = 0;        // polyphonic aftertouch of the voice's key
    std::uint8_t key = 64;            // the key the voice belongs to
};

class VoiceAllocator : public ModuleGraph {
public:
    static constexpr int kQueueCapacity = 4096;

    VoiceAllocator(int voiceCount, int midiChannel);
    ~VoiceAllocator() override;

    // The host's event list for the coming buffer: sets the block clock to the samples carried over from
    // the previous buffer. Events of earlier lists that no block has reached yet (a buffer the carried
    // samples covered whole) stay queued, moved back by the elapsedSamples the host took since the
    // previous list and no earlier than the new buffer's start, so they play in the next block instead of
    // being lost. Events beyond the queue's capacity are dropped.
    void beginEvents(std::uint32_t carriedSamples, std::uint32_t elapsedSamples);
    bool pushEvent(std::uint32_t position, std::uint8_t status, std::uint8_t data1, std::uint8_t data2);
    int queuedEvents() const { return static_cast<int>(queue_.size()); }
    int droppedEvents() const { return dropped_; }

    // Applies, in queue order, every queued event before clock + n, then advances the clock by n.
    void processEvents(int n);

    void setVoiceCount(int n) override;
    void setUnison(bool on);
    void setPortamento(bool on) { portamento_ = on; }
    void setLegato(bool on) { legato_ = on; }
    // 0..15 listens to one channel, anything else to all (omni). Resets the controller state.
    void setMidiChannel(int channel);

    virtual void controlChange(int controller, int value);
    virtual void programChange(int /*program*/) {}

    int midiChannel() const { return channel_; }
    bool unison() const { return unison_; }
    bool portamento() const { return portamento_; }
    bool legato() const { return legato_; }

    const VoiceState& state(int voice) const { return states_[static_cast<std::size_t>(voice)]; }
    const std::uint8_t* controllers() const { return controllers_.data(); }
    int pitchBend() const { return pitchBend_; }
    int channelPressure() const { return channelPressure_; }
    int sustain() const { return sustain_; }
    // The unison state while Unison is on, else the newest playing voice, else the newest free voice.
    const VoiceState& latestState() const;

    // Inspection for tests and diagnostics.
    int heldKeyCount() const { return heldKeys_.size(); }
    int playingVoiceCount() const { return playingVoices_.size(); }
    int freeVoiceCount() const { return freeVoices_.size(); }

protected:
    void applyEvent(const MidiEventEntry& e);

private:
    struct HeldKey {
        int note = 0;
        int velocity = 0;
    };

    void resetAllocation();
    void noteOn(int key, int velocity);
    void noteOff(int key, int releaseVelocity);
    void polyPressure(int key, int pressure);
    void unisonNoteOn(int key, int velocity);
    void unisonNoteOff(int key, int releaseVelocity);
    void copyUnisonToVoices();
    void removeHeldKey(int key, bool* wasHeld);

    std::vector<MidiEventEntry> queue_;
    std::size_t readPosition_ = 0;
    std::uint32_t clock_ = 0;
    int dropped_ = 0;

    int channel_ = -1;
    std::array<std::uint8_t, 128> controllers_{};
    int pitchBend_ = 0;
    int channelPressure_ = 0;
    int sustain_ = 0;

    std::array<VoiceState, kMaxVoices> states_{};
    int stateCount_ = 0;
    VoiceState unisonState_{};

    NodePool<HeldKey> keyPool_;
    NodePool<int> voicePool_;
    PoolList<HeldKey> heldKeys_{keyPool_};
    PoolList<int> playingVoices_{voicePool_};
    PoolList<int> freeVoices_{voicePool_};

    bool unison_ = false;
    bool portamento_ = false;
    bool legato_ = false;
};

}  // namespace tolvane
