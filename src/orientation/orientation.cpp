/* From three angles, or a whole position, to a matrix and its inverse; the viewing matrix. */
#include "kxmaths5/orientation.h"

#include "kernels.h"
#include "kxmaths5/matrix.h"
#include "numeric.h"

using namespace kx;

namespace
{

void write_translation(KXM4 *out, float x, float y, float z)
{
    out->m[0][3] = x;
    out->m[1][3] = y;
    out->m[2][3] = z;
}

/** The last row and column, if the matrix is wanted. */
void write_border(KXM4 *out)
{
    if (out != nullptr) {
        write_translation(out, 0.0f, 0.0f, 0.0f);
        out->m[3][0] = 0.0f;
        out->m[3][1] = 0.0f;
        out->m[3][2] = 0.0f;
        out->m[3][3] = 1.0f;
    }
}

} // namespace

void KXM4Orientation(KXM4 *matrix, KXM4 *inverse, float x, float y, float z, KXRotationOrder order)
{
    KX_DISPATCH(orientation(matrix, inverse, x, y, z, order));
    write_border(matrix);
    write_border(inverse);
}

void KXM4Position(KXM4 *matrix, KXM4 *inverse, const KXPosition *position, KXRotationOrder order)
{
    KXM4Orientation(matrix, inverse, position->rotateX, position->rotateY, position->rotateZ,
                    order);
    const KXP3 translation = {position->x, position->y, position->z};
    if (matrix != nullptr) {
        write_translation(matrix, translation.x, translation.y, translation.z);
    }
    if (inverse != nullptr) {
        KXP3 turned;
        KXM4P3I0(inverse, &translation, &turned);
        write_translation(inverse, -turned.x, -turned.y, -turned.z);
    }
}

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
