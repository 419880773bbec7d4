/*
 * Size and offset of every record, the same text for C99 and for every C++ from C++11 on. A name
 * of an array type with a negative size is the one static assertion that all of them know.
 */
#include "kxmaths5.h"

#include <stddef.h>

#define ASSERT_AT_LINE(condition, line) typedef char assertion_##line[(condition) ? 1 : -1]
#define ASSERT_EXPANDED(condition, line) ASSERT_AT_LINE(condition, line)
#define ASSERT(condition) ASSERT_EXPANDED(condition, __LINE__)

#define ASSERT_SIZE(record, floats) ASSERT(sizeof(record) == 4 * (floats))
#define ASSERT_FIELD(record, field, word) ASSERT(offsetof(record, field) == 4 * (word))

ASSERT_SIZE(KXV3, 3);
ASSERT_FIELD(KXV3, x, 0);
ASSERT_FIELD(KXV3, y, 1);
ASSERT_FIELD(KXV3, z, 2);
ASSERT_SIZE(KXP2, 2);
ASSERT_FIELD(KXP2, x, 0);
ASSERT_FIELD(KXP2, y, 1);
ASSERT_SIZE(KXP3, 3);
ASSERT_SIZE(KXP4, 4);
ASSERT_FIELD(KXP4, x, 0);
ASSERT_FIELD(KXP4, y, 1);
ASSERT_FIELD(KXP4, z, 2);
ASSERT_FIELD(KXP4, w, 3);
ASSERT_SIZE(KXM3, 9);
ASSERT_FIELD(KXM3, m[1][0], 3);
ASSERT_FIELD(KXM3, m[0][2], 2);
ASSERT_SIZE(KXM4, 16);
ASSERT_FIELD(KXM4, m[1][0], 4);
ASSERT_FIELD(KXM4, m[0][3], 3);
ASSERT_SIZE(KXBox, 6);
ASSERT_FIELD(KXBox, minimum, 0);
ASSERT_FIELD(KXBox, maximum, 3);
ASSERT_SIZE(KXLine, 6);
ASSERT_FIELD(KXLine, start, 0);
ASSERT_FIELD(KXLine, end, 3);
ASSERT_SIZE(KXRay, 6);
ASSERT_FIELD(KXRay, origin, 0);
ASSERT_FIELD(KXRay, direction, 3);
ASSERT_SIZE(KXPlane, 4);
ASSERT_FIELD(KXPlane, a, 0);
ASSERT_FIELD(KXPlane, b, 1);
ASSERT_FIELD(KXPlane, c, 2);
ASSERT_FIELD(KXPlane, d, 3);
ASSERT_SIZE(KXQuat, 4);
ASSERT_FIELD(KXQuat, x, 0);
ASSERT_FIELD(KXQuat, y, 1);
ASSERT_FIELD(KXQuat, z, 2);
ASSERT_FIELD(KXQuat, w, 3);
ASSERT_SIZE(KXPosition, 6);
ASSERT_FIELD(KXPosition, x, 0);
ASSERT_FIELD(KXPosition, y, 1);
ASSERT_FIELD(KXPosition, z, 2);
ASSERT_FIELD(KXPosition, rotateX, 3);
ASSERT_FIELD(KXPosition, rotateY, 4);
ASSERT_FIELD(KXPosition, rotateZ, 5);
ASSERT_SIZE(KXComponents, 16);
ASSERT_FIELD(KXComponents, scaleX, 0);
ASSERT_FIELD(KXComponents, scaleY, 1);
ASSERT_FIELD(KXComponents, scaleZ, 2);
ASSERT_FIELD(KXComponents, shearXY, 3);
ASSERT_FIELD(KXComponents, shearXZ, 4);
ASSERT_FIELD(KXComponents, shearYZ, 5);
ASSERT_FIELD(KXComponents, rotateX, 6);
ASSERT_FIELD(KXComponents, rotateY, 7);
ASSERT_FIELD(KXComponents, rotateZ, 8);
ASSERT_FIELD(KXComponents, translateX, 9);
ASSERT_FIELD(KXComponents, translateY, 10);
ASSERT_FIELD(KXComponents, translateZ, 11);
ASSERT_FIELD(KXComponents, perspectiveX, 12);
ASSERT_FIELD(KXComponents, perspectiveY, 13);
ASSERT_FIELD(KXComponents, perspectiveZ, 14);
ASSERT_FIELD(KXComponents, perspectiveW, 15);
ASSERT_SIZE(KXTriangle, 17);
ASSERT_FIELD(KXTriangle, corner[0].vertex, 1);
ASSERT_FIELD(KXTriangle, corner[1].vertex, 5);
ASSERT_FIELD(KXTriangle, corner[2].vertex, 9);
ASSERT_FIELD(KXTriangle, host, 12);
ASSERT_FIELD(KXTriangle, plane, 13);
ASSERT_SIZE(KXUnit, 1);
ASSERT_SIZE(KXRotationOrder, 1);
ASSERT(KX_UNIT_NAUTICAL_MILE == 9 && KX_ORDER_ZYX == 5);
