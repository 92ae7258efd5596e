# Cross build for 32-bit Windows with mingw-w64 (Debian g++-mingw-w64-i686).
set(CMAKE_SYSTEM_PROCESSOR x86)
set(TOLVANE_MINGW_TRIPLE i686-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/MingwToolchain.cmake)
# Floating point in SSE2 as on x86-64: flush-to-zero works and the results match the 64-bit build.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
