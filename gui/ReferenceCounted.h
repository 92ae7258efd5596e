// Shared ownership by a plain reference count: views and bitmaps are handed around with it.
#pragma once

#include <cstdint>

namespace tolvane {

class ReferenceCounted {
public:
    ReferenceCounted() = default;
    ReferenceCounted(const ReferenceCounted&) = delete;
    ReferenceCounted& operator=(const ReferenceCounted&) = delete;

    // Decrements a positive count and destroys the object when it reaches 0.
    void release();
    void addRef();
    std::int32_t getRefCount() const;

protected:
    virtual ~ReferenceCounted() = default;

private:
    std::int32_t refCount_ = 1;  // the creator holds the first reference
};

}  // namespace tolvane
