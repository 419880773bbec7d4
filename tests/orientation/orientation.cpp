#include "support/rows.h"

#include <algorithm>
#include <cfenv>
#include <cmath>

using namespace test;

static const char *const orders[6] = {"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"};

static float snapped(double value)
{
    const auto single = static_cast<float>(value);
    return std::fabs(single) < 1e-07 ? 0.0f : single;
}

static KXM4 axis_rotation(char axis, double angle, float direction)
{
    const float c = snapped(std::cos(angle));
    const float s = snapped(std::sin(angle)) * direction;
    KXM4 m;
    (axis == 'X' ? KXM4RotateX2 : axis == 'Y' ? KXM4RotateY2 : KXM4RotateZ2)(c, s, &m);
    return m;
}

/** left*(middle*right), with the letters of an order for the factors. */
static KXM4 product(const std::string &letters, const float angles[3], float direction)
{
    const auto factor = [&](char axis) {
        return axis_rotation(axis, angles[axis - 'X'], direction);
    };
    const KXM4 left = factor(letters[0]), middle = factor(letters[1]), right = factor(letters[2]);
    KXM4 inner, m = unit4;
    KXM43Mult(&middle, &right, &inner);
    KXM43Mult(&left, &inner, &m);
    return m;
}

TEST_CASE("The six orders, each with its inverse")
{
    const auto check = rows_of(KXM4Orientation);
    Random random;
    for (int i = 0; i < 326; ++i) {
        // Any angles, and all combinations of quarter turns, where the signs of zeros show.
        const auto quarters = [i](int place) {
            return quarter_turn * static_cast<float>(i / place % 5 - 2);
        };
        const bool any = i >= 125;
        float angles[3] = {any ? random(7) : quarters(1), any ? random(7) : quarters(5),
                           any ? random(7) : quarters(25)};
        if (i > 321) {
            angles[i % 3] = 5e6f; // above 2^22, so that all three go another way
        }
        if (i == 325) {
            std::fill(angles, angles + 3, 8388632.0f); // wrong on the way of small angles
        }
        for (KXRotationOrder order = 0; order < 6; ++order) {
            const std::string letters = orders[order];
            check(letters, angles[0], angles[1], angles[2], order, product(letters, angles, 1),
                  product({letters.rbegin(), letters.rend()}, angles, -1));
        }
    }
    // An anchor that owes nothing to the library's own products: RX*(RY*RZ) in full.
    const double x = 0.25, y = 0.5, z = 0.75;
    const double wanted[3] = {std::cos(y) * std::cos(z), -std::cos(y) * std::sin(z), std::sin(y)};
    KXM4 m;
    KXM4Orientation(&m, nullptr, 0.25f, 0.5f, 0.75f, KX_ORDER_XYZ);
    for (int c = 0; c < 3; ++c) {
        CHECK(m.m[0][c] == doctest::Approx(wanted[c]).epsilon(1e-7));
    }
    CHECK(m.m[1][2] == doctest::Approx(-std::sin(x) * std::cos(y)).epsilon(1e-7));
}

#if defined(FE_UPWARD)
TEST_CASE("Rounding upwards, where the nearest quarter turn is missed, moves the last digit alone")
{
    for (int axis = 0; axis < 3; ++axis) {
        const auto angle = [axis](int i) { return i == axis || i == axis - 2 ? 1e-05f : 0.0f; };
        const KXV3 about = {1, 0, 0};
        KXM4 m;
        KXQuat quat;
        std::fesetround(FE_UPWARD);
        KXM4Orientation(&m, nullptr, angle(0), angle(1), angle(2), KX_ORDER_XYZ);
        KXGenerateQuat(2e-05f, &about, &quat);
        std::fesetround(FE_TONEAREST);
        CHECK(std::fabs(m.m[(axis + 2) % 3][(axis + 1) % 3] - 1e-05f) < 2e-12f);
        CHECK(std::fabs(quat.x - 1e-05f) < 2e-12f);
    }
}
#endif

TEST_CASE("Small sines and cosines snap to zero")
{
    const auto check = rows_of(KXM4Orientation);
    const KXM4 quarter_about_x = {{{1, 0, 0, 0}, {0, 0, -1, 0}, {0, 1, 0, 0}, {0, 0, 0, 1}}};
    const KXM4 quarter_back = {{{1, 0, 0, 0}, {0, 0, 1, 0}, {0, -1, 0, 0}, {0, 0, 0, 1}}};
    check("a quarter turn", quarter_turn, 0, 0, KX_ORDER_XYZ, quarter_about_x, quarter_back);
    for (KXRotationOrder order = 0; order < 6; ++order) {
        check(orders[order], 0, 0, 0, order, unit4, unit4);
        check(orders[order], 0, -0.0f, 9.9e-08f, order, unit4, unit4);
    }

    const float survives = 1.0000000116860974e-07f;
    KXM4 forward = unit4, back = unit4;
    forward.m[1][2] = back.m[2][1] = -survives;
    forward.m[2][1] = back.m[1][2] = survives;
    check("the single 1e-07", survives, 0, 0, KX_ORDER_XYZ, forward, back);
    check("one step below", std::nextafter(survives, 0.0f), 0, 0, KX_ORDER_XYZ, unit4, unit4);

    const KXM4 no_turn = {{{1, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 1}}};
    for (const float angle : {not_a_number, infinity, -infinity}) {
        check("no number", angle, 0, 0, KX_ORDER_XYZ, no_turn, no_turn);
    }
}

TEST_CASE("An order that does not exist leaves the block")
{
    KXM4 wanted = marked<KXM4>();
    for (int i = 0; i < 4; ++i) {
        wanted.m[i][3] = wanted.m[3][i] = unit4.m[i][3];
    }
    for (const KXRotationOrder order : {6U, 0x7fffffffU, 0xffffffffU}) {
        rows_of(KXM4Orientation)(std::to_string(order), 0.1f, 0.2f, 0.3f, order, wanted, wanted);
    }
    // The position goes on from the block that was there.
    Guarded<KXM4> matrix, inverse;
    matrix.record = inverse.record = {{{2, 0, 0, 9}, {0, 4, 0, 9}, {0, 0, 8, 9}, {9, 9, 9, 9}}};
    const KXPosition position = {1, 2, 3, 0.1f, 0.2f, 0.3f};
    KXM4Position(&matrix.record, &inverse.record, &position, 6);
    matrix.check("placement", {{{2, 0, 0, 1}, {0, 4, 0, 2}, {0, 0, 8, 3}, {0, 0, 0, 1}}});
    inverse.check("way back", {{{2, 0, 0, -2}, {0, 4, 0, -8}, {0, 0, 8, -24}, {0, 0, 0, 1}}});
}

TEST_CASE("KXM4Position")
{
    const KXPosition still = {0, 0, 0, 0, 0, 0};
    const KXPosition turned = {10, 20, 30, quarter_turn, 0, 0};
    const auto check = [](const char *label, const KXPosition &position, const KXM4 &forward,
                          const KXM4 &back) {
        rows_of(KXM4Position)(label, position, KX_ORDER_XYZ, forward, back);
    };
    check("nothing", still, unit4,
          {{{1, 0, 0, -0.0f}, {0, 1, 0, -0.0f}, {0, 0, 1, -0.0f}, {0, 0, 0, 1}}});
    check("zeros of either sign", {0, -0.0f, 0, 0, 0, 0},
          {{{1, 0, 0, 0}, {0, 1, 0, -0.0f}, {0, 0, 1, 0}, {0, 0, 0, 1}}},
          {{{1, 0, 0, -0.0f}, {0, 1, 0, -0.0f}, {0, 0, 1, -0.0f}, {0, 0, 0, 1}}});
    check("the way back, added from left to right",
          {31.7999992f, -20.6000004f, -0.402006954f, 0.5f, 0.25f, 1},
          {{{0.523505569f, -0.81531167f, 0.247403964f, 31.7999992f},
            {0.802546442f, 0.374351472f, -0.464521378f, -20.6000004f},
            {0.28611365f, 0.441732705f, 0.85030061f, -0.402006954f},
            {0, 0, 0, 1}}},
          {{{0.523505569f, 0.802546442f, 0.28611365f, -9.08508824e-11f},
            {-0.81531167f, 0.374351472f, 0.441732705f, 33.8161316f},
            {0.247403964f, -0.464521378f, 0.85030061f, -17.094759f},
            {0, 0, 0, 1}}});
    check("turns first, moves after", turned,
          {{{1, 0, 0, 10}, {0, 0, -1, 20}, {0, 1, 0, 30}, {0, 0, 0, 1}}},
          {{{1, 0, 0, -10}, {0, 0, 1, -30}, {0, -1, 0, 20}, {0, 0, 0, 1}}});
}

TEST_CASE("KXM4Projection1")
{
    const KXPosition still = {0, 0, 0, 0, 0, 0}, at_1_2_3 = {1, 2, 3, 0, 0, 0};
    const KXPosition turned = {1, 2, 3, 0.1f, 0.2f, 0.3f};
    const float steps8 = 1.0000009536743164f, steps9 = 1.000001072883606f;
    const auto view = [](float y_scale, float slope, float shift) {
        return KXM4{{{1, 0, slope, shift}, {0, y_scale, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    };
    const auto check = rows_of(KXM4Projection1);
    check("shear and shift", still, 10, 0.5f, 1, view(1, 0.05f, -0.5f));
    check("the translation scales too", at_1_2_3, 10, 0, 2,
          {{{1, 0, 0, 1}, {0, 2, 0, 4}, {0, 0, 1, 3}, {0, 0, 0, 1}}});
    check("scaled before it is shifted, slope single", {-3, -2, -3, 0, 0, 0}, 6, -2, -3,
          {{{1, 0, -0.333333343f, 2.98023224e-08f}, {0, -3, 0, 6}, {0, 0, 1, -3}, {0, 0, 0, 1}}});
    check("a turned view: whole rows are scaled and sheared", turned, 10, 0.5f, 2,
          {{{0.934110641f, -0.263072282f, 0.246435329f, 0.649999976f},
            {0.588087678f, 1.9011277f, -0.199666843f, 4},
            {-0.160881355f, 0.152184173f, 0.975170374f, 3},
            {0, 0, 0, 1}}});
    check("a y scale eight steps above 1", still, 10, 0, steps8, view(1, 0, 0));
    check("the ninth step", still, 10, 0, steps9, view(steps9, 0, 0));
    check("a y scale of 0", at_1_2_3, 10, 0, 0,
          {{{1, 0, 0, 1}, {0, 0, 0, 0}, {0, 0, 1, 3}, {0, 0, 0, 1}}});
    check("an offset equal to the tolerance", still, 1, tolerance, 1, view(1, 0, 0));
    check("one step above, to the left", still, 1, -above_tolerance, 1,
          view(1, -above_tolerance, above_tolerance));
    check("a distance of 0", still, 0, 0.5f, 1, view(1, 0, -0.5f));
    check("a distance behind", still, -1, 0.5f, 1, view(1, 0, -0.5f));
    check("a distance of KX_HUGE", still, KX_HUGE, 0.5f, 1, view(1, 0, -0.5f));
    check("a distance just above 0", still, 1e-30f, 0.5f, 1, view(1, 5e29f, -0.5f));
    KXM4 placement;
    KXM4Position(&placement, nullptr, &turned, KX_ORDER_YXZ);
    check("no scale, no shift: the placement", turned, 10, 0, 1, placement);
}
