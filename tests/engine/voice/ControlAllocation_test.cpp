// Counts heap allocations while the control graph runs.
#include <vector>

#include <gtest/gtest.h>

#include "engine/voice/SynthEngine.h"
#include "engine/voice/VoiceAllocator.h"
#include "support/AllocationCounter.h"

namespace tolvane {
namespace {

using AllocationCount = testing::AllocationCounter;

TEST(ControlAllocation, TheCounterSeesAllocations) {
    AllocationCount counting;
    std::vector<int>* v = new std::vector<int>(16);
    delete v;
    EXPECT_GE(counting.count(), 2);
}

// Every route and every slot in use, 64 voices playing, and a program's worth of re-wiring between
// blocks: nothing of it may touch the heap.
TEST(ControlAllocation, RunningAndRewiringTheWholeControlGraphAllocatesNothing) {
    ValueMappings maps;
    EngineMappings mappings{maps.attackTime, maps.decayTime, maps.rate, maps.saturation, maps.delayTime};
    VoiceAllocator allocator(kMaxVoices, -1);
    SynthEngine engine(allocator, mappings);

    auto routeEverything = [&engine](int variant) {
        for (int osc = 0; osc < 2; ++osc)
            for (int route = 0; route < 2; ++route) {
                engine.setOscModConnection(osc, route, (osc == 0 ? 12 : 28) + ((route + variant) & 3));
                engine.setOscModDepth(osc, route, 0.3f);
                engine.setOscModVelocitySens(osc, route, 0.5f);
            }
        for (int route = 0; route < 2; ++route) {
            engine.setFilterModConnection(route, 12 + ((route + variant + 1) & 3));
            engine.setFilterModDepth(route, -0.4f);
        }
        const int sources[] = {ModSlots::kEnv1, ModSlots::kLfo2, 7, ModSlots::kPolyAftertouch,
                               ModSlots::kKey, ModSlots::kLfo1, ModSlots::kPitchBend, ModSlots::kEnv2};
        for (int slot = 0; slot < ModSlots::kSlots; ++slot) {
            engine.setSlotSource(slot, sources[(slot + variant) % 8]);
            engine.setSlotSensSource(slot, sources[(slot + variant + 3) % 8]);
            engine.setSlotDepth(slot, 0.05f);
            engine.setSlotSens(slot, 0.5f);
            engine.setSlotDestination(slot, 1 + (slot * 3 + variant * 5) % ModSlots::kDestinations);
        }
        engine.setLfoMode(0, variant & 1 ? Lfo::kTrigger : Lfo::kMono | Lfo::kTrigger | Lfo::kTempoSync);
        engine.setLfoMode(1, variant & 1 ? Lfo::kMono : Lfo::kTrigger);
        engine.setLfoWaveform(0, 63);
        engine.setLfoWaveform(1, 63);
        engine.setAmpModConnection(variant & 3);
    };
    routeEverything(0);

    int tick = 0;
    auto block = [&](int note) {
        allocator.beginEvents(0);
        if (note >= 0) {
            allocator.pushEvent(0, 0x90, static_cast<std::uint8_t>(note), 100);
            allocator.pushEvent(0, 0xA0, static_cast<std::uint8_t>(note), 60);
            allocator.pushEvent(0, 0xB0, 7, static_cast<std::uint8_t>(note));
            allocator.pushEvent(0, 0xE0, 0, static_cast<std::uint8_t>(note));
        }
        allocator.processEvents(kBlockSize);
        engine.render(++tick);
    };
    for (int k = 0; k < kMaxVoices; ++k) block(30 + k);
    ASSERT_EQ(engine.controls().envelope[0]->voices(), kMaxVoices);

    AllocationCount counting;
    for (int b = 0; b < 300; ++b) {
        block(b % 7 == 0 ? 40 + b % 60 : -1);
        if (b % 50 == 25) {
            routeEverything(b / 50 + 1);
            allocator.setVoiceCount(b % 100 == 25 ? 16 : kMaxVoices);
            engine.refreshSlotSources();
            engine.setTempo(static_cast<float>(80 + b));
        }
    }
    engine.reset(0);
    EXPECT_EQ(counting.count(), 0);
}

}  // namespace
}  // namespace tolvane
