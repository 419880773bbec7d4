/*
 * The box around a transformed box. For each row r of the matrix, over its columns c in order,
 *
 *     a = minimum[c]*m[r][c],  b = maximum[c]*m[r][c]          b is single
 *     lowest[r] += lower of a and b,  highest[r] += higher     from m[r][3]; each sum is single
 */
#include "kernels.h"

#include "simd/four.h"

using namespace kx;

namespace
{

/** Where they are equal, or one is a NaN, b is the lower. */
template <typename Doubles>
KX_INLINE void sort(Doubles a, Doubles b, Doubles *lower, Doubles *higher)
{
    *lower = min(a, b);
    *higher = max(b, a);
}

/** Lowest or highest coordinates: the translation and what the three columns add to it. */
template <typename Doubles>
KX_INLINE auto sum(Doubles translation, Doubles x, Doubles y, Doubles z)
{
    return narrow(round_to_single(round_to_single(translation + x) + y) + z);
}

/** All three coordinates next to each other. */
KX_INLINE void transform_together(const KXP3 &minimum, const KXP3 &maximum, const KXM4 &m,
                                  KXBox *out)
{
    Float4 columns[4];
    columns_of_rows(load_floats4(m.m[0]), load_floats4(m.m[1]), load_floats4(m.m[2]), columns);
    const auto multiply = [](Float4 column, const float *minimum_end, const float *maximum_end,
                             Double4 *lower, Double4 *higher) {
        const Double4 a = widen(column) * broadcast4(minimum_end);
        const Double4 b = widen(column * broadcast_floats4(maximum_end));
        sort(a, b, lower, higher);
    };
    Double4 lower_x, higher_x, lower_y, higher_y, lower_z, higher_z;
    multiply(columns[0], &minimum.x, &maximum.x, &lower_x, &higher_x);
    multiply(columns[1], &minimum.y, &maximum.y, &lower_y, &higher_y);
    multiply(columns[2], &minimum.z, &maximum.z, &lower_z, &higher_z);
    const Float4 lowest = sum(widen(columns[3]), lower_x, lower_y, lower_z);
    const Float4 highest = sum(widen(columns[3]), higher_x, higher_y, higher_z);
    store(&out->minimum.x, lowest); // whose last lane goes where the other corner's x will
    store3(&out->maximum.x, highest);
}

/** X and Y next to each other, and then the lowest and the highest Z: no lane is unused. */
KX_INLINE void transform_in_pairs(const KXP3 &minimum, const KXP3 &maximum, const KXM4 &m,
                                  KXBox *out)
{
    const Float2 one = lanes(1.0f, 1.0f), maximum_x = lanes(maximum.x, maximum.x);
    const Float2 maximum_y = lanes(maximum.y, maximum.y), maximum_z = lanes(maximum.z, maximum.z);
    const Double2 minimum_x = splat2(widen(minimum.x)), minimum_y = splat2(widen(minimum.y));
    const Double2 minimum_z = splat2(widen(minimum.z));
    Double2 lower_x, higher_x, lower_y, higher_y, lower_z, higher_z;

    const Float4 row_x = load_floats4(m.m[0]), row_y = load_floats4(m.m[1]);
    const Float4 columns_xy = interleave_low(row_x, row_y);  // m00 m10, m01 m11
    const Float4 columns_zw = interleave_high(row_x, row_y); // m02 m12, m03 m13
    const Float4 b_xy = columns_xy * join(maximum_x, maximum_y);
    const Float4 b_zw = columns_zw * join(maximum_z, one);
    sort(widen(low_half(columns_xy)) * minimum_x, widen(low_half(b_xy)), &lower_x, &higher_x);
    sort(widen(high_half(columns_xy)) * minimum_y, widen(high_half(b_xy)), &lower_y, &higher_y);
    sort(widen(low_half(columns_zw)) * minimum_z, widen(low_half(b_zw)), &lower_z, &higher_z);
    const Double2 translation = widen(high_half(columns_zw));
    const Float2 lowest = sum(translation, lower_x, lower_y, lower_z);
    const Float2 highest = sum(translation, higher_x, higher_y, higher_z);

    const float(&row)[4] = m.m[2];
    const Float2 row_xy = load_floats2(row), row_zz = lanes(row[2], row[2]);
    const Float2 b_along_xy = row_xy * load_floats2(&maximum.x), b_along_z = row_zz * maximum_z;
    Double2 lower_xy, higher_xy;
    sort(widen(row_xy) * load2(&minimum.x), widen(b_along_xy), &lower_xy, &higher_xy);
    sort(widen(row_zz) * minimum_z, widen(b_along_z), &lower_z, &higher_z);
    const Float2 z = sum(splat2(widen(row[3])), unpack_low(lower_xy, higher_xy),
                         unpack_high(lower_xy, higher_xy), unpack_low(lower_z, higher_z));
    store(&out->minimum.x, lowest);
    store(&out->maximum.x, highest);
    store_column(&out->minimum.z, &out->maximum.z, z);
}

} // namespace

namespace kx
{
namespace KX_INSTRUCTION_SET
{

void transform_box(const KXBox *box, const KXM4 *matrix, KXBox *out)
{
    if (four_fit_a_register) {
        transform_together(box->minimum, box->maximum, *matrix, out);
    } else {
        transform_in_pairs(box->minimum, box->maximum, *matrix, out);
    }
}

} // namespace KX_INSTRUCTION_SET
} // namespace kx
