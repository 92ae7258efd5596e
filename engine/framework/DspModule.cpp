#include "engine/framework/DspModule.h"

#include <algorithm>

#include "engine/framework/ModuleGraph.h"

namespace tolvane {

DspModule::DspModule(ModuleGraph& graph, OutputKind kind, int numInputs)
    : owner_(&graph),
      sampleRate_(graph.sampleRate()),
      blockRate_(graph.sampleRate() / static_cast<float>(graph.blockSize())),
      blockSize_(graph.blockSize()),
      kind_(kind),
      numInputs_(std::min(numInputs, kMaxInputs)) {
    if (kind_ == OutputKind::Block) block_.assign(static_cast<std::size_t>(blockSize_), 0.0f);
    graph.link(this);
}

DspModule::~DspModule() { owner_->unlink(this); }

void DspModule::reset(int tick) {
    if (tick == lastTick_) return;
    lastTick_ = tick;
    clearOutput();
    resetInputs(tick);
    onReset();
}

void DspModule::updateBlock(int tick) {
    if (tick == lastTick_) return;
    lastTick_ = tick;
    updateInputs(tick);
    compute();
}

void DspModule::setSampleRate(float rate) {
    sampleRate_ = rate;
    blockRate_ = rate / static_cast<float>(blockSize_);
    sampleRateChanged();
}

void DspModule::setBlockSize(int size) {
    if (kind_ == OutputKind::Block) block_.assign(static_cast<std::size_t>(size), 0.0f);
    blockSize_ = size;
    blockRate_ = sampleRate_ / static_cast<float>(size);
    blockSizeChanged();
}

void DspModule::clearOutput() {
    scalar_ = 0.0f;
    std::fill(block_.begin(), block_.end(), 0.0f);
    quad_.fill(0.0f);
}

void DspModule::resetInputs(int tick) {
    for (int k = 0; k < numInputs_; ++k)
        if (DspModule* in = inputs_[static_cast<std::size_t>(k)]) in->reset(tick);
}

void DspModule::updateInputs(int tick) {
    for (int k = 0; k < numInputs_; ++k)
        if (DspModule* in = inputs_[static_cast<std::size_t>(k)]) in->update(tick);
}

}  // namespace tolvane
