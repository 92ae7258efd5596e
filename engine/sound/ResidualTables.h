// Residuals of a band-limited step and of a band-limited ramp, for correcting naive waveforms near their
// discontinuities.
//
// A naive sawtooth jumps within one sample at its wrap; its band-limited form differs from it only in
// the samples close to the jump. For a unit step at time 0 that difference is R(t): the running integral
// of a step kernel (a sinc with its cut-off at half the sample rate, tapered to zero 16 samples either
// side, unit area) minus the ideal step. The difference is odd around the step, -R(|t|) before it and
// +R(t) after it, so a generator adds R at the time since the last jump and subtracts R at the time to
// the next one, and the correction has no latency.
//
// Q is the same for a corner, a jump in slope: Q(t) = -integral of R from t to the end, so that the slope
// of Q is R. A corner whose slope rises by one per sample is corrected by +Q(|t|) on both sides.
//
// Both tables have 256 points per sample, span 16 samples and are taken to continue with 0: the slope of
// the last point leads to 0. They are computed when the library is loaded and only read afterwards.
#pragma once

namespace tolvane {

struct ResidualTable {
    static constexpr int kPointsPerSample = 256;
    static constexpr int kSize = 4096;  // 16 samples
    static constexpr float kSpan = static_cast<float>(kSize);

    float value[kSize];
    float slope[kSize];

    // The residual at x = 256 t (t in samples, 0 <= x < 4096).
    float lookup(float x) const {
        int i = static_cast<int>(x);
        return value[i] + (x - static_cast<float>(i)) * slope[i];
    }
};

// R(t): R(0) = -0.5, slope 1 per sample at 0, 0 at 16 samples.
struct StepResidualTable : ResidualTable {};

// Q(t): Q(0) close to 1/pi^2, 0 at 16 samples.
struct RampResidualTable : ResidualTable {};

const StepResidualTable& stepResidualTable();
const RampResidualTable& rampResidualTable();

}  // namespace tolvane
