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

/** Exact products, added up from left to right. */
KX_INLINE Double4 sum_of_products(Double4 a0, Double4 b0, Double4 a1, Double4 b1, Double4 a2,
                                  Double4 b2)
{
    return add_exact_product(a2, b2, add_exact_product(a1, b1, a0 * b0));
}
KX_INLINE Double4 sum_of_products(Double4 a0, Double4 b0, Double4 a1, Double4 b1, Double4 a2,
                                  Double4 b2, Double4 a3, Double4 b3)
{
    return add_exact_product(a3, b3, sum_of_products(a0, b0, a1, b1, a2, b2));
}

} // namespace kx

#endif
