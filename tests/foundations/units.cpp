#include "support/rows.h"

#include <algorithm>

using namespace test;

static float factor_of(KXUnit from, KXUnit to)
{
    float value = 1;
    KXChangeUnits(from, to, &value);
    return value;
}

/** The ratio of the units as a single, but for four entries, which are off by their last bit. */
static float wanted_factor(KXUnit from, KXUnit to)
{
    const double metres[10] = {0, 0.001, 0.01, 1, 1000, 0.0254, 0.3048, 0.9144, 1609.344, 1852};
    struct Entry {
        KXUnit from, to;
        float factor;
    };
    const Entry entries[] = {
        {KX_UNIT_MILLIMETRE, KX_UNIT_FOOT, 0.00328084f},
        {KX_UNIT_MILLIMETRE, KX_UNIT_YARD, 0.0010936132f},
        {KX_UNIT_CENTIMETRE, KX_UNIT_MILE, 6.2137115e-6f},
        {KX_UNIT_KILOMETRE, KX_UNIT_FOOT, 3280.84f},
    };
    for (const Entry &entry : entries) {
        if (entry.from == from && entry.to == to) {
            return entry.factor;
        }
    }
    const bool no_unit = from == KX_UNIT_NONE || to == KX_UNIT_NONE;
    return no_unit ? 1 : static_cast<float>(metres[from] / metres[to]);
}

TEST_CASE("The hundred factors")
{
    for (KXUnit from = 0; from < 10; ++from) {
        for (KXUnit to = 0; to < 10; ++to) {
            check_same(std::to_string(from) + " to " + std::to_string(to), wanted_factor(from, to),
                       factor_of(from, to));
        }
    }
}

/** lengths: an 'L' for every float of the record that is one, anything else for the rest. */
template <typename Record>
static void check_lengths(const std::string &lengths, void (*convert)(KXUnit, KXUnit, Record *))
{
    REQUIRE(lengths.size() == sizeof(Record) / 4);
    for (KXUnit unit = 0; unit < 10; ++unit) {
        Random random;
        const auto given = random.record<Record>(100);
        auto wanted = bits_as<std::array<float, sizeof(Record) / 4>>(given);
        for (std::size_t i = 0; i < wanted.size(); ++i) {
            if (lengths[i] == 'L') {
                KXChangeUnits(unit, KX_UNIT_FOOT, &wanted[i]);
            }
        }
        rows_of<outputs_are_read>(convert)(lengths, unit, KX_UNIT_FOOT, given,
                                           bits_as<Record>(wanted));
    }
}

TEST_CASE("Which floats of each record are lengths")
{
    check_lengths("LLL", KXP3ChangeUnits);
    check_lengths("LLL.", KXP4ChangeUnits);
    check_lengths("LLLLLL", KXBoxChangeUnits);
    check_lengths("...L", KXPlaneChangeUnits);
    check_lengths("...L...L...L....", KXM4ChangeUnits);
}

TEST_CASE("2 mm in m is 2 times the single 0.001")
{
    rows_of<outputs_are_read>(KXChangeUnits)("2 mm", KX_UNIT_MILLIMETRE, KX_UNIT_METRE, 2,
                                             0.0020000000949949026f);
}

template <typename Record>
static void check_array(void (*convert)(KXUnit, KXUnit, std::uint32_t, Record *),
                        void (*convert_one)(KXUnit, KXUnit, Record *))
{
    Random random;
    for (const std::uint32_t count : array_counts()) {
        std::vector<Record> converted(count + 1);
        std::generate(converted.begin(), converted.end(),
                      [&random] { return random.record<Record>(100); });
        std::vector<Record> wanted = converted;
        for (std::uint32_t i = 0; i < count; ++i) {
            convert_one(KX_UNIT_MILE, KX_UNIT_INCH, &wanted[i]);
        }
        convert(KX_UNIT_MILE, KX_UNIT_INCH, count, converted.data());
        check_same("count " + std::to_string(count), wanted, converted);
    }
    convert(KX_UNIT_MILE, KX_UNIT_INCH, 0, nullptr);
}

TEST_CASE("Arrays: each record as the single form does it, and no further than the count")
{
    check_array(KXP3ChangeNUnits, KXP3ChangeUnits);
    check_array(KXP4ChangeNUnits, KXP4ChangeUnits);
    check_array(KXPlaneChangeNUnits, KXPlaneChangeUnits);
}
