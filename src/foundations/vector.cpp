/* Operations on the free vector. */
#include "kxmaths5/foundations.h"

#include "numeric.h"

using kx::Wide3;

double KXV3Length(const KXV3 *v)
{
    const Wide3 p = kx::wide(*v);
    return kx::square_root(p.x * p.x + p.y * p.y + p.z * p.z);
}

double KXV3Normalise(const KXV3 *in, KXV3 *out)
{
    const KXV3 original = *in;
    const Wide3 v = kx::wide(original);
    // z first: the sum's last bit depends on the order, and this one differs from KXV3Length's.
    const double length = kx::square_root(v.z * v.z + v.y * v.y + v.x * v.x);
    if (length > kx::tolerance) {
        const double reciprocal = 1.0 / length;
        *out = kx::single(Wide3{reciprocal * v.x, reciprocal * v.y, reciprocal * v.z});
    } else {
        *out = original;
    }
    return length;
}

void KXV3Scale(KXV3 *v, float length)
{
    const double current = KXV3Length(v);
    if (current > kx::tolerance) {
        const double factor = kx::wide(length) / current;
        const Wide3 p = kx::wide(*v);
        *v = kx::single(Wide3{p.x * factor, p.y * factor, p.z * factor});
    }
}

void KXV3Cross(const KXV3 *a, const KXV3 *b, KXV3 *out)
{
    const Wide3 p = kx::wide(*a);
    const Wide3 q = kx::wide(*b);
    *out = kx::single(Wide3{
        p.y * q.z - p.z * q.y,
        p.z * q.x - p.x * q.z,
        p.x * q.y - p.y * q.x,
    });
}

void KXV3Perpendicular(const KXV3 *v, KXV3 *out)
{
    constexpr KXV3 x_axis = {1.0f, 0.0f, 0.0f};
    const bool no_y = kx::magnitude(kx::wide(v->y)) < kx::tolerance;
    if (kx::magnitude(kx::wide(v->x)) < kx::tolerance && no_y) {
        *out = x_axis;
        return;
    }
    // The projection onto the XZ plane, a quarter turn about Y back.
    const KXV3 turned = {-v->z, 0.0f, v->x};
    const double length = KXV3Normalise(&turned, out);
    // A vector along Y has no such projection; X is at right angles to it as well.
    if (length <= kx::tolerance && !no_y) {
        *out = x_axis;
    }
}

void KXV3Combine(const KXV3 *a, const KXV3 *b, KXV3 *out, float s, float t)
{
    const Wide3 p = kx::wide(*a);
    const Wide3 q = kx::wide(*b);
    const double u = kx::wide(s);
    const double v = kx::wide(t);
    *out = kx::single(Wide3{u * p.x + v * q.x, u * p.y + v * q.y, u * p.z + v * q.z});
}
