/* Inversion: cofactors for 3x3 blocks and affine transforms, an elimination for everything else. */
#include "kxmaths5/matrix.h"

#include "matrix/elimination.h"
#include "numeric.h"
#include "simd/two.h"

#include <string.h>

using namespace kx;

namespace
{

constexpr int32_t done = 0;
constexpr int32_t singular = 1;

/** An inverted 3x3 block: rows 0 and 1 by columns, then row 2. */
struct Block {
    Float2 column[3];
    Float2 row2;
    float corner;
};

/**
 * The inverse of a 3x3 block by cofactors: the upper left of a KXM4, or all of a KXM3.
 *
 * The block counts as singular when its determinant is next to nothing beside the six terms that it
 * is the sum of, which does not depend on the scale of the block.
 */
template <typename Matrix>
int32_t invert_block(const Matrix &m, Block *inverse)
{
    const Double2 row0 = load2(&m.m[0][0]), row1 = load2(&m.m[1][0]);
    const Double2 row2 = load2(&m.m[2][0]);
    const Double2 a02 = splat_high(load2(&m.m[0][1])), a12 = splat_high(load2(&m.m[1][1]));
    const Double2 a22 = splat_high(load2(&m.m[2][1]));
    const Double2 swapped0 = swap_lanes(row0), swapped1 = swap_lanes(row1);
    const Double2 swapped2 = swap_lanes(row2);
    const Double2 by22 = swapped1 * a22;    // a11*a22  a10*a22
    const Double2 by12 = swapped2 * a12;    // a21*a12  a20*a12
    const Double2 across = row1 * swapped2; // a10*a21  a11*a20

    // The six terms, without the signs of the fourth to the sixth. Of them only the first is
    // single.
    const Double2 products15 = by22 * row0; // a11*a22*a00  a10*a22*a01
    const Double2 terms15 = replace_low(round_to_single(low(products15)), products15);
    const Double2 terms24 = across * a02; // a10*a21*a02  a11*a20*a02
    const Double2 terms63 = by12 * row0;  // a21*a12*a00  a12*a20*a01

    // Two sums side by side: of the terms at or above 0, and of the others. To the sum that it does
    // not belong to a term adds 0: that changes nothing, and it saves a branch that a processor
    // could but guess. To take away the negative part of a term is to add the positive part of its
    // negative.
    const Double2 pos15 = positive_part(terms15), neg15 = negative_part(terms15);
    const Double2 pos24 = positive_part(terms24), neg24 = negative_part(terms24);
    const Double2 pos63 = positive_part(terms63), neg63 = negative_part(terms63);
    const Double2 sums = unpack_low(pos15, neg15) + unpack_low(pos24, neg24) +
                         unpack_high(pos63, neg63) - unpack_high(neg24, pos24) -
                         unpack_high(neg15, pos15) - unpack_low(neg63, pos63);
    const double pos = low(sums), neg = high(sums);
    const double det = pos + neg;
    if (!(magnitude(det) > 0.0)) {
        return singular; // 0, or a NaN in the block
    }
    const double D = round_to_single(det);
    if (magnitude(D / (pos - neg)) < 1e-15) {
        return singular;
    }

    const double k = 1.0 / D;
    const Double2 plus_minus = lanes(k, -k), minus_plus = swap_lanes(plus_minus);
    // The two products of the first element are single; no others are. Where the contract negates a
    // difference, k is negative: the difference the other way round would turn the sign of a zero.
    const Double2 singles = round_to_single(unpack_low(by22, by12));
    const Double2 column0 = replace_low(low(singles) - high(singles), by22 - by12);
    const Double2 column1 = swapped0 * a22 - swapped2 * a02;
    const Double2 column2 = swapped0 * a12 - swapped1 * a02;
    const Double2 down = swapped2 * row0; // a21*a00  a20*a01
    const Double2 ends = unpack_low(across, down) - unpack_high(across, down);
    const Double2 corner = swapped1 * row0; // a11*a00  a10*a01
    inverse->column[0] = narrow(column0 * plus_minus);
    inverse->column[1] = narrow(column1 * minus_plus);
    inverse->column[2] = narrow(column2 * plus_minus);
    inverse->row2 = narrow(ends * plus_minus);
    inverse->corner = narrow((low(corner) - high(corner)) * k);
    return done;
}

/** The inverse of a transform whose last row is taken as 0 0 0 1. */
int32_t invert_affine(const KXM4 &m, KXM4 *out)
{
    Block block;
    if (invert_block(m, &block) == singular) {
        return singular;
    }
    const Double2 end0 = load2(&m.m[0][2]), end1 = load2(&m.m[1][2]);
    const Double2 end2 = load2(&m.m[2][2]);
    // The translation is turned back by the block as it is stored.
    const Double2 turned = widen(block.column[0]) * splat_high(end0) +
                           widen(block.column[1]) * splat_high(end1) +
                           widen(block.column[2]) * splat_high(end2);
    const Double2 terms2 = widen(block.row2) * unpack_high(end0, end1);
    const double turned2 = low(terms2) + high(terms2) + widen(block.corner) * high(end2);
    store_columns(&out->m[0][0], &out->m[1][0], block.column[0], block.column[1]);
    store_columns(&out->m[0][2], &out->m[1][2], block.column[2], narrow(negate(turned)));
    store(&out->m[2][0], block.row2);
    out->m[2][2] = block.corner;
    out->m[2][3] = narrow(-turned2);
    out->m[3][0] = 0.0f;
    out->m[3][1] = 0.0f;
    out->m[3][2] = 0.0f;
    out->m[3][3] = 1.0f;
    return done;
}

/** Strictly nearer to 0 0 0 1 than the tolerance counts as affine; so does a NaN. */
bool is_affine(const KXM4 &m)
{
    const float last_row[4] = {0.0f, 0.0f, 0.0f, 1.0f};
    if (memcmp(m.m[3], last_row, sizeof last_row) == 0) {
        return true; // as nearly all are, and quicker to see
    }
    const double d = round_to_single(widen(m.m[3][3]) - 1.0);
    return !(magnitude(widen(m.m[3][0])) >= tolerance || magnitude(widen(m.m[3][1])) >= tolerance ||
             magnitude(widen(m.m[3][2])) >= tolerance || magnitude(d) >= tolerance);
}

} // namespace

int32_t KXM4Inverse(const KXM4 *m, KXM4 *out)
{
    return is_affine(*m) ? invert_affine(*m, out) : invert_by_elimination(*m, out);
}

int32_t KXM3Inverse(const KXM3 *m, KXM3 *out)
{
    Block inverse;
    const int32_t status = invert_block(*m, &inverse);
    if (status == done) {
        store_columns(&out->m[0][0], &out->m[1][0], inverse.column[0], inverse.column[1]);
        store_column(&out->m[0][2], &out->m[1][2], inverse.column[2]);
        store(&out->m[2][0], inverse.row2);
        out->m[2][2] = inverse.corner;
    }
    return status;
}
