#include <cmath>
#include <complex>
#include <vector>

#include <gtest/gtest.h>

#include "engine/sound/WaveGenerator.h"
#include "support/AliasMeasure.h"

namespace tolvane {
namespace {

TEST(AliasMeasure, FftFindsAToneInItsBin) {
    std::vector<std::complex<double>> x(64);
    for (int n = 0; n < 64; ++n) x[static_cast<std::size_t>(n)] = std::cos(2 * M_PI * 5 * n / 64.0);
    measure::fft(x);
    for (int k = 0; k < 64; ++k) {
        double expected = (k == 5 || k == 59) ? 32.0 : 0.0;
        EXPECT_NEAR(std::abs(x[static_cast<std::size_t>(k)]), expected, 1e-9) << k;
    }
}

TEST(Aliasing, HighQualityIsAtLeastThirtyDecibelsCleanerThanLowForSawtoothAndPulse) {
    for (int waveform : {kSawLow, kPulseLow}) {
        double low = measure::measureAliasing(waveform).ratioDb();
        double middle = measure::measureAliasing(waveform + 1).ratioDb();
        double high = measure::measureAliasing(waveform + 2).ratioDb();
        EXPECT_LE(high, low - 30.0) << "waveform " << waveform << ": Low " << low << " dB, High " << high << " dB";
        EXPECT_LT(middle, low) << "waveform " << waveform << ": Low " << low << " dB, Middle " << middle << " dB";
        EXPECT_LT(high, middle) << "waveform " << waveform << ": Middle " << middle << " dB, High " << high << " dB";
    }
}

}  // namespace
}  // namespace tolvane
