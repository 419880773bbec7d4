/*
 * A host in C99 and every C++ from C++11 on: the header compiles with every warning as an error,
 * the calls convert nothing, and every record has its size and offsets. An array type of negative
 * size is a static assertion in all of these languages; its name says what is wrong.
 */
#include "kxmaths5.h"

#include <stddef.h>

#define ASSERT_AT_LINE(condition, fault, line)                                                     \
    typedef char fault##_in_line_##line[(condition) ? 1 : -1]
#define ASSERT_EXPANDED(condition, fault, line) ASSERT_AT_LINE(condition, fault, line)
#define ASSERT(condition, fault) ASSERT_EXPANDED(condition, fault, __LINE__)

/* Also in other records: an alignment above a float's would leave a gap after the first word. */
#define ASSERT_SIZE(record, words)                                                                 \
    struct record##_after_a_word {                                                                 \
        uint32_t word;                                                                             \
        record rest;                                                                               \
    };                                                                                             \
    ASSERT(sizeof(struct record##_after_a_word) == 4 * (words) + 4, record##_has_another_size)
#define ASSERT_FIELD(record, field, word)                                                          \
    ASSERT(offsetof(record, field) == 4 * (word), record##_has_another_layout)
#define ASSERT_TWO(record, word, a, b)                                                             \
    ASSERT(offsetof(record, a) == 4 * (word) && offsetof(record, b) == 4 * (word) + 4,             \
           record##_has_another_layout)
#define ASSERT_FOUR(record, word, a, b, c, d)                                                      \
    ASSERT(offsetof(record, a) == 4 * (word) && offsetof(record, b) == 4 * (word) + 4 &&           \
               offsetof(record, c) == 4 * (word) + 8 && offsetof(record, d) == 4 * (word) + 12,    \
           record##_has_another_layout)

ASSERT_SIZE(KXV3, 3);
ASSERT_TWO(KXV3, 0, x, y);
ASSERT_FIELD(KXV3, z, 2);
ASSERT_SIZE(KXP2, 2);
ASSERT_TWO(KXP2, 0, x, y);
ASSERT_SIZE(KXP3, 3);
ASSERT_SIZE(KXP4, 4);
ASSERT_FOUR(KXP4, 0, x, y, z, w);
ASSERT_SIZE(KXM3, 9);
ASSERT_FOUR(KXM3, 0, m[0][0], m[0][1], m[0][2], m[1][0]);
ASSERT_SIZE(KXM4, 16);
ASSERT_TWO(KXM4, 3, m[0][3], m[1][0]);
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
ASSERT_FOUR(KXPlane, 0, a, b, c, d);
ASSERT_SIZE(KXQuat, 4);
ASSERT_FOUR(KXQuat, 0, x, y, z, w);
ASSERT_SIZE(KXPosition, 6);
ASSERT_FOUR(KXPosition, 0, x, y, z, rotateX);
ASSERT_TWO(KXPosition, 4, rotateY, rotateZ);
ASSERT_SIZE(KXComponents, 16);
ASSERT_FOUR(KXComponents, 0, scaleX, scaleY, scaleZ, shearXY);
ASSERT_FOUR(KXComponents, 4, shearXZ, shearYZ, rotateX, rotateY);
ASSERT_FOUR(KXComponents, 8, rotateZ, translateX, translateY, translateZ);
ASSERT_FOUR(KXComponents, 12, perspectiveX, perspectiveY, perspectiveZ, perspectiveW);
ASSERT_SIZE(KXTriangleCorner, 4);
ASSERT_FOUR(KXTriangleCorner, 0, hostFirst, vertex, hostThird, hostFourth);
ASSERT_SIZE(KXTriangle, 17);
ASSERT_FIELD(KXTriangle, corner[0].vertex, 1);
ASSERT_FIELD(KXTriangle, corner[1].vertex, 5);
ASSERT_FIELD(KXTriangle, corner[2].vertex, 9);
ASSERT_TWO(KXTriangle, 12, host, plane);
ASSERT_SIZE(KXUnit, 1);
ASSERT_SIZE(KXRotationOrder, 1);
ASSERT(KX_UNIT_NAUTICAL_MILE == 9 && KX_ORDER_ZYX == 5, another_enumerator);

int main(void)
{
    KXBox box = {{KX_HUGE, KX_HUGE, KX_HUGE}, {-KX_HUGE, -KX_HUGE, -KX_HUGE}};
    KXPosition position = {1.0f, 2.0f, 3.0f, 0.0f, 0.0f, 0.0f};
    KXP3 p = {0.0f, 0.0f, 0.0f};
    KXV3 offset;
    KXM4 m;
    KXM4Position(&m, NULL, &position, KX_ORDER_YXZ);
    KXM4NP3I1(&m, 1, &p, &p);
    KXP3ChangeNUnits(KX_UNIT_METRE, KX_UNIT_CENTIMETRE, 1, &p);
    if (KXPutPointInBox(&p, &box) == 0) {
        return 1;
    }
    KXBoxDiagonal(&box, &offset);
    if (KXV3Length(&offset) > 0.0 || p.z < 300.0f) {
        return 1;
    }
    /* Without the casts the literals have more bits than a double where arithmetic is the x87's. */
    return (double)KX_TOLERANCE != (double)9.999999974752427e-07 ||
           (double)KX_HUGE != (double)1.0000000200408773e+20;
}
