#include "tools/analyse/Fft.h"

#include <utility>

namespace tolvane::analyse {

void fft(std::vector<std::complex<double>>& x) {
    const std::size_t n = x.size();
    // Bit-reversed order first, then butterflies of doubling length.
    for (std::size_t i = 1, j = 0; i < n; ++i) {
        std::size_t bit = n >> 1;
        for (; j & bit; bit >>= 1) j ^= bit;
        j ^= bit;
        if (i < j) std::swap(x[i], x[j]);
    }
    for (std::size_t length = 2; length <= n; length <<= 1) {
        const std::complex<double> step = std::polar(1.0, -2.0 * kPi / static_cast<double>(length));
        for (std::size_t start = 0; start < n; start += length) {
            std::complex<double> w = 1.0;
            for (std::size_t k = 0; k < length / 2; ++k) {
                const std::complex<double> even = x[start + k];
                const std::complex<double> odd = x[start + k + length / 2] * w;
                x[start + k] = even + odd;
                x[start + k + length / 2] = even - odd;
                w *= step;
            }
        }
    }
}

}  // namespace tolvane::analyse
