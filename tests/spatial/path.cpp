#include "support/check.h"

using namespace test;

static const KXM4 scaled = {{{2, 0, 0, 10}, {0, 3, 0, 20}, {0, 0, 4, 30}, {0, 0, 0, 1}}};
static const KXM4 perspective = {{{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 1, 7}, {0.5f, 0.5f, 0.5f, 2}}};
static const KXM4 unit = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};

TEST_CASE("KXTransformLine")
{
    const KXLine line = {{1, 2, 3}, {4, 5, 6}};
    const auto by = [](const KXM4 &m) { return [&m](const KXLine *in, KXLine *out) { KXTransformLine(in, &m, out); }; };
    check_in_out("scaled and moved", line, {{12, 26, 42}, {18, 35, 54}}, by(scaled));
    check_in_out("the fourth row plays no part", line, {{6, 8, 10}, {9, 11, 13}}, by(perspective));
}

TEST_CASE("KXTransformRay")
{
    struct Row { const char *label; KXM4 matrix; KXRay ray, wanted; };
    const Row rows[] = {
        {"the direction becomes unit", scaled, {{1, 2, 3}, {0, 3, 4}}, {{12, 26, 42}, {0, 0.49026123f, 0.87157553f}}},
        {"under the unit matrix too", unit, {{1, 2, 3}, {3, 0, 4}}, {{1, 2, 3}, {0.6f, 0, 0.8f}}},
        {"the translation turns no direction", perspective, {{1, 2, 3}, {0, 2, 0}}, {{6, 8, 10}, {0, 1, 0}}},
        {"no direction", scaled, {{0, 0, 0}, {0, -0.0f, 0}}, {{10, 20, 30}, {0, 0, 0}}},
        {"too short", scaled, {{0, 0, 0}, {1e-07f, 0, 0}}, {{10, 20, 30}, {2e-07f, 0, 0}}},
        {"as long as the tolerance", scaled, {{0, 0, 0}, {tolerance / 2, 0, 0}}, {{10, 20, 30}, {tolerance, 0, 0}}},
    };
    for (const Row &row : rows) {
        check_in_out(row.label, row.ray, row.wanted,
                     [&row](const KXRay *in, KXRay *out) { KXTransformRay(in, &row.matrix, out); });
    }
}

TEST_CASE("KXRayPointDistance")
{
    struct Row { const char *label; KXRay ray; KXP3 point; double distance; };
    const Row rows[] = {
        {"in front", {{0, 0, 0}, {1, 0, 0}}, {3, 4, 0}, 4},
        {"behind", {{0, 0, 0}, {1, 0, 0}}, {-3, 4, 0}, 4},
        {"on the line", {{0, 0, 0}, {1, 0, 0}}, {3, 0, 0}, 0},
        {"times the direction's length", {{0, 0, 0}, {2, 0, 0}}, {3, 4, 0}, 8},
        {"no direction", {{0, 0, 0}, {0, 0, 0}}, {3, 4, 0}, 0},
        {"each single, and each that is not; the order of the squares", {{0.2f, 4.9f, 2.2f}, {3, 4.1f, 4.8f}},
         {0.6f, 0.7f, -3.1f}, 22.864709521422906},
    };
    for (const Row &row : rows) {
        check_same(row.label, row.distance, KXRayPointDistance(&row.ray, &row.point));
    }
}
