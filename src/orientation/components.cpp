/* Position, angles and scale of a transform, by its columns. */
#include "kxmaths5/orientation.h"

#include "kxmaths5/foundations.h"
#include "kxmaths5/matrix.h"
#include "numeric.h"
#include "orientation/sine_cosine.h"

using namespace kx;

namespace
{

/** The determinant is that of the whole matrix, so the last row counts too; here it is a single. */
bool is_mirrored(double determinant)
{
    return round_to_single(determinant) < -tolerance;
}

float quarter_turn_towards(double side)
{
    return narrow(side > 0.0 ? quarter_turn : -quarter_turn);
}

/** Makes the block's columns unit length one by one; returns their lengths, unrounded. */
Xyz normalise_columns(KXM4 *m)
{
    const auto normalise = [m](int c) {
        KXV3 column = {m->m[0][c], m->m[1][c], m->m[2][c]};
        const double length = KXV3Normalise(&column, &column);
        m->m[0][c] = column.x;
        m->m[1][c] = column.y;
        m->m[2][c] = column.z;
        return length;
    };
    const double x = normalise(0);
    const double y = normalise(1);
    const double z = normalise(2);
    return {x, y, z};
}

float rotation_about_x(const KXM4 &m)
{
    const double s = widen(m.m[1][2]);
    // Near a quarter turn the arcsine loses half its digits; above 1, by rounding, it is undefined.
    if (1.0 - magnitude(s) >= tolerance) {
        return narrow(-arcsine(s));
    }
    return -quarter_turn_towards(s);
}

float rotation_about_y(const KXM4 &m)
{
    // A mirrored matrix keeps the sign of this element: only the first column is mirrored.
    const double e = widen(m.m[0][2]);
    const double w = widen(m.m[2][2]);
    if (magnitude(w) >= tolerance) {
        return narrow(arctangent(e, w));
    }
    // Gimbal lock: both are almost 0, and Z takes the remaining rotation.
    if (magnitude(e) < tolerance) {
        return 0.0f;
    }
    return quarter_turn_towards(e);
}

/** RX(-x)*RY(-y)*m: what remains of RY*RX*RZ is RZ. */
KXM4 turned_back(const KXM4 &m, float x, float y)
{
    const SineCosine back_x = sine_cosine(-x), back_y = sine_cosine(-y);
    KXM4 about_x, about_y, back;
    KXM4RotateY2(back_y.cosine, back_y.sine, &about_y);
    KXM4RotateX2(back_x.cosine, back_x.sine, &about_x);
    KXM4Mult(&about_x, &about_y, &back);
    KXM4Mult(&back, &m, &back);
    return back;
}

/** The angle about Z of a block whose first row starts with a, b. */
float rotation_about_z(double a, double b, bool mirrored)
{
    return narrow(-arctangent(b, mirrored ? -a : a));
}

/** The same where a is almost 0. */
float quarter_turn_about_z(double b)
{
    return magnitude(b) >= tolerance ? -quarter_turn_towards(b) : 0.0f;
}

} // namespace

void KXM4MatrixComponents(const KXM4 *m, KXPosition *position, KXV3 *scale)
{
    const bool mirrored = is_mirrored(KXM4Determinant(m));
    KXM4 unit_columns = *m;
    const Xyz lengths = normalise_columns(&unit_columns);
    if (scale != nullptr) {
        *scale = narrow(lengths);
        scale->x = mirrored ? -scale->x : scale->x;
    }

    const float x = rotation_about_x(unit_columns);
    const float y = rotation_about_y(unit_columns);
    const KXM4 rest = turned_back(unit_columns, x, y);
    const double a = widen(rest.m[0][0]);
    const double b = widen(rest.m[0][1]);
    // At or above; the 2-D form tests for above.
    const float z =
        magnitude(a) >= tolerance ? rotation_about_z(a, b, mirrored) : quarter_turn_about_z(b);
    if (position != nullptr) {
        *position = {unit_columns.m[0][3], unit_columns.m[1][3], unit_columns.m[2][3], x, y, z};
    }
}

void KXM3MatrixComponents(const KXM3 *m, KXP2 *position, float *angle, float *scaleX, float *scaleY)
{
    const bool mirrored = is_mirrored(KXM3Determinant(m));
    KXM3 unit_columns = *m;
    float *const scales[2] = {scaleX, scaleY};
    for (int c = 0; c < 2; ++c) {
        const double x = widen(unit_columns.m[0][c]);
        const double y = widen(unit_columns.m[1][c]);
        const double length = square_root(x * x + y * y);
        if (scales[c] != nullptr) {
            *scales[c] = narrow(length);
        }
        if (length > tolerance) {
            const double k = 1.0 / length;
            unit_columns.m[0][c] = narrow(x * k);
            unit_columns.m[1][c] = narrow(y * k);
        }
    }
    if (mirrored && scaleX != nullptr) {
        *scaleX = -*scaleX;
    }
    if (position != nullptr) {
        *position = {unit_columns.m[0][2], unit_columns.m[1][2]};
    }
    if (angle != nullptr) {
        const double a = widen(unit_columns.m[0][0]);
        const double b = widen(unit_columns.m[0][1]);
        *angle =
            magnitude(a) > tolerance ? rotation_about_z(a, b, mirrored) : quarter_turn_about_z(b);
    }
}
