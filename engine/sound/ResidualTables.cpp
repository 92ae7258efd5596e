#include "engine/sound/ResidualTables.h"

#include <cmath>
#include <vector>

namespace tolvane {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kSpanSamples = ResidualTable::kSize / ResidualTable::kPointsPerSample;  // 16
// Integration steps per table point: the kernel is integrated far finer than it is stored.
constexpr int kStepsPerPoint = 16;

// The taper: a four-term cosine window with a continuous first derivative, 1 at x = 0 and 0 at x = 1
// (16 samples).
double taper(double x) {
    return 0.355768 + 0.487396 * std::cos(kPi * x) + 0.144232 * std::cos(2.0 * kPi * x) +
           0.012604 * std::cos(3.0 * kPi * x);
}

double sinc(double t) { return t == 0.0 ? 1.0 : std::sin(kPi * t) / (kPi * t); }

void storeWithSlopes(ResidualTable& table, const std::vector<double>& fine) {
    for (int i = 0; i < ResidualTable::kSize; ++i)
        table.value[i] = static_cast<float>(fine[static_cast<std::size_t>(i) * kStepsPerPoint]);
    for (int i = 0; i < ResidualTable::kSize - 1; ++i) table.slope[i] = table.value[i + 1] - table.value[i];
    table.slope[ResidualTable::kSize - 1] = 0.0f - table.value[ResidualTable::kSize - 1];
}

// The residuals of a band-limited unit step and unit ramp, tapered to zero over 16 samples.
//
// An ideal (sinc-interpolated) unit step is Si(pi t)/pi + 1/2; what it adds to the naive step after the
// jump is R(t) = Si(pi t)/pi - 1/2, which starts at -0.5 with slope 1 per sample and rings down. The
// ramp's residual is its running integral, Q(t) = t (Si(pi t)/pi - 1/2) + cos(pi t)/pi^2, which starts at
// 1/pi^2 and has slope R. Both are multiplied by the same smooth taper, a four-term cosine window that is
// 1 at t = 0 and reaches 0 with zero slope at 16 samples, so the corrections end there without a step.
// Si(pi t)/pi is the integral of sinc from 0 to t, taken on a grid far finer than the tables.
struct Residuals {
    StepResidualTable step;
    RampResidualTable ramp;

    Residuals() {
        const int steps = ResidualTable::kSize * kStepsPerPoint;
        const double dt = 1.0 / (ResidualTable::kPointsPerSample * kStepsPerPoint);
        std::vector<double> r(static_cast<std::size_t>(steps) + 1);
        std::vector<double> q(r.size());
        double siOverPi = 0.0;  // integral of sinc from 0 to t (trapezoid rule)
        double previousSinc = 1.0;
        for (int i = 0; i <= steps; ++i) {
            const double t = i * dt;
            const double sincT = sinc(t);
            if (i > 0) siOverPi += 0.5 * (previousSinc + sincT) * dt;
            previousSinc = sincT;
            const double w = taper(t / kSpanSamples);
            const double residual = siOverPi - 0.5;
            r[static_cast<std::size_t>(i)] = residual * w;
            q[static_cast<std::size_t>(i)] = (t * residual + std::cos(kPi * t) / (kPi * kPi)) * w;
        }
        storeWithSlopes(step, r);
        storeWithSlopes(ramp, q);
    }
};

const Residuals& residuals() {
    static const Residuals tables;
    return tables;
}

// Built while the library is loaded, before any voice exists.
[[maybe_unused]] const Residuals& gBuiltAtLoad = residuals();

}  // namespace

const StepResidualTable& stepResidualTable() { return residuals().step; }
const RampResidualTable& rampResidualTable() { return residuals().ramp; }

}  // namespace tolvane
