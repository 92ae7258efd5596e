// A block source for engine tests: plays prepared samples one block per update, then holds a level.
// Counts how often it was rendered.
#pragma once

#include <cmath>
#include <cstddef>
#include <utility>
#include <vector>

#include "engine/framework/DspModule.h"

namespace tolvane::testing {

class ScriptedSignal : public DspModule {
public:
    explicit ScriptedSignal(ModuleGraph& graph, float level = 0.0f)
        : DspModule(graph, OutputKind::Block, 0), level(level) {}
    void compute() override {
        ++renders;
        for (int k = 0; k < blockSize_; ++k, ++position)
            block_[static_cast<std::size_t>(k)] = position < samples.size() ? samples[position] : level;
    }
    // These samples from the next block on, then `after` for good.
    void play(std::vector<float> s, float after = 0.0f) {
        samples = std::move(s);
        position = 0;
        level = after;
    }

    std::vector<float> samples;
    std::size_t position = 0;
    float level;
    int renders = 0;
};

// A sine of `cyclesPerSample`, computed in double precision.
inline std::vector<float> sine(double cyclesPerSample, double amplitude, int length) {
    std::vector<float> s(static_cast<std::size_t>(length));
    for (int n = 0; n < length; ++n)
        s[static_cast<std::size_t>(n)] = static_cast<float>(amplitude * std::sin(2.0 * 3.14159265358979323846 * cyclesPerSample * n));
    return s;
}

}  // namespace tolvane::testing
