/* The viewing matrix. */
#include "kxmaths5/orientation.h"

#include "kxmaths5/matrix.h"
#include "numeric.h"

using namespace kx;

void KXM4Projection1(KXM4 *out, const KXPosition *position, float planeDistance, float sideOffset,
                     float yScale)
{
    KXM4 view, step;
    KXM4Position(&view, nullptr, position, KX_ORDER_YXZ);

    if (magnitude(1.0 - widen(yScale)) > tolerance) {
        KXM4Unit(&step);
        step.m[1][1] = yScale;
        KXM4Mult(&step, &view, &view);
    }

    const double offset = widen(sideOffset);
    if (magnitude(offset) > tolerance) {
        const double distance = widen(planeDistance);
        KXM4Unit(&step);
        if (distance > 0.0 && distance < huge) {
            step.m[0][2] = narrow(offset / distance);
        }
        step.m[0][3] = -sideOffset;
        KXM4Mult(&step, &view, &view);
    }
    KXM4Copy(&view, out);
}
