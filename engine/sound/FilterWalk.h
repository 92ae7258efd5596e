// How every filter type walks a block: before each sample, each of its coefficients and the saturation
// level take one step of their ramp; then the type's own recursion filters that sample with them.
#pragma once

#include "engine/sound/Saturation.h"

namespace tolvane {

// The values of one sample: the type's N coefficients and the saturation level.
template <int N>
struct FilterStep {
    float c[N];
    float level;
    float knee;
    float saturate(float v) const { return tolvane::saturate(v, level, knee); }
};

// Calls body(j, step) for samples j = 0 .. n-1 (n a multiple of 16), the ramp advanced before each.
template <int N, class Ramp, class Body>
inline void walkFilterRamp(const Ramp& ramp, int n, Body&& body) {
    constexpr int kGroup = 16;
    FilterStep<N> step;
    float delta[N];
    for (int k = 0; k < N; ++k) {
        step.c[k] = ramp.from[k];
        delta[k] = ramp.step[k];
    }
    step.level = ramp.level;
    step.knee = ramp.knee;
    const float dLevel = ramp.levelStep;
    for (int i = 0; i < n; i += kGroup) {
        for (int j = i; j < i + kGroup; ++j) {
            for (int k = 0; k < N; ++k) step.c[k] += delta[k];
            step.level += dLevel;
            body(j, step);
        }
    }
}

}  // namespace tolvane
