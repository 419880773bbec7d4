#include "support/rows.h"

using namespace test;

TEST_CASE("KXM4MatrixComponents to the bit")
{
    constexpr float t = tolerance, a = above_tolerance, b = below_tolerance, q = quarter_turn,
                    h = half_turn;
    const auto check = rows_of(KXM4MatrixComponents);
    check("the determinant a single, of the whole matrix, and at the tolerance no mirror",
          {{{-1.03125f, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 1, 7}, {0, 0, 0, 0x1.044d12p-20f}}},
          {5, 6, 7, -0.0f, 0, -h}, {1.03125f, 1, 1});
    check("the header's example: a column of length 2",
          {{{0, -2, 0, 0}, {1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, {0, 0, 0, -0.0f, 0, q},
          {1, 2, 1});
    check("a mirror by the next single",
          {{{-1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 1, 7}, {0, 0, 0, a}}}, {5, 6, 7, -0.0f, 0, -0.0f},
          {-1, 1, 1});
    check("m12 of 1 - 2^-20 is a quarter turn about X",
          {{{1, -0.0f, 0, 0},
            {0, 0x1.6a09ep-10f, -0x1.ffffep-1f, 0},
            {0, 0x1.ffffep-1f, 0x1.6a09ep-10f, 0},
            {0, 0, 0, 1}}},
          {0, 0, 0, q, 0, -0.0f}, {1, 1, 1});
    check("the next single below it is none",
          {{{1, 0, 0, 0},
            {0, 0x1.752e4ap-10f, 0x1.ffffdep-1f, 0},
            {0, -0x1.ffffdep-1f, 0x1.752e4ap-10f, 0},
            {0, 0, 0, 1}}},
          {0, 0, 0, -1.56937277f, 0, -0.0f}, {1, 1, 1});
    check("m22 at the tolerance; no rest about Z below it",
          {{{0, 0, -1, 0}, {1, 1, 0, 0}, {0, b, -t, 0}, {0, 0, 0, 1}}},
          {0, 0, 0, -0.0f, -1.57079732f, 0}, {1, 1, 1});
    check("m22 just below it; a rest about Z at it",
          {{{0, 0, -1, 0}, {1, 1, 0, 0}, {0, -t, b, 0}, {0, 0, 0, 1}}}, {0, 0, 0, -0.0f, -q, q},
          {1, 1, 1});
    check("m02 at the tolerance; a just below it",
          {{{0, 0, -t, 0}, {1, 0, 1, 0}, {b, 1, 0, 0}, {0, 0, 0, 1}}}, {0, 0, 0, -q, -q, -q},
          {1, 1, 1});
    check("m02 just below it; a at it",
          {{{-t, -1, b, 0}, {0, 0, 1, 0}, {1, 0, 0, 0}, {0, 0, 0, 1}}},
          {0, 0, 0, -q, 0, 1.5707953f}, {-1, 1, 1});
    check("all roundings of a mirror; its element with its own sign",
          {{{8, 5, -3, 5}, {-9, 3, 5, -6}, {-3, 9, -6, -3}, {0, 0, 0, 1}}},
          {5, -6, -3, -0.640522301f, -2.67794514f, 0.060830716f},
          {-12.4096737f, 10.7238054f, 8.36660004f});
    check("no arcsine or arctangent in single",
          {{{0.671627641f, -0.688266873f, 0.274235368f, 0},
            {0.396386087f, 0.646522105f, 0.651833773f, 0},
            {-0.625934839f, -0.329086512f, 0.707041502f, 0},
            {0, 0, 0, 1}}},
          {0, 0, 0, -0.709999979f, 0.370000005f, 0.550000012f}, {1, 1, 1});
    check("a cosine next to 0 stays in the rest about Z",
          {{{1, -1, -2, 0}, {-2, 2, 1, 0}, {-2, 0, 0, 0}, {0, 0, 0, 1}}},
          {0, 0, 0, -0.463647604f, -q, -2.93224911e-08f}, {-3, 2.23606801f, 2.23606801f});
    check("an identity: two angles are -0",
          {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, {0, 0, 0, -0.0f, 0, -0.0f},
          {1, 1, 1});
    check("nothing", {{{0}}}, {0, 0, 0, -0.0f, 0, 0}, {0, 0, 0});
}

TEST_CASE("KXM3MatrixComponents to the bit")
{
    constexpr float t = tolerance, a = above_tolerance, b = below_tolerance, q = quarter_turn;
    const auto check = rows_of(KXM3MatrixComponents);
    check("the determinant a single, of the whole matrix, and at the tolerance no mirror",
          {{{0, 1.03125f, 5}, {1, 0, 6}, {0, 0, 0x1.044d12p-20f}}}, {5, 6}, -q, 1, 1.03125f);
    check("a mirror by the next single; m00 above the tolerance",
          {{{a, 1, 5}, {1, -a, 6}, {0, 0, a}}}, {5, 6}, -1.57079732f, -1, 1);
    check("m00, m01 and a length at the tolerance", {{{t, -t, 0}, {0, 1, 0}, {0, 0, 1}}}, {0, 0}, q,
          t, 1);
    check("an identity: the angle is -0", {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, {0, 0}, -0.0f, 1, 1);
    check("m01 just below it", {{{-t, b, 0}, {1, 1, 0}, {0, 0, 1}}}, {0, 0}, 0, -1, 1);
    check("a length between the single 1e-6 and the decimal",
          {{{t, 0, 0}, {1e-11f, 1, 0}, {0, 0, 1}}}, {0, 0}, -0.0f, t, 1);
    check("neither the length nor the reciprocal single; no third row in the lengths",
          {{{-7.6f, 1.1f, -4.6f}, {4.7f, -5.7f, -1.3f}, {-2.4f, 6.9f, 2.1f}}}, {-4.6f, -1.3f},
          -0.219212845f, -8.93588257f, 5.80517006f);
}

TEST_CASE("The header's example of angles: an order has one reading")
{
    KXM4 m;
    KXComponents rows;
    KXPosition columns;
    KXM4Orientation(&m, nullptr, 0.3f, 0.4f, 0.5f, KX_ORDER_XYZ);
    CHECK(KXM4Decompose(&m, &rows) == 0);
    KXM4MatrixComponents(&m, &columns, nullptr);
    const float read[6] = {rows.rotateX,    rows.rotateY,    rows.rotateZ,
                           columns.rotateX, columns.rotateY, columns.rotateZ};
    const float wanted[6] = {0.3f, 0.4f, 0.5f, 0.27567f, 0.41665f, 0.61988f};
    for (int i = 0; i < 6; ++i) {
        CHECK(read[i] == doctest::Approx(wanted[i]).epsilon(1e-5));
    }
}
