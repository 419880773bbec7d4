/* Inverses. That of a KXM4 is in kernels/inverse.cpp and kernels/elimination.cpp. */
#include "kxmaths5/matrix.h"

#include "kernels.h"
#include "matrix/invert_block.h"

using namespace kx;

int32_t KXM4Inverse(const KXM4 *m, KXM4 *out)
{
    return KX_DISPATCH(inverse(m, out));
}

int32_t KXM3Inverse(const KXM3 *m, KXM3 *out)
{
    InverseBlock inverse;
    if (!invert_block(*m, &inverse)) {
        return singular;
    }
    store_columns(&out->m[0][0], &out->m[1][0], inverse.column[0], inverse.column[1]);
    store_column(&out->m[0][2], &out->m[1][2], inverse.column[2]);
    store(&out->m[2][0], inverse.row2);
    out->m[2][2] = inverse.corner;
    return done;
}
