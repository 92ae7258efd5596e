// A block source for effect tests: plays prepared samples one block per update, silence after them.
#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

#include "engine/framework/DspModule.h"

namespace tolvane::testing {

class ScriptedSignal : public DspModule {
public:
    explicit ScriptedSignal(ModuleGraph& graph) : DspModule(graph, OutputKind::Block, 0) {}
    void compute() override {
        ++renders;
        for (int k = 0; k < blockSize_; ++k, ++position)
            block_[static_cast<std::size_t>(k)] = position < samples.size() ? samples[position] : 0.0f;
    }

    std::vector<float> samples;
    std::size_t position = 0;
    int renders = 0;
};

inline std::vector<float> sine(double hz, double sampleRate, float amplitude, int length) {
    std::vector<float> s(static_cast<std::size_t>(length));
    for (int n = 0; n < length; ++n)
        s[static_cast<std::size_t>(n)] = amplitude * static_cast<float>(std::sin(2.0 * 3.14159265358979323846 * hz * n / sampleRate));
    return s;
}

}  // namespace tolvane::testing
