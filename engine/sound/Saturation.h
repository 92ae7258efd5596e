// The filter's soft limiter.
//
// With ceiling L and knee fraction k the curve is the identity up to the knee s = k L and, beyond it,
// a hyperbola that joins with slope 1 and approaches +L (or -L) asymptotically:
//   v >  s:  L - m^2 / (v - 2s + L)
//   v < -s:  m^2 / (L - v - 2s) - L        with m = L - s.
// k = 0.9 is nearly a hard clip at 0.9 L; k = 0.1 starts bending at a tenth of the ceiling. Only samples
// above the knee cost a division.
#pragma once

namespace tolvane {

// Knee fraction of a saturation curve index: hard, middle, soft clip; any other index bends from 0.
inline float kneeForCurve(int curve) {
    switch (curve) {
        case 0: return 0.9f;
        case 1: return 0.5f;
        case 2: return 0.1f;
        default: return 0.0f;
    }
}

inline float saturate(float v, float level, float knee) {
    float s = knee * level;
    float m = level - s;
    if (v > s) return level - m * m / (v - 2.0f * s + level);
    if (v < -s) return m * m / (level - v - 2.0f * s) - level;
    return v;
}

}  // namespace tolvane
