// Sets flush-to-zero and denormals-are-zero for the lifetime of the guard and restores the caller's
// floating-point state afterwards. Rendering runs inside one.
//
// Both modes live in the SSE control register (MXCSR), which governs all float arithmetic wherever the
// compiler does that arithmetic in SSE registers: every x86-64 target (Linux, Windows), and 32-bit x86
// built for SSE2 maths (-msse2 -mfpmath=sse with GCC and Clang, /arch:SSE2 with MSVC, its default).
// Denormals-are-zero needs SSE2 (setting it on an SSE-only processor faults), so an SSE-only build sets
// flush-to-zero alone.
//
// Elsewhere the guard does nothing. A 32-bit x86 build with x87 maths cannot flush at all (the x87 unit
// has no such mode), which is why that build is refused below; on other processors denormals are kept
// away only by the engine's own offsets (the effect input's tiny constant) and cost time, not sound.
#pragma once

#if defined(__SSE2__) || defined(__x86_64__) || defined(_M_X64) || (defined(_M_IX86_FP) && _M_IX86_FP >= 2)
#include <xmmintrin.h>
#define TOLVANE_HAS_MXCSR 1
#define TOLVANE_HAS_DAZ 1
#elif defined(__SSE__) || (defined(_M_IX86_FP) && _M_IX86_FP >= 1)
#include <xmmintrin.h>
#define TOLVANE_HAS_MXCSR 1
#endif

#if defined(__i386__) && !defined(__SSE_MATH__)
#error "32-bit x86 builds need SSE maths (-msse2 -mfpmath=sse) so that denormals are flushed while rendering"
#endif

namespace tolvane {

class DenormalGuard {
public:
    // Whether this build can flush denormals at all.
    static constexpr bool kEffective =
#ifdef TOLVANE_HAS_MXCSR
        true;
#else
        false;
#endif

    DenormalGuard() {
#ifdef TOLVANE_HAS_MXCSR
        saved_ = _mm_getcsr();
        _mm_setcsr(saved_ | kModes);
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
#ifdef TOLVANE_HAS_DAZ
    static constexpr unsigned kDenormalsAreZero = 0x0040;
#else
    static constexpr unsigned kDenormalsAreZero = 0;
#endif
    static constexpr unsigned kModes = kFlushToZero | kDenormalsAreZero;
    unsigned saved_ = 0;
#endif
};

}  // namespace tolvane
