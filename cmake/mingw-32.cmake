# Builds for 32-bit Windows with Debian's mingw-w64 (the variant with POSIX threads, which std::thread and
# thread_local want). Everything is linked in, so that what comes out needs Windows's own DLLs only.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)

set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

# Doubles of 64 bits throughout, as the other builds have them: the x87 unit keeps more, so that the last bit of
# a date or a number could differ. Every processor that a Windows of today accepts has SSE2.
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")

set(CMAKE_EXE_LINKER_FLAGS_INIT "-static")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static")

set(CMAKE_FIND_ROOT_PATH /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Programs that a build makes run under Wine here.
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/../tests/support/wine.sh)
