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

/* What api/kxmaths5.json has of each record. Also in other records: an alignment above a float's
 * would leave a gap after the first word. */
#define RECORD(record, bytes)                                                                      \
    struct record##_after_a_word {                                                                 \
        uint32_t word;                                                                             \
        record rest;                                                                               \
    };                                                                                             \
    ASSERT(sizeof(struct record##_after_a_word) == (bytes) + 4, record##_has_another_size);
#define FIELD(record, field, bytes)                                                                \
    ASSERT(offsetof(record, field) == (bytes), record##_has_another_layout);
#include "records.inc"

ASSERT(sizeof(KXUnit) == 4 && sizeof(KXRotationOrder) == 4, another_enumeration);
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
