/* Range, bearing, elevation and azimuth. */
#include "experiment.h"

namespace accuracy
{
namespace
{

bool range(Case &c)
{
    const KXP3 first = c.random.uniform_vector(1000), second = c.random.uniform_vector(1000);
    c.given(first, second);
    c.error(0, KXRange(&first, &second),
            hypotq(Quad(first.x) - second.x, Quad(first.z) - second.z));
    return true;
}

bool bearing(Case &c)
{
    const KXP3 first = c.random.uniform_vector(1000), second = c.random.uniform_vector(1000);
    if (first.z == second.z) {
        return false;
    }
    c.given(first, second);
    const Quad wanted = atan2q(Quad(first.x) - second.x, Quad(first.z) - second.z);
    c.error(0, KXBearing(&first, &second), wanted < 0 ? wanted + 2 * exact_pi : wanted);
    return true;
}

Vector3 direction_of(float elevation, float azimuth)
{
    Quad up, along, x, z;
    sincosq(elevation, &up, &along);
    sincosq(azimuth, &x, &z);
    return {along * x, up, along * z};
}

bool to_point(Case &c)
{
    const float range = c.random.spread(-16, 16);
    const float elevation = c.random.uniform(pi / 2), azimuth = c.random.uniform(pi);
    c.given(range, elevation, azimuth);
    KXP3 out;
    KXREAToPoint(range, elevation, azimuth, &out);
    c.error(0, wide(out), Vector3(direction_of(elevation, azimuth) * range));
    return true;
}

bool to_vector(Case &c)
{
    const float elevation = c.random.uniform(pi / 2), azimuth = c.random.uniform(pi);
    c.given(elevation, azimuth);
    KXV3 out;
    KXEAToVector(elevation, azimuth, &out);
    c.error(0, wide(out), direction_of(elevation, azimuth));
    return true;
}

bool compare_angles(Case &c, const Vector3 &step, float elevation, float azimuth, bool is_steep)
{
    const Quad wanted = atan2q(step.y(), hypotq(step.x(), step.z()));
    if ((fabsq(wanted) > clear_of_a_quarter_turn) != is_steep || fabsq(step.z()) < 1e-5) {
        return false;
    }
    c.angle_error(0, elevation, wanted);
    c.error(1, azimuth, atan2q(step.x(), step.z()));
    return true;
}

bool from_points(Case &c)
{
    const KXP3 from = c.random.uniform_vector(1000), to = c.random.uniform_vector(1000);
    c.given(from, to);
    float range, elevation, azimuth;
    KXPointsToREA(&from, &to, &range, &elevation, &azimuth);
    const Vector3 step = wide(to) - wide(from);
    c.error(2, range, length(step));
    return compare_angles(c, step, elevation, azimuth, false);
}

bool from_vector(Case &c)
{
    const KXV3 v = c.random.uniform_vector(1000);
    c.given(v);
    float elevation, azimuth;
    KXVectorToEA(&v, &elevation, &azimuth);
    return compare_angles(c, wide(v), elevation, azimuth, false);
}

bool from_steep_vector(Case &c)
{
    const KXV3 v = {c.random.spread(-16, 8), c.random.uniform(1000), c.random.spread(-16, 8)};
    c.given(v);
    float elevation, azimuth;
    KXVectorToEA(&v, &elevation, &azimuth);
    return compare_angles(c, wide(v), elevation, azimuth, true);
}

} // namespace

Experiments polar()
{
    const char *const two_points = "coordinates in [-1000, 1000]";
    const char *const angles = "elevation in [-pi/2, pi/2], azimuth in [-pi, pi]";
    const Result elevation = {"elevation", "1"}, azimuth = {"azimuth", itself};
    return {
        {"KXRange", two_points, {{"range", itself, true}}, range},
        {"KXBearing", two_points, {{"bearing", itself, true}}, bearing},
        {"KXREAToPoint", "range ±2^[-16, 16); angles as below", {{"x, y, z", itself}}, to_point},
        {"KXEAToVector", angles, {{"x, y, z", itself}}, to_vector},
        {"KXPointsToREA",
         "coordinates in [-1000, 1000]; elevation in [-1.4, 1.4]",
         {elevation, azimuth, {"range", itself}},
         from_points},
        {"KXVectorToEA",
         "coordinates in [-1000, 1000]; elevation in [-1.4, 1.4]",
         {elevation, azimuth},
         from_vector},
        {"KXVectorToEA",
         "x, z ±2^[-16, 8), y in [-1000, 1000]; elevation beyond ±1.4",
         {elevation, azimuth},
         from_steep_vector},
    };
}

} // namespace accuracy
