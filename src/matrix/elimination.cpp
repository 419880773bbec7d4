#include "matrix/elimination.h"

#include "numeric.h"
#include "pair.h"

namespace
{

using kx::both;
using kx::both_first;
using kx::both_second;
using kx::first;
using kx::Pair;
using kx::second;

constexpr int32_t done = 0;
constexpr int32_t singular = 1;

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

} // namespace

namespace kx
{

int32_t invert_by_elimination(const KXM4 &m, KXM4 *out)
{
    Elimination elimination;
    const int32_t status = elimination.run(m);
    elimination.store(out);
    return status;
}

} // namespace kx
