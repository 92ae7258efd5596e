// The generators of a free-running oscillator: sine, triangle, sawtooth and pulse in Low, Middle and
// High quality. Their per-block rendering (renderPlain) is also the unmodulated path of the FM generators.
#pragma once

#include <cmath>

#include "engine/sound/WaveGenerator.h"
#include "engine/sound/WaveShapes.h"

namespace tolvane {

// Runs a phase through one block: out[n] = value(p, w, n) with w the pulse width of sample n (sample k =
// n + 1 of the ramp), then p advances by f. Returns the phase after the block.
template <class Value>
inline float runPhase(float* out, int count, float p, float f, float w0, float ws, Value&& value) {
    forEachSample(count, [&](int n) {
        float w = wave::clampWidth(w0 + ws * static_cast<float>(n + 1));
        out[n] = value(p, w, n);
        p = wave::advance(p, f);
    });
    return p;
}

// Shared by the plain generators: the block's increment and pulse-width ramp.
class PlainGenerator : public WaveGenerator {
public:
    using WaveGenerator::WaveGenerator;
    void compute() override { renderPlain(); }

protected:
    virtual void renderPlain() = 0;
    // The FM generators call this after a phase-modulated block; generators with harmonic regimes
    // remember that the block used the residual path.
    virtual void modulatedBlockDone() {}

    float blockIncrement() const { return wave::dividingIncrement(inputValue(kFrequency)); }
    // Starts the pulse-width ramp of a pulse generator; other waveforms get a constant 0.
    void beginWidth(bool pulse, float& w0, float& ws) {
        if (pulse) {
            width_.begin(wave::clampWidth(inputValue(kPulseWidth)), blockSize_, w0, ws);
        } else {
            w0 = 0.0f;
            ws = 0.0f;
        }
    }
};

// Low and Middle sine: two seeds once per block, y0 = 0.5 sin(2 pi p) and y1 = 0.5 sin(2 pi (p + f)),
// then the recursion y[n+1] = c y[n] - y[n-1] with c = 2 cos(2 pi f) fills the block. Low seeds from the
// sine table and recurses in single precision; Middle uses the library functions and double precision.
template <typename Real>
class RecursiveSineGenerator : public PlainGenerator {
public:
    RecursiveSineGenerator(ModuleGraph& graph, int numInputs = 1) : PlainGenerator(graph, numInputs) {}

protected:
    void renderPlain() override {
        constexpr double kTwoPi = 6.283185307179586;
        float f = wave::clampIncrement(inputValue(kFrequency));
        Real y0, y1, c;
        if constexpr (sizeof(Real) == sizeof(float)) {
            const SineTable& table = sineTable();
            y0 = 0.5f * table.sine(phase_);
            y1 = 0.5f * table.sine(wave::advance(phase_, f));
            c = 2.0f * std::cos(static_cast<float>(kTwoPi) * f);
        } else {
            y0 = 0.5 * std::sin(kTwoPi * phase_);
            y1 = 0.5 * std::sin(kTwoPi * (static_cast<double>(phase_) + f));
            c = 2.0 * std::cos(kTwoPi * f);
        }
        float* out = block();
        forEachSample(blockSize_, [&](int n) {
            out[n] = static_cast<float>(y0);
            Real next = c * y1 - y0;
            y0 = y1;
            y1 = next;
        });
        float p = phase_ + static_cast<float>(blockSize_) * f;
        phase_ = p - static_cast<float>(static_cast<int>(p));
    }
};

// A shape evaluated at the running phase: the Low and Middle triangle, sawtooth and pulse, and the High
// sine.
template <class Shape>
class ShapeGenerator : public PlainGenerator {
public:
    ShapeGenerator(ModuleGraph& graph, int numInputs = Shape::kPulse ? 2 : 1) : PlainGenerator(graph, numInputs) {}

protected:
    void renderPlain() override {
        float f = blockIncrement();
        float w0, ws;
        beginWidth(Shape::kPulse, w0, ws);
        Shape shape(f);
        phase_ = runPhase(block(), blockSize_, phase_, f, w0, ws,
                          [&](float p, float w, int) { return wave::evaluate(shape, p, w); });
    }
};

// --- High quality triangle, sawtooth and pulse -------------------------------------------------------

// While few harmonics fit below half the sample rate the waveform is read from a harmonic table, else a
// naive waveform is corrected by residuals near its discontinuities.
struct SawRegimes {
    static constexpr bool kPulse = false;
    using Residual = wave::ResidualSaw;
    static const PeriodicTable* tableFor(int harmonics) {
        return harmonics < 9 ? &sawTableSet().forHarmonics(harmonics) : nullptr;
    }
};

struct PulseRegimes : SawRegimes {
    static constexpr bool kPulse = true;
};

struct TriangleRegimes {
    static constexpr bool kPulse = false;
    using Residual = wave::ResidualTriangle;
    static const PeriodicTable* tableFor(int harmonics) {
        return harmonics < 17 ? &triangleTableSet().entry((harmonics - 1) / 2) : nullptr;
    }
};

// The harmonic count nh = trunc(0.5 / f) is taken once per block. When the table (or the choice between
// table and residual path) differs from the previous block's, the block crossfades linearly from the old
// to the new one, weight 0 at the first sample growing by 1/B per sample. A pulse is the difference of
// two High sawtooths of the same regime.
template <class Regimes>
class BandLimitedGenerator : public PlainGenerator {
public:
    static constexpr int kUnsetCount = -1;
    // Stands for "the residual path" after a phase-modulated block.
    static constexpr int kResidualCount = 1 << 24;

    BandLimitedGenerator(ModuleGraph& graph, int numInputs = Regimes::kPulse ? 2 : 1,
                         int initialCount = kUnsetCount)
        : PlainGenerator(graph, numInputs), previousCount_(initialCount) {}

protected:
    void resetInterpolation() override {
        PlainGenerator::resetInterpolation();
        previousCount_ = kUnsetCount;
    }
    void modulatedBlockDone() override { previousCount_ = kResidualCount; }

    void renderPlain() override {
        float f = blockIncrement();
        float w0, ws;
        beginWidth(Regimes::kPulse, w0, ws);
        int count = wave::harmonicCount(f);
        if (previousCount_ == kUnsetCount) previousCount_ = count;
        const PeriodicTable* before = Regimes::tableFor(previousCount_);
        const PeriodicTable* now = Regimes::tableFor(count);
        previousCount_ = count;

        float* out = block();
        if (before == now) {
            withShape(now, f, [&](const auto& shape) {
                phase_ = runPhase(out, blockSize_, phase_, f, w0, ws,
                                  [&](float p, float w, int) { return wave::evaluate(shape, p, w); });
            });
            return;
        }
        const float weightStep = 1.0f / static_cast<float>(blockSize_);
        withShape(before, f, [&](const auto& oldShape) {
            withShape(now, f, [&](const auto& newShape) {
                phase_ = runPhase(out, blockSize_, phase_, f, w0, ws, [&](float p, float w, int n) {
                    float a = wave::evaluate(oldShape, p, w);
                    float b = wave::evaluate(newShape, p, w);
                    return a + (b - a) * (static_cast<float>(n) * weightStep);
                });
            });
        });
    }

    // Calls fn with the shape of a regime: the table's, or the residual path's when table is null.
    template <class Fn>
    static void withShape(const PeriodicTable* table, float f, Fn&& fn) {
        using Residual = typename Regimes::Residual;
        if (table) {
            wave::TableShape shape(*table);
            if constexpr (Regimes::kPulse) fn(wave::PulseOf<wave::TableShape>(shape));
            else fn(shape);
        } else {
            Residual shape(f);
            if constexpr (Regimes::kPulse) fn(wave::PulseOf<Residual>(shape));
            else fn(shape);
        }
    }

    int previousCount_;
};

using LowSineGenerator = RecursiveSineGenerator<float>;
using MiddleSineGenerator = RecursiveSineGenerator<double>;
using HighSineGenerator = ShapeGenerator<wave::TableSine>;
using LowTriangleGenerator = ShapeGenerator<wave::RisingTriangle>;
using MiddleTriangleGenerator = ShapeGenerator<wave::MiddleTriangle>;
using HighTriangleGenerator = BandLimitedGenerator<TriangleRegimes>;
using LowSawGenerator = ShapeGenerator<wave::NaiveSaw>;
using MiddleSawGenerator = ShapeGenerator<wave::MiddleSaw>;
using HighSawGenerator = BandLimitedGenerator<SawRegimes>;
using LowPulseGenerator = ShapeGenerator<wave::PulseOf<wave::NaiveSaw>>;
using MiddlePulseGenerator = ShapeGenerator<wave::PulseOf<wave::MiddleSaw>>;
using HighPulseGenerator = BandLimitedGenerator<PulseRegimes>;

}  // namespace tolvane
