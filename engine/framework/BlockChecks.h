// Per-block checks that keep a runaway value from latching in a unit with feedback.
//
// A recursive unit that once holds an infinity or a NaN keeps it for ever, and so does everything it
// feeds. Rather than test every sample, units check once per block: their few state variables, or a
// block of samples through one sum. The sum adds squares in sixteen lanes (a loop the compiler
// vectorises): it stays finite while every |x| is below about 1e18, and turns infinite or NaN for an
// infinity, a NaN, or the astronomically large values a runaway passes through on its way there.
#pragma once

#include <cmath>

namespace tolvane {

inline bool blockInRange(const float* x, int n) {
    constexpr int kLanes = 16;
    float lanes[kLanes] = {};
    int i = 0;
    for (; i + kLanes <= n; i += kLanes)
        for (int j = 0; j < kLanes; ++j) lanes[j] += x[i + j] * x[i + j];
    float total = 0.0f;
    for (; i < n; ++i) total += x[i] * x[i];
    for (int j = 0; j < kLanes; ++j) total += lanes[j];
    return std::isfinite(total);
}

inline bool allFinite(const float* x, int n) {
    for (int i = 0; i < n; ++i)
        if (!std::isfinite(x[i])) return false;
    return true;
}

}  // namespace tolvane
