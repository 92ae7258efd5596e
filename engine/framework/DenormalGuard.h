// Sets flush-to-zero and denormals-are-zero for the lifetime of the guard and restores the caller's
// floating-point state afterwards. Rendering runs inside one.
#pragma once

#if defined(__SSE__) || defined(__x86_64__) || defined(_M_X64) || (defined(_M_IX86_FP) && _M_IX86_FP >= 1)
#include <xmmintrin.h>
#define TOLVANE_HAS_MXCSR 1
#endif

namespace tolvane {

class DenormalGuard {
public:
    DenormalGuard() {
#ifdef TOLVANE_HAS_MXCSR
        saved_ = _mm_getcsr();
        _mm_setcsr(saved_ | kFlushToZero | kDenormalsAreZero);
#endif
    }
    ~DenormalGuard() {
#ifdef TOLVANE_HAS_MXCSR
        _mm_setcsr(saved_);
#endif
    }
    DenormalGuard(const DenormalGuard&) = delete;
    DenormalGuard& operator=(const DenormalGuard&) = delete;

private:
#ifdef TOLVANE_HAS_MXCSR
    static constexpr unsigned kFlushToZero = 0x8000;
    static constexpr unsigned kDenormalsAreZero = 0x0040;
    unsigned saved_ = 0;
#endif
};

}  // namespace tolvane
