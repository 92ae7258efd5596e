#include "engine/voice/VoiceAllocator.h"

#include <algorithm>

namespace tolvane {

VoiceAllocator::VoiceAllocator(int voiceCount, int midiChannel) {
    queue_.reserve(kQueueCapacity);
    setMidiChannel(midiChannel);
    setVoiceCount(voiceCount);
}

VoiceAllocator::~VoiceAllocator() = default;

void VoiceAllocator::beginEvents(std::uint32_t carriedSamples, std::uint32_t elapsedSamples) {
    queue_.erase(queue_.begin(), queue_.begin() + static_cast<std::ptrdiff_t>(readPosition_));
    for (MidiEventEntry& e : queue_) e.position = e.position > elapsedSamples ? e.position - elapsedSamples : 0u;
    readPosition_ = 0;
    clock_ = carriedSamples;
}

bool VoiceAllocator::pushEvent(std::uint32_t position, std::uint8_t status, std::uint8_t data1, std::uint8_t data2) {
    if (queue_.size() >= kQueueCapacity) {
        ++dropped_;
        return false;
    }
    queue_.push_back(MidiEventEntry{position, status, data1, data2});
    return true;
}

void VoiceAllocator::processEvents(int n) {
    // Block start: triggers last exactly one block; a voice started from the previous note shows it
    // for one block only.
    if (!unison_) {
        for (int i = 0; i < stateCount_; ++i) {
            VoiceState& s = states_[static_cast<std::size_t>(i)];
            s.trigger = 0;
            s.currentNote = s.key;
        }
    } else if (unisonState_.trigger) {
        unisonState_.trigger = 0;
        for (int i = 0; i < stateCount_; ++i) states_[static_cast<std::size_t>(i)].trigger = 0;
    }

    std::uint32_t end = clock_ + static_cast<std::uint32_t>(n);
    while (readPosition_ < queue_.size() && queue_[readPosition_].position < end) {
        applyEvent(queue_[readPosition_]);
        ++readPosition_;
    }
    clock_ = end;
}

void VoiceAllocator::applyEvent(const MidiEventEntry& e) {
    if (channel_ != -1 && (e.status & 0x0F) != channel_) return;
    int d1 = e.data1 & 0x7F;
    int d2 = e.data2 & 0x7F;
    switch (e.status & 0xF0) {
        case 0x80:
            if (unison_) unisonNoteOff(d1, d2); else noteOff(d1, d2);
            break;
        case 0x90:
            if (d2 == 0) {
                if (unison_) unisonNoteOff(d1, 0); else noteOff(d1, 0);
            } else {
                if (unison_) unisonNoteOn(d1, d2); else noteOn(d1, d2);
            }
            break;
        case 0xA0: polyPressure(d1, d2); break;
        case 0xB0: controlChange(d1, d2); break;
        case 0xC0: programChange(d1); break;
        case 0xD0: channelPressure_ = d1; break;
        case 0xE0: pitchBend_ = d2 * 128 + d1 - 8192; break;
        default: break;
    }
}

void VoiceAllocator::setVoiceCount(int n) {
    n = std::clamp(n, 1, kMaxVoices);
    // States of voices that remain keep their values; new ones start from the reset state.
    for (int i = stateCount_; i < n; ++i) states_[static_cast<std::size_t>(i)] = VoiceState{};
    stateCount_ = n;
    resetAllocation();
    ModuleGraph::setVoiceCount(n);
}

void VoiceAllocator::setUnison(bool on) {
    if (on == unison_) return;
    unison_ = on;
    resetAllocation();
}

void VoiceAllocator::setMidiChannel(int channel) {
    channel_ = (channel >= 0 && channel <= 15) ? channel : -1;
    controllers_.fill(0);
    pitchBend_ = 0;
    channelPressure_ = 0;
    sustain_ = 0;
}

const VoiceState& VoiceAllocator::latestState() const {
    if (unison_) return unisonState_;
    if (!playingVoices_.empty()) return states_[static_cast<std::size_t>(playingVoices_.back()->payload)];
    if (!freeVoices_.empty()) return states_[static_cast<std::size_t>(freeVoices_.back()->payload)];
    return states_[0];
}

void VoiceAllocator::resetAllocation() {
    heldKeys_.clear();
    playingVoices_.clear();
    freeVoices_.clear();
    unisonState_ = VoiceState{};
    unisonState_.currentNote = 64;
    unisonState_.key = 64;
    if (unison_) {
        for (int i = 0; i < stateCount_; ++i) states_[static_cast<std::size_t>(i)] = unisonState_;
        return;
    }
    // Idle voices carry distinct keys around 64 and are handed out in index order.
    for (int i = 0; i < stateCount_; ++i) {
        VoiceState s = unisonState_;
        std::uint8_t note = static_cast<std::uint8_t>(64 - stateCount_ / 2 + i);
        s.currentNote = note;
        s.key = note;
        states_[static_cast<std::size_t>(i)] = s;
        freeVoices_.pushBack(i);
    }
}

void VoiceAllocator::removeHeldKey(int key, bool* wasHeld) {
    auto* n = heldKeys_.findFromFront([key](const HeldKey& h) { return h.note == key; });
    if (wasHeld) *wasHeld = n != nullptr;
    if (n) heldKeys_.erase(n);
}

void VoiceAllocator::noteOn(int key, int velocity) {
    // A re-struck key gives up its voice.
    removeHeldKey(key, nullptr);
    if (auto* n = playingVoices_.findFromBack(
            [&](int v) { return states_[static_cast<std::size_t>(v)].key == key; })) {
        int v = n->payload;
        playingVoices_.erase(n);
        freeVoices_.pushBack(v);
    }

    int previousNote = latestState().currentNote;
    int voice;
    int startNote = key;
    if (!freeVoices_.empty()) {
        auto* n = freeVoices_.findFromBack([&](int v) { return states_[static_cast<std::size_t>(v)].key == key; });
        if (!n) n = freeVoices_.front();
        voice = n->payload;
        freeVoices_.erase(n);
        if (portamento_ && (!heldKeys_.empty() || !legato_)) startNote = previousNote;
    } else {
        auto* n = playingVoices_.front();  // steal the oldest playing voice
        voice = n->payload;
        playingVoices_.erase(n);
        if (portamento_) startNote = previousNote;
    }

    VoiceState& s = states_[static_cast<std::size_t>(voice)];
    s.trigger = 1;
    s.gate = 1;
    s.key = static_cast<std::uint8_t>(key);
    s.velocity = static_cast<std::uint8_t>(velocity);
    s.currentNote = static_cast<std::uint8_t>(startNote);
    playingVoices_.pushBack(voice);
    heldKeys_.pushBack(HeldKey{key, velocity});
}

void VoiceAllocator::noteOff(int key, int releaseVelocity) {
    bool held = false;
    removeHeldKey(key, &held);
    if (!held) return;
    auto* n = playingVoices_.findFromBack([&](int v) { return states_[static_cast<std::size_t>(v)].key == key; });
    if (!n) return;
    int voice = n->payload;
    VoiceState& s = states_[static_cast<std::size_t>(voice)];
    if (sustain_ == 0) s.gate = 0;
    s.releaseVelocity = static_cast<std::uint8_t>(releaseVelocity);
    playingVoices_.erase(n);
    freeVoices_.pushBack(voice);
}

void VoiceAllocator::polyPressure(int key, int pressure) {
    if (unison_) {
        if (unisonState_.currentNote == key) {
            unisonState_.pressure = static_cast<std::uint8_t>(pressure);
            copyUnisonToVoices();
        }
        return;
    }
    if (auto* n = playingVoices_.findFromBack([&](int v) { return states_[static_cast<std::size_t>(v)].key == key; }))
        states_[static_cast<std::size_t>(n->payload)].pressure = static_cast<std::uint8_t>(pressure);
}

void VoiceAllocator::unisonNoteOn(int key, int velocity) {
    removeHeldKey(key, nullptr);
    // With portamento and without legato the voices keep gliding from the current pitch.
    if (!portamento_ || (legato_ && heldKeys_.empty())) unisonState_.trigger = 1;
    unisonState_.gate = 1;
    unisonState_.velocity = static_cast<std::uint8_t>(velocity);
    unisonState_.currentNote = static_cast<std::uint8_t>(key);
    copyUnisonToVoices();
    heldKeys_.pushBack(HeldKey{key, velocity});
}

void VoiceAllocator::unisonNoteOff(int key, int releaseVelocity) {
    bool held = false;
    removeHeldKey(key, &held);
    if (!held) return;
    if (!heldKeys_.empty()) {
        // Last-note priority: the newest key still held sounds again, without a new attack.
        const HeldKey& newest = heldKeys_.back()->payload;
        unisonState_.velocity = static_cast<std::uint8_t>(newest.velocity);
        unisonState_.currentNote = static_cast<std::uint8_t>(newest.note);
    } else {
        unisonState_.releaseVelocity = static_cast<std::uint8_t>(releaseVelocity);
        unisonState_.gate = 0;
    }
    copyUnisonToVoices();
}

void VoiceAllocator::copyUnisonToVoices() {
    for (int i = 0; i < stateCount_; ++i) states_[static_cast<std::size_t>(i)] = unisonState_;
}

void VoiceAllocator::controlChange(int controller, int value) {
    controllers_[static_cast<std::size_t>(controller & 0x7F)] = static_cast<std::uint8_t>(value & 0x7F);
    switch (controller) {
        case 64: {
            int was = sustain_;
            sustain_ = value >= 64 ? 127 : 0;
            if (was != 0 && sustain_ == 0)
                for (auto* n = freeVoices_.front(); n; n = n->next) states_[static_cast<std::size_t>(n->payload)].gate = 0;
            break;
        }
        case 120:
        case 123:
            for (int i = 0; i < stateCount_; ++i) states_[static_cast<std::size_t>(i)].gate = 0;
            unisonState_.gate = 0;
            break;
        default:
            break;
    }
}

}  // namespace tolvane
