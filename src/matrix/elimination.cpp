#include "matrix/elimination.h"

#include "numeric.h"
#include "simd/two.h"

using namespace kx;

namespace
{

constexpr int32_t done = 0;
constexpr int32_t singular = 1;

bool is_usable(double pivot)
{
    return magnitude(pivot) > tolerance;
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
        if (!is_usable(widen(m.m[0][0]))) {
            const int pivot = is_usable(widen(m.m[0][1]))   ? 1
                              : is_usable(widen(m.m[0][2])) ? 2
                              : is_usable(widen(m.m[0][3])) ? 3
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
        store_columns(row0, row1, narrow(top[0]), narrow(top[1]));
        store_columns(row0 + 2, row1 + 2, narrow(top[2]), narrow(top[3]));
        store_columns(row2, row3, narrow(bottom[0]), narrow(bottom[1]));
        store_columns(row2 + 2, row3 + 2, narrow(bottom[2]), narrow(bottom[3]));
    }

private:
    /** From the first stage's elimination on. */
    int32_t eliminate(const KXM4 &m)
    {
        const Double2 row0 = load2(&m.m[0][0]), row0_end = load2(&m.m[0][2]);
        const Double2 row1 = load2(&m.m[1][0]);
        Double2 row1_end = load2(&m.m[1][2]);
        const Double2 row2 = load2(&m.m[2][0]), row2_end = load2(&m.m[2][2]);
        const Double2 row3 = load2(&m.m[3][0]), row3_end = load2(&m.m[3][2]);
        const Double2 one = splat2(1.0);

        Double2 s = one / splat_low(row0);
        const Double2 w10 = round_to_single(splat_low(row1) * s);
        const Double2 w01 = splat_high(row0), w02 = splat_low(row0_end), w03 = splat_high(row0_end);
        Double2 pivot = splat_high(row1) - w01 * w10; // stays wide
        row1_end = round_to_single(row1_end - row0_end * w10);
        lower[0] = round_to_single(unpack_low(row2, row3) * s);
        lower[1] = round_to_single(unpack_high(row2, row3) - w01 * lower[0]);
        lower[2] = round_to_single(unpack_low(row2_end, row3_end) - w02 * lower[0]);
        lower[3] = round_to_single(unpack_high(row2_end, row3_end) - w03 * lower[0]);
        top[0] = round_to_single(top[0] * s);
        top[1] = round_to_single(top[1] - w01 * top[0]);
        top[2] = round_to_single(top[2] - w02 * top[0]);
        top[3] = round_to_single(top[3] - w03 * top[0]);
        bottom[0] = bottom[0] * s;
        bottom[1] = bottom[1] - w01 * bottom[0];
        bottom[2] = bottom[2] - w02 * bottom[0];
        bottom[3] = bottom[3] - w03 * bottom[0];

        if (!is_usable(low(pivot))) {
            // What leaves the diagonal becomes single.
            const Double2 left = round_to_single(pivot);
            if (is_usable(low(row1_end))) {
                pivot = splat_low(row1_end);
                row1_end = lanes(low(left), high(row1_end));
                exchange(1, 2);
            } else if (is_usable(high(row1_end))) {
                pivot = splat_high(row1_end);
                row1_end = lanes(low(row1_end), low(left));
                exchange(1, 3);
            } else {
                return singular;
            }
        }
        const Double2 w12 = splat_low(row1_end), w13 = splat_high(row1_end);
        s = one / pivot;
        lower[1] = round_to_single(lower[1] * s);
        lower[2] =
            lower[2] - w12 * lower[1]; // the pivot stays wide; w32 is rounded where it is read
        lower[3] = round_to_single(lower[3] - w13 * lower[1]);
        top[1] = round_to_single(top[1] * s);
        top[2] = round_to_single(top[2] - w12 * top[1]);
        top[3] = round_to_single(top[3] - w13 * top[1]);
        bottom[1] = bottom[1] * s;
        bottom[2] = bottom[2] - w12 * bottom[1];
        bottom[3] = bottom[3] - w13 * bottom[1];

        if (!is_usable(low(lower[2]))) {
            if (!is_usable(low(lower[3]))) {
                return singular;
            }
            lower[2] = round_to_single(lower[2]);
            exchange(2, 3);
        }
        s = one / splat_low(lower[2]);
        const Double2 w32 = round_to_single(round_to_single(splat_high(lower[2])) * s);
        const Double2 w23 = splat_low(lower[3]);
        pivot = splat_high(lower[3]) - w23 * w32; // wide
        top[2] = round_to_single(top[2] * s);
        top[3] = round_to_single(top[3] - w23 * top[2]);
        bottom[2] = round_to_single(bottom[2] * s);
        bottom[3] = round_to_single(bottom[3] - w23 * bottom[2]);

        if (!is_usable(low(pivot))) {
            return singular;
        }
        s = one / pivot;
        top[3] = round_to_single(top[3] * s);
        bottom[3] = round_to_single(bottom[3] * s);
        substitute_back(w10, w32);
        return done;
    }

    /** What is below the diagonal of work, row by row from row 1 on. */
    void substitute_back(Double2 w10, Double2 w32)
    {
        lower[0] = round_to_single(lower[0] - w10 * lower[1]);
        top[0] = round_to_single(top[0] - w10 * top[1]);
        bottom[0] = bottom[0] - w10 * bottom[1];

        const Double2 w2 = unpack_low(lower[0], lower[1]); // w20 and w21
        const Double2 w3 = round_to_single(unpack_high(lower[0], lower[1]) - w2 * w32);
        top[0] = round_to_single(top[0] - splat_low(w2) * top[2]);
        top[1] = round_to_single(top[1] - splat_high(w2) * top[2]);
        bottom[0] = round_to_single(bottom[0] - splat_low(w2) * bottom[2]);
        bottom[1] = round_to_single(bottom[1] - splat_high(w2) * bottom[2]);

        // The last step of each column is rounded as it is stored.
        top[0] = top[0] - splat_low(w3) * top[3];
        top[1] = top[1] - splat_high(w3) * top[3];
        top[2] = top[2] - w32 * top[3];
        bottom[0] = bottom[0] - splat_low(w3) * bottom[3];
        bottom[1] = bottom[1] - splat_high(w3) * bottom[3];
        bottom[2] = bottom[2] - w32 * bottom[3];
    }

    void exchange(int stage, int column)
    {
        // On a copy: what a variable index reaches could not stay in registers.
        Elimination copy = *this;
        exchange_pairs(copy.lower, stage, column);
        exchange_pairs(copy.top, stage, column);
        exchange_pairs(copy.bottom, stage, column);
        for (int c = 0; c < 4; ++c) {
            double rows[4] = {low(copy.top[c]), high(copy.top[c]), low(copy.bottom[c]),
                              high(copy.bottom[c])};
            const double o = rows[stage];
            rows[stage] = rows[column];
            rows[column] = o;
            copy.top[c] = lanes(rows[0], rows[1]);
            copy.bottom[c] = lanes(rows[2], rows[3]);
        }
        copy.exchange_places(stage, column);
        *this = copy;
    }

    static void exchange_pairs(Double2 (&pairs)[4], int stage, int column)
    {
        const Double2 p = pairs[stage];
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
    Double2 lower[4] = {splat2(0.0), splat2(0.0), splat2(0.0), splat2(0.0)};
    /** Rows 0 and 1, and 2 and 3, of each column of the result. */
    Double2 top[4] = {lanes(1.0, 0.0), lanes(0.0, 1.0), splat2(0.0), splat2(0.0)};
    Double2 bottom[4] = {splat2(0.0), splat2(0.0), lanes(1.0, 0.0), lanes(0.0, 1.0)};
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
