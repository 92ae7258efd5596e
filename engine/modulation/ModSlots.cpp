#include "engine/modulation/ModSlots.h"

#include "engine/modulation/ValueContainers.h"
#include "engine/voice/VoiceAllocator.h"

namespace tolvane {

namespace {
const VoiceAllocator& allocatorOf(const DspModule& m) { return static_cast<const VoiceAllocator&>(m.owner()); }
}  // namespace

void ControllerSource::compute() {
    scalar_ = static_cast<float>(allocatorOf(*this).controllers()[controller_]) / 127.0f;
}

void PitchBendSource::compute() { scalar_ = static_cast<float>(allocatorOf(*this).pitchBend()) * (1.0f / 8192.0f); }

void ChannelPressureSource::compute() {
    scalar_ = static_cast<float>(allocatorOf(*this).channelPressure()) / 127.0f;
}

void ModSlotUnit::compute() {
    float s = inputValue(kSource);
    float q = inputValue(kSensSource);
    float d = inputValue(kDepth);
    float k = inputValue(kSens);
    scalar_ = unipolar_ ? s * d * ((q - 0.5f) * k + 0.5f) : s * d * (q * k + 1.0f);
}

// One slot: its unit, its smoothed depth and sensitivity, and a controller source (raw and smoothed)
// for each of its two roles, so that two slots can read different controllers.
struct ModSlots::Slot {
    Slot(ModuleGraph& graph, PolyModule& coefficient, PolyModule& zero)
        : sourceController(graph, 0, kRuleFromInputs),
          sourceSmoothed(graph, 2, kRuleFromInputs),
          sensController(graph, 0, kRuleFromInputs),
          sensSmoothed(graph, 2, kRuleFromInputs),
          depth(graph, 0, kRuleFromInputs, 0.0f),
          sens(graph, 0, kRuleFromInputs, 0.0f),
          unit(graph, ModSlotUnit::kNumInputs, kRuleFromInputs) {
        sourceSmoothed.connectInput(&sourceController, 0);
        sourceSmoothed.connectInput(&coefficient, 1);
        sensSmoothed.connectInput(&sensController, 0);
        sensSmoothed.connectInput(&coefficient, 1);
        unit.connectInput(&zero, ModSlotUnit::kSource);
        unit.connectInput(&zero, ModSlotUnit::kSensSource);
        unit.connectInput(&depth, ModSlotUnit::kDepth);
        unit.connectInput(&sens, ModSlotUnit::kSens);
    }

    Poly<ControllerSource> sourceController;
    Poly<Smoother> sourceSmoothed;
    Poly<ControllerSource> sensController;
    Poly<Smoother> sensSmoothed;
    Poly<SmoothedValue> depth;
    Poly<SmoothedValue> sens;
    Poly<ModSlotUnit> unit;
    int source = kNone;
    int sensSource = kNone;
    int destination = 0;
};

int ModSlots::controllerOf(int index) {
    if (index == 64 || index == 120 || index == 123) return index + 1;
    return index;
}

ModSlots::ModSlots(ModuleGraph& graph)
    : zero_(graph, 0, kRuleFromInputs, 0.0f),
      one_(graph, 0, kRuleFromInputs, 1.0f),
      coefficient_(graph, 0, kRuleFromInputs, SmoothCoefficient::kDefaultTime),
      key_(graph),
      velocity_(graph),
      bend_(graph, 0, kRuleFromInputs),
      bendSmoothed_(graph, 2, kRuleFromInputs),
      channelPressure_(graph, 0, kRuleFromInputs),
      channelPressureSmoothed_(graph, 2, kRuleFromInputs),
      polyPressure_(graph),
      polyPressureSmoothed_(graph, 2, kRuleFromInputs) {
    for (auto& sum : sums_) sum = std::make_unique<SumContainer>(graph);
    bendSmoothed_.connectInput(&bend_, 0);
    bendSmoothed_.connectInput(&coefficient_, 1);
    channelPressureSmoothed_.connectInput(&channelPressure_, 0);
    channelPressureSmoothed_.connectInput(&coefficient_, 1);
    polyPressureSmoothed_.connectInput(&polyPressure_, 0);
    polyPressureSmoothed_.connectInput(&coefficient_, 1);
    for (auto& slot : slots_) slot = std::make_unique<Slot>(graph, coefficient_, zero_);
    modulators_.fill(&zero_);
}

ModSlots::~ModSlots() = default;

void ModSlots::setModulators(PolyModule* env1, PolyModule* env2, PolyModule* lfo1, PolyModule* lfo2) {
    modulators_ = {env1, env2, lfo1, lfo2};
    for (auto& m : modulators_)
        if (!m) m = &zero_;
    for (int s = 0; s < kSlots; ++s) {
        Slot& slot = *slots_[static_cast<std::size_t>(s)];
        slot.unit.connectInput(select(slot, false, slot.source), ModSlotUnit::kSource);
        slot.unit.connectInput(select(slot, true, slot.sensSource), ModSlotUnit::kSensSource);
    }
}

PolyModule* ModSlots::select(Slot& slot, bool sensRole, int index) {
    if (index >= kFirstController && index <= kLastController) {
        int c = controllerOf(index);
        Poly<ControllerSource>& controller = sensRole ? slot.sensController : slot.sourceController;
        controller.forEach([c](ControllerSource& u) { u.setController(c); });
        return sensRole ? &slot.sensSmoothed : &slot.sourceSmoothed;
    }
    switch (index) {
        case kEnv1: return modulators_[0];
        case kEnv2: return modulators_[1];
        case kLfo1: return modulators_[2];
        case kLfo2: return modulators_[3];
        case kKey: return &key_;
        case kVelocity: return &velocity_;
        case kPitchBend: return &bendSmoothed_;
        case kChannelAftertouch: return &channelPressureSmoothed_;
        case kPolyAftertouch: return &polyPressureSmoothed_;
        case kConstant: return sensRole ? static_cast<PolyModule*>(&zero_) : &one_;
        default: return &zero_;
    }
}

void ModSlots::connectOutput(int s, bool connected) {
    Slot& slot = *slots_[static_cast<std::size_t>(s)];
    if (slot.destination < 1 || slot.destination > kDestinations) return;
    SumContainer& sum = destination(slot.destination);
    PolyModule* wanted = connected ? &slot.unit : nullptr;
    if (sum.inputSource(s) != wanted) sum.connectInput(wanted, s);
}

void ModSlots::setSource(int s, int index) {
    if (s < 0 || s >= kSlots) return;
    if (index < 0 || index >= kSourceCount) index = kNone;
    Slot& slot = *slots_[static_cast<std::size_t>(s)];
    slot.source = index;
    PolyModule* source = select(slot, false, index);
    if (slot.unit.inputSource(ModSlotUnit::kSource) != source) slot.unit.connectInput(source, ModSlotUnit::kSource);
    connectOutput(s, index != kNone);
}

void ModSlots::setSensSource(int s, int index) {
    if (s < 0 || s >= kSlots) return;
    if (index < 0 || index >= kSensSourceCount) index = kNone;
    Slot& slot = *slots_[static_cast<std::size_t>(s)];
    // Bipolar sources (and none) scale around 1; the others around 0.5.
    bool unipolar = !(index == kLfo1 || index == kLfo2 || index == kPitchBend || index == kNone);
    slot.unit.forEach([unipolar](ModSlotUnit& u) { u.setUnipolar(unipolar); });
    slot.sensSource = index;
    PolyModule* source = select(slot, true, index);
    if (slot.unit.inputSource(ModSlotUnit::kSensSource) != source)
        slot.unit.connectInput(source, ModSlotUnit::kSensSource);
}

void ModSlots::setDestination(int s, int index) {
    if (s < 0 || s >= kSlots) return;
    if (index < 0 || index > kDestinations) index = 0;
    Slot& slot = *slots_[static_cast<std::size_t>(s)];
    if (index == slot.destination) return;
    connectOutput(s, false);
    slot.destination = index;
    connectOutput(s, slot.source != kNone);
}

void ModSlots::setDepth(int s, float depth) {
    if (s < 0 || s >= kSlots) return;
    setTarget(slots_[static_cast<std::size_t>(s)]->depth, depth);
}

void ModSlots::setSens(int s, float sens) {
    if (s < 0 || s >= kSlots) return;
    setTarget(slots_[static_cast<std::size_t>(s)]->sens, sens);
}

void ModSlots::refreshSources() {
    auto isModulator = [](int index) { return index >= kEnv1 && index <= kLfo2; };
    for (int s = 0; s < kSlots; ++s) {
        Slot& slot = *slots_[static_cast<std::size_t>(s)];
        if (isModulator(slot.source)) {
            slot.unit.connectInput(nullptr, ModSlotUnit::kSource);
            slot.unit.connectInput(select(slot, false, slot.source), ModSlotUnit::kSource);
        }
        if (isModulator(slot.sensSource)) {
            slot.unit.connectInput(nullptr, ModSlotUnit::kSensSource);
            slot.unit.connectInput(select(slot, true, slot.sensSource), ModSlotUnit::kSensSource);
        }
    }
}

Poly<ModSlotUnit>& ModSlots::slot(int s) { return slots_[static_cast<std::size_t>(s)]->unit; }
int ModSlots::source(int s) const { return slots_[static_cast<std::size_t>(s)]->source; }
int ModSlots::sensSource(int s) const { return slots_[static_cast<std::size_t>(s)]->sensSource; }

}  // namespace tolvane
