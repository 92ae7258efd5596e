// One-pole smoothing at block rate.
//
// With c = 10^(-3 / (blockRate T + 1)) the state y := (1 - c) x + c y covers 60 dB of a step in about
// T seconds; T = 0 gives c = 10^-3, an almost immediate jump. A tick gap (the unit was not updated in
// the previous block) or a reset makes the state jump to its input instead of gliding.
#pragma once

#include "engine/framework/DspModule.h"

namespace tolvane {

float smoothingCoefficient(float blockRate, float seconds);

// Outputs the coefficient for a time T; recomputed when T or the sample rate changes.
class SmoothCoefficient : public DspModule {
public:
    static constexpr float kDefaultTime = 0.1f;

    explicit SmoothCoefficient(ModuleGraph& graph, float seconds = kDefaultTime);
    void setTime(float seconds);
    float time() const { return seconds_; }
    void reset(int tick) override { lastTick_ = tick; }
    void updateBlock(int tick) override { lastTick_ = tick; }
    void sampleRateChanged() override { recompute(); }
    void blockSizeChanged() override { recompute(); }

private:
    void recompute() { scalar_ = smoothingCoefficient(blockRate_, seconds_); }
    float seconds_;
};

// Inputs: 0 the value x, 1 the coefficient c.
class Smoother : public DspModule {
public:
    explicit Smoother(ModuleGraph& graph) : DspModule(graph, OutputKind::Scalar, 2) {}
    void updateBlock(int tick) override;
    void onReset() override { jump_ = true; }

private:
    bool jump_ = true;
};

// A target value with its own coefficient: y := (1 - c) v + c y, jumping to v at the first update,
// after a reset and after any tick gap.
class SmoothedValue : public DspModule {
public:
    explicit SmoothedValue(ModuleGraph& graph, float target = 0.0f,
                           float seconds = SmoothCoefficient::kDefaultTime);
    void setTarget(float v) { target_ = v; }
    float target() const { return target_; }
    void setTime(float seconds);
    void updateBlock(int tick) override;
    void onReset() override { jump_ = true; }
    void sampleRateChanged() override { coefficient_ = smoothingCoefficient(blockRate_, seconds_); }
    void blockSizeChanged() override { sampleRateChanged(); }

private:
    float target_;
    float seconds_;
    float coefficient_;
    bool jump_ = true;
};

}  // namespace tolvane
