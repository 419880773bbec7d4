/* The first test of every function for boxes. */
#ifndef KX_SPATIAL_BOX_H
#define KX_SPATIAL_BOX_H

#include "numeric.h"

namespace kx
{

/** A NaN does not make a box inverted. */
inline bool is_inverted(const Xyz &minimum, const Xyz &maximum)
{
    return minimum.x > maximum.x || minimum.y > maximum.y || minimum.z > maximum.z;
}

} // namespace kx

#endif
