/* The block of an orientation, in a copy for each instruction set. */
#ifndef KX_ORIENTATION_KERNELS_H
#define KX_ORIENTATION_KERNELS_H

#include "kxmaths5/types.h"
#include "simd/dispatch.h"

KX_DECLARE_COPIES(void orientation(KXM4 *matrix, KXM4 *inverse, float x, float y, float z,
                                   KXRotationOrder order);)

#endif
