/*
 * As many doubles side by side as the instruction set has room for, for arrays.
 *
 * The compilers' vector extensions do the arithmetic and the shuffles; this file has what they lack
 * or do badly. Each float is widened once, as it is loaded, and each double is rounded once, as it
 * is stored, always a whole vector at a time. g++ 12 widens four floats in two halves, so on x86
 * both conversions use intrinsics.
 *
 * Everything is static: the linker must never take one instruction set's copy for another's.
 */
#ifndef KX_SIMD_WIDEST_H
#define KX_SIMD_WIDEST_H

/* Without these extensions the kernels are plain loops; a build may ask for that. */
#if !defined(KX_PLAIN) && (defined(__clang__) || (defined(__GNUC__) && __GNUC__ >= 12))
#define KX_HAS_LANES 1
#else
#define KX_HAS_LANES 0
#endif

#if KX_HAS_LANES

#include "simd/four.h"

#include <stddef.h>
#include <string.h>

namespace kx
{

/** Numbers of lanes, for a pack that a shuffle is written with. */
template <size_t...>
struct LaneNumbers {
};
#if defined(__AVX512F__)
constexpr size_t width = 8;
using All = LaneNumbers<0, 1, 2, 3, 4, 5, 6, 7>;
#elif KX_HAS_DOUBLE4
constexpr size_t width = 4;
using All = LaneNumbers<0, 1, 2, 3>;
#else
constexpr size_t width = 2;
using All = LaneNumbers<0, 1>;
#endif
typedef double Vector __attribute__((vector_size(8 * width)));

template <size_t... Lane>
KX_INLINE Vector splat(double value, LaneNumbers<Lane...>)
{
    return Vector{(static_cast<void>(Lane), value)...};
}

#if defined(__AVX512F__)

KX_INLINE Vector load(const float *from) { return _mm512_cvtps_pd(_mm256_loadu_ps(from)); }
KX_INLINE void store(float *to, Vector v) { _mm256_storeu_ps(to, _mm512_cvtpd_ps(v)); }
/** Four floats, in both halves; fewer lanes are one group. */
KX_INLINE Vector load_in_groups(const float *from)
{
    return _mm512_cvtps_pd(_mm256_broadcast_ps(reinterpret_cast<const __m128 *>(from)));
}
/** Rounds all eight lanes and stores those of the mask; the floats of the others stay untouched. */
template <unsigned char Mask0, unsigned char Mask1, unsigned char Mask2>
KX_INLINE void store_masked(float *to, Vector v)
{
    const __m256 singles = _mm512_cvtpd_ps(v);
    _mm256_mask_storeu_ps(to, Mask0, singles);
    _mm256_mask_storeu_ps(to + 8, Mask1, singles);
    _mm256_mask_storeu_ps(to + 16, Mask2, singles);
}

#elif KX_HAS_DOUBLE4

KX_INLINE Vector load(const float *from) { return widen(load_floats4(from)); }
KX_INLINE void store(float *to, Vector v) { store(to, narrow(v)); }

#elif defined(__SSE2__)

KX_INLINE Vector load(const float *from) { return load2(from); }
KX_INLINE void store(float *to, Vector v) { store(to, narrow(v)); }

#else

typedef float Singles __attribute__((vector_size(4 * width)));

KX_INLINE Vector load(const float *from)
{
    Singles singles;
    memcpy(&singles, from, sizeof singles);
    return __builtin_convertvector(singles, Vector);
}
KX_INLINE void store(float *to, Vector v)
{
    const Singles singles = __builtin_convertvector(v, Singles);
    memcpy(to, &singles, sizeof singles);
}

#endif

#if !defined(__AVX512F__)
KX_INLINE Vector load_in_groups(const float *from) { return load(from); }
#endif

/**
 * Lets what follows read these values from memory, where a load brings one into all lanes.
 * Compilers would rather shuffle the vectors that were stored there.
 */
template <typename Values>
KX_INLINE void read_back(Values &values)
{
    __asm__("" : "+m"(values));
}

} // namespace kx

#endif

#endif
