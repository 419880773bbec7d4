#include "support/rows.h"

using namespace test;

TEST_CASE("KXV3Length and KXV3Normalise")
{
    const auto check = [](const char *label, const KXV3 &v, const KXV3 &unit, double length) {
        rows_of(KXV3Normalise)(label, v, length, unit);
        rows_of(KXV3Length)(label, v, length);
    };
    check("3 4 5", {3, 4, 0}, {0.6f, 0.8f, 0}, 5.0);
    check("zero", {0, 0, 0}, {0, 0, 0}, 0.0);
    check("signs of zero stay", {-0.0f, 0, -0.0f}, {-0.0f, 0, -0.0f}, 0.0);
    check("too short", {1e-07f, 0, 0}, {1e-07f, 0, 0}, 1.0000000116860974e-07);
    check("length equal to the tolerance", {0, tolerance, 0}, {0, tolerance, 0}, tolerance);
    check("one step above", {above_tolerance, 0, 0}, {1, 0, 0}, above_tolerance);
    check("between the single 1e-6 and the decimal", {tolerance, 1e-11f, 0},
          {1, 9.99999975e-06f, 0}, 9.999999975252426e-07);
    check("a square that overflows a single", {0x3p100f, 0x4p100f, 0}, {0.6f, 0.8f, 0}, 0x5p100);
    check("times the reciprocal, not divided", {2758, 4853, 0}, {0.494092524f, 0.869409323f, 0},
          5581.950644711937);
    check("next to unit length is not unit length", {1.0000005f, 0, 0}, {1, 0, 0},
          1.0000004768371582);
    check("the root meets the tolerance, not the square", {tolerance, 1.6e-14f, 0},
          {tolerance, 1.6e-14f, 0}, tolerance);
}

// Nor do a hypotenuse, a scaling by the largest or any other order give these last bits.
TEST_CASE("KXV3Length adds x first, KXV3Normalise z")
{
    const auto check = [](const KXV3 &v, double length, double normalised) {
        KXV3 out;
        check_same("length", length, KXV3Length(&v));
        check_same("normalise", normalised, KXV3Normalise(&v, &out));
    };
    check({1.5f, 1.4e-08f, 1.4e-08f}, 1.5, 1.5000000000000002);
    check({1.4e-08f, 1.4e-08f, 1.5f}, 1.5000000000000002, 1.5);
    check({-0.8f, -6.2f, -0.2f}, 6.2545981209949293, 6.2545981209949302);
    check({-3.6f, -0.2f, -5.4f}, 6.4930732588285851, 6.493073258828586);
}

TEST_CASE("KXV3Scale")
{
    const auto check = rows_of<outputs_are_read>(KXV3Scale);
    check("the quotient stays wide, and there is no unit vector", {0.6f, 0.7f, 2.4f}, 6,
          {1.40023768f, 1.63361061f, 5.60095072f});
    check("from next to that length", {1.0000005f, 0, 0}, 1, {1, 0, 0});
    check("to -10 turns round", {3, 4, 0}, -10, {-6, -8, -0.0f});
    check("to 0", {3, 4, 0}, 0, {0, 0, 0});
    check("to 0 with signs", {-3, 4, -0.0f}, 0, {-0.0f, 0, -0.0f});
    check("zero stays", {0, -0.0f, 0}, 5, {0, -0.0f, 0});
    check("too short stays", {1e-07f, 0, 0}, 5, {1e-07f, 0, 0});
    check("equal to the tolerance stays; above it by a hypotenuse and with z added first",
          {tolerance, 1e-14f, 1.5e-14f}, 5, {tolerance, 1e-14f, 1.5e-14f});
    check("one step above", {above_tolerance, 0, 0}, 5, {5, 0, 0});
    check("between the single 1e-6 and the decimal", {tolerance, 1e-11f, 0}, 5,
          {5, 4.99999987e-05f, 0});
}

TEST_CASE("KXV3Cross")
{
    const auto check = rows_of(KXV3Cross);
    check("1 2 3 x 4 5 6", {1, 2, 3}, {4, 5, 6}, {-3, 6, -3});
    check("products that only a double holds", {8193, 8192, 8191}, {8192, 8191, 8190}, {-1, 2, -1});
    check("Y x Z is X", {0, 1, 0}, {0, 0, 1}, {1, 0, 0});
}

TEST_CASE("KXV3Perpendicular")
{
    const auto check = rows_of(KXV3Perpendicular);
    check("general", {1, 2, 3}, {-0.94868332f, 0, 0.31622776f});
    check("times the reciprocal, not divided", {4853, 1, 2758}, {-0.494092524f, 0, 0.869409323f});
    check("against X", {-1, 0, 0}, {-0.0f, 0, -1});
    check("along Z", {0, 0, 1}, {1, 0, 0});
    check("against Z", {0, 0, -1}, {1, 0, 0});
    check("zero", {0, 0, 0}, {1, 0, 0});
    check("x and y too short", {1e-07f, -1e-07f, 5}, {1, 0, 0});
    check("x equal to the tolerance", {tolerance, 0, 1}, {-1, 0, tolerance});
    check("y equal to the tolerance", {0, -tolerance, 1}, {-1, 0, 0});
    check("along Y", {0, 1, 0}, {1, 0, 0});
    check("against Y with next to no z", {0, -1, 1e-07f}, {1, 0, 0});
    check("along Y, length equal to the tolerance", {tolerance, 1, 0}, {1, 0, 0});
    check("along Y, between the single 1e-6 and the decimal", {tolerance, 1, 1e-11f},
          {-9.99999975e-06f, 0, 1});
    check("along Y, one step above", {above_tolerance, 1, 0}, {-0.0f, 0, 1});
    check("x equal to the tolerance and nothing else", {tolerance, 0, 0}, {-0.0f, 0, tolerance});
}

TEST_CASE("KXV3Combine")
{
    const auto check = rows_of(KXV3Combine);
    check("weights in order", {1, 2, 3}, {4, 5, 6}, 2, 10, {42, 54, 66});
    check("difference", {4, 5, 6}, {1, 2, 3}, 1, -1, {3, 3, 3});
    check("products stay wide", {8191, 8191, 8191}, {8192, 8192, 8192}, 8193, -8192, {-1, -1, -1});
    check("a weight of 0 takes part", {0x1p60f, 1, 1}, {1, -0.0f, -0.0f}, 0, 1, {1, 0, 0});
    check("a second weight of 0", {-0.0f, -0.0f, 1}, {1, 1, 0x1p60f}, 1, 0, {0, 0, 1});
    check("weights of 0 leave signs", {-1, 1, -1}, {-1, 1, 1}, 0, 0, {-0.0f, 0, 0});
}
