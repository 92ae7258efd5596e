#include "engine/framework/Smoothing.h"

#include <cmath>

namespace tolvane {

float smoothingCoefficient(float blockRate, float seconds) {
    if (!(seconds > 0.0f)) seconds = 0.0f;
    return static_cast<float>(std::pow(10.0, -3.0 / (static_cast<double>(blockRate) * seconds + 1.0)));
}

SmoothCoefficient::SmoothCoefficient(ModuleGraph& graph, float seconds) : DspModule(graph), seconds_(seconds) {
    recompute();
}

void SmoothCoefficient::setTime(float seconds) {
    seconds_ = seconds;
    recompute();
}

void Smoother::updateBlock(int tick) {
    if (tick == lastTick_) return;
    bool gap = !follows(tick, lastTick_);
    lastTick_ = tick;
    updateInputs(tick);
    float x = inputValue(0);
    float c = inputValue(1);
    if (gap || jump_) {
        scalar_ = x;
        jump_ = false;
    }
    scalar_ = (1.0f - c) * x + c * scalar_;
}

SmoothedValue::SmoothedValue(ModuleGraph& graph, float target, float seconds)
    : DspModule(graph), target_(target), seconds_(seconds), coefficient_(smoothingCoefficient(blockRate_, seconds)) {}

void SmoothedValue::setTime(float seconds) {
    seconds_ = seconds;
    coefficient_ = smoothingCoefficient(blockRate_, seconds_);
}

void SmoothedValue::updateBlock(int tick) {
    if (tick == lastTick_) return;
    bool gap = !follows(tick, lastTick_);
    lastTick_ = tick;
    if (gap || jump_) {
        scalar_ = target_;
        jump_ = false;
    }
    scalar_ = (1.0f - coefficient_) * target_ + coefficient_ * scalar_;
}

}  // namespace tolvane
