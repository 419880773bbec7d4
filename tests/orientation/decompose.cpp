#include "support/rows.h"

using namespace test;

/** Each row is there for the roundings and comparisons that it names. */
TEST_CASE("KXM4Decompose to the bit")
{
    constexpr float t = tolerance, b = below_tolerance, q = quarter_turn, h = half_turn;
    const auto check = [](const char *label, const KXM4 &m, const KXComponents &wanted) {
        rows_of(KXM4Decompose)(label, m, 0, wanted);
    };
    check(
        "every element, dot product and row single; lengths not; Q and not its transpose; a mirror",
        {{{8, -3, -7, -4}, {8, 4, -2, -2}, {-6, -7, 7, 2}, {-0.375f, 0.875f, -0.125f, -3}}},
        {-3.68178701f, -2.31648874f, -2.03232527f, 0.859829903f, -1.12854588f, -1.1537503f,
         -0.338849276f, -0.686391771f, 0.358770698f, 1.33333337f, 0.666666687f, -0.666666687f,
         0.384081215f, -0.07318376f, -0.0475427508f, 1});
    check("the third length not rounded; the last row no part of the determinant; r3 of 0",
          {{{-4, 4, -9, 0}, {-4, 2, 4, 6}, {-7, 8, -4, 3}, {-4, 4, -9, 0}}},
          {10.630146f, 5.89284849f, 2.33071065f, -0.19156523f, 3.87474942f, 2.78092527f,
           -1.32844317f, -1.00965583f, -2.3561945f, 0, 6, 3, -2.53424668f, -3.28767133f,
           0.10958904f, 0});
    check("the header's example: a row of length 2",
          {{{0, -2, 0, 0}, {1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}},
          {2, 1, 1, 0, 0, 0, -0.0f, 0, q, 0, 0, 0, 0, 0, 0, 1});
    check("m33 at the tolerance; perspective judged after the division",
          {{{-t, 0, 0, 0}, {0, -t, 0, 0}, {0, 0, -t, 0}, {-t / 2, 0, 0, -t}}},
          {1, 1, 1, 0, 0, 0, -0.0f, -0.0f, 0, -0.0f, -0.0f, -0.0f, 0.5f, 0, 0, 1});
    check("the last row just below the tolerance, all of it",
          {{{1, 0, 0, 4}, {0, 1, 0, 5}, {0, 0, 1, 6}, {b, -b, b, -b}}},
          {1, 1, 1, 0, 0, 0, -0.0f, 0, -0.0f, 4, 5, 6, 0, 0, 0, 1});
    check(
        "a quarter turn about Y; m31 at the tolerance",
        {{{0, 0, 1, 0}, {0.6f, 0.8f, 0, 0}, {-0.8f, 0.6f, 0, 0}, {0, -t, 0, 1}}},
        {1, 1, 1, 0, 0, 0, 0.643501103f, q, 0, 0, 0, 0, -6.00000021e-07f, -8.00000009e-07f, 0, 1});
    check(
        "a quarter turn about Y back; m32 at the tolerance",
        {{{0, 0, -1, 0}, {0.6f, 0.8f, 0, 0}, {0.8f, -0.6f, 0, 0}, {0, 0, -t, 1}}},
        {1, 1, 1, 0, 0, 0, -0.643501103f, -q, 0, 0, 0, 0, -8.00000009e-07f, 6.00000021e-07f, 0, 1});
    check(
        "a single short of a quarter turn; m30 at the tolerance",
        {{{-0x1.6a09e6p-12f, 0, 0x1.fffffep-1f, 0},
          {0, 1, 0, 0},
          {-0x1.fffffep-1f, 0, -0x1.6a09e6p-12f, 0},
          {-t, 0, 0, 1}}},
        {1, 1, 1, 0, 0, 0, -h, 1.57045102f, -h, 0, 0, 0, 0x1.7ba004p-32f, 0, -0x1.0c6f78p-20f, 1});
    check(
        "an arcsine; neither it nor an arctangent in single",
        {{{-1.6f, 3.4f, 1.8f, 0}, {-3.6f, 9.5f, -0.7f, 0}, {-4.1f, -6.8f, -7.1f, 0}, {0, 0, 0, 1}}},
        {4.16653347f, 5.06860733f, 7.22417974f, 1.7425462f, -0.97475785f, 0.473157674f, 1.72684121f,
         0.446724534f, -2.01063895f, 0, 0, 0, 0, 0, 0, 1});
    check("m31 alone at the tolerance", {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, t, 0, 1}}},
          {1, 1, 1, 0, 0, 0, -0.0f, 0, -0.0f, 0, 0, 0, 0, t, 0, 1});
    check("dot products from left to right",
          {{{-2, -2, 3, 0}, {4, -8, 3, 0}, {-6, -6, 3, 0}, {0, 0, 0, 1}}},
          {-4.12310553f, -8.48528099f, -4.11596632f, 0.485912651f, 1.94454348f, -3.60150729e-11f,
           7.65320377e-11f, -0.814826965f, -0.785398185f, 0, 0, 0, 0, 0, 0, 1});
    check("a mirror whose triple product no single holds",
          {{{-0x1p-55f, 0, 0, 0}, {0, 0x1p-55f, 0, 0}, {0, 0, 0x1p-55f, 0}, {0, 0, 0, 1}}},
          {-0x1p-55f, -0x1p-55f, -0x1p-55f, 0, 0, 0, h, -0.0f, 0, 0, 0, 0, 0, 0, 0, 1});
    check("rows too short to be made unit; a triple product of 0 is no mirror",
          {{{-0x1p-76f, 0, 0, 0}, {0, 0x1p-76f, 0, 0}, {0, 0, 0x1p-76f, 0}, {0, 0, 0, 1}}},
          {0x1p-76f, 0x1p-76f, 0x1p-76f, 0, 0, 0, -0.0f, 0, -h, 0, 0, 0, 0, 0, 0, 1});
    rows_of(KXM4Decompose)("perspective, and a block that can't be inverted",
                           {{{1, 1, 0x1.fffff6p-1f, 0},
                             {0x1.fffffep-1f, 1, 1, 0},
                             {0x1.fffffcp-1f, 0x1.fffffep-1f, 1, 0},
                             {0.5f, 0, 0, 1}}},
                           1, marked<KXComponents>());
    rows_of(KXM4Decompose)("rows that depend on each other",
                           {{{7, -3, 4, 0}, {4, 0, 4, 0}, {25, -9, 16, 0}, {0, 0, 0, 1}}}, 1,
                           marked<KXComponents>());
}

TEST_CASE("KXM4Compose to the bit")
{
    constexpr float q = quarter_turn;
    const auto check = rows_of(KXM4Compose);
    check("sines, cosines and products single; shear and perspective not read",
          {0, 4, -3, -2, 2, -7, 0.125f, -2.5f, 0.375f, -7, 0, -9, -7, -5, 0, -4},
          {{{0, 0, 0, -7},
            {1.17594218f, 3.80230665f, 0.399529427f, 0},
            {-1.79460835f, 0.304448456f, 2.3846786f, -9},
            {0, 0, 0, 1}}});
    constexpr float below = 0x1.fffffp-1f, above = 0x1.000008p+0f;
    check("no angles and almost no scale; a translation of -0 is added to zeros",
          {below, 1, above, 0, 0, 0, 0, 0, 0, -0.0f, 6, 7, 0, 0, 0, 1},
          {{{below, 0, 0, 0}, {0, 1, 0, 6}, {0, 0, above, 7}, {0, 0, 0, 1}}});
    check("nothing snaps to 0", {-1, 2, 3, 0, 0, 0, q, q, q, 1, 2, 3, 0, 0, 0, 0},
          {{{-0x1.135bdap-49f, -0x1.777a5cp-25f, -1, 1},
            {-0x1.777a5cp-23f, -2, 0x1.777a5cp-24f, 2},
            {3, -0x1.199bc4p-22f, 0x1.9d09c8p-48f, 3},
            {0, 0, 0, 1}}});
}

TEST_CASE("The forms for the plane")
{
    const auto check = rows_of(KXM3Decompose);
    check("a mirror turns z too; the last row is not read",
          {{{-1, 0, 4}, {0.5f, 1, 5}, {0.3f, 0.4f, 2}}}, 0,
          {-1, -1, -1, -0.5f, 0, 0, half_turn, -0.0f, 0, 4, 5, 0, 0, 0, 0, 1});
    check("singular", {{{1, 2, 0}, {2, 4, 0}, {0, 0, 1}}}, 1, marked<KXComponents>());
    constexpr float x = not_a_number;
    rows_of(KXM3Compose)(
        "five fields are read", {2, 3, x, x, x, x, x, x, 0.75f, 4, 5, x, x, x, x, x},
        {{{1.46337771f, -1.36327755f, 4}, {2.04491639f, 2.19506645f, 5}, {0, 0, 1}}});
}
