/* Rotations as quaternions, from an angle and an axis, and to and from matrices. */
#include "kxmaths5/orientation.h"

#include "kxmaths5/foundations.h"
#include "numeric.h"
#include "orientation/sine_cosine.h"

using namespace kx;

void KXGenerateQuat(float angle, const KXV3 *axis, KXQuat *out)
{
    KXV3 unit;
    KXV3Normalise(axis, &unit);
    const Xyz n = widen(unit);
    const SineCosine half = sine_cosine(widen(angle) * 0.5);
    const double s = widen(half.sine);
    *out = {narrow(n.x * s), narrow(n.y * s), narrow(n.z * s), half.cosine};
}

void KXQuatToMatrix(const KXQuat *q, KXM4 *out)
{
    const double x = widen(q->x), y = widen(q->y), z = widen(q->z), w = widen(q->w);
    const double k = 2.0 / (x * x + y * y + z * z + w * w);
    // Singles, all but zs and zz.
    const double xs = round_to_single(k * x), ys = round_to_single(k * y), zs = k * z;
    const double wx = round_to_single(xs * w), wy = round_to_single(ys * w),
                 wz = round_to_single(zs * w);
    const double xx = round_to_single(xs * x), xy = round_to_single(ys * x),
                 xz = round_to_single(zs * x);
    const double yy = round_to_single(ys * y), yz = round_to_single(zs * y), zz = zs * z;
    const auto element = [](double value) { return narrow(value); };
    *out = {{{element(1.0 - (yy + zz)), element(xy - wz), element(xz + wy), 0.0f},
             {element(xy + wz), element(1.0 - (xx + zz)), element(yz - wx), 0.0f},
             {element(xz - wy), element(yz + wx), element(1.0 - (xx + yy)), 0.0f},
             {0.0f, 0.0f, 0.0f, 1.0f}}};
}

void KXMatrixToQuat(const KXM4 *m, KXQuat *out)
{
    const auto e = [m](uint32_t r, uint32_t c) { return widen(m->m[r][c]); };
    const double t = e(0, 0) + e(1, 1) + e(2, 2);
    if (t > 0.0) {
        const double s = square_root(t + 1.0);
        const double f = 0.5 / s;
        *out = {narrow((e(2, 1) - e(1, 2)) * f), narrow((e(0, 2) - e(2, 0)) * f),
                narrow((e(1, 0) - e(0, 1)) * f), narrow(s * 0.5)};
        return;
    }

    // w may be 0, so the largest of x, y, z is computed first, and divides the others.
    static constexpr uint32_t next_axis[3] = {1, 2, 0};
    uint32_t i = 0;
    if (e(1, 1) > e(0, 0)) {
        i = 1;
    }
    if (e(2, 2) > e(i, i)) {
        i = 2;
    }
    const uint32_t j = next_axis[i];
    const uint32_t k = next_axis[j];
    const double s = square_root(e(i, i) - e(j, j) - e(k, k) + 1.0);
    const double f = 0.5 / s;
    float q[3];
    q[i] = narrow(s * 0.5);
    q[j] = narrow((e(j, i) + e(i, j)) * f);
    q[k] = narrow((e(k, i) + e(i, k)) * f);
    *out = {q[0], q[1], q[2], narrow((e(k, j) - e(j, k)) * f)};
}
