/* Inversion: cofactors for affine transforms, an elimination for everything else. */
#include "kxmaths5/matrix.h"

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

bool is_usable(double pivot)
{
    return kx::magnitude(pivot) > kx::tolerance;
}

/**
 * Gauss-Jordan elimination by columns. Every step that brings `work` nearer to the unit matrix is
 * done to `result` as well, which starts as the unit matrix and ends as the inverse.
 *
 * Both hold singles, but for one element: the diagonal element that a stage's elimination leaves
 * for the next stays wide for that stage's pivot test, and as its pivot.
 *
 * No step mixes rows of the result. So an exchange of its columns is followed by the same exchange
 * of its rows, which is undone where they are stored: that leaves the 0 and 1 on and below the
 * diagonal where they were, whatever the pivots. Until the second half fills them in they need no
 * rounding, though they do take part: an infinite factor makes them NaN.
 *
 * The products of all steps are of two singles and hence exact, so that to subtract one is to add
 * its negative, in every rounding mode.
 */
class Elimination
{
public:
    int32_t run(const KXM4 &m)
    {
        KXM4 exchanged;
        const KXM4 *from = &m;
        if (!is_usable(kx::wide(m.m[0][0]))) {
            const int pivot = is_usable(kx::wide(m.m[0][1]))   ? 1
                              : is_usable(kx::wide(m.m[0][2])) ? 2
                              : is_usable(kx::wide(m.m[0][3])) ? 3
                                                               : 0;
            if (pivot == 0) {
                return singular;
            }
            exchanged = m;
            for (float(&row)[4] : exchanged.m) {
                const float w = row[0];
                row[0] = row[pivot];
                row[pivot] = w;
            }
            exchange_places(0, pivot);
            from = &exchanged;
        }
        return eliminate(*from);
    }

    void store(KXM4 *out) const
    {
        float *const row0 = out->m[place[0]], *const row1 = out->m[place[1]];
        float *const row2 = out->m[place[2]], *const row3 = out->m[place[3]];
        kx::store_columns(row0, row1, kx::single(top[0]), kx::single(top[1]));
        kx::store_columns(row0 + 2, row1 + 2, kx::single(top[2]), kx::single(top[3]));
        kx::store_columns(row2, row3, kx::single(bottom[0]), kx::single(bottom[1]));
        kx::store_columns(row2 + 2, row3 + 2, kx::single(bottom[2]), kx::single(bottom[3]));
    }

private:
    /** From the first stage's elimination on. */
    int32_t eliminate(const KXM4 &m)
    {
        const Pair row0 = kx::load(&m.m[0][0]), row0_end = kx::load(&m.m[0][2]);
        const Pair row1 = kx::load(&m.m[1][0]);
        Pair row1_end = kx::load(&m.m[1][2]);
        const Pair row2 = kx::load(&m.m[2][0]), row2_end = kx::load(&m.m[2][2]);
        const Pair row3 = kx::load(&m.m[3][0]), row3_end = kx::load(&m.m[3][2]);
        const Pair one = both(1.0);

        Pair s = one / both_first(row0);
        const Pair w10 = kx::rounded(both_first(row1) * s);
        const Pair w01 = both_second(row0), w02 = both_first(row0_end), w03 = both_second(row0_end);
        Pair pivot = both_second(row1) - w01 * w10; // stays wide
        row1_end = kx::rounded(row1_end - row0_end * w10);
        low[0] = kx::rounded(kx::firsts(row2, row3) * s);
        low[1] = kx::rounded(kx::seconds(row2, row3) - w01 * low[0]);
        low[2] = kx::rounded(kx::firsts(row2_end, row3_end) - w02 * low[0]);
        low[3] = kx::rounded(kx::seconds(row2_end, row3_end) - w03 * low[0]);
        top[0] = kx::rounded(top[0] * s);
        top[1] = kx::rounded(top[1] - w01 * top[0]);
        top[2] = kx::rounded(top[2] - w02 * top[0]);
        top[3] = kx::rounded(top[3] - w03 * top[0]);
        bottom[0] = bottom[0] * s;
        bottom[1] = bottom[1] - w01 * bottom[0];
        bottom[2] = bottom[2] - w02 * bottom[0];
        bottom[3] = bottom[3] - w03 * bottom[0];

        if (!is_usable(first(pivot))) {
            // What leaves the diagonal becomes single.
            const Pair left = kx::rounded(pivot);
            if (is_usable(first(row1_end))) {
                pivot = both_first(row1_end);
                row1_end = kx::pair(first(left), second(row1_end));
                exchange(1, 2);
            } else if (is_usable(second(row1_end))) {
                pivot = both_second(row1_end);
                row1_end = kx::pair(first(row1_end), first(left));
                exchange(1, 3);
            } else {
                return singular;
            }
        }
        const Pair w12 = both_first(row1_end), w13 = both_second(row1_end);
        s = one / pivot;
        low[1] = kx::rounded(low[1] * s);
        low[2] = low[2] - w12 * low[1]; // the pivot stays wide; w32 is rounded where it is read
        low[3] = kx::rounded(low[3] - w13 * low[1]);
        top[1] = kx::rounded(top[1] * s);
        top[2] = kx::rounded(top[2] - w12 * top[1]);
        top[3] = kx::rounded(top[3] - w13 * top[1]);
        bottom[1] = bottom[1] * s;
        bottom[2] = bottom[2] - w12 * bottom[1];
        bottom[3] = bottom[3] - w13 * bottom[1];

        if (!is_usable(first(low[2]))) {
            if (!is_usable(first(low[3]))) {
                return singular;
            }
            low[2] = kx::rounded(low[2]);
            exchange(2, 3);
        }
        s = one / both_first(low[2]);
        const Pair w32 = kx::rounded(kx::rounded(both_second(low[2])) * s);
        const Pair w23 = both_first(low[3]);
        pivot = both_second(low[3]) - w23 * w32; // wide
        top[2] = kx::rounded(top[2] * s);
        top[3] = kx::rounded(top[3] - w23 * top[2]);
        bottom[2] = kx::rounded(bottom[2] * s);
        bottom[3] = kx::rounded(bottom[3] - w23 * bottom[2]);

        if (!is_usable(first(pivot))) {
            return singular;
        }
        s = one / pivot;
        top[3] = kx::rounded(top[3] * s);
        bottom[3] = kx::rounded(bottom[3] * s);
        substitute_back(w10, w32);
        return done;
    }

    /** What is below the diagonal of work, row by row from row 1 on. */
    void substitute_back(Pair w10, Pair w32)
    {
        low[0] = kx::rounded(low[0] - w10 * low[1]);
        top[0] = kx::rounded(top[0] - w10 * top[1]);
        bottom[0] = bottom[0] - w10 * bottom[1];

        const Pair w2 = kx::firsts(low[0], low[1]); // w20 and w21
        const Pair w3 = kx::rounded(kx::seconds(low[0], low[1]) - w2 * w32);
        top[0] = kx::rounded(top[0] - both_first(w2) * top[2]);
        top[1] = kx::rounded(top[1] - both_second(w2) * top[2]);
        bottom[0] = kx::rounded(bottom[0] - both_first(w2) * bottom[2]);
        bottom[1] = kx::rounded(bottom[1] - both_second(w2) * bottom[2]);

        // The last step of each column is rounded as it is stored.
        top[0] = top[0] - both_first(w3) * top[3];
        top[1] = top[1] - both_second(w3) * top[3];
        top[2] = top[2] - w32 * top[3];
        bottom[0] = bottom[0] - both_first(w3) * bottom[3];
        bottom[1] = bottom[1] - both_second(w3) * bottom[3];
        bottom[2] = bottom[2] - w32 * bottom[3];
    }

    void exchange(int stage, int column)
    {
        // On a copy: what a variable index reaches could not stay in registers.
        Elimination copy = *this;
        exchange_pairs(copy.low, stage, column);
        exchange_pairs(copy.top, stage, column);
        exchange_pairs(copy.bottom, stage, column);
        for (int c = 0; c < 4; ++c) {
            double rows[4] = {first(copy.top[c]), second(copy.top[c]), first(copy.bottom[c]),
                              second(copy.bottom[c])};
            const double o = rows[stage];
            rows[stage] = rows[column];
            rows[column] = o;
            copy.top[c] = kx::pair(rows[0], rows[1]);
            copy.bottom[c] = kx::pair(rows[2], rows[3]);
        }
        copy.exchange_places(stage, column);
        *this = copy;
    }

    static void exchange_pairs(Pair (&pairs)[4], int stage, int column)
    {
        const Pair p = pairs[stage];
        pairs[stage] = pairs[column];
        pairs[column] = p;
    }

    void exchange_places(int stage, int row)
    {
        const int p = place[stage];
        place[stage] = place[row];
        place[row] = p;
    }

    /** Rows 2 and 3 of each column of work. */
    Pair low[4] = {both(0.0), both(0.0), both(0.0), both(0.0)};
    /** Rows 0 and 1, and 2 and 3, of each column of the result. */
    Pair top[4] = {kx::pair(1.0, 0.0), kx::pair(0.0, 1.0), both(0.0), both(0.0)};
    Pair bottom[4] = {both(0.0), both(0.0), kx::pair(1.0, 0.0), kx::pair(0.0, 1.0)};
    /** Where the rows of the result belong. */
    int place[4] = {0, 1, 2, 3};
};

int32_t invert_general(const KXM4 &m, KXM4 *out)
{
    Elimination elimination;
    const int32_t status = elimination.run(m);
    elimination.store(out);
    return status;
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
    return is_affine(*m) ? invert_affine(*m, out) : invert_general(*m, out);
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
