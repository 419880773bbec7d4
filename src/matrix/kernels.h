/*
 * The kernels that are compiled once for each instruction set, and the choice between their copies.
 *
 * The choice is made in each call. It costs a load and a test or two of what the compiler's runtime
 * found out when the module was loaded; that runtime's record of the processor is the only data in
 * the module that was ever written to.
 */
#ifndef KX_MATRIX_KERNELS_H
#define KX_MATRIX_KERNELS_H

#include "kxmaths5/types.h"

/* The build defines KX_HAS_AVX2 and KX_HAS_AVX512 for the copies that it has made. */
#if defined(KX_HAS_AVX2)
#define KX_RUNS_AVX2 (__builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma"))
#else
#define KX_RUNS_AVX2 false
#endif
#if defined(KX_HAS_AVX512)
#define KX_RUNS_AVX512 (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl"))
#else
#define KX_RUNS_AVX512 false
#endif

#define KX_DECLARE_KERNELS                                                                         \
    void product(const KXM4 *a, const KXM4 *b, KXM4 *out);                                         \
    void directions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out);                     \
    void positions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out);                      \
    void directions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out);                     \
    void positions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out);                      \
    void homogeneous(const KXM4 *m, uint32_t count, const KXP4 *in, KXP4 *out);

namespace kx
{
namespace baseline
{
KX_DECLARE_KERNELS
}
namespace avx2
{
KX_DECLARE_KERNELS
}
namespace avx512
{
KX_DECLARE_KERNELS
}
} // namespace kx

/*
 * Calls the best copy that this processor can run. A copy that was not made is never called, and
 * nothing needs it: its condition is a constant.
 */
#define KX_CALL_KERNEL(call)                                                                       \
    do {                                                                                           \
        if (KX_RUNS_AVX512) {                                                                      \
            kx::avx512::call;                                                                      \
        } else if (KX_RUNS_AVX2) {                                                                 \
            kx::avx2::call;                                                                        \
        } else {                                                                                   \
            kx::baseline::call;                                                                    \
        }                                                                                          \
    } while (false)

#endif
