/* What matrix/kernels/ has a copy of for each instruction set; KX_DISPATCH chooses. */
#ifndef KX_MATRIX_KERNELS_H
#define KX_MATRIX_KERNELS_H

#include "kxmaths5/types.h"
#include "simd/dispatch.h"

// clang-format off
KX_DECLARE_COPIES(
    double determinant(const KXM4 *m);
    int32_t inverse(const KXM4 *m, KXM4 *out);
    int32_t inverse_by_elimination(const KXM4 *m, KXM4 *out);

    void product(const KXM4 *a, const KXM4 *b, KXM4 *out);

    void position(const KXM4 *m, const KXP3 *p, KXP3 *out);

    void directions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out);
    void positions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out);
    void directions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out);
    void positions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out);
    void homogeneous(const KXM4 *m, uint32_t count, const KXP4 *in, KXP4 *out);
)
// clang-format on

#endif
