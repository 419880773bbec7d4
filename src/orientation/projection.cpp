/* The viewing matrix. */
#include "kxmaths5/orientation.h"

#include "kxmaths5/matrix.h"
#include "numeric.h"

void KXM4Projection1(KXM4 *out, const KXPosition *position, float planeDistance, float sideOffset,
                     float yScale)
{
    KXM4 view, step;
    KXM4Position(&view, nullptr, position, KX_ORDER_YXZ);

    if (kx::magnitude(1.0 - kx::wide(yScale)) > kx::tolerance) {
        KXM4Unit(&step);
        step.m[1][1] = yScale;
        KXM4Mult(&step, &view, &view);
    }

    const double offset = kx::wide(sideOffset);
    if (kx::magnitude(offset) > kx::tolerance) {
        const double distance = kx::wide(planeDistance);
        KXM4Unit(&step);
        if (distance > 0.0 && distance < kx::huge) {
            step.m[0][2] = kx::single(offset / distance);
        }
        step.m[0][3] = -sideOffset;
        KXM4Mult(&step, &view, &view);
    }
    KXM4Copy(&view, out);
}
