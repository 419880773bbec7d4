/* The inline functions: as C++ has them, and the same bits from C. */
#include "in_c.c"

#include "support/check.h"

#include <cmath>
#include <initializer_list>
#include <map>
#include <tuple>

using namespace test;

namespace
{

constexpr float pi = 3.14159274f;
constexpr float half_of_root = 0.70710678f;

doctest::Approx about(float value)
{
    return doctest::Approx(static_cast<double>(value)).epsilon(1e-6).scale(1.0);
}

void check_about(const std::string &label, const KXP3 &wanted, const KXP3 &got)
{
    const bool near = kx_distance(&wanted, &got) < 2e-6 * (1.0 + KXV3Length(&wanted));
    CHECK_MESSAGE(near, label, ": got ", got.x, " ", got.y, " ", got.z);
}

KXQuat turn(float angle, KXV3 axis)
{
    KXQuat q;
    KXGenerateQuat(angle, &axis, &q);
    return q;
}

KXQuat unit_quat(Random &random)
{
    KXQuat q = random.record<KXQuat>(1.0f);
    kx_quat_normalise(&q, &q);
    return q;
}

/** Where a point of the world is seen. */
KXP3 seen(const KXM4 &projection, const KXM4 &view, const KXP3 &point)
{
    const KXP4 in = {point.x, point.y, point.z, 1.0f};
    KXP4 p;
    KXP3 out;
    KXM4P4(&view, &in, &p);
    KXM4P4(&projection, &p, &p);
    CHECK(kx_divide_by_w(&p, &out) == 0);
    return out;
}

} // namespace

TEST_CASE("kx_dot, kx_distance and kx_lerp")
{
    const KXV3 a = {100000008, 1, 1e8f}, b = {1e8f, 1, -1e8f};
    check_same("a dot product is in double, from left to right", 8e8, kx_dot(&a, &b));
    const KXP3 p = {1, 2, 3}, q = {3, 5, -3}, far = {3e38f, 0, 0};
    const KXP3 origin = {0, 0, 0}, off = {0.1f, 0.1f, 3.7f};
    check_same("neither a hypotenuse nor with z added first", 3.7027017640441349,
               kx_distance(&origin, &off));
    check_same("a distance that overflows no double", static_cast<double>(3e38f),
               kx_distance(&far, &p));

    const KXP3 c = {0.1f, -7e10f, 3e-5f}, d = {1e9f, 0.3f, -0.7f};
    KXP3 out;
    kx_lerp(&c, &d, 0.0f, &out);
    check_same("no step", c, out);
    const KXP3 zeros = {-0.0f, -0.0f, -0.0f};
    kx_lerp(&zeros, &d, 0.0f, &out);
    check_same("no step is a sum too", KXP3{0, 0, -0.0f}, out);
    kx_lerp(&c, &d, 1.0f, &out);
    check_same("the whole step", d, out);
    kx_lerp(&p, &q, 0.25f, &out);
    check_same("a quarter", KXP3{1.5f, 2.75f, 1.5f}, out);
    out = p;
    kx_lerp(&out, &out, 0.3f, &out);
    check_same("in place", p, out);
}

TEST_CASE("quaternion algebra")
{
    const KXQuat i = {1, 0, 0, 0}, j = {0, 1, 0, 0}, k = {0, 0, 1, 0}, mixed = {1, 2, 3, 4};
    KXQuat q;
    kx_quat_product(&i, &j, &q);
    check_same("i*j is k", k, q);
    kx_quat_product(&j, &i, &q);
    check_same("j*i is -k", KXQuat{0, 0, -1, 0}, q);
    q = {5, 6, 7, 8};
    kx_quat_product(&mixed, &q, &q);
    check_same("every product and sign, in place", KXQuat{24, 48, 48, -6}, q);
    kx_quat_conjugate(&mixed, &q);
    check_same("conjugate", KXQuat{-1, -2, -3, 4}, q);
    const KXQuat twos = {2, -2, 2, 2}, tiny = {0, 0, 0, test::tolerance};
    CHECK(kx_quat_normalise(&twos, &q) == 4.0);
    check_same("unit length", KXQuat{0.5f, -0.5f, 0.5f, 0.5f}, q);
    kx_quat_normalise(&tiny, &q);
    check_same("too short to be made unit", tiny, q);

    const KXQuat z = turn(pi / 2, {0, 0, 1}), x = turn(pi / 2, {1, 0, 0});
    const KXQuat long_z = {3 * z.x, 3 * z.y, 3 * z.z, 3 * z.w};
    KXV3 v = {1, 2, 3};
    kx_quat_rotate(&long_z, &v, &v);
    check_about("a quarter turn about Z, of a longer quaternion", {-2, 1, 3}, v);
    kx_quat_product(&x, &z, &q);
    v = {1, 0, 0};
    kx_quat_rotate(&q, &v, &v);
    check_about("Z first, then X", {0, 0, 1}, v);
}

TEST_CASE("kx_quat_slerp")
{
    const KXQuat a = turn(0.2f, {0, 0, 1}), b = turn(1.2f, {0, 0, 1});
    const KXQuat minus_b = {-b.x, -b.y, -b.z, -b.w};
    KXQuat q;
    const KXQuat close = turn(0.24f, {0, 0, 1}), between = turn(0.21f, {0, 0, 1});
    kx_quat_slerp(&a, &close, 0.25f, &q);
    check_same("along the arc even where it is short", between, q);
    for (const KXQuat &end : {b, minus_b}) {
        kx_quat_slerp(&a, &end, 0.25f, &q);
        const KXQuat wanted = turn(0.45f, {0, 0, 1});
        CHECK(static_cast<double>(q.z) == about(wanted.z));
        CHECK(static_cast<double>(q.w) == about(wanted.w));
        kx_quat_slerp(&a, &end, 1.0f, &q);
        check_same("the end, by the shorter way", b, q);
    }
    q = a;
    kx_quat_slerp(&q, &b, 0.0f, &q);
    check_same("the start, in place", a, q);
    kx_quat_slerp(&a, &a, 0.3f, &q);
    check_same("from a quaternion to itself", a, q);
    // An arccosine of the dot product takes these two for one.
    const KXQuat near = {1e-6f, 0, 0, 1}, one = {0, 0, 0, 1};
    kx_quat_slerp(&one, &near, 0.5f, &q);
    check_same("next to parallel", KXQuat{5e-7f, 0, 0, 1}, q);
    const KXQuat opposite = {1, 0, 0, 0};
    kx_quat_slerp(&one, &opposite, 0.5f, &q);
    check_same("half a turn apart", KXQuat{half_of_root, 0, 0, half_of_root}, q);
}

TEST_CASE("kx_look_at")
{
    const auto check = [](const char *label, KXP3 eye, KXP3 target, KXV3 up, std::int32_t status,
                          const KXM4 &wanted) {
        Guarded<KXM4> placement, view;
        CHECK_MESSAGE(kx_look_at(&eye, &target, &up, &placement.record, &view.record) == status,
                      label);
        placement.check(label, wanted);
        KXM4 product;
        KXM4Mult(&view.record, &placement.record, &product);
        CHECK_MESSAGE(KXM4IsUnit(&product), label, ": the view is not the way back");
        KXM4 alone;
        kx_look_at(&eye, &target, &up, nullptr, &alone);
        check_same(label, view.record, alone);
        kx_look_at(&eye, &target, &up, &alone, nullptr);
        check_same(label, placement.record, alone);
    };
    const KXV3 y = {0, 1, 0};
    check("along -Z; a short up", {1, 2, 5}, {1, 2, 0}, {0, 1e-9f, 0}, 0,
          {{{1, 0, 0, 1}, {0, 1, 0, 2}, {0, 0, 1, 5}, {0, 0, 0, 1}}});
    check("along +X, up at an angle", {1, 2, 5}, {4, 2, 5}, {7, 0.25f, 0}, 0,
          {{{0, 0, -1, 1}, {0, 1, 0, 2}, {1, 0, 0, 5}, {0, 0, 0, 1}}});
    check("down with Z up: no choice is needed", {0, 3, 0}, {0, 0, 0}, {0, 0, -1}, 0,
          {{{1, 0, 0, 0}, {0, 0, 1, 3}, {0, -1, 0, 0}, {0, 0, 0, 1}}});
    check("straight down with Y up", {0, 3, 0}, {0, 0, 0}, y, 1,
          {{{1, 0, 0, 0}, {0, 0, 1, 3}, {0, -1, 0, 0}, {0, 0, 0, 1}}});
    check("no up", {0, 0, 3}, {0, 0, 0}, {0, 0, 0}, 1,
          {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 3}, {0, 0, 0, 1}}});
    check("no direction", {1, 2, 3}, {1, 2, 3}, y, 1,
          {{{1, 0, 0, 1}, {0, 1, 0, 2}, {0, 0, 1, 3}, {0, 0, 0, 1}}});
    check("no distance is too short", {0, 0, 1e-7f}, {0, 0, 0}, y, 0,
          {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 1e-7f}, {0, 0, 0, 1}}});
    check("a target that is not finite", {0, 0, 3}, {infinity, 0, 0}, y, 1,
          {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 3}, {0, 0, 0, 1}}});
    check("an up that is not finite", {0, 0, 3}, {0, 0, 0}, {0, infinity, 0}, 1,
          {{{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 3}, {0, 0, 0, 1}}});

    const KXP3 eye = {1e3f, -2e3f, 500.0f}, target = {1001.5f, -1998.0f, 500.5f};
    KXM4 view;
    KXP3 ahead;
    CHECK(kx_look_at(&eye, &target, &y, nullptr, &view) == 0);
    KXM4P3I1(&view, &target, &ahead);
    CHECK(std::fabs(ahead.x) < 1e-3f);
    CHECK(std::fabs(ahead.y) < 1e-3f);
    CHECK(ahead.z == doctest::Approx(-kx_distance(&eye, &target)).epsilon(1e-3));
}

TEST_CASE("projections")
{
    struct Depths {
        KXDepthRange range;
        float nearest, farthest;
    };
    for (const Depths &depths :
         {Depths{KX_DEPTH_0_TO_1, 0, 1}, Depths{KX_DEPTH_MINUS_1_TO_1, -1, 1},
          Depths{KX_DEPTH_1_TO_0, 1, 0}}) {
        KXM4 m;
        // 90 degrees high and twice as wide.
        kx_perspective(pi / 2, 2.0f, 0.5f, 100.0f, depths.range, &m);
        check_about("nearest, right and top", {1, 1, depths.nearest},
                    seen(m, unit4, {1, 0.5f, -0.5f}));
        check_about("farthest, left and bottom", {-1, -1, depths.farthest},
                    seen(m, unit4, {-200, -100, -100}));
        kx_perspective(pi / 2, 2.0f, 0.5f, infinity, depths.range, &m);
        check_about("with no end", {0, 0, depths.nearest}, seen(m, unit4, {0, 0, -0.5f}));
        check_about("and far away", {0, 0, depths.farthest}, seen(m, unit4, {0, 0, -1e8f}));
        kx_orthographic(-2.0f, 6.0f, 1.0f, 3.0f, -1.0f, 9.0f, depths.range, &m);
        check_about("nearest, left and bottom", {-1, -1, depths.nearest},
                    seen(m, unit4, {-2, 1, 1}));
        check_about("farthest, right and top", {1, 1, depths.farthest}, seen(m, unit4, {6, 3, -9}));
    }

    KXP3 out = {7, 7, 7};
    const KXP4 direction = {1, 2, 3, -0.0f}, behind = {1, 2, 3, -2.1e-8f};
    CHECK(kx_divide_by_w(&direction, &out) == 1);
    check_same("a direction writes nothing", KXP3{7, 7, 7}, out);
    CHECK(kx_divide_by_w(&behind, &out) == 0);
    check_same("at the camera's back, next to it", KXP3{-47619048, -95238096, -142857136}, out);
}

TEST_CASE("kx_screen_to_ray goes through what is seen at that place")
{
    const KXP3 eye = {3, 4, 5}, target = {0, 1, 0};
    const KXV3 up = {0, 1, 0};
    KXM4 placement, view, projections[3];
    kx_look_at(&eye, &target, &up, &placement, &view);
    kx_perspective(0.8f, 1.5f, 0.1f, 1000.0f, KX_DEPTH_1_TO_0, &projections[0]);
    kx_orthographic(-4, 5, -3, 3.5f, 0, 100, KX_DEPTH_0_TO_1, &projections[1]);
    projections[2] = projections[0];
    projections[2].m[0][2] = 0.3f; // the camera's middle is not the picture's
    projections[2].m[1][2] = -0.2f;
    for (const KXM4 &projection : projections) {
        KXRay ray;
        Random random;
        for (int n = 0; n < 50; ++n) {
            const KXP3 point = random.record<KXP3>(1.0f), at = seen(projection, view, point);
            kx_screen_to_ray(&projection, &placement, 150 * (at.x + 1), 100 * (1 - at.y), 300, 200,
                             &ray);
            CHECK(KXRayPointDistance(&ray, &point) < 1e-5);
            CHECK(KXV3Length(&ray.direction) == doctest::Approx(1.0));
            CHECK(kx_ray_parameter(&ray, &point) > 0.0);
        }
        // The top left corner is column 0, row 0.
        kx_screen_to_ray(&projection, &placement, 0, 0, 300, 200, &ray);
        const KXP3 ahead = {ray.origin.x + ray.direction.x, ray.origin.y + ray.direction.y,
                            ray.origin.z + ray.direction.z};
        check_about("the corner", {-1, 1, 0}, [&] {
            KXP3 corner = seen(projection, view, ahead);
            corner.z = 0;
            return corner;
        }());
    }
}

TEST_CASE("kx_fit_mesh")
{
    const auto check = [](const char *label, const KXBox &box) {
        Guarded<KXM4> to, from;
        CHECK_MESSAGE(kx_fit_mesh(&box, &to.record, &from.record) == 0, label);
        KXBox fitted;
        KXTransformBox(&box, &to.record, &fitted);
        KXV3 diagonal;
        KXP3 middle, back;
        KXBoxDiagonal(&fitted, &diagonal);
        KXBoxMidPoint(&fitted, &middle);
        const double length = KXV3Length(&diagonal);
        CHECK_MESSAGE((length >= 511.9 && length < 1024.1), label, ": a diagonal of ", length);
        CHECK_MESSAGE(KXV3Length(&middle) < 0.1 * length, label);
        KXM4P3I1(&from.record, &fitted.maximum, &back);
        CHECK_MESSAGE(kx_distance(&box.maximum, &back) <= 1e-7 * KXV3Length(&back), label);
        KXM4 alone;
        kx_fit_mesh(&box, &alone, nullptr);
        check_same(label, to.record, alone);
        kx_fit_mesh(&box, nullptr, &alone);
        check_same(label, from.record, alone);
    };
    check("far away", {{1000, 2000, 3000}, {1000.25f, 2000.5f, 3001}});
    check("flat", {{-1, 0, -1}, {1, 0, 1}});
    check("small", {{-1e-30f, 0, 0}, {1e-30f, 2e-30f, 0}});
    check("the smallest", {{0, 0, 0}, {6e-36f, 6e-36f, 0}});
    check("huge", {{-1e30f, -2e30f, 0}, {3e30f, 1e30f, 0}});
    check("already there", {{-256, 0, 0}, {256, 0, 0}});

    for (const KXBox &box :
         {KXBox{{1, 2, 3}, {1, 2, 3}}, KXBox{{1, 0, 0}, {0, 9, 9}},
          KXBox{{0, 0, 0}, {infinity, 1, 1}}, KXBox{{0, not_a_number, 0}, {1, 1, 1}},
          KXBox{{0, 0, 0}, {5e-36f, 0, 0}}}) {
        Guarded<KXM4> to, from;
        CHECK(kx_fit_mesh(&box, &to.record, &from.record) == 1);
        to.check("nothing is written", marked<KXM4>());
        from.check("nothing is written", marked<KXM4>());
    }
}

TEST_CASE("kx_triangle")
{
    const auto check = [](const char *label, const KXP3(&corners)[3], std::uint32_t begin,
                          std::int32_t status) {
        Guarded<KXTriangle> out;
        CHECK_MESSAGE(kx_triangle(corners, 0, 1, 2, &out.record) == status, label);
        KXTriangle wanted = {};
        for (std::uint32_t k = 0; k < 3; ++k) {
            wanted.corner[k].vertex = (begin + k) % 3;
        }
        KXPlaneEquation(&corners[0], &corners[1], &corners[2], &wanted.plane);
        out.check(label, wanted);
    };
    check("seen along Z: the edge along X leads", {{0, 0, 1}, {0.5f, 9, 1}, {-4, 8, 1}}, 1, 0);
    check("the edge back to the first leads", {{0, 0, 1}, {-3, 9, 1}, {-4, 8, 1}}, 2, 0);
    check("seen along Y: X comes first", {{0, 1, 0}, {1, 1, 9}, {3, 1, 9}}, 2, 0);
    check("seen along X: Y comes first", {{1, 0, 0}, {1, 1, 9}, {1, 3, 9}}, 2, 0);
    check("in a plane alike in X, Y and Z: Y", {{0, 0, 0}, {1, -2, 1}, {3, -1, -2}}, 0, 0);
    check("on a tie the earlier", {{0, 0, 0}, {2, 0, 0}, {0, 2, 0}}, 0, 0);
    check("on one line", {{0, 0, 0}, {2, 2, 2}, {4, 4, 4}}, 2, 1);
    check("one point", {{3, 3, 3}, {3, 3, 3}, {3, 3, 3}}, 0, 1);
    check("just too small", {{0, 0, 0}, {below_tolerance, 0, 0}, {0, 1, 0}}, 0, 1);
    check("just large enough", {{0, 0, 0}, {test::tolerance, 0, 0}, {0, 1, 0}}, 0, 0);
}

TEST_CASE("a square turned a quarter is hit by every ray at its inside")
{
    const KXComponents quarter = {1, 1, 1, 0, 0, 0, 0, 0, pi / 2, 0, 0, 0, 0, 0, 0, 1};
    KXM4 turned;
    KXM4Compose(&turned, &quarter);
    KXP3 square[] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    KXM4NP3I1(&turned, 4, square, square);
    KXTriangle halves[2], as_given[2];
    const std::uint32_t corners[2][3] = {{0, 1, 2}, {0, 2, 3}};
    for (int n = 0; n < 2; ++n) {
        CHECK(kx_triangle(square, corners[n][0], corners[n][1], corners[n][2], &halves[n]) == 0);
        as_given[n] = {};
        as_given[n].plane = halves[n].plane;
        for (int k = 0; k < 3; ++k) {
            as_given[n].corner[k].vertex = corners[n][k];
        }
    }
    Random random;
    int missed = 0, missed_as_given = 0;
    for (int n = 0; n < 10000; ++n) {
        const KXRay ray = {{random(0.49f) - 0.5f, random(0.49f) + 0.5f, 3}, {0, 0, -1}};
        KXP3 point;
        const auto meets = [&](const KXTriangle(&triangles)[2]) {
            return (KXRayIxTriangle(&ray, &triangles[0], square, &point) |
                    KXRayIxTriangle(&ray, &triangles[1], square, &point)) == 1;
        };
        missed += !meets(halves);
        missed_as_given += !meets(as_given);
    }
    CHECK(missed == 0);
    // Begun at another corner the same two triangles are missed by some.
    CHECK(missed_as_given > 100);
}

TEST_CASE("where a hit is")
{
    const KXRay ray = {{1, 2, 3}, {0, 0x1p-12f, 0}}, still = {{1, 2, 3}, {0, 0, 0}};
    const KXLine line = {{1, 2, 3}, {1, 2, 11}}, point = {{1, 2, 3}, {1, 2, 3}};
    const KXP3 on_ray = {1, 7, 3}, on_line = {1, 2, 5}, beside = {5, 2, 5};
    CHECK(kx_ray_parameter(&ray, &on_ray) == 20480);
    CHECK(kx_ray_parameter(&still, &on_ray) == 0.0);
    CHECK(kx_line_parameter(&line, &on_line) == 0.25);
    CHECK(kx_line_parameter(&line, &beside) == 0.25);
    CHECK(kx_line_parameter(&point, &on_line) == 0.0);

    Random random;
    for (int n = 0; n < 300; ++n) {
        const KXP3 corners[3] = {random.record<KXP3>(9.0f), random.record<KXP3>(9.0f),
                                 random.record<KXP3>(9.0f)};
        KXTriangle triangle;
        if (kx_triangle(corners, 0, 1, 2, &triangle) != 0) {
            continue;
        }
        // A point with 0.5, 0.3 and 0.2 of the corners, in the record's order.
        const KXP3 &a = corners[triangle.corner[0].vertex];
        const KXP3 &b = corners[triangle.corner[1].vertex];
        const KXP3 &c = corners[triangle.corner[2].vertex];
        KXP3 inside;
        KXV3Combine(&a, &b, &inside, 0.5f, 0.3f);
        KXV3Combine(&inside, &c, &inside, 1.0f, 0.2f);
        float weights[3] = {};
        CHECK(kx_barycentric(&triangle, corners, &inside, weights) == 0);
        const double size = std::sqrt(KXV3Length(&a) + KXV3Length(&b) + KXV3Length(&c));
        const double allowed = 1e-4 * size;
        CHECK(std::fabs(static_cast<double>(weights[0]) - 0.5) < allowed);
        CHECK(std::fabs(static_cast<double>(weights[1]) - 0.3) < allowed);
        CHECK(std::fabs(static_cast<double>(weights[2]) - 0.2) < allowed);
    }
    const KXP3 flat[3] = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}};
    KXTriangle triangle;
    float weights[3] = {7, 7, 7};
    kx_triangle(flat, 0, 1, 2, &triangle);
    CHECK(kx_barycentric(&triangle, flat, &flat[1], weights) == 1);
    CHECK(weights[0] == 7.0f);
    const KXP3 small[3] = {{0, 0, 0}, {1e-4f, 0, 0}, {0, 1e-3f, 0}};
    kx_triangle(small, 0, 1, 2, &triangle);
    CHECK(kx_barycentric(&triangle, small, &small[1], weights) == 0);
    CHECK(weights[1] == 1.0f);
}

TEST_CASE("a rounding is not lost between two calls")
{
    // By its address the function can't be merged with itself.
    const volatile auto lerp = kx_lerp_in_c;
    Random random;
    for (int n = 0; n < 100; ++n) {
        const KXP3 a = random.record<KXP3>(1.0f), b = random.record<KXP3>(1.0f);
        KXP3 wanted, got;
        lerp(&a, &b, 0.3f, &wanted);
        lerp(&wanted, &b, 0.3f, &wanted);
        kx_lerp(&a, &b, 0.3f, &got);
        kx_lerp(&got, &b, 0.3f, &got);
        check_same("two steps", wanted, got);
    }
}

/** Of each function's results as singles: another order, rounding or formula has another. */
static std::map<std::string, Digest> digests;

/** What both return, or write to the last argument, which is then left out here. */
template <typename Result, typename... Parameters, typename... Arguments>
static void check_in_c(const char *label, Result (*in_c)(Parameters...),
                       Result (*in_cpp)(Parameters...), Arguments... arguments)
{
    Digest &digest = digests[label];
    if constexpr (sizeof...(Arguments) == sizeof...(Parameters)) {
        check_same(label, in_c(arguments...), in_cpp(arguments...));
        digest.result(in_cpp(arguments...));
    } else {
        using Last = std::tuple_element_t<sizeof...(Arguments), std::tuple<Parameters...>>;
        auto wanted = marked<std::remove_pointer_t<Last>>(), got = wanted;
        in_c(arguments..., &wanted);
        in_cpp(arguments..., &got);
        check_same(label, wanted, got);
        for (const std::uint32_t word : bits_as<Words<decltype(got)>>(got)) {
            digest.computed(word);
        }
    }
}
#define KX_CHECK_IN_C(function, ...) check_in_c(#function, function##_in_c, function, __VA_ARGS__)

TEST_CASE("C gives the same bits")
{
    Random random;
    // So few numbers, so far apart, that sums cancel: what is added first can be seen in singles.
    constexpr float numbers[] = {0, -0.0f, 1, -1, 0x1p30f, -0x1p30f, 1.5f, 0.1f};
    const auto pick = [&](auto *record) {
        for (std::size_t i = 0; i < sizeof *record / sizeof(float); ++i) {
            reinterpret_cast<float *>(record)[i] =
                numbers[static_cast<std::size_t>(random(3.99f) + 4.0f)];
        }
    };
    for (int n = 0; n < 200; ++n) {
        KXV3 a, b, up, inside;
        for (KXV3 *const v : {&a, &b, &up, &inside}) {
            pick(v);
        }
        KXQuat p, q = unit_quat(random), r = unit_quat(random);
        pick(&p);
        const float t = random(1.0f), u = 0.6f + random(0.5f);
        const KXBox box = {{-u, -1, -u}, a.x > 0 ? a : b};
        const auto depth = static_cast<KXDepthRange>(n % 3);
        KX_CHECK_IN_C(kx_dot, &a, &b);
        KX_CHECK_IN_C(kx_distance, &a, &b);
        KX_CHECK_IN_C(kx_lerp, &a, &b, t);
        KX_CHECK_IN_C(kx_quat_product, &p, n % 2 == 0 ? &p : &r);
        KX_CHECK_IN_C(kx_quat_conjugate, &q);
        KX_CHECK_IN_C(kx_quat_normalise, &p);
        KX_CHECK_IN_C(kx_quat_rotate, n % 2 == 0 ? &p : &q, &a);
        KX_CHECK_IN_C(kx_quat_slerp, &q, &r, t);
        KX_CHECK_IN_C(kx_look_at, &a, &b, &up, nullptr);
        KX_CHECK_IN_C(kx_perspective, u, 1.5f, u, 100.0f, depth);
        KX_CHECK_IN_C(kx_orthographic, -u, n % 2 == 0 ? u : t, -1.5f, 1.5f, u, 90.0f, depth);
        const KXP4 clip = {a.x, a.y, b.x, b.y};
        KX_CHECK_IN_C(kx_divide_by_w, &clip);
        KXM4 placement, projection;
        kx_look_at(&a, &b, &up, &placement, nullptr);
        kx_perspective(u, 1.5f, u, 100.0f, depth, &projection);
        KX_CHECK_IN_C(kx_screen_to_ray, &projection, &placement, a.x, a.y, 64.0f, 48.0f);
        KX_CHECK_IN_C(kx_fit_mesh, &box, nullptr);
        const KXP3 corners[3] = {a, b, up};
        KX_CHECK_IN_C(kx_triangle, corners, 0U, 1U, 2U);
        const KXRay ray = {a, b};
        const KXLine line = {a, b};
        KX_CHECK_IN_C(kx_ray_parameter, &ray, &up);
        KX_CHECK_IN_C(kx_line_parameter, &line, &up);
        KXTriangle triangle;
        kx_triangle(corners, 0, 1, 2, &triangle);
        std::array<float, 3> wanted = {}, got = {};
        kx_barycentric_in_c(&triangle, corners, &inside, wanted.data());
        kx_barycentric(&triangle, corners, &inside, got.data());
        check_same("kx_barycentric", wanted, got);
        for (const float weight : got) {
            digests["kx_barycentric"].result(static_cast<double>(weight));
        }
    }
    const std::pair<const char *, std::uint32_t> wanted[] = {
        {"kx_barycentric", 0x0ae06400U},    {"kx_distance", 0xdbf17972U},
        {"kx_divide_by_w", 0x64c7a1f3U},    {"kx_dot", 0x959ab048U},
        {"kx_fit_mesh", 0x7779978cU},       {"kx_lerp", 0xadfa567aU},
        {"kx_line_parameter", 0x57bb9a77U}, {"kx_look_at", 0x95f1b3c4U},
        {"kx_orthographic", 0xd265e450U},   {"kx_perspective", 0x630a7ae0U},
        {"kx_quat_conjugate", 0x4074d07dU}, {"kx_quat_normalise", 0x4789791aU},
        {"kx_quat_product", 0xb8e9fd45U},   {"kx_quat_rotate", 0xd337be60U},
        {"kx_quat_slerp", 0x1c6c66d7U},     {"kx_ray_parameter", 0xe1821896U},
        {"kx_screen_to_ray", 0x5469e5cdU},  {"kx_triangle", 0x78b793e1U}};
    for (const auto &of : wanted) {
        CHECK_MESSAGE(static_cast<std::uint32_t>(digests[of.first].value()) == of.second, of.first);
    }
}
