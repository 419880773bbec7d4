#include "support/check.h"

using namespace test;

template <typename Matrix>
using Product = void (*)(const Matrix *, const Matrix *, Matrix *);

template <typename Matrix>
static void check_square(const std::string &label, const Matrix &m, const Matrix &wanted,
                         Product<Matrix> multiply)
{
    check_two_in_out(label, m, m, wanted, multiply);
    Guarded<Matrix> all;
    all.record = m;
    multiply(&all.record, &all.record, &all.record);
    all.check(label + ", all three one record", wanted);
}

TEST_CASE("KXM4Mult")
{
    const KXM4 a = {{{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}}};
    const KXM4 b = {{{2, 3, 5, 7}, {11, 13, 17, 19}, {23, 29, 31, 37}, {41, 43, 47, 53}}};
    check_two_in_out("the right factor acts first", a, b,
                     {{{257, 288, 320, 368},
                       {565, 640, 720, 832},
                       {873, 992, 1120, 1296},
                       {1181, 1344, 1520, 1760}}},
                     KXM4Mult);
    check_square(
        "square", a,
        {{{90, 100, 110, 120}, {202, 228, 254, 280}, {314, 356, 398, 440}, {426, 484, 542, 600}}},
        KXM4Mult);

    // Row 0: 8193*8191 - 8192*8192 = -1, which single products would make 0. Row 1: a sum of -0.
    const KXM4 cancels = {{{8193, -8192, 0, 0}, {-0.0f, -0.0f, -0.0f, -0.0f}, {}, {}}};
    const KXM4 with = {{{8191, 1, 1, 1}, {8192, 1, 1, 1}, {0, 1, 1, 1}, {0, 1, 1, 1}}};
    check_two_in_out("rounded once, sign of zero", cancels, with,
                     {{{-1, 1, 1, 1}, {-0.0f, -0.0f, -0.0f, -0.0f}, {}, {}}}, KXM4Mult);

    // Added from left to right; in any other order one of the rows differs.
    const float large = 0x1p60f;
    const KXM4 ordered = {{{large, 1, -large, 8},
                           {large, -large, 1, 2},
                           {1, large, -large, 2},
                           {-large, 1, 8, large}}};
    const KXM4 ones = {{{1, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}, {1, 1, 1, 1}}};
    check_two_in_out("order of the sum", ordered, ones,
                     {{{8, 8, 8, 8}, {3, 3, 3, 3}, {2, 2, 2, 2}, {0, 0, 0, 0}}}, KXM4Mult);
}

TEST_CASE("KXM3Mult")
{
    const KXM3 a = {{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}};
    const KXM3 b = {{{2, 3, 5}, {7, 11, 13}, {17, 19, 23}}};
    check_two_in_out("the right factor acts first", a, b,
                     {{{67, 82, 100}, {145, 181, 223}, {223, 280, 346}}}, KXM3Mult);
    check_square("square", a, {{{30, 36, 42}, {66, 81, 96}, {102, 126, 150}}}, KXM3Mult);
}

TEST_CASE("KXM43Mult writes nine elements and leaves seven")
{
    const KXM4 a = {{{1, 2, 3, 91}, {4, 5, 6, 92}, {7, 8, 9, 93}, {94, 95, 96, 97}}};
    const KXM4 b = {{{2, 3, 5, 71}, {7, 11, 13, 72}, {17, 19, 23, 73}, {74, 75, 76, 77}}};
    const float block[3][3] = {{67, 82, 100}, {145, 181, 223}, {223, 280, 346}};
    const auto block_over = [&block](KXM4 rest) {
        for (int r = 0; r < 3; ++r) {
            std::memcpy(rest.m[r], block[r], sizeof block[r]);
        }
        return rest;
    };
    Guarded<KXM4> apart, first, second;
    KXM43Mult(&a, &b, &apart.record);
    apart.check("apart: the markers stay", block_over(marked<KXM4>()));
    first.record = a;
    KXM43Mult(&first.record, &b, &first.record);
    first.check("out is a: the rest of a stays", block_over(a));
    second.record = b;
    KXM43Mult(&a, &second.record, &second.record);
    second.check("out is b: the rest of b stays", block_over(b));
}
