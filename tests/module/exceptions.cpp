/*
 * A host may have unmasked floating-point exceptions. Where a function guards against a division by
 * zero, or a root or an arcsine of nothing, the guarded path must not raise the flag either: a
 * compiler that computes a quotient ahead of its guard, to throw it away, is found here.
 */
#include "support/check.h"

#include <cfenv>
#include <limits>

using namespace test;

static void check_quiet(const char *label, void (*call)())
{
    std::feclearexcept(FE_ALL_EXCEPT);
    call();
    const int raised = std::fetestexcept(FE_DIVBYZERO | FE_INVALID);
    CHECK_MESSAGE((raised & FE_DIVBYZERO) == 0, label, " divides by zero");
    CHECK_MESSAGE((raised & FE_INVALID) == 0, label, " raises an invalid operation");
}

static const KXV3 zero = {0, 0, 0};
static const KXV3 up = {0, 1, 0};
static const KXP3 corners[3] = {{0, 0, 0}, {0, 1, 0}, {1, 0, 0}};
static const KXBox box = {{0, 0, 0}, {1, 1, 1}};
static KXV3 vector;
static KXM4 matrix;

static KXTriangle triangle_of(std::uint32_t a, std::uint32_t b, std::uint32_t c)
{
    KXTriangle triangle = {};
    triangle.corner[0].vertex = a;
    triangle.corner[1].vertex = b;
    triangle.corner[2].vertex = c;
    triangle.plane = {0, 0, 1, 0};
    return triangle;
}

static void cast_down(const KXTriangle &triangle)
{
    const KXLine line = {{0, 0, 1}, {0, 0, -1}};
    const KXRay ray = {{0, 0, 1}, {0, 0, -1}};
    KXLineIxTriangle(&line, &triangle, corners, &vector);
    KXRayIxTriangle(&ray, &triangle, corners, &vector);
}

TEST_CASE("Guarded paths raise neither division by zero nor an invalid operation")
{
    check_quiet("normalising nothing", [] { KXV3Normalise(&zero, &vector); });
    check_quiet("scaling nothing", [] {
        vector = zero;
        KXV3Scale(&vector, 5);
    });
    check_quiet("a perpendicular to nothing", [] { KXV3Perpendicular(&zero, &vector); });
    check_quiet("a perpendicular to Y", [] { KXV3Perpendicular(&up, &vector); });
    check_quiet("the orthogonality of nothing", [] {
        matrix = {};
        KXM4IsOrthogonal(&matrix);
    });
    check_quiet("the inverse of nothing, by both methods", [] {
        const KXM3 block = {};
        KXM3 out;
        KXM3Inverse(&block, &out);
        const KXM4 nothing = {};
        KXM4Inverse(&nothing, &matrix);
    });
    check_quiet("a view with no plane", [] {
        const KXPosition still = {};
        KXM4Projection1(&matrix, &still, 0, 1, 1);
    });
    check_quiet("a ray of no direction", [] {
        const KXRay ray = {{0.5f, 0.5f, 0.5f}, zero};
        KXRay out;
        matrix = {};
        KXTransformRay(&ray, &matrix, &out);
        KXRayIxBox(&ray, &box, &vector);
    });
    check_quiet("rays and lines along each axis", [] {
        const KXRay rays[3] = {{{-1, 0.5f, 0.5f}, {4, 0, 0}},
                               {{0.5f, -1, 0.5f}, {0, 4, 0}},
                               {{0.5f, 0.5f, -1}, {0, 0, 4}}};
        for (const KXRay &ray : rays) {
            KXLine line = {ray.origin, ray.origin};
            KXV3Combine(&ray.origin, &ray.direction, &line.end, 1, 1);
            KXRayIxBox(&ray, &box, &vector);
            KXLineIxBox(&line, &box, &vector);
        }
    });
    check_quiet("what need not be looked at any more may be NaN", [] {
        const KXRay ray = {{2, 0.5f, 0.5f}, {1, not_a_number, 1}};
        const KXLine beside = {{-1, 0.5f, 0.5f}, {-2, not_a_number, 0.5f}};
        const KXLine from_inside = {{0.5f, 0.5f, 0.5f}, {2, not_a_number, 2}};
        KXRayIxBox(&ray, &box, &vector);
        KXLineIxBox(&beside, &box, &vector);
        KXLineIxBox(&from_inside, &box, &vector);
    });
    check_quiet("the translation that directions leave out", [] {
        // Constants: to bring such a NaN here by x87 registers would raise the flag already.
        constexpr float unread = std::numeric_limits<float>::signaling_NaN();
        static constexpr KXM4 m = {{{1, 0, 0, unread}, {0, 1, 0, unread}, {0, 0, 1, unread}, {}}};
        static constexpr KXM3 plane = {{{1, 0, unread}, {0, 1, unread}, {}}};
        const KXP2 in_plane = {1, 2};
        KXP2 turned;
        KXM4P3I0(&m, &up, &vector);
        KXM4NP3I0(&m, 1, &up, &vector);
        KXM3P2I0(&plane, &in_plane, &turned);
        KXM3NP2I0(&plane, 1, &in_plane, &turned);
    });
    check_quiet("no point wanted, and none that would be valid", [] {
        const KXRay ray = {{0.5f, 0.5f, 0.5f}, {infinity, 1, 1}};
        KXRayIxBox(&ray, &box, nullptr);
    });
    check_quiet("a miss, on another axis than that of an infinite step", [] {
        const KXRay ray = {{0.5f, 2, 0.5f}, {infinity, 1, 1}};
        KXRayIxBox(&ray, &box, &vector);
    });
    check_quiet("a triangle without a plane", [] {
        KXTriangle triangle = triangle_of(0, 1, 2);
        triangle.plane = {0, 0, 0, 0};
        cast_down(triangle);
    });
    check_quiet("triangles with corners in one", [] {
        for (const auto &c :
             {std::array{0U, 0U, 0U}, {0U, 0U, 1U}, {0U, 1U, 1U}, {0U, 2U, 2U}, {0U, 0U, 2U}}) {
            cast_down(triangle_of(c[0], c[1], c[2]));
        }
    });
    check_quiet("a plane through one point", [] {
        KXPlane plane;
        KXPlaneEquation(&up, &up, &up, &plane);
    });
    check_quiet("measures of no distance", [] {
        float range, elevation, azimuth;
        KXPointsToREA(&up, &up, &range, &elevation, &azimuth);
        KXVectorToEA(&up, &elevation, &azimuth);
        KXBearing(&up, &up);
        KXRange(&up, &up);
    });
    check_quiet("an ordinary hit", [] { cast_down(triangle_of(0, 1, 2)); });
}
