#include "engine/effect/CutFilter.h"

#include <algorithm>
#include <cmath>

#include "engine/effect/EffectConstants.h"
#include "engine/sound/LookupTables.h"

namespace tolvane {
namespace {

// tan(pi y / 2) for the normalised frequency y = F / sample rate, limited to 0.49.
float prewarp(float hz, float sampleRate) {
    const float y = std::min(effect::kMaxCutFraction, hz / sampleRate);
    return tangentTable().tanPi(0.5f * y);
}

}  // namespace

void CutCoefficients::compute() {
    const float high = std::max(effect::kMinCutHz, inputValue(kHighCut));
    const float low = std::max(effect::kMinCutHz, inputValue(kLowCut));
    if (high == previousHigh_ && low == previousLow_) {
        quad_[kChanged] = 0.0f;
        return;
    }
    previousHigh_ = high;
    previousLow_ = low;
    const float th = prewarp(high, sampleRate_);
    const float tl = prewarp(low, sampleRate_);
    const float a = th / (1.0f + th);
    const float bl = 1.0f / (1.0f + tl);
    quad_[kGain] = a * bl;
    quad_[kLowPassPole] = 1.0f - 2.0f * a;
    quad_[kHighPassPole] = 2.0f * bl - 1.0f;
    quad_[kChanged] = 1.0f;
}

void CutFilter::clear() {
    x1_ = u1_ = y1_ = 0.0f;
    std::fill(block_.begin(), block_.end(), 0.0f);
}

void CutFilter::compute() {
    const float* c = input(kCoefficients)->quad();
    float gain = gain_, lowPassPole = lowPassPole_, highPassPole = highPassPole_;
    float gainStep = 0.0f, lowPassStep = 0.0f, highPassStep = 0.0f;
    if (c[CutCoefficients::kChanged] != 0.0f) {
        const float perSample = 1.0f / static_cast<float>(blockSize_);
        gainStep = (c[CutCoefficients::kGain] - gain) * perSample;
        lowPassStep = (c[CutCoefficients::kLowPassPole] - lowPassPole) * perSample;
        highPassStep = (c[CutCoefficients::kHighPassPole] - highPassPole) * perSample;
        gain_ = c[CutCoefficients::kGain];
        lowPassPole_ = c[CutCoefficients::kLowPassPole];
        highPassPole_ = c[CutCoefficients::kHighPassPole];
    }

    const float* in = inputBlock(kSignal);
    float* out = block_.data();
    float x1 = x1_, u1 = u1_, y1 = y1_;
    for (int k = 0; k < blockSize_; ++k) {
        const float x = in[k];
        const float u = gain * (x + x1) + lowPassPole * u1;
        const float y = u - u1 + highPassPole * y1;
        out[k] = y;
        x1 = x;
        u1 = u;
        y1 = y;
        gain += gainStep;
        lowPassPole += lowPassStep;
        highPassPole += highPassStep;
    }
    x1_ = x1;
    u1_ = u1;
    y1_ = y1;
    // Whatever goes wrong in the loop before this filter passes through it and shows in its states.
    if (!std::isfinite(x1) || !std::isfinite(u1) || !std::isfinite(y1)) {
        clear();
        runaway_ = true;
    }
}

}  // namespace tolvane
