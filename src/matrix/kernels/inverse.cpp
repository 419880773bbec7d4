/*
 * The inverse of a 4x4 matrix: cofactors for affine transforms, an elimination for everything else.
 *
 * The cofactors are there twice: with two lanes the text for four takes a third longer.
 */
#include "kernels.h"

#include "matrix/invert_block.h"
#include "numeric.h"
#include "simd/four.h"

#include <string.h>

namespace kx
{
namespace
{

void store_unit_row(KXM4 *out)
{
    out->m[3][0] = 0.0f;
    out->m[3][1] = 0.0f;
    out->m[3][2] = 0.0f;
    out->m[3][3] = 1.0f;
}

#if KX_HAS_DOUBLE4

/*
 * The minor of an element is the determinant of the two rows a and b and the two columns that are
 * left without the element's:
 *
 *     minor(c) = a[left]*b[right] - b[left]*a[right]        c      0  1  2
 *                                                           left   1  0  0
 *                                                           right  2  2  1
 *
 * A vector has the minors of a row's elements, and the last lane that of element 2 again.
 */
KX_INLINE Double4 left_of(Double4 row)
{
    return permute<1, 0, 0, 0>(row);
}
KX_INLINE Double4 right_of(Double4 row)
{
    return permute<2, 2, 1, 1>(row);
}
KX_INLINE Double4 minors(Double4 a, Double4 b)
{
    return subtract_exact_product(left_of(a) * right_of(b), left_of(b), right_of(a));
}

/**
 * The inverse by cofactors of a transform whose last row is taken as 0 0 0 1.
 *
 * The block counts as singular when its determinant is negligible relative to the six terms that it
 * is the sum of, which does not depend on the scale of the block.
 */
KX_INLINE int32_t invert_affine(const KXM4 &m, KXM4 *out)
{
    const Double4 row0 = load4(m.m[0]), row1 = load4(m.m[1]), row2 = load4(m.m[2]);

    // The two products of each minor of row 0.
    const Double4 plus = left_of(row1) * right_of(row2);  // m11*m22  m10*m22  m10*m21
    const Double4 minus = left_of(row2) * right_of(row1); // m21*m12  m20*m12  m20*m11

    // The determinant is the sum of those products by an element of row 0, with the sign of a
    // cofactor. Of the six terms only the first is single. Two sums side by side, pos of the
    // terms at or above 0 and neg of the others: to the sum that it does not belong to a term adds
    // 0, which avoids an unpredictable branch. A term that is subtracted changes sides.
    const Double4 elements = permute<0, 1, 2, 2>(row0);
    const Double4 plus_terms = round_lane0(plus * elements);
    const Double4 minus_terms = minus * elements;
    const Double4 plus_above = positive_part(plus_terms), plus_below = negative_part(plus_terms);
    const Double4 minus_above = positive_part(minus_terms);
    const Double4 minus_below = negative_part(minus_terms);
    const Double4 plus02 = unpack_low(plus_above, plus_below);
    const Double4 plus1 = unpack_high(plus_below, plus_above);
    const Double4 minus02 = unpack_low(minus_below, minus_above);
    const Double4 minus1 = unpack_high(minus_above, minus_below);
    const Double2 sums = low_half(plus02)     //   m11*m22*m00
                         + high_half(plus02)  // + m10*m21*m02
                         + low_half(minus1)   // + m20*m12*m01
                         - high_half(minus02) // - m20*m11*m02
                         - low_half(plus1)    // - m10*m22*m01
                         - low_half(minus02); // - m21*m12*m00
    const Double2 swapped = swap_lanes(sums);
    const double det = low(sums + swapped);  // pos + neg
    const double size = low(sums - swapped); // pos - neg
    if (!(magnitude(det) > 0.0)) {
        return singular; // 0, or a NaN in the block
    }
    const double D = round_to_single(det);
    if (magnitude(D / size) < 1e-15) {
        return singular;
    }

    // Column r of the inverse is the cofactors of row r, divided by D. Of the first element the two
    // products are single; no others are.
    const Double2 singles = round_to_single(unpack_low(low_half(plus), low_half(minus)));
    const Double4 minors0 = replace_lane0(low(singles) - high(singles), plus - minus);
    const Double4 plus_minus = lanes(0.0, -0.0, 0.0, 0.0);
    const Double4 minus_plus = lanes(-0.0, 0.0, -0.0, -0.0);
    const Double4 cofactors0 = change_signs(minors0, plus_minus);
    const Double4 cofactors1 = change_signs(minors(row0, row2), minus_plus);
    const Double4 cofactors2 = change_signs(minors(row0, row1), plus_minus);
    const Double4 k = splat4(1.0 / D);
    const Float4 column0 = narrow(cofactors0 * k), column1 = narrow(cofactors1 * k);
    const Float4 column2 = narrow(cofactors2 * k);
    // The translation is -(block*t), by the block as it is stored.
    const Double4 turned =
        sum_of_products(widen(column0), broadcast4(&m.m[0][3]), widen(column1),
                        broadcast4(&m.m[1][3]), widen(column2), broadcast4(&m.m[2][3]));
    store_columns(out->m[0], out->m[1], out->m[2], column0, column1, column2,
                  narrow(negate(turned)));
    store_unit_row(out);
    return done;
}

#else

/** The inverse of a transform whose last row is taken as 0 0 0 1. */
int32_t invert_affine(const KXM4 &m, KXM4 *out)
{
    InverseBlock block;
    if (!invert_block(m, &block)) {
        return singular;
    }
    // The translation is -(block*t), by the block as it is stored.
    const Double2 end0 = load2(&m.m[0][2]), end1 = load2(&m.m[1][2]), end2 = load2(&m.m[2][2]);
    const Double2 turned = widen(block.column[0]) * splat_high(end0) +
                           widen(block.column[1]) * splat_high(end1) +
                           widen(block.column[2]) * splat_high(end2);
    const Double2 terms2 = widen(block.row2) * unpack_high(end0, end1);
    const double turned2 = low(terms2) + high(terms2) + widen(block.corner) * high(end2);
    store_columns(out->m[0], out->m[1], block.column[0], block.column[1]);
    store_columns(out->m[0] + 2, out->m[1] + 2, block.column[2], narrow(negate(turned)));
    store(out->m[2], block.row2);
    out->m[2][2] = block.corner;
    out->m[2][3] = narrow(-turned2);
    store_unit_row(out);
    return done;
}

#endif

/** Strictly nearer to 0 0 0 1 than the tolerance counts as affine; so does a NaN. */
bool is_affine(const KXM4 &m)
{
    static constexpr float last_row[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    if (memcmp(m.m[3], last_row, sizeof last_row) == 0) {
        return true; // as nearly all are, and quicker to test
    }
    const double d = round_to_single(widen(m.m[3][3]) - 1.0);
    return !(magnitude(widen(m.m[3][0])) >= tolerance || magnitude(widen(m.m[3][1])) >= tolerance ||
             magnitude(widen(m.m[3][2])) >= tolerance || magnitude(d) >= tolerance);
}

} // namespace

namespace KX_INSTRUCTION_SET
{

int32_t inverse(const KXM4 *m, KXM4 *out)
{
    return is_affine(*m) ? invert_affine(*m, out) : inverse_by_elimination(m, out);
}

} // namespace KX_INSTRUCTION_SET
} // namespace kx
