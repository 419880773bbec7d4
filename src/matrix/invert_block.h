/* The inverse of a 3x3 block, in vectors of two lanes. kernels/inverse.cpp has it in four. */
#ifndef KX_MATRIX_INVERT_BLOCK_H
#define KX_MATRIX_INVERT_BLOCK_H

#include "numeric.h"
#include "simd/two.h"

namespace kx
{

/** An inverted 3x3 block: rows 0 and 1 by columns, then row 2. */
struct InverseBlock {
    Float2 column[3];
    Float2 row2;
    float corner;
};

/**
 * The inverse by cofactors of a 3x3 block: the upper left of a KXM4, or all of a KXM3. False for a
 * block that counts as singular: when its determinant is negligible relative to the six terms that
 * it is the sum of, which does not depend on the scale of the block.
 */
template <typename Matrix>
static inline bool invert_block(const Matrix &m, InverseBlock *inverse)
{
    const Double2 row0 = load2(&m.m[0][0]), row1 = load2(&m.m[1][0]), row2 = load2(&m.m[2][0]);
    const Double2 swapped0 = swap_lanes(row0), swapped1 = swap_lanes(row1);
    const Double2 swapped2 = swap_lanes(row2);
    const Double2 m02 = splat_high(load2(&m.m[0][1])), m12 = splat_high(load2(&m.m[1][1]));
    const Double2 m22 = splat_high(load2(&m.m[2][1]));

    // The minors of row 0 are differences of two products. Those of elements 0 and 1 side by side:
    const Double2 plus = swapped1 * m22;  // m11*m22  m10*m22
    const Double2 minus = swapped2 * m12; // m21*m12  m20*m12
    // And both of element 2:
    const Double2 products2 = row1 * swapped2; // m10*m21  m11*m20

    // The determinant is the sum of those products by an element of row 0, with the sign of a
    // cofactor. Of the six terms only the first is single. Two sums side by side, of the terms at
    // or above 0 and of the others: to the sum that it does not belong to a term adds 0, which
    // avoids an unpredictable branch. A term that is subtracted changes sides.
    const Double2 unrounded = plus * row0;
    const Double2 plus_terms = replace_low(round_to_single(low(unrounded)), unrounded);
    const Double2 minus_terms = minus * row0, terms2 = products2 * m02;
    const Double2 plus_above = positive_part(plus_terms), plus_below = negative_part(plus_terms);
    const Double2 minus_above = positive_part(minus_terms);
    const Double2 minus_below = negative_part(minus_terms);
    const Double2 above2 = positive_part(terms2), below2 = negative_part(terms2);
    const Double2 sums = unpack_low(plus_above, plus_below)      //   m11*m22*m00
                         + unpack_low(above2, below2)            // + m10*m21*m02
                         + unpack_high(minus_above, minus_below) // + m20*m12*m01
                         - unpack_high(below2, above2)           // - m11*m20*m02
                         - unpack_high(plus_below, plus_above)   // - m10*m22*m01
                         - unpack_low(minus_below, minus_above); // - m21*m12*m00
    const double pos = low(sums), neg = high(sums);
    const double det = pos + neg;
    if (!(magnitude(det) > 0.0)) {
        return false; // 0, or a NaN in the block
    }
    const double D = round_to_single(det);
    if (magnitude(D / (pos - neg)) < 1e-15) {
        return false;
    }

    // The cofactors, divided by D. The two products of the first element are single; no others are.
    const double k = 1.0 / D;
    const Double2 plus_minus = lanes(k, -k), minus_plus = swap_lanes(plus_minus);
    const Double2 singles = round_to_single(unpack_low(plus, minus));
    const Double2 minors0 = replace_low(low(singles) - high(singles), plus - minus);
    const Double2 minors1 = swapped0 * m22 - swapped2 * m02;
    const Double2 minors2 = swapped0 * m12 - swapped1 * m02;
    const Double2 products12 = swapped2 * row0; // m21*m00  m20*m01
    const Double2 products22 = swapped1 * row0; // m11*m00  m10*m01
    const Double2 ends = unpack_low(products2, products12) - unpack_high(products2, products12);
    inverse->column[0] = narrow(minors0 * plus_minus);
    inverse->column[1] = narrow(minors1 * minus_plus);
    inverse->column[2] = narrow(minors2 * plus_minus);
    inverse->row2 = narrow(ends * plus_minus);
    inverse->corner = narrow((low(products22) - high(products22)) * k);
    return true;
}

} // namespace kx

#endif
