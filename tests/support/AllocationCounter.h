// Counts heap allocations made by the current thread while a scope is active.
// The test binaries replace the global operator new to count.
#pragma once

#include <cstddef>

namespace tolvane::testing {

class AllocationCounter {
public:
    AllocationCounter();
    ~AllocationCounter();
    AllocationCounter(const AllocationCounter&) = delete;
    AllocationCounter& operator=(const AllocationCounter&) = delete;
    std::size_t count() const;

private:
    std::size_t start_;
    bool wasActive_;
};

}  // namespace tolvane::testing
