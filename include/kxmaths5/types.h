/**
 * @file
 * Records, enumerations, constants, and the rules that hold for every function of kxmaths5.
 *
 * Calls. The caller owns every record and passes it by address. Floats that are only read, counts,
 * indices and enumerations go by value. The library keeps no state and allocates nothing. Any
 * thread may call it at any time, as long as no other thread writes a record that the call reads
 * or touches one that it writes.
 *
 * Addresses. An address must be valid for the whole record, or for the whole array. Null is
 * allowed only where a contract says so. An output may be the same record as an input only where a
 * contract says so; records must never overlap in part.
 *
 * Numbers. Every stored value is an IEEE 754 single. A formula is evaluated in double, in the order
 * in which it is printed, and rounded once, where its result is stored. A note "Rounding" names the
 * intermediates that are rounded to single as well. A result of type double is not rounded. "Above"
 * and "below" are strict; "at or above" and "at or below" include equality. What a NaN does is
 * defined only where a contract says so.
 *
 * Axes. Right-handed; angles in radians. A positive angle turns +Y towards +Z about X, +Z towards
 * +X about Y, and +X towards +Y about Z.
 */
#ifndef KXMATHS5_TYPES_H
#define KXMATHS5_TYPES_H

#include <stdint.h>

/** Version of this header. No function returns it. */
#define KX_VERSION_MAJOR 5
#define KX_VERSION_MINOR 0 /**< Grows when functions are added. */
#define KX_VERSION_PATCH 0 /**< Grows with every correction. */

/**
 * Marks an exported function. Define KX_STATIC to link the library statically. KX_BUILDING is for
 * the library's own build.
 */
#if defined(KX_STATIC)
#define KX_API
#elif defined(_WIN32) && defined(KX_BUILDING)
#define KX_API __declspec(dllexport)
#elif defined(_WIN32)
#define KX_API __declspec(dllimport)
#elif defined(__GNUC__)
#define KX_API __attribute__((visibility("default")))
#else
#define KX_API
#endif

#ifdef __cplusplus
#define KX_BEGIN_DECLARATIONS extern "C" { /**< Opens a block of functions with C names. */
#define KX_END_DECLARATIONS }              /**< Closes it. */
#else
#define KX_BEGIN_DECLARATIONS /**< Nothing in C. */
#define KX_END_DECLARATIONS   /**< Nothing in C. */
#endif

/**
 * The bound at which a length, an element, a determinant or a denominator counts as zero: the
 * single 1e-6, exactly 9.999999974752427e-07, a little less than the decimal 1e-6. The cast keeps
 * it a single where a compiler evaluates float constants with more bits.
 */
#define KX_TOLERANCE ((float)1e-6)

/** Means "no bound": the single 1e20, exactly 1.0000000200408773e+20. */
#define KX_HUGE ((float)1e20)

/** A free vector: a direction and a length, without a place. Three floats. */
typedef struct KXV3 {
    float x; /**< Component along X. */
    float y; /**< Component along Y. */
    float z; /**< Component along Z. */
} KXV3;

/** A point in the plane. Two floats. */
typedef struct KXP2 {
    float x; /**< Coordinate along X. */
    float y; /**< Coordinate along Y. */
} KXP2;

/** A point in space: the same type as a vector, so either can be passed as the other. */
typedef KXV3 KXP3;

/** A homogeneous point. Four floats. */
typedef struct KXP4 {
    float x; /**< Coordinate along X. */
    float y; /**< Coordinate along Y. */
    float z; /**< Coordinate along Z. */
    float w; /**< Fourth coordinate: 1 for a position, 0 for a direction. */
} KXP4;

/**
 * A transform of the plane: a homogeneous 3x3 matrix, not a rotation of space. Nine floats, row by
 * row.
 *
 *     x' = m[0][0]*x + m[0][1]*y + m[0][2]
 *     y' = m[1][0]*x + m[1][1]*y + m[1][2]
 *
 * The translation is the third column, m[0][2] and m[1][2]; an affine transform has the last row
 * 0 0 1.
 */
typedef struct KXM3 {
    float m[3][3]; /**< Element in row r and column c: m[r][c]. */
} KXM3;

/**
 * A transform of space: a homogeneous 4x4 matrix. Sixteen floats, row by row. It multiplies column
 * vectors from the left:
 *
 *     x' = m[0][0]*x + m[0][1]*y + m[0][2]*z + m[0][3]*w     and likewise for y', z', w'
 *
 * The translation is the last column, m[0][3], m[1][3], m[2][3]; an affine transform has the last
 * row 0 0 0 1. In a product a*b the right factor b acts first.
 */
typedef struct KXM4 {
    float m[4][4]; /**< Element in row r and column c: m[r][c]. */
} KXM4;

/** An axis-aligned box. Six floats. Valid when each maximum is at or above its minimum. */
typedef struct KXBox {
    KXP3 minimum; /**< The corner with the lowest coordinates. */
    KXP3 maximum; /**< The corner with the highest coordinates. */
} KXBox;

/** A finite, directed line: start + t*(end - start) for t from 0 to 1. Six floats. */
typedef struct KXLine {
    KXP3 start; /**< The point at t = 0. */
    KXP3 end;   /**< The point at t = 1. */
} KXLine;

/** A half line: origin + t*direction for t at or above 0. Six floats. */
typedef struct KXRay {
    KXP3 origin;    /**< The point at t = 0. */
    KXV3 direction; /**< The step for t = 1; of any length. */
} KXRay;

/** The plane a*x + b*y + c*z + d = 0. Four floats. */
typedef struct KXPlane {
    float a; /**< Normal along X. */
    float b; /**< Normal along Y. */
    float c; /**< Normal along Z. */
    float d; /**< Offset: minus the dot product of the normal with a point of the plane. */
} KXPlane;

/** A quaternion, vector part first. Four floats. */
typedef struct KXQuat {
    float x; /**< Vector part along X: n.x * sin(angle/2). */
    float y; /**< Vector part along Y: n.y * sin(angle/2). */
    float z; /**< Vector part along Z: n.z * sin(angle/2). */
    float w; /**< Scalar part: cos(angle/2). */
} KXQuat;

/** Position and orientation: a translation and three Euler angles. Six floats. */
typedef struct KXPosition {
    float x;       /**< Translation along X, in the caller's length unit. */
    float y;       /**< Translation along Y, in the caller's length unit. */
    float z;       /**< Translation along Z, in the caller's length unit. */
    float rotateX; /**< Rotation about the X axis, in radians. */
    float rotateY; /**< Rotation about the Y axis, in radians. */
    float rotateZ; /**< Rotation about the Z axis, in radians. */
} KXPosition;

/** The parts of a decomposed transform of space. Sixteen floats. */
typedef struct KXComponents {
    float scaleX;       /**< Scale of the first row. */
    float scaleY;       /**< Scale of the second row. */
    float scaleZ;       /**< Scale of the third row. */
    float shearXY;      /**< Shear of the second row along the first. */
    float shearXZ;      /**< Shear of the third row along the first. */
    float shearYZ;      /**< Shear of the third row along the second. */
    float rotateX;      /**< Rotation about the X axis, in radians. */
    float rotateY;      /**< Rotation about the Y axis, in radians. */
    float rotateZ;      /**< Rotation about the Z axis, in radians. */
    float translateX;   /**< Translation along X. */
    float translateY;   /**< Translation along Y. */
    float translateZ;   /**< Translation along Z. */
    float perspectiveX; /**< First element of the perspective. */
    float perspectiveY; /**< Second element of the perspective. */
    float perspectiveZ; /**< Third element of the perspective. */
    float perspectiveW; /**< Fourth element of the perspective: 1 where there is none. */
} KXComponents;

/** One corner of a triangle of the host's mesh. The library reads `vertex` only. */
typedef struct KXTriangleCorner {
    uint32_t hostFirst;  /**< For the host's use. */
    uint32_t vertex;     /**< Index of the corner's KXP3 in the vertex array. */
    uint32_t hostThird;  /**< For the host's use. */
    uint32_t hostFourth; /**< For the host's use. */
} KXTriangleCorner;

/**
 * A triangle of the host's mesh. Seventeen 32-bit words; a host's record may go on after them. The
 * library reads the three vertex indices and the plane, and writes nothing.
 */
typedef struct KXTriangle {
    KXTriangleCorner corner[3]; /**< The three corners. */
    uint32_t host;              /**< For the host's use. */
    KXPlane plane;              /**< Its plane, of any scale and facing either side. */
} KXTriangle;

/** Index of a length unit: one of the KX_UNIT_ values below. */
typedef uint32_t KXUnit;

/** The length units. */
enum {
    KX_UNIT_NONE = 0,         /**< No unit: every factor to it and from it is 1. */
    KX_UNIT_MILLIMETRE = 1,   /**< Millimetre. */
    KX_UNIT_CENTIMETRE = 2,   /**< Centimetre. */
    KX_UNIT_METRE = 3,        /**< Metre. */
    KX_UNIT_KILOMETRE = 4,    /**< Kilometre. */
    KX_UNIT_INCH = 5,         /**< Inch, 25.4 mm. */
    KX_UNIT_FOOT = 6,         /**< Foot, 12 inches. */
    KX_UNIT_YARD = 7,         /**< Yard, 3 feet. */
    KX_UNIT_MILE = 8,         /**< Statute mile, 1760 yards. */
    KX_UNIT_NAUTICAL_MILE = 9 /**< Nautical mile, 1852 m. */
};

/** The order of three axis rotations (Euler angles): one of the KX_ORDER_ values below. */
typedef uint32_t KXRotationOrder;

/**
 * The rotation orders. The letters name the factors of the matrix product from left to right; the
 * rightmost acts first. KX_ORDER_XYZ is RX*(RY*RZ): it turns a point about Z, then Y, then X, all
 * about fixed axes.
 */
enum {
    KX_ORDER_XYZ = 0, /**< RX*(RY*RZ). */
    KX_ORDER_XZY = 1, /**< RX*(RZ*RY). */
    KX_ORDER_YXZ = 2, /**< RY*(RX*RZ). */
    KX_ORDER_YZX = 3, /**< RY*(RZ*RX). */
    KX_ORDER_ZXY = 4, /**< RZ*(RX*RY). */
    KX_ORDER_ZYX = 5  /**< RZ*(RY*RX). */
};

#endif
