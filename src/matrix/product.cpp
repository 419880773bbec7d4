/* Products of matrices. That of two whole KXM4 is in kernels/points.cpp. */
#include "kxmaths5/matrix.h"

#include "kernels.h"
#include "simd/two.h"

using namespace kx;

namespace
{

/** The first three elements of a row, each in both lanes. */
struct Row {
    Double2 x, y, z;
};

KX_INLINE Row load_row(const float *from)
{
    const Double2 xy = load2(from);
    return {splat_low(xy), splat_high(xy), splat2(widen(from[2]))};
}

/** One row by two columns, or two rows by one. */
KX_INLINE Float2 product(const Row &row, Double2 c0, Double2 c1, Double2 c2)
{
    return narrow(row.x * c0 + row.y * c1 + row.z * c2);
}

/**
 * out = a*b over the upper-left 3x3 block; nothing else of out is written. Columns 0 and 1 of a row
 * are side by side, and so are rows 0 and 1 of column 2. All is read before the first store, since
 * out may be a or b.
 */
template <typename Matrix>
KX_INLINE void multiply_blocks(const Matrix *a, const Matrix *b, Matrix *out)
{
    const Double2 b0 = load2(b->m[0]), b1 = load2(b->m[1]), b2 = load2(b->m[2]);
    const Row end = {splat2(widen(b->m[0][2])), splat2(widen(b->m[1][2])),
                     splat2(widen(b->m[2][2]))};
    const Row row0 = load_row(a->m[0]), row1 = load_row(a->m[1]), row2 = load_row(a->m[2]);
    const Float2 out0 = product(row0, b0, b1, b2), out1 = product(row1, b0, b1, b2);
    const Float2 out2 = product(row2, b0, b1, b2);
    const Float2 out_end = product(end, unpack_low(row0.x, row1.x), unpack_low(row0.y, row1.y),
                                   unpack_low(row0.z, row1.z));
    const float corner =
        narrow(low(row2.x) * low(end.x) + low(row2.y) * low(end.y) + low(row2.z) * low(end.z));
    store(out->m[0], out0);
    store(out->m[1], out1);
    store(out->m[2], out2);
    store_column(&out->m[0][2], &out->m[1][2], out_end);
    out->m[2][2] = corner;
}

} // namespace

void KXM4Mult(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    KX_DISPATCH(product(a, b, out));
}

void KXM3Mult(const KXM3 *a, const KXM3 *b, KXM3 *out)
{
    multiply_blocks(a, b, out);
}

void KXM43Mult(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    multiply_blocks(a, b, out);
}
