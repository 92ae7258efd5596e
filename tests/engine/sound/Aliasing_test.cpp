#include <cmath>
#include <complex>
#include <vector>

#include <gtest/gtest.h>

#include "engine/sound/WaveGenerator.h"
#include "support/AliasMeasure.h"
#include "tools/analyse/Fft.h"

namespace tolvane {
namespace {

TEST(Aliasing, HighQualityIsAtLeastThirtyDecibelsCleanerThanLowForSawtoothAndPulse) {
    std::vector<std::complex<double>> tone(64);  // the measurement's FFT first: a tone lands in its bin
    for (int n = 0; n < 64; ++n) tone[static_cast<std::size_t>(n)] = std::cos(2 * M_PI * 5 * n / 64.0);
    analyse::fft(tone);
    for (int k = 0; k < 64; ++k)
        ASSERT_NEAR(std::abs(tone[static_cast<std::size_t>(k)]), k == 5 || k == 59 ? 32.0 : 0.0, 1e-9);

    for (int low : {kSawLow, kPulseLow}) {
        double lowDb = measure::measureAliasing(low).ratioDb();
        double middleDb = measure::measureAliasing(low + 1).ratioDb();
        double highDb = measure::measureAliasing(low + 2).ratioDb();
        EXPECT_LE(highDb, lowDb - 30.0) << "waveform " << low << ": Low " << lowDb << " dB, High " << highDb << " dB";
        EXPECT_LT(middleDb, lowDb);
        EXPECT_LT(highDb, middleDb);
    }
}

}  // namespace
}  // namespace tolvane
