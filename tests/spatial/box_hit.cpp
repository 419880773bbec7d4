#include "support/rows.h"

using namespace test;

static const KXP3 untouched = marked<KXP3>();
static const KXBox unit = {{0, 0, 0}, {1, 1, 1}};
static const KXBox inverted = {{1, 0, 0}, {0, 1, 1}};
static const KXBox flat = {{0, 0, 0}, {0, 1, 1}};
static const KXBox dot = {{0, 0, 0}, {0, 0, 0}};

/**
 * x as it is, y halved and z quartered, all times sign: exact, and no axis looks like another. What
 * is not written stays so.
 */
template <typename Record>
static Record stretched(const Record &record, float sign)
{
    auto floats = bits_as<std::array<float, sizeof(Record) / 4>>(record);
    const float factors[3] = {sign, sign * 0.5f, sign * 0.25f};
    for (std::size_t i = 0; i < floats.size(); ++i) {
        floats[i] *= bits_as<std::uint32_t>(floats[i]) == marker ? 1 : factors[i % 3];
    }
    return bits_as<Record>(floats);
}

/** One row. Path is KXLine, with its end, or KXRay, with its direction. */
template <typename Path>
struct Checks {
    std::int32_t (*meets)(const Path *, const KXBox *, KXP3 *);

    void operator()(const std::string &label, const KXBox &box, const Path &path,
                    std::int32_t verdict, const KXP3 &point) const
    {
        rows_of(meets)(label, path, box, verdict, point);
        rows_of(meets)(label + ", stretched", stretched(path, 1), stretched(box, 1), verdict,
                       stretched(point, 1));
        const Path mirrored_path = stretched(path, -1);
        const KXBox back = stretched(box, -1), mirrored_box = {back.maximum, back.minimum};
        KXP3 mirrored_point = untouched;
        CHECK_MESSAGE(meets(&mirrored_path, &mirrored_box, &mirrored_point) == verdict, label,
                      ", mirrored");
        const KXP3 wanted = stretched(point, -1);
        const bool same = mirrored_point.x == wanted.x && mirrored_point.y == wanted.y &&
                          mirrored_point.z == wanted.z;
        CHECK_MESSAGE(same, label, ", mirrored: another point"); // but for the sign of a zero
    }
    /** Where the path's start is the point. */
    void operator()(const char *label, const KXBox &box, const Path &path,
                    std::int32_t verdict) const
    {
        (*this)(label, box, path, verdict, bits_as<std::array<KXP3, 2>>(path)[0]);
    }
};

static const KXBox uneven = {{1, 3, 5}, {2, 4, 7}};

TEST_CASE("KXLineIxBox")
{
    const Checks<KXLine> check = {KXLineIxBox};
    check("uneven", uneven, {{0, 0, 0}, {2, 5, 8}}, 1, {1.25f, 3.125f, 5});
    check("uneven, outside along z", uneven, {{1.5f, 3.5f, 4}, {2, 4, 6}}, 1, {1.75f, 3.75f, 5});
    check("uneven, inside along z", uneven, {{1.5f, 3.5f, 5.5f}, {1.6f, 3.6f, 5.6f}}, 1);
    check("beyond faces along x and y", uneven, {{0, 0, 6}, {0.5f, 1, 6.5f}}, 0, untouched);
    check("beyond faces along y and z", uneven, {{1.5f, 0, 0}, {1.6f, 1, 1}}, 0, untouched);
    check("inverted box", inverted, {{-1, 0.5f, 0.5f}, {2, 0.5f, 0.5f}}, 0, untouched);
    check("flat box", flat, {{-1, 0.4f, 0.5f}, {1, 0.6f, 0.7f}}, 1, {0, 0.5f, 0.6f});
    check("box of one point", dot, {{-1, -1, -1}, {1, 1, 1}}, 1, {0, 0, 0});
    check("no length, inside", unit, {{0.5f, 0.5f, 0.5f}, {0.5f, 0.5f, 0.5f}}, 1);
    check("no length, outside", unit, {{1.5f, 0.5f, 0.5f}, {1.5f, 0.5f, 0.5f}}, 0, untouched);
    check("both below x", unit, {{-2, 0.5f, 0.5f}, {-1, 0.6f, 0.7f}}, 0, untouched);
    check("both below y", unit, {{0.2f, -2, 0.5f}, {0.3f, -1, 0.6f}}, 0, untouched);
    check("both below z", unit, {{0.2f, 0.5f, -2}, {0.3f, 0.6f, -1}}, 0, untouched);
    check("both above x", unit, {{2, 0.5f, 0.5f}, {3, 0.6f, 0.6f}}, 0, untouched);
    check("both above y", unit, {{-1, 5, 0.5f}, {2, 5, 0.5f}}, 0, untouched);
    check("both above z", unit, {{0.2f, 0.5f, 2}, {0.3f, 0.6f, 3}}, 0, untouched);
    check("from inside", unit, {{0.5f, 0.5f, 0.5f}, {2, 2, 2}}, 1);
    check("leaves a lower face", unit, {{0, 0.5f, 0.5f}, {-2, 3, 4}}, 1);
    check("leaves the upper corner", unit, {{1, 1, 1}, {2, 3, 4}}, 1);
    check("through a lower face", unit, {{-1, 0.2f, 0.3f}, {2, 0.5f, 0.6f}}, 1, {0, 0.3f, 0.4f});
    check("through the top", unit, {{0.5f, 0.6f, 3}, {0.3f, 0.4f, -1}}, 1, {0.4f, 0.5f, 1});
    check("ends on a lower face", unit, {{-2, 0.3f, 0.4f}, {0, 0.5f, 0.6f}}, 1, {0, 0.5f, 0.6f});
    check("ends on the lower z face", unit, {{0.3f, 0.4f, -2}, {0.5f, 0.6f, 0}}, 1,
          {0.5f, 0.6f, 0});
    check("ends on the upper x face", unit, {{3, 0.3f, 0.4f}, {1, 0.5f, 0.6f}}, 1, {1, 0.5f, 0.6f});
    check("ends on the upper z face", unit, {{0.3f, 0.4f, 3}, {0.5f, 0.6f, 1}}, 1, {0.5f, 0.6f, 1});
    check("an end short of the box", unit, {{-2, 0.3f, -0.4f}, {-0.01f, 0.5f, 0.6f}}, 0, untouched);
    check("past one slab, short of another", unit, {{-1, -3, 0.5f}, {0.5f, -0.5f, 0.6f}}, 0,
          untouched);
    check("a corner first", unit, {{-1, -1, -1}, {2, 2, 2}}, 1, {0, 0, 0});
    check("touches an edge", unit, {{-1, 1, 0.5f}, {1, -1, 0.6f}}, 1, {0, 0, 0.55f});
    check("passes an edge", unit, {{-1, 0.25f, -1}, {2, 3.25f, 2}}, 0);
    check("a step rounded down ends short", {{0.5f, 0, 0}, {1, 1, 1}},
          {{-16777216, 0.2f, 0.3f}, {1, 0.4f, 0.5f}}, 0);
    check("from y, starting on x", unit, {{0, -1, 0.3f}, {1, 1, 0.5f}}, 1, {0.5f, 0, 0.4f});
    check("ends on y, z entered before", unit, {{0.3f, -0.5f, -3}, {0.5f, 0, 0.5f}}, 1,
          {0.5f, 0, 0.5f});
    check("enters beyond its end", {{0, 0, 0}, {1, 1, 1}}, {{-1, 2, 0.5f}, {1.5f, 0.9f, 0.6f}}, 0);
    check("y settles", unit, {{-1, 0.5f, 0.5f}, {2, 0.5f, 0.5f}}, 1);
    check("x settles", unit, {{0.5f, -1, 0.5f}, {0.5f, 2, 0.5f}}, 1);
    check("z settles", unit, {{-1, -1, 0.5f}, {2, 2, 0.5f}}, 1);
    check("rejected before z settles", unit, {{-1, 0.25f, 0.5f}, {2, 3.25f, 0.5f}}, 0);
    check("x settles, y and z not looked at", unit, {{0.5f, -1, 0.5f}, {0.5f, 0.5f, -1}}, 1);
    check("straddles the lower face", unit, {{-4e-07f, 0.5f, 0.5f}, {4e-07f, 0.6f, 0.7f}}, 0);
    check("straddles the upper face", unit, {{0.5f, 1.0000004f, 0.5f}, {0.6f, 0.9999996f, 0.7f}},
          0);
    check("from infinity, y settles", unit, {{-infinity, 0.5f, 0.5f}, {2, 0.5f, 0.5f}}, 1);
    check("to infinity, y settles", unit, {{-1, 0.5f, 0.5f}, {infinity, 0.5f, 0.5f}}, 1);
    check("to infinity along y, x settles", unit, {{0.5f, -1, 0.5f}, {0.5f, infinity, 0.5f}}, 1);
    check("to infinity along z, x settles", unit, {{0.5f, 0.5f, -1}, {0.5f, 0.5f, infinity}}, 1);
    check("to -infinity along x", unit, {{-1, 0.5f, 0.5f}, {-infinity, 0.5f, 0.5f}}, 0, untouched);
    check("to -infinity along y", unit, {{0.5f, -1, 0.5f}, {0.5f, -infinity, 0.5f}}, 0, untouched);
    check("to -infinity along z", unit, {{0.5f, 0.5f, -1}, {0.5f, 0.5f, -infinity}}, 0, untouched);
    check("from infinity, inside y and z", unit, {{-infinity, 0.5f, 0.5f}, {2, 2, 3}}, 0);
    check("a step of the tolerance", unit, {{0, 2, 2}, {tolerance, -1, -1}}, 1,
          {3.33333332e-07f, 1, 1});
    check("a step below it", unit, {{0, 2, 2}, {below_tolerance, -1, -1}}, 1);
    check("products with a wide reciprocal", {{0, 1, 0}, {2, 3, 1}}, {{5, 4, -6}, {-2, -1, 4}}, 1,
          {0.800000012f, 1, 8.8817842e-16f});
    check("the step is single", {{-2.6f, 2.9f, 0}, {-0x1.999998p+0f, 2.9f, 1}},
          {{-2.2f, -0.8f, 4.6f}, {-1.8f, 4.5f, -1.8f}}, 1,
          {-1.92075467f, 2.9000001f, 0.132075667f});
    check("missed by a product", unit, {{-4.9f, -0.3f, -0.5f}, {1, 0, 0.9f}}, 0);
    check("met by a wide reciprocal", unit, {{-6, 4, 6}, {0, 0, 0.8f}}, 1, {0, 0, 0.800000191f});
    check("missed by wide parameters", unit, {{-5, -2, -3}, {7, 4, 6.6f}}, 0);
    check("met by a single step", unit, {{0, 5, -1}, {2, -7, 1.4f}}, 1,
          {0.833333313f, 1.98682145e-07f, 0});
}

TEST_CASE("KXLineIxBox: both ends beyond a face, on a line that isn't finite")
{
    // The point shows it: such a line leaves it as it was, any other stores its start.
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
                point.check("axis " + std::to_string(axis),
                            &end == &ends[0] ? marked<KXP3>() : path.start);
            }
        }
    }
}

TEST_CASE("KXRayIxBox")
{
    const KXBox vast = {{-1e30f, -1e30f, -1e30f}, {1e30f, 1e30f, 1e30f}};
    const Checks<KXRay> check = {KXRayIxBox};
    check("uneven", uneven, {{0, 0, 0}, {1, 2.5f, 4}}, 1, {1.25f, 3.125f, 5});
    check("inverted box", inverted, {{-1, 0.5f, 0.5f}, {1, 0, 0}}, 0, untouched);
    check("flat box", flat, {{-1, 0.4f, 0.5f}, {1, 0.1f, 0.1f}}, 1, {0, 0.5f, 0.6f});
    check("box of one point", dot, {{-1, -1, -1}, {1, 1, 1}}, 1, {0, 0, 0});
    check("through a face", unit, {{-1, 0.2f, 0.3f}, {3, 0.3f, 0.3f}}, 1, {0, 0.3f, 0.4f});
    check("a short direction", unit, {{-1, 0.2f, 0.3f}, {0.1f, 0.01f, 0.01f}}, 1, {0, 0.3f, 0.4f});
    check("a parameter of 100000", unit, {{-100, 0.2f, 0.3f}, {0.001f, 4e-06f, 4e-06f}}, 1,
          {1.42108547e-14f, 0.599999964f, 0.7f});
    check("from inside: where it leaves", unit, {{0.5f, 0.5f, 0.5f}, {1, 0.5f, 0.25f}}, 1,
          {1, 0.75f, 0.625f});
    check("on a face, going in", unit, {{0, 0.5f, 0.5f}, {1, 0.2f, 0.2f}}, 1);
    check("on a face, going out", unit, {{1, 0.5f, 0.5f}, {1, 0.2f, 0.2f}}, 1);
    check("on a corner, going out", unit, {{1, 1, 1}, {1, 1, 1}}, 1);
    check("a corner first", unit, {{-1, -1, -1}, {1, 1, 1}}, 1, {0, 0, 0});
    check("a miss keeps the signs of zeros", {{1, 1, 1}, {2, 2, 2}},
          {{-0.0f, -0.0f, -0.0f}, {1, 0.25f, 1}}, 0);
    check("equal parameters: in through the minimum", {{-0.0f, 0, 0}, {0, 1, 1}},
          {{0, -0.0f, 0.5f}, {1, 1, 1}}, 1);
    check("behind along x", unit, {{2, 0.5f, 0.5f}, {1, 0.1f, 0.1f}}, 0);
    check("behind along z", unit, {{0.5f, 0.5f, 3}, {0.1f, 0.1f, 1}}, 0);
    check("misses", unit, {{-1, 3, 0.5f}, {1, 1, 0.1f}}, 0);
    check("no parameter beyond KX_HUGE, which is not the decimal", vast, {{0, 0, 0}, {1, 1, 9}}, 1,
          {KX_HUGE, KX_HUGE, 9.00000053e+20f});
    check("y settles", unit, {{-1, 0.5f, 0.5f}, {1, 0, 0}}, 1);
    check("y settles, z not looked at", unit, {{-1, 0.5f, 5}, {1, 0, 0}}, 1);
    check("y settles, outside", unit, {{-1, 5, 0.5f}, {1, 0, 0}}, 0);
    check("y settles on its face", unit, {{-1, 1, 0.5f}, {1, 0, 0}}, 1);
    check("x rejects before y settles", unit, {{-1, 0.5f, 0.5f}, {-1, 0, 0}}, 0);
    check("from inside, y settles", unit, {{0.5f, 0.5f, 0.5f}, {1, 0, 0}}, 1);
    check("x settles, pointing away in y", unit, {{0.5f, 2, 0.5f}, {0, 1, 0}}, 1);
    check("z settles", unit, {{-1, -1, 0.5f}, {1, 1, 0}}, 1);
    check("z settles, outside", unit, {{-1, -1, 5}, {1, 1, 0}}, 0);
    check("z settles between other faces", {{2, 2.5f, -1}, {3, 2.8f, 1}}, {{0, 0, 0}, {1, 1, 0}},
          1);
    check("z settles above it", {{2, 2.5f, -1}, {3, 2.8f, 1}}, {{0, 0, 1.5f}, {1, 1, 0}}, 0);
    check("x and y apart before z settles", {{2, 4, -1}, {3, 5, 1}}, {{0, 0, 0}, {1, 1, 0}}, 0);
    check("a step of the tolerance, z settles", {{-1, 4, -1}, {1, 5, 1}},
          {{0, 0, 9}, {tolerance, 1, 0}}, 0);
    check("slabs apart before z settles", unit, {{-1, 1.5f, 0.5f}, {1, 3, 0}}, 0);
    check("no direction, x between the faces", unit, {{0.5f, 5, 5}, {0, 0, 0}}, 1);
    check("no direction, x outside", unit, {{5, 0.5f, 0.5f}, {0, 0, 0}}, 0);
    check("from infinity", unit, {{-infinity, 0.5f, 0.5f}, {1, 1, 1}}, 0);
    check("a step of the tolerance", unit, {{0.5f, 5, 5}, {tolerance, 1, 1}}, 0);
    check("a step below it", unit, {{0.5f, 5, 5}, {below_tolerance, 1, 1}}, 1);
    check("products with a wide reciprocal", unit, {{-3, -2, -3}, {6, 4, 5}}, 1,
          {0.600000024f, 0.400000006f, 4.4408921e-16f});
    check("a contact next to a face is not moved to it", {{-0.3f, -0.6f, 0.3f}, {1.8f, 0, 2.9f}},
          {{-1.5f, 3.6f, 4.1f}, {7.9f, -9.5f, -3.9f}}, 1,
          {1.49368417f, 4.4408921e-16f, 2.62210512f});
    check("missed by a product", unit, {{2.7f, 0.9f, -0.3f}, {-1.7f, -0.9f, 1.2f}}, 0);
    check("met by a wide reciprocal", unit, {{4, 0, -5}, {-4, 1, 5}}, 1, {0, 1, 0});
    check("missed by wide parameters", unit, {{-4.6f, 2.9f, 2.1f}, {4.6f, -2.9f, -0x1.666664p+0f}},
          0);
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
