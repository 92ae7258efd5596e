#include "engine/sound/RingModulator.h"

#include "engine/sound/WaveGenerator.h"

namespace tolvane {

void RingModulator::compute() {
    const float* a = inputBlock(kOsc1);
    const float* b = inputBlock(kOsc2);
    float* out = block();
    forEachSample(blockSize_, [&](int n) { out[n] = a[n] * b[n]; });
}

}  // namespace tolvane
