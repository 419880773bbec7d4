#include "support/rows.h"

using namespace test;

TEST_CASE("KXM4Determinant")
{
    // The corner minor of each block below is 4097*4097 - 1*8192 = 16777217, which a single rounds
    // to 16777216. Each row brings out one minor alone.
    const auto check = rows_of(KXM4Determinant);
    check("unit", unit4, 1);
    check("A is single", {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 4097, 1}, {0, 0, 8192, 4097}}},
          16777216);
    check("B is single", {{{1, 0, 0, 0}, {0, 0, 1, 0}, {0, 4097, 0, 1}, {0, 8192, 0, 4097}}},
          -16777216);
    check("C is single", {{{1, 0, 0, 0}, {0, 0, 0, 1}, {0, 4097, 1, 0}, {0, 8192, 4097, 0}}},
          16777216);
    check("D is single", {{{0, 1, 0, 0}, {0, 0, 1, 0}, {4097, 0, 0, 1}, {8192, 0, 0, 4097}}},
          16777216);
    check("E is single", {{{0, 1, 0, 0}, {0, 0, 0, 1}, {4097, 0, 1, 0}, {8192, 0, 4097, 0}}},
          -16777216);
    check("F is single", {{{0, 0, 1, 0}, {0, 0, 0, 1}, {4097, 1, 0, 0}, {8192, 4097, 0, 0}}},
          16777216);
    check("all sixteen elements",
          {{{2, 3, 5, 7}, {11, 13, 17, 19}, {23, 29, 31, 37}, {41, 43, 47, 53}}}, 880);
    check("the cofactors stay wide",
          {{{8193, 8192, 0, 0}, {8192, 8191, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, -1);
    check("no product is fused with a sum: columns 0 and 1 are alike",
          {{{16764332, 16764332, 16730415, 16723654},
            {16746924, 16746924, 16724607, 16717686},
            {16770052, 16770052, 16709408, 16752388},
            {16765791, 16765791, 16776972, 16771760}}},
          0);
    check("all sums are added from left to right",
          {{{3.4f, -1.7f, -4, 9.2f},
            {-6.2f, 4.2f, 5.7f, 0.6f},
            {-5.3f, 7.2f, -7.4f, -9.4f},
            {-6.1f, 8.9f, -8.8f, 5.2f}}},
          -15.144913932086979);
    check("of -0", {{{-1, 0, -1, 0}, {}, {}, {}}}, -0.0);
    const KXM4 far = {{{1, 0, 0, infinity}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    const double unknown = KXM4Determinant(&far);
    CHECK(unknown != unknown); // the translation takes part, times 0
}

TEST_CASE("KXM3Determinant")
{
    const auto check = rows_of(KXM3Determinant);
    check("unit", unit3, 1);
    check("no minor is single: 0", {{{1, 0, 0}, {0, 4097, 1}, {0, 8192, 4097}}}, 16777217);
    check("no minor is single: 1", {{{0, 1, 0}, {4097, 0, 1}, {8192, 0, 4097}}}, -16777217);
    check("no minor is single: 2", {{{0, 0, 1}, {4097, 1, 0}, {8192, 4097, 0}}}, 16777217);
    check("of -0", {{{-1, 0, -1}, {}, {}}}, -0.0);
    check("all nine elements", {{{2, 3, 5}, {7, 11, 13}, {17, 19, 23}}}, -78);
    check("no product is fused with a sum: columns 0 and 1 are alike",
          {{{2.6f, 2.6f, 5.1f}, {5.9f, 5.9f, 6.2f}, {8.6f, 8.6f, 0.3f}}}, 0);
    check("the three terms are added from left to right",
          {{{-8, -6.9f, -8.4f}, {-1.5f, 1.2f, -7.2f}, {1.7f, -4.4f, -9.9f}}}, 497.09699936008411);
    const KXM3 far = {{{1, 0, infinity}, {0, 1, 0}, {0, 0, 1}}};
    const double unknown = KXM3Determinant(&far);
    CHECK(unknown != unknown); // the translation takes part, times 0
}

TEST_CASE("KXM4IsOrthogonal")
{
    const auto unit_with = [](int r, int c, float value) {
        KXM4 m = unit4;
        m.m[r][c] = value;
        return m;
    };
    // A scale whose rows 0 and 2 have their part of column 1 too.
    const auto leaning = [](const KXP4 &scale, float in_row_0, float in_row_2) {
        return KXM4{{{scale.x, in_row_0, 0, 0},
                     {0, scale.y, 0, 0},
                     {0, in_row_2, scale.z, 0},
                     {0, 0, 0, scale.w}}};
    };
    const auto check = rows_of(KXM4IsOrthogonal);
    check("unit", unit_with(0, 0, 1), 1);
    check("scaled", {{{2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 4, 0}, {0, 0, 0, 1}}}, 1);
    check("mirrored", unit_with(0, 0, -1), 1);
    check("translated", {{{1, 0, 0, 7}, {0, 1, 0, 8}, {0, 0, 1, 9}, {0, 0, 0, 1}}}, 1);
    check("rows 0 and 1 swapped", {{{0, 1, 0, 0}, {1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, 1);
    check("the last element counts", unit_with(3, 3, 2), 0);
    check("the last row has no part in the lengths", unit_with(3, 0, 0.1f), 1);
    check("a small shear", unit_with(0, 1, 0.03f), 1);
    check("a larger shear", unit_with(0, 1, 0.032f), 0);
    check("ratio too high", leaning({1, 1, 1, 1.0013f}, 0.04f, 0), 0);
    check("ratio just low enough", unit_with(3, 3, 1.0004f), 1);
    check("short column 0 still counts", unit_with(0, 0, 0.001f), 1);
    check("column 0 too short", unit_with(0, 0, 0.00099f), 0);
    check("column 1 too short", unit_with(1, 1, 0.00099f), 0);
    check("column 2 too short", unit_with(2, 2, 0.00099f), 0);
    check("a column of zeros", unit_with(1, 1, 0), 0);
    check("equal to the lower bound", leaning({6, 1, 3, 1}, 0x1.2fc96cp-10f, 0x1.03026ep-5f), 1);
    check("equal to the upper bound",
          leaning({1, 1, 1, 0x1.0020c6p+0f}, 0x1.b82a64p-25f, 0x1.51ff2ap-11f), 1);
    check("just below the lower bound",
          leaning({3, 6, 4, 0x1.ffd5e6p-1f}, 0x1.b6788cp-13f, 0x1.d106c6p-4f), 0);
    check("just above the upper bound",
          leaning({8, 4, 4, 0x1.00264cp+0f}, 0x1.c5f82ap-14f, 0x1.a9db8cp-5f), 0);
    check("divided three times, not by a product",
          leaning({9, 5, 2, 0x1.002d9cp+0f}, 0x1.7f2bbep-14f, 0x1.95790ap-4f), 0);
    check("divided, not compared with a multiple of the product",
          leaning({9, 6, 1, 0x1.ffcc92p-1f}, 0x1.862b1ap-14f, 0x1.68de9cp-4f), 1);
    check("squares of x first", leaning({2, 3, 3, 0x1.0037ap+0f}, 0x1.71315cp-14f, 0x1.448b18p-4f),
          1);
    check("the determinant is not rounded",
          leaning({7, 1, 8, 0x1.0020c4p+0f}, 0x1.35b9cp-24f, 0x1.b9893cp-12f), 1);
    check("squares from left to right; divided by L0, then L1, then L2",
          leaning({5, 5, 3, 0x1.ffbe78p-1f}, 0x1.0492cap-21f, 0x1.745326p-9f), 1);
}

TEST_CASE("KXM4IsOrthogonal refuses a squared length equal to the tolerance")
{
    // 4192^2 + 139^2 + 1^2 is 2^44 times the single 1e-6. With 1.015 for the 1 the sum lies between
    // that single and the decimal 1e-6.
    const auto verdict = [](int first, float last) {
        const float columns[3][3] = {
            {4192 * 0x1p-22f, 139 * 0x1p-22f, last * 0x1p-22f}, {-139, 4192, 0}, {-1, 0, 4192}};
        KXM4 m = {};
        m.m[3][3] = 1;
        for (int i = 0; i < 9; ++i) {
            m.m[i % 3][(first + i / 3) % 3] = columns[i / 3][i % 3];
        }
        return KXM4IsOrthogonal(&m);
    };
    for (int column = 0; column < 3; ++column) {
        CHECK(verdict(column, 1.0f) == 0);
        CHECK(verdict(column, 1.015f) == 1);
    }
}
