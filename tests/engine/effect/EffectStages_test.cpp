#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "engine/effect/CutFilter.h"
#include "engine/effect/DelayLine.h"
#include "engine/effect/SignalStages.h"
#include "engine/framework/ModuleGraph.h"
#include "engine/framework/ValueSource.h"
#include "tests/engine/ScriptedSignal.h"

namespace tolvane {
namespace {

using testing::ScriptedSignal;
constexpr double kPi = 3.14159265358979323846;

// A delay line fed by a scripted signal, its time from a value source.
struct DelayRig {
    explicit DelayRig(float sampleRate) {
        graph.setSampleRate(sampleRate);
        line.setInput(DelayLine::kSignal, &signal);
        line.setInput(DelayLine::kSeconds, &seconds);
    }
    // Renders `blocks` blocks at consecutive ticks (or after a gap) and appends the output.
    void render(int blocks, int tickStep = 1) {
        for (int b = 0; b < blocks; ++b) {
            tick += (b == 0 ? tickStep : 1);
            line.update(tick);
            out.insert(out.end(), line.block(), line.block() + line.blockSize());
        }
    }
    void setDelaySamples(double d) { seconds.set(static_cast<float>(d / graph.sampleRate())); }
    double delaySamples() const { return static_cast<double>(seconds.value()) * graph.sampleRate(); }

    ModuleGraph graph;
    ScriptedSignal signal{graph};
    ValueSource seconds{graph};
    DelayLine line{graph};
    std::vector<float> out;
    int tick = 0;
};

std::vector<float> ramp(float slope, int length) {
    std::vector<float> r(static_cast<std::size_t>(length));
    for (int n = 0; n < length; ++n) r[static_cast<std::size_t>(n)] = slope * static_cast<float>(n);
    return r;
}

// The quadratic B-spline reproduces straight lines: a ramp comes out as the same ramp D - 0.5 samples
// later, for fractional delays, the 3-sample minimum, and across many trips around the ring.
TEST(DelayLine, ReadsConstantsAndRampsExactly) {
    const float slope = 0.001f;
    for (double wanted : {100.3, 64.0, 0.0, 1e9}) {
        DelayRig rig(1000.0f);  // a small ring: 5000 samples wrap it twice
        rig.signal.samples = ramp(slope, 5120);
        rig.setDelaySamples(wanted);
        rig.render(80);
        const double d = std::clamp(rig.delaySamples(), 3.0, 2000.0);
        for (int n = static_cast<int>(d) + 2; n < 5120; ++n)
            ASSERT_NEAR(rig.out[static_cast<std::size_t>(n)], slope * (n - d + 0.5), 1e-5) << "delay " << wanted << " sample " << n;
    }

    DelayRig constant(48000.0f);
    constant.signal.samples.assign(4096, 0.25f);
    constant.setDelaySamples(333.7);
    constant.render(64);
    for (int n = 336; n < 4096; ++n) ASSERT_FLOAT_EQ(constant.out[static_cast<std::size_t>(n)], 0.25f) << n;
}

TEST(DelayLine, EmptiesAfterASkippedBlockButNotOtherwise) {
    for (int step : {1, 2}) {
        DelayRig rig(48000.0f);
        rig.signal.samples.assign(640, 1.0f);
        rig.setDelaySamples(100.0);
        rig.render(10);
        rig.signal.samples.clear();  // silence from here on
        rig.render(1, step);
        float loudest = *std::max_element(rig.out.end() - 64, rig.out.end());
        if (step == 1)
            EXPECT_NEAR(loudest, 1.0f, 1e-6) << "the line still holds the signal of 100 samples ago";
        else
            EXPECT_EQ(loudest, 0.0f) << "a tick gap empties the line";
    }
}

// A single overdrive stage fed with one value per block.
float drive(float driveFactor, float x) {
    ModuleGraph graph;
    ScriptedSignal signal(graph);
    ValueSource factor(graph, driveFactor);
    Overdrive od(graph);
    od.setInput(Overdrive::kSignal, &signal);
    od.setInput(Overdrive::kDrive, &factor);
    signal.samples.assign(64, x);
    od.update(1);
    return od.block()[0];
}

TEST(Overdrive, UnityForSmallSignalsBelowDriveOneAndCeilingOneAbove) {
    // drive 0.5: slope 1 at zero, ceiling 2: y = x / (1 + |x|/2)
    EXPECT_NEAR(drive(0.5f, 2.0f), 2.0f / 2.0f, 1e-6f);
    EXPECT_NEAR(drive(0.5f, -1000.0f), -1000.0f / 501.0f, 1e-5f);
    // drive 4: small signals gain 4, large ones approach +-1
    EXPECT_NEAR(drive(4.0f, 1e-6f), 4e-6f, 1e-10f);
    EXPECT_NEAR(drive(4.0f, -1000.0f), -4000.0f / 4001.0f, 1e-6f);
    EXPECT_NEAR(drive(4.0f, 0.25f), 0.5f, 1e-6f);
    // drives below 0.01 act as 0.01: y = x / (1 + |x|/100)
    EXPECT_NEAR(drive(0.0f, 100.0f), 50.0f, 1e-4f);
    EXPECT_NEAR(drive(0.001f, 1.0f), 1.0f / 1.01f, 1e-6f);
}

// Gain of the high-cut/low-cut pair for a steady sine, measured on the rendered output.
double measuredGain(float highCut, float lowCut, double hz) {
    const float rate = 48000.0f;
    ModuleGraph graph;
    graph.setSampleRate(rate);
    ScriptedSignal signal(graph);
    ValueSource high(graph, highCut), low(graph, lowCut);
    CutCoefficients coefficients(graph);
    CutFilter filter(graph);
    coefficients.setInput(CutCoefficients::kHighCut, &high);
    coefficients.setInput(CutCoefficients::kLowCut, &low);
    filter.setInput(CutFilter::kSignal, &signal);
    filter.setInput(CutFilter::kCoefficients, &coefficients);

    // A silent first block: a new filter fades its coefficients in from zero, and a signal during that
    // fade would leave the low cut with a slowly decaying offset.
    const int blocks = 376;
    signal.samples.assign(64, 0.0f);
    std::vector<float> s = testing::sine(hz / rate, 0.5, (blocks - 1) * 64);
    signal.samples.insert(signal.samples.end(), s.begin(), s.end());
    std::vector<float> y;
    for (int t = 1; t <= blocks; ++t) {
        filter.update(t);
        y.insert(y.end(), filter.block(), filter.block() + 64);
    }
    double in = 0.0, out = 0.0;  // over the last quarter second, a whole number of periods of every test tone
    for (std::size_t n = y.size() - 12000; n < y.size(); ++n) {
        in += double(signal.samples[n]) * signal.samples[n];
        out += double(y[n]) * y[n];
    }
    return std::sqrt(out / in);
}

// Bilinear first-order sections whose prewarp constant is t: the low-pass gain is
// 1 / sqrt(1 + (tan(pi f / sr) / t)^2), the high-pass gain 1 / sqrt(1 + (t / tan(pi f / sr))^2).
// The corner frequency F sets t = tan(pi min(0.49, F / sr) / 2): the -3 dB point lies at half of F.
TEST(CutFilter, CornersAndResponseFollowTheBilinearDesign) {
    struct Case { float high, low; double hz; };
    const double rate = 48000.0;
    // 8000 at 4000 Hz and 400 at 200 Hz are the -3 dB points.
    for (Case c : {Case{8000, 1, 4000}, Case{8000, 1, 1000}, Case{8000, 1, 12000}, Case{22000, 400, 200},
                   Case{22000, 400, 50}, Case{30000, 20, 0.49 * 48000 / 2}, Case{22000, 0.1f, 1000}}) {
        auto prewarp = [&](double hz) { return std::tan(kPi * std::min(0.49, std::max(1.0, hz) / rate) / 2.0); };
        const double w = std::tan(kPi * c.hz / rate);
        const double lowPass = 1.0 / std::sqrt(1.0 + std::pow(w / prewarp(c.high), 2));
        const double highPass = 1.0 / std::sqrt(1.0 + std::pow(prewarp(c.low) / w, 2));
        EXPECT_NEAR(measuredGain(c.high, c.low, c.hz), lowPass * highPass, 3e-3)
            << "high " << c.high << " low " << c.low << " at " << c.hz << " Hz";
    }
}

}  // namespace
}  // namespace tolvane
