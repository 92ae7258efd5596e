#include "engine/voice/VoiceAllocator.h"

#include <vector>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

// Feeds events as the plug-in does: one host buffer, then one 64-sample block per call to block().
class Driver {
public:
    explicit Driver(VoiceAllocator& a) : a_(a) { a_.beginEvents(0, 0); }
    Driver& on(int key, int vel = 100, int channel = 0) { return push(0x90 | channel, key, vel); }
    Driver& off(int key, int vel = 0, int channel = 0) { return push(0x80 | channel, key, vel); }
    Driver& cc(int c, int v) { return push(0xB0, c, v); }
    Driver& push(int status, int d1, int d2) {
        a_.pushEvent(0, static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(d1), static_cast<std::uint8_t>(d2));
        return *this;
    }
    Driver& block() {
        a_.processEvents(64);
        a_.beginEvents(0, 0);
        return *this;
    }

private:
    VoiceAllocator& a_;
};

int voiceOfKey(const VoiceAllocator& a, int key) {
    for (int v = 0; v < a.voiceCount(); ++v)
        if (a.state(v).key == key && a.state(v).gate) return v;
    return -1;
}

TEST(VoiceAllocator, IdleVoicesCarryDistinctKeysAroundTheMiddleAndAreUsedInTurn) {
    VoiceAllocator a(4, -1);
    for (int v = 0; v < 4; ++v) EXPECT_EQ(a.state(v).key, 62 + v);
    Driver(a).on(60).on(61).on(62).block();
    for (int k = 0; k < 3; ++k) EXPECT_EQ(voiceOfKey(a, 60 + k), k);
}

TEST(VoiceAllocator, StealsTheOldestPlayingVoiceAndReusesAReleasedKeysOwnVoice) {
    VoiceAllocator a(4, -1);
    Driver d(a);
    d.on(60).on(62).on(64).on(65).block();
    int voiceOfC = voiceOfKey(a, 60);
    d.on(67).block();
    EXPECT_EQ(voiceOfKey(a, 67), voiceOfC) << "G takes the voice of the oldest playing key, C";
    EXPECT_EQ(voiceOfKey(a, 60), -1);

    int voiceOfE = voiceOfKey(a, 64);
    d.off(64).block();
    EXPECT_EQ(a.state(voiceOfE).gate, 0);
    d.on(64).block();
    EXPECT_EQ(voiceOfKey(a, 64), voiceOfE);
    EXPECT_EQ(a.state(voiceOfE).trigger, 1);

    // A note-on with velocity 0 is a note-off.
    d.on(64, 0).block();
    EXPECT_EQ(a.state(voiceOfE).gate, 0);
    EXPECT_EQ(a.state(voiceOfE).releaseVelocity, 0);
}

TEST(VoiceAllocator, SustainKeepsReleasedVoicesUntilThePedalRises) {
    VoiceAllocator a(4, -1);
    Driver d(a);
    d.cc(64, 127).on(60).block();
    int v = voiceOfKey(a, 60);
    d.off(60).block();
    EXPECT_EQ(a.state(v).gate, 1) << "held by the pedal";
    EXPECT_EQ(a.freeVoiceCount(), 4);
    d.on(60).block();
    EXPECT_EQ(voiceOfKey(a, 60), v) << "the sustained voice is the first candidate for its key";
    d.off(60).block().cc(64, 0).block();
    EXPECT_EQ(a.state(v).gate, 0);
}

TEST(VoiceAllocator, PortamentoStartsFromThePreviousNoteForOneBlock) {
    VoiceAllocator a(4, -1);
    a.setPortamento(true);
    a.setLegato(true);
    Driver d(a);
    d.on(60).block();
    EXPECT_EQ(a.state(voiceOfKey(a, 60)).currentNote, 60) << "legato: nothing held, so the key starts at its own pitch";
    d.on(67).block();
    int second = voiceOfKey(a, 67);
    EXPECT_EQ(a.state(second).currentNote, 60) << "another key held: start from the previous note";
    d.block();
    EXPECT_EQ(a.state(second).currentNote, 67) << "from the next block on the current note is the key";

    a.setLegato(false);
    d.off(60).off(67).block().on(72).block();
    EXPECT_EQ(a.state(voiceOfKey(a, 72)).currentNote, 67) << "without legato every new key glides";
}

TEST(VoiceAllocator, UnisonReturnsToTheNewestHeldKeyWithoutRetrigger) {
    VoiceAllocator a(3, -1);
    a.setUnison(true);
    Driver d(a);
    d.on(60, 90).on(64, 100).on(67, 110).block();
    for (int v = 0; v < 3; ++v) {
        EXPECT_EQ(a.state(v).currentNote, 67);
        EXPECT_EQ(a.state(v).trigger, 1);
    }
    d.block();
    EXPECT_EQ(a.state(0).trigger, 0);
    d.off(67).block();
    for (int v = 0; v < 3; ++v) {
        EXPECT_EQ(a.state(v).currentNote, 64);
        EXPECT_EQ(a.state(v).velocity, 100);
        EXPECT_EQ(a.state(v).trigger, 0);
        EXPECT_EQ(a.state(v).gate, 1);
    }
    d.off(60).off(64, 33).block();
    EXPECT_EQ(a.state(2).gate, 0);
    EXPECT_EQ(a.state(2).releaseVelocity, 33);
    EXPECT_EQ(a.heldKeyCount(), 0);
}

TEST(VoiceAllocator, UnisonWithPortamentoAndNoLegatoNeverRetriggers) {
    VoiceAllocator a(2, -1);
    a.setUnison(true);
    a.setPortamento(true);
    Driver d(a);
    d.on(60).block();
    EXPECT_EQ(a.state(0).trigger, 0);
    EXPECT_EQ(a.state(0).gate, 1);
    a.setLegato(true);
    d.off(60).block().on(62).block();
    EXPECT_EQ(a.state(0).trigger, 1) << "legato with nothing held triggers";
}

TEST(VoiceAllocator, SingleVoiceRestartsOnEveryNoteAndDoesNotReturnToHeldKeys) {
    VoiceAllocator a(1, -1);
    a.setPortamento(true);
    Driver d(a);
    d.on(60).block().on(64).block();
    EXPECT_EQ(a.state(0).trigger, 1);
    EXPECT_EQ(a.state(0).key, 64);
    EXPECT_EQ(a.state(0).currentNote, 60);
    d.off(64).block();
    EXPECT_EQ(a.state(0).gate, 0) << "only unison returns to a key still held";
}

TEST(VoiceAllocator, PitchBendPressureAndChannelFilter) {
    VoiceAllocator a(2, 3);
    Driver d(a);
    const struct { int lsb, msb, bend; } bends[] = {{0x00, 0x40, 0}, {0x7F, 0x7F, 8191}, {0x00, 0x00, -8192}};
    for (const auto& b : bends) {
        d.push(0xE3, b.lsb, b.msb).block();
        EXPECT_EQ(a.pitchBend(), b.bend);
    }
    d.push(0xE5, 0x00, 0x40).push(0xD5, 99, 0).push(0xD3, 77, 0).block();  // the first two on another channel
    EXPECT_EQ(a.pitchBend(), -8192);
    EXPECT_EQ(a.channelPressure(), 77);

    d.on(60, 100, 3).push(0xA3, 60, 55).block();
    EXPECT_EQ(a.state(voiceOfKey(a, 60)).pressure, 55);

    d.cc(7, 100).push(0xB3, 7, 101).block();  // channel 0 is ignored
    EXPECT_EQ(a.controllers()[7], 101);
    a.setMidiChannel(-5);
    EXPECT_EQ(a.midiChannel(), -1);
    EXPECT_EQ(a.controllers()[7], 0);
    EXPECT_EQ(a.pitchBend(), 0);
}

TEST(VoiceAllocator, EventsTakeEffectAtTheStartOfTheirBlock) {
    VoiceAllocator a(2, -1);
    a.beginEvents(10, 0);  // 10 samples carried over from the previous buffer
    a.pushEvent(5, 0x90, 60, 100);   // inside the carried samples
    a.pushEvent(73, 0x90, 62, 100);  // block 0 covers clock 10..73
    a.pushEvent(74, 0x90, 64, 100);
    a.processEvents(64);
    EXPECT_GE(voiceOfKey(a, 60), 0);
    EXPECT_GE(voiceOfKey(a, 62), 0);
    EXPECT_EQ(voiceOfKey(a, 64), -1);
    a.processEvents(64);
    EXPECT_GE(voiceOfKey(a, 64), 0);
}

TEST(VoiceAllocator, AllNotesOffAndVoiceCountChangesSilence) {
    VoiceAllocator a(4, -1);
    Driver d(a);
    d.on(60).on(64).block().cc(123, 0).block();
    for (int v = 0; v < 4; ++v) EXPECT_EQ(a.state(v).gate, 0);
    EXPECT_EQ(a.heldKeyCount(), 2) << "key lists are left as they are";
    d.off(60).block();
    EXPECT_EQ(a.playingVoiceCount(), 1);

    a.setVoiceCount(6);
    EXPECT_EQ(a.heldKeyCount(), 0);
    EXPECT_EQ(a.playingVoiceCount(), 0);
    EXPECT_EQ(a.freeVoiceCount(), 6);
    EXPECT_EQ(a.voiceCount(), 6);
    for (int v = 0; v < 6; ++v) EXPECT_EQ(a.state(v).gate, 0);
}

TEST(VoiceAllocator, QueueHasAFixedCapacity) {
    VoiceAllocator a(1, -1);
    a.beginEvents(0, 0);
    for (int i = 0; i < VoiceAllocator::kQueueCapacity + 10; ++i) a.pushEvent(0, 0xB0, 1, 1);
    EXPECT_EQ(a.queuedEvents(), VoiceAllocator::kQueueCapacity);
    EXPECT_EQ(a.droppedEvents(), 10);
}

}  // namespace
}  // namespace tolvane
