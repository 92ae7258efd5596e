// The analyser's measurements on signals whose figures are known in closed form.
#include "tools/analyse/SoundCheck.h"

#include <cmath>
#include <random>

#include <gtest/gtest.h>

namespace tolvane::analyse {
namespace {

constexpr double kRate = 44100.0;
constexpr double kPi = 3.14159265358979323846;

// Band-limited sawtooth of the given frequency by its Fourier series.
std::vector<float> sawtooth(double hz, double seconds) {
    std::vector<float> x(static_cast<std::size_t>(seconds * kRate));
    for (std::size_t i = 0; i < x.size(); ++i) {
        double v = 0.0;
        for (int k = 1; k * hz < 0.45 * kRate; ++k) v += std::sin(2.0 * kPi * k * hz * i / kRate) / k;
        x[i] = static_cast<float>(0.3 * v);
    }
    return x;
}

TEST(SoundCheck, FundamentalOfHarmonicTones) {
    for (double hz : {55.0, 261.6256, 1046.5}) {
        const std::vector<float> x = sawtooth(hz, 0.3);
        const double found = fundamentalHz(x, 1000, static_cast<std::size_t>(0.1 * kRate) + 2205, kRate);
        EXPECT_NEAR(1200.0 * std::log2(found / hz), 0.0, 2.0) << hz;
    }
}

TEST(SoundCheck, AperiodicityTellsToneFromNoise) {
    const std::vector<float> tone = sawtooth(440.0, 0.2);
    std::mt19937 rng(7);
    std::uniform_real_distribution<float> u(-0.5f, 0.5f);
    std::vector<float> noise(tone.size());
    for (float& v : noise) v = u(rng);
    const std::size_t length = 4000;
    EXPECT_LT(aperiodicity(tone, 0, length, kRate), 0.05);
    EXPECT_GT(aperiodicity(noise, 0, length, kRate), 0.7);
}

// A 1 kHz sine, amplitude 0.5, rising linearly over 0.2 s, held, then decaying by e^(-t/tau) after
// the key-up; the right channel carries half the left.
TEST(SoundCheck, EnvelopeFiguresOfAKnownNote) {
    const Take take{"note", {{84, 100}}, 1.2, 1.5, 1000.0};
    const double tau = 0.1;
    Stereo s;
    const std::size_t n = static_cast<std::size_t>((kNoteOnSeconds + take.holdSeconds + take.tailSeconds) * kRate);
    for (std::size_t i = 0; i < n; ++i) {
        const double t = static_cast<double>(i) / kRate - kNoteOnSeconds;
        double a = t < 0.0 ? 0.0 : (t < 0.2 ? t / 0.2 : 1.0);
        if (t > take.holdSeconds) a = std::exp(-(t - take.holdSeconds) / tau);
        const float v = static_cast<float>(0.5 * a * std::sin(2.0 * kPi * 1000.0 * i / kRate));
        s.left.push_back(v);
        s.right.push_back(0.5f * v);
    }
    const Measures m = measure(s, take);
    EXPECT_NEAR(m.onsetSeconds, 0.1, 0.01);                      // half the peak at half the ramp
    EXPECT_NEAR(m.levelAfter1sDb, 0.0, 0.2);
    EXPECT_NEAR(m.release40Seconds, tau * std::log(100.0), 0.01);  // -40 dB of e^(-t/tau)
    EXPECT_NEAR(m.pitchCents, 0.0, 1.0);
    EXPECT_NEAR(m.centroidHz, 1000.0, 30.0);
    EXPECT_NEAR(m.stereoWidth, 0.5 / 1.5, 1e-3);
    EXPECT_NEAR(m.peakDb, 20.0 * std::log10(0.5), 0.01);
    // Both channels: mean square of (0.5 and 0.25 amplitude sines) = (0.125 + 0.03125) / 2.
    EXPECT_NEAR(m.loudestRmsDb, 10.0 * std::log10((0.125 + 0.03125) / 2.0), 0.05);
}

}  // namespace
}  // namespace tolvane::analyse
