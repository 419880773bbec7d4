#include "names.h"

#include "failure.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace example
{

namespace
{

struct UnitName {
    const char *symbol, *name;
};

// By the value of the enumerator.
constexpr std::array<UnitName, 10> units = {{{"none", "none"},
                                             {"mm", "millimetre"},
                                             {"cm", "centimetre"},
                                             {"m", "metre"},
                                             {"km", "kilometre"},
                                             {"in", "inch"},
                                             {"ft", "foot"},
                                             {"yd", "yard"},
                                             {"mi", "mile"},
                                             {"nmi", "nautical-mile"}}};
constexpr std::array<const char *, 6> orders = {"XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX"};

} // namespace

KXUnit unit_named(const std::string &name)
{
    std::string known;
    for (KXUnit unit = 0; unit < units.size(); ++unit) {
        if (name == units[unit].symbol || name == units[unit].name) {
            return unit;
        }
        known += (unit == 0 ? "" : ", ") + std::string(units[unit].symbol);
    }
    throw Failure("there is no unit \"" + name + "\": take one of " + known);
}

std::string unit_symbol(KXUnit unit)
{
    return unit == KX_UNIT_NONE ? "" : units[unit].symbol;
}

KXRotationOrder order_named(const std::string &name)
{
    std::string upper = name;
    std::transform(upper.begin(), upper.end(), upper.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    const auto found = std::find(orders.begin(), orders.end(), upper);
    if (found == orders.end()) {
        throw Failure("there is no rotation order \"" + name +
                      "\": take one of XYZ, XZY, YXZ, YZX, ZXY, ZYX");
    }
    return static_cast<KXRotationOrder>(found - orders.begin());
}

} // namespace example
