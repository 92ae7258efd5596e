# Cross build for 32-bit Windows with mingw-w64 (Debian g++-mingw-w64-i686).
# The posix thread model gives the standard library its threads; it is linked statically.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86)
set(TOLVANE_MINGW_TRIPLE i686-w64-mingw32)
find_program(CMAKE_C_COMPILER NAMES ${TOLVANE_MINGW_TRIPLE}-gcc-posix ${TOLVANE_MINGW_TRIPLE}-gcc REQUIRED)
find_program(CMAKE_CXX_COMPILER NAMES ${TOLVANE_MINGW_TRIPLE}-g++-posix ${TOLVANE_MINGW_TRIPLE}-g++ REQUIRED)
find_program(CMAKE_RC_COMPILER NAMES ${TOLVANE_MINGW_TRIPLE}-windres REQUIRED)
set(CMAKE_FIND_ROOT_PATH /usr/${TOLVANE_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
# Floating point in SSE2 as on x86-64: flush-to-zero works and the results match the 64-bit build.
set(CMAKE_C_FLAGS_INIT "-msse2 -mfpmath=sse")
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
