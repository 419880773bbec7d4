/* Matrices applied to points. All but the shortest are in kernels/points.cpp. */
#include "kxmaths5/matrix.h"

#include "kernels.h"
#include "matrix/transform_point.h"

using namespace kx;

void KXM3P2I0(const KXM3 *m, const KXP2 *p, KXP2 *out)
{
    Transform2<false>(*m).apply(*p, out);
}

void KXM3P2I1(const KXM3 *m, const KXP2 *p, KXP2 *out)
{
    Transform2<true>(*m).apply(*p, out);
}

void KXM4P3I0(const KXM4 *m, const KXP3 *p, KXP3 *out)
{
    // Rows 0 and 1 side by side; the last column is not read.
    const Double2 xy = load2(&p->x);
    const double z = widen(p->z);
    const Double2 a = load2(m->m[0]) * xy, b = load2(m->m[1]) * xy, c = load2(m->m[2]) * xy;
    const Double2 ends = lanes(widen(m->m[0][2]), widen(m->m[1][2])) * splat2(z);
    store(&out->x, narrow(unpack_low(a, b) + unpack_high(a, b) + ends));
    out->z = narrow(low(c) + high(c) + widen(m->m[2][2]) * z);
}

void KXM4P3I1(const KXM4 *m, const KXP3 *p, KXP3 *out)
{
    KX_DISPATCH(position(m, p, out));
}

void KXM4P4(const KXM4 *m, const KXP4 *p, KXP4 *out)
{
    const Double2 xy = load2(&p->x), zw = load2(&p->z);
    const Float2 image_xy = two_rows(m->m[0], m->m[1], xy, zw);
    const Float2 image_zw = two_rows(m->m[2], m->m[3], xy, zw);
    store(&out->x, image_xy);
    store(&out->z, image_zw);
}

void KXM3NP2I0(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    KX_DISPATCH(directions(m, count, in, out));
}

void KXM3NP2I1(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    KX_DISPATCH(positions(m, count, in, out));
}

void KXM4NP3I0(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    KX_DISPATCH(directions(m, count, in, out));
}

void KXM4NP3I1(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    KX_DISPATCH(positions(m, count, in, out));
}

void KXM4NP4(const KXM4 *m, uint32_t count, const KXP4 *in, KXP4 *out)
{
    KX_DISPATCH(homogeneous(m, count, in, out));
}
