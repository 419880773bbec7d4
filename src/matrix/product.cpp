/* Products of matrices. */
#include "kxmaths5/matrix.h"

#include "matrix/forms.h"
#include "matrix/kernels.h"

using namespace kx;

void KXM4Mult(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    KX_DISPATCH(product(a, b, out));
}

void KXM3Mult(const KXM3 *a, const KXM3 *b, KXM3 *out)
{
    multiply<3>(a, b, out);
}

void KXM43Mult(const KXM4 *a, const KXM4 *b, KXM4 *out)
{
    multiply<3>(a, b, out);
}
