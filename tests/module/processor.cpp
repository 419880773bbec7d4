/*
 * Each copy is chosen only where the processor has every feature that the copy was compiled for. No
 * processor or emulator has all the combinations, so the features are those that the test writes
 * into the compiler's cache of them.
 */
#include "simd/dispatch.h"

#include <doctest/doctest.h>

KX_DECLARE_COPIES(int copy();)

namespace kx
{
int baseline::copy()
{
    return 0;
}
int avx2::copy()
{
    return 2;
}
int avx512::copy()
{
    return 512;
}
} // namespace kx

/**
 * What __builtin_cpu_supports reads, filled by the compiler's runtime when a program is loaded: the
 * vendor, type and subtype, and the features, a bit each.
 */
extern unsigned processor[4] __asm__("__cpu_model") __attribute__((visibility("hidden")));

static int chosen_with(unsigned features)
{
    const unsigned found = processor[3];
    processor[3] = features;
    __asm__ volatile("" : : : "memory"); // the compiler takes the cache for constant
    const int chosen = KX_DISPATCH(copy());
    __asm__ volatile("" : : : "memory");
    processor[3] = found;
    return chosen;
}

TEST_CASE("Each feature is asked for")
{
    constexpr unsigned has_avx2 = 1U << 10, has_fma = 1U << 14, has_avx512f = 1U << 15,
                       has_avx512vl = 1U << 20;
    constexpr unsigned all = has_avx2 | has_fma | has_avx512f | has_avx512vl;
    CHECK(chosen_with(all) == 512);
    CHECK(chosen_with(all & ~has_avx512f) == 2);
    CHECK(chosen_with(all & ~has_avx512vl) == 2);
    CHECK(chosen_with(all & ~has_fma) == 0);
    CHECK(chosen_with(all & ~has_avx2) == 0);
    CHECK(chosen_with(has_avx2 | has_fma) == 2);
    CHECK(chosen_with(has_avx2) == 0);
    CHECK(chosen_with(has_fma) == 0);
    CHECK(chosen_with(0) == 0);
}
