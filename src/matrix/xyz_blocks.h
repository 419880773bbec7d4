/*
 * Blocks of points with three coordinates, for the kernels: as many points at a time as a vector
 * has lanes.
 */
#ifndef KX_MATRIX_XYZ_BLOCKS_H
#define KX_MATRIX_XYZ_BLOCKS_H

#include "kxmaths5/types.h"
#include "lanes.h"

namespace
{

using kx::Wide;
using kx::width;
using Every = kx::EveryLane<width>;

/*
 * Packed points of three coordinates. Three vectors, read one after the other, hold as many points
 * as a vector has lanes. Since 3 and the width have no common factor, the x of those points lie in
 * lanes that are all different, whichever vector they are in: x, and likewise y and z, come out of
 * the three by choosing lanes, with nothing moved. The y stand one lane further on than the x of
 * the same point, and the z two lanes; turning them back puts the coordinates of a point side by
 * side.
 */
struct Triple {
    Wide first, second, third;
};

/** Whether the float in a lane of the vector with that number is that coordinate of its point. */
constexpr bool holds(size_t vector, size_t lane, size_t coordinate)
{
    return (width * vector + lane) % 3 == coordinate;
}

/** All lanes, the one with the number given first. */
template <size_t First, size_t... Lane>
KX_INLINE Wide turned(Wide v, kx::Sequence<Lane...>)
{
    return __builtin_shufflevector(v, v, static_cast<int>((Lane + First) % width)...);
}

/**
 * With AVX-512 a shuffle of two vectors costs the same whatever it does, so there the choice turns
 * as well.
 */
template <size_t Coordinate, size_t... Lane>
KX_INLINE Wide coordinate_of(const Triple &t, kx::Sequence<Lane...> every)
{
    constexpr size_t by_choice = width == 8 ? Coordinate : 0;
    constexpr auto from = [](size_t lane) { return (lane + by_choice) % width; };
    const Wide two = __builtin_shufflevector(
        t.first, t.second,
        static_cast<int>(from(Lane) + (holds(1, from(Lane), Coordinate) ? width : 0))...);
    const Wide all = __builtin_shufflevector(
        two, t.third,
        static_cast<int>(holds(2, from(Lane), Coordinate) ? width + from(Lane) : Lane)...);
    return turned<Coordinate - by_choice>(all, every);
}

KX_INLINE Triple load_triple(const float *from)
{
    return {kx::load<width>(from), kx::load<width>(from + width),
            kx::load<width>(from + 2 * width)};
}

#if defined(__AVX512F__)

template <size_t... Lane>
constexpr unsigned char lanes_with_x(size_t vector, kx::Sequence<Lane...>)
{
    return static_cast<unsigned char>(((holds(vector, Lane, 0) ? 1U << Lane : 0U) | ...));
}

/** The x, y or z of a block, each to its place, and nothing between them. */
KX_INLINE void store_coordinate(float *to, const Wide &value)
{
    kx::store_in_three<lanes_with_x(0, Every()), lanes_with_x(1, Every()),
                       lanes_with_x(2, Every())>(to, value);
}

/*
 * Stores of single lanes take the place of eight shuffles, and a fifth off the time. They would
 * wait for lines of the array that are not in the first cache, so those are asked for two kilobytes
 * ahead; an address behind the array is asked for in vain, and neither read nor written.
 */
KX_INLINE void store_triple(float *to, const Wide &x, const Wide &y, const Wide &z)
{
    const auto ahead = reinterpret_cast<uintptr_t>(to) + 2048;
    __builtin_prefetch(reinterpret_cast<const void *>(ahead), 1);
    __builtin_prefetch(reinterpret_cast<const void *>(ahead + 64), 1);
    store_coordinate(to, x);
    store_coordinate(to + 1, y);
    store_coordinate(to + 2, z);
}

#else

template <size_t Vector, size_t... Lane>
KX_INLINE Wide joined(Wide x, Wide y, Wide z, kx::Sequence<Lane...>)
{
    const Wide two = __builtin_shufflevector(
        x, y, static_cast<int>(holds(Vector, Lane, 1) ? width + Lane : Lane)...);
    return __builtin_shufflevector(
        two, z, static_cast<int>(holds(Vector, Lane, 2) ? width + Lane : Lane)...);
}

KX_INLINE void store_triple(float *to, const Wide &x, const Wide &y, const Wide &z)
{
    const Wide back_y = turned<width - 1>(y, Every());
    const Wide back_z = turned<width - 2>(z, Every());
    kx::store<width>(to, joined<0>(x, back_y, back_z, Every()));
    kx::store<width>(to + width, joined<1>(x, back_y, back_z, Every()));
    kx::store<width>(to + 2 * width, joined<2>(x, back_y, back_z, Every()));
}

#endif

template <bool Moved>
uint32_t transform_blocks(const KXM4 &m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    if (count < width) {
        return 0;
    }
    Wide e[3][4];
#pragma GCC unroll 3
    for (int r = 0; r < 3; ++r) {
#pragma GCC unroll 4
        for (int c = 0; c < 4; ++c) {
            e[r][c] = kx::load_everywhere<width>(&m.m[r][c]);
        }
    }
    const auto row = [&e](int r, const Wide &x, const Wide &y, const Wide &z) {
        const Wide turned_only = kx::sum_of_products(e[r][0], x, e[r][1], y, e[r][2], z);
        return Moved ? turned_only + e[r][3] : turned_only;
    };
    uint32_t done = 0;
    Triple block = load_triple(&in[0].x);
    for (bool more = true; more; done += width) {
        const Wide x = coordinate_of<0>(block, Every());
        const Wide y = coordinate_of<1>(block, Every());
        const Wide z = coordinate_of<2>(block, Every());
        // The arrays may be one: a block is read whole before it is stored. The next is read before
        // that too, so that no load waits for a store that ends next to it.
        more = count - done >= 2 * width;
        if (more) {
            block = load_triple(&in[done + width].x);
        }
        store_triple(&out[done].x, row(0, x, y, z), row(1, x, y, z), row(2, x, y, z));
    }
    return done;
}

} // namespace

#endif
