#include "support/check.h"

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
