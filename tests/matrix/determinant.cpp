#include "support/check.h"

using namespace test;

TEST_CASE("KXM4Determinant")
{
    struct Row {
        const char *label;
        KXM4 m;
        double determinant;
    };
    // The corner minor of each block below is 4097*4097 - 1*8192 = 16777217, which a single rounds
    // to 16777216. Each row brings out one minor alone.
    const Row rows[] = {
        {"unit", {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, 1},
        {"A is single",
         {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 4097, 1}, {0, 0, 8192, 4097}}},
         16777216},
        {"B is single",
         {{{1, 0, 0, 0}, {0, 0, 1, 0}, {0, 4097, 0, 1}, {0, 8192, 0, 4097}}},
         -16777216},
        {"C is single",
         {{{1, 0, 0, 0}, {0, 0, 0, 1}, {0, 4097, 1, 0}, {0, 8192, 4097, 0}}},
         16777216},
        {"D is single",
         {{{0, 1, 0, 0}, {0, 0, 1, 0}, {4097, 0, 0, 1}, {8192, 0, 0, 4097}}},
         16777216},
        {"E is single",
         {{{0, 1, 0, 0}, {0, 0, 0, 1}, {4097, 0, 1, 0}, {8192, 0, 4097, 0}}},
         -16777216},
        {"F is single",
         {{{0, 0, 1, 0}, {0, 0, 0, 1}, {4097, 1, 0, 0}, {8192, 4097, 0, 0}}},
         16777216},
        {"all sixteen elements",
         {{{2, 3, 5, 7}, {11, 13, 17, 19}, {23, 29, 31, 37}, {41, 43, 47, 53}}},
         880},
        {"the cofactors stay wide",
         {{{8193, 8192, 0, 0}, {8192, 8191, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}},
         -1},
    };
    for (const Row &row : rows) {
        check_same(row.label, row.determinant, KXM4Determinant(&row.m));
    }
}

TEST_CASE("KXM3Determinant")
{
    struct Row {
        const char *label;
        KXM3 m;
        double determinant;
    };
    const Row rows[] = {
        {"unit", {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, 1},
        {"no minor is single: 0", {{{1, 0, 0}, {0, 4097, 1}, {0, 8192, 4097}}}, 16777217},
        {"no minor is single: 1", {{{0, 1, 0}, {4097, 0, 1}, {8192, 0, 4097}}}, -16777217},
        {"no minor is single: 2", {{{0, 0, 1}, {4097, 1, 0}, {8192, 4097, 0}}}, 16777217},
        {"all nine elements", {{{2, 3, 5}, {7, 11, 13}, {17, 19, 23}}}, -78},
    };
    for (const Row &row : rows) {
        check_same(row.label, row.determinant, KXM3Determinant(&row.m));
    }
}

TEST_CASE("KXM4IsOrthogonal")
{
    struct Row {
        const char *label;
        KXM4 m;
        std::int32_t verdict;
    };
    const auto unit_with = [](int r, int c, float value) {
        KXM4 m = {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}};
        m.m[r][c] = value;
        return m;
    };
    const Row rows[] = {
        {"unit", unit_with(0, 0, 1), 1},
        {"scaled", {{{2, 0, 0, 0}, {0, 3, 0, 0}, {0, 0, 4, 0}, {0, 0, 0, 1}}}, 1},
        {"mirrored", unit_with(0, 0, -1), 1},
        {"translated", {{{1, 0, 0, 7}, {0, 1, 0, 8}, {0, 0, 1, 9}, {0, 0, 0, 1}}}, 1},
        {"rows 0 and 1 swapped", {{{0, 1, 0, 0}, {1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}}, 1},
        {"the last element counts", unit_with(3, 3, 2), 0},
        {"a small shear", unit_with(0, 1, 0.03f), 1},
        {"a larger shear", unit_with(0, 1, 0.032f), 0},
        {"ratio too high", unit_with(3, 3, 1.0006f), 0},
        {"ratio just low enough", unit_with(3, 3, 1.0004f), 1},
        {"short column 0 still counts", unit_with(0, 0, 0.001f), 1},
        {"column 0 too short", unit_with(0, 0, 0.00099f), 0},
        {"column 1 too short", unit_with(1, 1, 0.00099f), 0},
        {"column 2 too short", unit_with(2, 2, 0.00099f), 0},
        {"a column of zeros", unit_with(1, 1, 0), 0},
    };
    for (const Row &row : rows) {
        CHECK_MESSAGE(KXM4IsOrthogonal(&row.m) == row.verdict, row.label);
    }
}
