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
 * vendor, type and subtype, and the features, a bit each. Its address is taken in assembly: clang
 * declares the variable itself, and 14 crashes now and then where the source does so too.
 */
static unsigned *processor()
{
    unsigned *address;
    __asm__("lea __cpu_model(%%rip), %0" : "=r"(address));
    return address;
}

static int chosen_with(unsigned features)
{
    unsigned &known = processor()[3];
    const unsigned found = known;
    known = features;
    __asm__ volatile("" : : : "memory"); // the compiler takes the cache for constant
    const int chosen = KX_DISPATCH(copy());
    __asm__ volatile("" : : : "memory");
    known = found;
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
