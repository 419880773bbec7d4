/* From three angles, or a whole position, to a matrix and its inverse. */
#include "kxmaths5/orientation.h"

#include "kxmaths5/matrix.h"
#include "numeric.h"

namespace
{

/** The cosine and sine of an angle, as singles. */
struct Turn {
    float cosine;
    float sine;
};

/**
 * Exact zeros for what would be zero but for rounding, such as the cosine of a quarter turn. The
 * bound is the double 1e-07, below the single of that name. A NaN is not at or above it, so that
 * an infinite angle gives a finite matrix.
 */
float snap(float value)
{
    return kx::magnitude(kx::wide(value)) >= 1e-07 ? value : 0.0f;
}

Turn turn_by(float angle)
{
    const double a = kx::wide(angle);
    return {snap(kx::single(kx::cosine(a))), snap(kx::single(kx::sine(a)))};
}

Turn reverse(const Turn &turn)
{
    return {turn.cosine, -turn.sine};
}

/** The rotations about the three axes. */
struct Rotations {
    KXM4 x, y, z;
};

Rotations rotations_of(const Turn &x, const Turn &y, const Turn &z)
{
    Rotations r;
    KXM4RotateX2(x.cosine, x.sine, &r.x);
    KXM4RotateY2(y.cosine, y.sine, &r.y);
    KXM4RotateZ2(z.cosine, z.sine, &r.z);
    return r;
}

/** Three factors from left to right; all null for an order that does not exist. */
struct Factors {
    const KXM4 *left, *middle, *right;
};

Factors factors_of(const Rotations &r, KXRotationOrder order)
{
    switch (order) {
    case KX_ORDER_XYZ:
        return {&r.x, &r.y, &r.z};
    case KX_ORDER_XZY:
        return {&r.x, &r.z, &r.y};
    case KX_ORDER_YXZ:
        return {&r.y, &r.x, &r.z};
    case KX_ORDER_YZX:
        return {&r.y, &r.z, &r.x};
    case KX_ORDER_ZXY:
        return {&r.z, &r.x, &r.y};
    case KX_ORDER_ZYX:
        return {&r.z, &r.y, &r.x};
    default:
        return {nullptr, nullptr, nullptr};
    }
}

/** left*(middle*right) into the block of out; an order that does not exist leaves the block. */
void write_block(const Factors &factors, KXM4 *out)
{
    if (factors.left == nullptr) {
        return;
    }
    KXM4 inner;
    KXM43Mult(factors.middle, factors.right, &inner);
    KXM43Mult(factors.left, &inner, out);
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
    const Turn about_x = turn_by(x);
    const Turn about_y = turn_by(y);
    const Turn about_z = turn_by(z);
    if (matrix != nullptr) {
        const Rotations forward = rotations_of(about_x, about_y, about_z);
        write_block(factors_of(forward, order), matrix);
        write_translation(matrix, 0.0f, 0.0f, 0.0f);
        write_last_row(matrix);
    }
    if (inverse != nullptr) {
        const Rotations back = rotations_of(reverse(about_x), reverse(about_y), reverse(about_z));
        const Factors factors = factors_of(back, order);
        write_block({factors.right, factors.middle, factors.left}, inverse);
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
