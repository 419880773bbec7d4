#include "support/check.h"

using namespace test;

static const KXP3 untouched = marked<KXP3>();
static constexpr float still = 9.9e-07f; // a step below the tolerance

struct Corners {
    KXP3 a, b, c;
};
static const KXPlane level = {0, 0, 1, 0};
static const Corners half_square = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};

/**
 * One row, also with the plane turned over, which changes nothing, and with words of the host's own
 * around. Path is KXLine, with its end, or KXRay, with its direction.
 */
template <typename Path>
struct Checks {
    std::int32_t (*hits)(const Path *, const KXTriangle *, const KXP3 *, KXP3 *);

    void operator()(const std::string &label, const Path &path, const KXPlane &plane,
                    const Corners &corners, std::int32_t verdict, const KXP3 &point,
                    std::uint32_t first = 0) const
    {
        const KXP3 outlier = {-9, 9, -9};
        const KXP3 used[5] = {corners.c, outlier, corners.a, outlier, corners.b};
        // Of an array that reaches so far only these five are there.
        const auto *const vertices = reinterpret_cast<const KXP3 *>(
            reinterpret_cast<std::uintptr_t>(used) - std::uintptr_t{first} * sizeof(KXP3));
        for (const float side : {1.0f, -1.0f}) {
            auto triangle = marked<KXTriangle>();
            triangle.corner[0].vertex = first + 2;
            triangle.corner[1].vertex = first + 4;
            triangle.corner[2].vertex = first;
            triangle.plane = {side * plane.a, side * plane.b, side * plane.c, side * plane.d};
            Guarded<KXP3> out;
            CHECK_MESSAGE(hits(&path, &triangle, vertices, &out.record) == verdict, label,
                          ", side ", side);
            out.check(label, point);
        }
    }
    void operator()(const char *label, const Path &path, std::int32_t verdict,
                    const KXP3 &point) const
    {
        (*this)(label, path, level, half_square, verdict, point);
    }
};

/** Straight down through a point of the plane z = 0. */
static KXLine down_through(float x, float y)
{
    return {{x, y, 1}, {x, y, -1}};
}

TEST_CASE("KXLineIxTriangle: the crossing of the plane")
{
    const KXP3 hit = {0.25f, 0.25f, 0};
    const Checks<KXLine> check = {KXLineIxTriangle};
    check("from above", {{0.25f, 0.25f, 1}, {0.25f, 0.25f, -1}}, 1, hit);
    check("from below", {{0.25f, 0.25f, -1}, {0.25f, 0.25f, 1}}, 1, hit);
    check("starts on it", {{0.25f, 0.25f, 0}, {0.25f, 0.25f, 1}}, 0, untouched);
    check("starts on it, the other way", {{0.25f, 0.25f, 0}, {0.25f, 0.25f, -1}}, 0, untouched);
    check("ends on it", {{0.25f, 0.25f, 1}, {0.25f, 0.25f, 0}}, 1, hit);
    check("stops short", {{0.25f, 0.25f, 2}, {0.25f, 0.25f, 1}}, 0, untouched);
    check("stops just short", {{0.25f, 0.25f, 1}, {0.25f, 0.25f, 0x1p-24f}}, 0, untouched);
    check("delta is single along z", {{0.25f, 0.25f, 0x1p24f}, {0.25f, 0.25f, -1}}, 1, hit);
    check("runs away above", {{0.25f, 0.25f, 1}, {0.25f, 0.25f, 2}}, 0, untouched);
    check("runs away below", {{0.25f, 0.25f, -1}, {0.25f, 0.25f, -2}}, 0, untouched);
    check("parallel", {{0.25f, 0.25f, 1}, {0.5f, 0.25f, 1}}, 0, untouched);
    check("within it", {{0.25f, 0.25f, 0}, {0.5f, 0.25f, 0}}, 0, untouched);
    check("no length", {{0.25f, 0.25f, 1}, {0.25f, 0.25f, 1}}, 0, untouched);
    check("denom equal to the tolerance", {{0.25f, 0.25f, 0.5f}, {0.25f, 0.25f, -0.5f}},
          {0, 0, tolerance, 0}, half_square, 1, hit);
    check("denom below it", {{0.25f, 0.25f, 0.5f}, {0.25f, 0.25f, -0.5f}}, {0, 0, still, 0},
          half_square, 0, untouched);
    check("a plane at twice the scale", {{0.25f, 0.25f, 1}, {0.25f, 0.25f, -1}}, {0, 0, 2, 0},
          half_square, 1, hit);
    check("no plane", {{0.25f, 0.25f, 1}, {0.25f, 0.25f, -1}}, {0, 0, 0, 0}, half_square, 0,
          untouched);
    check("the plane is believed, not the corners", {{0.25f, 0.25f, 1}, {0.25f, 0.25f, -1}},
          {0, 0, 1, -0.5f}, half_square, 1, {0.25f, 0.25f, 0.5f});
}

TEST_CASE("KXLineIxTriangle: inside or not")
{
    const auto check_at = [](const char *label, float x, float y, const Corners &corners,
                             std::int32_t verdict) {
        const Checks<KXLine> check = {KXLineIxTriangle};
        check(label, down_through(x, y), level, corners, verdict, {x, y, 0});
    };
    const Corners swapped = {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}};
    const auto legs = [](float leg) { return Corners{{0, 0, 0}, {leg, 0, 0}, {0, leg, 0}}; };
    const auto swapped_legs = [](float leg) {
        return Corners{{0, 0, 0}, {0, leg, 0}, {leg, 0, 0}};
    };
    check_at("in the rectangle only", 0.75f, 0.75f, half_square, 0);
    check_at("in the rectangle only, ep 0", 0.75f, 0.75f, swapped, 0);
    check_at("beyond the highest p", 2, 0.25f, half_square, 0);
    check_at("below the lowest p", -0.5f, 0.25f, half_square, 0);
    check_at("beyond the highest q", 0.25f, 2, half_square, 0);
    check_at("below the lowest q", 0.25f, -0.5f, half_square, 0);
    check_at("on the long edge", 0.5f, 0.5f, half_square, 1);
    check_at("on the first edge", 0.5f, 0, half_square, 1);
    check_at("on the second edge", 0, 0.5f, half_square, 1);
    check_at("on the first corner", 0, 0, half_square, 1);
    check_at("on the second corner", 1, 0, half_square, 1);
    check_at("on the third corner", 0, 1, half_square, 1);
    check_at("on the long edge, ep 0", 0.5f, 0.5f, swapped, 1);
    check_at("alpha below 0", 0.25f, 0.6f, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}}, 0);
    check_at("alpha below 0, ep 0", 0.5f, 0.25f, {{0, 0, 0}, {0, 1, 0}, {1, 1, 0}}, 0);
    check_at("beta below 0", 0.5f, 0.25f, {{0, 0, 0}, {1, 1, 0}, {0, 1, 0}}, 0);
    check_at("beta above 1", 0.9f, 0.95f, {{0, 0.5f, 0}, {1, 0, 0}, {0.5f, 1, 0}}, 0);
    check_at("corners in a line along x", 0.5f, 0, {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}}, 0);
    check_at("corners in a line along y", 0, 0.5f, {{0, 0, 0}, {0, 1, 0}, {0, 2, 0}}, 0);
    check_at("second corner the first", 0, 0.5f, {{0, 0, 0}, {0, 0, 0}, {0, 1, 0}}, 0);
    check_at("second corner the first, across", 0.5f, 0, {{0, 0, 0}, {0, 0, 0}, {1, 0, 0}}, 0);
    check_at("third corner the first", 0.5f, 0, {{0, 0, 0}, {1, 0, 0}, {0, 0, 0}}, 0);
    check_at("one point", 0, 0, {{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}, 0);
    check_at("legs of 0.0009", 0.000225f, 0.000225f, legs(0.0009f), 0);
    check_at("legs of 0.0011", 0.000275f, 0.000275f, legs(0.0011f), 1);
    check_at("legs of 0.0009, ep 0", 0.000225f, 0.000225f, swapped_legs(0.0009f), 1);
    check_at("legs of the tolerance, ep 0", 2.5e-07f, 2.5e-07f, swapped_legs(tolerance), 1);
    check_at("legs below it, ep 0", 2.25e-07f, 2.25e-07f, swapped_legs(9e-07f), 0);
    check_at("den equal to the tolerance", 0.25f, 0, {{0, 0, 0}, {1, 0, 0}, {0, tolerance, 0}}, 1);
    check_at("den below it", 0.25f, 0, {{0, 0, 0}, {1, 0, 0}, {0, still, 0}}, 0);
    check_at("eq below it, ep 0", 0.5f, 0, {{0, 0, 0}, {0, still, 0}, {1, 0, 0}}, 0);
    check_at("alpha by a longer edge, ep 0", 0.25f, 0.6f, {{0, 0, 0}, {0, 2, 0}, {1, 0, 0}}, 1);
    check_at("beyond the rectangle by less than the edges are rounded by", 3.79999971f, 14.8470001f,
             {{51.7000008f, -27.3999996f, 0},
              {3.79999995f, -93.8000031f, 0},
              {3.79999995f, 37.1000023f, 0}},
             0);
    check_at("the third corner has the lowest p, and a higher q", 9.875f, 20.25f,
             {{10, 20, 0}, {11, 20, 0}, {9, 21, 0}}, 1);
    // Its distance from the first corner is rounded to that of the second corner.
    check_at("a hair right of and above the second corner", 0x1p-30f, 0x1p-30f,
             {{-1, -1, 0}, {0, 0, 0}, {-1, 0, 0}}, 0);
    check_at("a hair left of and below it", -0x1p-30f, -0x1p-30f, {{1, 1, 0}, {0, 0, 0}, {1, 0, 0}},
             0);
    check_at("a hair right of and below it", 0x1p-30f, -0x1p-30f,
             {{-1, 1, 0}, {0, 0, 0}, {-1, 0, 0}}, 0);
    check_at("the products in beta are not single", 69.5600052f, 49.0000038f,
             {{91.2000046f, 76.2000046f, 0},
              {59.4000015f, 89.3000031f, 0},
              {37.1000023f, 8.19999981f, 0}},
             0);
}

TEST_CASE("KXLineIxTriangle: the axis dropped")
{
    // Planes that disagree with the corners, so that the axis shows: a flat projection is never
    // hit.
    const Corners in_xz = {{0, 5, 0}, {1, 5, 0}, {0, 5, 1}},
                  in_xy = {{0, 0, 5}, {1, 0, 5}, {0, 1, 5}};
    const Corners in_yz = {{3, 0, 0}, {3, 1, 0}, {3, 0, 1}},
                  in_yz_swapped = {{3, 0, 0}, {3, 0, 1}, {3, 1, 0}};
    const KXLine along_y = {{0.25f, 4, 0.25f}, {0.25f, 6, 0.25f}},
                 along_z = {{0.25f, 0.25f, 4}, {0.25f, 0.25f, 6}};
    const KXLine along_x = {{4, 0.25f, 0.5f}, {2, 0.25f, 0.5f}};
    const KXP3 on_y = {0.25f, 5, 0.25f}, on_z = {0.25f, 0.25f, 5}, on_x = {3, 0.25f, 0.5f};
    const Checks<KXLine> check = {KXLineIxTriangle};
    check("x before y on a tie", along_y, {1, 1, 0, -5.25f}, in_xz, 0, on_y);
    check("y when it is larger", along_y, {0.5f, 1, 0, -5.125f}, in_xz, 1, on_y);
    check("y when it is larger by one bit", along_y, {1, 0x1.000002p+0f, 0, -5.25f}, in_xz, 1,
          {0.25f, 0x1.3ffffep+2f, 0.25f});
    check("y before z on a tie", along_z, {0, 1, 1, -5.25f}, in_xy, 0, on_z);
    check("z when it is larger", along_z, {0, 0.5f, 1, -5.125f}, in_xy, 1, on_z);
    check("x before z on a tie", along_z, {1, 0, 1, -5.25f}, in_xy, 0, on_z);
    check("x before both", along_z, {1, 1, 1, -5.5f}, in_xy, 0, on_z);
    check("x, with p for y and q for z", along_x, {1, 0, 0, -3}, in_yz, 1, on_x);
    check("the same with ep 0", along_x, {1, 0, 0, -3}, in_yz_swapped, 1, on_x);
    check("outside in y and z", {{4, 0.75f, 0.5f}, {2, 0.75f, 0.5f}}, {1, 0, 0, -3}, in_yz, 0,
          {3, 0.75f, 0.5f});
}

TEST_CASE("KXRayIxTriangle: what differs from a line")
{
    const KXP3 hit = {0.25f, 0.25f, 0};
    const Checks<KXRay> check = {KXRayIxTriangle};
    check("from above", {{0.25f, 0.25f, 1}, {0, 0, -2}}, 1, hit);
    check("no length is needed", {{0.25f, 0.25f, 1}, {0, 0, -0.001f}}, 1, hit);
    check("from far away", {{0.25f, 0.25f, 1e6f}, {0, 0, -1}}, 1, hit);
    check("starts on the plane", {{0.25f, 0.25f, 0}, {0, 0, -1}}, 0, untouched);
    check("points away above", {{0.25f, 0.25f, 1}, {0, 0, 1}}, 0, untouched);
    check("points away below", {{0.25f, 0.25f, -1}, {0, 0, -1}}, 0, untouched);
    check("parallel", {{0.25f, 0.25f, 1}, {1, 0, 0}}, 0, untouched);
    check("no direction", {{0.25f, 0.25f, 1}, {0, 0, 0}}, 0, untouched);
    check("denom equal to the tolerance", {{0.25f, 0.25f, 5e-07f}, {0, 0, -tolerance}}, 1, hit);
    check("denom below it", {{0.25f, 0.25f, 5e-07f}, {0, 0, -still}}, 0, untouched);
    check("outside", {{-1, -1, 2}, {1.5f, 1.5f, -4}}, 0, {-0.25f, -0.25f, 0});
    check("in the rectangle only", {{0.75f, 0.75f, 1}, {0, 0, -2}}, 0, {0.75f, 0.75f, 0});
}

// What is wrong here crashes, or misses.
TEST_CASE("Vertex indices: offsets beyond 2^32 bytes, the top bit, the last")
{
    const KXP3 hit = {0.25f, 0.25f, 0};
    const Checks<KXLine> check_line = {KXLineIxTriangle};
    const Checks<KXRay> check_ray = {KXRayIxTriangle};
    for (const std::uint32_t first : {0x15555556U, 0x80000000U, 0xfffffffbU}) {
        const std::string label = "first index " + std::to_string(first);
        check_line(label, down_through(hit.x, hit.y), level, half_square, 1, hit, first);
        check_ray(label, {{hit.x, hit.y, 1}, {0, 0, -2}}, level, half_square, 1, hit, first);
    }
}

TEST_CASE("Each single, and each that is not")
{
    const Checks<KXLine> check_line = {KXLineIxTriangle};
    check_line("t is not single", {{3, -3, 0}, {-6, 4, 3}}, {2, 5, 1, 5},
               {{3, 6, 12}, {-3, -6, 18}, {6, 18, 18}}, 0,
               {1.20000005f, -1.60000002f, 0.600000024f});
    check_line("delta, denom and dist are single", {{-1, -3.5f, -0.6f}, {1.9f, 1.7f, -1.3f}},
               {0.8f, 4.2f, -4.5f, -2.4f},
               {{0x1.b99998p+3f, -0x1.cccccep-1f, -0x1.cccccep+1f},
                {13.5f, -0x1.466668p+3f, 0x1.599998p+1f},
                {0x1.cccccep+3f, 13.5f, 11.1f}},
               0, {0.614060879f, -0.605822086f, -0.989600897f});
    check_line("hp, hq and beta are single, alpha is not",
               {{-0x1.b6db6ep-1f, -0x1.b6db6ep+0f, -2}, {-0x1.b6db6ep-1f, -0x1.b6db6ep+0f, -4}},
               {0, 0, 1, 3}, {{-6, 3, -3}, {-3, -6, -3}, {2, 4, -3}}, 0,
               {-0.857142866f, -1.71428573f, -3});
    check_line("the edges are single, den is not", {{4.19f, -2.9f, 4.1f}, {4.19f, -2.9f, 2.1f}},
               {0, 0, 1, -3.1f}, {{-4.9f, 1.2f, 3.1f}, {3.2f, -2.9f, 3.1f}, {4.3f, -2.9f, 3.1f}}, 1,
               {4.19000006f, -2.9000001f, 3.0999999f});
    check_line("ep 0: hp and beta are single, alpha is not",
               {{0x1.24924ap-1f, 0x1.924924p+1f, 7}, {0x1.24924ap-1f, 0x1.924924p+1f, 5}},
               {0, 0, 1, -6}, {{4, -1, 6}, {4, 6, 6}, {-2, 1, 6}}, 0,
               {0.571428597f, 3.14285707f, 6});
    check_line("ep 0: hq is single", {{1.6f, 3.8f, -5}, {1.6f, 3.8f, -7}}, {0, 0, 1, 6},
               {{0, -1, -6}, {0, -3, -6}, {2, 5, -6}}, 0, {1.60000002f, 3.79999995f, -6});
    check_line("ep 0: the edges are single",
               {{-0x1.666668p+0f, 0x1.83a83ap-1f, 5.4f}, {-0x1.666668p+0f, 0x1.83a83ap-1f, 3.4f}},
               {0, 0, 1, -4.4f}, {{1.1f, -2.7f, 4.4f}, {1.1f, 1.9f, 4.4f}, {-2.4f, 0.3f, 4.4f}}, 0,
               {-1.4000001f, 0.757142842f, 4.4000001f});
    check_line("the point is tested as it is stored",
               {{-0x1.999998p+0f, 8, -3.2f}, {-0x1.b33332p+1f, 5, -3.2f}}, {0, 1, 0, -6},
               {{2, 6, 2}, {2, 6, 1}, {-6, 6, -6}}, 1, {-2.79999995f, 6, -3.20000005f});
    check_line("order of the sum in denom",
               {{0x1p+24f, 0x1p+30f, 0x1p+30f}, {3, -0x1p+24f, -0x1p+24f}},
               {-1, 0x1p+30f, -0x1p+30f, 0}, {{2, -2, 2}, {-1, 1, 0}, {0, 2, 1}}, 0,
               {3, -16777216.0f, -16777216.0f});
    check_line("order of the sum in dist", {{-0x1p+30f, -3, -3}, {-0.1f, -0.1f, 1}},
               {-0x1p+24f, -0x1p+30f, 0.5f, -1}, {{-1, 2, 1}, {2, 2, 2}, {2, 1, -2}}, 0, untouched);
    const Checks<KXRay> check_ray = {KXRayIxTriangle};
    check_ray("t is not single", {{2, -2, 0}, {-5, -3, -4}}, {4, 1, -1, 0},
              {{-6, 9, 12}, {-18, -6, 0}, {-6, -12, 0}}, 0,
              {0.421052635f, -2.94736838f, -1.26315784f});
    check_ray("denom and dist are single", {{-2.4f, 0.6f, 0.3f}, {3.3f, 1.3f, -3.2f}},
              {-3.6f, -0.6f, 4, 4.2f},
              {{-13.5f, 11.1f, 0x1.933332p+2f},
               {13.5f, -0x1.9ccccep+3f, -0x1.cccccep+3f},
               {7.5f, 11.1f, -0x1.cccccep+1f}},
              1, {-0.626865685f, 1.29850745f, -1.41940308f});
    check_ray("order of the sum in denom", {{0, 0x1p+30f, 2}, {-0.1f, 0x1p+24f, -0x1p+30f}},
              {-0x1p+24f, -0x1p+30f, -0x1p+24f, 1}, {{-1, 0, -1}, {-1, 2, 1}, {-2, -1, -2}}, 0,
              {-6.87194604e+10f, 1.15292128e+19f, -7.37869622e+20f});
    check_ray("order of the sum in dist", {{0x1p+24f, -1, 3}, {2, 3, 0x1p+24f}},
              {-0x1p+30f, 0x1p+30f, -1, 1}, {{2, 0, 0}, {-1, 0, 0}, {-2, 0, -2}}, 0,
              {50864264.0f, 51130568.0f, 2.85942884e+14f});
    check_ray("b*y before c*z in dist",
              {{-90.0999985f, -58.5f, -3.29999995f}, {-9.21000004f, 1.19999993f, 3.43999982f}},
              {5.96000004f, -9.48999977f, 3.77999997f, -5.69499254f}, half_square, 0,
              {-90.0999985f, -58.5f, -3.29999995f});
    check_ray("c*z before d in dist",
              {{34, 0, 65.0999985f}, {1.31999993f, 0.099999994f, -7.65999985f}},
              {7.77999973f, -8.03999996f, 0.0199999996f, -265.821991f}, half_square, 0,
              {34, 1.13178011e-09f, 65.0999985f});
    check_ray("the products in denom and dist are not single",
              {{-24.5f, -55.1000023f, 66.8000031f}, {1.13f, 1.78999996f, -9.7699995f}},
              {-9.05000019f, 2.5f, -1.94999993f, -42.7000008f}, half_square, 0,
              {-16.9396191f, -43.1238251f, 1.4328208f});
}
