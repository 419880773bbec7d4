#include "support/check.h"

using namespace test;

static float factor_of(KXUnit from, KXUnit to)
{
    float value = 1;
    KXChangeUnits(from, to, &value);
    return value;
}

TEST_CASE("The hundred factors")
{
    const double metres[10] = {0, 0.001, 0.01, 1, 1000, 0.0254, 0.3048, 0.9144, 1609.344, 1852};
    // FNV-1a over the singles in table order: holds the last bits, which the true ratios don't
    // give.
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (KXUnit from = 0; from < 10; ++from) {
        for (KXUnit to = 0; to < 10; ++to) {
            const float factor = factor_of(from, to);
            const bool no_unit = from == KX_UNIT_NONE || to == KX_UNIT_NONE;
            const double ratio = no_unit ? 1 : metres[from] / metres[to];
            CHECK_MESSAGE(factor / ratio == doctest::Approx(1).epsilon(1e-7), from, " to ", to);
            hash = (hash ^ bits_as<std::uint32_t>(factor)) * 0x100000001b3U;
        }
    }
    CHECK(hash == 0xeb0690b0fb5bdd22U);
}

TEST_CASE("Which floats of each record are lengths")
{
    for (KXUnit from = 0; from < 10; ++from) {
        for (KXUnit to = 0; to < 10; ++to) {
            const std::string label = std::to_string(from) + " to " + std::to_string(to);
            const float factor = factor_of(from, to);

            // Inputs 1, 2, 4 ... keep the wanted products exact.
            Guarded<KXP3> p3;
            p3.record = {1, -2, 4};
            KXP3ChangeUnits(from, to, &p3.record);
            p3.check(label, {factor, -2 * factor, 4 * factor});

            Guarded<KXP4> p4;
            p4.record = {1, 2, 4, 3};
            KXP4ChangeUnits(from, to, &p4.record);
            p4.check(label, {factor, 2 * factor, 4 * factor, 3});

            Guarded<KXBox> box;
            box.record = {{1, 2, 4}, {8, 16, 32}};
            KXBoxChangeUnits(from, to, &box.record);
            box.check(label, {{factor, 2 * factor, 4 * factor}, {8 * factor, 16 * factor, 32 * factor}});

            Guarded<KXPlane> plane;
            plane.record = {1, 2, 3, 4};
            KXPlaneChangeUnits(from, to, &plane.record);
            plane.check(label, {1, 2, 3, 4 * factor});

            Guarded<KXM4> m;
            KXM4 wanted = m.record;
            for (int r = 0; r < 3; ++r) {
                m.record.m[r][3] = static_cast<float>(1 << r);
                wanted.m[r][3] = static_cast<float>(1 << r) * factor;
            }
            KXM4ChangeUnits(from, to, &m.record);
            m.check(label, wanted);
        }
    }
}

TEST_CASE("2 mm in m is 2 times the single 0.001")
{
    Guarded<float> length;
    length.record = 2;
    KXChangeUnits(KX_UNIT_MILLIMETRE, KX_UNIT_METRE, &length.record);
    length.check("2 mm", 0.0020000000949949026f);
}

template <typename Record>
static void check_array(void (*convert)(KXUnit, KXUnit, std::uint32_t, Record *), void (*convert_one)(KXUnit, KXUnit, Record *))
{
    Random random;
    Guarded<std::array<Record, 5>> array;
    array.record = random.record<std::array<Record, 5>>(100);
    auto wanted = array.record;
    convert(KX_UNIT_MILE, KX_UNIT_INCH, 0, array.record.data());
    array.check("count 0", wanted);
    for (std::size_t i = 0; i < 3; ++i) {
        convert_one(KX_UNIT_MILE, KX_UNIT_INCH, &wanted[i]);
    }
    convert(KX_UNIT_MILE, KX_UNIT_INCH, 3, array.record.data());
    array.check("3 of 5", wanted);
    convert(KX_UNIT_MILE, KX_UNIT_INCH, 0, nullptr);
}

TEST_CASE("Arrays: each record as the single form does it, and no further than the count")
{
    check_array(KXP3ChangeNUnits, KXP3ChangeUnits);
    check_array(KXP4ChangeNUnits, KXP4ChangeUnits);
    check_array(KXPlaneChangeNUnits, KXPlaneChangeUnits);
}
