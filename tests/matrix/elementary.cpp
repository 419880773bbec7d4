#include "support/check.h"

using namespace test;

TEST_CASE("Every elementary transform fills the whole record")
{
    const auto check = [](const char *label, void (*fill)(KXM4 *), const KXM4 &wanted) {
        Guarded<KXM4> out;
        fill(&out.record);
        out.check(label, wanted);
    };
    check("scale", [](KXM4 *m) { KXM4Scale(2, 3, 4, m); },
          {{{2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 4, 0}, {0, 0, 0, 1}}});
    check("translate", [](KXM4 *m) { KXM4Translate(2, 3, 4, m); },
          {{{1, 0, 0, 2}, {0, 1, 0, 3}, {0, 0, 1, 4}, {0, 0, 0, 1}}});
    check("rotate about X", [](KXM4 *m) { KXM4RotateX2(0.6f, 0.8f, m); },
          {{{1, 0, 0, 0}, {0, 0.6f, -0.8f, 0}, {0, 0.8f, 0.6f, 0}, {0, 0, 0, 1}}});
    check("rotate about Y", [](KXM4 *m) { KXM4RotateY2(0.6f, 0.8f, m); },
          {{{0.6f, 0, 0.8f, 0}, {0, 1, 0, 0}, {-0.8f, 0, 0.6f, 0}, {0, 0, 0, 1}}});
    check("rotate about Z", [](KXM4 *m) { KXM4RotateZ2(0.6f, 0.8f, m); },
          {{{0.6f, -0.8f, 0, 0}, {0.8f, 0.6f, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
    check("a sine of 0 about X", [](KXM4 *m) { KXM4RotateX2(1, 0, m); },
          {{{1, 0, 0, 0}, {0, 1, -0.0f, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
    check("a sine of 0 about Y", [](KXM4 *m) { KXM4RotateY2(1, 0, m); },
          {{{1, 0, 0, 0}, {0, 1, 0, 0}, {-0.0f, 0, 1, 0}, {0, 0, 0, 1}}});
    check("a sine of 0 about Z", [](KXM4 *m) { KXM4RotateZ2(1, 0, m); },
          {{{1, -0.0f, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
    check("shear x along y", [](KXM4 *m) { KXM4ShearXY2(0.5f, m); },
          {{{1, 0.5f, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
    check("shear x along z", [](KXM4 *m) { KXM4ShearXZ2(0.5f, m); },
          {{{1, 0, 0.5f, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
    check("shear y along z", [](KXM4 *m) { KXM4ShearYZ2(0.5f, m); },
          {{{1, 0, 0, 0}, {0, 1, 0.5f, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
}

TEST_CASE("The same in the plane")
{
    const auto check = [](const char *label, void (*fill)(KXM3 *), const KXM3 &wanted) {
        Guarded<KXM3> out;
        fill(&out.record);
        out.check(label, wanted);
    };
    check("scale", [](KXM3 *m) { KXM3Scale(2, 3, m); }, {{{2, 0, 0}, {0, 3, 0}, {0, 0, 1}}});
    check("translate", [](KXM3 *m) { KXM3Translate(2, 3, m); },
          {{{1, 0, 2}, {0, 1, 3}, {0, 0, 1}}});
    check("rotate", [](KXM3 *m) { KXM3Rotate2(0.6f, 0.8f, m); },
          {{{0.6f, -0.8f, 0}, {0.8f, 0.6f, 0}, {0, 0, 1}}});
    check("a sine of 0", [](KXM3 *m) { KXM3Rotate2(1, 0, m); },
          {{{1, -0.0f, 0}, {0, 1, 0}, {0, 0, 1}}});
}
