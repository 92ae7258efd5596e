#include "engine/sound/PoleFilters.h"

#include <algorithm>
#include <cmath>

#include "engine/sound/FilterWalk.h"

namespace tolvane {
namespace {

constexpr float kSqrt2 = 1.41421356f;

// The high-pass types feed back the unlimited value. Near the largest resonance their resonant section
// is barely damped, and a cutoff swept by tens of notes per block (a fast LFO at a large depth) pumps
// energy into it faster than the damping removes it. Bounding the fed-back value far above any level a
// stable filter reaches (a few hundred at most) keeps such a runaway finite; normal signals never meet
// the bound, so the sound is unchanged.
constexpr float kFeedbackCeiling = 1.0e4f;

inline float boundedFeedback(float v) { return std::min(std::max(v, -kFeedbackCeiling), kFeedbackCeiling); }

// The resonant section every type from 12 dB up ends in: transposed form with numerator (1, mid, 1),
// v = in + s1; s1 = mid in - a1 f + s2; s2 = in - a2 f. The fed-back f is the limited output for low-pass
// and the unlimited value, bounded, for high-pass. Answers the limited output.
template <bool kHighPass, class Step>
inline float resonantSection(float in, float mid, float a1, float a2, float& s1, float& s2, const Step& step) {
    float v = in + s1;
    float out = step.saturate(v);
    float f = kHighPass ? boundedFeedback(v) : out;
    s1 = mid * in - a1 * f + s2;
    s2 = in - a2 * f;
    return out;
}

// One biquad section of the bilinear family: P = C w^2, Q = -B w for the prototype C / (s^2 + B s + C).
struct Biquad {
    float a1;
    float a2;
    float gain;  // P / D, the section's own normalisation
};

Biquad biquad(float P, float Q, bool highPass) {
    float D = P + 1.0f - Q;
    float a1 = highPass ? 2.0f * (1.0f - P) / D : 2.0f * (P - 1.0f) / D;
    return Biquad{a1, (P + 1.0f + Q) / D, P / D};
}

}  // namespace

void LowPass6::design(float c, float, float* out) const {
    float t = prewarp(c);
    float b = t / (t + 1.0f);
    out[0] = b;
    out[1] = 1.0f - 2.0f * b;
}

void LowPass6::render(const float* x, float* y, int n, const Ramp& ramp) {
    float z = state_[0];
    walkFilterRamp<2>(ramp, n, [&](int j, const FilterStep<2>& s) {
        float bx = s.c[0] * x[j];
        float out = s.saturate(bx + z);
        z = bx + s.c[1] * out;
        y[j] = out;
    });
    state_[0] = z;
}

void HighPass6::design(float c, float, float* out) const {
    float t = prewarp(c);
    float b = 1.0f / (t + 1.0f);
    out[0] = b;
    out[1] = 2.0f * b - 1.0f;
}

void HighPass6::render(const float* x, float* y, int n, const Ramp& ramp) {
    float z = state_[0];
    walkFilterRamp<2>(ramp, n, [&](int j, const FilterStep<2>& s) {
        float bx = s.c[0] * x[j];
        float v = bx + z;
        y[j] = s.saturate(v);
        z = s.c[1] * v - bx;
    });
    state_[0] = z;
}

template <bool kHighPass>
void TwoPoleFilter<kHighPass>::design(float c, float r, float* out) const {
    float t = prewarp(c);
    float w = kHighPass ? 1.0f / t : t;
    float q = (kHighPass ? 1.98f : 2.04f) * r;
    float root = std::sqrt(2.0f * q);
    float P = (1.0f - root + q) * w * w;
    float Q = (root - 2.0f) * w;
    Biquad s = biquad(P, Q, kHighPass);
    out[0] = s.gain / (q + 1.0f);
    out[1] = s.a1;
    out[2] = s.a2;
}

// Transposed direct form: v = g x + s1; s1 = +-2 g x - a1 f + s2; s2 = g x - a2 f, with f the fed-back
// value (limited for low-pass, unsaturated but bounded for high-pass).
template <bool kHighPass>
void TwoPoleFilter<kHighPass>::render(const float* x, float* y, int n, const Ramp& ramp) {
    constexpr float kMid = kHighPass ? -2.0f : 2.0f;
    float s1 = state_[0], s2 = state_[1];
    walkFilterRamp<3>(ramp, n, [&](int j, const FilterStep<3>& s) {
        y[j] = resonantSection<kHighPass>(s.c[0] * x[j], kMid, s.c[1], s.c[2], s1, s2, s);
    });
    state_[0] = s1;
    state_[1] = s2;
}

template <bool kHighPass>
void ThreePoleFilter<kHighPass>::design(float c, float r, float* out) const {
    float t = prewarp(c);
    float w = kHighPass ? 1.0f / t : t;
    float q = kSqrt2 * (kHighPass ? 1.98f : 2.04f) * r;
    float rho = std::cbrt(q);
    float m = (1.0f + rho) * w;
    float p = kHighPass ? (m - 1.0f) / (m + 1.0f) : (1.0f - m) / (1.0f + m);
    float P = (rho * rho + 1.0f - kSqrt2 * rho) * w * w;
    float Q = (kSqrt2 * rho - 2.0f) * w;
    Biquad s = biquad(P, Q, kHighPass);
    out[0] = s.gain * (m / ((q + 1.0f) * (1.0f + m)));
    out[1] = p;
    out[2] = s.a1;
    out[3] = s.a2;
}

// e = G x + z; z = +-G x + p e (first order), then the biquad on e with unit numerator (1, +-2, 1).
template <bool kHighPass>
void ThreePoleFilter<kHighPass>::render(const float* x, float* y, int n, const Ramp& ramp) {
    constexpr float kSign = kHighPass ? -1.0f : 1.0f;
    float z = state_[0], s1 = state_[1], s2 = state_[2];
    walkFilterRamp<4>(ramp, n, [&](int j, const FilterStep<4>& s) {
        const float G = s.c[0], p = s.c[1], a1 = s.c[2], a2 = s.c[3];
        float gx = G * x[j];
        float e = gx + z;
        z = kSign * gx + p * e;
        y[j] = resonantSection<kHighPass>(e, 2.0f * kSign, a1, a2, s1, s2, s);
    });
    state_[0] = z;
    state_[1] = s1;
    state_[2] = s2;
}

template <bool kHighPass>
void FourPoleFilter<kHighPass>::design(float c, float r, float* out) const {
    float t = prewarp(c);
    float w = kHighPass ? 1.0f / t : t;
    float q = (kHighPass ? 3.96f : 4.08f) * r;
    float sigma = std::sqrt(q);
    float rho = std::sqrt(sigma);
    Biquad first = biquad((sigma + 1.0f + kSqrt2 * rho) * w * w, (-kSqrt2 * rho - 2.0f) * w, kHighPass);
    Biquad second = biquad((sigma + 1.0f - kSqrt2 * rho) * w * w, (kSqrt2 * rho - 2.0f) * w, kHighPass);
    out[0] = second.gain * first.gain / (q + 1.0f);
    out[1] = first.a1;
    out[2] = first.a2;
    out[3] = second.a1;
    out[4] = second.a2;
}

template <bool kHighPass>
void FourPoleFilter<kHighPass>::render(const float* x, float* y, int n, const Ramp& ramp) {
    constexpr float kMid = kHighPass ? -2.0f : 2.0f;
    float s1 = state_[0], s2 = state_[1], s3 = state_[2], s4 = state_[3];
    walkFilterRamp<5>(ramp, n, [&](int j, const FilterStep<5>& s) {
        const float G = s.c[0], a11 = s.c[1], a21 = s.c[2], a12 = s.c[3], a22 = s.c[4];
        float gx = G * x[j];
        float e = gx + s1;
        s1 = kMid * gx - a11 * e + s2;
        s2 = gx - a21 * e;
        y[j] = resonantSection<kHighPass>(e, kMid, a12, a22, s3, s4, s);
    });
    state_[0] = s1;
    state_[1] = s2;
    state_[2] = s3;
    state_[3] = s4;
}

template class TwoPoleFilter<false>;
template class TwoPoleFilter<true>;
template class ThreePoleFilter<false>;
template class ThreePoleFilter<true>;
template class FourPoleFilter<false>;
template class FourPoleFilter<true>;

}  // namespace tolvane
