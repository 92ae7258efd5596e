#include "dsp/Mappings.h"

#include "dsp/FastMath.h"

namespace tolvane {

ExponentialMapping::ExponentialMapping(float min, float max)
    : lnMin_(fastLn(min)), lnRange_(fastLn(max) - fastLn(min)) {}

float ExponentialMapping::map(float v) const { return fastExp(lnMin_ + v * lnRange_); }

float ExponentialMapping::inverse(float x) const {
    if (!(x > 0.0f)) return 0.0f;
    float n = (fastLn(x) - lnMin_) / lnRange_;
    if (n < 0.0f) return 0.0f;
    return n > 1.0f ? 1.0f : n;
}

CurveMapping::CurveMapping(float min, float max, float curvature) : min_(min) {
    float k = curvature;
    if (k < 0.0001f && k > -0.0001f) k = (curvature >= 0.0f) ? 0.0001f : -0.0001f;
    k_ = k;
    scale_ = (max - min) / (fastExp(k) - 1.0f);
}

float CurveMapping::map(float v) const { return min_ + scale_ * (fastExp(k_ * v) - 1.0f); }

}  // namespace tolvane
