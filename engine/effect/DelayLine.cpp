#include "engine/effect/DelayLine.h"

#include <algorithm>
#include <cmath>

#include "engine/effect/EffectConstants.h"

namespace tolvane {
namespace {

std::size_t bufferLengthFor(double sampleRate, int blockSize) {
    const double blocks = std::ceil(effect::kMaxDelaySeconds * sampleRate / blockSize) + 2.0;
    return static_cast<std::size_t>(blocks) * static_cast<std::size_t>(blockSize);
}

}  // namespace

DelayLine::DelayLine(ModuleGraph& graph) : DspModule(graph, OutputKind::Block, 2) {
    buffer_.reserve(bufferLengthFor(std::max(sampleRate_, effect::kPreallocatedSampleRate), blockSize_));
    resize();
}

void DelayLine::resize() {
    buffer_.resize(bufferLengthFor(sampleRate_, blockSize_));
    maxDelay_ = effect::kMaxDelaySeconds * sampleRate_;
    dirty_ = true;
    clear();
}

void DelayLine::clear() {
    if (dirty_) std::fill(buffer_.begin(), buffer_.end(), 0.0f);
    dirty_ = false;
    previousDelay_ = -1.0;
}

void DelayLine::updateBlock(int tick) {
    if (tick == lastTick_) return;
    const bool gap = !follows(tick, lastTick_);
    lastTick_ = tick;
    if (gap) clear();
    updateInputs(tick);
    compute();
}

void DelayLine::compute() {
    const int n = bufferLength();
    const int b = blockSize_;
    const double ring = static_cast<double>(n - b);
    const double delay = std::clamp(static_cast<double>(inputValue(kSeconds)) * sampleRate_,
                                    effect::kMinDelaySamples, maxDelay_);
    float* buf = buffer_.data();

    if (previousDelay_ < 0.0) {
        previousDelay_ = delay;
        writePosition_ = b;
        readPosition_ = b - delay;
        if (readPosition_ < 0.0) readPosition_ += ring;
    }

    const float* in = inputBlock(kSignal);
    std::copy(in, in + b, buf + writePosition_);
    writePosition_ += b;
    if (writePosition_ == n) {
        std::copy(in, in + b, buf);
        writePosition_ = b;
    }
    dirty_ = true;

    const double rate = std::max(0.0, (previousDelay_ - delay + b) / b);
    float* out = block_.data();
    for (int k = 0; k < b; ++k) {
        double p = readPosition_ + k * rate;
        if (p >= ring) p -= ring;
        const int i = static_cast<int>(p);
        const float f = static_cast<float>(p - i);
        const float w0 = 0.5f * (1.0f - f) * (1.0f - f);
        const float w2 = 0.5f * f * f;
        out[k] = w0 * buf[i] + (1.0f - w0 - w2) * buf[i + 1] + w2 * buf[i + 2];
    }

    readPosition_ = writePosition_ - delay;
    if (readPosition_ < 0.0) readPosition_ += ring;
    previousDelay_ = delay;
}

}  // namespace tolvane
