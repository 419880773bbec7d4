/* A host in C: the header compiles with every warning as an error, and the calls convert nothing.
 */
#include "layout.h"

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
