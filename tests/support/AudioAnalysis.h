// Measurements on rendered audio: frequency of a steady tone, levels.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

namespace tolvane::testing {

// Frequency of a steady, nearly sinusoidal tone from its rising zero crossings (linear interpolation
// between samples), over samples [from, to). Answers 0 when fewer than two crossings exist.
inline double zeroCrossingFrequency(const std::vector<float>& x, std::size_t from, std::size_t to, double sampleRate) {
    double mean = 0.0;
    for (std::size_t i = from; i < to; ++i) mean += x[i];
    mean /= static_cast<double>(to - from);
    double first = -1.0, last = -1.0;
    int crossings = 0;
    for (std::size_t i = from + 1; i < to; ++i) {
        double a = x[i - 1] - mean, b = x[i] - mean;
        if (a < 0.0 && b >= 0.0) {
            double t = static_cast<double>(i - 1) + a / (a - b);
            if (first < 0.0) first = t;
            last = t;
            ++crossings;
        }
    }
    if (crossings < 2) return 0.0;
    return (crossings - 1) * sampleRate / (last - first);
}

inline double cents(double measured, double expected) { return 1200.0 * std::log2(measured / expected); }

inline double rms(const std::vector<float>& x, std::size_t from, std::size_t to) {
    double s = 0.0;
    for (std::size_t i = from; i < to; ++i) s += static_cast<double>(x[i]) * x[i];
    return std::sqrt(s / static_cast<double>(to - from));
}

inline double peak(const std::vector<float>& x, std::size_t from, std::size_t to) {
    double p = 0.0;
    for (std::size_t i = from; i < to; ++i) p = std::fmax(p, std::fabs(static_cast<double>(x[i])));
    return p;
}

}  // namespace tolvane::testing
