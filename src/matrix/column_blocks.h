/*
 * Blocks of points with two or four coordinates, for the kernels: each point is a sum of the
 * matrix's columns, side by side in a vector.
 */
#ifndef KX_MATRIX_COLUMN_BLOCKS_H
#define KX_MATRIX_COLUMN_BLOCKS_H

#include "kxmaths5/types.h"
#include "lanes.h"

namespace
{

using kx::Wide;
using kx::width;
using Every = kx::EveryLane<width>;

/** Every Step lanes the same: elements that lie a stride apart, such as a column of a matrix. */
template <size_t Step, size_t... Lane>
KX_INLINE kx::Lanes<sizeof...(Lane)> repeated(const float *elements, size_t stride,
                                              kx::Sequence<Lane...>)
{
    return kx::Lanes<sizeof...(Lane)>{kx::wide(elements[Lane % Step * stride])...};
}

/** In each group of Step lanes, the one with that number in all of them. */
template <size_t Step, size_t Which, size_t... Lane>
KX_INLINE kx::Lanes<sizeof...(Lane)> spread(kx::Lanes<sizeof...(Lane)> v, kx::Sequence<Lane...>)
{
    return __builtin_shufflevector(v, v, static_cast<int>(Lane / Step * Step + Which)...);
}

/** A point is two lanes: columns of the matrix, each as often as there are points in a vector. */
template <bool Moved>
uint32_t transform_blocks(const KXM3 &m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    if (count == 0) {
        return 0;
    }
    const Wide x_column = repeated<2>(&m.m[0][0], 3, Every());
    const Wide y_column = repeated<2>(&m.m[0][1], 3, Every());
    const Wide translation = repeated<2>(&m.m[0][2], 3, Every());
    constexpr uint32_t points = width / 2;
    uint32_t done = 0;
    for (; count - done >= points; done += points) {
        const Wide p = kx::load<width>(&in[done].x);
        const Wide turned_only = kx::sum_of_products(x_column, spread<2, 0>(p, Every()), y_column,
                                                     spread<2, 1>(p, Every()));
        kx::store<width>(&out[done].x, Moved ? turned_only + translation : turned_only);
    }
    return done;
}

/** A point is two vectors of two lanes. */
[[maybe_unused]] uint32_t transform_blocks(const KXM4 &m, uint32_t count, const KXP4 *in, KXP4 *out,
                                           kx::Sequence<0, 1> every)
{
    if (count == 0) {
        return 0;
    }
    using Pair = kx::Lanes<2>;
    Pair upper[4], lower[4];
    for (int c = 0; c < 4; ++c) {
        upper[c] = repeated<2>(&m.m[0][c], 4, every);
        lower[c] = repeated<2>(&m.m[2][c], 4, every);
    }
    for (uint32_t i = 0; i < count; ++i) {
        const Pair xy = kx::load<2>(&in[i].x), zw = kx::load<2>(&in[i].z);
        const Pair x = spread<2, 0>(xy, every), y = spread<2, 1>(xy, every);
        const Pair z = spread<2, 0>(zw, every), w = spread<2, 1>(zw, every);
        kx::store<2>(&out[i].x,
                     kx::sum_of_products(upper[0], x, upper[1], y, upper[2], z, upper[3], w));
        kx::store<2>(&out[i].z,
                     kx::sum_of_products(lower[0], x, lower[1], y, lower[2], z, lower[3], w));
    }
    return count;
}

/** A point is four lanes of a vector. */
template <size_t... Lane>
uint32_t transform_blocks(const KXM4 &m, uint32_t count, const KXP4 *in, KXP4 *out,
                          kx::Sequence<Lane...> every)
{
    if (count == 0) {
        return 0;
    }
    Wide column[4];
    for (int c = 0; c < 4; ++c) {
        column[c] = repeated<4>(&m.m[0][c], 4, every);
    }
    constexpr uint32_t points = sizeof...(Lane) / 4;
    uint32_t done = 0;
    for (; count - done >= points; done += points) {
        const Wide p = kx::load<width>(&in[done].x);
        kx::store<width>(&out[done].x, kx::sum_of_products(column[0], spread<4, 0>(p, every),
                                                           column[1], spread<4, 1>(p, every),
                                                           column[2], spread<4, 2>(p, every),
                                                           column[3], spread<4, 3>(p, every)));
    }
    return done;
}

uint32_t transform_blocks(const KXM4 &m, uint32_t count, const KXP4 *in, KXP4 *out)
{
    return transform_blocks(m, count, in, out, Every());
}

} // namespace

#endif
