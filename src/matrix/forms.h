/*
 * One matrix by another, and one point by a matrix.
 *
 * All of it is static, since the kernels use it too, and a copy that was compiled for one
 * instruction set must never be linked into another's place.
 */
#ifndef KX_MATRIX_FORMS_H
#define KX_MATRIX_FORMS_H

#include "kxmaths5/types.h"
#include "numeric.h"
#include "pair.h"

namespace kx
{

/**
 * out = a*b over the upper-left Size x Size block; nothing else of out is written.
 *
 * out may be a, since a row of a is read whole before that row of out is stored and no later row
 * needs it. out may be b, since b is copied then.
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
            row[k] = kx::wide(a->m[r][k]);
        }
        for (int c = 0; c < Size; ++c) {
            // The sum starts with its first product: a start at 0 would lose a sum of -0.
            double sum = row[0] * kx::wide(b->m[0][c]);
            for (int k = 1; k < Size; ++k) {
                sum += row[k] * kx::wide(b->m[k][c]);
            }
            out->m[r][c] = kx::single(sum);
        }
    }
}

/*
 * One point through one matrix. Each returns the whole image, so every coordinate of the point has
 * been read before the first is stored and a point may be transformed in place.
 */

static inline KXP2 direction(const KXM3 &m, const KXP2 &p)
{
    const double x = kx::wide(p.x), y = kx::wide(p.y);
    const auto coordinate = [&](int r) {
        return kx::single(kx::wide(m.m[r][0]) * x + kx::wide(m.m[r][1]) * y);
    };
    return {coordinate(0), coordinate(1)};
}

static inline KXP2 position(const KXM3 &m, const KXP2 &p)
{
    const double x = kx::wide(p.x), y = kx::wide(p.y);
    const auto coordinate = [&](int r) {
        return kx::single(kx::wide(m.m[r][0]) * x + kx::wide(m.m[r][1]) * y + kx::wide(m.m[r][2]));
    };
    return {coordinate(0), coordinate(1)};
}

/**
 * Two floats are widened at a time, and rows 0 and 1 are added up side by side: a fifth less time.
 * A product with 1 changes nothing.
 */
template <bool Moved>
static inline KXP3 transformed(const KXM4 &m, const KXP3 &p)
{
    const Pair xy = load(&p.x), z1 = pair(wide(p.z), 1.0);
    // Of columns 0 and 1, and of columns 2 and 3.
    const Pair a = load(&m.m[0][0]) * xy, a_end = load(&m.m[0][2]) * z1;
    const Pair b = load(&m.m[1][0]) * xy, b_end = load(&m.m[1][2]) * z1;
    const Pair c = load(&m.m[2][0]) * xy, c_end = load(&m.m[2][2]) * z1;

    Pair x_y = firsts(a, b) + seconds(a, b) + firsts(a_end, b_end);
    double z = first(c) + second(c) + first(c_end);
    if (Moved) {
        x_y = x_y + seconds(a_end, b_end);
        z = z + second(c_end);
    }
    KXP3 image;
    store(&image.x, single(x_y));
    image.z = single(z);
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
    const double x = kx::wide(p.x), y = kx::wide(p.y), z = kx::wide(p.z), w = kx::wide(p.w);
    const auto coordinate = [&](int r) {
        return kx::single(kx::wide(m.m[r][0]) * x + kx::wide(m.m[r][1]) * y +
                          kx::wide(m.m[r][2]) * z + kx::wide(m.m[r][3]) * w);
    };
    return {coordinate(0), coordinate(1), coordinate(2), coordinate(3)};
}

} // namespace kx

#endif
