#include "engine/sound/PoleFilters.h"

#include <algorithm>
#include <cmath>

#include "engine/sound/Saturation.h"

namespace tolvane {
namespace {

constexpr float kSqrt2 = 1.41421356f;
constexpr int kGroup = 16;

// The high-pass types feed back the unlimited value. Near the largest resonance their resonant section
// is barely damped, and a cutoff swept by tens of notes per block (a fast LFO at a large depth) pumps
// energy into it faster than the damping removes it. Bounding the fed-back value far above any level a
// stable filter reaches (a few hundred at most) keeps such a runaway finite; normal signals never meet
// the bound, so the sound is unchanged.
constexpr float kFeedbackCeiling = 1.0e4f;

inline float boundedFeedback(float v) { return std::min(std::max(v, -kFeedbackCeiling), kFeedbackCeiling); }

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
    float b = ramp.from[0], a = ramp.from[1];
    const float db = ramp.step[0], da = ramp.step[1];
    float level = ramp.level;
    const float dLevel = ramp.levelStep, knee = ramp.knee;
    float z = state_[0];
    for (int i = 0; i < n; i += kGroup) {
        for (int j = i; j < i + kGroup; ++j) {
            b += db;
            a += da;
            level += dLevel;
            float bx = b * x[j];
            float out = saturate(bx + z, level, knee);
            z = bx + a * out;
            y[j] = out;
        }
    }
    state_[0] = z;
}

void HighPass6::design(float c, float, float* out) const {
    float t = prewarp(c);
    float b = 1.0f / (t + 1.0f);
    out[0] = b;
    out[1] = 2.0f * b - 1.0f;
}

void HighPass6::render(const float* x, float* y, int n, const Ramp& ramp) {
    float b = ramp.from[0], a = ramp.from[1];
    const float db = ramp.step[0], da = ramp.step[1];
    float level = ramp.level;
    const float dLevel = ramp.levelStep, knee = ramp.knee;
    float z = state_[0];
    for (int i = 0; i < n; i += kGroup) {
        for (int j = i; j < i + kGroup; ++j) {
            b += db;
            a += da;
            level += dLevel;
            float bx = b * x[j];
            float v = bx + z;
            y[j] = saturate(v, level, knee);
            z = a * v - bx;
        }
    }
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
    float g = ramp.from[0], a1 = ramp.from[1], a2 = ramp.from[2];
    const float dg = ramp.step[0], da1 = ramp.step[1], da2 = ramp.step[2];
    float level = ramp.level;
    const float dLevel = ramp.levelStep, knee = ramp.knee;
    float s1 = state_[0], s2 = state_[1];
    for (int i = 0; i < n; i += kGroup) {
        for (int j = i; j < i + kGroup; ++j) {
            g += dg;
            a1 += da1;
            a2 += da2;
            level += dLevel;
            float gx = g * x[j];
            float v = gx + s1;
            float out = saturate(v, level, knee);
            float f = kHighPass ? boundedFeedback(v) : out;
            s1 = kMid * gx - a1 * f + s2;
            s2 = gx - a2 * f;
            y[j] = out;
        }
    }
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
    float G = ramp.from[0], p = ramp.from[1], a1 = ramp.from[2], a2 = ramp.from[3];
    const float dG = ramp.step[0], dp = ramp.step[1], da1 = ramp.step[2], da2 = ramp.step[3];
    float level = ramp.level;
    const float dLevel = ramp.levelStep, knee = ramp.knee;
    float z = state_[0], s1 = state_[1], s2 = state_[2];
    for (int i = 0; i < n; i += kGroup) {
        for (int j = i; j < i + kGroup; ++j) {
            G += dG;
            p += dp;
            a1 += da1;
            a2 += da2;
            level += dLevel;
            float gx = G * x[j];
            float e = gx + z;
            z = kSign * gx + p * e;
            float v = e + s1;
            float out = saturate(v, level, knee);
            float f = kHighPass ? boundedFeedback(v) : out;
            s1 = 2.0f * kSign * e - a1 * f + s2;
            s2 = e - a2 * f;
            y[j] = out;
        }
    }
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
    float G = ramp.from[0], a11 = ramp.from[1], a21 = ramp.from[2], a12 = ramp.from[3], a22 = ramp.from[4];
    const float dG = ramp.step[0], da11 = ramp.step[1], da21 = ramp.step[2], da12 = ramp.step[3],
                da22 = ramp.step[4];
    float level = ramp.level;
    const float dLevel = ramp.levelStep, knee = ramp.knee;
    float s1 = state_[0], s2 = state_[1], s3 = state_[2], s4 = state_[3];
    for (int i = 0; i < n; i += kGroup) {
        for (int j = i; j < i + kGroup; ++j) {
            G += dG;
            a11 += da11;
            a21 += da21;
            a12 += da12;
            a22 += da22;
            level += dLevel;
            float gx = G * x[j];
            float e = gx + s1;
            s1 = kMid * gx - a11 * e + s2;
            s2 = gx - a21 * e;
            float v = e + s3;
            float out = saturate(v, level, knee);
            float f = kHighPass ? boundedFeedback(v) : out;
            s3 = kMid * e - a12 * f + s4;
            s4 = e - a22 * f;
            y[j] = out;
        }
    }
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
