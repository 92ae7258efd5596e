#include "engine/effect/DelayModulation.h"

#include <algorithm>

#include "engine/sound/LookupTables.h"

namespace tolvane {

void ModulationLfo::compute() {
    scalar_ = amplitude_ * sineTable().sine(phase_);
    phase_ += std::min(0.5f, speed_ / blockRate_);
    if (phase_ >= 1.0f) phase_ -= 1.0f;
    if (!(phase_ >= 0.0f)) phase_ = 0.0f;  // a negative or invalid speed must not leave the table
}

}  // namespace tolvane
