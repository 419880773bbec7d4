/*
 * Points of two or four coordinates, and products, for the kernels: the results are sums of
 * columns, next to each other in a vector.
 */
#ifndef KX_MATRIX_KERNELS_TRANSFORM_COLUMNS_H
#define KX_MATRIX_KERNELS_TRANSFORM_COLUMNS_H

#include "kxmaths5/types.h"
#include "matrix/transform_point.h"
#include "simd/four.h"
#include "simd/widest.h"

namespace kx
{
namespace
{

/** A matrix by columns. */
struct Columns4 {
    Double4 x, y, z, w;

    KX_INLINE_MEMBER explicit Columns4(const KXM4 &m)
    {
        Float4 a = load_floats4(m.m[0]), b = load_floats4(m.m[1]);
        Float4 c = load_floats4(m.m[2]), d = load_floats4(m.m[3]);
        transpose(a, b, c, d);
        x = widen(a);
        y = widen(b);
        z = widen(c);
        w = widen(d);
    }

    /** The coordinates of a point are floats or doubles. */
    template <typename Number>
    KX_INLINE_MEMBER Float4 image(const Number *p) const
    {
        return narrow(sum_of_products(x, broadcast4(p), y, broadcast4(p + 1), z, broadcast4(p + 2),
                                      w, broadcast4(p + 3)));
    }
    KX_INLINE_MEMBER void apply(const KXP4 &p, KXP4 *out) const
    {
        store(&out->x, image(&p.x));
    }
};

#if !KX_HAS_LANES

KX_INLINE void multiply(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    const Double4 row0 = load4(b->m[0]), row1 = load4(b->m[1]);
    const Double4 row2 = load4(b->m[2]), row3 = load4(b->m[3]);
    for (int r = 0; r < 4; ++r) {
        const float *const e = a->m[r];
        store(out->m[r], narrow(sum_of_products(row0, broadcast4(&e[0]), row1, broadcast4(&e[1]),
                                                row2, broadcast4(&e[2]), row3, broadcast4(&e[3]))));
    }
}

#else

/** Floats a stride apart, such as those of a column, repeated to fill the vector. */
template <size_t Length, size_t... Lane>
KX_INLINE Vector gather_strided(const float *first, size_t stride, LaneNumbers<Lane...>)
{
    return Vector{widen(first[Lane % Length * stride])...};
}

/** Copies one lane of each group to all lanes of the group. */
template <size_t Group, size_t Which, size_t... Lane>
KX_INLINE Vector splat_in_groups(Vector v, LaneNumbers<Lane...>)
{
    return __builtin_shufflevector(v, v, static_cast<int>(Lane / Group * Group + Which)...);
}

/** A point of two coordinates is two lanes. */
template <typename Form>
KX_INLINE uint32_t transform_blocks(const KXM3 &m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    const Vector x_column = gather_strided<2>(&m.m[0][0], 3, All());
    const Vector y_column = gather_strided<2>(&m.m[0][1], 3, All());
    // Directions have nothing to do with the translation, and don't read it.
    const Vector translation = Form::moved ? gather_strided<2>(&m.m[0][2], 3, All()) : x_column;
    constexpr uint32_t points = width / 2;
    uint32_t done = 0;
    for (; count - done >= points; done += points) {
        const Vector p = load(&in[done].x);
        const Vector turned = sum_of_products(x_column, splat_in_groups<2, 0>(p, All()), y_column,
                                              splat_in_groups<2, 1>(p, All()));
        store(&out[done].x, Form::moved ? turned + translation : turned);
    }
    return done;
}

/* Four floats are one vector of two, part of one, or two vectors. */
constexpr size_t parts = width < 4 ? 4 / width : 1;
constexpr size_t group = 4 / parts;
constexpr uint32_t fours = width / group;

struct PackedXyzw {
    Vector part[parts];
};

KX_INLINE PackedXyzw load_xyzw(const float *from)
{
    PackedXyzw four;
    for (size_t p = 0; p < parts; ++p) {
        four.part[p] = load(from + p * width);
    }
    return four;
}

template <size_t Which>
KX_INLINE Vector element_of(const PackedXyzw &four)
{
    return splat_in_groups<group, Which % group>(four.part[Which / group], All());
}

/**
 * Each four floats become the sum of four columns, each multiplied by one of the floats. A block is
 * read whole before any of it is stored.
 */
KX_INLINE uint32_t sum_columns(const PackedXyzw (&columns)[4], uint32_t count, const float *in,
                               float *out)
{
    uint32_t done = 0;
    for (; count - done >= fours; done += fours) {
        const PackedXyzw f = load_xyzw(in + 4 * size_t{done});
        for (size_t p = 0; p < parts; ++p) {
            store(out + 4 * size_t{done} + p * width,
                  sum_of_products(columns[0].part[p], element_of<0>(f), columns[1].part[p],
                                  element_of<1>(f), columns[2].part[p], element_of<2>(f),
                                  columns[3].part[p], element_of<3>(f)));
        }
    }
    return done;
}

#if KX_HAS_DOUBLE4 && !defined(__AVX512F__)

/** Four points at a time are widened into memory, from where a load fills all lanes. */
template <typename>
KX_INLINE uint32_t transform_blocks(const KXM4 &m, uint32_t count, const KXP4 *in, KXP4 *out)
{
    Columns4 columns(m);
    alignas(32) double widened[4][4];
    uint32_t done = 0;
    for (; count - done >= 4; done += 4) {
#pragma GCC unroll 4
        for (size_t i = 0; i < 4; ++i) {
            store(widened[i], load4(&in[done + i].x));
        }
        read_back(widened);
#pragma GCC unroll 4
        for (size_t i = 0; i < 4; ++i) {
            store(&out[done + i].x, columns.image(widened[i]));
        }
    }
    return done;
}

#else

template <typename>
KX_INLINE uint32_t transform_blocks(const KXM4 &m, uint32_t count, const KXP4 *in, KXP4 *out)
{
    PackedXyzw columns[4];
#pragma GCC unroll 4
    for (size_t c = 0; c < 4; ++c) {
        for (size_t p = 0; p < parts; ++p) {
            columns[c].part[p] = gather_strided<group>(&m.m[p * group][c], 4, All());
        }
    }
    return sum_columns(columns, count, &in[0].x, &out[0].x);
}

#endif

/** The rows of a are four points, for a matrix whose columns are the rows of b. */
KX_INLINE void multiply(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    PackedXyzw rows[4];
#pragma GCC unroll 4
    for (size_t r = 0; r < 4; ++r) {
        for (size_t p = 0; p < parts; ++p) {
            rows[r].part[p] = load_in_groups(&b->m[r][p * group]);
        }
    }
    sum_columns(rows, 4, &a->m[0][0], &out->m[0][0]);
}

#endif

} // namespace
} // namespace kx

#endif
