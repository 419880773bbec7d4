#include "support/rows.h"

#include <algorithm>
#include <vector>

using namespace test;

static const KXM4 counted4 = {{{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}}};
static const KXM3 counted3 = {{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}};

// Row 0 needs a double throughout, row 1 sums to -0, and the last row must not matter.
static const KXM4 delicate4 = {
    {{8193, -8192, 0, 0}, {-0.0f, -0.0f, -0.0f, -0.0f}, {1, 0, 0, 1}, {9, 9, 9, 9}}};
static const KXM3 delicate3 = {{{8193, -8192, 0}, {-0.0f, -0.0f, -0.0f}, {9, 9, 9}}};

// Added from left to right onto 1 1 1 1 the terms give 8, 3, 2, 0; in any other order one differs.
static constexpr float large = 0x1p60f;
static const KXM4 ordered4 = {
    {{large, 1, -large, 8}, {large, -large, 1, 2}, {1, large, -large, 2}, {-large, 1, 8, large}}};
static const KXM3 ordered3 = {{{large, 1, -large}, {large, -large, 1}, {1, -large, large}}};

/** Each row through the single form and through the array form with a count of 1. */
template <typename Matrix, typename Point>
static void check_forms(const std::string &label, const Matrix &m, const Point &p,
                        const Point &wanted, void (*one)(const Matrix *, const Point *, Point *),
                        void (*each)(const Matrix *, std::uint32_t, const Point *, Point *))
{
    rows_of(one)(label, m, p, wanted);
    rows_of(each)(label + ", array", m, 1, p, wanted);
}

TEST_CASE("One point")
{
    check_forms("P2I0", counted3, {10, 20}, {50, 140}, KXM3P2I0, KXM3NP2I0);
    check_forms("P2I1", counted3, {10, 20}, {53, 146}, KXM3P2I1, KXM3NP2I1);
    check_forms("P3I0", counted4, {10, 20, 30}, {140, 380, 620}, KXM4P3I0, KXM4NP3I0);
    check_forms("P3I1", counted4, {10, 20, 30}, {144, 388, 632}, KXM4P3I1, KXM4NP3I1);
    check_forms("P4", counted4, {10, 20, 30, 40}, {300, 700, 1100, 1500}, KXM4P4, KXM4NP4);

    check_forms("P2I0", delicate3, {8191, 8192}, {-1, -0.0f}, KXM3P2I0, KXM3NP2I0);
    check_forms("P2I1", delicate3, {8191, 8192}, {-1, -0.0f}, KXM3P2I1, KXM3NP2I1);
    check_forms("P3I0", delicate4, {8191, 8192, 1}, {-1, -0.0f, 8191}, KXM4P3I0, KXM4NP3I0);
    check_forms("P3I1", delicate4, {8191, 8192, 1}, {-1, -0.0f, 8192}, KXM4P3I1, KXM4NP3I1);
    check_forms("P4", delicate4, {8191, 8192, 1, 1}, {-1, -0.0f, 8192, 147465}, KXM4P4, KXM4NP4);

    // Identities are matrices like any other: a coordinate of -0 is added to 0.
    check_forms("P2I0, identity", unit3, {-0.0f, 1}, {0, 1}, KXM3P2I0, KXM3NP2I0);
    check_forms("P2I1, identity", unit3, {-0.0f, 1}, {0, 1}, KXM3P2I1, KXM3NP2I1);
    check_forms("P3I0, identity", unit4, {-0.0f, 1, 2}, {0, 1, 2}, KXM4P3I0, KXM4NP3I0);
    check_forms("P3I1, identity", unit4, {-0.0f, 1, 2}, {0, 1, 2}, KXM4P3I1, KXM4NP3I1);
    check_forms("P4, identity", unit4, {-0.0f, 1, 2, 1}, {0, 1, 2, 1}, KXM4P4, KXM4NP4);

    check_forms("P2I1, order", ordered3, {1, 1}, {0, 1}, KXM3P2I1, KXM3NP2I1);
    check_forms("P3I0, order", ordered4, {1, 1, 1}, {0, 1, 0}, KXM4P3I0, KXM4NP3I0);
    check_forms("P3I1, order", ordered4, {1, 1, 1}, {8, 3, 2}, KXM4P3I1, KXM4NP3I1);
    // These make the terms of the last row large, 1 and -large.
    check_forms("P3I0, order", ordered4, {large, 1 / large, 1}, {0x1p120f, 0x1p120f, 0}, KXM4P3I0,
                KXM4NP3I0);
    check_forms("P3I1, order", ordered4, {large, 1 / large, 1}, {0x1p120f, 0x1p120f, 2}, KXM4P3I1,
                KXM4NP3I1);
    check_forms("P4, order", ordered4, {1, 1, 1, 1}, {8, 3, 2, 0}, KXM4P4, KXM4NP4);
}

/** The same bits as point by point, and nothing after the count. */
template <typename Matrix, typename Point>
static void check_counts(void (*one)(const Matrix *, const Point *, Point *),
                         void (*each)(const Matrix *, std::uint32_t, const Point *, Point *))
{
    Random random;
    const auto m = random.record<Matrix>(3);
    for (const std::uint32_t count : array_counts()) {
        std::vector<Point> in(count + 1), apart(count + 1, marked<Point>());
        std::generate(in.begin(), in.end(), [&random] { return random.record<Point>(1000); });
        std::vector<Point> place = in, wanted = apart, wanted_in_place = in;
        for (std::uint32_t i = 0; i < count; ++i) {
            one(&m, &in[i], &wanted[i]);
            wanted_in_place[i] = wanted[i];
        }
        each(&m, count, in.data(), apart.data());
        each(&m, count, place.data(), place.data());
        check_same("count " + std::to_string(count), wanted, apart);
        check_same("in place, count " + std::to_string(count), wanted_in_place, place);
    }
}

TEST_CASE("Arrays")
{
    check_counts(KXM3P2I0, KXM3NP2I0);
    check_counts(KXM3P2I1, KXM3NP2I1);
    check_counts(KXM4P3I0, KXM4NP3I0);
    check_counts(KXM4P3I1, KXM4NP3I1);
    check_counts(KXM4P4, KXM4NP4);
}
