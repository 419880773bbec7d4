#include "support/check.h"

using namespace test;

static const KXP3 untouched = marked<KXP3>();
static const KXBox unit = {{0, 0, 0}, {1, 1, 1}};
static const KXBox inverted = {{1, 0, 0}, {0, 1, 1}};
static const KXBox flat = {{0, 0, 0}, {0, 1, 1}};
static const KXBox dot = {{0, 0, 0}, {0, 0, 0}};
static constexpr float still = 0x1.0c6f78p-20f; // the single below the tolerance

/** Path is KXLine, with its end, or KXRay, with its direction. */
template <typename Path>
struct Row { const char *label; KXBox box; Path path; std::int32_t verdict; KXP3 point; };

template <typename Path>
using Meets = std::int32_t (*)(const Path *, const KXBox *, KXP3 *);

/** x as it is, y halved and z quartered, all times sign: exact, and no axis looks like another. */
template <typename Record>
static Record stretched(const Record &record, float sign)
{
    auto floats = bits_as<std::array<float, sizeof(Record) / 4>>(record);
    const float factors[3] = {sign, sign * 0.5f, sign * 0.25f};
    for (std::size_t i = 0; i < floats.size(); ++i) {
        floats[i] *= factors[i % 3];
    }
    return bits_as<Record>(floats);
}

template <typename Path>
static void check_row(const Row<Path> &row, Meets<Path> meets)
{
    const std::string label = row.label;
    Guarded<KXP3> point;
    CHECK_MESSAGE(meets(&row.path, &row.box, &point.record) == row.verdict, label);
    point.check(label, row.point);
    CHECK_MESSAGE(meets(&row.path, &row.box, nullptr) == row.verdict, label, ", no point");

    const Path path = stretched(row.path, 1), mirrored_path = stretched(row.path, -1);
    const KXBox box = stretched(row.box, 1), back = stretched(row.box, -1), mirrored_box = {back.maximum, back.minimum};
    KXP3 mirrored_point = stretched(untouched, -1);
    point.record = stretched(untouched, 1);
    CHECK_MESSAGE(meets(&path, &box, &point.record) == row.verdict, label, ", stretched");
    point.check(label + ", stretched", stretched(row.point, 1));
    CHECK_MESSAGE(meets(&mirrored_path, &mirrored_box, &mirrored_point) == row.verdict, label, ", mirrored");
    const KXP3 wanted = stretched(row.point, -1);
    const bool same = mirrored_point.x == wanted.x && mirrored_point.y == wanted.y && mirrored_point.z == wanted.z;
    CHECK_MESSAGE(same, label, ", mirrored: another point"); // but for the sign of a zero
}

static const KXBox uneven = {{1, 3, 5}, {2, 4, 7}};

TEST_CASE("KXLineIxBox")
{
    const Row<KXLine> rows[] = {
        {"no face like another", uneven, {{0, 0, 0}, {2, 5, 8}}, 1, {1.25f, 3.125f, 5}},
        {"no face like another, outside along z", uneven, {{1.5f, 3.5f, 4}, {2, 4, 6}}, 1, {1.75f, 3.75f, 5}},
        {"no face like another, inside along z", uneven, {{1.5f, 3.5f, 5.5f}, {1.6f, 3.6f, 5.6f}}, 1, {1.5f, 3.5f, 5.5f}},
        {"beyond a face along x and one along y", uneven, {{0, 0, 6}, {0.5f, 1, 6.5f}}, 0, untouched},
        {"beyond a face along y and one along z", uneven, {{1.5f, 0, 0}, {1.6f, 1, 1}}, 0, untouched},
        {"inverted box", inverted, {{-1, 0.5f, 0.5f}, {2, 0.5f, 0.5f}}, 0, untouched},
        {"flat box", flat, {{-1, 0.4f, 0.5f}, {1, 0.6f, 0.7f}}, 1, {0, 0.5f, 0.6f}},
        {"box of one point", dot, {{-1, -1, -1}, {1, 1, 1}}, 1, {0, 0, 0}},
        {"no length, inside", unit, {{0.5f, 0.5f, 0.5f}, {0.5f, 0.5f, 0.5f}}, 1, {0.5f, 0.5f, 0.5f}},
        {"no length, outside", unit, {{1.5f, 0.5f, 0.5f}, {1.5f, 0.5f, 0.5f}}, 0, untouched},
        {"both below x", unit, {{-2, 0.5f, 0.5f}, {-1, 0.6f, 0.7f}}, 0, untouched},
        {"both below y", unit, {{0.2f, -2, 0.5f}, {0.3f, -1, 0.6f}}, 0, untouched},
        {"both below z", unit, {{0.2f, 0.5f, -2}, {0.3f, 0.6f, -1}}, 0, untouched},
        {"both above x", unit, {{2, 0.5f, 0.5f}, {3, 0.6f, 0.6f}}, 0, untouched},
        {"both above y", unit, {{-1, 5, 0.5f}, {2, 5, 0.5f}}, 0, untouched},
        {"both above z", unit, {{0.2f, 0.5f, 2}, {0.3f, 0.6f, 3}}, 0, untouched},
        {"an inside start is the contact", unit, {{0.5f, 0.5f, 0.5f}, {2, 2, 2}}, 1, {0.5f, 0.5f, 0.5f}},
        {"a start on a lower face, leaving", unit, {{0, 0.5f, 0.5f}, {-2, 3, 4}}, 1, {0, 0.5f, 0.5f}},
        {"a start on the upper corner, leaving", unit, {{1, 1, 1}, {2, 3, 4}}, 1, {1, 1, 1}},
        {"through a lower face", unit, {{-1, 0.2f, 0.3f}, {2, 0.5f, 0.6f}}, 1, {0, 0.3f, 0.4f}},
        {"through the top", unit, {{0.5f, 0.6f, 3}, {0.3f, 0.4f, -1}}, 1, {0.4f, 0.5f, 1}},
        {"an end on a lower face", unit, {{-2, 0.3f, 0.4f}, {0, 0.5f, 0.6f}}, 1, {0, 0.5f, 0.6f}},
        {"an end on the lower z face", unit, {{0.3f, 0.4f, -2}, {0.5f, 0.6f, 0}}, 1, {0.5f, 0.6f, 0}},
        {"an end on the upper x face", unit, {{3, 0.3f, 0.4f}, {1, 0.5f, 0.6f}}, 1, {1, 0.5f, 0.6f}},
        {"an end on the upper z face", unit, {{0.3f, 0.4f, 3}, {0.5f, 0.6f, 1}}, 1, {0.5f, 0.6f, 1}},
        {"an end short of the box", unit, {{-2, 0.3f, -0.4f}, {-0.01f, 0.5f, 0.6f}}, 0, untouched},
        {"an end past one slab and short of another", unit, {{-1, -3, 0.5f}, {0.5f, -0.5f, 0.6f}}, 0, untouched},
        {"a corner first", unit, {{-1, -1, -1}, {2, 2, 2}}, 1, {0, 0, 0}},
        {"touches an edge", unit, {{-1, 1, 0.5f}, {1, -1, 0.6f}}, 1, {0, 0, 0.55f}},
        {"passes an edge", unit, {{-1, 0.25f, -1}, {2, 3.25f, 2}}, 0, {-1, 0.25f, -1}},
        {"a step rounded down ends short", {{0.5f, 0, 0}, {1, 1, 1}}, {{-16777216, 0.2f, 0.3f}, {1, 0.4f, 0.5f}}, 0,
         {-16777216, 0.2f, 0.3f}},
        {"from y, starting on x", unit, {{0, -1, 0.3f}, {1, 1, 0.5f}}, 1, {0.5f, 0, 0.4f}},
        {"ends on y, z entered before", unit, {{0.3f, -0.5f, -3}, {0.5f, 0, 0.5f}}, 1, {0.5f, 0, 0.5f}},
        {"enters beyond its end", {{0, 0, 0}, {1, 1, 1}}, {{-1, 2, 0.5f}, {1.5f, 0.9f, 0.6f}}, 0, {-1, 2, 0.5f}},
        {"y settles", unit, {{-1, 0.5f, 0.5f}, {2, 0.5f, 0.5f}}, 1, {-1, 0.5f, 0.5f}},
        {"x settles", unit, {{0.5f, -1, 0.5f}, {0.5f, 2, 0.5f}}, 1, {0.5f, -1, 0.5f}},
        {"z settles", unit, {{-1, -1, 0.5f}, {2, 2, 0.5f}}, 1, {-1, -1, 0.5f}},
        {"rejected before z settles", unit, {{-1, 0.25f, 0.5f}, {2, 3.25f, 0.5f}}, 0, {-1, 0.25f, 0.5f}},
        {"x settles, y and z not compared", unit, {{0.5f, -1, 0.5f}, {0.5f, 0.5f, -1}}, 1, {0.5f, -1, 0.5f}},
        {"straddles a face by next to nothing", unit, {{-4e-07f, 0.5f, 0.5f}, {4e-07f, 0.6f, 0.7f}}, 0, {-4e-07f, 0.5f, 0.5f}},
        {"straddles the other face", unit, {{0.5f, 1.0000004f, 0.5f}, {0.6f, 0.9999996f, 0.7f}}, 0, {0.5f, 1.0000004f, 0.5f}},
        {"from infinity, y settles", unit, {{-infinity, 0.5f, 0.5f}, {2, 0.5f, 0.5f}}, 1, {-infinity, 0.5f, 0.5f}},
        {"to infinity, y settles", unit, {{-1, 0.5f, 0.5f}, {infinity, 0.5f, 0.5f}}, 1, {-1, 0.5f, 0.5f}},
        {"to infinity along y, x settles", unit, {{0.5f, -1, 0.5f}, {0.5f, infinity, 0.5f}}, 1, {0.5f, -1, 0.5f}},
        {"to infinity along z, x settles", unit, {{0.5f, 0.5f, -1}, {0.5f, 0.5f, infinity}}, 1, {0.5f, 0.5f, -1}},
        {"away to infinity below x", unit, {{-1, 0.5f, 0.5f}, {-infinity, 0.5f, 0.5f}}, 0, untouched},
        {"away to infinity below y", unit, {{0.5f, -1, 0.5f}, {0.5f, -infinity, 0.5f}}, 0, untouched},
        {"away to infinity below z", unit, {{0.5f, 0.5f, -1}, {0.5f, 0.5f, -infinity}}, 0, untouched},
        {"from infinity, within y and z at first", unit, {{-infinity, 0.5f, 0.5f}, {2, 2, 3}}, 0, {-infinity, 0.5f, 0.5f}},
        {"a step equal to the tolerance", unit, {{0, 2, 2}, {tolerance, -1, -1}}, 1, {3.33333332e-07f, 1, 1}},
        {"a step below it", unit, {{0, 2, 2}, {still, -1, -1}}, 1, {0, 2, 2}},
        {"products with a wide reciprocal", {{0, 1, 0}, {2, 3, 1}}, {{5, 4, -6}, {-2, -1, 4}}, 1,
         {0.800000012f, 1, 8.8817842e-16f}},
        {"the step is single", {{-2.6f, 2.9f, 0}, {-0x1.999998p+0f, 2.9f, 1}}, {{-2.2f, -0.8f, 4.6f}, {-1.8f, 4.5f, -1.8f}}, 1,
         {-1.92075467f, 2.9000001f, 0.132075667f}},
        {"an edge missed by a product", unit, {{-4.9f, -0.3f, -0.5f}, {1, 0, 0.9f}}, 0, {-4.9f, -0.3f, -0.5f}},
        {"an edge met by a wide reciprocal", unit, {{-6, 4, 6}, {0, 0, 0.8f}}, 1, {0, 0, 0.800000191f}},
        {"an edge missed by wide parameters", unit, {{-5, -2, -3}, {7, 4, 6.6f}}, 0, {-5, -2, -3}},
        {"an edge met by a single step", unit, {{0, 5, -1}, {2, -7, 1.4f}}, 1, {0.833333313f, 1.98682145e-07f, 0}},
    };
    for (const auto &row : rows) {
        check_row(row, KXLineIxBox);
    }
}

TEST_CASE("KXLineIxBox: both ends beyond a face, on a line that isn't finite")
{
    // The point tells: such a line leaves it as it was, and any other gets its start.
    const float faces[2][3] = {{1, 10, 100}, {2, 20, 200}};
    const KXBox box = {{1, 10, 100}, {2, 20, 200}};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        for (const bool high : {false, true}) {
            const float face = faces[high][axis], beyond = face * (high ? 1.01f : 0.99f);
            const float ends[3][2] = {{beyond, beyond}, {face, beyond}, {beyond, face}};
            for (const auto &end : ends) {
                std::array<float, 6> line = {1.5f, 15, 150, 1.5f, 15, 150};
                line[axis] = end[0];
                line[3 + axis] = end[1];
                line[3 + (axis + 1) % 3] = infinity;
                const auto path = bits_as<KXLine>(line);
                Guarded<KXP3> point;
                KXLineIxBox(&path, &box, &point.record);
                point.check("axis " + std::to_string(axis), &end == &ends[0] ? marked<KXP3>() : path.start);
            }
        }
    }
}

TEST_CASE("KXRayIxBox")
{
    const KXBox vast = {{-1e30f, -1e30f, -1e30f}, {1e30f, 1e30f, 1e30f}};
    const Row<KXRay> rows[] = {
        {"no face like another", uneven, {{0, 0, 0}, {1, 2.5f, 4}}, 1, {1.25f, 3.125f, 5}},
        {"inverted box", inverted, {{-1, 0.5f, 0.5f}, {1, 0, 0}}, 0, untouched},
        {"flat box", flat, {{-1, 0.4f, 0.5f}, {1, 0.1f, 0.1f}}, 1, {0, 0.5f, 0.6f}},
        {"box of one point", dot, {{-1, -1, -1}, {1, 1, 1}}, 1, {0, 0, 0}},
        {"through a face", unit, {{-1, 0.2f, 0.3f}, {3, 0.3f, 0.3f}}, 1, {0, 0.3f, 0.4f}},
        {"a short direction", unit, {{-1, 0.2f, 0.3f}, {0.1f, 0.01f, 0.01f}}, 1, {0, 0.3f, 0.4f}},
        {"a parameter of 100000", unit, {{-100, 0.2f, 0.3f}, {0.001f, 4e-06f, 4e-06f}}, 1, {1.42108547e-14f, 0.599999964f, 0.7f}},
        {"from inside: the way out", unit, {{0.5f, 0.5f, 0.5f}, {1, 0.5f, 0.25f}}, 1, {1, 0.75f, 0.625f}},
        {"on a face, going in", unit, {{0, 0.5f, 0.5f}, {1, 0.2f, 0.2f}}, 1, {0, 0.5f, 0.5f}},
        {"on a face, going out", unit, {{1, 0.5f, 0.5f}, {1, 0.2f, 0.2f}}, 1, {1, 0.5f, 0.5f}},
        {"on a corner, going out", unit, {{1, 1, 1}, {1, 1, 1}}, 1, {1, 1, 1}},
        {"a corner first", unit, {{-1, -1, -1}, {1, 1, 1}}, 1, {0, 0, 0}},
        {"a miss keeps the signs of zeros", {{1, 1, 1}, {2, 2, 2}}, {{-0.0f, -0.0f, -0.0f}, {1, 0.25f, 1}}, 0, {-0.0f, -0.0f, -0.0f}},
        {"equal parameters: in through the minimum", {{-0.0f, 0, 0}, {0, 1, 1}}, {{0, -0.0f, 0.5f}, {1, 1, 1}}, 1, {0, -0.0f, 0.5f}},
        {"behind along x", unit, {{2, 0.5f, 0.5f}, {1, 0.1f, 0.1f}}, 0, {2, 0.5f, 0.5f}},
        {"behind along z", unit, {{0.5f, 0.5f, 3}, {0.1f, 0.1f, 1}}, 0, {0.5f, 0.5f, 3}},
        {"misses", unit, {{-1, 3, 0.5f}, {1, 1, 0.1f}}, 0, {-1, 3, 0.5f}},
        {"no parameter beyond KX_HUGE", vast, {{0, 0, 0}, {1, 1, 1}}, 1, {KX_HUGE, KX_HUGE, KX_HUGE}},
        {"y settles", unit, {{-1, 0.5f, 0.5f}, {1, 0, 0}}, 1, {-1, 0.5f, 0.5f}},
        {"y settles, z not looked at", unit, {{-1, 0.5f, 5}, {1, 0, 0}}, 1, {-1, 0.5f, 5}},
        {"y settles, outside", unit, {{-1, 5, 0.5f}, {1, 0, 0}}, 0, {-1, 5, 0.5f}},
        {"y settles on its face", unit, {{-1, 1, 0.5f}, {1, 0, 0}}, 1, {-1, 1, 0.5f}},
        {"x rejects before y settles", unit, {{-1, 0.5f, 0.5f}, {-1, 0, 0}}, 0, {-1, 0.5f, 0.5f}},
        {"from inside, y settles", unit, {{0.5f, 0.5f, 0.5f}, {1, 0, 0}}, 1, {0.5f, 0.5f, 0.5f}},
        {"x settles, pointing away in y", unit, {{0.5f, 2, 0.5f}, {0, 1, 0}}, 1, {0.5f, 2, 0.5f}},
        {"z settles", unit, {{-1, -1, 0.5f}, {1, 1, 0}}, 1, {-1, -1, 0.5f}},
        {"z settles, outside", unit, {{-1, -1, 5}, {1, 1, 0}}, 0, {-1, -1, 5}},
        {"z settles, in a box with no face like another", {{2, 2.5f, -1}, {3, 2.8f, 1}}, {{0, 0, 0}, {1, 1, 0}}, 1, {0, 0, 0}},
        {"z settles above it", {{2, 2.5f, -1}, {3, 2.8f, 1}}, {{0, 0, 1.5f}, {1, 1, 0}}, 0, {0, 0, 1.5f}},
        {"x and y apart before z settles", {{2, 4, -1}, {3, 5, 1}}, {{0, 0, 0}, {1, 1, 0}}, 0, {0, 0, 0}},
        {"a step equal to the tolerance before z settles", {{-1, 4, -1}, {1, 5, 1}}, {{0, 0, 9}, {tolerance, 1, 0}}, 0, {0, 0, 9}},
        {"slabs apart before z settles", unit, {{-1, 1.5f, 0.5f}, {1, 3, 0}}, 0, {-1, 1.5f, 0.5f}},
        {"no direction, x between the faces", unit, {{0.5f, 5, 5}, {0, 0, 0}}, 1, {0.5f, 5, 5}},
        {"no direction, x outside", unit, {{5, 0.5f, 0.5f}, {0, 0, 0}}, 0, {5, 0.5f, 0.5f}},
        {"from infinity", unit, {{-infinity, 0.5f, 0.5f}, {1, 1, 1}}, 0, {-infinity, 0.5f, 0.5f}},
        {"a step equal to the tolerance", unit, {{0.5f, 5, 5}, {tolerance, 1, 1}}, 0, {0.5f, 5, 5}},
        {"a step below it", unit, {{0.5f, 5, 5}, {still, 1, 1}}, 1, {0.5f, 5, 5}},
        {"products with a wide reciprocal", unit, {{-3, -2, -3}, {6, 4, 5}}, 1, {0.600000024f, 0.400000006f, 4.4408921e-16f}},
        {"an edge missed by a product", unit, {{2.7f, 0.9f, -0.3f}, {-1.7f, -0.9f, 1.2f}}, 0, {2.7f, 0.9f, -0.3f}},
        {"an edge met by a wide reciprocal", unit, {{4, 0, -5}, {-4, 1, 5}}, 1, {0, 1, 0}},
        {"an edge missed by wide parameters", unit, {{-4.6f, 2.9f, 2.1f}, {4.6f, -2.9f, -0x1.666664p+0f}}, 0,
         {-4.6f, 2.9f, 2.1f}},
    };
    for (const auto &row : rows) {
        check_row(row, KXRayIxBox);
    }
}

TEST_CASE("An infinite step is through at once")
{
    const KXLine line = {{0, 3.5f, 6}, {infinity, 3.6f, 6.1f}};
    const KXRay ray = {{0, 3.5f, 6}, {infinity, 1, 1}};
    KXP3 on_line = {}, on_ray = {};
    CHECK(KXLineIxBox(&line, &uneven, &on_line) == 1);
    CHECK(on_line.y == 3.5f);
    CHECK(KXRayIxBox(&ray, &uneven, &on_ray) == 1);
    CHECK(on_ray.y == 3.5f);
}
