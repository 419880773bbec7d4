/*
 * Matrices applied to a point and to arrays, and the product of two.
 *
 * Every product is of two singles, and so exact in double: it may be fused with the addition that
 * follows.
 */
#include "matrix/kernels.h"

#include "matrix/kernels/transform_columns.h"
#include "matrix/kernels/transform_xyz.h"

namespace kx
{
namespace KX_INSTRUCTION_SET
{

void position(const KXM4 *m, const KXP3 *p, KXP3 *out)
{
    const Double4 xyz1 = with_last_1(load3(&p->x));
    const Double4 a = load4(m->m[0]) * xyz1; // m00*x  m01*y  m02*z  m03
    const Double4 b = load4(m->m[1]) * xyz1;
    const Double4 c = load4(m->m[2]) * xyz1;
    // The terms of each row are added up from left to right, all rows at once.
    const Double4 ab02 = unpack_low(a, b), ab13 = unpack_high(a, b), c13 = unpack_high(c, c);
    const Double4 image =
        join_low(ab02, c) + join_low(ab13, c13) + join_high(ab02, c) + join_high(ab13, c13);
    store3(&out->x, narrow(image));
}

void directions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    transform<false>(m, count, in, out);
}

void positions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    transform<true>(m, count, in, out);
}

void directions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    transform<false>(m, count, in, out);
}

void positions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    transform<true>(m, count, in, out);
}

void homogeneous(const KXM4 *m, uint32_t count, const KXP4 *in, KXP4 *out)
{
    transform(m, count, in, out);
}

void product(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    multiply(a, b, out);
}

} // namespace KX_INSTRUCTION_SET
} // namespace kx
