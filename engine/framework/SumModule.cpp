#include "engine/framework/SumModule.h"

namespace tolvane {

void SumModule::setMask(unsigned mask) {
    mask_ = mask & 0xFFu;
    connectedCount_ = 0;
    for (int k = 0; k < kMaxInputs; ++k)
        if (mask_ & (1u << k)) connected_[connectedCount_++] = k;
}

void SumModule::resetInputs(int tick) {
    for (int i = 0; i < connectedCount_; ++i)
        if (DspModule* in = input(connected_[i])) in->reset(tick);
}

void SumModule::updateInputs(int tick) {
    for (int i = 0; i < connectedCount_; ++i) input(connected_[i])->update(tick);
}

void SumModule::compute() {
    float sum = 0.0f;
    for (int i = 0; i < connectedCount_; ++i) sum += inputValue(connected_[i]);
    scalar_ = sum;
}

unsigned SumContainer::mask() const {
    unsigned m = 0;
    for (int k = 0; k < numInputs(); ++k)
        if (inputSource(k)) m |= 1u << k;
    return m;
}

void SumContainer::wireInput(int k) {
    PolyModule::wireInput(k);
    unsigned m = mask();
    forEach([m](SumModule& s) { s.setMask(m); });
}

}  // namespace tolvane
