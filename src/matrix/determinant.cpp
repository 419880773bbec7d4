/* Determinants, and the test of orthogonality that rests on one. */
#include "kxmaths5/matrix.h"

#include "numeric.h"
#include "pair.h"

double KXM4Determinant(const KXM4 *m)
{
    const auto e = [m](int r, int c) { return kx::wide(m->m[r][c]); };
    // Neighbours in a row, so that no element has to change its place:
    //     F = m20*m31 - m21*m30    E = m20*m32 - m22*m30    D = m20*m33 - m23*m30
    //     C = m21*m32 - m22*m31    B = m21*m33 - m23*m31    A = m22*m33 - m23*m32
    const kx::Pair row2 = kx::load(&m->m[2][0]), row3 = kx::load(&m->m[3][0]);
    const kx::Pair row2_middle = kx::load(&m->m[2][1]), row3_middle = kx::load(&m->m[3][1]);
    const kx::Pair row2_end = kx::load(&m->m[2][2]), row3_end = kx::load(&m->m[3][2]);
    const double m20 = kx::first(row2), m22 = kx::first(row2_end), m23 = e(2, 3);
    const double m30 = kx::first(row3), m32 = kx::first(row3_end), m33 = e(3, 3);

    // The minors of rows 2 and 3 are singles, so a block with 16777217 in one of them gives
    // 16777216. The 3x3 form below has no such rounding.
    const kx::Pair FC = kx::rounded(row2 * row3_middle - row2_middle * row3);
    const kx::Pair EB = kx::rounded(row2 * row3_end - row2_end * row3);
    const kx::Pair DA = kx::rounded(kx::pair(m20 * m33 - m23 * m30, m22 * m33 - m23 * m32));

    // The minors of row 0.
    const kx::Pair row1 = kx::load(&m->m[1][0]), row1_middle = kx::load(&m->m[1][1]);
    const kx::Pair row1_end = kx::load(&m->m[1][2]);
    const kx::Pair minors30 = row1 * kx::seconds(FC, DA) - row1_middle * EB + row1_end * FC;
    const kx::Pair minors12 = kx::both_first(row1) * kx::seconds(DA, EB) -
                              kx::swapped(row1_middle) * kx::both_first(DA) +
                              kx::both_second(row1_end) * kx::firsts(EB, FC);
    const kx::Pair terms12 = kx::load(&m->m[0][1]) * minors12;

    return e(0, 0) * kx::second(minors30) - kx::first(terms12) + kx::second(terms12) -
           e(0, 3) * kx::first(minors30);
}

double KXM3Determinant(const KXM3 *m)
{
    const auto e = [m](int r, int c) { return kx::wide(m->m[r][c]); };
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
        const double x = kx::wide(m->m[0][c]), y = kx::wide(m->m[1][c]), z = kx::wide(m->m[2][c]);
        return x * x + y * y + z * z;
    };
    const double l0 = squared_length(0);
    const double l1 = squared_length(1);
    const double l2 = squared_length(2);
    // It is the squared length that meets the tolerance.
    if (l0 <= kx::tolerance || l1 <= kx::tolerance || l2 <= kx::tolerance) {
        return 0;
    }
    const double d = KXM4Determinant(m);
    const double ratio = d * d / l0 / l1 / l2;
    return ratio >= lowest_ratio && ratio <= highest_ratio;
}
