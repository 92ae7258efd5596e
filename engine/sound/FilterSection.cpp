#include "engine/sound/FilterSection.h"

#include <algorithm>

#include "engine/sound/BandFilters.h"
#include "engine/sound/FilterModule.h"
#include "engine/sound/PoleFilters.h"
#include "engine/sound/Saturation.h"

namespace tolvane {
namespace {

template <typename T>
std::unique_ptr<PolyModule> makeFilter(ModuleGraph& graph) {
    return std::make_unique<Poly<T>>(graph, FilterModule::kInputCount, kRuleFromInputs);
}

}  // namespace

FilterSection::FilterSection(ModuleGraph& graph, PolyModule* audio, PolyModule* cutoff, PolyModule* resonance,
                             PolyModule* saturationLevel)
    : audio_(audio), output_(audio) {
    modules_ = {makeFilter<LowPass6>(graph),    makeFilter<LowPass12>(graph),    makeFilter<LowPass18>(graph),
                makeFilter<LowPass24>(graph),   makeFilter<HighPass6>(graph),    makeFilter<HighPass12>(graph),
                makeFilter<HighPass18>(graph),  makeFilter<HighPass24>(graph),   makeFilter<BandPass12>(graph),
                makeFilter<BandPass24>(graph),  makeFilter<BandReject12>(graph), makeFilter<BandReject24>(graph)};
    for (int k = 0; k < kKindCount; ++k) {
        PolyModule& m = *modules_[static_cast<std::size_t>(k)];
        bool firstOrder = k == static_cast<int>(FilterKind::LowPass6) || k == static_cast<int>(FilterKind::HighPass6);
        m.connectInput(audio, FilterModule::kAudioInput);
        m.connectInput(cutoff, FilterModule::kCutoffInput);
        if (!firstOrder) m.connectInput(resonance, FilterModule::kResonanceInput);
        m.connectInput(saturationLevel, FilterModule::kLevelInput);
    }
    for (int t = 0; t < kTypeCount; ++t)
        typeTable_[static_cast<std::size_t>(t)] = modules_[static_cast<std::size_t>(kindForType(t))].get();
    select();
    applyCurve();
}

FilterSection::~FilterSection() = default;

FilterKind FilterSection::kindForType(int index) {
    index = std::clamp(index, 0, kTypeCount - 1);
    return static_cast<FilterKind>(index < 8 ? index : 8 + (index - 8) / 2);
}

void FilterSection::setOn(bool on) {
    on_ = on;
    select();
    applyCurve();
}

void FilterSection::setType(int index) {
    type_ = std::clamp(index, 0, kTypeCount - 1);
    select();
    applyCurve();
}

void FilterSection::setCurve(int index) {
    curve_ = index;
    applyCurve();
}

bool FilterSection::connectOutputTo(PolyModule* consumer, int input) {
    if (!consumer) return false;
    for (int i = 0; i < consumerCount_; ++i) {
        const ConsumerLink& link = consumers_[static_cast<std::size_t>(i)];
        if (link.consumer == consumer && link.input == input) {
            consumer->connectInput(output_, input);
            return true;
        }
    }
    if (consumerCount_ == kMaxConsumers) return false;
    consumers_[static_cast<std::size_t>(consumerCount_++)] = ConsumerLink{consumer, input};
    consumer->connectInput(output_, input);
    return true;
}

void FilterSection::select() {
    PolyModule* selected = on_ ? typeTable_[static_cast<std::size_t>(type_)] : audio_;
    if (selected == output_) return;
    output_ = selected;
    for (int i = 0; i < consumerCount_; ++i) {
        const ConsumerLink& link = consumers_[static_cast<std::size_t>(i)];
        link.consumer->connectInput(output_, link.input);
    }
}

void FilterSection::applyCurve() {
    const float knee = kneeForCurve(curve_);
    PolyModule& m = *typeTable_[static_cast<std::size_t>(type_)];
    for (int i = 0; i < m.instancesAllocated(); ++i) static_cast<FilterModule*>(m.instanceAt(i))->setKnee(knee);
}

}  // namespace tolvane
