// The sine LFO that modulates the two delay times, and the units that add it to the base times.
#pragma once

#include "engine/framework/DspModule.h"

namespace tolvane {

// One value per block: A sin(2 pi phase) from the sine table; the phase then advances by
// min(0.5, speed / block rate) and wraps at 1. Speed 1 Hz, amplitude 0, phase 0 when built.
class ModulationLfo : public DspModule {
public:
    explicit ModulationLfo(ModuleGraph& graph) : DspModule(graph) {}

    void setSpeed(float hz) { speed_ = hz; }
    float speed() const { return speed_; }
    void setAmplitude(float seconds) { amplitude_ = seconds; }
    float amplitude() const { return amplitude_; }
    float phase() const { return phase_; }

    void compute() override;

private:
    float speed_ = 1.0f;
    float amplitude_ = 0.0f;
    float phase_ = 0.0f;
};

// Input 0: the LFO. Output: base + direction x LFO, a delay time in seconds. The two channels use
// opposite directions, so one delay grows while the other shrinks.
class ModulatedDelayTime : public DspModule {
public:
    ModulatedDelayTime(ModuleGraph& graph, float direction) : DspModule(graph, OutputKind::Scalar, 1), direction_(direction) {}

    void setBase(float seconds) { base_ = seconds; }
    float base() const { return base_; }
    void compute() override { scalar_ = base_ + direction_ * inputValue(0); }

private:
    float direction_;
    float base_ = 0.0f;
};

}  // namespace tolvane
