#include "support/rows.h"

using namespace test;

// Row 0: 8193*8191 - 8192*8192 = -1, which single products would make 0. Row 1: a sum of -0.
static const KXM4 cancels = {{{8193, -8192, 0, 0}, {-0.0f, -0.0f, -0.0f, -0.0f}, {}, {}}};
static const KXM4 with = {{{8191, 1, 1, 1}, {8192, 1, 1, 1}, {0, 1, 1, 1}, {0, 1, 1, 1}}};
static const KXM4 cancelled = {{{-1, 1, 1, 1}, {-0.0f, -0.0f, -0.0f, -0.0f}, {}, {}}};

// Added from left to right; in any other order one of the rows differs.
static constexpr float large = 0x1p60f;
static const KXM4 ordered = {
    {{large, 1, -large, 8}, {1, large, -large, 2}, {large, -large, 1, 2}, {-large, 1, 8, large}}};
static const KXM4 ones = {{{1, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}}};

// An identity is a factor like any other: its zeros clear the sign of a zero.
static const KXM4 signs = {{{-0.0f, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}}};
static const KXM4 no_signs = {{{0, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}}};

static KXM3 block_of(const KXM4 &m)
{
    return {{{m.m[0][0], m.m[0][1], m.m[0][2]},
             {m.m[1][0], m.m[1][1], m.m[1][2]},
             {m.m[2][0], m.m[2][1], m.m[2][2]}}};
}

static KXM4 with_block(KXM4 rest, const KXM3 &block)
{
    for (int r = 0; r < 3; ++r) {
        std::memcpy(rest.m[r], block.m[r], sizeof block.m[r]);
    }
    return rest;
}

TEST_CASE("KXM4Mult")
{
    const KXM4 a = {{{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}}};
    const KXM4 b = {{{2, 3, 5, 7}, {11, 13, 17, 19}, {23, 29, 31, 37}, {41, 43, 47, 53}}};
    const auto check = rows_of(KXM4Mult);
    check("the right factor acts first", a, b,
          {{{257, 288, 320, 368},
            {565, 640, 720, 832},
            {873, 992, 1120, 1296},
            {1181, 1344, 1520, 1760}}});
    check(
        "square", a, a,
        {{{90, 100, 110, 120}, {202, 228, 254, 280}, {314, 356, 398, 440}, {426, 484, 542, 600}}});

    check("rounded once, sign of zero", cancels, with, cancelled);
    check("order of the sum", ordered, ones,
          {{{8, 8, 8, 8}, {2, 2, 2, 2}, {3, 3, 3, 3}, {0, 0, 0, 0}}});
    check("an identity on the left", unit4, signs, no_signs);
    check("an identity on the right", signs, unit4, no_signs);
    // The first element is -0 but for the product of last row and column, which is 0.
    check("affine transforms are multiplied whole",
          {{{-1, -1, -1, 1}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}},
          {{{0, 1, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}},
          {{{0, -2, -1, 1}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}});
}

TEST_CASE("KXM3Mult, and KXM43Mult on its block")
{
    const KXM3 a = {{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}};
    const KXM3 b = {{{2, 3, 5}, {7, 11, 13}, {17, 19, 23}}};
    const auto check = [](const char *label, const KXM3 &left, const KXM3 &right,
                          const KXM3 &wanted) {
        rows_of(KXM3Mult)(label, left, right, wanted);
        rows_of(KXM43Mult)(label, with_block(ones, left), with_block(ones, right),
                           with_block(marked<KXM4>(), wanted));
    };
    check("the right factor acts first", a, b, {{{67, 82, 100}, {145, 181, 223}, {223, 280, 346}}});
    check("square", a, a, {{{30, 36, 42}, {66, 81, 96}, {102, 126, 150}}});
    check("rounded once, sign of zero", block_of(cancels), block_of(with), block_of(cancelled));
    check("order of the sum", block_of(ordered), block_of(ones),
          {{{0, 0, 0}, {0, 0, 0}, {1, 1, 1}}});
    check("an identity on the left", block_of(unit4), block_of(signs), block_of(no_signs));
    check("an identity on the right", block_of(signs), block_of(unit4), block_of(no_signs));
    rows_of(KXM3Mult)("affine transforms are multiplied whole",
                      {{{-1, -1, 1}, {0, 1, 0}, {0, 0, 1}}}, {{{0, 1, 0}, {0, 1, 0}, {0, 0, 1}}},
                      {{{0, -2, 1}, {0, 1, 0}, {0, 0, 1}}});
}
