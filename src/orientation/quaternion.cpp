/* Rotations as quaternions, from an angle and an axis, and to and from matrices. */
#include "kxmaths5/orientation.h"

#include "kxmaths5/foundations.h"
#include "numeric.h"

void KXGenerateQuat(float angle, const KXV3 *axis, KXQuat *out)
{
    const double h = kx::wide(angle) * 0.5;
    const double s = kx::rounded(kx::sine(h));
    KXV3 unit;
    KXV3Normalise(axis, &unit);
    const kx::Wide3 n = kx::wide(unit);
    *out = {kx::single(n.x * s), kx::single(n.y * s), kx::single(n.z * s),
            kx::single(kx::cosine(h))};
}

void KXQuatToMatrix(const KXQuat *q, KXM4 *out)
{
    const double x = kx::wide(q->x), y = kx::wide(q->y), z = kx::wide(q->z), w = kx::wide(q->w);
    const double k = 2.0 / (x * x + y * y + z * z + w * w);
    // Singles, all but zs and zz.
    const double xs = kx::rounded(k * x), ys = kx::rounded(k * y), zs = k * z;
    const double wx = kx::rounded(xs * w), wy = kx::rounded(ys * w), wz = kx::rounded(zs * w);
    const double xx = kx::rounded(xs * x), xy = kx::rounded(ys * x), xz = kx::rounded(zs * x);
    const double yy = kx::rounded(ys * y), yz = kx::rounded(zs * y), zz = zs * z;
    const auto element = [](double value) { return kx::single(value); };
    *out = {{{element(1.0 - (yy + zz)), element(xy - wz), element(xz + wy), 0.0f},
             {element(xy + wz), element(1.0 - (xx + zz)), element(yz - wx), 0.0f},
             {element(xz - wy), element(yz + wx), element(1.0 - (xx + yy)), 0.0f},
             {0.0f, 0.0f, 0.0f, 1.0f}}};
}

void KXMatrixToQuat(const KXM4 *m, KXQuat *out)
{
    const auto e = [m](uint32_t r, uint32_t c) { return kx::wide(m->m[r][c]); };
    const double t = e(0, 0) + e(1, 1) + e(2, 2);
    if (t > 0.0) {
        const double s = kx::square_root(t + 1.0);
        const double f = 0.5 / s;
        *out = {kx::single((e(2, 1) - e(1, 2)) * f), kx::single((e(0, 2) - e(2, 0)) * f),
                kx::single((e(1, 0) - e(0, 1)) * f), kx::single(s * 0.5)};
        return;
    }

    // w is small or none: the largest of x, y, z is worked out first, and divides the others.
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
    const double s = kx::square_root(e(i, i) - e(j, j) - e(k, k) + 1.0);
    const double f = 0.5 / s;
    float q[3];
    q[i] = kx::single(s * 0.5);
    q[j] = kx::single((e(j, i) + e(i, j)) * f);
    q[k] = kx::single((e(k, i) + e(i, k)) * f);
    *out = {q[0], q[1], q[2], kx::single((e(k, j) - e(j, k)) * f)};
}
