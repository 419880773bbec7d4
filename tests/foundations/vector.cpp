#include "support/check.h"

using namespace test;

TEST_CASE("KXV3Length and KXV3Normalise")
{
    struct Row { const char *label; KXV3 v; KXV3 unit; double length; };
    const Row rows[] = {
        {"3 4 5", {3, 4, 0}, {0.6f, 0.8f, 0}, 5.0},
        {"zero", {0, 0, 0}, {0, 0, 0}, 0.0},
        {"signs of zero stay", {-0.0f, 0, -0.0f}, {-0.0f, 0, -0.0f}, 0.0},
        {"too short", {1e-07f, 0, 0}, {1e-07f, 0, 0}, 1.0000000116860974e-07},
        {"length equal to the tolerance", {0, tolerance, 0}, {0, tolerance, 0}, tolerance},
        {"one step above", {above_tolerance, 0, 0}, {1, 0, 0}, above_tolerance},
        {"between the single 1e-6 and the decimal", {tolerance, 1e-11f, 0}, {1, 9.99999975e-06f, 0}, 9.999999975252426e-07},
        {"a square that overflows a single", {0x3p100f, 0x4p100f, 0}, {0.6f, 0.8f, 0}, 0x5p100},
        {"times the reciprocal, not divided", {2758, 4853, 0}, {0.494092524f, 0.869409323f, 0}, 5581.950644711937},
    };
    for (const Row &row : rows) {
        check_in_out(row.label, row.v, row.unit,
                     [&row](const KXV3 *in, KXV3 *out) { check_same(row.label, row.length, KXV3Normalise(in, out)); });
        check_same(row.label, row.length, KXV3Length(&row.v));
    }
}

TEST_CASE("KXV3Length adds x first, KXV3Normalise z")
{
    const KXV3 large_x = {1.5f, 1.4e-08f, 1.4e-08f}, large_z = {1.4e-08f, 1.4e-08f, 1.5f};
    KXV3 out;
    check_same("length", 1.5, KXV3Length(&large_x));
    check_same("length", 1.5000000000000002, KXV3Length(&large_z));
    check_same("normalise", 1.5000000000000002, KXV3Normalise(&large_x, &out));
    check_same("normalise", 1.5, KXV3Normalise(&large_z, &out));
}

TEST_CASE("KXV3Scale")
{
    struct Row { const char *label; KXV3 v; float length; KXV3 scaled; };
    const Row rows[] = {
        {"the quotient stays wide", {5.3f, 6.3f, 3}, 9, {5.44370174f, 6.47081518f, 3.08134055f}},
        {"to -10 turns round", {3, 4, 0}, -10, {-6, -8, -0.0f}},
        {"to 0", {3, 4, 0}, 0, {0, 0, 0}},
        {"to 0 with signs", {-3, 4, -0.0f}, 0, {-0.0f, 0, -0.0f}},
        {"zero stays", {0, -0.0f, 0}, 5, {0, -0.0f, 0}},
        {"too short stays", {1e-07f, 0, 0}, 5, {1e-07f, 0, 0}},
        {"equal to the tolerance stays", {tolerance, 0, 0}, 5, {tolerance, 0, 0}},
        {"one step above", {above_tolerance, 0, 0}, 5, {5, 0, 0}},
        {"between the single 1e-6 and the decimal", {tolerance, 1e-11f, 0}, 5, {5, 4.99999987e-05f, 0}},
    };
    for (const Row &row : rows) {
        Guarded<KXV3> v;
        v.record = row.v;
        KXV3Scale(&v.record, row.length);
        v.check(row.label, row.scaled);
    }
}

TEST_CASE("KXV3Cross")
{
    struct Row { const char *label; KXV3 a, b, product; };
    const Row rows[] = {
        {"1 2 3 x 4 5 6", {1, 2, 3}, {4, 5, 6}, {-3, 6, -3}},
        {"products that only a double holds", {8193, 8192, 0}, {8192, 8191, 0}, {0, 0, -1}},
        {"Y x Z is X", {0, 1, 0}, {0, 0, 1}, {1, 0, 0}},
    };
    for (const Row &row : rows) {
        Guarded<KXV3> out;
        KXV3Cross(&row.a, &row.b, &out.record);
        out.check(row.label, row.product);
    }
}

TEST_CASE("KXV3Perpendicular")
{
    struct Row { const char *label; KXV3 v, perpendicular; };
    const Row rows[] = {
        {"general", {1, 2, 3}, {-0.94868332f, 0, 0.31622776f}},
        {"against X", {-1, 0, 0}, {-0.0f, 0, -1}},
        {"along Z", {0, 0, 1}, {1, 0, 0}},
        {"against Z", {0, 0, -1}, {1, 0, 0}},
        {"zero", {0, 0, 0}, {1, 0, 0}},
        {"x and y too short", {1e-07f, -1e-07f, 5}, {1, 0, 0}},
        {"x equal to the tolerance", {tolerance, 0, 1}, {-1, 0, tolerance}},
        {"y equal to the tolerance", {0, -tolerance, 1}, {-1, 0, 0}},
        {"along Y", {0, 1, 0}, {1, 0, 0}},
        {"against Y with next to no z", {0, -1, 1e-07f}, {1, 0, 0}},
        {"along Y, length equal to the tolerance", {tolerance, 1, 0}, {1, 0, 0}},
        {"along Y, between the single 1e-6 and the decimal", {tolerance, 1, 1e-11f}, {-9.99999975e-06f, 0, 1}},
        {"along Y, one step above", {above_tolerance, 1, 0}, {-0.0f, 0, 1}},
        {"x equal to the tolerance and nothing else", {tolerance, 0, 0}, {-0.0f, 0, tolerance}},
    };
    for (const Row &row : rows) {
        Guarded<KXV3> out;
        KXV3Perpendicular(&row.v, &out.record);
        out.check(row.label, row.perpendicular);
    }
}

TEST_CASE("KXV3Combine")
{
    struct Row { const char *label; KXV3 a, b; float s, t; KXV3 sum; };
    const Row rows[] = {
        {"weights in order", {1, 2, 3}, {4, 5, 6}, 2, 10, {42, 54, 66}},
        {"difference", {4, 5, 6}, {1, 2, 3}, 1, -1, {3, 3, 3}},
        {"products stay wide", {8193, 8192, 0}, {8191, 8192, -0.0f}, 8191, -8193, {0, -16384, 0}},
    };
    for (const Row &row : rows) {
        check_two_in_out(row.label, row.a, row.b, row.sum,
                         [&row](const KXV3 *a, const KXV3 *b, KXV3 *out) { KXV3Combine(a, b, out, row.s, row.t); });
    }
}
