// Cost per sample of each filter type with a cutoff that moves every block (coefficients designed and
// ramped every block) and with a steady cutoff (no design, flat ramps), and of the voice sum.
#include <benchmark/benchmark.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/ValueSource.h"
#include "engine/sound/AmpSection.h"
#include "engine/sound/FilterModule.h"
#include "engine/sound/FilterSection.h"

namespace tolvane {
namespace {

// A fixed block of pseudo-random samples in -1 .. 1; rendering it costs nothing.
class NoiseBlock : public DspModule {
public:
    explicit NoiseBlock(ModuleGraph& graph) : DspModule(graph, OutputKind::Block) {
        unsigned state = 12345u;
        for (float& x : block_) {
            state = state * 196314165u + 907633515u;
            x = static_cast<float>(static_cast<int>(state)) * (1.0f / 2147483648.0f);
        }
    }
};

void filterCost(benchmark::State& state) {
    const FilterKind kind = static_cast<FilterKind>(state.range(0));
    const bool moving = state.range(1) != 0;
    ModuleGraph graph;
    Poly<NoiseBlock> audio(graph, 0, kRuleFromInputs);
    Poly<ValueSource> cutoff(graph, 0, kRuleFromInputs, 0.05f);
    Poly<ValueSource> resonance(graph, 0, kRuleFromInputs, 0.5f);
    Poly<ValueSource> level(graph, 0, kRuleFromInputs, 1.0f);
    FilterSection section(graph, &audio, &cutoff, &resonance, &level);
    DspModule& filter = *section.module(kind).instance(0);

    int tick = 0;
    for (auto _ : state) {
        if (moving) cutoff.at(0).set(0.02f + 0.3f * static_cast<float>(tick & 63) / 64.0f);
        filter.update(++tick);
        benchmark::DoNotOptimize(filter.block());
    }
    const double samples = static_cast<double>(state.iterations()) * graph.blockSize();
    state.counters["per_sample"] = benchmark::Counter(samples, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
    static const char* names[] = {"LP6", "LP12", "LP18", "LP24", "HP6", "HP12", "HP18", "HP24", "BP12", "BP24", "BR12", "BR24"};
    state.SetLabel(std::string(names[state.range(0)]) + (moving ? " moving" : " steady"));
}
BENCHMARK(filterCost)->ArgsProduct({benchmark::CreateDenseRange(0, 11, 1), {0, 1}});

// 64 voice slots, the given number audible, each with its own audio block.
void voiceSumCost(benchmark::State& state) {
    const int audible = static_cast<int>(state.range(0));
    ModuleGraph graph;
    graph.setVoiceCount(64);
    Poly<ValueSource> amplitude(graph, 0, kRuleGraphVoices, 0.0f);
    Poly<NoiseBlock> audio(graph, 0, kRuleGraphVoices);
    AmpSection amp(graph, &amplitude, &audio);
    for (int v = 0; v < audible; ++v) amplitude.at(v).set(0.5f);
    int tick = 0;
    for (auto _ : state) {
        amp.voiceSum().update(++tick);
        benchmark::DoNotOptimize(amp.voiceSum().block());
    }
    const double samples = static_cast<double>(state.iterations()) * graph.blockSize();
    state.counters["per_sample"] = benchmark::Counter(samples, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}
BENCHMARK(voiceSumCost)->Arg(0)->Arg(8)->Arg(64);

}  // namespace
}  // namespace tolvane
