/* The inverse of a matrix with perspective. */
#include "kernels.h"

#include "numeric.h"
#include "simd/four.h"

namespace kx
{
namespace
{

bool is_usable(double pivot)
{
    return magnitude(pivot) > tolerance;
}

template <typename Value>
KX_INLINE void swap(Value &a, Value &b)
{
    const Value old = a;
    a = b;
    b = old;
}

/**
 * Gauss-Jordan elimination by columns. Every step that brings the matrix nearer to the unit matrix
 * is done to `result` as well, which starts as the unit matrix and ends as the inverse. With w the
 * matrix so far, stage k is
 *
 *     s = 1/wkk                     column k of both times s
 *     for each column c after k     column c of both less wkc * column k
 *
 * and of w only what is below row k is needed after that.
 *
 * Both hold singles, but for one element: the diagonal element that a stage leaves for the next
 * stays wide for that stage's pivot test, and as its pivot. Products of two elements are exact.
 *
 * No step mixes rows of the result. So an exchange of its columns is followed by the same exchange
 * of its rows, which is undone where they are stored: that leaves the 0 and 1 on and below the
 * diagonal where they were, whatever the pivots. Until stage 2 fills them in they need no rounding,
 * though they do take part: an infinite factor makes them NaN.
 */
class Elimination
{
public:
    KX_INLINE_MEMBER int32_t run(const KXM4 &m)
    {
        KXM4 exchanged;
        const KXM4 *from = &m;
        if (!is_usable(widen(m.m[0][0]))) {
            int pivot = 1;
            while (pivot < 4 && !is_usable(widen(m.m[0][pivot]))) {
                ++pivot;
            }
            if (pivot == 4) {
                return singular;
            }
            exchanged = m;
            for (float(&row)[4] : exchanged.m) {
                swap(row[0], row[pivot]);
            }
            swap(place[0], place[pivot]);
            from = &exchanged;
        }
        return eliminate(*from);
    }

    KX_INLINE_MEMBER void store(KXM4 *out) const
    {
        store_columns(out->m[place[0]], out->m[place[1]], out->m[place[2]], out->m[place[3]],
                      result[0], result[1], result[2], result[3]);
    }

private:
    /** From the first stage's elimination on. */
    KX_INLINE_MEMBER int32_t eliminate(const KXM4 &m)
    {
        const Double2 one = splat2(1.0);
        const Double2 row0 = load2(m.m[0]), row0_end = load2(m.m[0] + 2);
        const Double2 row1 = load2(m.m[1]), row2 = load2(m.m[2]), row3 = load2(m.m[3]);
        Double2 row1_end = load2(m.m[1] + 2);
        const Double2 row2_end = load2(m.m[2] + 2), row3_end = load2(m.m[3] + 2);

        // Stage 0.
        Double2 s = one / splat_low(row0);
        const Double2 w01 = splat_high(row0), w02 = splat_low(row0_end), w03 = splat_high(row0_end);
        const Double2 w10 = round_to_single(splat_low(row1) * s);
        Double2 pivot = subtract_exact_product(splat_high(row1), w01, w10); // w11, wide
        row1_end = round_to_single(subtract_exact_product(row1_end, row0_end, w10));
        rows23[0] = round_to_single(unpack_low(row2, row3) * s);
        rows23[1] = unpack_high(row2, row3);
        rows23[2] = unpack_low(row2_end, row3_end);
        rows23[3] = unpack_high(row2_end, row3_end);
        reduce<0>(rows23, w01, w02, w03);
        result[0] = round_rows01(result[0] * twice(s));
        reduce_rows01<0>(w01, w02, w03);

        if (!is_usable(low(pivot))) {
            // What leaves the diagonal becomes single.
            const Double2 left = round_to_single(pivot);
            if (is_usable(low(row1_end))) {
                pivot = splat_low(row1_end);
                row1_end = low_and_high(left, row1_end);
                exchange<1, 2>();
            } else if (is_usable(high(row1_end))) {
                pivot = splat_high(row1_end);
                row1_end = unpack_low(row1_end, left);
                exchange<1, 3>();
            } else {
                return singular;
            }
        }

        // Stage 1.
        s = one / pivot;
        const Double2 w12 = splat_low(row1_end), w13 = splat_high(row1_end);
        rows23[1] = round_to_single(rows23[1] * s);
        // w22 stays wide, and w32 is rounded where it is read.
        rows23[2] = subtract_exact_product(rows23[2], w12, rows23[1]);
        rows23[3] = round_to_single(subtract_exact_product(rows23[3], w13, rows23[1]));
        result[1] = round_rows01(result[1] * twice(s));
        reduce_rows01<1>(w12, w13);

        if (!is_usable(low(rows23[2]))) {
            if (!is_usable(low(rows23[3]))) {
                return singular;
            }
            rows23[2] = round_to_single(rows23[2]);
            exchange<2, 3>();
        }

        // Stage 2.
        s = one / splat_low(rows23[2]);
        const Double2 w23 = splat_low(rows23[3]);
        const Double2 w32 = round_to_single(round_to_single(splat_high(rows23[2])) * s);
        pivot = subtract_exact_product(splat_high(rows23[3]), w23, w32); // w33, wide
        result[2] = round_to_single(result[2] * twice(s));
        reduce<2>(result, twice(w23));
        if (!is_usable(low(pivot))) {
            return singular;
        }

        // Stage 3.
        s = one / pivot;
        result[3] = round_to_single(result[3] * twice(s));

        // What is below the diagonal, row by row: out of column c wrc times column r.
        rows23[0] = round_to_single(subtract_exact_product(rows23[0], w10, rows23[1]));
        result[0] = round_rows01(subtract_exact_product(result[0], twice(w10), result[1]));

        const Double2 w20_w21 = unpack_low(rows23[0], rows23[1]);
        const Double2 w20 = splat_low(w20_w21), w21 = splat_high(w20_w21);
        const Double2 w30_w31 = round_to_single(
            subtract_exact_product(unpack_high(rows23[0], rows23[1]), w20_w21, w32));
        const Double2 w30 = splat_low(w30_w31), w31 = splat_high(w30_w31);
        result[0] = round_to_single(subtract_exact_product(result[0], twice(w20), result[2]));
        result[1] = round_to_single(subtract_exact_product(result[1], twice(w21), result[2]));

        // The last step of each column is rounded as it is stored.
        result[0] = subtract_exact_product(result[0], twice(w30), result[3]);
        result[1] = subtract_exact_product(result[1], twice(w31), result[3]);
        result[2] = subtract_exact_product(result[2], twice(w32), result[3]);
        return done;
    }

    /** Each later column less its factor times column K. */
    template <int K, typename Vector, typename... Factor>
    KX_INLINE void reduce(Vector (&column)[4], Factor... factor)
    {
        int c = K;
        ((++c, column[c] = round_to_single(subtract_exact_product(column[c], factor, column[K]))),
         ...);
    }
    template <int K, typename... Factor>
    KX_INLINE_MEMBER void reduce_rows01(Factor... factor)
    {
        int c = K;
        ((++c,
          result[c] = round_rows01(subtract_exact_product(result[c], twice(factor), result[K]))),
         ...);
    }

    /** Of rows 2 and 3, which hold 0, 1 or NaN, none changes; with two lanes that saves work. */
    KX_INLINE Double4 round_rows01(Double4 column)
    {
#if KX_HAS_DOUBLE4
        return round_to_single(column);
#else
        return join(round_to_single(low_half(column)), high_half(column));
#endif
    }

    template <int A, int B>
    KX_INLINE Double4 exchange_rows(Double4 v)
    {
        constexpr auto from = [](int row) { return row == A ? B : row == B ? A : row; };
        return permute<from(0), from(1), from(2), from(3)>(v);
    }
    template <int A, int B>
    KX_INLINE_MEMBER void exchange()
    {
        swap(rows23[A], rows23[B]);
        swap(result[A], result[B]);
        // Column 0 has nothing to exchange: up to the end its rows below the first are alike.
        result[1] = exchange_rows<A, B>(result[1]);
        result[2] = exchange_rows<A, B>(result[2]);
        result[3] = exchange_rows<A, B>(result[3]);
        swap(place[A], place[B]);
    }

    /** Rows 2 and 3 of each column of the matrix. */
    Double2 rows23[4];
    Double4 result[4] = {lanes(1.0, 0.0, 0.0, 0.0), lanes(0.0, 1.0, 0.0, 0.0),
                         lanes(0.0, 0.0, 1.0, 0.0), lanes(0.0, 0.0, 0.0, 1.0)};
    /** Where the rows of the result belong. */
    int place[4] = {0, 1, 2, 3};
};

} // namespace

namespace KX_INSTRUCTION_SET
{

int32_t inverse_by_elimination(const KXM4 *m, KXM4 *out)
{
    Elimination elimination;
    const int32_t status = elimination.run(*m);
    elimination.store(out);
    return status;
}

} // namespace KX_INSTRUCTION_SET
} // namespace kx
