#include "support/check.h"

using namespace test;

static void check_projection(const char *label, const KXPosition &position, float distance,
                             float offset, float y_scale, const KXM4 &wanted)
{
    Guarded<KXM4> out;
    KXM4Projection1(&out.record, &position, distance, offset, y_scale);
    out.check(label, wanted);
}

TEST_CASE("KXM4Projection1")
{
    const KXPosition still = {0, 0, 0, 0, 0, 0}, at_1_2_3 = {1, 2, 3, 0, 0, 0};
    const float steps8 = 1.0000009536743164f, steps9 = 1.000001072883606f;
    const auto view = [](float y_scale, float slope, float shift) {
        return KXM4{{{1, 0, slope, shift}, {0, y_scale, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
    };
    const auto check = [](const char *label, const KXPosition &position, float distance,
                          float offset, float y_scale, const KXM4 &wanted) {
        check_projection(label, position, distance, offset, y_scale, wanted);
    };
    check("shear and shift", still, 10, 0.5f, 1, view(1, 0.05f, -0.5f));
    check("the translation scales too", at_1_2_3, 10, 0, 2,
          {{{1, 0, 0, 1}, {0, 2, 0, 4}, {0, 0, 1, 3}, {0, 0, 0, 1}}});
    check("scaled before it is shifted, slope single", {-3, -2, -3, 0, 0, 0}, 6, -2, -3,
          {{{1, 0, -0.333333343f, 2.98023224e-08f}, {0, -3, 0, 6}, {0, 0, 1, -3}, {0, 0, 0, 1}}});
    check("a turned view: whole rows are scaled and sheared", {1, 2, 3, 0.1f, 0.2f, 0.3f}, 10, 0.5f,
          2,
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
    const KXPosition turned = {1, 2, 3, 0.1f, 0.2f, 0.3f};
    KXM4 placement;
    KXM4Position(&placement, nullptr, &turned, KX_ORDER_YXZ);
    check_projection("no scale, no shift: the placement", turned, 10, 0, 1, placement);
}
