/* Decomposition of a transform by its rows, and composition from the parts. */
#include "kxmaths5/orientation.h"

#include "kxmaths5/foundations.h"
#include "kxmaths5/matrix.h"
#include "numeric.h"
#include "orientation/sine_cosine.h"

using namespace kx;

namespace
{

bool is_small(float value)
{
    return magnitude(widen(value)) < tolerance;
}

KXV3 block_row(const KXM4 &m, int r)
{
    return {m.m[r][0], m.m[r][1], m.m[r][2]};
}

double dot(const KXV3 &a, const KXV3 &b)
{
    const Xyz p = widen(a);
    const Xyz q = widen(b);
    return p.x * q.x + p.y * q.y + p.z * q.z;
}

/** Divides a homogeneous matrix by its last element, unless that is almost 0. */
void divide_by_last(KXM4 *m)
{
    const double last = widen(m->m[3][3]);
    if (magnitude(last) >= tolerance) {
        const double k = 1.0 / last;
        for (auto &row : m->m) {
            for (float &element : row) {
                element = narrow(widen(element) * k);
            }
        }
    }
}

/**
 * The inverse of `affine`, which is m with the last row 0 0 0 1, times the last row of m. The
 * inversion may refuse a block whose determinant is not quite 0.
 */
int32_t solve_perspective(const KXM4 &m, const KXM4 &affine, KXP4 *perspective)
{
    if (is_small(m.m[3][0]) && is_small(m.m[3][1]) && is_small(m.m[3][2])) {
        *perspective = {0.0f, 0.0f, 0.0f, 1.0f};
        return done;
    }
    KXM4 inverse;
    if (KXM4Inverse(&affine, &inverse) != done) {
        return singular;
    }
    const KXP4 last_row = {m.m[3][0], m.m[3][1], m.m[3][2], m.m[3][3]};
    KXM4P4(&inverse, &last_row, perspective);
    return done;
}

/** Removes from v its component along a unit axis, and returns the component. */
float take_out(const KXV3 &axis, KXV3 *v)
{
    const float along = narrow(dot(axis, *v));
    KXV3Combine(v, &axis, v, 1.0f, -along);
    return along;
}

float divide(float part, double length)
{
    return narrow(widen(part) / length);
}

KXV3 negate(const KXV3 &v)
{
    return {-v.x, -v.y, -v.z};
}

/**
 * Gram-Schmidt over the rows of the block: makes them orthonormal and right-handed, and stores
 * scale and shear. The lengths that divide the shears are not rounded.
 */
void separate_scale_and_shear(KXV3 (&rows)[3], KXComponents *parts)
{
    parts->scaleX = narrow(KXV3Normalise(&rows[0], &rows[0]));

    const float along_first = take_out(rows[0], &rows[1]);
    const double second_length = KXV3Normalise(&rows[1], &rows[1]);
    parts->scaleY = narrow(second_length);
    parts->shearXY = divide(along_first, second_length);

    const float third_along_first = take_out(rows[0], &rows[2]);
    const float third_along_second = take_out(rows[1], &rows[2]);
    const double third_length = KXV3Normalise(&rows[2], &rows[2]);
    parts->scaleZ = narrow(third_length);
    parts->shearXZ = divide(third_along_first, third_length);
    parts->shearYZ = divide(third_along_second, third_length);

    // A left-handed frame is no rotation: all of it is negated, and the scales with it.
    KXV3 across;
    KXV3Cross(&rows[1], &rows[2], &across);
    if (dot(rows[0], across) < 0.0) {
        parts->scaleX = -parts->scaleX;
        parts->scaleY = -parts->scaleY;
        parts->scaleZ = -parts->scaleZ;
        for (KXV3 &row : rows) {
            row = negate(row);
        }
    }
}

/** The three angles of RX*RY*RZ, from its rows. */
void read_angles(const KXV3 (&rows)[3], KXComponents *parts)
{
    const double sine = widen(rows[0].z);
    const double y = arcsine(sine);
    parts->rotateY = narrow(y);
    if (magnitude(cosine(y)) >= tolerance) {
        parts->rotateX = narrow(arctangent(-widen(rows[1].z), widen(rows[2].z)));
        parts->rotateZ = narrow(arctangent(-widen(rows[0].y), widen(rows[0].x)));
        return;
    }
    // Gimbal lock: a quarter turn about Y takes Z to X or -X, and only the sum or the difference of
    // the two angles is in the matrix. X takes all of it, negated at -90 degrees.
    const double across = widen(rows[1].x);
    const double turned = sine < 0.0 ? -across : across;
    parts->rotateX = narrow(arctangent(turned, widen(rows[1].y)));
    parts->rotateZ = 0.0f;
}

} // namespace

int32_t KXM4Decompose(const KXM4 *m, KXComponents *components)
{
    KXM4 whole = *m;
    divide_by_last(&whole);

    KXM4 affine = whole;
    affine.m[3][0] = 0.0f;
    affine.m[3][1] = 0.0f;
    affine.m[3][2] = 0.0f;
    affine.m[3][3] = 1.0f;
    KXP4 perspective;
    if (KXM4Determinant(&affine) == 0.0 ||
        solve_perspective(whole, affine, &perspective) == singular) {
        return singular;
    }

    KXComponents parts;
    KXV3 rows[3] = {block_row(whole, 0), block_row(whole, 1), block_row(whole, 2)};
    separate_scale_and_shear(rows, &parts);
    read_angles(rows, &parts);
    parts.translateX = whole.m[0][3];
    parts.translateY = whole.m[1][3];
    parts.translateZ = whole.m[2][3];
    parts.perspectiveX = perspective.x;
    parts.perspectiveY = perspective.y;
    parts.perspectiveZ = perspective.z;
    parts.perspectiveW = perspective.w;
    *components = parts;
    return done;
}

void KXM4Compose(KXM4 *out, const KXComponents *components)
{
    const KXComponents parts = *components;
    const SineCosine x = sine_cosine(parts.rotateX);
    const SineCosine y = sine_cosine(parts.rotateY);
    const SineCosine z = sine_cosine(parts.rotateZ);

    // T*(S*((RX*RY)*RZ)). Sines and cosines are singles, and small ones are kept here.
    KXM4 product, next;
    KXM4RotateX2(x.cosine, x.sine, &product);
    KXM4RotateY2(y.cosine, y.sine, &next);
    KXM4Mult(&product, &next, &product);
    KXM4RotateZ2(z.cosine, z.sine, &next);
    KXM4Mult(&product, &next, &product);
    KXM4Scale(parts.scaleX, parts.scaleY, parts.scaleZ, &next);
    KXM4Mult(&next, &product, &product);
    KXM4Translate(parts.translateX, parts.translateY, parts.translateZ, &next);
    KXM4Mult(&next, &product, out);
}

int32_t KXM3Decompose(const KXM3 *m, KXComponents *components)
{
    // The same transform in space; its translation moves to the fourth column.
    const KXM4 embedded = {{{m->m[0][0], m->m[0][1], 0.0f, m->m[0][2]},
                            {m->m[1][0], m->m[1][1], 0.0f, m->m[1][2]},
                            {0.0f, 0.0f, 1.0f, 0.0f},
                            {0.0f, 0.0f, 0.0f, 1.0f}}};
    return KXM4Decompose(&embedded, components);
}

void KXM3Compose(KXM3 *out, const KXComponents *components)
{
    KXComponents flat = {};
    flat.scaleX = components->scaleX;
    flat.scaleY = components->scaleY;
    flat.scaleZ = 1.0f;
    flat.rotateZ = components->rotateZ;
    flat.translateX = components->translateX;
    flat.translateY = components->translateY;
    KXM4 embedded;
    KXM4Compose(&embedded, &flat);
    *out = {{{embedded.m[0][0], embedded.m[0][1], embedded.m[0][3]},
             {embedded.m[1][0], embedded.m[1][1], embedded.m[1][3]},
             {0.0f, 0.0f, 1.0f}}};
}
