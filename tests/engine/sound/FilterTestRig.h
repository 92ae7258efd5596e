// A small graph for driving the filter section without the rest of the engine.
#pragma once

#include <cmath>
#include <complex>
#include <vector>

#include "engine/framework/ModuleGraph.h"
#include "engine/framework/PolyModule.h"
#include "engine/framework/ValueSource.h"
#include "engine/sound/FilterModule.h"
#include "engine/sound/FilterSection.h"
#include "tests/engine/ScriptedSignal.h"

namespace tolvane::test {

using testing::ScriptedSignal;
constexpr double kPi = 3.14159265358979323846;

// A one-voice filter section fed by value sources. The default level 4 with the middle knee keeps
// every signal below 2 in the linear part of the limiter.
struct FilterRig {
    ModuleGraph graph;
    Poly<ScriptedSignal> audio{graph, 0, kRuleFromInputs};
    Poly<ValueSource> cutoff{graph, 0, kRuleFromInputs, 0.0625f};
    Poly<ValueSource> resonance{graph, 0, kRuleFromInputs, 0.0f};
    Poly<ValueSource> level{graph, 0, kRuleFromInputs, 4.0f};
    FilterSection section{graph, &audio, &cutoff, &resonance, &level};
    int tick = 0;

    ScriptedSignal& signal() { return audio.at(0); }
    FilterModule& filter(FilterKind kind) { return static_cast<FilterModule&>(*section.module(kind).instance(0)); }
    void set(float c, float r, float L) {
        cutoff.at(0).set(c);
        resonance.at(0).set(r);
        level.at(0).set(L);
    }
    // Renders the next block of one filter module.
    const float* render(FilterKind kind) {
        filter(kind).update(++tick);
        return filter(kind).block();
    }
    std::vector<float> renderSamples(FilterKind kind, int blocks) {
        std::vector<float> out;
        for (int b = 0; b < blocks; ++b) {
            const float* y = render(kind);
            out.insert(out.end(), y, y + graph.blockSize());
        }
        return out;
    }
    // Steady-state gain at f cycles per sample: drive with a sine of amplitude a, let it settle, and take
    // the amplitude of the output component at f over a window of whole periods (f = m / 8192).
    double gain(FilterKind kind, double f, double a = 0.5) {
        constexpr int kSettleBlocks = 256;
        constexpr int kWindowBlocks = 128;
        signal().play(testing::sine(f, a, (kSettleBlocks + kWindowBlocks) * graph.blockSize()));
        renderSamples(kind, kSettleBlocks);
        std::vector<float> y = renderSamples(kind, kWindowBlocks);
        double re = 0.0, im = 0.0;
        for (std::size_t n = 0; n < y.size(); ++n) {
            re += y[n] * std::cos(2.0 * kPi * f * static_cast<double>(n));
            im += y[n] * std::sin(2.0 * kPi * f * static_cast<double>(n));
        }
        return 2.0 * std::hypot(re, im) / static_cast<double>(y.size()) / a;
    }
};

}  // namespace tolvane::test
