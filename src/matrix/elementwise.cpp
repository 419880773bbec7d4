/* Transpose, sum and copy: each element by itself. */
#include "kxmaths5/matrix.h"

#include "numeric.h"

using namespace kx;

namespace
{

template <int Size, typename Matrix>
void transpose(const Matrix *in, Matrix *out)
{
    Matrix copy;
    if (in == out) {
        copy = *in;
        in = &copy;
    }
    for (int r = 0; r < Size; ++r) {
        for (int c = 0; c < Size; ++c) {
            out->m[r][c] = in->m[c][r];
        }
    }
}

template <int Size, typename Matrix>
void add(const Matrix *a, const Matrix *b, Matrix *out)
{
    for (int r = 0; r < Size; ++r) {
        for (int c = 0; c < Size; ++c) {
            out->m[r][c] = narrow(widen(a->m[r][c]) + widen(b->m[r][c]));
        }
    }
}

} // namespace

void KXM4Transpose(const KXM4 *in, KXM4 *out)
{
    transpose<4>(in, out);
}

void KXM3Transpose(const KXM3 *in, KXM3 *out)
{
    transpose<3>(in, out);
}

void KXM4Add(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    add<4>(a, b, out);
}

void KXM3Add(const KXM3 *a, const KXM3 *b, KXM3 *out)
{
    add<3>(a, b, out);
}

void KXM4Copy(const KXM4 *source, KXM4 *destination)
{
    *destination = *source;
}

void KXM3Copy(const KXM3 *source, KXM3 *destination)
{
    *destination = *source;
}
