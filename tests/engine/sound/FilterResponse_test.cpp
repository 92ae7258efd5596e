// Frequency responses of the twelve filter types, measured by driving them with sines and compared with
// the analogue prototypes they are bilinear transforms of. A low- or high-pass corner sits where
// tan(pi f) = tan(pi c / 2); a band type's centre is at f = c.
#include <cmath>
#include <complex>

#include <gtest/gtest.h>

#include "tests/engine/sound/FilterTestRig.h"

namespace tolvane {
namespace {

using test::FilterRig;
using test::kPi;
using Complex = std::complex<double>;

bool isHighPass(FilterKind k) { return k >= FilterKind::HighPass6 && k <= FilterKind::HighPass24; }
bool isLowOrHighPass(FilterKind k) { return k <= FilterKind::HighPass24; }
int order(FilterKind k) { return static_cast<int>(k) % 4 + 1; }

// The low-pass prototype of each order at resonance r.
Complex prototype(int n, bool high, double r, Complex s) {
    const double sqrt2 = std::sqrt(2.0);
    switch (n) {
        case 1: return 1.0 / (1.0 + s);
        case 2: {
            double q = (high ? 1.98 : 2.04) * r;
            double B = 2.0 - std::sqrt(2.0 * q), C = 1.0 - std::sqrt(2.0 * q) + q;
            return C / ((1.0 + q) * (s * s + B * s + C));
        }
        case 3: {
            double q = sqrt2 * (high ? 1.98 : 2.04) * r, rho = std::cbrt(q);
            double B = 2.0 - sqrt2 * rho, C = 1.0 + rho * rho - sqrt2 * rho;
            return (1.0 + rho) * C / ((1.0 + q) * (s + 1.0 + rho) * (s * s + B * s + C));
        }
        default: {
            double q = (high ? 3.96 : 4.08) * r;
            return 1.0 / (std::pow(1.0 + s, 4) + q);
        }
    }
}

// Magnitude response at f cycles per sample for normalised cutoff c and resonance r.
double expectedGain(FilterKind kind, double c, double r, double f) {
    const double W = std::tan(kPi * f);
    if (isLowOrHighPass(kind)) {
        const double t = std::tan(kPi * c / 2.0);
        const bool high = isHighPass(kind);
        Complex s = high ? Complex(0.0, -t / W) : Complex(0.0, W / t);
        return std::abs(prototype(order(kind), high, r, s));
    }
    const double omega = W / std::tan(kPi * c);
    const bool twoSections = kind == FilterKind::BandPass24 || kind == FilterKind::BandReject24;
    double one;
    double makeUp = 1.0;
    if (kind == FilterKind::BandPass12 || kind == FilterKind::BandPass24) {
        double Q = 1.0 / (4.0 - 3.98 * r);
        one = 1.0 / std::sqrt(1.0 + Q * Q * (omega - 1.0 / omega) * (omega - 1.0 / omega));
        makeUp = 1.0 / (1.06 - r);
    } else {
        double Q = 1.0 / (8.0 - 7.6 * r);
        double d = 1.0 - omega * omega;
        one = std::abs(d) / std::sqrt(d * d + (omega / Q) * (omega / Q));
    }
    return (twoSections ? one * one : one) * makeUp;
}

const char* kKindNames[] = {"LP6", "LP12", "LP18", "LP24", "HP6", "HP12", "HP18", "HP24", "BP12", "BP24", "BR12", "BR24"};

TEST(FilterResponse, EveryTypeFollowsItsPrototype) {
    // From far below to far above each corner or centre: pass bands, slopes, peaks and stop bands.
    // c = 0.0625 and 0.125 read the tangent and sine tables exactly at entries; f = m / 8192. The points
    // include the corner (256 / 8192, 3 dB down at r = 0) and the band centre (1024 / 8192).
    const double frequencies[] = {24.0 / 8192, 128.0 / 8192, 256.0 / 8192, 512.0 / 8192, 1024.0 / 8192,
                                  1536.0 / 8192, 3000.0 / 8192};
    const float resonances[] = {0.0f, 0.5f, 0.9f};
    for (int k = 0; k < FilterSection::kKindCount; ++k) {
        FilterKind kind = static_cast<FilterKind>(k);
        const float c = isLowOrHighPass(kind) ? 0.0625f : 0.125f;
        for (float r : resonances) {
            FilterRig rig;
            rig.set(c, r, 4.0f);
            for (double f : frequencies) {
                double expected = expectedGain(kind, c, r, f);
                double measured = rig.gain(kind, f, 0.1);
                EXPECT_NEAR(measured, expected, 0.01 * expected + 2e-4)
                    << kKindNames[k] << " r=" << r << " f=" << f;
            }
        }
    }
}

}  // namespace
}  // namespace tolvane
