# 32-bit Windows: Debian's g++-mingw-w64-i686-posix, built only.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)
# The compiler's runtime goes into each program, so that it needs nothing but the system.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
