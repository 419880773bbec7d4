#include "support/rows.h"

using namespace test;

static constexpr double three_quarter_turn = 4.71238899230957;
static constexpr double whole_turn = 6.2831854820251465;
static constexpr double true_pi = 3.141592653589793;

static const KXP3 origin = {0, 0, 0};

TEST_CASE("KXRange")
{
    const auto check = rows_of(KXRange);
    check("y plays no part", {3, infinity, 4}, {0, -7, 0}, 5);
    check("both differences stay wide", {-5, -9.3f, -2.1f}, {1.9f, 5.5f, 1.1f}, 7.6059186962009191);
    check("the root of the plain sum: no hypotenuse, nothing fused", {-0.4f, 0, 0.3f},
          {4.6f, 0, -6.7f}, 8.6023250695689981);
    check("no difference", {1, 2, 3}, {1, 5, 3}, 0);
}

TEST_CASE("KXBearing")
{
    const auto check = [](const char *label, const KXP3 &first, double bearing) {
        check_near(label, bearing, KXBearing(&first, &origin));
    };
    check("along X", {1, 0, 0}, quarter_turn);
    check("along -X", {-1, 0, 0}, three_quarter_turn);
    check("along Z, where a dx of -0 is no whole turn", {-0.0f, 0, 1}, 0);
    check("along -Z", {0, 0, -1}, true_pi);
    check("halfway", {1, 0, 1}, true_pi / 4);
    check("wraps by the single 2pi", {-1, 0, 1}, whole_turn - true_pi / 4);
    check("nothing on the ground", {0, 9, 0}, three_quarter_turn);
    check("2pi itself", {-1e-30f, 0, 1}, whole_turn);
    check("no tolerance along Z", {1, 0, 1e-30f}, 1.5707963267948966);
    check("a dx of -0 behind", {-0.0f, 0, -1}, whole_turn - true_pi);
    const KXP3 left = {2, 0, 5}, right = {3, 0, 4};
    check_near("first minus second", whole_turn - true_pi / 4, KXBearing(&left, &right));
    const KXP3 first = {-1.1f, 0.3f, 8.2f}, second = {6.4f, -8.1f, -7.4f};
    check_near("both differences stay wide", 5.8350404983551156, KXBearing(&first, &second));
}

TEST_CASE("KXPointsToREA and KXVectorToEA")
{
    const auto check_rea = rows_of(KXPointsToREA);
    const auto check = [&](const char *label, const KXP3 &to, const KXV3 &rea) {
        check_rea(label, origin, to, rea.x, rea.y, rea.z);
        rows_of(KXVectorToEA)(label, to, rea.y, rea.z);
    };
    check("3 4 5", {3, 4, 0}, {5, 0.92729522f, quarter_turn});
    check("near the zenith: neither an arcsine nor an arctangent in single", {0.9f, 89.1f, 0.8f},
          {89.1081314f, 1.55728543f, 0.844153941f});
    check("straight up, where a dx of -0 is 0", {-0.0f, 1, 0}, {1, quarter_turn, 0});
    check("straight down", {0, -1, 0}, {1, -quarter_turn, 0});
    check("behind", {0, 0, -1}, {1, 0, half_turn});
    check("left", {-1, 0, 0}, {1, 0, -quarter_turn});
    check("too near for angles", {5e-07f, 0, 0}, {5e-07f, 0, 0});
    check("as far as the tolerance", {tolerance, 0, 0}, {tolerance, 0, quarter_turn});
    check("the Z test comes first", {1e-07f, 1, 1e-07f}, {1, quarter_turn, quarter_turn});
    check("dz above the tolerance", {2e-06f, 1, 2e-06f}, {1, quarter_turn, 0.78539819f});
    check("dz equal to the tolerance", {1, 0, tolerance}, {1, 0, 1.5707953f});
    check("dz below the tolerance", {1, 0, -9e-07f}, {1, 0, quarter_turn});
    check("all zero", {0, 0, 0}, {0, 0, 0});
    check("a dx of -0 behind", {-0.0f, 0, -1}, {1, 0, -half_turn});
    check("a dy of -0", {0, -0.0f, 1}, {1, -0.0f, 0});
    check("r is compared before it is rounded", {below_tolerance, 0x1.73a28ap-32f, 0},
          {tolerance, 0, 0});
    check("r is divided by after it is rounded", {1, 4096, 0}, {4096, quarter_turn, quarter_turn});
    check("the squares are added z first", {3681, 0x1.cb258ap-1f, 0x1.3ac268p-2f},
          {3681, 0x1.fee94ep-13f, 0x1.921a3cp+0f});
    check_rea("second minus first", {1, 2, 3}, {1, 2, 5}, 2, 0, 0);
    check_rea("dx is single", {-1, 0, 0}, {0x1p24f, 8, 0}, 0x1p24f, 0x1p-21f, quarter_turn);
    check_rea("dy is single", {0, -1, 0}, {8, 0x1p24f, 0}, 0x1p24f, quarter_turn, quarter_turn);
    check_rea("dz is single", {0, 0, -1}, {8, 0, 0x1p24f}, 0x1p24f, 0, 0x1p-21f);
    check_rea("dz is single before its test", {0, 0, -0x1.00b486p-44f}, {1, 0, tolerance}, 1, 0,
              1.5707953f);
}

TEST_CASE("KXREAToPoint and KXEAToVector")
{
    const auto check = rows_of(KXREAToPoint);
    check("a little above Z: no sine from a cosine", 2, 1e-5f, 0, {0, 2e-5f, 2});
    check("along X", 2, 0, quarter_turn, {2, 0, -8.74227766e-08f});
    check("up", 2, quarter_turn, 0, {-0.0f, 2, -8.74227766e-08f});
    check("no range leaves the signs", 0, -0.5f, -2, {-0.0f, -0.0f, -0.0f});
    check("no sine single", -7.9f, 0.4f, 1, {-6.12286425f, -3.07640505f, -3.93144584f});
    const KXP3 general = {0.797983587f, -0.47942555f, -0.365203202f};
    check("of length 1", 1, -0.5f, 2, general);
    const auto check_vector = rows_of(KXEAToVector);
    check_vector("a vector", -0.5f, 2, general);
    check_vector("small cosines stay", 0, quarter_turn, {1, 0, -4.37113883e-08f});
    check_vector("not made unit", -0.5f, 0.7f, {0.565354228f, -0.47942555f, 0.671212196f});
}
