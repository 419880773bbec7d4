/* Determinants, and the test of orthogonality that rests on one. */
#include "kxmaths5/matrix.h"

#include "numeric.h"
#include "simd/two.h"

using namespace kx;

double KXM4Determinant(const KXM4 *m)
{
    const auto e = [m](int r, int c) { return widen(m->m[r][c]); };
    // Neighbours in a row, so that no element has to change its place:
    //     F = m20*m31 - m21*m30    E = m20*m32 - m22*m30    D = m20*m33 - m23*m30
    //     C = m21*m32 - m22*m31    B = m21*m33 - m23*m31    A = m22*m33 - m23*m32
    const Double2 row2 = load2(&m->m[2][0]), row3 = load2(&m->m[3][0]);
    const Double2 row2_middle = load2(&m->m[2][1]), row3_middle = load2(&m->m[3][1]);
    const Double2 row2_end = load2(&m->m[2][2]), row3_end = load2(&m->m[3][2]);
    const double m20 = low(row2), m22 = low(row2_end), m23 = e(2, 3);
    const double m30 = low(row3), m32 = low(row3_end), m33 = e(3, 3);

    // The minors of rows 2 and 3 are singles, so a block with 16777217 in one of them gives
    // 16777216. The 3x3 form below has no such rounding.
    const Double2 FC = round_to_single(row2 * row3_middle - row2_middle * row3);
    const Double2 EB = round_to_single(row2 * row3_end - row2_end * row3);
    const Double2 DA = round_to_single(lanes(m20 * m33 - m23 * m30, m22 * m33 - m23 * m32));

    // The minors of row 0.
    const Double2 row1 = load2(&m->m[1][0]), row1_middle = load2(&m->m[1][1]);
    const Double2 row1_end = load2(&m->m[1][2]);
    const Double2 minors30 = row1 * unpack_high(FC, DA) - row1_middle * EB + row1_end * FC;
    const Double2 minors12 = splat_low(row1) * unpack_high(DA, EB) -
                             swap_lanes(row1_middle) * splat_low(DA) +
                             splat_high(row1_end) * unpack_low(EB, FC);
    const Double2 terms12 = load2(&m->m[0][1]) * minors12;

    return e(0, 0) * high(minors30) - low(terms12) + high(terms12) - e(0, 3) * low(minors30);
}

double KXM3Determinant(const KXM3 *m)
{
    const auto e = [m](int r, int c) { return widen(m->m[r][c]); };
    const double m00 = e(0, 0), m01 = e(0, 1), m02 = e(0, 2);
    const double m10 = e(1, 0), m11 = e(1, 1), m12 = e(1, 2);
    const double m20 = e(2, 0), m21 = e(2, 1), m22 = e(2, 2);

    return m00 * (m11 * m22 - m12 * m21) - m01 * (m10 * m22 - m12 * m20) +
           m02 * (m10 * m21 - m11 * m20);
}

int32_t KXM4IsOrthogonal(const KXM4 *m)
{
    // 1 - 1000 * KX_TOLERANCE and 1 + 1000 * KX_TOLERANCE. The ratio is the squared volume that the
    // columns would span at unit length: it falls as they lean towards each other.
    constexpr double lowest_ratio = 0.9990000000025248;
    constexpr double highest_ratio = 1.0009999999974752;

    const auto squared_length = [m](int c) {
        const double x = widen(m->m[0][c]), y = widen(m->m[1][c]), z = widen(m->m[2][c]);
        return x * x + y * y + z * z;
    };
    const double l0 = squared_length(0);
    const double l1 = squared_length(1);
    const double l2 = squared_length(2);
    // It is the squared length that meets the tolerance.
    if (l0 <= tolerance || l1 <= tolerance || l2 <= tolerance) {
        return 0;
    }
    const double d = KXM4Determinant(m);
    const double ratio = d * d / l0 / l1 / l2;
    return ratio >= lowest_ratio && ratio <= highest_ratio;
}
