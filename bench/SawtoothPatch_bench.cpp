// The sawtooth patch played through the plug-in object: CPU time per voice-sample and the real-time
// factor at 1, 8 and 64 voices (44.1 kHz), and the idle cost of program 0 with no notes.
#include <benchmark/benchmark.h>

#include <array>
#include <cstring>
#include <memory>
#include <vector>

#include "host/SynthPlugin.h"
#include "params/ParameterIds.h"

namespace {

using namespace tolvane;

vst2::intptr VST_CALL host(vst2::AEffect*, vst2::int32 opcode, vst2::int32, vst2::intptr, void*, float) {
    return opcode == vst2::audioMasterVersion ? 2400 : 0;
}

// OSC1 "SawH", OSC2 "PulseH", LP24 at resonance 0.5, both envelopes, LFO1 and ENV2 on the cutoff, effect on.
void sawtoothPatch(SynthPlugin& p, int voices) {
    p.setProgram(64);
    const std::pair<int, float> values[] = {
        {param::Osc1Waveform, 8.5f / 12}, {param::Osc2Waveform, 11.5f / 12}, {param::MixerOsc2Level, 0.45f},
        {param::FilterType, 3.5f / 16}, {param::FilterCutoff, 0.6f}, {param::FilterResonance, 0.5f},
        {param::FilterModAConnection, 6.5f / 16}, {param::FilterModADepth, 0.8f},
        {param::FilterModBConnection, 5.5f / 16}, {param::FilterModBDepth, 0.75f}, {param::Lfo1Speed, 0.45f},
        {param::Env1Decay, 0.6f}, {param::Env1Sustain, 0.7f}, {param::Env1Release, 0.5f}, {param::Env2Decay, 0.6f},
        {param::Env2Sustain, 0.6f}, {param::EffectOn, 1.0f}, {param::EffectMix, 0.3f}, {param::EffectFeedback, 0.7f},
        {param::NumberOfVoices, (static_cast<float>(voices) - 0.5f) / 64.0f},
    };
    for (auto [index, value] : values) p.setParameter(index, value);
}

void holdNotes(SynthPlugin& p, int count) {
    std::vector<vst2::VstMidiEvent> events(static_cast<std::size_t>(count));
    std::vector<char> storage(sizeof(vst2::VstEvents) + static_cast<std::size_t>(count) * sizeof(vst2::VstEvent*));
    auto* list = reinterpret_cast<vst2::VstEvents*>(storage.data());
    list->numEvents = count;
    for (int i = 0; i < count; ++i) {
        vst2::VstMidiEvent& e = events[static_cast<std::size_t>(i)];
        std::memset(&e, 0, sizeof e);
        e.type = vst2::kVstMidiType;
        e.byteSize = sizeof e;
        e.midiData[0] = static_cast<char>(0x90);
        e.midiData[1] = static_cast<char>(24 + (i * 7) % 80);
        e.midiData[2] = 100;
        list->events[i] = reinterpret_cast<vst2::VstEvent*>(&e);
    }
    p.processEvents(list);
}

constexpr int kHostBlock = 512;

void render(benchmark::State& state, SynthPlugin& p, int voices) {
    std::vector<float> left(kHostBlock), right(kHostBlock);
    float* outs[2] = {left.data(), right.data()};
    for (int i = 0; i < 400; ++i) p.processReplacing(nullptr, outs, kHostBlock);  // past attacks and the effect's start
    for (auto _ : state) {
        p.processReplacing(nullptr, outs, kHostBlock);
        benchmark::DoNotOptimize(left.data());
    }
    const double samples = static_cast<double>(state.iterations()) * kHostBlock;
    if (voices > 0)
        state.counters["ns_per_voice_sample"] =
            benchmark::Counter(samples * voices, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    state.counters["ns_per_sample"] = benchmark::Counter(samples, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    // Audio seconds per CPU second.
    state.counters["realtime_factor"] = benchmark::Counter(samples / 44100.0, benchmark::Counter::kIsRate);
}

void BM_SawtoothPatch(benchmark::State& state) {
    const int voices = static_cast<int>(state.range(0));
    auto plugin = std::make_unique<SynthPlugin>(host, nullptr);
    sawtoothPatch(*plugin, voices);
    plugin->applyPendingChanges();
    holdNotes(*plugin, voices);
    render(state, *plugin, voices);
}
BENCHMARK(BM_SawtoothPatch)->Arg(1)->Arg(8)->Arg(64)->Unit(benchmark::kMicrosecond);

void BM_IdleProgram0(benchmark::State& state) {
    auto plugin = std::make_unique<SynthPlugin>(host, nullptr);
    render(state, *plugin, 0);
}
BENCHMARK(BM_IdleProgram0)->Unit(benchmark::kMicrosecond);

}  // namespace
