/* The inverse of a matrix with perspective. */
#ifndef KX_MATRIX_ELIMINATION_H
#define KX_MATRIX_ELIMINATION_H

#include "kxmaths5/types.h"

namespace kx
{

/** Returns 0, or 1 for a matrix that it takes as singular; out is written in either case. */
int32_t invert_by_elimination(const KXM4 &m, KXM4 *out);

} // namespace kx

#endif
