/* From three angles, or a whole position, to a matrix and its inverse. */
#include "kxmaths5/orientation.h"

#include "kxmaths5/matrix.h"
#include "numeric.h"
#include "pair.h"

namespace
{

/**
 * Singles, with exact zeros for what would be zero but for rounding, such as the cosine of a
 * quarter turn. The bound is the double 1e-07, below the single of that name. A NaN is not at or
 * above it, so that an infinite angle gives a finite matrix.
 */
kx::Pair sine_and_cosine(float angle)
{
    const double a = kx::wide(angle);
    return kx::or_zero_below(1e-07, kx::rounded(kx::pair(kx::sine(a), kx::cosine(a))));
}

/** The sines and cosines of the angles about X, Y and Z. */
struct Turns {
    kx::Pair about[3];
};

Turns reverse(const Turns &turns)
{
    return {{kx::negated_first(turns.about[0]), kx::negated_first(turns.about[1]),
             kx::negated_first(turns.about[2])}};
}

/**
 * Of the rotation about an axis, the element in that row and in the column of the third axis: the
 * sine or its negative, and here twice.
 */
template <int Axis, int Row>
kx::Pair beside_diagonal(const Turns &turns)
{
    const kx::Pair sines = kx::both_first(turns.about[Axis]);
    return Row == (Axis + 1) % 3 ? kx::negated(sines) : sines;
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
    const kx::Pair cl = kx::both_second(turns.about[Left]);
    const kx::Pair cm = kx::both_second(turns.about[Middle]);
    const kx::Pair cr = kx::both_second(turns.about[Right]);
    const kx::Pair a = beside_diagonal<Left, Middle>(turns);
    const kx::Pair b = beside_diagonal<Middle, Right>(turns);
    const kx::Pair d = beside_diagonal<Right, Middle>(turns);
    const kx::Pair zero = kx::both(0.0);

    // The inner product, which is single: columns m and l of each row side by side, and column r.
    const kx::Pair right_m = kx::firsts(cr, d), right_l = kx::firsts(kx::negated(d), cr);
    const kx::Pair zeros_m = zero * right_m, zeros_l = zero * right_l;
    const kx::Pair inner_m = right_m + zeros_l + zero;
    const kx::Pair inner_r = kx::rounded(b * right_l + zeros_m + zero * cm);
    const kx::Pair inner_l = kx::rounded(cm * right_l + zeros_m - zero * b);
    const kx::Pair inner_rr = cm + zero * b + zero, inner_lr = zero * cm + zero - b;

    const kx::Pair zeros = zero * inner_l;
    const kx::Pair row_m = cl * inner_m + a * inner_r + zeros;
    const kx::Pair row_r = cl * inner_r - a * inner_m + zeros;
    const kx::Pair row_l = inner_l + zero * inner_m + zero * inner_r;
    const kx::Pair column_r =
        kx::firsts(a, cl) * inner_rr + zero * kx::firsts(cl, kx::negated(a)) + zero * inner_lr;
    const double corner = kx::first(inner_lr + zero * inner_rr + zero);

    kx::store_column(&out->m[Middle][Middle], &out->m[Middle][Left], kx::single(row_m));
    kx::store_column(&out->m[Right][Middle], &out->m[Right][Left], kx::single(row_r));
    kx::store_column(&out->m[Left][Middle], &out->m[Left][Left], kx::single(row_l));
    kx::store_column(&out->m[Middle][Right], &out->m[Right][Right], kx::single(column_r));
    out->m[Left][Right] = kx::single(corner);
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
