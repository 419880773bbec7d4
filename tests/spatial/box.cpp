#include "support/rows.h"

using namespace test;

static const KXM4 mirrored = {{{2, 0, 0, 10}, {0, -1, 0, 20}, {0, 0, 0.5f, 30}, {9, 9, 9, 9}}};

/** A transform whose three rows are alike. */
static KXM4 rows_of(float x, float y, float z, float translation)
{
    KXM4 m = {};
    for (int r = 0; r < 3; ++r) {
        const float row[4] = {x, y, z, translation};
        std::memcpy(m.m[r], row, sizeof row);
    }
    return m;
}

static KXBox cube_of(float lo, float hi)
{
    return {{lo, lo, lo}, {hi, hi, hi}};
}

TEST_CASE("KXTransformBox")
{
    const auto check = rows_of(KXTransformBox);
    check("a negative element swaps the ends; the fourth row plays no part", {{1, 2, 3}, {4, 5, 6}},
          mirrored, {{12, 15, 31.5f}, {18, 18, 33}});
    check("an identity adds its zeros", {{-0.0f, -0.0f, -0.0f}, {1, 1, 1}},
          {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, {{0, 0, 0}, {1, 1, 1}});
    check("one point", {{1, 2, 3}, {1, 2, 3}}, mirrored, {{12, 18, 31.5f}, {12, 18, 31.5f}});
    const KXBox along_x = {{2, 0, 0}, {1, 1, 1}};
    check("inverted along x", along_x, mirrored, along_x);
    check("inverted along y", {{0, 2, 0}, {1, 1, 1}}, mirrored, {{0, 2, 0}, {1, 1, 1}});
    check("inverted along z", {{0, 0, 2}, {1, 1, 1}}, mirrored, {{0, 0, 2}, {1, 1, 1}});
    // 4097*4097 is 16785409, and 16777217 is no single: each row loses one where it is rounded.
    check("b is single, x", {{0, 0, 0}, {4097, 0, 0}}, rows_of(4097, 0, 0, -16785408),
          cube_of(-16785408, 0));
    check("b is single, y", {{0, 0, 0}, {0, 4097, 0}}, rows_of(0, 4097, 0, -16785408),
          cube_of(-16785408, 0));
    check("b is single, z", {{0, 0, 0}, {0, 0, 4097}}, rows_of(0, 0, 4097, -16785408),
          cube_of(-16785408, 0));
    check("a is not single, x", {{4097, 0, 0}, {4098, 0, 0}}, rows_of(4097, 0, 0, -16785408),
          cube_of(1, 4098));
    check("a is not single, y", {{0, 4097, 0}, {0, 4098, 0}}, rows_of(0, 4097, 0, -16785408),
          cube_of(1, 4098));
    check("a is not single, z", {{0, 0, 4097}, {0, 0, 4098}}, rows_of(0, 0, 4097, -16785408),
          cube_of(1, 4098));
    check("a is not single where it is the higher", {{4097, 0, 0}, {4098, 0, 0}},
          rows_of(-4097, 0, 0, 16785410), cube_of(-4096, 1));
    check("compared as they are", {{4099, 0, 0}, {4099, 0, 0}}, rows_of(4097, 0, 0, -16793602),
          cube_of(1, 2));
    check("lo is single after x", {{1, 1, 0}, {2, 2, 0}}, rows_of(1, 1, 0, 16777216),
          cube_of(16777216, 16777220));
    check("lo is single after y", {{0, 1, 1}, {0, 2, 2}}, rows_of(0, 1, 1, 16777216),
          cube_of(16777216, 16777220));
    check("hi is single after x", {{0, 0, 0}, {1, 1, 0}}, rows_of(1, 1, 0, 16777216),
          cube_of(16777216, 16777216));
    check("hi is single after y", {{0, 0, 0}, {0, 1, 1}}, rows_of(0, 1, 1, 16777216),
          cube_of(16777216, 16777216));
    check("the same with the ends swapped", {{-2, -2, 0}, {-1, -1, 0}},
          rows_of(-1, -1, 0, 16777216), cube_of(16777216, 16777220));
    check("and hi", {{-1, -1, 0}, {0, 0, 0}}, rows_of(-1, -1, 0, 16777216),
          cube_of(16777216, 16777216));
    check("equal products: b goes to lo", {{-0.0f, 0, 0}, {0, 0, 0}}, rows_of(1, -1, -1, -0.0f),
          cube_of(0, -0.0f));
    check("and along z", {{0, 0, -0.0f}, {0, 0, 0}}, rows_of(-1, -1, 1, -0.0f), cube_of(0, -0.0f));
    // Nothing of the matrix is read for an inverted box.
    Guarded<KXBox> out;
    KXTransformBox(&along_x, nullptr, &out.record);
    out.check("no matrix", along_x);
    const KXBox unknown = {{0, 0, 0}, {not_a_number, 1, 1}};
    KXTransformBox(&unknown, &mirrored, &out.record);
    CHECK(out.record.minimum.y != out.record.minimum.y); // a NaN is not inverted, and spreads
}

TEST_CASE("KXPutPointInBox")
{
    const KXBox unit = {{0, 0, 0}, {1, 1, 1}};
    const auto check = rows_of<outputs_are_read>(KXPutPointInBox);
    check("inside", {0.5f, 0.5f, 0.5f}, unit, 0, unit);
    check("on the minimum", {0, 0, 0}, unit, 0, unit);
    check("on the maximum", {1, 1, 1}, unit, 0, unit);
    check("below x", {-1, 0, 0}, unit, 1, {{-1, 0, 0}, {1, 1, 1}});
    check("below y", {0, -1, 0}, unit, 1, {{0, -1, 0}, {1, 1, 1}});
    check("below z", {0, 0, -1}, unit, 1, {{0, 0, -1}, {1, 1, 1}});
    check("above x", {2, 0, 0}, unit, 1, {{0, 0, 0}, {2, 1, 1}});
    check("above y", {0, 2, 0}, unit, 1, {{0, 0, 0}, {1, 2, 1}});
    check("above z", {0, 0, 2}, unit, 1, {{0, 0, 0}, {1, 1, 2}});
    check("below and above", {-1, 2, -1}, unit, 1, {{-1, 0, -1}, {1, 2, 1}});
    check("a zero of the other sign moves nothing", {-0.0f, 0, 0}, unit, 0, unit);
    check("the first point of an empty box", {1, 2, 3},
          {{KX_HUGE, KX_HUGE, KX_HUGE}, {-KX_HUGE, -KX_HUGE, -KX_HUGE}}, 1, {{1, 2, 3}, {1, 2, 3}});
    check("an inverted box: each corner by itself", {0, 0, 0}, {{9, -9, 9}, {-9, 9, -9}}, 1,
          {{0, -9, 0}, {0, 9, 0}});
    check("a NaN moves nothing", {not_a_number, 2, not_a_number}, unit, 1, {{0, 0, 0}, {1, 2, 1}});
}

TEST_CASE("KXCombineBoxes")
{
    const KXBox one = {{0, 1, 2}, {3, 4, 5}};
    const KXBox other = {{-1, 2, 1}, {4, 3, 6}};
    const KXBox inverted = {{9, -9, 9}, {-9, 9, -9}};
    const auto check = rows_of<outputs_are_read>(KXCombineBoxes);
    check("union", one, other, {{-1, 1, 1}, {4, 4, 6}});
    check("an inverted box takes part with its numbers", one, inverted, {{0, -9, 2}, {3, 9, 5}});
    check("so does the box itself", inverted, one, {{0, -9, 2}, {3, 9, 5}});
    check("a NaN or a zero of the other sign moves nothing", one,
          {{-0.0f, not_a_number, 2}, {not_a_number, 4, 5}}, one);
    check("with itself", one, one, one);
}

TEST_CASE("KXBoxMidPoint and KXBoxDiagonal")
{
    const auto check = [](const char *label, const KXBox &box, const KXP3 &middle,
                          const KXV3 &diagonal) {
        rows_of(KXBoxMidPoint)(label, box, middle);
        rows_of(KXBoxDiagonal)(label, box, diagonal);
    };
    check("ordinary", {{0, 1, 2}, {3, 5, 9}}, {1.5f, 3, 5.5f}, {3, 4, 7});
    check("inverted", {{3, 5, 9}, {0, 1, 2}}, {1.5f, 3, 5.5f}, {-3, -4, -7});
    check("sums that overflow a single",
          {{0x1p127f, 0x1p127f, 0x1p127f}, {0x1p127f, 0x1p127f, 0x1p127f}},
          {0x1p127f, 0x1p127f, 0x1p127f}, {0, 0, 0});
    check("halves that no single holds; -0", {{0x1p-149f, -0.0f, 0}, {0x1p-149f, -0.0f, 0}},
          {0x1p-149f, -0.0f, 0}, {0, 0, 0});
}

TEST_CASE("KXIsValidBox")
{
    const auto is_valid = [](const KXBox &box) { return KXIsValidBox(&box); };
    CHECK(is_valid({{0, 0, 0}, {1, 1, 1}}) == 1);
    CHECK(is_valid({{1, 1, 1}, {1, 1, 1}}) == 1);
    CHECK(is_valid({{2, 0, 0}, {1, 1, 1}}) == 0);
    CHECK(is_valid({{0, 2, 0}, {1, 1, 1}}) == 0);
    CHECK(is_valid({{0, 0, 2}, {1, 1, 1}}) == 0);
    for (int i = 0; i < 6; ++i) {
        std::array<float, 6> floats = {0, 0, 0, 1, 1, 1};
        floats[static_cast<std::size_t>(i)] = not_a_number;
        CHECK_MESSAGE(is_valid(bits_as<KXBox>(floats)) == 0, "NaN in float ", i);
    }
}
