/* Products of matrices. */
#include "kxmaths5/matrix.h"

#include "numeric.h"

namespace
{

/**
 * out = a*b over the upper-left Size x Size block; nothing else of out is written.
 *
 * out may be a, since a row of a is read whole before that row of out is stored and no later row
 * needs it. out may be b, since b is copied then.
 */
template <int Size, typename Matrix>
void multiply(const Matrix *a, const Matrix *b, Matrix *out)
{
    Matrix copy;
    if (out == b) {
        copy = *b;
        b = &copy;
    }
    for (int r = 0; r < Size; ++r) {
        double row[Size];
        for (int k = 0; k < Size; ++k) {
            row[k] = kx::wide(a->m[r][k]);
        }
        for (int c = 0; c < Size; ++c) {
            // The sum starts with its first product: a start at 0 would lose a sum of -0.
            double sum = row[0] * kx::wide(b->m[0][c]);
            for (int k = 1; k < Size; ++k) {
                sum += row[k] * kx::wide(b->m[k][c]);
            }
            out->m[r][c] = kx::single(sum);
        }
    }
}

} // namespace

void KXM4Mult(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    multiply<4>(a, b, out);
}

void KXM3Mult(const KXM3 *a, const KXM3 *b, KXM3 *out)
{
    multiply<3>(a, b, out);
}

void KXM43Mult(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    multiply<3>(a, b, out);
}
