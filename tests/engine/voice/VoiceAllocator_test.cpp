#include "engine/voice/VoiceAllocator.h"

#include <vector>

#include <gtest/gtest.h>

namespace tolvane {
namespace {

// Feeds events as the plug-in does: one host buffer, then one 64-sample block per call.
class Driver {
public:
    explicit Driver(VoiceAllocator& a) : a_(a) { a_.beginEvents(0); }
    Driver& on(int key, int vel = 100, int channel = 0) { return push(0x90 | channel, key, vel); }
    Driver& off(int key, int vel = 0, int channel = 0) { return push(0x80 | channel, key, vel); }
    Driver& cc(int c, int v) { return push(0xB0, c, v); }
    Driver& push(int status, int d1, int d2) {
        a_.pushEvent(0, static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(d1), static_cast<std::uint8_t>(d2));
        return *this;
    }
    void block() {
        a_.processEvents(64);
        a_.beginEvents(0);
    }

private:
    VoiceAllocator& a_;
};

int voiceOfKey(const VoiceAllocator& a, int key, int voices) {
    for (int v = 0; v < voices; ++v)
        if (a.state(v).key == key && a.state(v).gate) return v;
    return -1;
}

TEST(VoiceAllocator, IdleVoicesCarryDistinctKeysAroundTheMiddleAndAreUsedInTurn) {
    VoiceAllocator a(4, -1);
    for (int v = 0; v < 4; ++v) EXPECT_EQ(a.state(v).key, 62 + v);
    Driver d(a);
    d.on(60).on(61).on(62);
    d.block();
    EXPECT_EQ(voiceOfKey(a, 60, 4), 0);
    EXPECT_EQ(voiceOfKey(a, 61, 4), 1);
    EXPECT_EQ(voiceOfKey(a, 62, 4), 2);
}

TEST(VoiceAllocator, StealsTheOldestPlayingVoiceAndReusesAReleasedKeysOwnVoice) {
    VoiceAllocator a(4, -1);
    Driver d(a);
    d.on(60).on(62).on(64).on(65);
    d.block();
    int voiceOfC = voiceOfKey(a, 60, 4);
    d.on(67);
    d.block();
    EXPECT_EQ(voiceOfKey(a, 67, 4), voiceOfC) << "G takes the voice of the oldest playing key, C";
    EXPECT_EQ(voiceOfKey(a, 60, 4), -1);

    int voiceOfE = voiceOfKey(a, 64, 4);
    d.off(64);
    d.block();
    EXPECT_EQ(a.state(voiceOfE).gate, 0);
    d.on(64);
    d.block();
    EXPECT_EQ(voiceOfKey(a, 64, 4), voiceOfE);
    EXPECT_EQ(a.state(voiceOfE).trigger, 1);
}

TEST(VoiceAllocator, SustainKeepsReleasedVoicesUntilThePedalRises) {
    VoiceAllocator a(4, -1);
    Driver d(a);
    d.cc(64, 127).on(60);
    d.block();
    int v = voiceOfKey(a, 60, 4);
    d.off(60);
    d.block();
    EXPECT_EQ(a.state(v).gate, 1) << "held by the pedal";
    EXPECT_EQ(a.freeVoiceCount(), 4);
    d.on(60);
    d.block();
    EXPECT_EQ(voiceOfKey(a, 60, 4), v) << "the sustained voice is the first candidate for its key";
    d.off(60);
    d.block();
    d.cc(64, 0);
    d.block();
    EXPECT_EQ(a.state(v).gate, 0);
}

TEST(VoiceAllocator, PortamentoStartsFromThePreviousNoteForOneBlock) {
    VoiceAllocator a(4, -1);
    a.setPortamento(true);
    a.setLegato(true);
    Driver d(a);
    d.on(60);
    d.block();
    int first = voiceOfKey(a, 60, 4);
    EXPECT_EQ(a.state(first).currentNote, 60) << "legato: nothing held, so the key starts at its own pitch";
    d.on(67);
    d.block();
    int second = voiceOfKey(a, 67, 4);
    EXPECT_EQ(a.state(second).currentNote, 60) << "another key held: start from the previous note";
    d.block();
    EXPECT_EQ(a.state(second).currentNote, 67) << "from the next block on the current note is the key";

    a.setLegato(false);
    d.off(60).off(67);
    d.block();
    d.on(72);
    d.block();
    EXPECT_EQ(a.state(voiceOfKey(a, 72, 4)).currentNote, 67) << "without legato every new key glides";
}

TEST(VoiceAllocator, UnisonReturnsToTheNewestHeldKeyWithoutRetrigger) {
    VoiceAllocator a(3, -1);
    a.setUnison(true);
    Driver d(a);
    d.on(60, 90).on(64, 100).on(67, 110);
    d.block();
    for (int v = 0; v < 3; ++v) {
        EXPECT_EQ(a.state(v).currentNote, 67);
        EXPECT_EQ(a.state(v).trigger, 1);
    }
    d.block();
    EXPECT_EQ(a.state(0).trigger, 0);
    d.off(67);
    d.block();
    for (int v = 0; v < 3; ++v) {
        EXPECT_EQ(a.state(v).currentNote, 64);
        EXPECT_EQ(a.state(v).velocity, 100);
        EXPECT_EQ(a.state(v).trigger, 0);
        EXPECT_EQ(a.state(v).gate, 1);
    }
    d.off(60).off(64, 33);
    d.block();
    EXPECT_EQ(a.state(2).gate, 0);
    EXPECT_EQ(a.state(2).releaseVelocity, 33);
}

TEST(VoiceAllocator, UnisonWithPortamentoAndNoLegatoNeverRetriggers) {
    VoiceAllocator a(2, -1);
    a.setUnison(true);
    a.setPortamento(true);
    Driver d(a);
    d.on(60);
    d.block();
    EXPECT_EQ(a.state(0).trigger, 0);
    EXPECT_EQ(a.state(0).gate, 1);
    a.setLegato(true);
    d.off(60);
    d.block();
    d.on(62);
    d.block();
    EXPECT_EQ(a.state(0).trigger, 1) << "legato with nothing held triggers";
}

TEST(VoiceAllocator, ZeroVelocityNoteOnIsANoteOff) {
    VoiceAllocator a(2, -1);
    Driver d(a);
    d.on(60);
    d.block();
    int v = voiceOfKey(a, 60, 2);
    d.on(60, 0);
    d.block();
    EXPECT_EQ(a.state(v).gate, 0);
    EXPECT_EQ(a.state(v).releaseVelocity, 0);
    EXPECT_EQ(a.heldKeyCount(), 0);
}

TEST(VoiceAllocator, SingleVoiceRestartsOnEveryNoteAndDoesNotReturnToHeldKeys) {
    VoiceAllocator a(1, -1);
    a.setPortamento(true);
    Driver d(a);
    d.on(60);
    d.block();
    d.on(64);
    d.block();
    EXPECT_EQ(a.state(0).trigger, 1);
    EXPECT_EQ(a.state(0).key, 64);
    EXPECT_EQ(a.state(0).currentNote, 60);
    d.off(64);
    d.block();
    EXPECT_EQ(a.state(0).gate, 0) << "only unison returns to a key still held";
}

TEST(VoiceAllocator, PitchBendPressureAndChannelFilter) {
    VoiceAllocator a(2, 3);
    Driver d(a);
    d.push(0xE3, 0x00, 0x40);
    d.block();
    EXPECT_EQ(a.pitchBend(), 0);
    d.push(0xE3, 0x7F, 0x7F);
    d.block();
    EXPECT_EQ(a.pitchBend(), 8191);
    d.push(0xE3, 0x00, 0x00);
    d.block();
    EXPECT_EQ(a.pitchBend(), -8192);
    d.push(0xE5, 0x00, 0x40);  // another channel
    d.push(0xD5, 99, 0);
    d.push(0xD3, 77, 0);
    d.block();
    EXPECT_EQ(a.pitchBend(), -8192);
    EXPECT_EQ(a.channelPressure(), 77);

    d.on(60, 100, 3);
    d.push(0xA3, 60, 55);
    d.block();
    EXPECT_EQ(a.state(voiceOfKey(a, 60, 2)).pressure, 55);

    d.cc(7, 100);  // channel 0: ignored
    d.push(0xB3, 7, 101);
    d.block();
    EXPECT_EQ(a.controllers()[7], 101);
    a.setMidiChannel(-5);
    EXPECT_EQ(a.midiChannel(), -1);
    EXPECT_EQ(a.controllers()[7], 0);
    EXPECT_EQ(a.pitchBend(), 0);
}

TEST(VoiceAllocator, EventsTakeEffectAtTheStartOfTheirBlock) {
    VoiceAllocator a(2, -1);
    a.beginEvents(10);  // 10 samples carried over from the previous buffer
    a.pushEvent(5, 0x90, 60, 100);   // inside the carried samples
    a.pushEvent(73, 0x90, 62, 100);  // block 0 covers clock 10..73
    a.pushEvent(74, 0x90, 64, 100);
    a.processEvents(64);
    EXPECT_GE(voiceOfKey(a, 60, 2), 0);
    EXPECT_GE(voiceOfKey(a, 62, 2), 0);
    EXPECT_EQ(voiceOfKey(a, 64, 2), -1);
    a.processEvents(64);
    EXPECT_GE(voiceOfKey(a, 64, 2), 0);
}

TEST(VoiceAllocator, AllNotesOffAndVoiceCountChangesSilence) {
    VoiceAllocator a(4, -1);
    Driver d(a);
    d.on(60).on(64);
    d.block();
    d.cc(123, 0);
    d.block();
    for (int v = 0; v < 4; ++v) EXPECT_EQ(a.state(v).gate, 0);
    EXPECT_EQ(a.heldKeyCount(), 2) << "key lists are left as they are";
    d.off(60);
    d.block();
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
    a.beginEvents(0);
    for (int i = 0; i < VoiceAllocator::kQueueCapacity + 10; ++i) a.pushEvent(0, 0xB0, 1, 1);
    EXPECT_EQ(a.queuedEvents(), VoiceAllocator::kQueueCapacity);
    EXPECT_EQ(a.droppedEvents(), 10);
}

}  // namespace
}  // namespace tolvane
