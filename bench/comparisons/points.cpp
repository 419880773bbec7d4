/* Points through a matrix, one at a time and in arrays. */
#include "comparison.h"
#include "data.h"

#include <kxmaths5.h>

#include <cstring>

namespace
{

/** Of ten million points some come near the origin, where the terms cancel. */
constexpr double tolerance = 1e-4;

template <typename Point>
using SingleForm = void (*)(const KXM4 *, const Point *, Point *);

/** An array of points, and room for their images. */
template <typename Point>
struct Points {
    Memory in, out;

    explicit Points(std::size_t count)
        : in(allocate(count * sizeof(Point))), out(allocate(count * sizeof(Point)))
    {
    }
    const Point *first() const
    {
        return static_cast<const Point *>(in.get());
    }
    Point *images() const
    {
        return static_cast<Point *>(out.get());
    }
};

/** In place, the images take the points' values first and are themselves what is moved. */
template <typename Point>
Comparison array_row(const std::string &operation, const char *kernel, std::size_t count,
                     std::size_t groups, bool in_place, SingleForm<Point> single,
                     std::vector<Peer> peers)
{
    const std::size_t total = count * groups;
    const Points<Point> points(total);
    Work ours = {};
    ours.first = in_place ? points.images() : points.first();
    ours.second = data().placements.rows;
    ours.out = points.images();
    ours.count = count;
    ours.groups = groups;
    Work theirs = ours;
    theirs.second = data().placements.columns;

    Comparison row = {
        operation, kernel,           ours,
        theirs,    std::move(peers), difference_of_records<sizeof(Point) / sizeof(float)>,
        tolerance, sizeof(Point)};
    // Also the first touch of both arrays.
    row.reset = [points, total] {
        fill(static_cast<Point *>(points.in.get()), total);
        std::memcpy(points.images(), points.first(), total * sizeof(Point));
    };
    row.has_bits_of_single_calls = [points, total, count, single, ours, kernel] {
        kxmaths5.find(kernel)(&ours);
        for (std::size_t i = 0; i < total; ++i) {
            Point image;
            single(&data().placements.rows[i / count], &points.first()[i], &image);
            if (std::memcmp(&image, &points.images()[i], sizeof(Point)) != 0) {
                return false;
            }
        }
        return true;
    };
    return row;
}

Comparison xyz_row(const std::string &size, std::size_t count, std::size_t groups, bool in_place,
                   std::vector<Peer> peers)
{
    return array_row<KXP3>("array of xyz points, " + size + (in_place ? ", in place" : ""),
                           "points_xyz", count, groups, in_place, KXM4P3I1, std::move(peers));
}

Comparison single_point_row()
{
    static const Memory out = allocate(record_count * sizeof(KXP3));
    Work ours = {};
    ours.first = data().points;
    ours.second = data().affine.rows;
    ours.out = out.get();
    ours.count = record_count;
    ours.groups = 1;
    Work theirs = ours;
    theirs.second = data().affine.columns;
    return {"one point",
            "point",
            ours,
            theirs,
            {{cglm, {1.15}}, {glm_plain}, {glm_intrinsics}, {eigen}, {imath}},
            difference_of_records<3>,
            tolerance,
            sizeof(KXP3)};
}

} // namespace

std::vector<Comparison> point_comparisons()
{
    const Goal plain = {0.47, 1.10}, intrinsics = {0.70}, calls = {0.40};
    std::vector<Comparison> rows;
    for (const auto &[size, count] : {std::pair("1,000", 1000), std::pair("100,000", 100000)}) {
        for (const bool in_place : {false, true}) {
            rows.push_back(xyz_row(size, std::size_t(count), 1, in_place,
                                   {{glm_intrinsics, intrinsics},
                                    {glm_plain, plain},
                                    {cglm, calls},
                                    {eigen},
                                    {imath}}));
        }
    }
    // Small arrays: many of them, each with a matrix of its own.
    rows.push_back(xyz_row("64", 64, 16, false, {{glm_intrinsics, {0.80}}, {glm_plain}, {cglm}}));
    rows.push_back(xyz_row("8", 8, 64, false, {{glm_intrinsics, {1.10}}, {glm_plain}, {cglm}}));
    rows.push_back(xyz_row("10 million", 10000000, 1, false,
                           {{copying, {1.0}}, {scaling}, {glm_intrinsics}, {glm_plain}}));
    rows.push_back(
        array_row<KXP4>("array of xyzw points, 1,000", "points_xyzw", 1000, 1, false, KXM4P4,
                        {{cglm, {0.60}}, {glm_intrinsics, {1.15}}, {glm_plain}, {eigen}}));
    rows.push_back(single_point_row());
    return rows;
}
