/* One point by a matrix, in vectors of two lanes. */
#ifndef KX_MATRIX_TRANSFORM_POINT_H
#define KX_MATRIX_TRANSFORM_POINT_H

#include "kxmaths5/types.h"
#include "numeric.h"
#include "simd/two.h"

namespace kx
{

/** Two rows of a matrix, each times x, y, z and w: two coordinates, side by side. */
KX_INLINE Float2 two_rows(const float *row_a, const float *row_b, Double2 xy, Double2 zw)
{
    const Double2 a = load2(row_a) * xy, a_end = load2(row_a + 2) * zw;
    const Double2 b = load2(row_b) * xy, b_end = load2(row_b + 2) * zw;
    return narrow(unpack_low(a, b) + unpack_high(a, b) + unpack_low(a_end, b_end) +
                  unpack_high(a_end, b_end));
}

/** Of points if Moved, or of directions: those don't read the last column. */
template <bool Moved>
class Transform2
{
public:
    static constexpr bool moved = Moved;

    KX_INLINE_MEMBER explicit Transform2(const KXM3 &m)
        : x_column(lanes(widen(m.m[0][0]), widen(m.m[1][0]))),
          y_column(lanes(widen(m.m[0][1]), widen(m.m[1][1]))),
          translation(Moved ? lanes(widen(m.m[0][2]), widen(m.m[1][2])) : x_column)
    {
    }

    KX_INLINE_MEMBER void apply(const KXP2 &p, KXP2 *out) const
    {
        const Double2 turned = x_column * splat2(widen(p.x)) + y_column * splat2(widen(p.y));
        store(&out->x, narrow(Moved ? turned + translation : turned));
    }

private:
    Double2 x_column, y_column, translation;
};

} // namespace kx

#endif
