/**
 * @file
 * Vectors, bits and scalars, length units.
 */
#ifndef KXMATHS5_FOUNDATIONS_H
#define KXMATHS5_FOUNDATIONS_H

#include "kxmaths5/types.h"

KX_BEGIN_DECLARATIONS

/** @name Vectors
 * A vector too short to have a direction is no error here: KXV3Normalise and KXV3Scale leave it as
 * it is, and the length that KXV3Normalise returns tells the caller so.
 */
/** @{ */

/**
 * Length of a vector: sqrt(x*x + y*y + z*z), with no lower limit.
 *
 * - Null: not allowed.
 *
 * @param[in] v  the vector, in any unit
 * @return the length in that unit, unrounded
 */
KX_API double KXV3Length(const KXV3 *v);

/**
 * Makes a vector unit length: out = in * (1/length), with length = sqrt(z*z + y*y + x*x).
 *
 * - Aliasing: out may be in.
 * - Null: not allowed.
 * - Degenerate: a length at or below KX_TOLERANCE copies in to out bit for bit. The result is the
 *   only sign of it.
 *
 * @param[in]  in   the vector, in any unit
 * @param[out] out  the unit vector
 * @return the length of in, unrounded, in both cases
 */
KX_API double KXV3Normalise(const KXV3 *in, KXV3 *out);

/**
 * Gives a vector another length and keeps its direction: v = v * (length / current length).
 *
 * A negative length turns the vector round; 0 makes it zero, with the signs of the products.
 *
 * - Null: not allowed.
 * - Degenerate: a current length at or below KX_TOLERANCE leaves v untouched, whatever was asked.
 *
 * @param[in,out] v       the vector, in any unit
 * @param[in]     length  the length wanted, in that unit
 */
KX_API void KXV3Scale(KXV3 *v, float length);

/**
 * Cross product, right-handed: out = a x b, so that X x Y is Z.
 *
 *     out.x = a.y*b.z - a.z*b.y
 *     out.y = a.z*b.x - a.x*b.z
 *     out.z = a.x*b.y - a.y*b.x
 *
 * - Aliasing: a and b may be one record; out must be another.
 * - Null: not allowed.
 * - Degenerate: parallel vectors give zeros.
 *
 * @param[in]  a    the left factor
 * @param[in]  b    the right factor
 * @param[out] out  the product
 */
KX_API void KXV3Cross(const KXV3 *a, const KXV3 *b, KXV3 *out);

/**
 * A unit vector in the XZ plane at right angles to a vector: (-v.z, 0, v.x), normalised.
 *
 * - Aliasing: out must not be v.
 * - Null: not allowed.
 * - Degenerate: the unit X axis (1, 0, 0) when |v.x| and |v.y| are both below KX_TOLERANCE (v along
 *   Z, or zero), and when |v.y| is not but (-v.z, 0, v.x) is at or below it in length (v along Y).
 *   One kind of vector gets no unit vector: with |v.x| equal to KX_TOLERANCE, |v.y| below it and
 *   next to no z, (-v.z, 0, v.x) is stored as it is.
 *
 * @param[in]  v    the vector, of any length
 * @param[out] out  the unit vector at right angles to it
 */
KX_API void KXV3Perpendicular(const KXV3 *v, KXV3 *out);

/**
 * Weighted sum of two vectors: out = s*a + t*b. The weights stand behind the output.
 *
 * Weights 1 and -1 subtract, 1 and 1 add, 1-t and t go from a to b.
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 * - Null: not allowed.
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
 * Bit 0 is the least significant.
 */
/** @{ */

/**
 * How many bits of a word are set.
 *
 * @param[in] v  the word
 * @return the count, 0 to 32
 */
KX_API uint32_t KXBitCount(uint32_t v);

/**
 * Index of the lowest bit that is set.
 *
 * - Degenerate: 32 for a word of 0, unlike KXMSB.
 *
 * @param[in] v  the word
 * @return the index, 0 to 31; or 32
 */
KX_API uint32_t KXLSB(uint32_t v);

/**
 * Index of the highest bit that is set.
 *
 * - Degenerate: 0 for a word of 0, as for a word of 1; test the word itself to tell them apart.
 *
 * @param[in] v  the word
 * @return the index, 0 to 31
 */
KX_API uint32_t KXMSB(uint32_t v);

/**
 * Straight-line interpolation from (x0, y0) to (x1, y1), held at both ends. In this order:
 *
 *     x at or below x0:  y0
 *     x at or above x1:  y1
 *     otherwise:         (x - x0)*(y1 - y0) / (x1 - x0) + y0
 *
 * - Degenerate: with x0 equal to x1, or above it, an x at or below x0 gives y0 and any other number
 *   gives y1; nothing is divided. An x that is NaN is on no side: the formula makes it NaN again.
 *
 * @param[in] x0  where the interval begins
 * @param[in] y0  the value there
 * @param[in] x1  where it ends
 * @param[in] y1  the value there
 * @param[in] x   the position
 * @return the value at x, unrounded
 */
KX_API double KXInterpolate(float x0, float y0, float x1, float y1, float x);

/**
 * Time between two readings of a free-running 32-bit counter, in thousands of counts: the
 * difference modulo 2^32, read as a signed integer, times the single 0.001. A counter that has
 * wrapped round still gives the true difference, as long as that is below 2^31 counts; a larger one
 * comes out negative.
 *
 * @param[in] later    the later reading
 * @param[in] earlier  the earlier reading
 * @return the difference, scaled and unrounded: seconds, for a counter of milliseconds
 */
KX_API double KXDiffTime(uint32_t later, uint32_t earlier);

/** @} */

/** @name Length units
 * Each function multiplies the lengths in a record by factor[from][to] out of a stored table of
 * ten units, and touches nothing else in the record: 2 from KX_UNIT_METRE to KX_UNIT_MILLIMETRE
 * becomes 2000. From or to KX_UNIT_NONE the factor is 1. The factors are singles, so a length that
 * goes there and back may come out a little beside the start, in its last bits.
 *
 * The unit indices are not tested: both must be in 0 to 9. Null is not allowed, but for an array
 * with a count of 0. There is no degenerate input: zeros, infinities and NaN are multiplied too.
 */
/** @{ */

/**
 * Converts one length.
 *
 * - Null: not allowed.
 *
 * @param[in]     from   the unit that the length is in, 0 to 9
 * @param[in]     to     the unit wanted, 0 to 9
 * @param[in,out] value  the length: one float
 */
KX_API void KXChangeUnits(KXUnit from, KXUnit to, float *value);

/**
 * Converts a point: x, y, z.
 *
 * - Null: not allowed.
 *
 * @param[in]     from  the unit that the point is in, 0 to 9
 * @param[in]     to    the unit wanted, 0 to 9
 * @param[in,out] p     the point
 */
KX_API void KXP3ChangeUnits(KXUnit from, KXUnit to, KXP3 *p);

/**
 * Converts a homogeneous point: x, y, z. Its w stays untouched.
 *
 * - Null: not allowed.
 *
 * @param[in]     from  the unit that the point is in, 0 to 9
 * @param[in]     to    the unit wanted, 0 to 9
 * @param[in,out] p     the point
 */
KX_API void KXP4ChangeUnits(KXUnit from, KXUnit to, KXP4 *p);

/**
 * Converts a box: all six floats.
 *
 * - Null: not allowed.
 *
 * @param[in]     from  the unit that the box is in, 0 to 9
 * @param[in]     to    the unit wanted, 0 to 9
 * @param[in,out] box   the box
 */
KX_API void KXBoxChangeUnits(KXUnit from, KXUnit to, KXBox *box);

/**
 * Converts a plane: its offset d. The normal a, b, c stays untouched.
 *
 * - Null: not allowed.
 *
 * @param[in]     from   the unit that the plane's offset is in, 0 to 9
 * @param[in]     to     the unit wanted, 0 to 9
 * @param[in,out] plane  the plane
 */
KX_API void KXPlaneChangeUnits(KXUnit from, KXUnit to, KXPlane *plane);

/**
 * Converts a transform: its translation m[0][3], m[1][3], m[2][3]. The other thirteen elements stay
 * untouched, m[3][3] among them.
 *
 * - Null: not allowed.
 *
 * @param[in]     from  the unit that the translation is in, 0 to 9
 * @param[in]     to    the unit wanted, 0 to 9
 * @param[in,out] m     the transform
 */
KX_API void KXM4ChangeUnits(KXUnit from, KXUnit to, KXM4 *m);

/**
 * Converts an array of points: x, y, z of each.
 *
 * - Null: allowed when count is 0; then nothing is touched.
 *
 * @param[in]     from    the unit that the points are in, 0 to 9
 * @param[in]     to      the unit wanted, 0 to 9
 * @param[in]     count   how many points
 * @param[in,out] points  the points, count of them, packed: twelve bytes each
 */
KX_API void KXP3ChangeNUnits(KXUnit from, KXUnit to, uint32_t count, KXP3 *points);

/**
 * Converts an array of homogeneous points: x, y, z of each. Every w stays untouched.
 *
 * - Null: allowed when count is 0; then nothing is touched.
 *
 * @param[in]     from    the unit that the points are in, 0 to 9
 * @param[in]     to      the unit wanted, 0 to 9
 * @param[in]     count   how many points
 * @param[in,out] points  the points, count of them, packed: sixteen bytes each
 */
KX_API void KXP4ChangeNUnits(KXUnit from, KXUnit to, uint32_t count, KXP4 *points);

/**
 * Converts an array of planes: the offset d of each. Every normal a, b, c stays untouched.
 *
 * - Null: allowed when count is 0; then nothing is touched.
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
