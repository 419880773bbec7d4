/*
 * The product of two matrices, and of a matrix and a point.
 *
 * All of it is static, since the kernels use it too, and the linker must never take a copy that was
 * compiled for one instruction set for another's.
 */
#ifndef KX_MATRIX_FORMS_H
#define KX_MATRIX_FORMS_H

#include "kxmaths5/types.h"
#include "numeric.h"
#include "simd/two.h"

namespace kx
{

/**
 * out = a*b over the upper-left Size x Size block; nothing else of out is written.
 *
 * out may be a, since a row of a is read whole before that row of out is stored and no later row
 * needs it. out may be b, which is then copied first.
 */
template <int Size, typename Matrix>
static inline void multiply(const Matrix *a, const Matrix *b, Matrix *out)
{
    Matrix copy;
    if (out == b) {
        copy = *b;
        b = &copy;
    }
    for (int r = 0; r < Size; ++r) {
        double row[Size];
        for (int k = 0; k < Size; ++k) {
            row[k] = widen(a->m[r][k]);
        }
        for (int c = 0; c < Size; ++c) {
            // The sum starts with its first product: starting at 0 would lose a sum of -0.
            double sum = row[0] * widen(b->m[0][c]);
            for (int k = 1; k < Size; ++k) {
                sum += row[k] * widen(b->m[k][c]);
            }
            out->m[r][c] = narrow(sum);
        }
    }
}

/*
 * One point by one matrix. Each returns the whole result, so every coordinate of the point is read
 * before the first is stored, and a point may be transformed in place.
 */

static inline KXP2 direction(const KXM3 &m, const KXP2 &p)
{
    const double x = widen(p.x), y = widen(p.y);
    const auto coordinate = [&](int r) {
        return narrow(widen(m.m[r][0]) * x + widen(m.m[r][1]) * y);
    };
    return {coordinate(0), coordinate(1)};
}

static inline KXP2 position(const KXM3 &m, const KXP2 &p)
{
    const double x = widen(p.x), y = widen(p.y);
    const auto coordinate = [&](int r) {
        return narrow(widen(m.m[r][0]) * x + widen(m.m[r][1]) * y + widen(m.m[r][2]));
    };
    return {coordinate(0), coordinate(1)};
}

/**
 * Two floats are widened at a time, and rows 0 and 1 are added next to each other: a fifth less
 * time. A product with 1 changes nothing.
 */
template <bool Moved>
static inline KXP3 transformed(const KXM4 &m, const KXP3 &p)
{
    const Double2 xy = load2(&p.x), z1 = lanes(widen(p.z), 1.0);
    // Of columns 0 and 1, and of columns 2 and 3.
    const Double2 a = load2(&m.m[0][0]) * xy, a_end = load2(&m.m[0][2]) * z1;
    const Double2 b = load2(&m.m[1][0]) * xy, b_end = load2(&m.m[1][2]) * z1;
    const Double2 c = load2(&m.m[2][0]) * xy, c_end = load2(&m.m[2][2]) * z1;

    Double2 x_y = unpack_low(a, b) + unpack_high(a, b) + unpack_low(a_end, b_end);
    double z = low(c) + high(c) + low(c_end);
    if (Moved) {
        x_y = x_y + unpack_high(a_end, b_end);
        z = z + high(c_end);
    }
    KXP3 image;
    store(&image.x, narrow(x_y));
    image.z = narrow(z);
    return image;
}

static inline KXP3 direction(const KXM4 &m, const KXP3 &p)
{
    return transformed<false>(m, p);
}

static inline KXP3 position(const KXM4 &m, const KXP3 &p)
{
    return transformed<true>(m, p);
}

static inline KXP4 homogeneous(const KXM4 &m, const KXP4 &p)
{
    const double x = widen(p.x), y = widen(p.y), z = widen(p.z), w = widen(p.w);
    const auto coordinate = [&](int r) {
        return narrow(widen(m.m[r][0]) * x + widen(m.m[r][1]) * y + widen(m.m[r][2]) * z +
                      widen(m.m[r][3]) * w);
    };
    return {coordinate(0), coordinate(1), coordinate(2), coordinate(3)};
}

} // namespace kx

#endif
