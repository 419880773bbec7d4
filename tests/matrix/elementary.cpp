#include "support/rows.h"

using namespace test;

TEST_CASE("KXM4Unit and KXM3Unit fill the record")
{
    rows_of(KXM4Unit)("KXM4Unit", unit4);
    rows_of(KXM3Unit)("KXM3Unit", unit3);
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
    rows_of(KXM4Scale)("scale", 2, 3, 4,
                       {{{2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 4, 0}, {0, 0, 0, 1}}});
    rows_of(KXM4Translate)("translate", 2, 3, 4,
                           {{{1, 0, 0, 2}, {0, 1, 0, 3}, {0, 0, 1, 4}, {0, 0, 0, 1}}});
    rows_of(KXM4RotateX2)("rotate about X as given", 0.5f, 3,
                          {{{1, 0, 0, 0}, {0, 0.5f, -3, 0}, {0, 3, 0.5f, 0}, {0, 0, 0, 1}}});
    rows_of(KXM4RotateY2)("rotate about Y as given", 0.5f, 3,
                          {{{0.5f, 0, 3, 0}, {0, 1, 0, 0}, {-3, 0, 0.5f, 0}, {0, 0, 0, 1}}});
    rows_of(KXM4RotateZ2)("rotate about Z as given", 0.5f, 3,
                          {{{0.5f, -3, 0, 0}, {3, 0.5f, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
    rows_of(KXM4RotateX2)("a sine of 0 about X", 1, 0,
                          {{{1, 0, 0, 0}, {0, 1, -0.0f, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
    rows_of(KXM4RotateY2)("a sine of 0 about Y", 1, 0,
                          {{{1, 0, 0, 0}, {0, 1, 0, 0}, {-0.0f, 0, 1, 0}, {0, 0, 0, 1}}});
    rows_of(KXM4RotateZ2)("a sine of 0 about Z", 1, 0,
                          {{{1, -0.0f, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
    rows_of(KXM4ShearXY2)("shear x along y", 0.5f,
                          {{{1, 0.5f, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
    rows_of(KXM4ShearXZ2)("shear x along z", 0.5f,
                          {{{1, 0, 0.5f, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
    rows_of(KXM4ShearYZ2)("shear y along z", 0.5f,
                          {{{1, 0, 0, 0}, {0, 1, 0.5f, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
}

TEST_CASE("The same in the plane")
{
    rows_of(KXM3Scale)("scale", 2, 3, {{{2, 0, 0}, {0, 3, 0}, {0, 0, 1}}});
    rows_of(KXM3Translate)("translate", 2, 3, {{{1, 0, 2}, {0, 1, 3}, {0, 0, 1}}});
    rows_of(KXM3Rotate2)("rotate as given", 0.5f, 3, {{{0.5f, -3, 0}, {3, 0.5f, 0}, {0, 0, 1}}});
    rows_of(KXM3Rotate2)("a sine of 0", 1, 0, {{{1, -0.0f, 0}, {0, 1, 0}, {0, 0, 1}}});
}
