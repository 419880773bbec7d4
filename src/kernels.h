/* The functions in src/<area>/kernels/: a copy of each for every instruction set. */
#ifndef KX_KERNELS_H
#define KX_KERNELS_H

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

    void orientation(KXM4 *matrix, KXM4 *inverse, float x, float y, float z, KXRotationOrder order);

    void transform_box(const KXBox *box, const KXM4 *matrix, KXBox *out);
)
// clang-format on

#endif
