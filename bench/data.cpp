#include "bench.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace
{

using namespace kxm;

/** The ray from a point through another, of unit length. */
ray through(const point3 &origin, const point3 &target)
{
    return {origin, (target - origin).normalised().value()};
}

/** Whether a ray meets a box that is larger by a margin on all sides. */
bool meets(const ray &r, const box &b, float margin)
{
    const vec3 by(margin, margin, margin);
    return r.meets(box(b.minimum() - by, b.maximum() + by));
}

/** Makes records from one sequence of random numbers. */
class Source
{
public:
    /** The generator's sequence is fixed by the C++ standard; its distributions are not. */
    float from_to(double low, double high)
    {
        return static_cast<float>(low + (high - low) * (word() * 0x1p-32));
    }
    uint32_t word()
    {
        return static_cast<uint32_t>(engine());
    }
    bool coin()
    {
        return word() >= 0x80000000u;
    }
    float angle()
    {
        return from_to(-3.1, 3.1);
    }
    vec3 vector(double low, double high)
    {
        return {from_to(low, high), from_to(low, high), from_to(low, high)};
    }
    vec3 angles()
    {
        return {angle(), angle(), angle()};
    }
    point3 point()
    {
        return point3(vector(-10.0, 10.0));
    }
    point4 homogeneous_point()
    {
        const point3 p = point();
        return {p.x, p.y, p.z, from_to(0.5, 2.0)};
    }
    vec3 unit_vector()
    {
        for (;;) {
            const vec3 v = vector(-1.0, 1.0);
            const double length = v.length();
            if (length > 0.1 && length < 1.0) {
                return v.normalised().value();
            }
        }
    }

    mat4 rotation()
    {
        const vec3 a = angles();
        return mat4::rotation(a.x, a.y, a.z, order::xyz);
    }
    mat4 affine()
    {
        const vec3 scale = vector(0.5, 2.0);
        return mat4::translation(vector(-10.0, 10.0)) * rotation() *
               mat4::shear_xy(from_to(-0.5, 0.5)) * mat4::scale(scale.x, scale.y, scale.z);
    }
    mat4 general()
    {
        mat4 perspective;
        for (int column = 0; column < 3; ++column) {
            perspective(3, column) = from_to(-0.02, 0.02);
        }
        perspective(3, 3) = from_to(1.0, 2.0);
        return affine() * perspective;
    }
    mat4 placement()
    {
        const vec3 centre = vector(1.0, 5.0);
        return mat4::translation(centre) * mat4::scale(0.999f) * rotation() *
               mat4::translation(-centre);
    }
    mat3 plane_matrix()
    {
        return mat3::translation(vec2(point())) * mat3::rotation(angle());
    }
    KXComponents parts()
    {
        const vec3 scale = vector(0.5, 2.0), step = vector(-10.0, 10.0);
        const vec3 turn = vector(-1.5, 1.5);
        // Scale, shear, rotation, translation and perspective.
        return {scale.x, scale.y, scale.z, 0.0f,   0.0f, 0.0f, turn.x, turn.y,
                turn.z,  step.x,  step.y,  step.z, 0.0f, 0.0f, 0.0f,   1.0f};
    }

    /**
     * From outside the box, since libraries differ in what they report of an origin inside. No ray
     * runs along an axis, and none so near an edge that single and double precision might disagree.
     */
    ray at_box(const box &b, bool hit)
    {
        constexpr float margin = 0.01f;
        for (;;) {
            const point3 origin = b.middle() + unit_vector() * from_to(8.0, 20.0);
            const ray r = through(origin, b.middle() + vector(-4.0, 4.0));
            const vec3 step = r.direction();
            const float least = std::min({std::fabs(step.x), std::fabs(step.y), std::fabs(step.z)});
            if (least > 0.01f && meets(r, b, hit ? -margin : margin) == hit) {
                return r;
            }
        }
    }

    /** From either side of the plane towards it, and never at a grazing angle. */
    ray at_triangle(const plane &p, const point3 *corners, bool hit)
    {
        const point3 target = on_plane(corners, hit);
        for (;;) {
            const vec3 away = unit_vector();
            if (std::fabs(dot(away, p.normal())) > 0.2) {
                return through(target + away * from_to(2.0, 20.0), target);
            }
        }
    }

    /** Corners about a point. In a slim triangle the margins of on_plane would come down to a
     * rounding. */
    void fill_corners(const point3 &middle, point3 *corners)
    {
        do {
            std::generate_n(corners, 3, [&] { return middle + unit_vector() * from_to(1.0, 3.0); });
        } while (through(corners[0], corners[1]).distance(corners[2]) < 1.0);
    }

private:
    /** A point of the triangle's plane, clearly inside the triangle or clearly outside. */
    point3 on_plane(const point3 *corners, bool inside)
    {
        constexpr double margin = 0.02;
        for (;;) {
            const float u = from_to(-1.0, 2.0), v = from_to(-1.0, 2.0);
            const double least = std::min({double(u), double(v), 1.0 - u - v});
            if (inside ? least > margin : least < -margin) {
                return corners[0] + (corners[1] - corners[0]) * u + (corners[2] - corners[0]) * v;
            }
        }
    }

    std::mt19937 engine{5};
};

/** `make` gives the ray at a target that hits it, or misses. */
template <typename Make>
void fill(Rays &rays, Source &source, Make make)
{
    for (std::size_t i = 0; i < ray_count; ++i) {
        rays.hits[i] = make(i % target_count, true);
        rays.misses[i] = make(i % target_count, false);
        rays.mixed[i] = source.coin() ? rays.hits[i] : rays.misses[i];
    }
}

std::unique_ptr<Data> make()
{
    Source source;
    auto out = std::make_unique<Data>();
    for (std::size_t i = 0; i < stored_count; ++i) {
        out->affine.rows[i] = source.affine();
        out->general.rows[i] = source.general();
        out->placements.rows[i] = source.placement();
        for (Matrices *matrices : {&out->affine, &out->general, &out->placements}) {
            matrices->columns[i] = matrices->rows[i].transposed();
        }
        out->plane_matrices[i] = source.plane_matrix();
        out->points[i] = source.point();
        out->other_points[i] = source.point();
        out->homogeneous_points[i] = source.homogeneous_point();
        out->plane_points[i] = vec2(source.point());
        out->unit_vectors[i] = source.unit_vector();
        out->angles[i] = source.angles();
        out->positions[i] =
            position(source.point(), source.angle(), source.angle(), source.angle());
        out->components[i] = source.parts();
        out->quaternions[i] = quat::about(source.unit_vector(), source.angle());
        out->factors[i] = source.from_to(0.5, 2.0);
        out->words[i] = source.word();

        const point3 middle = source.point();
        const vec3 half = source.vector(1.0, 3.0);
        out->boxes[i] = box(middle - half, middle + half);
        const auto first = static_cast<uint32_t>(3 * i);
        source.fill_corners(middle, &out->vertices[first]);
        out->triangles[i] = triangle::of(out->vertices, first, first + 1, first + 2).value();
        out->planes[i] = out->triangles[i].plane();
    }

    fill(out->at_boxes, source,
         [&](std::size_t target, bool hit) { return source.at_box(out->boxes[target], hit); });
    fill(out->at_triangles, source, [&](std::size_t target, bool hit) {
        return source.at_triangle(out->planes[target], &out->vertices[3 * target], hit);
    });
    for (std::size_t i = 0; i < stored_count; ++i) {
        const auto line_of = [](const ray &r) { return line(r.origin(), r.at(30.0f)); };
        out->lines_at_boxes[i] = line_of(out->at_boxes.mixed[i]);
        out->lines_at_triangles[i] = line_of(out->at_triangles.mixed[i]);
    }
    return out;
}

} // namespace

const Data &data()
{
    static const std::unique_ptr<Data> made = make();
    return *made;
}

void fill(KXP3 *points, std::size_t count)
{
    Source source;
    std::generate_n(points, count, [&] { return source.point(); });
}

void fill(KXP4 *points, std::size_t count)
{
    Source source;
    std::generate_n(points, count, [&] { return source.homogeneous_point(); });
}
