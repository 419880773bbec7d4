/**
 * @file
 * Range, bearing, elevation and azimuth.
 *
 * Y is up; X and Z span the ground. Azimuth and bearing run from +Z towards +X: 0 points along +Z,
 * a quarter turn along +X. Elevation is the angle above the ground, from -pi/2 to pi/2. In the
 * contracts pi/2, 3pi/2 and 2pi are the singles 1.5707963705062866, 4.71238899230957 and
 * 6.2831854820251465. All three are a little above the true angles, and so is the single nearest
 * pi, 3.1415927410125732.
 *
 * The two direction measures take their points in opposite orders, and differ in more:
 *
 *                              KXBearing              azimuth of KXPointsToREA
 *     direction measured       first minus second     second minus first
 *     range of the result      0 to 2pi               -pi to pi
 *     no difference along Z    equal to 0             magnitude below KX_TOLERANCE
 *     along -X                 3pi/2                  -pi/2
 *     nothing on the ground    3pi/2                  0
 */
#ifndef KXMATHS5_POLAR_H
#define KXMATHS5_POLAR_H

#include "kxmaths5/types.h"

KX_BEGIN_DECLARATIONS

/** @name Polar measures
 */
/** @{ */

/**
 * Distance between two points on the ground: sqrt(dz*dz + dx*dx). Their y is not read.
 *
 * - Aliasing: first and second may be one record.
 *
 * @param[in] first   a point, in the caller's length unit
 * @param[in] second  another, in the same unit
 * @return the distance in that unit, unrounded
 */
KX_API double KXRange(const KXP3 *first, const KXP3 *second);

/**
 * Bearing of the first point as seen from the second: atan2(dx, dz) of first minus second, with 2pi
 * added when it is below 0. Their y is not read.
 *
 * - Aliasing: first and second may be one record.
 * - Degenerate: with dz equal to 0 the bearing is pi/2 if dx is above 0, otherwise 3pi/2, also for
 *   two points at one place on the ground. A tiny negative dx with a positive dz gives 2pi itself.
 *   A dx of -0 with a negative dz gives -pi plus 2pi, a little above pi.
 *
 * @param[in] first   the point measured
 * @param[in] second  the point it is seen from, in the same unit
 * @return the bearing in radians, from 0 to 2pi, unrounded
 */
KX_API double KXBearing(const KXP3 *first, const KXP3 *second);

/**
 * Point at a range, elevation and azimuth from the origin:
 *
 *     x = range*cos(elevation)*sin(azimuth)
 *     y = range*sin(elevation)
 *     z = range*cos(elevation)*cos(azimuth)
 *
 * - Degenerate: a range of 0 gives zeros, with the signs of the products.
 *
 * @param[in]  range      the distance, in the caller's length unit
 * @param[in]  elevation  the angle above the ground, in radians
 * @param[in]  azimuth    the angle from +Z towards +X, in radians
 * @param[out] out        the point, in the range's unit
 */
KX_API void KXREAToPoint(float range, float elevation, float azimuth, KXP3 *out);

/**
 * Unit vector with an elevation and an azimuth: KXREAToPoint with a range of 1.
 *
 * @param[in]  elevation  the angle above the ground, in radians
 * @param[in]  azimuth    the angle from +Z towards +X, in radians
 * @param[out] out        the vector
 */
KX_API void KXEAToVector(float elevation, float azimuth, KXV3 *out);

/**
 * Range, elevation and azimuth of the second point as seen from the first. With dx, dy, dz the
 * second point minus the first:
 *
 *     range = sqrt(dz*dz + dy*dy + dx*dx)   elevation = asin(dy / range)   azimuth = atan2(dx, dz)
 *
 * - Aliasing: from and to may be one record; the three outputs must be floats apart from both and
 *   from each other.
 * - Degenerate: with |dz| below KX_TOLERANCE the azimuth is pi/2 for dx above 0, -pi/2 for dx below
 *   0 and 0 for dx equal to 0. With a range below KX_TOLERANCE both angles are 0, and the range is
 *   given as it is. A dx of -0 with a negative dz gives -pi.
 * - Rounding: dx, dy and dz are singles, and so is the range in dy / range. The range is compared
 *   unrounded.
 *
 * @param[in]  from       the point it is seen from, in the caller's length unit
 * @param[in]  to         the point measured, in the same unit
 * @param[out] range      the distance, in that unit: one float
 * @param[out] elevation  the angle above the ground, in radians: one float
 * @param[out] azimuth    the angle from +Z towards +X, in radians, -pi to pi: one float
 */
KX_API void KXPointsToREA(const KXP3 *from, const KXP3 *to, float *range, float *elevation,
                          float *azimuth);

/**
 * Elevation and azimuth of a vector, as KXPointsToREA gives them from the origin.
 *
 * - Aliasing: the two outputs must be floats apart from the vector and from each other.
 * - Degenerate: a vector shorter than KX_TOLERANCE gives 0 for both; one with |z| below
 *   KX_TOLERANCE gets its azimuth from the sign of x, as in KXPointsToREA. (-0, 0, -1) gives an
 *   azimuth of -pi.
 * - Rounding: as in KXPointsToREA.
 *
 * @param[in]  vector     the vector, of any length
 * @param[out] elevation  the angle above the ground, in radians: one float
 * @param[out] azimuth    the angle from +Z towards +X, in radians, -pi to pi: one float
 */
KX_API void KXVectorToEA(const KXV3 *vector, float *elevation, float *azimuth);

/** @} */

KX_END_DECLARATIONS

#endif
