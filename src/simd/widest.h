/*
 * Several doubles next to each other, for kernels that are compiled once for each instruction set.
 *
 * The compilers' vector extensions do the arithmetic; this file has what they lack or do badly.
 * Each float is widened once, when loaded, and each double is rounded once, when stored, always a
 * whole vector at a time. g++ 12 widens four floats in two halves, so on x86 the two conversions
 * are the processor's own.
 *
 * Everything is static: the linker must never take a copy that was compiled for one instruction set
 * for another's.
 */
#ifndef KX_SIMD_WIDEST_H
#define KX_SIMD_WIDEST_H

/* Without these extensions the kernels are plain loops; a build may ask for that. */
#if defined(KX_PLAIN)
#define KX_HAS_LANES 0
#elif defined(__clang__) || (defined(__GNUC__) && __GNUC__ >= 12)
#define KX_HAS_LANES 1
#else
#define KX_HAS_LANES 0
#endif

#if KX_HAS_LANES

#include "numeric.h"
#include "simd/two.h"

#include <stddef.h>
#include <string.h>

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace kx
{

/** Lane indices, as a parameter pack for shuffles. */
template <size_t...>
struct LaneNumbers {
};

/** N doubles, as a vector of the compiler. */
template <size_t N>
struct DoublesOf;
template <>
struct DoublesOf<2> {
    typedef double Type __attribute__((vector_size(16)));
    using All = LaneNumbers<0, 1>;
};
template <>
struct DoublesOf<4> {
    typedef double Type __attribute__((vector_size(32)));
    using All = LaneNumbers<0, 1, 2, 3>;
};
template <>
struct DoublesOf<8> {
    typedef double Type __attribute__((vector_size(64)));
    using All = LaneNumbers<0, 1, 2, 3, 4, 5, 6, 7>;
};
template <size_t N>
using Doubles = typename DoublesOf<N>::Type;
template <size_t N>
using AllLanes = typename DoublesOf<N>::All;

/** The widest vector of the instruction set. */
#if defined(__AVX512F__)
constexpr size_t width = 8;
#elif defined(__AVX__)
constexpr size_t width = 4;
#else
constexpr size_t width = 2;
#endif
using Vector = Doubles<width>;

#if defined(__SSE2__)

template <size_t N>
KX_INLINE Doubles<N> load(const float *from)
{
    if constexpr (N == 2) {
        return load2(from);
#if defined(__AVX__)
    } else if constexpr (N == 4) {
        return _mm256_cvtps_pd(_mm_loadu_ps(from));
#endif
#if defined(__AVX512F__)
    } else if constexpr (N == 8) {
        return _mm512_cvtps_pd(_mm256_loadu_ps(from));
#endif
    }
}

template <size_t N>
KX_INLINE void store(float *to, Doubles<N> value)
{
    if constexpr (N == 2) {
        store(to, narrow(value));
#if defined(__AVX__)
    } else if constexpr (N == 4) {
        _mm_storeu_ps(to, _mm256_cvtpd_ps(value));
#endif
#if defined(__AVX512F__)
    } else if constexpr (N == 8) {
        _mm256_storeu_ps(to, _mm512_cvtpd_ps(value));
#endif
    }
}

/** A group of floats in every group of lanes. */
template <size_t N, size_t Group>
KX_INLINE Doubles<N> broadcast_group(const float *from)
{
#if defined(__AVX512F__)
    if constexpr (N == 2 * Group) {
        return _mm512_cvtps_pd(_mm256_broadcast_ps(reinterpret_cast<const __m128 *>(from)));
    }
#endif
    return load<N>(from);
}

/**
 * a*b + c, only where every a and b is a single widened: such a product is exact in double, so that
 * the sum is rounded once, to the same bits, whether the two operations are fused or not.
 */
template <typename Vector>
KX_INLINE Vector add_exact_product(Vector a, Vector b, Vector c)
{
#if defined(__FMA__)
    if constexpr (sizeof(Vector) == 32) {
        return _mm256_fmadd_pd(a, b, c);
    }
#endif
#if defined(__AVX512F__)
    if constexpr (sizeof(Vector) == 64) {
        return _mm512_fmadd_pd(a, b, c);
    }
#endif
    return a * b + c;
}

#if defined(__AVX512F__)
/** Rounds all eight lanes and stores those of the mask; the floats of the others stay untouched. */
template <unsigned char Mask0, unsigned char Mask1, unsigned char Mask2>
KX_INLINE void store_masked(float *to, Doubles<8> value)
{
    const __m256 singles = _mm512_cvtpd_ps(value);
    _mm256_mask_storeu_ps(to, Mask0, singles);
    _mm256_mask_storeu_ps(to + 8, Mask1, singles);
    _mm256_mask_storeu_ps(to + 16, Mask2, singles);
}
#endif

#else

template <size_t N>
KX_INLINE Doubles<N> load(const float *from)
{
    typedef float Singles __attribute__((vector_size(4 * N)));
    Singles singles;
    memcpy(&singles, from, sizeof singles);
    return __builtin_convertvector(singles, Doubles<N>);
}

template <size_t N>
KX_INLINE void store(float *to, Doubles<N> value)
{
    typedef float Singles __attribute__((vector_size(4 * N)));
    const Singles singles = __builtin_convertvector(value, Singles);
    memcpy(to, &singles, sizeof singles);
}

template <size_t N, size_t Group>
KX_INLINE Doubles<N> broadcast_group(const float *from)
{
    return load<N>(from);
}

template <typename Vector>
KX_INLINE Vector add_exact_product(Vector a, Vector b, Vector c)
{
    return a * b + c;
}

#endif

template <size_t N>
KX_INLINE Doubles<N> splat(double value)
{
    if constexpr (N == 2) {
        return Doubles<N>{value, value};
    } else if constexpr (N == 4) {
        return Doubles<N>{value, value, value, value};
    } else {
        return Doubles<N>{value, value, value, value, value, value, value, value};
    }
}

/** Exact products, added up from left to right. */
template <typename Vector>
KX_INLINE Vector sum_of_products(Vector a0, Vector b0, Vector a1, Vector b1)
{
    return add_exact_product(a1, b1, a0 * b0);
}

template <typename Vector>
KX_INLINE Vector sum_of_products(Vector a0, Vector b0, Vector a1, Vector b1, Vector a2, Vector b2)
{
    return add_exact_product(a2, b2, sum_of_products(a0, b0, a1, b1));
}

template <typename Vector>
KX_INLINE Vector sum_of_products(Vector a0, Vector b0, Vector a1, Vector b1, Vector a2, Vector b2,
                                 Vector a3, Vector b3)
{
    return add_exact_product(a3, b3, sum_of_products(a0, b0, a1, b1, a2, b2));
}

} // namespace kx

#endif

#endif
