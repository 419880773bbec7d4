# The compiler flags on which the numeric rule rests. Every source of the library is built with them.
include(CheckCXXCompilerFlag)

# Adds a flag where the compiler takes it without a word of warning.
function(kx_add_flag_if_supported target flag)
    string(MAKE_C_IDENTIFIER "KX_HAS${flag}" result)
    set(CMAKE_REQUIRED_FLAGS "-Werror")
    check_cxx_compiler_flag("${flag}" ${result})
    if(${result})
        target_compile_options(${target} PRIVATE "${flag}")
    endif()
endfunction()

function(kx_apply_numeric_flags target)
    if(MSVC)
        target_compile_options(${target} PRIVATE /fp:precise)
        return()
    endif()

    target_compile_options(${target} PRIVATE
        # A fused multiply-add rounds once where a formula rounds twice: other last bits, and other
        # signs of zero. Compilers contract by default where the processor can.
        -ffp-contract=off
        # One block of sixteen floats may come in under two record types.
        -fno-strict-aliasing
        # A call must not write the host's errno, and a square root becomes one instruction.
        -fno-math-errno)

    # A host may round upwards, downwards or to zero: what the compiler works out itself, it would
    # round to nearest, and it would take x - 0 for x, which a zero is not under each of them.
    kx_add_flag_if_supported(${target} -frounding-math)

    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
        # g++ 12 loses the rounding of neighbouring named singles when it packs them into vectors.
        target_compile_options(${target} PRIVATE -fno-tree-slp-vectorize)
    endif()

    # clang 14 packs neighbouring doubles that are chosen by a condition into vectors of WebAssembly, and then
    # chooses the wrong ones.
    if(CMAKE_SYSTEM_PROCESSOR STREQUAL "wasm32")
        target_compile_options(${target} PRIVATE -fno-slp-vectorize)
    endif()

    # clang takes exceptions to be masked and computes guarded divisions ahead of their guard. A host
    # may have unmasked them. g++ doesn't do this by default.
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
        kx_add_flag_if_supported(${target} -ffp-exception-behavior=maytrap)
    endif()

    # x87 registers carry more bits than a double.
    if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(i.86|x86|x86_64|AMD64)$" AND CMAKE_SIZEOF_VOID_P EQUAL 4)
        target_compile_options(${target} PRIVATE -msse2 -mfpmath=sse)
    endif()
endfunction()
