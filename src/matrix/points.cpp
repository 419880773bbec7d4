/* Matrices applied to points, one at a time and in arrays. */
#include "kxmaths5/matrix.h"

#include "numeric.h"

namespace
{

/*
 * One point through one matrix. Each returns the whole image, so every coordinate of the point has
 * been read before the first is stored and a point may be transformed in place.
 */

KXP2 direction(const KXM3 &m, const KXP2 &p)
{
    const double x = kx::wide(p.x), y = kx::wide(p.y);
    const auto coordinate = [&](int r) {
        return kx::single(kx::wide(m.m[r][0]) * x + kx::wide(m.m[r][1]) * y);
    };
    return {coordinate(0), coordinate(1)};
}

KXP2 position(const KXM3 &m, const KXP2 &p)
{
    const double x = kx::wide(p.x), y = kx::wide(p.y);
    const auto coordinate = [&](int r) {
        return kx::single(kx::wide(m.m[r][0]) * x + kx::wide(m.m[r][1]) * y + kx::wide(m.m[r][2]));
    };
    return {coordinate(0), coordinate(1)};
}

KXP3 direction(const KXM4 &m, const KXP3 &p)
{
    const double x = kx::wide(p.x), y = kx::wide(p.y), z = kx::wide(p.z);
    const auto coordinate = [&](int r) {
        return kx::single(kx::wide(m.m[r][0]) * x + kx::wide(m.m[r][1]) * y +
                          kx::wide(m.m[r][2]) * z);
    };
    return {coordinate(0), coordinate(1), coordinate(2)};
}

KXP3 position(const KXM4 &m, const KXP3 &p)
{
    const double x = kx::wide(p.x), y = kx::wide(p.y), z = kx::wide(p.z);
    const auto coordinate = [&](int r) {
        return kx::single(kx::wide(m.m[r][0]) * x + kx::wide(m.m[r][1]) * y +
                          kx::wide(m.m[r][2]) * z + kx::wide(m.m[r][3]));
    };
    return {coordinate(0), coordinate(1), coordinate(2)};
}

KXP4 homogeneous(const KXM4 &m, const KXP4 &p)
{
    const double x = kx::wide(p.x), y = kx::wide(p.y), z = kx::wide(p.z), w = kx::wide(p.w);
    const auto coordinate = [&](int r) {
        return kx::single(kx::wide(m.m[r][0]) * x + kx::wide(m.m[r][1]) * y +
                          kx::wide(m.m[r][2]) * z + kx::wide(m.m[r][3]) * w);
    };
    return {coordinate(0), coordinate(1), coordinate(2), coordinate(3)};
}

template <typename Matrix, typename Point>
void transform_each(Point (*transform)(const Matrix &, const Point &), const Matrix *m,
                    uint32_t count, const Point *in, Point *out)
{
    for (uint32_t i = 0; i < count; ++i) {
        out[i] = transform(*m, in[i]);
    }
}

} // namespace

void KXM3P2I0(const KXM3 *m, const KXP2 *p, KXP2 *out)
{
    *out = direction(*m, *p);
}

void KXM3P2I1(const KXM3 *m, const KXP2 *p, KXP2 *out)
{
    *out = position(*m, *p);
}

void KXM4P3I0(const KXM4 *m, const KXP3 *p, KXP3 *out)
{
    *out = direction(*m, *p);
}

void KXM4P3I1(const KXM4 *m, const KXP3 *p, KXP3 *out)
{
    *out = position(*m, *p);
}

void KXM4P4(const KXM4 *m, const KXP4 *p, KXP4 *out)
{
    *out = homogeneous(*m, *p);
}

void KXM3NP2I0(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    transform_each<KXM3, KXP2>(direction, m, count, in, out);
}

void KXM3NP2I1(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    transform_each<KXM3, KXP2>(position, m, count, in, out);
}

void KXM4NP3I0(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    transform_each<KXM4, KXP3>(direction, m, count, in, out);
}

void KXM4NP3I1(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    transform_each<KXM4, KXP3>(position, m, count, in, out);
}

void KXM4NP4(const KXM4 *m, uint32_t count, const KXP4 *in, KXP4 *out)
{
    transform_each<KXM4, KXP4>(homogeneous, m, count, in, out);
}
