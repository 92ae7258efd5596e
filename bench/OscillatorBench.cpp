// Cost per sample of every oscillator generator: free-running at a low and a high pitch (the High
// quality sawtooth, triangle and pulse change regime between them), hard-synced to a lower master, and
// phase-modulated.
#include <algorithm>
#include <memory>
#include <string>

#include <benchmark/benchmark.h>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/ValueSource.h"
#include "engine/sound/WaveGenerator.h"

namespace tolvane {
namespace {

constexpr float kSampleRate = 44100.0f;

// A fixed audio block standing in for OSC1 as the FM modulator.
class ModulatorBlock : public DspModule {
public:
    explicit ModulatorBlock(ModuleGraph& g) : DspModule(g, OutputKind::Block, 0) {
        for (int n = 0; n < blockSize_; ++n)
            block_[static_cast<std::size_t>(n)] = 0.5f * static_cast<float>(n % 29) / 29.0f - 0.25f;
    }
};

void generatorCost(benchmark::State& state, GeneratorMode mode, int index, float hz) {
    ModuleGraph graph;
    graph.setSampleRate(kSampleRate);
    Poly<ValueSource> frequency(graph, 0, kRuleFromInputs, hz / kSampleRate);
    Poly<ValueSource> width(graph, 0, kRuleFromInputs, 0.3f);
    Poly<ValueSource> master(graph, 0, kRuleFromInputs, 0.37f * hz / kSampleRate);
    Poly<ValueSource> depth(graph, 0, kRuleFromInputs, 0.2f);
    Poly<ModulatorBlock> modulator(graph, 0, kRuleFromInputs);
    std::unique_ptr<PolyModule> container = makeGeneratorContainer(graph, mode, index);
    container->connectInput(&frequency, WaveGenerator::kFrequency);
    if (readsPulseWidth(index)) container->connectInput(&width, WaveGenerator::kPulseWidth);
    if (mode == GeneratorMode::Sync) container->connectInput(&master, WaveGenerator::kMasterIncrement);
    if (mode == GeneratorMode::Fm) {
        container->connectInput(&depth, WaveGenerator::kFmDepth);
        container->connectInput(&modulator, WaveGenerator::kModulator);
    }
    DspModule& generator = *container->instance(0);
    int tick = 0;
    for (auto _ : state) {
        generator.update(++tick);
        benchmark::DoNotOptimize(generator.block()[0]);
        benchmark::ClobberMemory();
    }
    const double samples = static_cast<double>(state.iterations()) * generator.blockSize();
    state.SetItemsProcessed(static_cast<std::int64_t>(samples));
    state.counters["per_sample"] = benchmark::Counter(samples, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

const char* const kNames[kWaveformCount] = {"SineLow",  "SineMiddle",  "SineHigh",  "TriangleLow", "TriangleMiddle",
                                            "TriangleHigh", "SawLow", "SawMiddle", "SawHigh", "PulseLow",
                                            "PulseMiddle", "PulseHigh"};

bool registerAll() {
    struct Setting { GeneratorMode mode; const char* name; float hz; } settings[] = {
        {GeneratorMode::Plain, "Plain", 220.0f},
        {GeneratorMode::Plain, "Plain", 3520.0f},
        {GeneratorMode::Sync, "Sync", 440.0f},
        {GeneratorMode::Fm, "Fm", 440.0f},
    };
    for (const Setting& s : settings)
        for (int i = 0; i < kWaveformCount; ++i) {
            std::string name = std::string(s.name) + "/" + kNames[i] + "/" + std::to_string(static_cast<int>(s.hz)) + "Hz";
            benchmark::RegisterBenchmark(name.c_str(), [s, i](benchmark::State& st) { generatorCost(st, s.mode, i, s.hz); });
        }
    return true;
}

const bool gRegistered = registerAll();

}  // namespace
}  // namespace tolvane
