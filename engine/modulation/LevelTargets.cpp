#include "engine/modulation/LevelTargets.h"

#include "dsp/FastMath.h"

namespace tolvane {

void SaturationLevel::compute() { scalar_ = fastExp((inputValue(0) + inputValue(1)) * lnRange_ + lnMin_); }

}  // namespace tolvane
