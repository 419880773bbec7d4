/*
 * Products of matrices, and matrices applied to arrays: one text, compiled once for each
 * instruction set into a namespace of its own, which the build names in KX_INSTRUCTION_SET.
 *
 * Every product in this file is of two singles, and so exact in double: here, and nowhere else, a
 * multiplication may be fused with the addition after it.
 */
#include "matrix/kernels.h"

#include "matrix/forms.h"
#include "simd/widest.h"

#if KX_HAS_LANES
#include "matrix/kernels/transform_columns.h"
#include "matrix/kernels/transform_xyz.h"
#endif

using namespace kx;

namespace
{

#if !KX_HAS_LANES

template <bool Moved, typename Matrix, typename Point>
uint32_t transform_blocks(const Matrix &, uint32_t, const Point *, Point *)
{
    return 0;
}

uint32_t transform_blocks(const KXM4 &, uint32_t, const KXP4 *, KXP4 *)
{
    return 0;
}

void multiply_by_rows(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    multiply<4>(a, b, out);
}

#endif

/** Blocks of points, then the remaining points one by one. */
template <typename Matrix, typename Point>
void transform(uint32_t (*blocks)(const Matrix &, uint32_t, const Point *, Point *),
               Point (*form)(const Matrix &, const Point &), const Matrix *m, uint32_t count,
               const Point *in, Point *out)
{
    if (count == 0) {
        return; // nothing is read then, and any address may be null
    }
    uint32_t done = blocks(*m, count, in, out);
    if (done == count) {
        return;
    }
    const Matrix copy = *m; // a copy, since for the compiler out might be part of m
    for (; done < count; ++done) {
        out[done] = form(copy, in[done]);
    }
}

} // namespace

namespace kx
{
namespace KX_INSTRUCTION_SET
{

void product(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    multiply_by_rows(a, b, out);
}

void directions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    transform<KXM3, KXP2>(transform_blocks<false>, direction, m, count, in, out);
}

void positions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out)
{
    transform<KXM3, KXP2>(transform_blocks<true>, position, m, count, in, out);
}

void directions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    transform<KXM4, KXP3>(transform_blocks<false>, direction, m, count, in, out);
}

void positions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out)
{
    transform<KXM4, KXP3>(transform_blocks<true>, position, m, count, in, out);
}

void homogeneous(const KXM4 *m, uint32_t count, const KXP4 *in, KXP4 *out)
{
    transform<KXM4, KXP4>(transform_blocks, kx::homogeneous, m, count, in, out);
}

} // namespace KX_INSTRUCTION_SET
} // namespace kx
