// The band-pass and band-reject filter types: resonator biquads at the centre c (s = sin 2 pi c,
// cs = cos 2 pi c) with bandwidth term alpha, g = 1 / (1 + alpha), a1 = -2 cs g, a2 = 2g - 1.
//
// Band-pass: alpha = s (4 - 3.98 r) / 2, numerator (1 - g) (1, 0, -1) and a make-up 1 / (1.06 - r), so
// one section peaks at 1 / (1.06 - r) (0.94 at r = 0, 16.7 at r = 1). The 24 dB type runs two such
// sections with unit numerators and applies (1 - g)^2 / (1.06 - r) once at the input.
// Band-reject: alpha = s (8 - 7.6 r) / 2, numerator g (1, -2 cs, 1): unity far from the centre and a
// zero on it. The 24 dB type runs two sections with numerators (1, -2 cs, 1) and g^2 at the input.
// Both limit only their output; the filters feed back the unlimited value.
#pragma once

#include "engine/sound/FilterModule.h"

namespace tolvane {

// Coefficients: two sections (G, a1, a2), one section (b0, a1, a2).
template <bool kTwoSections>
class BandPassFilter final : public FilterModule {
public:
    explicit BandPassFilter(ModuleGraph& graph) : FilterModule(graph, 3, true) {}

protected:
    void design(float c, float r, float* out) const override;
    void render(const float* x, float* y, int n, const Ramp& ramp) override;
};

// Coefficients: one section (g, a1, a2), whose middle numerator term -2 cs g equals a1;
// two sections (g^2, -2 cs, a1, a2).
template <bool kTwoSections>
class BandRejectFilter final : public FilterModule {
public:
    explicit BandRejectFilter(ModuleGraph& graph) : FilterModule(graph, kTwoSections ? 4 : 3, true) {}

protected:
    void design(float c, float r, float* out) const override;
    void render(const float* x, float* y, int n, const Ramp& ramp) override;
};

using BandPass12 = BandPassFilter<false>;
using BandPass24 = BandPassFilter<true>;
using BandReject12 = BandRejectFilter<false>;
using BandReject24 = BandRejectFilter<true>;

extern template class BandPassFilter<false>;
extern template class BandPassFilter<true>;
extern template class BandRejectFilter<false>;
extern template class BandRejectFilter<true>;

}  // namespace tolvane
