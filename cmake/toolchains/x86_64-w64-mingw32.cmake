# 64-bit Windows: Debian's g++-mingw-w64-x86-64-posix; programs run under wine64, without a display.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
# A program without a window needs none of Wine's services, which take seconds to start.
set(CMAKE_CROSSCOMPILING_EMULATOR env WINEDEBUG=-all WINEPREFIX=${CMAKE_BINARY_DIR}/wine
    WINEDLLOVERRIDES=services.exe,explorer.exe,mscoree,mshtml= /usr/lib/wine/wine64)
# The compiler's runtime goes into each program, so that it needs nothing but the system.
set(CMAKE_EXE_LINKER_FLAGS_INIT -static)
