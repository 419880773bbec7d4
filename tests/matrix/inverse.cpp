#include "support/rows.h"

#include <cmath>

using namespace test;

using Elements = std::array<float, 16>;

static KXM4 matrix(const Elements &elements)
{
    return bits_as<KXM4>(elements);
}

TEST_CASE("KXM4Inverse: every rounding of both methods, every exchange")
{
    const auto check = [](const char *label, const Elements &m, const Elements &inverse) {
        rows_of(KXM4Inverse)(label, matrix(m), 0, matrix(inverse));
    };
    check(
        "affine: each single, and each that is not",
        {1.5f, -1.5f, -1.8f, -1.2f, 1.9f, -1.8f, -2.2f, 3.4f, -3.1f, 3.4f, 4.9f, 2.4f, 0, 0, 0, 1},
        {-9.50350666f, 8.72337437f, 0.425532162f, -42.0849609f, -17.6595135f, 12.5531511f,
         -0.851059377f, -61.8295898f, 6.24111605f, -3.19148016f, 1.06382632f, 15.7871895f, 0, 0, 0,
         1});
    check("affine: the translation takes the stored block",
          {2.2f, -2.3f, 4.7f, 0.3f, -1, 2.8f, 3.6f, 4.4f, 2.1f, 4, -2.8f, 4.1f, 0, 0, 0, 1},
          {0.209195569f, -0.116261572f, 0.201670557f, -0.378057003f, -0.0447738692f, 0.1507826f,
           0.118707202f, -1.13671076f, 0.092934005f, 0.128207549f, -0.0363082252f, -0.443129718f, 0,
           0, 0, 1});
    check("affine: negated differences", {-1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1},
          {-1, 0, -0.0f, -0.0f, 0, 1, -0.0f, -0.0f, -0.0f, -0.0f, 1, -0.0f, 0, 0, 0, 1});
    check("unit: seven zeros are negative", {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1},
          {1, -0.0f, 0, -0.0f, -0.0f, 1, -0.0f, -0.0f, 0, -0.0f, 1, -0.0f, 0, 0, 0, 1});
    check("general: no exchange",
          {0.9f, -4.9f, 3.3f, 3.5f, -3.8f, 2, -4.4f, -3.9f, -3.3f, -3.3f, 2, 4.1f, 3.4f, -3.4f,
           -3.6f, 2},
          {0.00598036638f, -0.0999985784f, -0.127867252f, 0.0566650517f, -0.357470334f,
           -0.20179753f, 0.120169245f, -0.014279048f, 0.146410853f, -0.0305317901f, -0.0804070011f,
           -0.150921673f, -0.354326487f, -0.228015453f, 0.276929379f, 0.107735895f});
    check("general: signs of zeros", {-0.8f, -2, -1, 0, 3, 0, 3, 1, 0, 0, 0, -1, 0, 3, 0, 3},
          {5, 1.66666663f, 11.666667f, 3.33333325f, 1.49011612e-08f, -9.93410687e-10f, 1,
           0.333333343f, -5, -1.33333337f, -11.333333f, -3.33333325f, -0.0f, -0.0f, -1, -0.0f});
    check("general: signs of zeros, the first pivot from column 2",
          {0, 0, -1.8f, -4.5f, -1.8f, 0, -4.5f, 2.2f, -0.7f, 0, -2.8f, 2.5f, 0, 1.3f, 0, 0},
          {0.367960632f, -1.23617446f, 1.75016272f, 0, 0, 0, 0, 0.769230783f, -0.213981062f,
           0.227716327f, -0.585556269f, 0, -0.136629805f, -0.0910865366f, 0.234222516f, 0});
    check("general: signs of zeros, the first pivot from column 1",
          {0, 1, -1, 0.0003f, 0, -1, -4.7f, -1, 1, 0, 0, 3.4f, -4.7f, 0, 0, 0.0003f},
          {0, 0, 1.87892219e-05f, -0.212761968f, 0.824561417f, -0.175438598f, -0.0516713746f,
           -0.01099391f, -0.175438598f, -0.175438598f, -0.0515831374f, -0.0109751364f, 0, 0,
           0.294112116f, 0.0625770465f});
    check("general: infinite pivots",
          {0, 0, infinity, 0, 0, infinity, 0, -1.5f, 1, 0, 0, 1, -2, 0, -3.4f, 0},
          {0, 0, 0, -0.5f, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0.5f});
    check("general: the wide diagonal meets the bound, between the single 1e-6 and the decimal",
          {1, 1.127e-06f, 0, 0, 1e-07f, 0x1.0c6f7cp-20f, 0, 0, 0, 0, 1, 0, 0.5f, 0, 0, 1},
          {1.00000012f, -1.12699997f, 0, 0, -0.100000001f, 1000000, 0, 0, 0, 0, 1, 0, -0.50000006f,
           0.563499987f, 0, 1});
    check("general: a wide diagonal exchanged",
          {1, 0.0007f, -3, 1, 0.0004f, 0, 4, -3, 0, 0, -3, 0, -3, 3, 3, -1},
          {0.999167323f, 0.333133519f, -0.555222452f, -0.000233139028f, 0.999211729f, 0.222037226f,
           -0.370061964f, 0.3331002f, -3.53155656e-12f, 1.48966919e-08f, -0.333333313f,
           6.00445722e-16f, 0.000133222304f, -0.333288908f, -0.444518447f, -3.10852037e-08f});
    check("general: the same a stage later",
          {1, 0, 0, 1, 0, 1, 0.0002f, -1, 0, 0.0002f, 0, 0, 1, 4, 4, 2},
          {1.00004995f, 0.999949992f, -4998.75f, -4.99974922e-05f, 3.48148528e-12f, 2.52586432e-08f,
           5000, -3.48148528e-12f, -0.249987498f, 0.249987468f, -6249.6875f, 0.249987498f,
           -4.99974922e-05f, -0.999949992f, 4998.75f, 4.99974922e-05f});
    check("general: pivot from column 1 of row 0",
          {0, -0.5f, 0.1f, 0, -3.9f, 0.9f, 0, 0, 4.6f, 0, 0.3f, 1.4f, 0.3f, 0, 0, 0},
          {1.89284961e-08f, 8.03230549e-09f, 3.62460639e-09f, 3.33333302f, 1.51293776e-07f,
           1.11111116f, 1.74518107e-08f, 14.4444447f, 10.000001f, 5.5555563f, -6.73908289e-08f,
           72.222229f, -2.14285779f, -1.19047642f, 0.714285731f, -26.4285736f});
    check("general: pivot from column 2 of row 0",
          {0, 0, -1.6f, 0, 0, 4.3f, 0, 4.2f, 2.5f, 1.6f, 4.1f, -4.8f, 0.5f, 0, -2.5f, 0},
          {-3.12499976f, -8.87138896e-09f, 2.38418583e-08f, 1.99999988f, 1.59265339f, 0.175438598f,
           0.153508767f, -0.767543793f, -0.625f, 0, 0, 0, -1.63057387f, 0.0584795289f,
           -0.157163739f, 0.785818696f});
    check("general: pivot from column 3 of row 0",
          {0, 0, 0, -2.5f, 3.3f, 2.1f, 0, 0, 2.5f, 2.8f, -0.4f, 0, 0.5f, -1.2f, -4.5f, -2.2f},
          {-0.0370359197f, 0.655343413f, -0.473470569f, 0.0420862734f, 0.0581993088f, -0.553634942f,
           0.74402523f, -0.0661355779f, 0.175920635f, 0.220452085f, -0.25101468f, -0.199909806f,
           -0.400000006f, 0, -0.0f, 0});
    check("general: pivot from column 2 of row 1",
          {3.8f, 0, -1.3f, 0, 3.4f, 0, -3.5f, -2.7f, 4.4f, 3.9f, -3.9f, 4.2f, 0.5f, 0, -2.3f, 4.4f},
          {0.354756624f, -0.0939013362f, 0, -0.0576212779f, -0.239800274f, -0.0255168732f,
           0.256410241f, -0.260413319f, 0.267750174f, -0.27448085f, 0, -0.168431416f, 0.0996470526f,
           -0.132808f, 0, 0.145776898f});
    check("general: pivot from column 3 of row 1",
          {3, 3, 0, 0, -2, -2, 0, 3, 0, -4.7f, 0, 0, 1, 0.9f, -1, 0},
          {0.333333343f, 0, 0.212765962f, -0.0f, 0, 0, -0.212765962f, -0.0f, 0.333333343f, 0,
           0.0212766081f, -1, 0.222222239f, 0.333333343f, 4.22727986e-09f, -0.0f});
    check("general: pivot from column 3 of row 2",
          {-3.7f, 1.7f, 0, 3.5f, -2, 3.5f, 4.4f, 2, 0, 0, 0, 4.7f, -2.1f, 0, 0, 0},
          {-1.47488421e-08f, 1.06102505e-08f, 3.44588109e-08f, -0.476190448f, 0.588235259f,
           2.65990536e-08f, -0.438047498f, -1.0364145f, -0.467914432f, 0.227272719f, 0.251735121f,
           0.607970476f, 0, 0, 0.212765962f, 0});
    // Nearly singular blocks, where the determinant is what is left of its terms.
    check("affine: order of the determinant's terms, none rounded: 1",
          {-7.2f, -4.4f, 7.2f, 0, -3, -9.7f, -6.9f, 0, 11.4f, -0.8999996f, -21.3f, 0, 0, 0, 0, 1},
          {-14438274, 7219137, -7219137, -0.0f, 10271060, -5135529.5f, 5135530, -0.0f, -8161515,
           4080757.5f, -4080757.5f, -0.0f, 0, 0, 0, 1});
    check("affine: order of the determinant's terms, none rounded: 2",
          {5.1f, 7.1f, 3.8f, 0, 3, 8, 1.7f, 0, 8.55f, 19.55f, 5.3f, 0, 0, 0, 0, 1},
          {-4085101.75f, -16340404, 8170202.5f, -0.0f, 608419.312f, 2433677.5f, -1216838.62f, -0.0f,
           4345854.5f, 17383408, -8691705, -0.0f, 0, 0, 0, 1});
    check("affine: order of the determinant's terms, none rounded: 3",
          {0.5f, -2.2f, -0.6f, 0x1p+30f, 6.4f, -8.9f, 3.6f, 1, -11.8f, 13.4f, -8.4f, 1, 0, 0, 0, 1},
          {166019280, -166019296, -83009648, -1.78261845e+17f, 70614536, -70614544, -35307272,
           -7.58217807e+16f, -120570568, 120570584, 60285292, 1.29461662e+17f, 0, 0, 0, 1});
    check("affine: order of the translation's terms, in each row",
          {0x1.6cccccp+2f, 0x1.8p+2f, 0x1.99999ap+2f, -0x1.f33334p+2f, -0x1.0cccccp+3f,
           0x1.333334p+0f, 0x1.333334p+2f, -0x1.4cccccp+2f, -0x1.24cccap+5f, -0x1.0cccccp+3f,
           0x1.9999ap+0f, 0x1.fffffcp-21f, 0, 0, 0, 1},
          {685123.25f, -1027684.88f, 342561.656f, 9.14242904e-09f, -2631495.75f, 3947243.75f,
           -1315748, 0.649999917f, 1856839.5f, -2785259.25f, 928419.812f, 4.59444678e-08f, 0, 0, 0,
           1});
    check("affine: order of the translation's terms",
          {-6.8f, -1.7f, 6.6f, 0x1p+30f, 1, -4, 4, 1, -6.3f, -3.7f, 8.6f, 0x1p+30f, 0, 0, 0, 1},
          {-1908272.12f, -954135.875f, 1908271.88f, 269389600, -3290795.5f, -1645398.12f,
           3290795.5f, 1645398, -2813727.5f, -1406863.75f, 2813727.5f, 1406864, 0, 0, 0, 1});
    check("general: an exchange in every stage", {0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 1, 0, 0, 0},
          {0, 0, 0, 1, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0});
}

static const KXM4 untouched = marked<KXM4>();

TEST_CASE("The last row chooses the method")
{
    const auto check = rows_of(KXM4Inverse);
    // A block of zeros distinguishes them: affine leaves out as it was, general stores the unit
    // matrix.
    const auto zero_block_with = [](int c, float value) {
        KXM4 m = {};
        m.m[3][3] = 1;
        m.m[3][c] = value;
        return m;
    };
    for (int c = 0; c < 3; ++c) {
        for (const float sign : {1.0f, -1.0f}) {
            check("at the tolerance", zero_block_with(c, sign * tolerance), 1, unit4);
            check("below it", zero_block_with(c, sign * below_tolerance), 1, untouched);
        }
        check("a NaN", zero_block_with(c, not_a_number), 1, untouched);
        check("1", zero_block_with(c, 1), 1, unit4);
        check("next to 1", zero_block_with(c, 0x1.000002p+0f), 1, unit4);
    }
    for (const float sign : {1.0f, -1.0f}) {
        check("m33 off by 2^-19", zero_block_with(3, 1 + sign * 0x1p-19f), 1, unit4);
        check("m33 off by 2^-20", zero_block_with(3, 1 + sign * 0x1p-20f), 1, untouched);
    }
    check("m33 of 0", zero_block_with(3, 0), 1, unit4);
    KXM4 opposite = zero_block_with(0, 0.5f);
    opposite.m[3][1] = -0.5f;
    check("two that cancel", opposite, 1, unit4);
    check("m33 a NaN", zero_block_with(3, not_a_number), 1, untouched);
    // What the last row held plays no part in an affine inverse.
    check("small values below",
          matrix({2, 0, 0, 3, 0, 4, 0, 5, 0, 0, 8, 7, 9e-07f, -9e-07f, not_a_number, 1 + 0x1p-20f}),
          0,
          matrix({0.5f, -0.0f, 0, -1.5f, -0.0f, 0.25f, -0.0f, -1.25f, 0, -0.0f, 0.125f, -0.875f, 0,
                  0, 0, 1}));
}

TEST_CASE("What counts as singular")
{
    const auto check = rows_of(KXM4Inverse);
    for (int i = 0; i < 9; ++i) {
        KXM4 m = unit4;
        m.m[i / 3][i % 3] = not_a_number;
        check("a NaN in the block", m, 1, untouched);
    }
    check("rows that depend on each other",
          matrix({1, 2, 3, 0, 4, 5, 6, 0, 7, 8, 9, 0, 0, 0, 0, 1}), 1, untouched);
    const float q = 0x1p-24f;
    check("a determinant that is almost 0",
          matrix({1, 1, 1 - 5 * q, 0, 1 - q, 1, 1, 0, 1 - 2 * q, 1 - q, 1, 0, 0, 0, 0, 1}), 1,
          untouched);
    check("a negative term that almost cancels a positive one",
          matrix({1.14809394f, 0, 0, 0, 0, 1, 1.2321099f, 0, 0, 1.10250688f, 1.35840964f, 0, 0, 0,
                  0, 1}),
          1, untouched);
    check("a determinant that no single holds",
          matrix({1e-17f, 0, 0, 0, 0, 1e-17f, 0, 0, 0, 0, 1e-17f, 0, 0, 0, 0, 1}), 1, untouched);

    const auto status = [](const Elements &elements) {
        const KXM4 m = matrix(elements);
        KXM4 out;
        return KXM4Inverse(&m, &out);
    };
    CHECK(status({1e-07f, 0, 0, 0, 0, 1e-07f, 0, 0, 0, 0, 1e-07f, 0, 0, 0, 0, 1}) == 0);
    CHECK(status({1e-07f, 0, 0, 0, 0, 1e-07f, 0, 0, 0, 0, 1e-07f, 0, 0.5f, 0, 0, 1}) == 1);
    CHECK(status({1e-12f, 0, 0, 0, 0, 1e12f, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1}) == 0);
    // |D / (pos - neg)| is 1e-15 itself: 8 / 7999999999999999.
    CHECK(status({0x1.4f0296p-21f, 37.1921883f, 37.1921883f, 0, 8388925, 1, 0, 0, 0, 12820411,
                  12820411, 0, 0, 0, 0, 1}) == 0);
    const KXM3 block = {
        {{0x1.4f0296p-21f, 37.1921883f, 37.1921883f}, {8388925, 1, 0}, {0, 12820411, 12820411}}};
    KXM3 block_inverse;
    CHECK(KXM3Inverse(&block, &block_inverse) == 0);
    // The general method refuses a pivot equal to the tolerance, in every stage.
    for (int i = 0; i < 4; ++i) {
        Elements m = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 2};
        m[static_cast<std::size_t>(5 * i)] = tolerance;
        CHECK_MESSAGE(status(m) == 1, "stage ", i);
        m[static_cast<std::size_t>(5 * i)] = -2 * tolerance;
        CHECK_MESSAGE(status(m) == 0, "stage ", i);
    }
    CHECK(status({1, 0, 0, 0, 0, 0, 0, 1e-07f, 0, 0, 1, 0, 0, 1, 0, 2}) ==
          1); // nor is there another in its row
    CHECK(status({not_a_number, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 2}) ==
          1); // a NaN is no pivot
}

TEST_CASE("KXM4Inverse undoes a matrix")
{
    Random random;
    for (int i = 0; i < 5000; ++i) {
        auto m = random.record<KXM4>(1);
        for (int k = 0; k < 4; ++k) {
            m.m[k][k] += 4; // far from singular
            m.m[3][k] = i % 2 == 0 ? unit4.m[3][k] : m.m[3][k];
        }
        KXM4 inverse, both;
        CHECK(KXM4Inverse(&m, &inverse) == 0);
        KXM4Mult(&m, &inverse, &both);
        for (int k = 0; k < 16; ++k) {
            CHECK(std::fabs(both.m[k / 4][k % 4] - unit4.m[k / 4][k % 4]) < 1e-6f);
        }
    }
}

// 8192*8192 - 8193*8191 is 1, and in singles 0.
TEST_CASE("Of the nine cofactors only the first is a difference of singles")
{
    for (int i = 0; i < 9; ++i) {
        const int r = i / 3, c = i % 3, next_r = (r + 1) % 3, next_c = (c + 1) % 3;
        KXM3 m = {}, inverse;
        m.m[r][c] = m.m[next_r][next_c] = 8192;
        m.m[r][next_c] = 8193;
        m.m[next_r][c] = 8191;
        m.m[(r + 2) % 3][(c + 2) % 3] = 1;
        CHECK(KXM3Inverse(&m, &inverse) == 0);
        const bool is_first = r == 1 && c == 1;
        CHECK(inverse.m[(c + 2) % 3][(r + 2) % 3] == (is_first ? 0.0f : 1.0f));
    }
}

TEST_CASE("KXM3Inverse")
{
    const auto check = rows_of(KXM3Inverse);
    check("a translation, and a determinant far below the tolerance",
          {{{0x1p-12f, 0, 5}, {0, 0x1p-12f, 7}, {0, 0, 1}}}, 0,
          {{{4096, -0.0f, -20480}, {-0.0f, 4096, -28672}, {0, -0.0f, 1}}});
    check("the last row counts", {{{1, 0, 0}, {0, 1, 0}, {2, 0, 4}}}, 0,
          {{{1, -0.0f, 0}, {-0.0f, 1, -0.0f}, {-0.5f, -0.0f, 0.25f}}});
    check("singular", {{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}}, 1, marked<KXM3>());
    check("a NaN", {{{1, not_a_number, 0}, {0, 1, 0}, {0, 0, 1}}}, 1, marked<KXM3>());
}
