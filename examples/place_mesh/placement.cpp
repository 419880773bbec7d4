#include "placement.h"

#include <algorithm>
#include <cmath>

namespace example
{

namespace
{

bool is_finite(const KXP3 &p)
{
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

float largest_difference(const kxm::mat4 &a, const kxm::mat4 &b)
{
    float largest = 0.0f;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            largest = std::max(largest, std::fabs(a(r, c) - b(r, c)));
        }
    }
    return largest;
}

std::string angles_and_scale(float x, float y, float z, const kxm::vec3 &scale)
{
    const auto degrees = [](float angle) { return in_degrees(static_cast<double>(angle)); };
    return text_of("X %.6g, Y %.6g, Z %.6g degrees, scale ", degrees(x), degrees(y), degrees(z)) +
           text_of(scale);
}

} // namespace

Placement place(Mesh mesh, const Options &options)
{
    Placement p;
    p.mesh = std::move(mesh);
    std::vector<KXP3> &points = p.mesh.points;
    const std::uint32_t count = p.mesh.point_count();

    p.own_box = kxm::box(box_around(points));
    p.own_mid_point = p.own_box.middle();
    p.own_diagonal = p.own_box.diagonal();

    const kxm::position at(options.position);
    const auto order = static_cast<kxm::order>(options.order);
    p.matrix = at.matrix(order);
    std::vector<KXP3> placed(points.size());
    KXM4NP3I1(&p.matrix, count, points.data(), placed.data());
    p.placed_box = p.matrix * p.own_box;
    p.tight_box = kxm::box(box_around(placed));
    p.mid_point = p.matrix * p.own_mid_point;

    const kxm::mat4 turn = kxm::mat4::rotation(at.rotateX, at.rotateY, at.rotateZ, order);
    const kxm::mat4 to_middle = kxm::mat4::translation(-kxm::vec3(p.own_mid_point));
    KXM4NP3I1(&to_middle, count, points.data(), points.data());
    KXM4NP3I0(&turn, count, points.data(), points.data());
    p.placed_box_here = turn * (to_middle * p.own_box);
    p.tight_box_here = kxm::box(box_around(points));

    const kxm::point3 observer(options.observer);
    p.ground_range = kxm::range(p.mid_point, observer);
    p.bearing = kxm::bearing(p.mid_point, observer);
    p.seen = kxm::polar(observer, p.mid_point);

    // A box grown from points that overflowed is infinite, or too large to have a diagonal.
    if (!is_finite(p.own_diagonal) || !is_finite(p.placed_box.diagonal()) ||
        !is_finite(p.mid_point) || !std::isfinite(p.seen.range)) {
        throw Failure("the mesh is too large for its place: a coordinate goes beyond 3.4e38");
    }
    return p;
}

std::vector<ReportLine> report(const Placement &p, const Options &options)
{
    const KXPosition &at = options.position;
    const std::string unit = options.symbol.empty() ? "" : " " + options.symbol;
    const auto point = [&unit](const KXP3 &q) { return text_of(q) + unit; };
    const auto box = [&unit](const KXBox &b) { return text_of(b) + unit; };

    return {
        {"mesh", p.mesh.name + ": " + count_of(p.mesh.points.size(), "point") + ", " +
                     count_of(p.mesh.triangles.size(), "triangle")},
        {"own box", box(p.own_box)},
        {"mid-point", point(p.own_mid_point)},
        {"diagonal",
         point(p.own_diagonal) + ", length " + text_of("%.6g", p.own_diagonal.length()) + unit},
        {"position", point({at.x, at.y, at.z})},
        {"rotation",
         text_of("X %.6g, Y %.6g, Z %.6g degrees, order %s",
                 in_degrees(static_cast<double>(at.rotateX)),
                 in_degrees(static_cast<double>(at.rotateY)),
                 in_degrees(static_cast<double>(at.rotateZ)), options.order_name.c_str())},
        {"box placed", box(p.placed_box)},
        {"box around", box(p.tight_box)},
        {"observer", point(options.observer)},
        {"mid-point at", point(p.mid_point)},
        {"on the ground", text_of("range %.6g%s, bearing %.5g degrees", p.ground_range,
                                  unit.c_str(), in_degrees(p.bearing))},
        {"in space", text_of("range %.6g%s, elevation %.5g, azimuth %.5g degrees",
                             static_cast<double>(p.seen.range), unit.c_str(),
                             in_degrees(static_cast<double>(p.seen.elevation)),
                             in_degrees(static_cast<double>(p.seen.azimuth)))},
    };
}

ReadBack read_back(const kxm::mat4 &placement)
{
    const auto by_rows = placement.decomposed();
    if (!by_rows) {
        throw Failure("the placement cannot be taken apart: its matrix is singular");
    }
    ReadBack read = {*by_rows, placement.placement(), placement.quaternion(), 0.0f};

    const auto &[position, scale] = read.by_columns;
    const kxm::mat4 from_columns =
        position.matrix(kxm::order::yxz) * kxm::mat4::scale(scale.x, scale.y, scale.z);
    const kxm::mat4 from_quaternion =
        kxm::mat4::translation({position.x, position.y, position.z}) * read.quaternion.matrix();
    read.largest_difference = std::max({largest_difference(by_rows->matrix(), placement),
                                        largest_difference(from_columns, placement),
                                        largest_difference(from_quaternion, placement)});
    return read;
}

std::vector<ReportLine> report(const ReadBack &read)
{
    const kxm::components &rows = read.by_rows;
    const auto &[columns, column_scale] = read.by_columns;
    const kxm::quat &q = read.quaternion;
    return {
        {"read by rows", angles_and_scale(rows.rotateX, rows.rotateY, rows.rotateZ,
                                          {rows.scaleX, rows.scaleY, rows.scaleZ})},
        {"by columns",
         angles_and_scale(columns.rotateX, columns.rotateY, columns.rotateZ, column_scale)},
        {"quaternion",
         text_of("(%.6g, %.6g, %.6g, %.6g)", static_cast<double>(q.x), static_cast<double>(q.y),
                 static_cast<double>(q.z), static_cast<double>(q.w))},
        {"rebuilt",
         "from each of the three: " +
             (read.largest_difference == 0.0f
                  ? "exactly"
                  : text_of("at most %.1e off", static_cast<double>(read.largest_difference)))},
    };
}

} // namespace example
