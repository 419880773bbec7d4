/* From three angles, or a whole position, to a matrix and its inverse. */
#include "kxmaths5/orientation.h"

#include "kxmaths5/matrix.h"
#include "numeric.h"
#include "simd/two.h"

using namespace kx;

namespace
{

/**
 * Singles, with exact zeros for what would be zero but for rounding, such as the cosine of a
 * quarter turn. The bound is the double 1e-07, below the single of that name. A NaN is not at or
 * above it, so that an infinite angle gives a finite matrix.
 */
Double2 sine_and_cosine(float angle)
{
    const double a = widen(angle);
    return flush_below(1e-07, round_to_single(lanes(sine(a), cosine(a))));
}

/** The sines and cosines of the angles about X, Y and Z. */
struct Turns {
    Double2 about[3];
};

Turns reverse(const Turns &turns)
{
    return {{negate_low(turns.about[0]), negate_low(turns.about[1]), negate_low(turns.about[2])}};
}

/**
 * Of the rotation about an axis, the element in that row and in the column of the third axis: the
 * sine or its negative, and here twice.
 */
template <int Axis, int Row>
Double2 beside_diagonal(const Turns &turns)
{
    const Double2 sines = splat_low(turns.about[Axis]);
    return Row == (Axis + 1) % 3 ? negate(sines) : sines;
}

/**
 * left*(middle*right) into the block of out, for rotations about the three axes l, m and r.
 *
 * Each element is a sum of three products, most of which have a factor that is 0 or 1. Products by
 * 0 decide one thing alone, the sign of a sum that is 0. For that their order does not matter, nor
 * how many of them are alike, so each sum begins with what is not certain to be 0.
 *
 * With c for a cosine, and a, b and d for the elements beside the diagonals:
 *
 *     left   l  m  r     middle  l  m  r     right   l  m  r     inner   l      m      r
 *     l      1  0  0     l      cm  0 -b     l      cr -d  0     l      cm*cr  -cm*d  -b
 *     m      0 cl  a     m       0  1  0     m       d cr  0     m       d      cr     0
 *     r      0 -a cl     r       b  0 cm     r       0  0  1     r       b*cr  -b*d    cm
 */
template <int Left, int Middle, int Right>
void write_block(const Turns &turns, KXM4 *out)
{
    const Double2 cl = splat_high(turns.about[Left]);
    const Double2 cm = splat_high(turns.about[Middle]);
    const Double2 cr = splat_high(turns.about[Right]);
    const Double2 a = beside_diagonal<Left, Middle>(turns);
    const Double2 b = beside_diagonal<Middle, Right>(turns);
    const Double2 d = beside_diagonal<Right, Middle>(turns);
    const Double2 zero = splat2(0.0);

    // The inner product, which is single: columns m and l of each row side by side, and column r.
    const Double2 right_m = unpack_low(cr, d), right_l = unpack_low(negate(d), cr);
    const Double2 zeros_m = zero * right_m, zeros_l = zero * right_l;
    const Double2 inner_m = right_m + zeros_l + zero;
    const Double2 inner_r = round_to_single(b * right_l + zeros_m + zero * cm);
    const Double2 inner_l = round_to_single(cm * right_l + zeros_m - zero * b);
    const Double2 inner_rr = cm + zero * b + zero, inner_lr = zero * cm + zero - b;

    const Double2 zeros = zero * inner_l;
    const Double2 row_m = cl * inner_m + a * inner_r + zeros;
    const Double2 row_r = cl * inner_r - a * inner_m + zeros;
    const Double2 row_l = inner_l + zero * inner_m + zero * inner_r;
    const Double2 column_r =
        unpack_low(a, cl) * inner_rr + zero * unpack_low(cl, negate(a)) + zero * inner_lr;
    const double corner = low(inner_lr + zero * inner_rr + zero);

    store_column(&out->m[Middle][Middle], &out->m[Middle][Left], narrow(row_m));
    store_column(&out->m[Right][Middle], &out->m[Right][Left], narrow(row_r));
    store_column(&out->m[Left][Middle], &out->m[Left][Left], narrow(row_l));
    store_column(&out->m[Middle][Right], &out->m[Right][Right], narrow(column_r));
    out->m[Left][Right] = narrow(corner);
}

/** An order that does not exist leaves the block. */
void write_block(const Turns &turns, KXRotationOrder order, KXM4 *out)
{
    switch (order) {
    case KX_ORDER_XYZ:
        return write_block<0, 1, 2>(turns, out);
    case KX_ORDER_XZY:
        return write_block<0, 2, 1>(turns, out);
    case KX_ORDER_YXZ:
        return write_block<1, 0, 2>(turns, out);
    case KX_ORDER_YZX:
        return write_block<1, 2, 0>(turns, out);
    case KX_ORDER_ZXY:
        return write_block<2, 0, 1>(turns, out);
    case KX_ORDER_ZYX:
        return write_block<2, 1, 0>(turns, out);
    default:
        return;
    }
}

/** The order with the same factors from right to left. */
KXRotationOrder backwards(KXRotationOrder order)
{
    switch (order) {
    case KX_ORDER_XYZ:
        return KX_ORDER_ZYX;
    case KX_ORDER_XZY:
        return KX_ORDER_YZX;
    case KX_ORDER_YXZ:
        return KX_ORDER_ZXY;
    case KX_ORDER_YZX:
        return KX_ORDER_XZY;
    case KX_ORDER_ZXY:
        return KX_ORDER_YXZ;
    case KX_ORDER_ZYX:
        return KX_ORDER_XYZ;
    default:
        return order;
    }
}

void write_translation(KXM4 *out, float x, float y, float z)
{
    out->m[0][3] = x;
    out->m[1][3] = y;
    out->m[2][3] = z;
}

void write_last_row(KXM4 *out)
{
    out->m[3][0] = 0.0f;
    out->m[3][1] = 0.0f;
    out->m[3][2] = 0.0f;
    out->m[3][3] = 1.0f;
}

} // namespace

void KXM4Orientation(KXM4 *matrix, KXM4 *inverse, float x, float y, float z, KXRotationOrder order)
{
    const Turns turns = {{sine_and_cosine(x), sine_and_cosine(y), sine_and_cosine(z)}};
    if (matrix != nullptr) {
        write_block(turns, order, matrix);
        write_translation(matrix, 0.0f, 0.0f, 0.0f);
        write_last_row(matrix);
    }
    if (inverse != nullptr) {
        write_block(reverse(turns), backwards(order), inverse);
        write_translation(inverse, 0.0f, 0.0f, 0.0f);
        write_last_row(inverse);
    }
}

void KXM4Position(KXM4 *matrix, KXM4 *inverse, const KXPosition *position, KXRotationOrder order)
{
    KXM4Orientation(matrix, inverse, position->rotateX, position->rotateY, position->rotateZ,
                    order);
    const KXP3 translation = {position->x, position->y, position->z};
    if (matrix != nullptr) {
        write_translation(matrix, translation.x, translation.y, translation.z);
    }
    if (inverse != nullptr) {
        KXP3 turned;
        KXM4P3I0(inverse, &translation, &turned);
        write_translation(inverse, -turned.x, -turned.y, -turned.z);
    }
}
