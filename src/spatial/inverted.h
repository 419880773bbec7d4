/* What every test of a box asks first. */
#ifndef KX_SPATIAL_INVERTED_H
#define KX_SPATIAL_INVERTED_H

#include "numeric.h"

namespace kx
{

/** A NaN makes no box inverted. */
inline bool is_inverted(const Xyz &minimum, const Xyz &maximum)
{
    return minimum.x > maximum.x || minimum.y > maximum.y || minimum.z > maximum.z;
}

} // namespace kx

#endif
