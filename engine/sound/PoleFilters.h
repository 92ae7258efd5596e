// The low- and high-pass filter types, 6 to 24 dB per octave.
//
// All are bilinear transforms of analogue prototypes prewarped to w = tan(pi c / 2) (low-pass) or
// w = 1 / tan(pi c / 2) (high-pass, whose sections are the low-pass sections mirrored about a quarter of
// the sample rate). Resonance scales a feedback term q; the pass-band gain is 1 / (1 + q) for the
// second- to fourth-order types.
//
// Saturation: for the low-pass types the limited value is what the filter feeds back, so the limiter
// tames the resonance from inside the loop; the high-pass types feed back the unsaturated value (bounded
// only far above any normal level, against runaways) and only limit what they output.
#pragma once

#include "engine/sound/FilterModule.h"

namespace tolvane {

// 6 dB/oct: b = t / (t + 1), a = 1 - 2b; v = b x + z; y = sat(v); z = b x + a y.
class LowPass6 final : public FilterModule {
public:
    explicit LowPass6(ModuleGraph& graph) : FilterModule(graph, 2, false) {}

protected:
    void design(float c, float r, float* out) const override;
    void render(const float* x, float* y, int n, const Ramp& ramp) override;
};

// 6 dB/oct: b = 1 / (t + 1), a = 2b - 1; v = b x + z; y = sat(v); z = a v - b x.
class HighPass6 final : public FilterModule {
public:
    explicit HighPass6(ModuleGraph& graph) : FilterModule(graph, 2, false) {}

protected:
    void design(float c, float r, float* out) const override;
    void render(const float* x, float* y, int n, const Ramp& ramp) override;
};

// 12 dB/oct, one biquad (g, a1, a2) with numerator g (1, +-2, 1): the prototype
// C / ((1 + q) (s^2 + (2 - sqrt(2q)) s + C)), C = 1 - sqrt(2q) + q, q = 2.04 r (low) or 1.98 r (high).
// At r = 0 it is two coincident real poles; the damping vanishes at q = 2.
template <bool kHighPass>
class TwoPoleFilter final : public FilterModule {
public:
    explicit TwoPoleFilter(ModuleGraph& graph) : FilterModule(graph, 3, true) {}

protected:
    void design(float c, float r, float* out) const override;
    void render(const float* x, float* y, int n, const Ramp& ramp) override;
};

// 18 dB/oct: a first-order section with pole p (G, p) followed by a biquad (a1, a2), rho = q^(1/3),
// q = sqrt(2) 2.04 r (low) or sqrt(2) 1.98 r (high); the overall gain G is applied at the input.
template <bool kHighPass>
class ThreePoleFilter final : public FilterModule {
public:
    explicit ThreePoleFilter(ModuleGraph& graph) : FilterModule(graph, 4, true) {}

protected:
    void design(float c, float r, float* out) const override;
    void render(const float* x, float* y, int n, const Ramp& ramp) override;
};

// 24 dB/oct: two biquads (G, a11, a21, a12, a22) realising 1 / ((1 + s)^4 + q) of the prototype,
// q = 4.08 r (low) or 3.96 r (high); the second section's damping vanishes at q = 4.
template <bool kHighPass>
class FourPoleFilter final : public FilterModule {
public:
    explicit FourPoleFilter(ModuleGraph& graph) : FilterModule(graph, 5, true) {}

protected:
    void design(float c, float r, float* out) const override;
    void render(const float* x, float* y, int n, const Ramp& ramp) override;
};

using LowPass12 = TwoPoleFilter<false>;
using HighPass12 = TwoPoleFilter<true>;
using LowPass18 = ThreePoleFilter<false>;
using HighPass18 = ThreePoleFilter<true>;
using LowPass24 = FourPoleFilter<false>;
using HighPass24 = FourPoleFilter<true>;

extern template class TwoPoleFilter<false>;
extern template class TwoPoleFilter<true>;
extern template class ThreePoleFilter<false>;
extern template class ThreePoleFilter<true>;
extern template class FourPoleFilter<false>;
extern template class FourPoleFilter<true>;

}  // namespace tolvane
