/* One point with two coordinates by a matrix. */
#ifndef KX_MATRIX_TRANSFORM_POINT_H
#define KX_MATRIX_TRANSFORM_POINT_H

#include "kxmaths5/types.h"
#include "numeric.h"
#include "simd/two.h"

namespace kx
{

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
