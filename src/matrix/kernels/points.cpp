/*
 * Matrices applied to a point and to arrays, and the product of two.
 *
 * Every product is of two singles, and so exact in double: it may be fused with the addition that
 * follows.
 */
#include "kernels.h"

#include "matrix/kernels/transform_columns.h"
#include "matrix/kernels/transform_xyz.h"

namespace kx
{
namespace
{

#if !KX_HAS_LANES
template <typename Form, typename Matrix, typename Point>
KX_INLINE uint32_t transform_blocks(const Matrix &, uint32_t, const Point *, Point *)
{
    return 0;
}
#endif

/** Blocks of points, and then one by one those that the blocks leave. */
template <typename Form, typename Matrix, typename Point>
KX_INLINE void transform(const Matrix *m, uint32_t count, const Point *in, Point *out)
{
    if (count == 0) {
        return; // nothing is read then, and any address may be null
    }
    uint32_t transformed = transform_blocks<Form>(*m, count, in, out);
    if (transformed == count) {
        return;
    }
    Form form(*m); // not const: g++ 12 would keep it in memory
    for (; transformed < count; ++transformed) {
        form.apply(in[transformed], &out[transformed]);
    }
}

} // namespace

namespace KX_INSTRUCTION_SET
{

void position(const KXM4 *m, const KXP3 *p, KXP3 *out)
{
#if KX_HAS_DOUBLE4
    const Double4 xyz1 = join(load2(&p->x), lanes(widen(p->z), 1.0));
    const Double4 a = load4(m->m[0]) * xyz1; // m00*x  m01*y  m02*z  m03
    const Double4 b = load4(m->m[1]) * xyz1;
    const Double4 c = load4(m->m[2]) * xyz1;
    // The terms of each row are added up from left to right, all rows at once. The last lane is row
    // c again: a sum of other terms could raise flags that no coordinate does.
    const Double4 ab02 = unpack_low(a, b), ab13 = unpack_high(a, b);
    const Double4 cc02 = unpack_low(c, c), cc13 = unpack_high(c, c);
    const Double4 image =
        join_low(ab02, cc02) + join_low(ab13, cc13) + join_high(ab02, cc02) + join_high(ab13, cc13);
    store3(&out->x, narrow(image));
#else
    const Double2 xy = load2(&p->x), z1 = lanes(widen(p->z), 1.0);
    const Double2 c = load2(m->m[2]) * xy, c_end = load2(m->m[2] + 2) * z1;
    store(&out->x, two_rows(m->m[0], m->m[1], xy, z1));
    out->z = narrow(low(c) + high(c) + low(c_end) + high(c_end));
#endif
}

void directions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    transform<Transform2<false>>(m, count, in, out);
}

void positions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    transform<Transform2<true>>(m, count, in, out);
}

void directions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    transform<Columns3<false>>(m, count, in, out);
}

void positions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    transform<Columns3<true>>(m, count, in, out);
}

void homogeneous(const KXM4 *m, uint32_t count, const KXP4 *in, KXP4 *out)
{
    transform<Columns4>(m, count, in, out);
}

void product(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    multiply(a, b, out);
}

} // namespace KX_INSTRUCTION_SET
} // namespace kx
