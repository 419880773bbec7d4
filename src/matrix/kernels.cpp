/*
 * Products of matrices, and matrices applied to arrays: one text, compiled once for each
 * instruction set into a namespace of its own, which the build names in KX_INSTRUCTION_SET.
 *
 * Every product in this file is of two singles, and so exact in double: here, and nowhere else, a
 * multiplication may be fused with the addition behind it.
 */
#include "matrix/kernels.h"

#include "lanes.h"
#include "matrix/forms.h"
#include "numeric.h"

#include <utility>

namespace
{

#if KX_HAS_LANES

#if defined(__AVX512F__)
constexpr size_t width = 8;
#elif defined(__AVX__)
constexpr size_t width = 4;
#else
constexpr size_t width = 2;
#endif

using Wide = kx::Lanes<width>;
using Every = std::make_index_sequence<width>;

/*
 * Packed points of three coordinates. Three vectors, read one after the other, hold as many points
 * as a vector has lanes. Since 3 and the width have no common factor, the x of those points lie in
 * lanes that are all different, whichever vector they are in: x, and likewise y and z, come out of
 * the three by choosing lanes, with nothing moved. The y stand one lane further on than the x of
 * the same point, and the z two lanes; turning them back puts the coordinates of a point side by
 * side.
 *
 * Choosing lanes is cheaper than moving them. Against four-by-four transpositions this saves a
 * third of the time.
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
KX_INLINE Wide turned(Wide v, std::index_sequence<Lane...>)
{
    return __builtin_shufflevector(v, v, static_cast<int>((Lane + First) % width)...);
}

/**
 * With AVX-512 a shuffle of two vectors costs the same whatever it does, so there the choice turns
 * as well.
 */
template <size_t Coordinate, size_t... Lane>
KX_INLINE Wide coordinate_of(const Triple &t, std::index_sequence<Lane...> every)
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
constexpr unsigned char lanes_with_x(size_t vector, std::index_sequence<Lane...>)
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
KX_INLINE Wide joined(Wide x, Wide y, Wide z, std::index_sequence<Lane...>)
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

/** Lane by lane: the element with the number Base + Lane % Step of a small array. */
template <size_t Step, size_t... Lane>
KX_INLINE kx::Lanes<sizeof...(Lane)> repeated(const float *elements, size_t stride,
                                              std::index_sequence<Lane...>)
{
    return kx::Lanes<sizeof...(Lane)>{kx::wide(elements[Lane % Step * stride])...};
}

/** In each group of Step lanes, the one with that number in all of them. */
template <size_t Step, size_t Which, size_t... Lane>
KX_INLINE kx::Lanes<sizeof...(Lane)> spread(kx::Lanes<sizeof...(Lane)> v,
                                            std::index_sequence<Lane...>)
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
                                           std::index_sequence<0, 1> every)
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
                          std::index_sequence<Lane...> every)
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

/** Element Which of a row, in as many lanes as Part has. */
template <size_t Which, size_t... Lane>
KX_INLINE kx::Lanes<sizeof...(Lane)> element_of(const kx::Lanes<sizeof...(Lane)> *row,
                                                std::index_sequence<Lane...>)
{
    constexpr size_t part = sizeof...(Lane);
    const kx::Lanes<part> &v = row[Which / part];
    return __builtin_shufflevector(v, v, static_cast<int>(((void)Lane, Which % part))...);
}

/** A row of the product is a sum of the rows of b, in vectors of four lanes or of two. */
void multiply_by_rows(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    constexpr size_t part = width < 4 ? width : 4;
    constexpr size_t parts = 4 / part;
    using Row = kx::Lanes<part>[parts];
    const auto load_row = [](const KXM4 *m, size_t r, Row &row) {
        for (size_t p = 0; p < parts; ++p) {
            row[p] = kx::load<part>(&m->m[r][p * part]);
        }
    };
    // b is read whole before the first store, and each row of a before the store to that row: out
    // may be either.
    Row rows[4];
    load_row(b, 0, rows[0]);
    load_row(b, 1, rows[1]);
    load_row(b, 2, rows[2]);
    load_row(b, 3, rows[3]);
#pragma GCC unroll 4
    for (size_t r = 0; r < 4; ++r) {
        constexpr std::make_index_sequence<part> every;
        Row e;
        load_row(a, r, e);
        for (size_t p = 0; p < parts; ++p) {
            kx::store<part>(&out->m[r][p * part],
                            kx::sum_of_products(element_of<0>(e, every), rows[0][p],
                                                element_of<1>(e, every), rows[1][p],
                                                element_of<2>(e, every), rows[2][p],
                                                element_of<3>(e, every), rows[3][p]));
        }
    }
}

#else

template <bool Moved, typename Matrix, typename Point>
uint32_t transform_blocks(const Matrix &, uint32_t, const Point *, Point *)
{
    return 0;
}

uint32_t transform_blocks(const KXM4 &, uint32_t, const KXP4 *, KXP4 *)
{
    return 0;
}

void multiply_by_rows(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    kx::multiply<4>(a, b, out);
}

#endif

/** What the blocks have left, point by point. */
template <typename Matrix, typename Point>
void transform_rest(Point (*form)(const Matrix &, const Point &), const Matrix &m, uint32_t done,
                    uint32_t count, const Point *in, Point *out)
{
    if (done == count) {
        return;
    }
    const Matrix copy = m; // out might be part of m for all that the compiler knows
    for (; done < count; ++done) {
        out[done] = form(copy, in[done]);
    }
}

} // namespace

namespace kx
{
namespace KX_INSTRUCTION_SET
{

void product(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    multiply_by_rows(a, b, out);
}

void directions(const KXM3 &m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    transform_rest<KXM3, KXP2>(direction, m, transform_blocks<false>(m, count, in, out), count, in,
                               out);
}

void positions(const KXM3 &m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    transform_rest<KXM3, KXP2>(position, m, transform_blocks<true>(m, count, in, out), count, in,
                               out);
}

void directions(const KXM4 &m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    transform_rest<KXM4, KXP3>(direction, m, transform_blocks<false>(m, count, in, out), count, in,
                               out);
}

void positions(const KXM4 &m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    transform_rest<KXM4, KXP3>(position, m, transform_blocks<true>(m, count, in, out), count, in,
                               out);
}

void homogeneous(const KXM4 &m, uint32_t count, const KXP4 *in, KXP4 *out)
{
    transform_rest<KXM4, KXP4>(kx::homogeneous, m, transform_blocks(m, count, in, out), count, in,
                               out);
}

} // namespace KX_INSTRUCTION_SET
} // namespace kx
