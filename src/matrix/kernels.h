/* Products of matrices and matrices applied to arrays, in a copy for each instruction set. */
#ifndef KX_MATRIX_KERNELS_H
#define KX_MATRIX_KERNELS_H

#include "kxmaths5/types.h"
#include "simd/dispatch.h"

KX_DECLARE_COPIES(void product(const KXM4 *a, const KXM4 *b, KXM4 *out);
                  void directions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out);
                  void positions(const KXM3 *m, uint32_t count, const KXP2 *in, KXP2 *out);
                  void directions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out);
                  void positions(const KXM4 *m, uint32_t count, const KXP3 *in, KXP3 *out);
                  void homogeneous(const KXM4 *m, uint32_t count, const KXP4 *in, KXP4 *out);)

#endif
