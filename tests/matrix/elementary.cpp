#include "support/check.h"

using namespace test;

TEST_CASE("KXM4Unit and KXM3Unit fill the record")
{
    Guarded<KXM4> four;
    KXM4Unit(&four.record);
    four.check("KXM4Unit", unit4);
    Guarded<KXM3> three;
    KXM3Unit(&three.record);
    three.check("KXM3Unit", unit3);
}

/** Every element in turn, at both sides of its bound. */
template <int Size, typename Matrix>
static void check_bounds(const Matrix &unit, std::int32_t (*is_unit)(const Matrix *))
{
    struct Row {
        float diagonal, other;
        std::int32_t verdict;
    };
    const Row rows[] = {
        {1.0000009536743164f, tolerance, 1},
        {1.000001072883606f, above_tolerance, 0},
        {0.9999990463256836f, -tolerance, 1},
        {0.9999989867210388f, -above_tolerance, 0},
        {2, 2, 0},
    };
    CHECK(is_unit(&unit) == 1);
    Matrix unknown = unit;
    unknown.m[0][1] = not_a_number;
    CHECK(is_unit(&unknown) == 1); // a NaN is not above the tolerance
    for (int r = 0; r < Size; ++r) {
        for (int c = 0; c < Size; ++c) {
            for (const Row &row : rows) {
                Matrix m = unit;
                m.m[r][c] = r == c ? row.diagonal : row.other;
                CHECK_MESSAGE(is_unit(&m) == row.verdict, "row ", r, ", column ", c, ": ",
                              m.m[r][c]);
            }
        }
    }
}

TEST_CASE("KXM4IsUnit and KXM3IsUnit")
{
    check_bounds<4>(unit4, KXM4IsUnit);
    check_bounds<3>(unit3, KXM3IsUnit);
}

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
    check("rotate about X as given", [](KXM4 *m) { KXM4RotateX2(0.5f, 3, m); },
          {{{1, 0, 0, 0}, {0, 0.5f, -3, 0}, {0, 3, 0.5f, 0}, {0, 0, 0, 1}}});
    check("rotate about Y as given", [](KXM4 *m) { KXM4RotateY2(0.5f, 3, m); },
          {{{0.5f, 0, 3, 0}, {0, 1, 0, 0}, {-3, 0, 0.5f, 0}, {0, 0, 0, 1}}});
    check("rotate about Z as given", [](KXM4 *m) { KXM4RotateZ2(0.5f, 3, m); },
          {{{0.5f, -3, 0, 0}, {3, 0.5f, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
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
    check("rotate as given", [](KXM3 *m) { KXM3Rotate2(0.5f, 3, m); },
          {{{0.5f, -3, 0}, {3, 0.5f, 0}, {0, 0, 1}}});
    check("a sine of 0", [](KXM3 *m) { KXM3Rotate2(1, 0, m); },
          {{{1, -0.0f, 0}, {0, 1, 0}, {0, 0, 1}}});
}
