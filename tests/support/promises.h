/*
 * What contracts promise of functions beyond what their entries in the catalogue say. A promise
 * gets the arguments as they were before the call, with the records as they were; the same as they
 * are after it; and the result, 0 where there is none.
 */
#ifndef KX_TESTS_PROMISES_H
#define KX_TESTS_PROMISES_H

#include "kxmaths5.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <tuple>
#include <type_traits>

namespace promises
{

template <typename Result, typename... Arguments>
using Promise = bool(const std::tuple<Arguments...> &was, const std::tuple<Arguments...> &is,
                     std::conditional_t<std::is_void_v<Result>, int, Result> result);

template <typename Arguments, typename Result>
bool nothing_more(const Arguments &, const Arguments &, Result)
{
    return true;
}

template <typename Record>
bool same(const Record &a, const Record &b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

using Normalise = std::tuple<const KXV3 *, KXV3 *>;
inline bool short_is_copied(const Normalise &was, const Normalise &is, double length)
{
    const auto [vector, before] = was;
    const auto [input, out] = is;
    return length > static_cast<double>(KX_TOLERANCE) || std::isnan(length) || same(*vector, *out);
}

using Scale = std::tuple<KXV3 *, float>;
inline bool short_stays(const Scale &was, const Scale &is, int)
{
    const KXV3 &v = *std::get<0>(was);
    const double x = v.x, y = v.y, z = v.z;
    const bool is_short = std::sqrt(x * x + y * y + z * z) < 0.999e-6; // in any rounding mode
    return !is_short || same(v, *std::get<0>(is));
}

inline bool has_unit_row(const KXM4 &m)
{
    return m.m[3][0] == 0 && m.m[3][1] == 0 && m.m[3][2] == 0 && m.m[3][3] == 1;
}

using Inverse = std::tuple<const KXM4 *, KXM4 *>;
inline bool affine_refusal_writes_nothing(const Inverse &was, const Inverse &is,
                                          std::int32_t status)
{
    const auto [m, before] = was;
    const auto [input, out] = is;
    return status == 0 || !has_unit_row(*m) || same(*before, *out);
}

/** Finite whatever the angles; with no such order the block stays as it was. */
inline bool is_oriented(const KXM4 *was, const KXM4 *is, KXRotationOrder order)
{
    for (int r = 0; is != nullptr && r < 3; ++r) {
        for (int c = 0; c < 3; ++c) {
            if (order > KX_ORDER_ZYX ? !same(was->m[r][c], is->m[r][c])
                                     : !std::isfinite(is->m[r][c])) {
                return false;
            }
        }
    }
    return is == nullptr || has_unit_row(*is);
}

/** The two matrices come first, and the order last. */
template <typename Arguments>
bool both_are_oriented(const Arguments &was, const Arguments &is, int)
{
    const auto order = std::get<std::tuple_size_v<Arguments> - 1>(is);
    return is_oriented(std::get<0>(was), std::get<0>(is), order) &&
           is_oriented(std::get<1>(was), std::get<1>(is), order);
}

inline bool is_inverted(const KXBox &box)
{
    return box.minimum.x > box.maximum.x || box.minimum.y > box.maximum.y ||
           box.minimum.z > box.maximum.z;
}

using TransformBox = std::tuple<const KXBox *, const KXM4 *, KXBox *>;
inline bool inverted_box_is_copied(const TransformBox &was, const TransformBox &is, int)
{
    const auto [box, matrix, before] = was;
    const auto [input, same_matrix, out] = is;
    return !is_inverted(*box) || same(*box, *out);
}

inline KXV3 step_of(const KXLine &line)
{
    return {line.end.x - line.start.x, line.end.y - line.start.y, line.end.z - line.start.z};
}
inline KXV3 step_of(const KXRay &ray)
{
    return ray.direction;
}

/** Without a contact the point is the start; with an inverted box, and for lines, untouched. */
template <typename Path>
bool without_contact(const std::tuple<const Path *, const KXBox *, KXP3 *> &was,
                     const std::tuple<const Path *, const KXBox *, KXP3 *> &is,
                     std::int32_t verdict)
{
    const auto [path, box, before] = was;
    const KXP3 *const point = std::get<2>(is), *const start = reinterpret_cast<const KXP3 *>(path);
    const bool inverted = is_inverted(*box);
    if (verdict == 1 || point == nullptr) {
        return verdict != 1 || !inverted;
    }
    const bool may_be_untouched = inverted || std::is_same_v<Path, KXLine>;
    return (may_be_untouched && same(*before, *point)) || (!inverted && same(*start, *point));
}

/** Along a plane there is never a hit, and the point is untouched. */
template <typename Path>
using PathTriangle = std::tuple<const Path *, const KXTriangle *, const KXP3 *, KXP3 *>;
template <typename Path>
bool misses_along_plane(const PathTriangle<Path> &was, const PathTriangle<Path> &is,
                        std::int32_t verdict)
{
    const KXPlane &plane = std::get<1>(was)->plane;
    const KXV3 step = step_of(*std::get<0>(was));
    const double x = static_cast<double>(plane.a) * static_cast<double>(step.x);
    const double y = static_cast<double>(plane.b) * static_cast<double>(step.y);
    const double z = static_cast<double>(plane.c) * static_cast<double>(step.z);
    const bool is_along = std::fabs(x) + std::fabs(y) + std::fabs(z) < 0.999e-6; // once rounded too
    return !is_along || (verdict == 0 && same(*std::get<3>(was), *std::get<3>(is)));
}

using PlaneEquation = std::tuple<const KXP3 *, const KXP3 *, const KXP3 *, KXPlane *>;
inline bool refusal_gives_plane_across_x(const PlaneEquation &was, const PlaneEquation &is,
                                         std::int32_t status)
{
    const auto [first, second, third, before] = was;
    const KXPlane instead = {1, 0, 0, -second->x};
    return status == 0 || same(instead, *std::get<3>(is));
}

} // namespace promises

#endif
