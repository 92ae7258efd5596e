// The waveform formulas of the oscillators, as small value types that the generators evaluate per sample.
//
// Phases are in cycles, 0 <= p <= 1 (a phase that rounded up to exactly 1.0 is accepted everywhere).
// Outputs have a nominal peak of 0.5. A shape is built once per block from the block's phase increment f
// (cycles per sample); the Middle shapes also give their slope per cycle, which the synced generators need.
#pragma once

#include <algorithm>

#include "engine/sound/LookupTables.h"
#include "engine/sound/ResidualTables.h"
#include "engine/sound/WaveTables.h"

namespace tolvane {
namespace wave {

constexpr float kMaxIncrement = 0.499f;
// Increments the band-limiting shapes divide by are kept above this (about 0.04 Hz at 44.1 kHz).
constexpr float kMinIncrement = 1e-6f;

inline float clampIncrement(float f) { return std::min(std::max(f, 0.0f), kMaxIncrement); }
inline float dividingIncrement(float f) { return std::min(std::max(f, kMinIncrement), kMaxIncrement); }

// One sample's advance: an increment below one cycle wraps at most once.
inline float advance(float p, float f) {
    p += f;
    return p >= 1.0f ? p - 1.0f : p;
}

// Any finite phase into [0, 1].
inline float wrapPhase(float x) {
    x -= static_cast<float>(static_cast<int>(x));
    return x < 0.0f ? x + 1.0f : x;
}

// The phase of a pulse's second sawtooth, p - w wrapped (0 <= w <= 1). Written so that w = 0 and w = 1
// give exactly p, and the two sawtooths cancel.
inline float pulsePhase(float p, float w) {
    float q = p - w;
    return q < 0.0f ? p + (1.0f - w) : q;
}

// Pulse widths are clamped per sample so that rounding in a ramp never leaves [0, 1].
inline float clampWidth(float w) { return std::min(std::max(w, 0.0f), 1.0f); }

// --- Naive shapes (Low quality) -------------------------------------------------------------------

struct NaiveSaw {
    static constexpr bool kPulse = false;
    explicit NaiveSaw(float) {}
    float operator()(float p) const { return 0.5f - p; }
};

// Rises from -0.5 at p = 0 to +0.5 at p = 0.5.
struct RisingTriangle {
    static constexpr bool kPulse = false;
    explicit RisingTriangle(float) {}
    float operator()(float p) const { return p < 0.5f ? 2.0f * p - 0.5f : 1.5f - 2.0f * p; }
};

// Falls from +0.5 at p = 0 to -0.5 at p = 0.5.
struct FallingTriangle {
    static constexpr bool kPulse = false;
    explicit FallingTriangle(float) {}
    float operator()(float p) const { return p < 0.5f ? 0.5f - 2.0f * p : 2.0f * p - 1.5f; }
};

// 0.5 sin(2 pi p) from the sine table.
struct TableSine {
    static constexpr bool kPulse = false;
    explicit TableSine(float) : table(sineTable()) {}
    float operator()(float p) const { return 0.5f * table.sine(p); }
    const SineTable& table;
};

// 0.5 cos(2 pi p) from the cosine view of the sine table: a synced sine restarts at its positive peak.
struct TableCosine {
    static constexpr bool kPulse = false;
    explicit TableCosine(float) : table(sineTable()) {}
    float operator()(float p) const { return 0.5f * table.cosine(p); }
    float slope(float p) const { return -3.14159265f * table.sine(p); }
    const SineTable& table;
};

// --- Middle quality: the corners and the jump spread over one or two samples by parabolas ---------

// The sawtooth with its jump replaced by a quadratic step over two samples: equal to the naive sawtooth
// delayed by f from 2f on, and continuous in value at 0, f and 2f.
struct MiddleSaw {
    static constexpr bool kPulse = false;
    explicit MiddleSaw(float f)
        : f(f), twoF(2.0f * f), c(0.5f / (f * f)), k(2.0f / f - 1.0f),
          lateOffset(f + 0.5f), firstOffset(f - 0.5f), secondOffset(f - 1.5f) {}
    float operator()(float p) const {
        if (p >= twoF) return lateOffset - p;
        if (p < f) return (c * p - 1.0f) * p + firstOffset;
        return (k - c * p) * p + secondOffset;
    }
    float slope(float p) const {
        if (p >= twoF) return -1.0f;
        if (p < f) return 2.0f * c * p - 1.0f;
        return k - 2.0f * c * p;
    }
    float f, twoF, c, k, lateOffset, firstOffset, secondOffset;
};

// The falling triangle with each corner replaced by a parabola one sample wide: 0.5 - f at p = 0,
// f - 0.5 at p = 0.5. The trough's parabola (k p - 2 - k) p + 0.5/f + f + 0.5 is evaluated around its
// corner as k u^2 - 2u + f - 0.5 with u = p - 0.5, the same polynomial without the cancellation of terms
// of size 1/f.
struct MiddleTriangle {
    static constexpr bool kPulse = false;
    explicit MiddleTriangle(float f) : f(f), a(f + 0.5f), k(2.0f / f), topOffset(0.5f - f), bottomOffset(f - 0.5f) {}
    float operator()(float p) const {
        if (p >= a) return 2.0f * p - 1.5f - f;
        if (p < f) return (2.0f - k * p) * p + topOffset;
        if (p < 0.5f) return a - 2.0f * p;
        float u = p - 0.5f;
        return (k * u - 2.0f) * u + bottomOffset;
    }
    float slope(float p) const {
        if (p >= a) return 2.0f;
        if (p < f) return 2.0f - 2.0f * k * p;
        if (p < 0.5f) return -2.0f;
        return 2.0f * k * (p - 0.5f) - 2.0f;
    }
    float f, a, k, topOffset, bottomOffset;
};

// --- High quality: harmonic tables, or a naive shape corrected by residuals -----------------------

// Harmonic count of an increment: how many harmonics fit below half the sample rate.
inline int harmonicCount(float f) { return static_cast<int>(0.5f / f); }

struct TableShape {
    static constexpr bool kPulse = false;
    explicit TableShape(const PeriodicTable& t) : table(&t) {}
    float operator()(float p) const { return table->lookup(p); }
    const PeriodicTable* table;
};

// 0.5 - p with the jump at the wrap band-limited: R added at the time since the wrap, subtracted at the
// time to the next one. r is the number of residual points per cycle.
struct ResidualSaw {
    static constexpr bool kPulse = false;
    explicit ResidualSaw(float f)
        : r(static_cast<float>(ResidualTable::kPointsPerSample) / f), table(stepResidualTable()) {}
    float operator()(float p) const {
        float out = 0.5f - p;
        float after = r * p;
        if (after < ResidualTable::kSpan) out += table.lookup(after);
        float before = r * (1.0f - p);
        if (before < ResidualTable::kSpan) out -= table.lookup(before);
        return out;
    }
    float r;
    const StepResidualTable& table;
};

// The falling triangle 0.5 - 2p / 2p - 1.5 with both corners band-limited. The slope falls by 4f per
// sample at the peak (p = 0) and rises by 4f at the trough (p = 0.5); each corner within 16 samples
// adds 4f Q(|t|) with the sign of its slope change. h is the number of residual points per half cycle.
struct ResidualTriangle {
    static constexpr bool kPulse = false;
    explicit ResidualTriangle(float f)
        : r(static_cast<float>(ResidualTable::kPointsPerSample) / f), h(0.5f * r), cornerScale(4.0f * f),
          table(rampResidualTable()) {}
    float operator()(float p) const {
        float naive;
        float toPeak;    // points from the nearest peak corner
        float toTrough;  // points from the nearest trough corner
        if (p < 0.5f) {
            naive = 0.5f - 2.0f * p;
            toPeak = r * p;
        } else {
            naive = 2.0f * p - 1.5f;
            toPeak = r * (1.0f - p);
        }
        toTrough = h - toPeak;
        float c = 0.0f;
        if (toPeak < ResidualTable::kSpan) c -= table.lookup(toPeak);
        if (toTrough < ResidualTable::kSpan) c += table.lookup(toTrough);
        return naive + cornerScale * c;
    }
    float r, h, cornerScale;
    const RampResidualTable& table;
};

// --- Pulses: the difference of two sawtooths half a width apart -----------------------------------

// S(p) - S(p - w): 1 - w while p < w and -w after, free of DC.
template <class Saw>
struct PulseOf {
    static constexpr bool kPulse = true;
    explicit PulseOf(float f) : saw(f) {}
    explicit PulseOf(const Saw& s) : saw(s) {}
    float operator()(float p, float w) const { return saw(p) - saw(pulsePhase(p, w)); }
    float slope(float p, float w) const { return saw.slope(p) - saw.slope(pulsePhase(p, w)); }
    Saw saw;
};

// Evaluates a shape at phase p, with the pulse width w when the shape is a pulse.
template <class Shape>
inline float evaluate(const Shape& shape, float p, float w) {
    if constexpr (Shape::kPulse) return shape(p, w);
    else return shape(p);
}

template <class Shape>
inline float slopeOf(const Shape& shape, float p, float w) {
    if constexpr (Shape::kPulse) return shape.slope(p, w);
    else return shape.slope(p);
}

}  // namespace wave
}  // namespace tolvane
