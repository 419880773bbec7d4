/* The box around a transformed box. */
#include "spatial/kernels.h"

#include "simd/four.h"

using namespace kx;

namespace
{

/**
 * What a matrix element adds to the lowest and the highest coordinates: the lower and the higher of
 * its products with both ends of the box. Only the product with the maximum is single.
 */
template <typename Doubles, typename Floats>
KX_INLINE void multiply(Floats elements, Doubles minimum, Floats maximum, Doubles *lower,
                        Doubles *higher)
{
    const Doubles a = widen(elements) * minimum;
    const Doubles b = widen(elements * maximum);
    *lower = min(a, b);
    *higher = max(b, a);
}

/** Lowest or highest coordinates, from what the three elements of a row add to the translation. */
template <typename Doubles>
KX_INLINE auto sum(Doubles translation, Doubles x, Doubles y, Doubles z)
{
    return narrow(round_to_single(round_to_single(translation + x) + y) + z);
}

/** All three coordinates next to each other. */
KX_INLINE void transform_together(const KXP3 &minimum, const KXP3 &maximum, const KXM4 &m,
                                  KXBox *out)
{
    // The columns of the matrix, with the third row also in place of the last.
    Float4 column_x = load_floats4(m.m[0]), column_y = load_floats4(m.m[1]);
    Float4 column_z = load_floats4(m.m[2]), column_w = column_z;
    transpose(column_x, column_y, column_z, column_w);
    Double4 lower_x, higher_x, lower_y, higher_y, lower_z, higher_z;
    multiply(column_x, broadcast4(&minimum.x), broadcast_floats4(&maximum.x), &lower_x, &higher_x);
    multiply(column_y, broadcast4(&minimum.y), broadcast_floats4(&maximum.y), &lower_y, &higher_y);
    multiply(column_z, broadcast4(&minimum.z), broadcast_floats4(&maximum.z), &lower_z, &higher_z);
    const Float4 lowest = sum(widen(column_w), lower_x, lower_y, lower_z);
    const Float4 highest = sum(widen(column_w), higher_x, higher_y, higher_z);
    store3(&out->minimum.x, lowest);
    store3(&out->maximum.x, highest);
}

/** X and Y next to each other, and then the lowest and the highest Z: no lane is unused. */
KX_INLINE void transform_in_pairs(const KXP3 &minimum, const KXP3 &maximum, const KXM4 &m,
                                  KXBox *out)
{
    const Float4 row_x = load_floats4(m.m[0]), row_y = load_floats4(m.m[1]);
    const Float4 columns_xy = interleave_low(row_x, row_y);
    const Float4 columns_zw = interleave_high(row_x, row_y);
    const Double2 minimum_x = splat2(widen(minimum.x)), minimum_y = splat2(widen(minimum.y));
    const Double2 minimum_z = splat2(widen(minimum.z));
    const Float2 maximum_x = lanes(maximum.x, maximum.x), maximum_y = lanes(maximum.y, maximum.y);
    const Float2 maximum_z = lanes(maximum.z, maximum.z);
    Double2 lower_x, higher_x, lower_y, higher_y, lower_z, higher_z;
    multiply(low_half(columns_xy), minimum_x, maximum_x, &lower_x, &higher_x);
    multiply(high_half(columns_xy), minimum_y, maximum_y, &lower_y, &higher_y);
    multiply(low_half(columns_zw), minimum_z, maximum_z, &lower_z, &higher_z);
    const Double2 translation = widen(high_half(columns_zw));
    const Float2 lowest = sum(translation, lower_x, lower_y, lower_z);
    const Float2 highest = sum(translation, higher_x, higher_y, higher_z);

    const float(&row_z)[4] = m.m[2];
    Double2 lower_xy, higher_xy;
    multiply(load_floats2(row_z), load2(&minimum.x), load_floats2(&maximum.x), &lower_xy,
             &higher_xy);
    multiply(lanes(row_z[2], row_z[2]), minimum_z, maximum_z, &lower_z, &higher_z);
    const Float2 z = sum(splat2(widen(row_z[3])), unpack_low(lower_xy, higher_xy),
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
