/* The transform of a box, in a copy for each instruction set. */
#ifndef KX_SPATIAL_KERNELS_H
#define KX_SPATIAL_KERNELS_H

#include "kxmaths5/types.h"
#include "simd/dispatch.h"

KX_DECLARE_COPIES(void transform_box(const KXBox *box, const KXM4 *matrix, KXBox *out);)

#endif
