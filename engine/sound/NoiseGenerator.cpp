#include "engine/sound/NoiseGenerator.h"

#include <algorithm>

#include "engine/framework/ModuleGraph.h"
#include "engine/sound/LookupTables.h"
#include "engine/sound/WaveGenerator.h"

namespace tolvane {

void NoiseGenerator::updateBlock(int tick) {
    if (tick == lastTick_) return;
    if (!follows(tick, lastTick_)) forget();
    lastTick_ = tick;
    updateInputs(tick);
    compute();
}

void NoiseGenerator::compute() {
    float c = std::min(kMaxCutoff, std::max(0.0f, inputValue(kColour) / sampleRate_));
    float b = previousB_;
    float a = previousA_;
    if (c != previousCutoff_) {
        float t = tangentTable().tanPi(0.5f * c);
        b = t / (t + 1.0f);
        a = 1.0f - 2.0f * b;
        if (previousCutoff_ == kUnset) {
            previousB_ = b;
            previousA_ = a;
        }
        previousCutoff_ = c;
    }
    const float scale = 1.0f / static_cast<float>(blockSize_);
    const float b0 = previousB_, bStep = (b - previousB_) * scale;
    const float a0 = previousA_, aStep = (a - previousA_) * scale;

    // The shared random state is held in a register for the block and written back at its end.
    UniformRandom& shared = owner().random();
    UniformRandom random = shared;
    float s = state_;
    float* out = block();
    forEachSample(blockSize_, [&](int n) {
        float k = static_cast<float>(n + 1);
        float bk = b0 + bStep * k;
        float ak = a0 + aStep * k;
        float w = random.centred();
        float y = bk * w + s;
        s = bk * w + ak * y;
        out[n] = y;
    });
    shared.setState(random.state());
    state_ = s;
    previousB_ = b;
    previousA_ = a;
}

}  // namespace tolvane
