#include "support/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local bool tCounting = false;
thread_local std::size_t tAllocations = 0;

void* allocate(std::size_t size) {
    if (tCounting) ++tAllocations;
    if (size == 0) size = 1;
    void* p = std::malloc(size);
    if (!p) throw std::bad_alloc();
    return p;
}

void* allocateAligned(std::size_t size, std::align_val_t alignment) {
    if (tCounting) ++tAllocations;
    std::size_t a = static_cast<std::size_t>(alignment);
    std::size_t rounded = (size + a - 1) / a * a;
    void* p = std::aligned_alloc(a, rounded == 0 ? a : rounded);
    if (!p) throw std::bad_alloc();
    return p;
}

}  // namespace

void* operator new(std::size_t size) { return allocate(size); }
void* operator new[](std::size_t size) { return allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try { return allocate(size); } catch (...) { return nullptr; }
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    try { return allocate(size); } catch (...) { return nullptr; }
}
void* operator new(std::size_t size, std::align_val_t a) { return allocateAligned(size, a); }
void* operator new[](std::size_t size, std::align_val_t a) { return allocateAligned(size, a); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }

namespace tolvane::testing {

AllocationCounter::AllocationCounter() : start_(tAllocations), wasActive_(tCounting) { tCounting = true; }
AllocationCounter::~AllocationCounter() { tCounting = wasActive_; }
std::size_t AllocationCounter::count() const { return tAllocations - start_; }

}  // namespace tolvane::testing
