/* The 3x3 block of a rotation from three angles, and that of its inverse. */
#include "kernels.h"

#include "orientation/sine_cosine.h"
#include "simd/four.h"

using namespace kx;

namespace
{

/** About X, Y and Z, by angles or by their negatives. */
struct Rotations {
    const double *sine, *minus_sine, *cosine;
};

/** Sines and cosines of the three angles, as singles. The fourth lanes are unused. */
KX_INLINE void sines_and_cosines(float x, float y, float z, Double4 *sine, Double4 *cosine)
{
    const Double4 xyz = lanes(widen(x), widen(y), widen(z), 0.0);
    if (is_small_angle(x) && is_small_angle(y) && is_small_angle(z) &&
        sine_cosine(xyz, sine, cosine)) {
        *sine = round_to_single(*sine);
        *cosine = round_to_single(*cosine);
        return;
    }
    const float angles[3] = {x, y, z};
    SineCosine of[3];
    for (int i = 0; i < 3; ++i) {
        of[i] = sine_cosine(angles[i]);
    }
    *sine = lanes(widen(of[0].sine), widen(of[1].sine), widen(of[2].sine), 0.0);
    *cosine = lanes(widen(of[0].cosine), widen(of[1].cosine), widen(of[2].cosine), 0.0);
}

/**
 * The element of a rotation that is in this row and not on the diagonal: the sine or its negative.
 */
template <int Axis, int Row>
double off_diagonal(const Rotations &about)
{
    return Row == (Axis + 1) % 3 ? about.minus_sine[Axis] : about.sine[Axis];
}

/**
 * left*(middle*right) into the block of out, for rotations about the three axes l, m and r. With an
 * element named after its row and column:
 *
 *     left   l   m   r      middle  l   m   r      right   l   m   r
 *     l      1   0   0      l      ll   0  lr      l      ll  lm   0
 *     m      0  mm  mr      m       0   1   0      m      ml  mm   0
 *     r      0  rm  rr      r      rl   0  rr      r       0   0   1
 *
 * A vector is a row. Each row of a product is a sum of three: the rows of the second factor, each
 * times an element of the first. Products with 0 decide only the sign of a sum that is 0; neither
 * their order matters, nor how many equal ones there are.
 */
template <int Left, int Middle, int Right>
KX_INLINE void write_block(const Rotations &about, KXM4 *out)
{
    const auto row = [](double at_l, double at_m, double at_r) {
        double elements[4] = {0.0, 0.0, 0.0, 0.0};
        elements[Left] = at_l;
        elements[Middle] = at_m;
        elements[Right] = at_r;
        return lanes(elements[0], elements[1], elements[2], elements[3]);
    };
    const Double4 zero = splat4(0.0);
    const Double4 left_mm = splat4(about.cosine[Left]), left_rr = left_mm;
    const Double4 left_mr = splat4(off_diagonal<Left, Middle>(about));
    const Double4 left_rm = splat4(off_diagonal<Left, Right>(about));
    const Double4 middle_ll = splat4(about.cosine[Middle]), middle_rr = middle_ll;
    const Double4 middle_lr = splat4(off_diagonal<Middle, Left>(about));
    const Double4 middle_rl = splat4(off_diagonal<Middle, Right>(about));
    const double right_ll = about.cosine[Right], right_mm = right_ll;
    const Double4 right_l = row(right_ll, off_diagonal<Right, Left>(about), 0.0);
    const Double4 right_m = row(off_diagonal<Right, Middle>(about), right_mm, 0.0);
    const Double4 right_r = row(0.0, 0.0, 1.0);

    // inner = middle*right, which is single
    const Double4 zeros_m = zero * right_m;
    const Double4 inner_l =
        round_to_single(sum_of_products(middle_ll, right_l, middle_lr, right_r) + zeros_m);
    const Double4 inner_m = zero * right_l + right_m + zero;
    const Double4 inner_r =
        round_to_single(sum_of_products(middle_rl, right_l, middle_rr, right_r) + zeros_m);

    // left*inner. The fourth column is written with the others, and again by who calls.
    const Double4 zeros_l = zero * inner_l;
    store(out->m[Left], narrow(inner_l + zero * inner_m + zero * inner_r));
    store(out->m[Middle], narrow(sum_of_products(left_mm, inner_m, left_mr, inner_r) + zeros_l));
    store(out->m[Right], narrow(sum_of_products(left_rm, inner_m, left_rr, inner_r) + zeros_l));
}

/**
 * Writes the outputs that are wanted. An inverse rotates by the negative angles in reverse order.
 */
template <int Left, int Middle, int Right>
KX_INLINE void write_blocks(const Rotations &about, KXM4 *matrix, KXM4 *inverse)
{
    if (matrix != nullptr) {
        write_block<Left, Middle, Right>(about, matrix);
    }
    if (inverse != nullptr) {
        write_block<Right, Middle, Left>({about.minus_sine, about.sine, about.cosine}, inverse);
    }
}

} // namespace

namespace kx
{
namespace KX_INSTRUCTION_SET
{

void orientation(KXM4 *matrix, KXM4 *inverse, float x, float y, float z, KXRotationOrder order)
{
    Double4 sine, cosine;
    sines_and_cosines(x, y, z, &sine, &cosine);
    // Exact zeros for what would be zero but for rounding, such as the cosine of a quarter turn.
    // The bound is the double 1e-07, below the single 1e-07. A NaN is not at or above it, so an
    // infinite angle gives a finite matrix.
    sine = flush_below(1e-07, sine);
    cosine = flush_below(1e-07, cosine);
    // In memory, since a load can broadcast an element to all lanes.
    double sines[4], minus_sines[4], cosines[4];
    store(sines, sine);
    store(minus_sines, negate(sine));
    store(cosines, cosine);
    const Rotations about = {sines, minus_sines, cosines};
    switch (order) {
    case KX_ORDER_XYZ:
        return write_blocks<0, 1, 2>(about, matrix, inverse);
    case KX_ORDER_XZY:
        return write_blocks<0, 2, 1>(about, matrix, inverse);
    case KX_ORDER_YXZ:
        return write_blocks<1, 0, 2>(about, matrix, inverse);
    case KX_ORDER_YZX:
        return write_blocks<1, 2, 0>(about, matrix, inverse);
    case KX_ORDER_ZXY:
        return write_blocks<2, 0, 1>(about, matrix, inverse);
    case KX_ORDER_ZYX:
        return write_blocks<2, 1, 0>(about, matrix, inverse);
    default:
        return; // an order that does not exist leaves the blocks
    }
}

} // namespace KX_INSTRUCTION_SET
} // namespace kx
