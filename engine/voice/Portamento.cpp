#include "engine/voice/Portamento.h"

namespace tolvane {

void Glide::updateBlock(int tick) {
    if (tick == lastTick_) return;
    if (!follows(tick, lastTick_)) jump_ = true;
    lastTick_ = tick;
    updateInputs(tick);
    float note = inputValue(kNote);
    float c = inputValue(kCoefficient);
    if (jump_ || inputValue(kTrigger) >= 0.5f) {
        scalar_ = note;
        jump_ = false;
    }
    scalar_ = (1.0f - c) * note + c * scalar_;
}

Portamento::Portamento(ModuleGraph& graph, PolyModule& trigger)
    : notes_(graph),
      coefficient_(graph, 0, kRuleFromInputs, kInitialTime),
      glide_(graph, Glide::kNumInputs, kRuleFromInputs) {
    glide_.connectInput(&notes_, Glide::kNote);
    glide_.connectInput(&trigger, Glide::kTrigger);
    glide_.connectInput(&coefficient_, Glide::kCoefficient);
}

void Portamento::setTime(float seconds) {
    if (!(seconds > 0.0f)) seconds = 0.0f;
    coefficient_.forEach([seconds](SmoothCoefficient& c) { c.setTime(seconds); });
}

}  // namespace tolvane
