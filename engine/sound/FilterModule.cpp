#include "engine/sound/FilterModule.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "engine/framework/BlockChecks.h"
#include "engine/sound/LookupTables.h"

namespace tolvane {
namespace {

bool sameBits(float a, float b) {
    std::uint32_t x;
    std::uint32_t y;
    std::memcpy(&x, &a, sizeof x);
    std::memcpy(&y, &b, sizeof y);
    return x == y;
}

}  // namespace

FilterModule::FilterModule(ModuleGraph& graph, int coefficientCount, bool usesResonance)
    : DspModule(graph, OutputKind::Block, kInputCount),
      coefficientCount_(std::clamp(coefficientCount, 1, kMaxCoefficients)),
      usesResonance_(usesResonance) {}

float FilterModule::prewarp(float c) { return tangentTable().tanPi(0.5f * c); }

void FilterModule::clearState() {
    state_.fill(0.0f);
    previousCutoff_ = kUnsetCutoff;
}

void FilterModule::updateBlock(int tick) {
    if (tick == lastTick_) return;
    if (!follows(tick, lastTick_)) clearState();
    lastTick_ = tick;
    updateInputs(tick);
    compute();
}

void FilterModule::compute() {
    const float cutoff = inputValue(kCutoffInput);
    const float resonance = usesResonance_ ? inputValue(kResonanceInput) : 0.0f;
    const float level = inputValue(kLevelInput);
    const int count = coefficientCount_;

    float target[kMaxCoefficients];
    const bool unset = sameBits(previousCutoff_, kUnsetCutoff);
    if (unset || !sameBits(cutoff, previousCutoff_) || !sameBits(resonance, previousResonance_)) {
        design(std::clamp(cutoff, kMinCutoff, kMaxCutoff), std::clamp(resonance, 0.0f, 1.0f), target);
        if (unset) {
            std::copy(target, target + count, previous_.begin());
            previousLevel_ = level;
        }
    } else {
        std::copy(previous_.begin(), previous_.begin() + count, target);
    }

    const float perSample = 1.0f / static_cast<float>(blockSize_);
    Ramp ramp;
    for (int j = 0; j < count; ++j) {
        ramp.from[j] = previous_[static_cast<std::size_t>(j)];
        ramp.step[j] = (target[j] - ramp.from[j]) * perSample;
    }
    ramp.level = previousLevel_;
    ramp.levelStep = (level - previousLevel_) * perSample;
    ramp.knee = knee_;

    render(inputBlock(kAudioInput), block_.data(), blockSize_, ramp);
    // A state that left the finite numbers would stay there and silence the voice for good: the voice
    // is silent for this block instead, and the next one starts from rest on the new coefficients.
    if (!allFinite(state_.data(), kMaxStates)) {
        clearState();
        fillBlock(0.0f);
        return;
    }

    std::copy(target, target + count, previous_.begin());
    previousCutoff_ = cutoff;
    previousResonance_ = resonance;
    previousLevel_ = level;
}

}  // namespace tolvane
