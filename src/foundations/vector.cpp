/* Operations on the free vector. */
#include "kxmaths5/foundations.h"

#include "numeric.h"

using namespace kx;

double KXV3Length(const KXV3 *v)
{
    const Xyz p = widen(*v);
    return square_root(p.x * p.x + p.y * p.y + p.z * p.z);
}

double KXV3Normalise(const KXV3 *in, KXV3 *out)
{
    const KXV3 original = *in;
    const Xyz v = widen(original);
    // z first: the sum's last bit depends on the order, and this one differs from KXV3Length's.
    const double length = square_root(v.z * v.z + v.y * v.y + v.x * v.x);
    if (length > tolerance) {
        const double reciprocal = 1.0 / length;
        *out = narrow(Xyz{reciprocal * v.x, reciprocal * v.y, reciprocal * v.z});
    } else {
        *out = original;
    }
    return length;
}

void KXV3Scale(KXV3 *v, float length)
{
    const double current = KXV3Length(v);
    if (current > tolerance) {
        const double factor = widen(length) / current;
        const Xyz p = widen(*v);
        *v = narrow(Xyz{p.x * factor, p.y * factor, p.z * factor});
    }
}

void KXV3Cross(const KXV3 *a, const KXV3 *b, KXV3 *out)
{
    const Xyz p = widen(*a);
    const Xyz q = widen(*b);
    *out = narrow(Xyz{
        p.y * q.z - p.z * q.y,
        p.z * q.x - p.x * q.z,
        p.x * q.y - p.y * q.x,
    });
}

void KXV3Perpendicular(const KXV3 *v, KXV3 *out)
{
    constexpr KXV3 x_axis = {1.0f, 0.0f, 0.0f};
    const bool no_y = magnitude(widen(v->y)) < tolerance;
    if (magnitude(widen(v->x)) < tolerance && no_y) {
        *out = x_axis;
        return;
    }
    // The projection onto the XZ plane, rotated by a quarter turn about Y.
    const KXV3 turned = {-v->z, 0.0f, v->x};
    const double length = KXV3Normalise(&turned, out);
    // A vector along Y has no such projection; X is perpendicular to it too.
    if (length <= tolerance && !no_y) {
        *out = x_axis;
    }
}

void KXV3Combine(const KXV3 *a, const KXV3 *b, KXV3 *out, float s, float t)
{
    const Xyz p = widen(*a);
    const Xyz q = widen(*b);
    const double u = widen(s);
    const double v = widen(t);
    *out = narrow(Xyz{u * p.x + v * q.x, u * p.y + v * q.y, u * p.z + v * q.z});
}
