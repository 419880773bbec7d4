#include "support/rows.h"

using namespace test;

TEST_CASE("KXPlaneEquation")
{
    const auto check = rows_of(KXPlaneEquation);
    check("counter-clockwise seen from +Z", {0, 0, 0}, {1, 0, 0}, {1, 1, 0}, 0, {0, 0, 1, -0.0f});
    check("two points swapped", {0, 0, 0}, {1, 1, 0}, {1, 0, 0}, 0, {0, 0, -1, -0.0f});
    check("at z of 3", {1, 2, 3}, {4, 6, 3}, {0, 9, 3}, 0, {0, -0.0f, 1, -3});
    check("first attempt: each single, and each that is not", {1.1f, 1.2f, -2.9f},
          {-4.9f, 4.9f, -3.2f}, {-1.2f, -1.8f, 3.7f}, 0,
          {0.438326061f, 0.750856996f, 0.494048595f, 0.0495539047f});
    check("first attempt: order in d", {8, -6, 9}, {8, -8, -8}, {16, -14, 1}, 0,
          {-0.659062147f, -0.746937096f, 0.0878749564f, 4.84346039e-08f});
    check("second attempt: nothing is single", {-0.00522f, -0.0028f, 0.00422f},
          {-0.00266f, 0.00276f, -0.00363f}, {0.00748f, 0.00222f, -0.00362f}, 0,
          {-0.042489402f, -0.808720171f, -0.586656928f, -1.0518831e-05f});
    check("second attempt: order in d", {-0x1.cp-14f, -0x1.cp-14f, -0x1.8p-15f},
          {0x1p-15f, -0x1.4p-14f, -0x1p-15f}, {-0x1.4p-14f, -0x1.8p-13f, -0x1.4p-14f}, 0,
          {0.018891478f, 0.377829552f, -0.925682425f, 3.38813179e-21f});
    check("a squared length between the single 1e-6 and the decimal takes the first",
          {14, 0x1.50aap+3f, 7}, {14, 11, 7}, {0x1.c00cfcp+3f, 11, 0x1.c0163cp+2f}, 0,
          {0.650377274f, 0, -0.759611368f, -3.78800225f});
    check("a squared length of 1e-16", {0, -0x1.2f1c88p-13f, 0}, {0, 0, 0},
          {0x1.53f9aep-28f, 0, 0x1.22318p-14f}, 1, {1, 0, 0, -0.0f});
    check("a squared length just above 1e-16", {0, -0.000165989666f, 0}, {0, 0, 0},
          {0, 0, 6.02447144e-05f}, 0, {1, 0, 0, -0.0f});
    check("a squared length equal to the tolerance takes the second attempt",
          {-4.25048828125f, 2.625f, 10.046875f}, {-4.25f, 2.625f, 8},
          {-4.25f, 2.62548828125f, 7.93212890625f}, 0,
          {0.999450684f, 0.0331401825f, 0.000238418579f, 4.15876532f});
    check("d is a negation of the whole sum", {1, 1, 1}, {0, 1, 0}, {0, -1, 0}, 0,
          {-0.707106769f, 0, 0.707106769f, -0.0f});
    check("the squared length meets the second bound", {1e-08f, 0, 0}, {0, 0, 0}, {0, 1, 0}, 1,
          {1, 0, 0, -0.0f});
    check("and is above it", {1.01e-08f, 0, 0}, {0, 0, 0}, {0, 1, 0}, 0, {0, 0, -1, -0.0f});
    check("legs of 5e-05", {5e-05f, 0, 0}, {0, 0, 0}, {0, 5e-05f, 0}, 1, {1, 0, 0, -0.0f});
    check("on one line", {5, 1, 2}, {7, 2, 3}, {9, 3, 4}, 1, {1, 0, 0, -7});
    check("one point", {3, 4, 5}, {3, 4, 5}, {3, 4, 5}, 1, {1, 0, 0, -3});
    check("one point with an x of -0", {1, 2, 3}, {-0.0f, 2, 3}, {5, 2, 3}, 1, {1, 0, 0, 0});
}

TEST_CASE("KXRotateInPlane")
{
    const auto check = rows_of<outputs_are_read>(KXRotateInPlane);
    check("about Z, +X towards +Y; small cosines stay", {1, 0, 0}, {0, 0, 1}, quarter_turn,
          {-4.37113883e-08f, 1, 0});
    check("about X, +Y towards +Z", {0, 1, 0}, {1, 0, 0}, quarter_turn, {0, -4.37113883e-08f, 1});
    check("about Y, +Z towards +X", {0, 0, 1}, {0, 1, 0}, quarter_turn, {1, 0, -4.37113883e-08f});
    check("no angle", {1, 2, 3}, {0.6f, 0, 0.8f}, 0, {1, 2, 3});
    check("no angle, about an axis far from unit length", {1, 2, 3}, {1e10f, 0, 0}, 0, {0, 2, 3});
    check("no axis: times the cosine", {1, 2, -4}, {0, 0, 0}, 1,
          {0.540302277f, 1.08060455f, -2.16120911f});
    check("each single, and each that is not", {-6, -3, 4}, {0.4f, 0.4f, -0.8f}, 2.5f,
          {-0.57102704f, -0.58056891f, 7.31181431f});
    check("no component like another", {3, -2, 5}, {0.3f, -0.5f, 0.8f}, 0.7f,
          {2.13095999f, -1.64360416f, 5.51395178f});
    check("order of the sums: x", {9.3f, 0x1.547882p+4f, 0x1.080548p-21f}, {0, 0.7f, 0.8f}, 0.5f,
          {-9.49785498e-15f, 23.5178108f, -1.6622752f});
    check("order of the sums: y", {73.9f, -0x1.ed25f8p+3f, 0x1.bb5b22p-17f}, {0, 0.4f, 0.5f}, 0.4f,
          {71.0670471f, 2.33655902e-15f, -11.7544985f});
    check("order of the sums: z", {0x1p30f, 0x1p30f, -0.1f}, {1, 1, 0}, 1,
          {1.5673385e+09f, 1.5673385e+09f, 30.0166759f});
    check("a point that is its own axis", {0, 0, 1}, {0, 0, 1}, 1, {0, 0, 1});
    KXP3 apart = {2, 1, 0};
    const KXV3 axis = apart;
    KXRotateInPlane(&apart, &axis, 1);
    check("read whole before the first store", axis, axis, 1, apart);
}
