/* Points with three coordinates, for the kernels: one at a time, and arrays of them in blocks. */
#ifndef KX_MATRIX_KERNELS_TRANSFORM_XYZ_H
#define KX_MATRIX_KERNELS_TRANSFORM_XYZ_H

#include "kxmaths5/types.h"
#include "simd/four.h"
#include "simd/widest.h"

namespace kx
{
namespace
{

/** The first three rows of a matrix by columns; the last lane is that before it again. */
template <bool Moved>
struct Columns3 {
    static constexpr bool moved = Moved;
    Double4 x, y, z, translation;

    KX_INLINE_MEMBER explicit Columns3(const KXM4 &m)
    {
        Float4 columns[4];
        columns_of_rows(load_row(m.m[0]), load_row(m.m[1]), load_row(m.m[2]), columns);
        x = widen(columns[0]);
        y = widen(columns[1]);
        z = widen(columns[2]);
        translation = widen(columns[3]);
    }
    /** Directions have nothing to do with the translation, and don't read it. */
    KX_INLINE Float4 load_row(const float *row)
    {
        return Moved ? load_floats4(row) : load_floats3(row);
    }

    /** The coordinates of a point are floats or doubles. */
    template <typename Number>
    KX_INLINE_MEMBER Float4 image(const Number *p) const
    {
        const Double4 turned =
            sum_of_products(x, broadcast4(p), y, broadcast4(p + 1), z, broadcast4(p + 2));
        return narrow(Moved ? turned + translation : turned);
    }
    KX_INLINE_MEMBER void apply(const KXP3 &p, KXP3 *out) const
    {
        store3(&out->x, image(&p.x));
    }
};

#if KX_HAS_DOUBLE4
/** Prefetches the lines that are written soon; an address past the end is harmless. */
KX_INLINE void prefetch_output(const float *to)
{
    const uintptr_t ahead = reinterpret_cast<uintptr_t>(to) + 2048;
    __builtin_prefetch(reinterpret_cast<const void *>(ahead), 1);
    __builtin_prefetch(reinterpret_cast<const void *>(ahead + 64), 1);
}
#endif

#if KX_HAS_DOUBLE4 && !defined(__AVX512F__)

/*
 * With AVX2 eight points are widened into memory, from where a load brings a coordinate into all
 * lanes. Nothing is shuffled: what shuffles is one unit, and the conversions need it.
 */
constexpr uint32_t block = 8;

KX_INLINE void widen_block(const KXP3 *in, double (&to)[3 * block])
{
#pragma GCC unroll 6
    for (size_t i = 0; i < 3 * block; i += 4) {
        store(to + i, load4(&in->x + i));
    }
}

template <typename Form>
KX_INLINE uint32_t transform_blocks(const KXM4 &m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    if (count < block) {
        return 0;
    }
    Form columns(m); // not const: g++ 12 would keep it in memory
    alignas(32) double widened[2][3 * block];
    widen_block(in, widened[0]);
    read_back(widened);
    float *to = &out->x;
    size_t now = 0;
    for (uint32_t left = count; left >= 2 * block; left -= block) {
        prefetch_output(to);
        // The arrays may be the same, and the fourth lane of a point goes where the next point's x
        // will: the next block is read before this one is stored.
        in += block;
        widen_block(in, widened[1 - now]);
#pragma GCC unroll 8
        for (size_t i = 0; i < 3 * block; i += 3) {
            store(to + i, columns.image(widened[now] + i));
        }
        to += 3 * block;
        now = 1 - now;
        read_back(widened);
    }
#pragma GCC unroll 7
    for (size_t i = 0; i < 3 * (block - 1); i += 3) {
        store(to + i, columns.image(widened[now] + i));
    }
    store3(to + 3 * (block - 1), columns.image(widened[now] + 3 * (block - 1)));
    return count / block * block;
}

#elif KX_HAS_LANES

/*
 * Packed points of three coordinates. Three consecutive vectors hold as many points as a vector has
 * lanes. Since 3 and the width have no common factor, the x of these points are in different lanes,
 * whichever of the three vectors they are in. So x, and likewise y and z, are selected from the
 * three vectors lane by lane, without moving any. The y are one lane further than the x of the same
 * point, the z two lanes; rotating the lanes aligns the coordinates of a point.
 */
struct PackedXyz {
    Vector first, second, third;
};

/** Whether a lane of one of the three vectors holds this coordinate. */
constexpr bool is_coordinate(size_t vector, size_t lane, size_t coordinate)
{
    return (width * vector + lane) % 3 == coordinate;
}

/** Rotates the lanes, so that the given one comes first. */
template <size_t First, size_t... Lane>
KX_INLINE Vector rotate_lanes(Vector v, LaneNumbers<Lane...>)
{
    return __builtin_shufflevector(v, v, static_cast<int>((Lane + First) % width)...);
}

/** With AVX-512 every shuffle of two vectors costs the same, so the selection rotates as well. */
template <size_t Coordinate, size_t... Lane>
KX_INLINE Vector coordinate_of(const PackedXyz &t, LaneNumbers<Lane...> every)
{
    constexpr size_t by_choice = width == 8 ? Coordinate : 0;
    constexpr auto from = [](size_t lane) { return (lane + by_choice) % width; };
    const Vector two = __builtin_shufflevector(
        t.first, t.second,
        static_cast<int>(from(Lane) + (is_coordinate(1, from(Lane), Coordinate) ? width : 0))...);
    const Vector all = __builtin_shufflevector(
        two, t.third,
        static_cast<int>(is_coordinate(2, from(Lane), Coordinate) ? width + from(Lane) : Lane)...);
    return rotate_lanes<Coordinate - by_choice>(all, every);
}

KX_INLINE PackedXyz load_xyz(const float *from)
{
    return {load(from), load(from + width), load(from + 2 * width)};
}

#if defined(__AVX512F__)

template <size_t... Lane>
constexpr unsigned char lanes_with_x(size_t vector, LaneNumbers<Lane...>)
{
    return static_cast<unsigned char>(((is_coordinate(vector, Lane, 0) ? 1U << Lane : 0U) | ...));
}

/** Stores the x, y or z of a block, each in its place, and nothing between them. */
KX_INLINE void store_coordinate(float *to, const Vector &value)
{
    store_masked<lanes_with_x(0, All()), lanes_with_x(1, All()), lanes_with_x(2, All())>(to, value);
}

/*
 * Stores of single lanes replace eight shuffles and save a fifth of the time. They would wait for
 * cache lines that are not in the first cache, so these are prefetched 2 KiB ahead.
 */
KX_INLINE void store_xyz(float *to, const Vector &x, const Vector &y, const Vector &z)
{
    prefetch_output(to);
    store_coordinate(to, x);
    store_coordinate(to + 1, y);
    store_coordinate(to + 2, z);
}

#else

template <size_t Third, size_t... Lane>
KX_INLINE Vector interleave(Vector x, Vector y, Vector z, LaneNumbers<Lane...>)
{
    const Vector two = __builtin_shufflevector(
        x, y, static_cast<int>(is_coordinate(Third, Lane, 1) ? width + Lane : Lane)...);
    return __builtin_shufflevector(
        two, z, static_cast<int>(is_coordinate(Third, Lane, 2) ? width + Lane : Lane)...);
}

KX_INLINE void store_xyz(float *to, const Vector &x, const Vector &y, const Vector &z)
{
    const Vector back_y = rotate_lanes<width - 1>(y, All());
    const Vector back_z = rotate_lanes<width - 2>(z, All());
    store(to, interleave<0>(x, back_y, back_z, All()));
    store(to + width, interleave<1>(x, back_y, back_z, All()));
    store(to + 2 * width, interleave<2>(x, back_y, back_z, All()));
}

#endif

/** As many points at a time as a vector has lanes. */
template <typename Form>
KX_INLINE uint32_t transform_blocks(const KXM4 &m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    if (count < width) {
        return 0;
    }
    // Each element in all lanes, by way of memory too.
    alignas(32) double rows[3][4];
    for (int r = 0; r < 3; ++r) {
        store(rows[r], Form::moved ? load4(m.m[r]) : load3(m.m[r]));
    }
    read_back(rows);
    Vector e[3][4];
#pragma GCC unroll 3
    for (int r = 0; r < 3; ++r) {
#pragma GCC unroll 4
        for (int c = 0; c < 4; ++c) {
            e[r][c] = splat(rows[r][c], All());
        }
    }
    const auto row = [&e](int r, const Vector &x, const Vector &y, const Vector &z) {
        const Vector turned = sum_of_products(e[r][0], x, e[r][1], y, e[r][2], z);
        return Form::moved ? turned + e[r][3] : turned;
    };
    uint32_t done = 0;
    PackedXyz next = load_xyz(&in[0].x);
    for (bool more = true; more; done += width) {
        const Vector x = coordinate_of<0>(next, All());
        const Vector y = coordinate_of<1>(next, All());
        const Vector z = coordinate_of<2>(next, All());
        // The arrays may be the same: a block is read whole before it is stored. The next block is
        // read before that too, so that no load waits for a store next to it.
        more = count - done >= 2 * width;
        if (more) {
            next = load_xyz(&in[done + width].x);
        }
        store_xyz(&out[done].x, row(0, x, y, z), row(1, x, y, z), row(2, x, y, z));
    }
    return done;
}

#endif

} // namespace
} // namespace kx

#endif
