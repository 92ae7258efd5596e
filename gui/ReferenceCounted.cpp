#include "gui/ReferenceCounted.h"

namespace tolvane {

void ReferenceCounted::release() {
    if (refCount_ <= 0) return;
    if (--refCount_ == 0) delete this;
}

void ReferenceCounted::addRef() { ++refCount_; }

std::int32_t ReferenceCounted::getRefCount() const { return refCount_; }

}  // namespace tolvane
