// Setting helpers for containers of parameter values. A value container has no inputs and so one
// instance in use, but its setters write every allocated instance so that no instance is ever stale.
#pragma once

#include "engine/framework/PolyModule.h"
#include "engine/framework/Smoothing.h"
#include "engine/framework/ValueSource.h"

namespace tolvane {

inline void setValue(Poly<ValueSource>& source, float v) {
    source.forEach([v](ValueSource& s) { s.set(v); });
}

inline void setTarget(Poly<SmoothedValue>& source, float v) {
    source.forEach([v](SmoothedValue& s) { s.setTarget(v); });
}

}  // namespace tolvane
