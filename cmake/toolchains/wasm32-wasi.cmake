# WebAssembly: Debian's clang, lld, wasi-libc, libc++-14-dev-wasm32 and libclang-rt-14-dev-wasm32;
# programs run in node.
set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_C_COMPILER_TARGET wasm32-wasi)
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_CROSSCOMPILING_EMULATOR node --no-warnings ${CMAKE_CURRENT_LIST_DIR}/wasi.mjs)
# Debian's libc++ for it has neither exceptions nor threads.
set(CMAKE_CXX_FLAGS_INIT -fno-exceptions)
