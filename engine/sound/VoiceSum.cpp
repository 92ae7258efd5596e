#include "engine/sound/VoiceSum.h"

#include <algorithm>

#include "engine/framework/BlockChecks.h"

namespace tolvane {
namespace {
constexpr int kGroup = 16;
}

void VoiceSum::setSource(int input, PolyModule* source) {
    if (input == kAmplitudeInput) amplitude_ = source;
    else if (input == kAudioInput) audio_ = source;
}

int VoiceSum::slotCount() const {
    int n = std::max(amplitude_ ? amplitude_->voices() : 0, audio_ ? audio_->voices() : 0);
    return std::min(n, kMaxVoices);
}

void VoiceSum::updateBlock(int tick) {
    if (tick == lastTick_) return;
    lastTick_ = tick;

    float* out = block_.data();
    const int n = blockSize_;
    std::fill(out, out + n, 0.0f);
    rendered_ = 0;
    steady_ = true;
    if (!amplitude_ || !audio_) return;

    // Slots beyond a lowered voice count are forgotten, so that they start from silence when they return.
    const int slots = slotCount();
    for (int i = slots; i < lastSlotCount_; ++i) {
        previous_[static_cast<std::size_t>(i)] = 0.0f;
        audible_[static_cast<std::size_t>(i)] = false;
    }
    lastSlotCount_ = slots;

    const float perSample = 1.0f / static_cast<float>(n);
    for (int i = 0; i < slots; ++i) {
        DspModule* gain = amplitude_->instance(i);
        gain->update(tick);
        const float a = std::max(0.0f, controlValue(gain));
        const bool audible = a >= kSilence;
        float& previous = previous_[static_cast<std::size_t>(i)];
        bool& wasAudible = audible_[static_cast<std::size_t>(i)];
        if (audible || wasAudible) {
            DspModule* voice = audio_->instance(i);
            voice->update(tick);
            const float* __restrict in = voice->block();
            float* __restrict sum = out;
            const float from = previous;
            const float step = (a - from) * perSample;
            for (int g = 0; g < n; g += kGroup)
                for (int j = g; j < g + kGroup; ++j) sum[j] += (from + static_cast<float>(j + 1) * step) * in[j];
            rampStart_[static_cast<std::size_t>(i)] = from;
            ++rendered_;
            steady_ = false;
        }
        renderedNow_[static_cast<std::size_t>(i)] = audible || wasAudible;
        previous = a;
        wasAudible = audible;
    }
    if (!steady_ && !blockInRange(out, n)) dropRunawayVoices(slots);
}

// Rare: a voice's block holds a non-finite or runaway value (its own units reset themselves, but a
// value may also come from further up). The sum is rebuilt from the sound voices; a runaway voice is
// silent for this block and fades in from 0 in the next one.
void VoiceSum::dropRunawayVoices(int slots) {
    float* out = block_.data();
    const int n = blockSize_;
    const float perSample = 1.0f / static_cast<float>(n);
    std::fill(out, out + n, 0.0f);
    for (int i = 0; i < slots; ++i) {
        const auto slot = static_cast<std::size_t>(i);
        if (!renderedNow_[slot]) continue;
        const float* in = audio_->instance(i)->block();
        if (!blockInRange(in, n)) {
            previous_[slot] = 0.0f;
            continue;
        }
        const float from = rampStart_[slot];
        const float step = (previous_[slot] - from) * perSample;
        for (int j = 0; j < n; ++j) out[j] += (from + static_cast<float>(j + 1) * step) * in[j];
    }
}

void VoiceSum::resetInputs(int tick) {
    const int slots = slotCount();
    for (int i = 0; i < slots; ++i) {
        if (amplitude_) amplitude_->instance(i)->reset(tick);
        if (audio_) audio_->instance(i)->reset(tick);
    }
}

void VoiceSum::onReset() {
    previous_.fill(0.0f);
    audible_.fill(false);
    renderedNow_.fill(false);
    rendered_ = 0;
}

void VoiceSumContainer::wireInput(int k) {
    PolyModule* source = inputSource(k);
    forEach([&](VoiceSum& s) { s.setSource(k, source); });
}

}  // namespace tolvane
