/* Takes a point to a place and back, and prints which kind of library it was built for. */
#include <kxmaths5.h>
#include <kxmaths5/everyday.h>
#include <stdio.h>

int main(void)
{
    const KXPosition place = {10.0f, 2.0f, 0.0f, 0.0f, 1.5707964f, 0.0f};
    const KXP3 point = {0.0f, 0.0f, 0.5f};
    KXM4 there, back;
    KXP3 out;
    KXM4Position(&there, &back, &place, KX_ORDER_YXZ);
    KXM4P3I1(&there, &point, &out);
    if (out.x != 10.5f || out.y != 2.0f || kx_distance(&out, &point) < 10.6) {
        return 1;
    }
    KXM4P3I1(&back, &out, &out);
    if (out.y != 0.0f || out.z != 0.5f) {
        return 1;
    }
#ifdef KX_STATIC
    puts("static");
#else
    puts("shared");
#endif
    return 0;
}
