/* Inversion: cofactors for 3x3 blocks and affine transforms, an elimination for everything else. */
#include "kxmaths5/matrix.h"

#include "matrix/elimination.h"
#include "numeric.h"
#include "pair.h"

#include <string.h>

namespace
{

using kx::both;
using kx::both_first;
using kx::both_second;
using kx::first;
using kx::Pair;
using kx::PairOfSingles;
using kx::second;

constexpr int32_t done = 0;
constexpr int32_t singular = 1;

/** An inverted 3x3 block: rows 0 and 1 by columns, then row 2. */
struct Block {
    PairOfSingles column[3];
    PairOfSingles row2;
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
    const Pair row0 = kx::load(&m.m[0][0]), row1 = kx::load(&m.m[1][0]);
    const Pair row2 = kx::load(&m.m[2][0]);
    const Pair a02 = both_second(kx::load(&m.m[0][1])), a12 = both_second(kx::load(&m.m[1][1]));
    const Pair a22 = both_second(kx::load(&m.m[2][1]));
    const Pair swapped0 = kx::swapped(row0), swapped1 = kx::swapped(row1);
    const Pair swapped2 = kx::swapped(row2);
    const Pair by22 = swapped1 * a22;    // a11*a22  a10*a22
    const Pair by12 = swapped2 * a12;    // a21*a12  a20*a12
    const Pair across = row1 * swapped2; // a10*a21  a11*a20

    // The six terms, without the signs of the fourth to the sixth. Of them only the first is
    // single.
    const Pair products15 = by22 * row0; // a11*a22*a00  a10*a22*a01
    const Pair terms15 = kx::with_first(kx::rounded(first(products15)), products15);
    const Pair terms24 = across * a02; // a10*a21*a02  a11*a20*a02
    const Pair terms63 = by12 * row0;  // a21*a12*a00  a12*a20*a01

    // Two sums side by side: of the terms at or above 0, and of the others. To the sum that it does
    // not belong to a term adds 0: that changes nothing, and it saves a branch that a processor
    // could but guess. To take away the negative part of a term is to add the positive part of its
    // negative.
    const Pair pos15 = kx::positive_part(terms15), neg15 = kx::negative_part(terms15);
    const Pair pos24 = kx::positive_part(terms24), neg24 = kx::negative_part(terms24);
    const Pair pos63 = kx::positive_part(terms63), neg63 = kx::negative_part(terms63);
    const Pair sums = kx::firsts(pos15, neg15) + kx::firsts(pos24, neg24) +
                      kx::seconds(pos63, neg63) - kx::seconds(neg24, pos24) -
                      kx::seconds(neg15, pos15) - kx::firsts(neg63, pos63);
    const double pos = first(sums), neg = second(sums);
    const double det = pos + neg;
    if (!(kx::magnitude(det) > 0.0)) {
        return singular; // 0, or a NaN in the block
    }
    const double D = kx::rounded(det);
    if (kx::magnitude(D / (pos - neg)) < 1e-15) {
        return singular;
    }

    const double k = 1.0 / D;
    const Pair plus_minus = kx::pair(k, -k), minus_plus = kx::swapped(plus_minus);
    // The two products of the first element are single; no others are. Where the contract negates a
    // difference, k is negative: the difference the other way round would turn the sign of a zero.
    const Pair singles = kx::rounded(kx::firsts(by22, by12));
    const Pair column0 = kx::with_first(first(singles) - second(singles), by22 - by12);
    const Pair column1 = swapped0 * a22 - swapped2 * a02;
    const Pair column2 = swapped0 * a12 - swapped1 * a02;
    const Pair down = swapped2 * row0; // a21*a00  a20*a01
    const Pair ends = kx::firsts(across, down) - kx::seconds(across, down);
    const Pair corner = swapped1 * row0; // a11*a00  a10*a01
    inverse->column[0] = kx::single(column0 * plus_minus);
    inverse->column[1] = kx::single(column1 * minus_plus);
    inverse->column[2] = kx::single(column2 * plus_minus);
    inverse->row2 = kx::single(ends * plus_minus);
    inverse->corner = kx::single((first(corner) - second(corner)) * k);
    return done;
}

/** The inverse of a transform whose last row is taken as 0 0 0 1. */
int32_t invert_affine(const KXM4 &m, KXM4 *out)
{
    Block block;
    if (invert_block(m, &block) == singular) {
        return singular;
    }
    const Pair end0 = kx::load(&m.m[0][2]), end1 = kx::load(&m.m[1][2]);
    const Pair end2 = kx::load(&m.m[2][2]);
    // The translation is turned back by the block as it is stored.
    const Pair turned = kx::wide(block.column[0]) * both_second(end0) +
                        kx::wide(block.column[1]) * both_second(end1) +
                        kx::wide(block.column[2]) * both_second(end2);
    const Pair terms2 = kx::wide(block.row2) * kx::seconds(end0, end1);
    const double turned2 = first(terms2) + second(terms2) + kx::wide(block.corner) * second(end2);
    kx::store_columns(&out->m[0][0], &out->m[1][0], block.column[0], block.column[1]);
    kx::store_columns(&out->m[0][2], &out->m[1][2], block.column[2],
                      kx::single(kx::negated(turned)));
    kx::store(&out->m[2][0], block.row2);
    out->m[2][2] = block.corner;
    out->m[2][3] = kx::single(-turned2);
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
    const double d = kx::rounded(kx::wide(m.m[3][3]) - 1.0);
    return !(kx::magnitude(kx::wide(m.m[3][0])) >= kx::tolerance ||
             kx::magnitude(kx::wide(m.m[3][1])) >= kx::tolerance ||
             kx::magnitude(kx::wide(m.m[3][2])) >= kx::tolerance ||
             kx::magnitude(d) >= kx::tolerance);
}

} // namespace

int32_t KXM4Inverse(const KXM4 *m, KXM4 *out)
{
    return is_affine(*m) ? invert_affine(*m, out) : kx::invert_by_elimination(*m, out);
}

int32_t KXM3Inverse(const KXM3 *m, KXM3 *out)
{
    Block inverse;
    const int32_t status = invert_block(*m, &inverse);
    if (status == done) {
        kx::store_columns(&out->m[0][0], &out->m[1][0], inverse.column[0], inverse.column[1]);
        kx::store_column(&out->m[0][2], &out->m[1][2], inverse.column[2]);
        kx::store(&out->m[2][0], inverse.row2);
        out->m[2][2] = inverse.corner;
    }
    return status;
}
