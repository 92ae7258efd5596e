// Cost of one 64-sample block of the stereo effect, fed by a steady tone in place of the voice sum.
#include <cmath>
#include <vector>

#include <benchmark/benchmark.h>

#include "engine/effect/EffectUnit.h"
#include "engine/framework/DenormalGuard.h"
#include "engine/framework/ModuleGraph.h"
#include "dsp/Mappings.h"

namespace tolvane {
namespace {

// A 220.5 Hz tone at 44.1 kHz standing in for the summed voices, played from one stored period.
class ToneSource : public DspModule {
public:
    explicit ToneSource(ModuleGraph& graph) : DspModule(graph, OutputKind::Block, 0), period_(200) {
        for (std::size_t i = 0; i < period_.size(); ++i) period_[i] = 0.3f * static_cast<float>(std::sin(6.283185307 * i / 200.0));
    }
    void compute() override {
        for (int k = 0; k < blockSize_; ++k) {
            block_[static_cast<std::size_t>(k)] = period_[position_];
            if (++position_ == period_.size()) position_ = 0;
        }
    }

private:
    std::vector<float> period_;
    std::size_t position_ = 0;
};

struct BenchRig {
    explicit BenchRig(float rate) {
        graph.setSampleRate(rate);
        effect.setTempo(120.0f);
        effect.setDelayTime(0.6f);
        effect.setOutputVolume(1.0f);
    }
    ModuleGraph graph;
    ValueMappings mappings;
    Poly<ToneSource> tone{graph, 0, kRuleFromInputs};
    EffectUnit effect{graph, &tone, mappings.delayTime};
};

void run(benchmark::State& state, BenchRig& rig) {
    DenormalGuard guard;
    int tick = 0;
    for (int i = 0; i < 200; ++i) rig.effect.update(++tick);
    for (auto _ : state) {
        rig.effect.update(++tick);
        benchmark::DoNotOptimize(rig.effect.left()[0]);
        benchmark::DoNotOptimize(rig.effect.right()[0]);
    }
    state.SetItemsProcessed(state.iterations());
}

// Everything running: cross feedback, modulation, overdrive, diffusion, cut filters, half wet.
void BM_EffectBlockOn(benchmark::State& state) {
    BenchRig rig(static_cast<float>(state.range(0)));
    rig.effect.setMix(0.5f);
    rig.effect.setFeedback(0.7f);
    rig.effect.setFeedbackConnection(EffectUnit::kCross);
    rig.effect.setModSpeed(0.8f);
    rig.effect.setModDepth(0.6f);
    rig.effect.setDiffusion(0.4f);
    rig.effect.setDrive(3.0f);
    rig.effect.setLowCut(120.0f);
    rig.effect.setHighCut(9000.0f);
    run(state, rig);
}
BENCHMARK(BM_EffectBlockOn)->Arg(44100)->Arg(96000);

// Bypassed: only the dry path, the volume and the limiter.
void BM_EffectBlockBypassed(benchmark::State& state) {
    BenchRig rig(static_cast<float>(state.range(0)));
    rig.effect.setMix(0.5f);
    rig.effect.setFeedback(0.7f);
    rig.effect.setEffectOn(false);
    run(state, rig);
}
BENCHMARK(BM_EffectBlockBypassed)->Arg(44100);

}  // namespace
}  // namespace tolvane
