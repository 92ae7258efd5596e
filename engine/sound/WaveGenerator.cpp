#include "engine/sound/WaveGenerator.h"

#include "engine/framework/ModuleGraph.h"

namespace tolvane {

WaveGenerator::WaveGenerator(ModuleGraph& graph, int numInputs)
    : DspModule(graph, OutputKind::Block, numInputs), phase_(graph.random().unipolar()) {}

void WaveGenerator::updateBlock(int tick) {
    if (tick == lastTick_) return;
    if (!follows(tick, lastTick_)) resetInterpolation();
    lastTick_ = tick;
    updateInputs(tick);
    compute();
}

}  // namespace tolvane
