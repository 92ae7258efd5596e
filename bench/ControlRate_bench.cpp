// Control-rate cost per 64-sample block: the whole modulation graph (portamento, pitch, envelopes,
// LFOs, every fixed route and every assignable slot in use) and every control target the audio
// sections read, for 1, 8 and 64 sounding voices.
#include <benchmark/benchmark.h>

#include "engine/voice/SynthEngine.h"
#include "engine/voice/VoiceAllocator.h"

namespace tolvane {
namespace {

void routeEverything(SynthEngine& engine) {
    for (int osc = 0; osc < 2; ++osc)
        for (int route = 0; route < 2; ++route) {
            // Every target of the section, from a different modulator per route.
            engine.setOscModConnection(osc, route, (osc == 0 ? 12 : 28) + (osc * 2 + route) % 4);
            engine.setOscModDepth(osc, route, 0.2f);
            engine.setOscModVelocitySens(osc, route, 0.5f);
        }
    for (int route = 0; route < 2; ++route) {
        engine.setFilterModConnection(route, 12 + (route + 1) % 4);
        engine.setFilterModDepth(route, 0.3f);
        engine.setFilterModVelocitySens(route, 0.5f);
    }
    const int sources[ModSlots::kSlots] = {ModSlots::kEnv1, ModSlots::kEnv2, ModSlots::kLfo1, ModSlots::kLfo2,
                                           1, ModSlots::kPolyAftertouch, ModSlots::kKey, ModSlots::kPitchBend};
    const int sensSources[ModSlots::kSlots] = {ModSlots::kVelocity, ModSlots::kLfo2, 2, ModSlots::kEnv1,
                                               ModSlots::kChannelAftertouch, ModSlots::kKey, ModSlots::kLfo1,
                                               ModSlots::kEnv2};
    const int destinations[ModSlots::kSlots] = {ModSlots::kLfo1Speed, ModSlots::kFilterFrequency,
                                                ModSlots::kOsc1Pitch, ModSlots::kEnv1Decay, ModSlots::kAmplifier,
                                                ModSlots::kMixerOsc2, ModSlots::kLfo2Phase, ModSlots::kSaturation};
    for (int slot = 0; slot < ModSlots::kSlots; ++slot) {
        engine.setSlotSource(slot, sources[slot]);
        engine.setSlotSensSource(slot, sensSources[slot]);
        engine.setSlotDepth(slot, 0.1f);
        engine.setSlotSens(slot, 0.5f);
        engine.setSlotDestination(slot, destinations[slot]);
    }
    engine.setLfoMode(0, Lfo::kTrigger);
    engine.setLfoMode(1, Lfo::kMono | Lfo::kTempoSync);
    engine.setLfoWaveform(0, 63);
    engine.setLfoWaveform(1, 63);
    engine.setAmpLfoDepth(0.5f);
}

// The modulators of every voice, then every target the audio units of sounding voices pull.
void controlBlock(SynthEngine& engine, int tick) {
    engine.updateControls(tick);
    const ControlTargets& t = engine.controls();
    PolyModule* targets[] = {t.phaseIncrement[0], t.phaseIncrement[1], t.pulseWidth[0], t.pulseWidth[1], t.fmDepth,
                             t.cutoff, t.resonance, t.saturationLevel, t.mixerLevel[0], t.mixerLevel[1],
                             t.mixerLevel[2], t.mixerLevel[3], t.ampGain};
    for (PolyModule* target : targets) target->updateInstances(tick);
}

void BM_ControlGraphPerBlock(benchmark::State& state) {
    const int voices = static_cast<int>(state.range(0));
    ValueMappings maps;
    EngineMappings mappings{maps.attackTime, maps.decayTime, maps.rate, maps.saturation, maps.delayTime};
    VoiceAllocator allocator(voices, -1);
    SynthEngine engine(allocator, mappings);
    routeEverything(engine);

    int tick = 0;
    allocator.beginEvents(0, 0);
    for (int v = 0; v < voices; ++v) allocator.pushEvent(0, 0x90, static_cast<std::uint8_t>(36 + v), 100);
    allocator.processEvents(kBlockSize);
    controlBlock(engine, ++tick);

    for (auto _ : state) {
        allocator.beginEvents(0, 0);
        allocator.processEvents(kBlockSize);
        controlBlock(engine, ++tick);
        benchmark::DoNotOptimize(engine.controls().ampGain->instance(0)->value());
    }
    // Time is per block; one block lasts 64 / 44100 s = 1451 us in real time.
    state.SetItemsProcessed(state.iterations());
    state.counters["voices"] = voices;
}
BENCHMARK(BM_ControlGraphPerBlock)->Arg(1)->Arg(8)->Arg(64);

}  // namespace
}  // namespace tolvane
