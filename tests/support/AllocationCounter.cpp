#include "support/AllocationCounter.h"

#include <algorithm>
#include <cstdint>
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

// Over-aligned blocks come from malloc too (not every C library has aligned_alloc): the block is moved up
// to the alignment and the address malloc gave is kept just below it for the matching delete.
void* allocateAligned(std::size_t size, std::align_val_t alignment) {
    if (tCounting) ++tAllocations;
    const std::size_t a = std::max(static_cast<std::size_t>(alignment), sizeof(void*));
    void* raw = std::malloc(size + a + sizeof(void*));
    if (!raw) throw std::bad_alloc();
    const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(raw) + sizeof(void*);
    void* p = reinterpret_cast<void*>((first + a - 1) / a * a);
    static_cast<void**>(p)[-1] = raw;
    return p;
}

void freeAligned(void* p) {
    if (p) std::free(static_cast<void**>(p)[-1]);
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
void operator delete(void* p, std::align_val_t) noexcept { freeAligned(p); }
void operator delete[](void* p, std::align_val_t) noexcept { freeAligned(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { freeAligned(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { freeAligned(p); }

namespace tolvane::testing {

AllocationCounter::AllocationCounter() : start_(tAllocations), wasActive_(tCounting) { tCounting = true; }
AllocationCounter::~AllocationCounter() { tCounting = wasActive_; }
std::size_t AllocationCounter::count() const { return tAllocations - start_; }

}  // namespace tolvane::testing
