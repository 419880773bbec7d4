/*
 * Four doubles next to each other: a row of a matrix, a column, a point.
 *
 * With AVX2 this is one register, elsewhere two vectors of two, so that one text serves every
 * instruction set. Each lane has the bits that a lone double would have.
 */
#ifndef KX_SIMD_FOUR_H
#define KX_SIMD_FOUR_H

#include "simd/two.h"

#if defined(__GNUC__) && defined(__AVX2__) && defined(__FMA__) && !defined(KX_PLAIN)
#include "simd/avx2.h"
#define KX_HAS_DOUBLE4 1
#else
#include "simd/halves.h"
#define KX_HAS_DOUBLE4 0
#endif

namespace kx
{

KX_INLINE Double4 negate(Double4 v) { return change_signs(v, splat4(-0.0)); }

template <typename V>
KX_INLINE V add_products(V sum)
{
    return sum;
}
template <typename V, typename... Factors>
KX_INLINE V add_products(V sum, V a, V b, Factors... more)
{
    return add_products(add_exact_product(a, b, sum), more...);
}
/** Exact products, a pair of factors each, added up from left to right. */
template <typename V, typename... Factors>
KX_INLINE V sum_of_products(V a, V b, Factors... more)
{
    return add_products(a * b, more...);
}

} // namespace kx

#endif
