// The product of the two oscillators of a voice, sample by sample. Two signals of peak 0.5 give a product
// of peak 0.25.
#pragma once

#include "engine/framework/DspModule.h"

namespace tolvane {

class RingModulator : public DspModule {
public:
    enum Input : int { kOsc1 = 0, kOsc2 = 1 };

    explicit RingModulator(ModuleGraph& graph) : DspModule(graph, OutputKind::Block, 2) {}
    void compute() override;
};

}  // namespace tolvane
