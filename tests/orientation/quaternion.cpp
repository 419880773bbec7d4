#include "support/rows.h"

#include <cmath>

using namespace test;

TEST_CASE("KXGenerateQuat")
{
    const auto check = rows_of(KXGenerateQuat);
    check("sine and axis single", -0.125f, {-4, -6, 3},
          {0.0319883861f, 0.0479825735f, -0.0239912868f, 0.998047531f});
    check("more than half a turn: w is negative", 4, {0, 1, 0},
          {0, 0.909297407f, 0, -0.416146845f});
    check("more than a whole turn: the other sign", 10, {0, 1, 0},
          {-0.0f, -0.958924294f, -0.0f, 0.2836622f});
    check("next to half a turn: w is the cosine, not a root", 3.1f, {0, 1, 0},
          {0, 0.99978375f, 0, 0.020794876f});
    check("no angle leaves the axis its signs", 0, {-1, 2, -2}, {-0.0f, 0, -0.0f, 1});
    check("-0 has a sine of -0", -0.0f, {1, 0, 0}, {-0.0f, -0.0f, -0.0f, 1});
    // Nearer to a tie than any term of a series may be wrong.
    check("a sine above a tie", 0x1.89f59p+0f, {0, 0, 1}, {0, 0, 0.695741475f, 0.718292296f});
    check("a sine below a tie", 0x1.8bfa1ep+0f, {0, 0, 1}, {0, 0, 0.698566794f, 0.71554482f});
    check("a cosine above a tie", 0x1.894b14p+0f, {0, 0, 1}, {0, 0, 0.694806576f, 0.719196677f});
    check("a cosine below a tie", 0x1.8bbf96p+0f, {0, 0, 1}, {0, 0, 0.698247194f, 0.715856671f});
    check("many quarter turns, next to one of them", 0x1.4ac55cp+22f, {0, 0, 1},
          {0, 0, 1, -1.91002378e-08f});
    check("too large for a reduction in double", 0x1.338e6ep+35f, {0, 0, 1},
          {0, 0, 0.605170965f, -0.79609555f});
    check("no axis leaves w", 1, {0, 0, 0}, {0, 0, 0, 0.87758255f});
    check("all singles", 2, {1, -2, 3}, {0.224892572f, -0.449785143f, 0.67467773f, 0.540302277f});
    check("too short to be made unit", 1, {0, -tolerance, 0},
          {0, -0x1.0163bep-21f, 0, 0.87758255f});
    // The sense of rotation is that of the matrices.
    const KXV3 axes[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    for (int axis = 0; axis < 3; ++axis) {
        KXQuat quat;
        KXM4 turned, wanted;
        KXGenerateQuat(0.75f, &axes[axis], &quat);
        KXQuatToMatrix(&quat, &turned);
        KXM4Orientation(&wanted, nullptr, axis == 0 ? 0.75f : 0, axis == 1 ? 0.75f : 0,
                        axis == 2 ? 0.75f : 0, KX_ORDER_XYZ);
        for (int e = 0; e < 16; ++e) {
            CHECK(std::fabs(turned.m[e / 4][e % 4] - wanted.m[e / 4][e % 4]) <= 1.5e-7f);
        }
    }
}

TEST_CASE("KXQuatToMatrix")
{
    const auto check = rows_of(KXQuatToMatrix);
    check("eight products single, zz not", {-13, 11, 11, -9},
          {{{0x1.0a6828p-6f, -0x1.6e4f14p-3f, -0x1.f7acbep-1f, 0},
            {-0x1.f7accp-1f, -0x1.6e4f16p-3f, 0x1.0a68p-6f, 0},
            {-0x1.6e4f18p-3f, 0x1.ef598p-1f, -0x1.6e4f14p-3f, 0},
            {0, 0, 0, 1}}});
    check("2 divided by the sum of squares", {6.5f, 5.5f, 6.5f, -5.5f},
          {{{-0x1.054beap-26f, 0x1.f8f01cp-1f, 0x1.52fabp-3f, 0},
            {0x1p-25f, -0x1.52fabap-3f, 0x1.f8f01cp-1f, 0},
            {1, -0x1p-25f, -0x1p-24f, 0},
            {0, 0, 0, 1}}});
    check("a unit quaternion is divided by its squares as well",
          {0.224892572f, -0.449785143f, 0.67467773f, 0.540302277f},
          {{{-0.314993501f, -0.931366563f, -0.182579875f, 0},
            {0.526753187f, -0.0115334829f, -0.849940002f, 0},
            {0.789499938f, -0.363900125f, 0.49423328f, 0},
            {0, 0, 0, 1}}});
    check("squares from left to right", {-5.7f, 0.002f, 0x1.80886ep+2f, -1.9f},
          {{{0x1.25943ep-28f, 0x1.437e6ep-2f, -0x1.e5c79cp-1f, 0},
            {-0x1.4423fep-2f, -0x1.cccccap-1f, -0x1.32dbf2p-2f, 0},
            {-0x1.e5ac04p-1f, 0x1.338a76p-2f, 0x1.999972p-4f, 0},
            {0, 0, 0, 1}}});
    const KXQuat zero = {0, 0, 0, 0};
    Guarded<KXM4> none;
    KXQuatToMatrix(&zero, &none.record);
    for (int e = 0; e < 9; ++e) {
        float &element = none.record.m[e / 3][e % 3];
        CHECK(std::isnan(element));
        element = 7;
    }
    none.check("the zero quaternion", {{{7, 7, 7, 0}, {7, 7, 7, 0}, {7, 7, 7, 0}, {0, 0, 0, 1}}});
}

TEST_CASE("KXMatrixToQuat")
{
    const auto check = rows_of(KXMatrixToQuat);
    check("a trace above 0",
          {{{-0.857142866f, -0.857142866f, -4, 0},
            {-0.142857149f, 1.14285719f, 0.428571433f, 0},
            {6, -0.142857149f, 1, 0},
            {0, 0, 0, 1}}},
          {-0.188982233f, -3.30718923f, 0.236227795f, 0.755928934f});
    check("a rotation: what is read is not made unit",
          {{{-0.314993501f, -0.931366563f, -0.182579875f, 0},
            {0.526753187f, -0.0115334829f, -0.849940002f, 0},
            {0.789499938f, -0.363900125f, 0.49423328f, 0},
            {0, 0, 0, 1}}},
          {0.224892557f, -0.449785143f, 0.67467773f, 0.540302277f});
    check("m22 the largest",
          {{{-6, -0.571428597f, -1.14285719f, 0},
            {7, 0.142857149f, 9, 0},
            {-1, 0.428571433f, 4, 0},
            {0, 0, 0, 1}}},
          {-0.325166255f, 1.43073142f, 1.64750898f, 1.14892066f});
    check("a trace above 0, below the tolerance",
          {{{1, 2, 3, 0}, {4, -1, 5, 0}, {6, 7, 0x1p-21f, 0}, {0, 0, 0, 1}}},
          {0.999999762f, -1.49999964f, 0.999999762f, 0.500000119f});
    check("a trace of 0, a tie, and a last row and column not read",
          {{{0, 1, 2, 9}, {3, 0, 4, 9}, {6, 8, 0, 9}, {9, 9, 9, 9}}}, {0.5f, 2, 4, 2});
    check("a trace below 1, added from left to right",
          {{{0x1p30f, 1, 2, 0}, {3, 0.1f, 4, 0}, {-5, 6, -0x1p30f, 0}, {0, 0, 0, 1}}},
          {0.95346266f, 3.3371191f, 0.95346266f, 0.524404407f});
    check("m11 equal to m22, below m01 and m10",
          {{{-3, 1.25f, 0.5f, 0}, {1.75f, 1, 2, 0}, {3, 4, 1, 0}, {0, 0, 0, 1}}},
          {0.75f, 1, 1.5f, -0.625f});
}
