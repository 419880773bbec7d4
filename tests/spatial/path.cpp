#include "support/check.h"

using namespace test;

static const KXM4 scaled = {{{2, 0, 0, 10}, {0, 3, 0, 20}, {0, 0, 4, 30}, {0, 0, 0, 1}}};
static const KXM4 perspective = {{{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 1, 7}, {0.5f, 0.5f, 0.5f, 2}}};

TEST_CASE("KXTransformLine")
{
    const KXLine line = {{1, 2, 3}, {4, 5, 6}};
    const auto by = [](const KXM4 &m) {
        return [&m](const KXLine *in, KXLine *out) { KXTransformLine(in, &m, out); };
    };
    check_in_out("scaled and moved", line, {{12, 26, 42}, {18, 35, 54}}, by(scaled));
    check_in_out<KXLine>("an identity adds its zeros", {{-0.0f, 1, 2}, {3, 4, -0.0f}},
                         {{0, 1, 2}, {3, 4, 0}}, by(unit4));
    const KXLine far = {{0x1p30f, 1, 2}, {1, 0x1p30f, 3}};
    check_in_out("the end by itself, not by the step to it", far, far, by(unit4));
    check_in_out("the fourth row plays no part", line, {{6, 8, 10}, {9, 11, 13}}, by(perspective));
}

TEST_CASE("KXTransformRay")
{
    const auto check = [](const char *label, const KXM4 &matrix, const KXRay &ray,
                          const KXRay &wanted) {
        check_in_out(label, ray, wanted,
                     [&](const KXRay *in, KXRay *out) { KXTransformRay(in, &matrix, out); });
    };
    check("the direction becomes unit", scaled, {{1, 2, 3}, {0, 3, 4}},
          {{12, 26, 42}, {0, 0.49026123f, 0.87157553f}});
    check("under the unit matrix too", unit4, {{1, 2, 3}, {3, 0, 4}}, {{1, 2, 3}, {0.6f, 0, 0.8f}});
    check("and next to unit length", unit4, {{-0.0f, 0, 0}, {1.0000005f, 0, 0}},
          {{0, 0, 0}, {1, 0, 0}});
    check("the direction is single before it becomes unit",
          {{{1.5f, -0.7f, -0.5f, 0}, {-0.8f, -0.6f, 0.4f, 0}, {-0.8f, -1.3f, 1, 0}, {0, 0, 0, 1}}},
          {{0, 0, 0}, {0.7f, 0.4f, 0.4f}},
          {{0, 0, 0}, {0.521009862f, -0.584993482f, -0.621555626f}});
    check("the translation turns no direction", perspective, {{1, 2, 3}, {0, 2, 0}},
          {{6, 8, 10}, {0, 1, 0}});
    check("no direction", scaled, {{0, 0, 0}, {0, -0.0f, 0}}, {{10, 20, 30}, {0, 0, 0}});
    check("too short", scaled, {{0, 0, 0}, {1e-07f, 0, 0}}, {{10, 20, 30}, {2e-07f, 0, 0}});
    check("as long as the tolerance; longer with x added first", unit4,
          {{0, 0, 0}, {1.5e-14f, 1e-14f, tolerance}}, {{0, 0, 0}, {1.5e-14f, 1e-14f, tolerance}});
}

TEST_CASE("KXRayPointDistance")
{
    const auto check = [](const char *label, const KXRay &ray, const KXP3 &point, double distance) {
        check_same(label, distance, KXRayPointDistance(&ray, &point));
    };
    check("in front", {{0, 0, 0}, {1, 0, 0}}, {3, 4, 0}, 4);
    check("behind", {{0, 0, 0}, {1, 0, 0}}, {-3, 4, 0}, 4);
    check("on the line", {{0, 0, 0}, {1, 0, 0}}, {3, 0, 0}, 0);
    check("times the direction's length", {{0, 0, 0}, {2, 0, 0}}, {3, 4, 0}, 8);
    check("no direction", {{0, 0, 0}, {0, 0, 0}}, {3, 4, 0}, 0);
    check("each single, and each that is not; the order of the squares",
          {{0.2f, 4.9f, 2.2f}, {3, 4.1f, 4.8f}}, {0.6f, 0.7f, -3.1f}, 22.864709521422906);
}
