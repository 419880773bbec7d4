/**
 * @file
 * What most hosts need as well: dot products, quaternion algebra, cameras, and for intersections
 * the preparation of a mesh, and the parameter and the barycentric coordinates of a hit.
 *
 * All of it is `static inline`, in C99 that is also valid C++. kxmaths5.h does not include this
 * header, since it needs the host's <math.h>. In C, link with -lm.
 *
 * The rules are those of types.h: expressions run in double and are rounded once, where the result
 * is stored. Sums of products of two singles have the same bits with every compiler. Elsewhere a
 * compiler that fuses a multiplication with an addition may change the last bit of a double;
 * -ffp-contract=off prevents it.
 */
#ifndef KXMATHS5_EVERYDAY_H
#define KXMATHS5_EVERYDAY_H

#include "kxmaths5/foundations.h"
#include "kxmaths5/spatial.h"
#include "kxmaths5/types.h"

#include <math.h>

#if defined(__FAST_MATH__) || defined(_M_FP_FAST) ||                                               \
    (defined(__FINITE_MATH_ONLY__) && __FINITE_MATH_ONLY__)
#error "fast maths drops roundings, signs of zero and NaN: the results would be wrong"
#endif

/** @cond */
/* Rounds to single, for storing. g++ 12 packs neighbouring roundings into a vector and then drops
 * them if the values are widened again, as they are where one inline function takes the result of
 * another. The empty assembly prevents that. */
static inline float kx_detail_single(double value)
{
    float single = (float)value;
#if defined(__GNUC__) && !defined(__clang__)
#if defined(__SSE2__)
    __asm__("" : "+x"(single));
#elif defined(__aarch64__)
    __asm__("" : "+w"(single));
#else
    __asm__("" : "+m"(single));
#endif
#endif
    return single;
}

#if defined(__clang__) && defined(__SSE2__)
#define KX_DETAIL_PAIRS
/* Two coordinates of a vector, x and y or y and z, as doubles by one conversion. clang converts
 * them one by one otherwise, which takes 1.6 times as long. */
typedef double kx_detail_pair __attribute__((__vector_size__(16)));
static inline kx_detail_pair kx_detail_pair_at(const KXV3 *v, int first)
{
    float two __attribute__((__vector_size__(8)));
    __builtin_memcpy(&two, (const char *)v + first * (int)sizeof(float), sizeof two);
    return __builtin_convertvector(two, kx_detail_pair);
}
#endif

/* A point without the coordinate along which the plane's normal is largest, as KXRayIxTriangle sees
 * it: on a tie x is dropped before y, and y before z. */
static inline KXP2 kx_detail_project(const KXPlane *plane, const KXP3 *point)
{
    const float a = plane->a < 0.0f ? -plane->a : plane->a;
    const float b = plane->b < 0.0f ? -plane->b : plane->b;
    const float c = plane->c < 0.0f ? -plane->c : plane->c;
    const int drops_x = a >= b && a >= c;
    KXP2 projected;
    projected.x = drops_x ? point->y : point->x;
    projected.y = drops_x || b >= c ? point->z : point->y;
    return projected;
}

/* Twice the signed area of the parallelogram of two edges; each product is exact. */
static inline double kx_detail_area(KXP2 e, KXP2 f)
{
    return (double)f.y * (double)e.x - (double)e.y * (double)f.x;
}

/* The step from one point to another, in singles: one rounding, as of the difference in double. */
static inline KXP2 kx_detail_step(KXP2 from, KXP2 to)
{
    KXP2 step;
    step.x = to.x - from.x;
    step.y = to.y - from.y;
    return step;
}
/** @endcond */

/** @name Points and vectors
 */
/** @{ */

/**
 * Dot product: a.x*b.x + a.y*b.y + a.z*b.z.
 *
 * @param[in] a  a vector
 * @param[in] b  another
 * @return the product, unrounded
 */
static inline double kx_dot(const KXV3 *a, const KXV3 *b)
{
#if defined(KX_DETAIL_PAIRS)
    const kx_detail_pair xy = kx_detail_pair_at(a, 0) * kx_detail_pair_at(b, 0);
    return xy[0] + xy[1] + (double)a->z * (double)b->z;
#else
    return (double)a->x * (double)b->x + (double)a->y * (double)b->y + (double)a->z * (double)b->z;
#endif
}

/**
 * Distance of two points: sqrt(x*x + y*y + z*z) with x = b.x - a.x, and y and z likewise.
 *
 * - Aliasing: a and b may be one record.
 *
 * @param[in] a  a point, in the caller's length unit
 * @param[in] b  another, in the same unit
 * @return the distance in that unit, unrounded
 */
static inline double kx_distance(const KXP3 *a, const KXP3 *b)
{
    const double x = (double)b->x - (double)a->x;
    const double y = (double)b->y - (double)a->y;
    const double z = (double)b->z - (double)a->z;
    return sqrt(x * x + y * y + z * z);
}

/**
 * Linear interpolation: out = (1 - t)*a + t*b. With t = 0 it is a, with t = 1 b; outside 0 to 1 it
 * extrapolates along the line.
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 *
 * @param[in]  a    the point at t = 0
 * @param[in]  b    the point at t = 1, in the same unit
 * @param[in]  t    how far from a to b
 * @param[out] out  the point between
 */
static inline void kx_lerp(const KXP3 *a, const KXP3 *b, float t, KXP3 *out)
{
    const double u = (double)t, s = 1.0 - u;
    out->x = kx_detail_single(s * (double)a->x + u * (double)b->x);
    out->y = kx_detail_single(s * (double)a->y + u * (double)b->y);
    out->z = kx_detail_single(s * (double)a->z + u * (double)b->z);
}

/** @} */

/** @name Quaternion algebra
 * They rotate as KXQuatToMatrix does: right-handed, the vector part first. A quaternion and its
 * negative are the same rotation.
 */
/** @{ */

/**
 * Product of two quaternions: out = a*b, which rotates by b first, then by a, as KXM4Mult does
 * with their matrices.
 *
 *     x = aw*bx + ax*bw + ay*bz - az*by      y = aw*by - ax*bz + ay*bw + az*bx
 *     z = aw*bz + ax*by - ay*bx + az*bw      w = aw*bw - ax*bx - ay*by - az*bz
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 *
 * @param[in]  a    the left factor, which acts last
 * @param[in]  b    the right factor, which acts first
 * @param[out] out  the product
 */
static inline void kx_quat_product(const KXQuat *a, const KXQuat *b, KXQuat *out)
{
    const double ax = (double)a->x, ay = (double)a->y, az = (double)a->z, aw = (double)a->w;
    const double bx = (double)b->x, by = (double)b->y, bz = (double)b->z, bw = (double)b->w;
    out->x = kx_detail_single(aw * bx + ax * bw + ay * bz - az * by);
    out->y = kx_detail_single(aw * by - ax * bz + ay * bw + az * bx);
    out->z = kx_detail_single(aw * bz + ax * by - ay * bx + az * bw);
    out->w = kx_detail_single(aw * bw - ax * bx - ay * by - az * bz);
}

/**
 * Conjugate of a quaternion, (-x, -y, -z, w): of a unit quaternion, the rotation back.
 *
 * - Aliasing: out may be q.
 *
 * @param[in]  q    the quaternion
 * @param[out] out  its conjugate
 */
static inline void kx_quat_conjugate(const KXQuat *q, KXQuat *out)
{
    out->x = -q->x;
    out->y = -q->y;
    out->z = -q->z;
    out->w = q->w;
}

/**
 * Unit quaternion: out = in * (1/length), with length = sqrt(x*x + y*y + z*z + w*w). Products of
 * many quaternions drift away from unit length.
 *
 * - Aliasing: out may be in.
 * - Degenerate: a quaternion of length at or below KX_TOLERANCE is copied unchanged.
 *
 * @param[in]  in   the quaternion
 * @param[out] out  the unit quaternion
 * @return the length of in, unrounded
 */
static inline double kx_quat_normalise(const KXQuat *in, KXQuat *out)
{
    const double x = (double)in->x, y = (double)in->y, z = (double)in->z, w = (double)in->w;
    const double length = sqrt(x * x + y * y + z * z + w * w);
    const double factor = length > (double)KX_TOLERANCE ? 1.0 / length : 1.0;
    out->x = kx_detail_single(x * factor);
    out->y = kx_detail_single(y * factor);
    out->z = kx_detail_single(z * factor);
    out->w = kx_detail_single(w * factor);
    return length;
}

/**
 * Rotates a vector, or a point about the origin, by a quaternion of any length. With u the vector
 * part and x the cross product:
 *
 *     r = 2/(x*x + y*y + z*z + w*w) * (u x v)      out = v + w*r + u x r
 *
 * For more than a few vectors KXQuatToMatrix and an array form are quicker.
 *
 * - Aliasing: out may be v.
 * - Degenerate: the zero quaternion gives NaN, as in KXQuatToMatrix.
 *
 * @param[in]  q    the rotation
 * @param[in]  v    the vector
 * @param[out] out  the vector rotated
 */
static inline void kx_quat_rotate(const KXQuat *q, const KXV3 *v, KXV3 *out)
{
    const double x = (double)q->x, y = (double)q->y, z = (double)q->z, w = (double)q->w;
    const double vx = (double)v->x, vy = (double)v->y, vz = (double)v->z;
    const double k = 2.0 / (x * x + y * y + z * z + w * w);
    const double rx = k * (y * vz - z * vy);
    const double ry = k * (z * vx - x * vz);
    const double rz = k * (x * vy - y * vx);
    out->x = kx_detail_single(vx + w * rx + (y * rz - z * ry));
    out->y = kx_detail_single(vy + w * ry + (z * rx - x * rz));
    out->z = kx_detail_single(vz + w * rz + (x * ry - y * rx));
}

/**
 * Spherical linear interpolation of unit quaternions, along the shorter arc at constant speed. With
 * angle the angle between a and b in four dimensions:
 *
 *     out = sin((1 - t)*angle)/sin(angle) * a + sin(t*angle)/sin(angle) * b
 *
 * Where their dot product is below 0, -b is taken for b, which is the same rotation. The ends are
 * exact: a with t = 0, b, or -b, with t = 1.
 *
 * - Aliasing: out may be a, b or both; a and b may be one record.
 * - Degenerate: equal quaternions are interpolated linearly, which is the limit. Between rotations
 *   half a turn apart the arc is one of many.
 *
 * @param[in]  a    the rotation at t = 0, a unit quaternion
 * @param[in]  b    the rotation at t = 1, a unit quaternion
 * @param[in]  t    how far from a to b
 * @param[out] out  the rotation between, of unit length like a and b
 */
static inline void kx_quat_slerp(const KXQuat *a, const KXQuat *b, float t, KXQuat *out)
{
    const double ax = (double)a->x, ay = (double)a->y, az = (double)a->z, aw = (double)a->w;
    const double dot =
        ax * (double)b->x + ay * (double)b->y + az * (double)b->z + aw * (double)b->w;
    const double way = dot < 0.0 ? -1.0 : 1.0;
    const double bx = way * (double)b->x, by = way * (double)b->y, bz = way * (double)b->z;
    const double bw = way * (double)b->w;
    const double dx = bx - ax, dy = by - ay, dz = bz - az, dw = bw - aw;
    const double sx = bx + ax, sy = by + ay, sz = bz + az, sw = bw + aw;
    /* By the halves of a rhombus: an arccosine of the dot product loses half of the digits where a
     * and b are nearly parallel. */
    const double angle = 2.0 * atan2(sqrt(dx * dx + dy * dy + dz * dz + dw * dw),
                                     sqrt(sx * sx + sy * sy + sz * sz + sw * sw));
    const double sine = sin(angle), u = (double)t;
    double s = 1.0 - u, r = u;
    if (sine > 0.0) {
        s = sin(s * angle) / sine;
        r = sin(u * angle) / sine;
    }
    out->x = kx_detail_single(s * ax + r * bx);
    out->y = kx_detail_single(s * ay + r * by);
    out->z = kx_detail_single(s * az + r * bz);
    out->w = kx_detail_single(s * aw + r * bw);
}

/** @} */

/** @name Cameras
 * A camera looks along its -Z, with X to the right and Y up: right-handed, like all else here. From
 * a point of the world to the picture:
 *
 *     KXM4 placement, view, projection, world_to_clip;
 *     kx_look_at(&eye, &target, &up, &placement, &view);
 *     kx_perspective(0.8f, 16.0f/9.0f, 0.1f, 1000.0f, KX_DEPTH_0_TO_1, &projection);
 *     KXM4Mult(&projection, &view, &world_to_clip);
 *     KXM4P4(&world_to_clip, &point, &clip);        // point has w = 1
 *     kx_divide_by_w(&clip, &seen);
 *
 * x of what is seen runs from -1 at the left to 1 at the right, y from -1 at the bottom to 1 at the
 * top. Where a graphics interface wants y to run down, negate m[1][1] of the projection.
 */
/** @{ */

/** What depth the nearest and the farthest plane of a camera get: one of the KX_DEPTH_ values
 * below. */
typedef uint32_t KXDepthRange;

/** The depth ranges. */
enum {
    KX_DEPTH_0_TO_1 = 0,       /**< 0 at the nearest, 1 at the farthest. */
    KX_DEPTH_MINUS_1_TO_1 = 1, /**< -1 at the nearest, 1 at the farthest. */
    KX_DEPTH_1_TO_0 = 2        /**< 1 at the nearest, 0 at the farthest: finer far away. */
};

/** @cond */
static inline double kx_detail_depth_at_nearest(KXDepthRange depth)
{
    return depth == KX_DEPTH_0_TO_1 ? 0.0 : depth == KX_DEPTH_MINUS_1_TO_1 ? -1.0 : 1.0;
}

static inline double kx_detail_depth_at_farthest(KXDepthRange depth)
{
    return depth == KX_DEPTH_1_TO_0 ? 0.0 : 1.0;
}
/** @endcond */

/**
 * Places a camera at a point, looking at another. Its axes in the world, with x the cross product:
 *
 *     Z = (eye - target), unit length      X = up x Z, unit length      Y = Z x X
 *
 * The placement takes the camera's space to the world: its columns are X, Y, Z and the eye. The
 * view takes the world to the camera's space: its rows are X, Y, Z, and its last column -X.eye,
 * -Y.eye, -Z.eye.
 *
 * - Aliasing: the outputs must be apart from all else.
 * - Null: placement, view or both may be null; a null output is skipped. Nothing else may be null.
 * - On status 1: the direction is undefined, and one is chosen. With eye and target at one place
 *   the camera looks along -Z of the world; with up along the line of sight, to KX_TOLERANCE as the
 *   sine of the angle between, X is KXV3Perpendicular of Z.
 *
 * @param[in]  eye        where the camera is, in the caller's length unit
 * @param[in]  target     what is seen in the middle of the picture
 * @param[in]  up         what is up in the picture; of any length, at any angle
 * @param[out] placement  from the camera's space to the world; or null
 * @param[out] view       from the world to the camera's space; or null
 * @return 0 for done, 1 when the direction was chosen
 */
static inline int32_t kx_look_at(const KXP3 *eye, const KXP3 *target, const KXV3 *up,
                                 KXM4 *placement, KXM4 *view)
{
    const double ex = (double)eye->x, ey = (double)eye->y, ez = (double)eye->z;
    const double ux = (double)up->x, uy = (double)up->y, uz = (double)up->z;
    double zx = ex - (double)target->x, zy = ey - (double)target->y, zz = ez - (double)target->z;
    double xx, xy, xz, yx, yy, yz, sine;
    double length = sqrt(zx * zx + zy * zy + zz * zz);
    int32_t status = 0;
    /* Of two singles that differ, the difference is an ordinary double: 0 means one place. */
    if (!(length > 0.0 && length < 1e40)) {
        zx = zy = 0.0;
        zz = length = 1.0;
        status = 1;
    }
    zx /= length;
    zy /= length;
    zz /= length;
    xx = uy * zz - uz * zy;
    xy = uz * zx - ux * zz;
    xz = ux * zy - uy * zx;
    sine = sqrt(xx * xx + xy * xy + xz * xz);
    if (!(sine > (double)KX_TOLERANCE * sqrt(ux * ux + uy * uy + uz * uz) && sine < 1e40)) {
        KXV3 z, x;
        z.x = kx_detail_single(zx);
        z.y = kx_detail_single(zy);
        z.z = kx_detail_single(zz);
        KXV3Perpendicular(&z, &x);
        xx = (double)x.x;
        xy = (double)x.y;
        xz = (double)x.z;
        sine = sqrt(xx * xx + xy * xy + xz * xz);
        status = 1;
    }
    /* A zero of either sign plus 0.0 is +0. */
    xx = xx / sine + 0.0;
    xy = xy / sine + 0.0;
    xz = xz / sine + 0.0;
    yx = zy * xz - zz * xy + 0.0;
    yy = zz * xx - zx * xz + 0.0;
    yz = zx * xy - zy * xx + 0.0;
    if (placement) {
        const KXM4 matrix = {
            {{kx_detail_single(xx), kx_detail_single(yx), kx_detail_single(zx), eye->x},
             {kx_detail_single(xy), kx_detail_single(yy), kx_detail_single(zy), eye->y},
             {kx_detail_single(xz), kx_detail_single(yz), kx_detail_single(zz), eye->z},
             {0.0f, 0.0f, 0.0f, 1.0f}}};
        *placement = matrix;
    }
    if (view) {
        const KXM4 matrix = {{{kx_detail_single(xx), kx_detail_single(xy), kx_detail_single(xz),
                               kx_detail_single(0.0 - (xx * ex + xy * ey + xz * ez))},
                              {kx_detail_single(yx), kx_detail_single(yy), kx_detail_single(yz),
                               kx_detail_single(0.0 - (yx * ex + yy * ey + yz * ez))},
                              {kx_detail_single(zx), kx_detail_single(zy), kx_detail_single(zz),
                               kx_detail_single(0.0 - (zx * ex + zy * ey + zz * ez))},
                              {0.0f, 0.0f, 0.0f, 1.0f}}};
        *view = matrix;
    }
    return status;
}

/**
 * A perspective projection. With f = 1/tan(fieldOfView/2), r = nearest/farthest, and d0 and d1 the
 * depths of the nearest and the farthest plane:
 *
 *     f/aspect 0 0                        0
 *     0        f 0                        0
 *     0        0 (d0 - d1)*r/(1 - r) - d1 nearest*(d0 - d1)/(1 - r)
 *     0        0 -1                       0
 *
 * so that w is the distance along the line of sight. The farthest plane may be infinite.
 *
 * - Degenerate: nothing is refused. A field of view outside 0 to pi, an aspect or a nearest
 *   distance of 0, and two equal distances give elements that are infinite, NaN or meaningless.
 *
 * @param[in]  fieldOfView  from the bottom of the picture to its top, in radians
 * @param[in]  aspect       the picture's width divided by its height
 * @param[in]  nearest      distance of the nearest plane, above 0, in the caller's length unit
 * @param[in]  farthest     distance of the farthest plane, in that unit; may be infinite
 * @param[in]  depth        the depths of the two, one of KX_DEPTH_
 * @param[out] out          the projection
 */
static inline void kx_perspective(float fieldOfView, float aspect, float nearest, float farthest,
                                  KXDepthRange depth, KXM4 *out)
{
    const double f = 1.0 / tan(0.5 * (double)fieldOfView);
    const double d0 = kx_detail_depth_at_nearest(depth), d1 = kx_detail_depth_at_farthest(depth);
    const double r = (double)nearest / (double)farthest;
    const double step = (d0 - d1) / (1.0 - r);
    const KXM4 matrix = {
        {{kx_detail_single(f / (double)aspect), 0.0f, 0.0f, 0.0f},
         {0.0f, kx_detail_single(f), 0.0f, 0.0f},
         {0.0f, 0.0f, kx_detail_single(step * r - d1), kx_detail_single(step * (double)nearest)},
         {0.0f, 0.0f, -1.0f, 0.0f}}};
    *out = matrix;
}

/**
 * An orthographic projection: what is between the six planes fills the picture, and size does not
 * change with distance. With d0 and d1 the depths of the nearest and the farthest plane:
 *
 *     x' = (2*x - left - right)/(right - left)        y' = (2*y - bottom - top)/(top - bottom)
 *     z' = d0 + (d1 - d0)*(-z - nearest)/(farthest - nearest)
 *
 * - Degenerate: nothing is refused. Two equal planes give elements that are infinite or NaN.
 *
 * @param[in]  left      x at the left of the picture, in the caller's length unit
 * @param[in]  right     x at its right
 * @param[in]  bottom    y at its bottom
 * @param[in]  top       y at its top
 * @param[in]  nearest   distance of the nearest plane; 0 and negative distances are good here
 * @param[in]  farthest  distance of the farthest plane
 * @param[in]  depth     the depths of the two, one of KX_DEPTH_
 * @param[out] out       the projection
 */
static inline void kx_orthographic(float left, float right, float bottom, float top, float nearest,
                                   float farthest, KXDepthRange depth, KXM4 *out)
{
    const double l = (double)left, r = (double)right, b = (double)bottom, t = (double)top;
    const double n = (double)nearest, f = (double)farthest;
    const double d0 = kx_detail_depth_at_nearest(depth), d1 = kx_detail_depth_at_farthest(depth);
    const double step = (d0 - d1) / (f - n);
    const KXM4 matrix = {
        {{kx_detail_single(2.0 / (r - l)), 0.0f, 0.0f, kx_detail_single((-l - r) / (r - l))},
         {0.0f, kx_detail_single(2.0 / (t - b)), 0.0f, kx_detail_single((-b - t) / (t - b))},
         {0.0f, 0.0f, kx_detail_single(step), kx_detail_single(d0 + step * n)},
         {0.0f, 0.0f, 0.0f, 1.0f}}};
    *out = matrix;
}

/**
 * Perspective division: x/w, y/w, z/w.
 *
 * After a perspective projection a w below 0 is a point behind the camera, which is not in the
 * picture: test w first.
 *
 * - Aliasing: out must be apart from p.
 * - On status 1: w is 0, a direction and no point; out stays untouched.
 *
 * @param[in]  p    the homogeneous point
 * @param[out] out  the point
 * @return 0 for done, 1 when w is 0
 */
static inline int32_t kx_divide_by_w(const KXP4 *p, KXP3 *out)
{
    if (p->w == 0.0f) {
        return 1;
    }
    out->x = kx_detail_single((double)p->x / (double)p->w);
    out->y = kx_detail_single((double)p->y / (double)p->w);
    out->z = kx_detail_single((double)p->z / (double)p->w);
    return 0;
}

/**
 * The ray from a camera through a place in its picture, in the world; its direction has unit
 * length. It begins at the eye, or with an orthographic projection at the same place in the plane
 * through the eye. No matrix is inverted, so the two planes do not affect its accuracy.
 *
 * With x = 2*column/width - 1, y = 1 - 2*row/height and mrc the elements of the projection, in the
 * camera's space before KXTransformRay carries it:
 *
 *     perspective:   origin 0, 0, 0      direction (x + m02)/m00, (y + m12)/m11, -1
 *     orthographic:  origin (x - m03)/m00, (y - m13)/m11, 0      direction 0, 0, -1
 *
 * - Aliasing: out must be apart from all else.
 * - Degenerate: none with a projection by kx_perspective or kx_orthographic. One of another kind,
 *   skewed or combined with a view, gives another ray.
 *
 * @param[in]  projection  by kx_perspective or kx_orthographic
 * @param[in]  placement   from the camera's space to the world, as kx_look_at makes it
 * @param[in]  column      from the left of the picture, in pixels; a pixel's middle is at a half
 * @param[in]  row         from the top of the picture, in pixels
 * @param[in]  width       the picture's width, in pixels
 * @param[in]  height      the picture's height, in pixels
 * @param[out] out         the ray
 */
static inline void kx_screen_to_ray(const KXM4 *projection, const KXM4 *placement, float column,
                                    float row, float width, float height, KXRay *out)
{
    const double x = 2.0 * (double)column / (double)width - 1.0;
    const double y = 1.0 - 2.0 * (double)row / (double)height;
    const double m00 = (double)projection->m[0][0], m11 = (double)projection->m[1][1];
    const int perspective = projection->m[3][2] != 0.0f;
    const double place = perspective ? 0.0 : 1.0, slope = perspective ? 1.0 : 0.0;
    KXRay ray;
    ray.origin.x = kx_detail_single(place * (x - (double)projection->m[0][3]) / m00);
    ray.origin.y = kx_detail_single(place * (y - (double)projection->m[1][3]) / m11);
    ray.origin.z = 0.0f;
    ray.direction.x = kx_detail_single(slope * (x + (double)projection->m[0][2]) / m00);
    ray.direction.y = kx_detail_single(slope * (y + (double)projection->m[1][2]) / m11);
    ray.direction.z = -1.0f;
    KXTransformRay(&ray, placement, out);
}

/** @} */

/** @name Meshes for intersection
 * The functions of spatial.h need coordinates around the origin, large enough for their absolute
 * tolerances, and each triangle started at the corner that loses the fewest bits. They return the
 * point of a hit; kx_ray_parameter says where on the path that is, and kx_barycentric where in the
 * triangle.
 */
/** @{ */

/**
 * The scale and shift that suit a mesh for intersections: its centre at the origin, and its
 * diagonal from 512 to below 1024.
 *
 *     to:    x' = scale*x - scale*middle.x      from:  x = x'/scale + middle.x
 *
 * and likewise y and z. The scale is a power of two and costs no bit; the shift rounds once. In
 * this range KX_TOLERANCE is negligible relative to a coordinate, like its own last bits. Transform
 * rays by `to` with KXTransformRay, which also normalises their directions, and points of contact
 * back by `from`.
 *
 * - Aliasing: the outputs must be apart from box and from each other.
 * - Null: to, from or both may be null; a null output is skipped. box must not be null.
 * - On status 1: the outputs stay untouched. The box has no extent, is inverted or not finite, or
 *   is smaller than 6e-36.
 *
 * @param[in]  box   the box around the mesh, in the caller's length unit
 * @param[out] to    from the mesh's space into the range; or null
 * @param[out] from  the inverse of it; or null
 * @return 0 for done, 1 where there is no such scale
 */
static inline int32_t kx_fit_mesh(const KXBox *box, KXM4 *to, KXM4 *from)
{
    const double x = (double)box->maximum.x - (double)box->minimum.x;
    const double y = (double)box->maximum.y - (double)box->minimum.y;
    const double z = (double)box->maximum.z - (double)box->minimum.z;
    const double diagonal = sqrt(x * x + y * y + z * z);
    /* The bounds keep the power of two and its reciprocal ordinary singles. */
    if (!(KXIsValidBox(box) && diagonal >= 6e-36 && diagonal < 1e39)) {
        return 1;
    }
    int exponent = 0;
    (void)frexp(diagonal, &exponent);
    const float scale = kx_detail_single(ldexp(1.0, 10 - exponent));
    const float back = kx_detail_single(ldexp(1.0, exponent - 10));
    KXP3 middle;
    KXBoxMidPoint(box, &middle);
    if (to) {
        const KXM4 matrix = {{{scale, 0.0f, 0.0f, -middle.x * scale},
                              {0.0f, scale, 0.0f, -middle.y * scale},
                              {0.0f, 0.0f, scale, -middle.z * scale},
                              {0.0f, 0.0f, 0.0f, 1.0f}}};
        *to = matrix;
    }
    if (from) {
        const KXM4 matrix = {{{back, 0.0f, 0.0f, middle.x},
                              {0.0f, back, 0.0f, middle.y},
                              {0.0f, 0.0f, back, middle.z},
                              {0.0f, 0.0f, 0.0f, 1.0f}}};
        *from = matrix;
    }
    return 0;
}

/**
 * The record of a triangle, made for KXLineIxTriangle and KXRayIxTriangle: the plane by
 * KXPlaneEquation, and the corners in the order in which the test is most exact.
 *
 * The test divides by ep, the first coordinate of the first edge in the projection that the plane
 * selects. Where ep is small compared with the edge but not 0, as a quarter turn in singles leaves
 * it, the rounding of beta is divided by it, and rays at the triangle's inside miss. So the record
 * starts at the corner whose edge to the next has the largest |ep|, on a tie at the earlier one.
 * The corners keep their cyclic order, so the plane's normal keeps its side.
 *
 * The host's words become 0; fill them in afterwards, by the corners' vertices.
 *
 * - Aliasing: out must be apart from vertices.
 * - On status 1: the triangle has no plane, or |den|, twice its area in that projection, is below
 *   KX_TOLERANCE: no path hits it. The record is written all the same.
 *
 * @param[in]  vertices  the mesh's vertices, indexed by first, second and third, packed
 * @param[in]  first     index of the first corner
 * @param[in]  second    index of the second corner
 * @param[in]  third     index of the third corner
 * @param[out] out       the record
 * @return 0 for done, 1 when the triangle is too small or too flat to be hit
 */
static inline int32_t kx_triangle(const KXP3 *vertices, uint32_t first, uint32_t second,
                                  uint32_t third, KXTriangle *out)
{
    const uint32_t corners[3] = {first, second, third};
    const KXTriangleCorner none = {0, 0, 0, 0};
    KXP2 at[3];
    float largest = -1.0f;
    int begin = 0, k;
    const int32_t status =
        KXPlaneEquation(&vertices[first], &vertices[second], &vertices[third], &out->plane);
    for (k = 0; k < 3; ++k) {
        at[k] = kx_detail_project(&out->plane, &vertices[corners[k]]);
    }
    for (k = 0; k < 3; ++k) {
        const float step = kx_detail_step(at[k], at[(k + 1) % 3]).x;
        const float ep = step < 0.0f ? -step : step;
        if (ep > largest) {
            largest = ep;
            begin = k;
        }
    }
    for (k = 0; k < 3; ++k) {
        out->corner[k] = none;
        out->corner[k].vertex = corners[(begin + k) % 3];
    }
    out->host = 0;
    {
        const KXP2 k0 = at[begin];
        const KXP2 e = kx_detail_step(k0, at[(begin + 1) % 3]);
        const KXP2 f = kx_detail_step(k0, at[(begin + 2) % 3]);
        const int can_be_hit = fabs(kx_detail_area(e, f)) >= (double)KX_TOLERANCE;
        return status == 0 && can_be_hit ? 0 : 1;
    }
}

/**
 * How far along a ray a point is: t of the point of the ray's line that is nearest to it, so that
 * origin + t*direction is the point to within rounding. With a unit direction t is the
 * distance from the origin.
 *
 *     t = dot(point - origin, direction) / dot(direction, direction)
 *
 * - Degenerate: a direction of 0 gives 0.
 *
 * @param[in] ray    the ray
 * @param[in] point  a point on it, as KXRayIxBox or KXRayIxTriangle writes it
 * @return t, unrounded
 */
static inline double kx_ray_parameter(const KXRay *ray, const KXP3 *point)
{
    const KXP3 *const o = &ray->origin;
    const double x = (double)ray->direction.x;
    const double y = (double)ray->direction.y;
    const double z = (double)ray->direction.z;
    const double square = x * x + y * y + z * z;
    const double along = ((double)point->x - (double)o->x) * x +
                         ((double)point->y - (double)o->y) * y +
                         ((double)point->z - (double)o->z) * z;
    return square > 0.0 ? along / square : 0.0;
}

/**
 * How far along a line a point is: 0 at the start, 1 at the end.
 *
 *     t = dot(point - start, end - start) / dot(end - start, end - start)
 *
 * - Degenerate: a line of no length gives 0.
 *
 * @param[in] line   the line
 * @param[in] point  a point on it, as KXLineIxBox or KXLineIxTriangle writes it
 * @return t, unrounded
 */
static inline double kx_line_parameter(const KXLine *line, const KXP3 *point)
{
    const KXP3 *const s = &line->start;
    const double x = (double)line->end.x - (double)s->x;
    const double y = (double)line->end.y - (double)s->y;
    const double z = (double)line->end.z - (double)s->z;
    const double square = x * x + y * y + z * z;
    const double along = ((double)point->x - (double)s->x) * x +
                         ((double)point->y - (double)s->y) * y +
                         ((double)point->z - (double)s->z) * z;
    return square > 0.0 ? along / square : 0.0;
}

/**
 * The barycentric coordinates of a point of a triangle, which sum to 1. With v[k] a value that a
 * host keeps for corner[k], such as a normal, a colour or a texture coordinate, the value at the
 * point is weights[0]*v[0] + weights[1]*v[1] + weights[2]*v[2].
 *
 * With hp, hq, ep, eq, fp, fq as KXRayIxTriangle has them, in the projection that it uses:
 *
 *     den = fq*ep - eq*fp
 *     weights[1] = (fq*hp - hq*fp)/den   weights[2] = (hq*ep - eq*hp)/den
 *     weights[0] = 1 - weights[1] - weights[2]
 *
 * A point on an edge may get a weight a little below 0, by rounding.
 *
 * - Aliasing: weights must be apart from all else.
 * - On status 1: den is 0, and weights stay untouched.
 *
 * @param[in]  triangle  the triangle; the weights follow the order of its corners
 * @param[in]  vertices  the mesh's vertices, indexed by triangle, packed
 * @param[in]  point     a point in the triangle's plane
 * @param[out] weights   the coordinates: three floats
 * @return 0 for done, 1 when the triangle has no area
 */
static inline int32_t kx_barycentric(const KXTriangle *triangle, const KXP3 *vertices,
                                     const KXP3 *point, float weights[3])
{
    const KXPlane *const plane = &triangle->plane;
    const KXP2 k0 = kx_detail_project(plane, &vertices[triangle->corner[0].vertex]);
    const KXP2 k1 = kx_detail_project(plane, &vertices[triangle->corner[1].vertex]);
    const KXP2 k2 = kx_detail_project(plane, &vertices[triangle->corner[2].vertex]);
    const KXP2 h = kx_detail_step(k0, kx_detail_project(plane, point));
    const KXP2 e = kx_detail_step(k0, k1);
    const KXP2 f = kx_detail_step(k0, k2);
    const double den = kx_detail_area(e, f);
    if (den == 0.0) {
        return 1;
    }
    {
        const double alpha = kx_detail_area(h, f) / den, beta = kx_detail_area(e, h) / den;
        weights[0] = kx_detail_single(1.0 - alpha - beta);
        weights[1] = kx_detail_single(alpha);
        weights[2] = kx_detail_single(beta);
    }
    return 0;
}

/** @} */

#endif
