#include "engine/voice/NoteSources.h"

namespace tolvane {

void VelocityCurve::setEnds(float first, float last) {
    table_[0] = first;
    table_[127] = last;
    for (int i = 1; i < 127; ++i) table_[static_cast<std::size_t>(i)] = first + static_cast<float>(i) * (last - first) / 127.0f;
}

}  // namespace tolvane
