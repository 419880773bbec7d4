/*
 * Determinants, and the test of orthogonality that rests on one. That of a KXM4 is in
 * kernels/determinant.cpp.
 */
#include "kxmaths5/matrix.h"

#include "kernels.h"
#include "numeric.h"

using namespace kx;

double KXM4Determinant(const KXM4 *m)
{
    return KX_DISPATCH(determinant(m));
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
    // The squared length is compared with the tolerance.
    if (l0 <= tolerance || l1 <= tolerance || l2 <= tolerance) {
        return 0;
    }
    const double d = KXM4Determinant(m);
    const double ratio = d * d / l0 / l1 / l2;
    return ratio >= lowest_ratio && ratio <= highest_ratio;
}
