#include "engine/sound/ResidualTables.h"

#include <cmath>
#include <vector>

namespace tolvane {
namespace {

constexpr double kPi = 3.14159265358979323846;
constexpr int kSpanSamples = ResidualTable::kSize / ResidualTable::kPointsPerSample;  // 16
// Integration steps per table point: the kernel is integrated far finer than it is stored.
constexpr int kStepsPerPoint = 16;

// The taper: a four-term cosine window with a continuous first derivative, 1 at x = 0 and exactly 0
// at x = 1 (16 samples), so the tables end smoothly.
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

struct Residuals {
    StepResidualTable step;
    RampResidualTable ramp;

    Residuals() {
        // Kernel h(t) on a fine grid over [0, 16] samples, then tail integrals (trapezoid rule) from the
        // end backwards: R(t) = -integral of h from t to 16 / area, Q(t) = -integral of R from t to 16.
        const int steps = ResidualTable::kSize * kStepsPerPoint;
        const double dt = 1.0 / (ResidualTable::kPointsPerSample * kStepsPerPoint);
        std::vector<double> kernel(static_cast<std::size_t>(steps) + 1);
        for (int i = 0; i <= steps; ++i) {
            double t = i * dt;
            kernel[static_cast<std::size_t>(i)] = taper(t / kSpanSamples) * sinc(t);
        }
        std::vector<double> tail(kernel.size(), 0.0);
        for (int i = steps - 1; i >= 0; --i) {
            auto k = static_cast<std::size_t>(i);
            tail[k] = tail[k + 1] + 0.5 * (kernel[k] + kernel[k + 1]) * dt;
        }
        // The kernel is even, so its whole area is twice the half from 0; R(0) is then exactly -0.5.
        const double area = 2.0 * tail[0];
        std::vector<double> r(kernel.size());
        for (std::size_t k = 0; k < r.size(); ++k) r[k] = -tail[k] / area;
        std::vector<double> q(kernel.size(), 0.0);
        for (int i = steps - 1; i >= 0; --i) {
            auto k = static_cast<std::size_t>(i);
            q[k] = q[k + 1] - 0.5 * (r[k] + r[k + 1]) * dt;
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
