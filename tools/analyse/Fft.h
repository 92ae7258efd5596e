// The one FFT of the measuring tools and the tests: an in-place radix-2 decimation-in-time transform.
#pragma once

#include <complex>
#include <vector>

namespace tolvane::analyse {

constexpr double kPi = 3.14159265358979323846;

// Forward transform (e^-i), unscaled; the size must be a power of two.
void fft(std::vector<std::complex<double>>& x);

}  // namespace tolvane::analyse
