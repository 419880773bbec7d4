/* Vectors, scalars and length units. */
#include "experiment.h"

namespace accuracy
{
namespace
{

bool measure_length(Case &c)
{
    const KXV3 v = c.random.spread_vector(-16, 16);
    c.given(v);
    c.error(0, KXV3Length(&v), length(wide(v)));
    return true;
}

bool normalise(Case &c)
{
    const KXV3 v = c.random.spread_vector(-16, 16);
    c.given(v);
    KXV3 out;
    const double returned = KXV3Normalise(&v, &out);
    const Quad wanted = length(wide(v));
    c.error(0, wide(out), Vector3(wide(v) / wanted));
    c.error(1, returned, wanted);
    return true;
}

bool scale(Case &c)
{
    const KXV3 v = c.random.spread_vector(-16, 16);
    const float wanted = c.random.spread(-16, 16);
    c.given(v, wanted);
    KXV3 scaled = v;
    KXV3Scale(&scaled, wanted);
    c.error(0, wide(scaled), Vector3(wide(v) * (wanted / length(wide(v)))));
    return true;
}

bool perpendicular(Case &c)
{
    const KXV3 v = c.random.spread_vector(-16, 16);
    c.given(v);
    KXV3 out;
    KXV3Perpendicular(&v, &out);
    const Vector3 turned(-v.z, 0, v.x);
    c.error(0, wide(out), Vector3(turned / length(turned)));
    return true;
}

bool interpolate(Case &c)
{
    const float x0 = c.random.uniform(1000), x1 = c.random.between(double(x0), 1000);
    const float x = c.random.between(double(x0), double(x1));
    const float y0 = c.random.uniform(1000), y1 = c.random.uniform(1000);
    if (!(x0 < x && x < x1)) {
        return false;
    }
    c.given(x0, y0, x1, y1, x);
    const Quad wanted = (Quad(x) - x0) * (Quad(y1) - y0) / (Quad(x1) - x0) + y0;
    c.error(0, KXInterpolate(x0, y0, x1, y1, x), wanted, std::max(fabsq(y0), fabsq(y1)));
    return true;
}

bool difference_of_ticks(Case &c)
{
    const auto later = static_cast<std::uint32_t>(c.random.word());
    const auto earlier = static_cast<std::uint32_t>(c.random.word());
    c.given(later, earlier);
    c.error(0, KXDiffTime(later, earlier), Quad(std::int32_t(later - earlier)) / 1000);
    return true;
}

bool change_units(Case &c)
{
    // In tenths of a millimetre, all but the millimetre's own of which are whole.
    static constexpr double size[] = {0,   10,   100,  10000,    10000000,
                                      254, 3048, 9144, 16093440, 18520000};
    const std::uint32_t from = 1 + c.random.below(9), to = 1 + c.random.below(9);
    const float value = c.random.spread(-16, 16);
    c.given(from, to, value);
    float changed = value;
    KXChangeUnits(from, to, &changed);
    c.error(0, changed, Quad(value) * size[from] / size[to]);
    return true;
}

} // namespace

Experiments foundations()
{
    const char *const any_vector = "coordinates ±2^[-16, 16)";
    return {
        {"KXV3Length", any_vector, {{"length", itself, true}}, measure_length},
        {"KXV3Normalise", any_vector, {{"x, y, z", itself}, {"length", itself, true}}, normalise},
        {"KXV3Scale", "coordinates and length ±2^[-16, 16)", {{"x, y, z", itself}}, scale},
        {"KXV3Perpendicular", any_vector, {{"x, z", itself}}, perpendicular},
        {"KXInterpolate",
         "x0 < x < x1 and y0, y1 in [-1000, 1000]",
         {{"value", "the larger of y0, y1", true}},
         interpolate},
        {"KXDiffTime", "any words", {{"difference / 1000", itself, true}}, difference_of_ticks},
        {"KXChangeUnits",
         "units 1 to 9, value ±2^[-16, 16)",
         {{"length by the units' definitions", itself}},
         change_units},
    };
}

} // namespace accuracy
