/* Transpose, sum and copy: each element by itself. */
#include "kxmaths5/matrix.h"

#include "simd/two.h"

using namespace kx;

void KXM4Transpose(const KXM4 *in, KXM4 *out)
{
    Float4 a = load_floats4(in->m[0]), b = load_floats4(in->m[1]);
    Float4 c = load_floats4(in->m[2]), d = load_floats4(in->m[3]);
    transpose(a, b, c, d);
    store(out->m[0], a);
    store(out->m[1], b);
    store(out->m[2], c);
    store(out->m[3], d);
}

void KXM3Transpose(const KXM3 *in, KXM3 *out)
{
    KXM3 copy;
    if (in == out) {
        copy = *in;
        in = &copy;
    }
    for (int r = 0; r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            out->m[r][c] = in->m[c][r];
        }
    }
}

void KXM4Add(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    for (int r = 0; r < 4; ++r) {
        store(out->m[r], load_floats4(a->m[r]) + load_floats4(b->m[r]));
    }
}

void KXM3Add(const KXM3 *a, const KXM3 *b, KXM3 *out)
{
    const float *const x = a->m[0], *const y = b->m[0];
    store(out->m[0], load_floats4(x) + load_floats4(y));
    store(&out->m[1][1], load_floats4(x + 4) + load_floats4(y + 4));
    out->m[2][2] = narrow(widen(x[8]) + widen(y[8]));
}

void KXM4Copy(const KXM4 *source, KXM4 *destination)
{
    *destination = *source;
}

void KXM3Copy(const KXM3 *source, KXM3 *destination)
{
    *destination = *source;
}
