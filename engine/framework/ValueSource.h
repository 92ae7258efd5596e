// A value written directly by a setter: neither smoothed nor cleared by a reset.
// Parameter values that need no smoothing and the constant-zero and constant-one units are value sources.
#pragma once

#include "engine/framework/DspModule.h"

namespace tolvane {

class ValueSource : public DspModule {
public:
    explicit ValueSource(ModuleGraph& graph, float initial = 0.0f) : DspModule(graph) { scalar_ = initial; }
    void set(float v) { scalar_ = v; }
    void reset(int tick) override { lastTick_ = tick; }
    void updateBlock(int tick) override { lastTick_ = tick; }
};

}  // namespace tolvane
