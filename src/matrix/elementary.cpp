/* Scale, translation, rotation and shear. */
#include "kxmaths5/matrix.h"

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
