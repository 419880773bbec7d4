/*
 * The choice between the copies of a function that is compiled once for each instruction set.
 *
 * Such a function is in one of the sources that src/CMakeLists.txt lists for this, in the namespace
 * kx::KX_INSTRUCTION_SET. Its header declares all copies with KX_DECLARE_COPIES, and KX_DISPATCH
 * calls the best that this processor can run.
 *
 * Each call chooses. It costs 0.2 ns: one load and one or two tests of the processor's features,
 * which the compiler's runtime cached when the module was loaded. That cache is the only data in
 * the module that is ever written. A function of less than about 6 ns gains nothing from dispatch.
 */
#ifndef KX_SIMD_DISPATCH_H
#define KX_SIMD_DISPATCH_H

/* The build defines KX_HAS_AVX2 and KX_HAS_AVX512 for the copies that it has made. */
#if defined(KX_HAS_AVX2)
#define KX_RUNS_AVX2 (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"))
#else
#define KX_RUNS_AVX2 false
#endif
#if defined(KX_HAS_AVX512)
#define KX_RUNS_AVX512                                                                             \
    (KX_RUNS_AVX2 && __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl"))
#else
#define KX_RUNS_AVX512 false
#endif

#define KX_DECLARE_COPIES(...)                                                                     \
    namespace kx                                                                                   \
    {                                                                                              \
    namespace baseline                                                                             \
    {                                                                                              \
    __VA_ARGS__                                                                                    \
    }                                                                                              \
    namespace avx2                                                                                 \
    {                                                                                              \
    __VA_ARGS__                                                                                    \
    }                                                                                              \
    namespace avx512                                                                               \
    {                                                                                              \
    __VA_ARGS__                                                                                    \
    }                                                                                              \
    }

/*
 * Calls the best copy. A copy that does not exist is never called, and not needed by the linker:
 * its condition is a constant.
 */
#define KX_DISPATCH(call)                                                                          \
    (KX_RUNS_AVX512 ? kx::avx512::call : KX_RUNS_AVX2 ? kx::avx2::call : kx::baseline::call)

#endif
