#include "support/rows.h"

using namespace test;

TEST_CASE("KXInterpolate")
{
    const auto check = rows_of(KXInterpolate);
    check("half way", 0, 0, 10, 100, 5, 50);
    check("before", 0, 0, 10, 100, -1, 0);
    check("at the beginning", 0, 0, 10, 100, 0, 0);
    check("at the end, where the formula is off by a bit", 0.2f, 1.7f, 8.1f, 6.8f, 8.1f, 6.8f);
    check("after", 0, 0, 10, 100, 11, 100);
    check("neither from 0", 1, 10, 3, 20, 2.5f, 17.5);
    check("no length, before", 5, 1, 5, 2, 4, 1);
    check("no length, there", 5, 1, 5, 2, 5, 1);
    check("no length, after", 5, 1, 5, 2, 6, 2);
    check("reversed, between", 10, 0, 0, 100, 5, 0);
    check("reversed, after", 10, 0, 0, 100, 11, 100);
    check("the product first, then the quotient", 1.7f, 6.2f, 7.8f, 9.9f, 3.2f, 7.10983580660032);
    check("no product is fused with a sum", 8, 6.2f, 11.1f, -7.6f, 8.93f, 2.0599990460181692);
    check("between two values of -0", 0, -0.0f, 10, -0.0f, 5, 0);
    check("differences stay wide", -1, 0, 0x1p24f, 0x1p24f, 0, 0.9999999403953588);
    // A NaN is on neither side: the one way to a division by an interval of no length.
    const double nowhere = KXInterpolate(5, 1, 5, 2, not_a_number);
    CHECK(nowhere != nowhere);
}

TEST_CASE("KXDiffTime")
{
    const auto check = rows_of(KXDiffTime);
    check("two seconds", 5000, 3000, 2.0000000949949026);
    check("exchanged", 3000, 5000, -2.0000000949949026);
    check("across the wrap", 5, 0xffffffffU, 0.006000000284984708);
    check("half the range is negative", 0x80000000U, 0, -2147483.75);
    check("one less is not", 0x7fffffffU, 0, 2147483.749);
}

TEST_CASE("Bit scans against a walk over the bits")
{
    const auto check = [](std::uint32_t v) {
        std::uint32_t count = 0, lowest = 32, highest = 0;
        for (std::uint32_t i = 0; i < 32; ++i) {
            if ((v >> i & 1U) != 0) {
                ++count;
                lowest = lowest == 32 ? i : lowest;
                highest = i;
            }
        }
        CHECK_MESSAGE(KXBitCount(v) == count, v);
        CHECK_MESSAGE(KXLSB(v) == lowest, v);
        CHECK_MESSAGE(KXMSB(v) == highest, v);
    };
    for (const std::uint32_t v : {0U, 0xf0f0U, 0xffffffffU}) {
        check(v);
    }
    // Every pair of bits, every run of bits, and words of all kinds.
    std::uint32_t word = 1;
    for (std::uint32_t i = 0; i < 32; ++i) {
        for (std::uint32_t j = 0; j < 32; ++j) {
            check(1U << i | 1U << j);
            check(0xffffffffU >> i << j);
            check(word = word * 1664525U + 1013904223U);
        }
    }
}
