/* The identity, and the test for it; scale, translation, rotation and shear. */
#include "kxmaths5/matrix.h"

#include "numeric.h"

using namespace kx;

namespace
{

template <int Size, typename Matrix>
int32_t is_unit(const Matrix *m)
{
    for (int r = 0; r < Size; ++r) {
        for (int c = 0; c < Size; ++c) {
            const double element = widen(m->m[r][c]);
            const double difference = r == c ? element - 1.0 : element;
            if (magnitude(difference) > tolerance) {
                return 0;
            }
        }
    }
    return 1;
}

} // namespace

void KXM4Unit(KXM4 *out)
{
    *out = {{{1.0f, 0.0f, 0.0f, 0.0f},
             {0.0f, 1.0f, 0.0f, 0.0f},
             {0.0f, 0.0f, 1.0f, 0.0f},
             {0.0f, 0.0f, 0.0f, 1.0f}}};
}

void KXM3Unit(KXM3 *out)
{
    *out = {{{1.0f, 0.0f, 0.0f}, {0.0f, 1.0f, 0.0f}, {0.0f, 0.0f, 1.0f}}};
}

int32_t KXM4IsUnit(const KXM4 *m)
{
    return is_unit<4>(m);
}

int32_t KXM3IsUnit(const KXM3 *m)
{
    return is_unit<3>(m);
}

void KXM4Scale(float sx, float sy, float sz, KXM4 *out)
{
    *out = {{{sx, 0.0f, 0.0f, 0.0f},
             {0.0f, sy, 0.0f, 0.0f},
             {0.0f, 0.0f, sz, 0.0f},
             {0.0f, 0.0f, 0.0f, 1.0f}}};
}

void KXM4Translate(float tx, float ty, float tz, KXM4 *out)
{
    *out = {{{1.0f, 0.0f, 0.0f, tx},
             {0.0f, 1.0f, 0.0f, ty},
             {0.0f, 0.0f, 1.0f, tz},
             {0.0f, 0.0f, 0.0f, 1.0f}}};
}

void KXM4RotateX2(float c, float s, KXM4 *out)
{
    *out = {{{1.0f, 0.0f, 0.0f, 0.0f},
             {0.0f, c, -s, 0.0f},
             {0.0f, s, c, 0.0f},
             {0.0f, 0.0f, 0.0f, 1.0f}}};
}

void KXM4RotateY2(float c, float s, KXM4 *out)
{
    *out = {{{c, 0.0f, s, 0.0f},
             {0.0f, 1.0f, 0.0f, 0.0f},
             {-s, 0.0f, c, 0.0f},
             {0.0f, 0.0f, 0.0f, 1.0f}}};
}

void KXM4RotateZ2(float c, float s, KXM4 *out)
{
    *out = {{{c, -s, 0.0f, 0.0f},
             {s, c, 0.0f, 0.0f},
             {0.0f, 0.0f, 1.0f, 0.0f},
             {0.0f, 0.0f, 0.0f, 1.0f}}};
}

void KXM4ShearXY2(float k, KXM4 *out)
{
    KXM4Unit(out);
    out->m[0][1] = k;
}

void KXM4ShearXZ2(float k, KXM4 *out)
{
    KXM4Unit(out);
    out->m[0][2] = k;
}

void KXM4ShearYZ2(float k, KXM4 *out)
{
    KXM4Unit(out);
    out->m[1][2] = k;
}

void KXM3Scale(float sx, float sy, KXM3 *out)
{
    *out = {{{sx, 0.0f, 0.0f}, {0.0f, sy, 0.0f}, {0.0f, 0.0f, 1.0f}}};
}

void KXM3Translate(float tx, float ty, KXM3 *out)
{
    *out = {{{1.0f, 0.0f, tx}, {0.0f, 1.0f, ty}, {0.0f, 0.0f, 1.0f}}};
}

void KXM3Rotate2(float c, float s, KXM3 *out)
{
    *out = {{{c, -s, 0.0f}, {s, c, 0.0f}, {0.0f, 0.0f, 1.0f}}};
}
