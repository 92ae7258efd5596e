#include "engine/sound/BandFilters.h"

#include "engine/sound/LookupTables.h"
#include "engine/sound/FilterWalk.h"

namespace tolvane {
namespace {

struct Resonator {
    float g;
    float a1;
    float a2;
    float cs;
};

// The shared pole pair of a centre c with bandwidth factor alpha / sin(2 pi c).
Resonator resonator(float c, float width) {
    const SineTable& table = sineTable();
    float s = table.sine(c);
    float cs = table.cosine(c);
    float g = 1.0f / (1.0f + s * width * 0.5f);
    return Resonator{g, -2.0f * cs * g, 2.0f * g - 1.0f, cs};
}

}  // namespace

template <bool kTwoSections>
void BandPassFilter<kTwoSections>::design(float c, float r, float* out) const {
    Resonator p = resonator(c, 4.0f - 3.98f * r);
    float open = 1.0f - p.g;
    out[0] = (kTwoSections ? open * open : open) / (1.06f - r);
    out[1] = p.a1;
    out[2] = p.a2;
}

// Transposed form of b (1, 0, -1): v = b x + s1; s1 = -a1 v + s2; s2 = -b x - a2 v.
template <bool kTwoSections>
void BandPassFilter<kTwoSections>::render(const float* x, float* y, int n, const Ramp& ramp) {
    float s1 = state_[0], s2 = state_[1], s3 = state_[2], s4 = state_[3];
    walkFilterRamp<3>(ramp, n, [&](int j, const FilterStep<3>& s) {
        const float b = s.c[0], a1 = s.c[1], a2 = s.c[2];
        float bx = b * x[j];
        float v = bx + s1;
        s1 = -a1 * v + s2;
        s2 = -bx - a2 * v;
        if constexpr (kTwoSections) {
            float e = v;
            v = e + s3;
            s3 = -a1 * v + s4;
            s4 = -e - a2 * v;
        }
        y[j] = s.saturate(v);
    });
    state_[0] = s1;
    state_[1] = s2;
    state_[2] = s3;
    state_[3] = s4;
}

template <bool kTwoSections>
void BandRejectFilter<kTwoSections>::design(float c, float r, float* out) const {
    Resonator p = resonator(c, 8.0f - 7.6f * r);
    if constexpr (kTwoSections) {
        out[0] = p.g * p.g;
        out[1] = -2.0f * p.cs;
        out[2] = p.a1;
        out[3] = p.a2;
    } else {
        out[0] = p.g;
        out[1] = p.a1;
        out[2] = p.a2;
    }
}

// Transposed form of (b0, b1, b0): v = b0 x + s1; s1 = b1 x - a1 v + s2; s2 = b0 x - a2 v.
template <bool kTwoSections>
void BandRejectFilter<kTwoSections>::render(const float* x, float* y, int n, const Ramp& ramp) {
    float s1 = state_[0], s2 = state_[1], s3 = state_[2], s4 = state_[3];
    if constexpr (kTwoSections) {
        walkFilterRamp<4>(ramp, n, [&](int j, const FilterStep<4>& s) {
            const float G = s.c[0], b1 = s.c[1], a1 = s.c[2], a2 = s.c[3];
            float gx = G * x[j];
            float e = gx + s1;
            s1 = b1 * gx - a1 * e + s2;
            s2 = gx - a2 * e;
            float v = e + s3;
            s3 = b1 * e - a1 * v + s4;
            s4 = e - a2 * v;
            y[j] = s.saturate(v);
        });
    } else {
        walkFilterRamp<3>(ramp, n, [&](int j, const FilterStep<3>& s) {
            const float g = s.c[0], a1 = s.c[1], a2 = s.c[2];
            float gx = g * x[j];
            float v = gx + s1;
            s1 = a1 * x[j] - a1 * v + s2;
            s2 = gx - a2 * v;
            y[j] = s.saturate(v);
        });
    }
    state_[0] = s1;
    state_[1] = s2;
    state_[2] = s3;
    state_[3] = s4;
}

template class BandPassFilter<false>;
template class BandPassFilter<true>;
template class BandRejectFilter<false>;
template class BandRejectFilter<true>;

}  // namespace tolvane
