/**
 * @file
 * Vectors, bits and scalars, length units.
 */
#ifndef KXMATHS5_FOUNDATIONS_H
#define KXMATHS5_FOUNDATIONS_H

#include "kxmaths5/types.h"

KX_BEGIN_DECLARATIONS

/** @name Vectors
 * A vector too short to have a direction is not an error: KXV3Normalise and KXV3Scale leave it
 * unchanged. The length that KXV3Normalise returns shows it.
 */
/** @{ */

/**
 * Length of a vector: sqrt(x*x + y*y + z*z). KX_TOLERANCE is not used.
 *
 * @param[in] v  the vector, in any unit
 * @return the length in that unit, unrounded
 */
KX_API double KXV3Length(const KXV3 *v);

/**
 * Unit vector of the same direction: out = in * (1/length), with length = sqrt(z*z + y*y + x*x).
 *
 * - Aliasing: out may be in.
 * - Degenerate: a vector of length at or below KX_TOLERANCE is copied unchanged. Only the returned
 *   length shows this.
 *
 * @param[in]  in   the vector, in any unit
 * @param[out] out  the unit vector
 * @return the length of in, unrounded
 */
KX_API double KXV3Normalise(const KXV3 *in, KXV3 *out);

/**
 * Sets the length of a vector and keeps its direction: v = v * (length / current length). A
 * negative length reverses the vector.
 *
 * - Degenerate: a vector of length at or below KX_TOLERANCE stays unchanged. A length of 0 gives
 *   zeros with the signs of the products.
 *
 * @param[in,out] v       the vector, in any unit
 * @param[in]     length  the length wanted, in that unit
 */
KX_API void KXV3Scale(KXV3 *v, float length);

/**
 * Cross product: out = a x b. Right-handed: X x Y is Z.
 *
 *     out.x = a.y*b.z - a.z*b.y
 *     out.y = a.z*b.x - a.x*b.z
 *     out.z = a.x*b.y - a.y*b.x
 *
 * - Aliasing: a and b may be one record; out must be another.
 * - Degenerate: parallel vectors give zeros.
 *
 * @param[in]  a    the left factor
 * @param[in]  b    the right factor
 * @param[out] out  the product
 */
KX_API void KXV3Cross(const KXV3 *a, const KXV3 *b, KXV3 *out);

/**
 * Unit vector perpendicular to a vector, in the XZ plane: (-v.z, 0, v.x) by KXV3Normalise.
 *
 * - Aliasing: out must not be v.
 * - Degenerate: gives (1, 0, 0) when |v.x| and |v.y| are both below KX_TOLERANCE (v along Z, or
 *   zero), and when |v.y| is not but (-v.z, 0, v.x) has a length at or below it (v along Y). The
 *   one result that is not a unit vector: with |v.x| equal to KX_TOLERANCE, |v.y| below it and
 *   almost no z, (-v.z, 0, v.x) is stored unnormalised.
 *
 * @param[in]  v    the vector, of any length
 * @param[out] out  the unit vector at right angles to it
 */
KX_API void KXV3Perpendicular(const KXV3 *v, KXV3 *out);

/**
 * Weighted sum of two vectors: out = s*a + t*b. Note the order: the weights come after the output.
 *
 * Weights 1 and 1 add, 1 and -1 subtract, 1-t and t interpolate from a to b.
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 *
 * @param[in]  a    the first vector
 * @param[in]  b    the second vector, in the same unit
 * @param[out] out  the sum
 * @param[in]  s    the weight of a
 * @param[in]  t    the weight of b
 */
KX_API void KXV3Combine(const KXV3 *a, const KXV3 *b, KXV3 *out, float s, float t);

/** @} */

/** @name Bits and scalars
 */
/** @{ */

/**
 * Number of bits set in a word.
 *
 * @param[in] v  the word
 * @return the count, 0 to 32
 */
KX_API uint32_t KXBitCount(uint32_t v);

/**
 * Index of the lowest bit set in a word; bit 0 is the least significant.
 *
 * - Degenerate: 0 gives 32, unlike in KXMSB.
 *
 * @param[in] v  the word
 * @return the index, 0 to 31; or 32
 */
KX_API uint32_t KXLSB(uint32_t v);

/**
 * Index of the highest bit set in a word; bit 0 is the least significant.
 *
 * - Degenerate: 0 gives 0, as 1 does.
 *
 * @param[in] v  the word
 * @return the index, 0 to 31
 */
KX_API uint32_t KXMSB(uint32_t v);

/**
 * Linear interpolation from (x0, y0) to (x1, y1), clamped to y0 and y1. Tested in this order:
 *
 *     x at or below x0:  y0
 *     x at or above x1:  y1
 *     otherwise:         (x - x0)*(y1 - y0) / (x1 - x0) + y0
 *
 * - Degenerate: with x0 equal to x1 or above it, an x at or below x0 gives y0 and a larger one y1.
 *   A NaN x fails both tests; the result is NaN.
 *
 * @param[in] x0  the start of the interval
 * @param[in] y0  the value at x0
 * @param[in] x1  the end of the interval
 * @param[in] y1  the value at x1
 * @param[in] x   the position
 * @return the value at x, unrounded
 */
KX_API double KXInterpolate(float x0, float y0, float x1, float y1, float x);

/**
 * Time between two readings of a free-running 32-bit counter, in seconds for a counter of
 * milliseconds: later - earlier modulo 2^32, read as a signed integer, times the single 0.001. The
 * counter may have wrapped in between. A true difference of 2^31 counts or more comes out wrong,
 * by a multiple of 2^32 counts.
 *
 * @param[in] later    the later reading
 * @param[in] earlier  the earlier reading
 * @return the difference in thousands of counts, unrounded
 */
KX_API double KXDiffTime(uint32_t later, uint32_t earlier);

/** @} */

/** @name Length units
 * Each function multiplies the lengths in a record by factor[from][to], from a table of singles for
 * ten units: 2 from KX_UNIT_METRE to KX_UNIT_MILLIMETRE becomes 2000. From or to KX_UNIT_NONE the
 * factor is 1. A length converted there and back may differ from the start in its last bits.
 *
 * The unit indices are not tested: both must be 0 to 9. Zeros, infinities and NaN are multiplied
 * like any number.
 */
/** @{ */

/**
 * Converts one length.
 *
 * @param[in]     from   the unit that the length is in, 0 to 9
 * @param[in]     to     the unit wanted, 0 to 9
 * @param[in,out] value  the length: one float
 */
KX_API void KXChangeUnits(KXUnit from, KXUnit to, float *value);

/**
 * Converts a point: x, y, z.
 *
 * @param[in]     from  the unit that the point is in, 0 to 9
 * @param[in]     to    the unit wanted, 0 to 9
 * @param[in,out] p     the point
 */
KX_API void KXP3ChangeUnits(KXUnit from, KXUnit to, KXP3 *p);

/**
 * Converts a homogeneous point: x, y, z, but not w.
 *
 * @param[in]     from  the unit that the point is in, 0 to 9
 * @param[in]     to    the unit wanted, 0 to 9
 * @param[in,out] p     the point
 */
KX_API void KXP4ChangeUnits(KXUnit from, KXUnit to, KXP4 *p);

/**
 * Converts a box: all six floats.
 *
 * @param[in]     from  the unit that the box is in, 0 to 9
 * @param[in]     to    the unit wanted, 0 to 9
 * @param[in,out] box   the box
 */
KX_API void KXBoxChangeUnits(KXUnit from, KXUnit to, KXBox *box);

/**
 * Converts a plane: its offset d, but not its normal a, b, c.
 *
 * @param[in]     from   the unit that the plane's offset is in, 0 to 9
 * @param[in]     to     the unit wanted, 0 to 9
 * @param[in,out] plane  the plane
 */
KX_API void KXPlaneChangeUnits(KXUnit from, KXUnit to, KXPlane *plane);

/**
 * Converts a transform: its translation m[0][3], m[1][3], m[2][3], but not the other thirteen
 * elements.
 *
 * @param[in]     from  the unit that the translation is in, 0 to 9
 * @param[in]     to    the unit wanted, 0 to 9
 * @param[in,out] m     the transform
 */
KX_API void KXM4ChangeUnits(KXUnit from, KXUnit to, KXM4 *m);

/**
 * Converts an array of points: x, y, z of each.
 *
 * - Null: allowed when count is 0.
 *
 * @param[in]     from    the unit that the points are in, 0 to 9
 * @param[in]     to      the unit wanted, 0 to 9
 * @param[in]     count   how many points
 * @param[in,out] points  the points, count of them, packed: twelve bytes each
 */
KX_API void KXP3ChangeNUnits(KXUnit from, KXUnit to, uint32_t count, KXP3 *points);

/**
 * Converts an array of homogeneous points: x, y, z of each, but not w.
 *
 * - Null: allowed when count is 0.
 *
 * @param[in]     from    the unit that the points are in, 0 to 9
 * @param[in]     to      the unit wanted, 0 to 9
 * @param[in]     count   how many points
 * @param[in,out] points  the points, count of them, packed: sixteen bytes each
 */
KX_API void KXP4ChangeNUnits(KXUnit from, KXUnit to, uint32_t count, KXP4 *points);

/**
 * Converts an array of planes: the offset d of each, but not the normal a, b, c.
 *
 * - Null: allowed when count is 0.
 *
 * @param[in]     from    the unit that the offsets are in, 0 to 9
 * @param[in]     to      the unit wanted, 0 to 9
 * @param[in]     count   how many planes
 * @param[in,out] planes  the planes, count of them, packed: sixteen bytes each
 */
KX_API void KXPlaneChangeNUnits(KXUnit from, KXUnit to, uint32_t count, KXPlane *planes);

/** @} */

KX_END_DECLARATIONS

#endif
