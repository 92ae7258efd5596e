# Cross build for 64-bit Windows with mingw-w64 (Debian g++-mingw-w64-x86-64).
set(CMAKE_SYSTEM_PROCESSOR AMD64)
set(TOLVANE_MINGW_TRIPLE x86_64-w64-mingw32)
include(${CMAKE_CURRENT_LIST_DIR}/MingwToolchain.cmake)
