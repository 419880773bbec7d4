/*
 * Four doubles side by side: a row of a matrix, a column, a point.
 *
 * With AVX2 that is one register; elsewhere it is two vectors of two, so that one text serves every
 * instruction set. As with two lanes, each lane has the bits that a lone double would have.
 */
#ifndef KX_SIMD_FOUR_H
#define KX_SIMD_FOUR_H

#include "simd/two.h"

#if defined(__GNUC__) && defined(__AVX2__) && defined(__FMA__) && !defined(KX_PLAIN)
#include "simd/avx2.h"
#else
#include "simd/halves.h"
#endif

namespace kx
{

KX_INLINE Double4 splat4(double value)
{
    return lanes(value, value, value, value);
}

} // namespace kx

#endif
