#include "support/rows.h"

using namespace test;

static const KXM4 scaled = {{{2, 0, 0, 10}, {0, 3, 0, 20}, {0, 0, 4, 30}, {0, 0, 0, 1}}};
static const KXM4 perspective = {{{1, 0, 0, 5}, {0, 1, 0, 6}, {0, 0, 1, 7}, {0.5f, 0.5f, 0.5f, 2}}};

TEST_CASE("KXTransformLine")
{
    const KXLine line = {{1, 2, 3}, {4, 5, 6}};
    const auto check = rows_of(KXTransformLine);
    check("scaled and moved", line, scaled, {{12, 26, 42}, {18, 35, 54}});
    check("an identity adds its zeros", {{-0.0f, 1, 2}, {3, 4, -0.0f}}, unit4,
          {{0, 1, 2}, {3, 4, 0}});
    const KXLine far = {{0x1p30f, 1, 2}, {1, 0x1p30f, 3}};
    check("the end by itself, not by the step to it", far, unit4, far);
    check("the fourth row plays no part", line, perspective, {{6, 8, 10}, {9, 11, 13}});
}

TEST_CASE("KXTransformRay")
{
    const auto check = rows_of(KXTransformRay);
    check("the direction becomes unit", {{1, 2, 3}, {0, 3, 4}}, scaled,
          {{12, 26, 42}, {0, 0.49026123f, 0.87157553f}});
    check("under the unit matrix too", {{1, 2, 3}, {3, 0, 4}}, unit4, {{1, 2, 3}, {0.6f, 0, 0.8f}});
    check("and next to unit length", {{-0.0f, 0, 0}, {1.0000005f, 0, 0}}, unit4,
          {{0, 0, 0}, {1, 0, 0}});
    check("the direction is single before it becomes unit", {{0, 0, 0}, {0.7f, 0.4f, 0.4f}},
          {{{1.5f, -0.7f, -0.5f, 0}, {-0.8f, -0.6f, 0.4f, 0}, {-0.8f, -1.3f, 1, 0}, {0, 0, 0, 1}}},
          {{0, 0, 0}, {0.521009862f, -0.584993482f, -0.621555626f}});
    check("the translation turns no direction", {{1, 2, 3}, {0, 2, 0}}, perspective,
          {{6, 8, 10}, {0, 1, 0}});
    check("no direction", {{0, 0, 0}, {0, -0.0f, 0}}, scaled, {{10, 20, 30}, {0, 0, 0}});
    check("too short", {{0, 0, 0}, {1e-07f, 0, 0}}, scaled, {{10, 20, 30}, {2e-07f, 0, 0}});
    check("as long as the tolerance; longer with x added first",
          {{0, 0, 0}, {1.5e-14f, 1e-14f, tolerance}}, unit4,
          {{0, 0, 0}, {1.5e-14f, 1e-14f, tolerance}});
}

TEST_CASE("KXRayPointDistance")
{
    const auto check = rows_of(KXRayPointDistance);
    check("in front", {{0, 0, 0}, {1, 0, 0}}, {3, 4, 0}, 4);
    check("behind", {{0, 0, 0}, {1, 0, 0}}, {-3, 4, 0}, 4);
    check("on the line", {{0, 0, 0}, {1, 0, 0}}, {3, 0, 0}, 0);
    check("times the direction's length", {{0, 0, 0}, {2, 0, 0}}, {3, 4, 0}, 8);
    check("no direction", {{0, 0, 0}, {0, 0, 0}}, {3, 4, 0}, 0);
    check("each single, and each that is not; no hypotenuse; squares in order",
          {{5.9f, 1.3f, 9.4f}, {-4.7f, -8.3f, 6.9f}}, {0.2f, -4.9f, 1.9f}, 130.09083639320193);
}
