#include "engine/framework/PolyModule.h"

#include <algorithm>

namespace tolvane {

PolyModule::PolyModule(ModuleGraph& graph, int numInputs, PolyRule rule, Factory factory)
    : graph_(&graph),
      inputs_(static_cast<std::size_t>(std::clamp(numInputs, 0, DspModule::kMaxInputs)), nullptr),
      consumers_(graph.consumerPool()),
      rule_(rule),
      factory_(std::move(factory)) {
    if (rule_ == kRuleGraphVoices) voices_ = std::max(1, graph.voiceCount());
    graph.link(this);
}

PolyModule::~PolyModule() {
    // Leave no dangling pointers: disconnect from every source, and clear the inputs of every consumer.
    for (std::size_t k = 0; k < inputs_.size(); ++k)
        if (inputs_[k]) inputs_[k]->removeConsumer(this, static_cast<int>(k));
    while (!consumers_.empty()) {
        ConsumerLink link = consumers_.front()->payload;
        consumers_.erase(consumers_.front());
        link.consumer->inputs_[static_cast<std::size_t>(link.input)] = nullptr;
        link.consumer->wireInput(link.input);
    }
    graph_->unlink(this);
}

void PolyModule::connectInput(PolyModule* source, int k) {
    if (k < 0 || k >= numInputs()) return;
    PolyModule*& slot = inputs_[static_cast<std::size_t>(k)];
    if (slot) slot->removeConsumer(this, k);
    slot = source;
    if (source) source->consumers_.pushBack(ConsumerLink{this, k});
    deriveCounts(k);
}

void PolyModule::removeConsumer(PolyModule* consumer, int k) {
    auto* node = consumers_.findFromFront(
        [&](const ConsumerLink& l) { return l.consumer == consumer && l.input == k; });
    if (node) consumers_.erase(node);
}

void PolyModule::setVoices(int n) {
    if (rule_ != kRuleGraphVoices && rule_ != kRuleOwnerVoices) return;
    n = std::max(1, n);
    if (n == voices_) return;
    voices_ = n;
    propagate();
}

void PolyModule::deriveCounts(int k) {
    int voices = voices_;
    if (rule_ == kRuleFromInputs) {
        voices = 1;
        for (PolyModule* in : inputs_)
            if (in) voices = std::max(voices, in->voices_);
    }
    if (voices == voices_) {
        wireInput(k);
        return;
    }
    voices_ = voices;
    propagate();
}

void PolyModule::propagate() {
    rebuildInstances();
    for (int i = 0; i < numInputs(); ++i) wireInput(i);
    for (auto* n = consumers_.front(); n; n = n->next) n->payload.consumer->deriveCounts(n->payload.input);
}

void PolyModule::rebuildInstances() {
    std::size_t wanted = static_cast<std::size_t>(std::max(voices_, kPrebuiltVoices));
    if (!built_) {
        instances_.reserve(wanted);
        built_ = true;
    }
    while (instances_.size() < wanted) {
        instances_.push_back(factory_(*graph_));
        newInstance(*instances_.back());
    }
}

void PolyModule::wireInput(int k) {
    PolyModule* source = inputs_[static_cast<std::size_t>(k)];
    for (int v = 0; v < voices_; ++v) {
        DspModule* target = instance(v);
        if (k < target->numInputs()) target->setInput(k, source ? source->instance(v) : nullptr);
    }
}

void PolyModule::resetInstances(int tick) {
    for (int i = 0; i < instancesInUse(); ++i) instances_[static_cast<std::size_t>(i)]->reset(tick);
}

void PolyModule::updateInstances(int tick) {
    for (int i = 0; i < instancesInUse(); ++i) instances_[static_cast<std::size_t>(i)]->update(tick);
}

}  // namespace tolvane
