#include "bench.h"

#include <kxmaths5.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>

namespace
{

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
    KXP3 point(double low, double high)
    {
        const float x = from_to(low, high), y = from_to(low, high);
        return {x, y, from_to(low, high)};
    }
    KXV3 unit_vector()
    {
        for (;;) {
            const KXV3 v = point(-1.0, 1.0);
            const double length = KXV3Length(&v);
            if (length > 0.1 && length < 1.0) {
                KXV3 unit;
                KXV3Normalise(&v, &unit);
                return unit;
            }
        }
    }

private:
    std::mt19937 engine{5};
};

KXV3 sum(const KXV3 &a, const KXV3 &b, float s, float t)
{
    KXV3 out;
    KXV3Combine(&a, &b, &out, s, t);
    return out;
}

void fill(Matrices &matrices, Source &source, KXM4 (*make)(Source &))
{
    for (std::size_t i = 0; i < record_count; ++i) {
        matrices.rows[i] = make(source);
        KXM4Transpose(&matrices.rows[i], &matrices.columns[i]);
    }
}

KXM4 rotation(Source &source)
{
    const KXV3 angles = source.point(-3.1, 3.1);
    KXM4 out;
    KXM4Orientation(&out, nullptr, angles.x, angles.y, angles.z, KX_ORDER_XYZ);
    return out;
}

KXM4 affine(Source &source)
{
    KXM4 scale, shear, translation;
    const KXV3 factors = source.point(0.5, 2.0), step = source.point(-10.0, 10.0);
    KXM4Scale(factors.x, factors.y, factors.z, &scale);
    KXM4ShearXY2(source.from_to(-0.5, 0.5), &shear);
    KXM4Translate(step.x, step.y, step.z, &translation);
    KXM4 out = rotation(source);
    KXM4Mult(&out, &shear, &out);
    KXM4Mult(&out, &scale, &out);
    KXM4Mult(&translation, &out, &out);
    return out;
}

KXM4 general(Source &source)
{
    KXM4 perspective;
    KXM4Unit(&perspective);
    const KXV3 last_row = source.point(-0.02, 0.02);
    perspective.m[3][0] = last_row.x;
    perspective.m[3][1] = last_row.y;
    perspective.m[3][2] = last_row.z;
    perspective.m[3][3] = source.from_to(1.0, 2.0);
    const KXM4 placed = affine(source);
    KXM4 out;
    KXM4Mult(&placed, &perspective, &out);
    return out;
}

KXM4 placement(Source &source)
{
    KXM4 there, back, closer;
    const KXV3 centre = source.point(1.0, 5.0);
    KXM4Translate(-centre.x, -centre.y, -centre.z, &there);
    KXM4Translate(centre.x, centre.y, centre.z, &back);
    KXM4Scale(0.999f, 0.999f, 0.999f, &closer);
    KXM4 out = rotation(source);
    KXM4Mult(&closer, &out, &out);
    KXM4Mult(&out, &there, &out);
    KXM4Mult(&back, &out, &out);
    return out;
}

KXM3 plane_matrix(Source &source)
{
    KXM3 out;
    const float angle = source.from_to(-3.1, 3.1);
    KXM3Rotate2(std::cos(angle), std::sin(angle), &out);
    out.m[0][2] = source.from_to(-10.0, 10.0);
    out.m[1][2] = source.from_to(-10.0, 10.0);
    return out;
}

KXComponents components(Source &source)
{
    const KXV3 scale = source.point(0.5, 2.0), step = source.point(-10.0, 10.0);
    const KXV3 angles = source.point(-1.5, 1.5);
    // Scale, shear, rotation, translation and perspective.
    return {scale.x,  scale.y, scale.z, 0.0f,   0.0f, 0.0f, angles.x, angles.y,
            angles.z, step.x,  step.y,  step.z, 0.0f, 0.0f, 0.0f,     1.0f};
}

KXQuat quaternion(Source &source)
{
    const KXV3 axis = source.unit_vector();
    KXQuat out;
    KXGenerateQuat(source.from_to(-3.1, 3.1), &axis, &out);
    return out;
}

/** The ray from a point through another, of unit length. */
KXRay through(const KXP3 &origin, const KXP3 &target)
{
    KXRay ray = {origin, {0.0f, 0.0f, 0.0f}};
    const KXV3 step = sum(target, origin, 1.0f, -1.0f);
    KXV3Normalise(&step, &ray.direction);
    return ray;
}

/** Whether a ray meets a box that is larger by a margin on all sides. */
bool meets(const KXRay &ray, const KXBox &box, float margin)
{
    const KXV3 by = {margin, margin, margin};
    const KXBox grown = {sum(box.minimum, by, 1.0f, -1.0f), sum(box.maximum, by, 1.0f, 1.0f)};
    return KXRayIxBox(&ray, &grown, nullptr) == 1;
}

/**
 * From outside the box, since libraries differ in what they report of an origin inside. No ray
 * runs along an axis, and none so near an edge that single and double precision might disagree.
 */
KXRay at_box(Source &source, const KXBox &box, bool hit)
{
    constexpr float margin = 0.01f;
    KXP3 middle;
    KXBoxMidPoint(&box, &middle);
    for (;;) {
        const KXP3 origin = sum(middle, source.unit_vector(), 1.0f, source.from_to(8.0, 20.0));
        const KXP3 target = sum(middle, source.point(-4.0, 4.0), 1.0f, 1.0f);
        const KXRay ray = through(origin, target);
        const double least = std::min(
            {std::fabs(ray.direction.x), std::fabs(ray.direction.y), std::fabs(ray.direction.z)});
        if (least > 0.01 && meets(ray, box, hit ? -margin : margin) == hit) {
            return ray;
        }
    }
}

/** A point of the triangle's plane, clearly inside the triangle or clearly outside. */
KXP3 on_plane(Source &source, const KXP3 *corners, bool inside)
{
    constexpr double margin = 0.02;
    for (;;) {
        const float u = source.from_to(-1.0, 2.0), v = source.from_to(-1.0, 2.0);
        const double least = std::min({double(u), double(v), 1.0 - u - v});
        if (inside ? least > margin : least < -margin) {
            const KXV3 along_u = sum(corners[1], corners[0], u, -u);
            const KXV3 along_v = sum(corners[2], corners[0], v, -v);
            return sum(corners[0], sum(along_u, along_v, 1.0f, 1.0f), 1.0f, 1.0f);
        }
    }
}

/** From either side of the plane towards it, and never at a grazing angle. */
KXRay at_triangle(Source &source, const KXPlane &plane, const KXP3 *corners, bool hit)
{
    const KXP3 target = on_plane(source, corners, hit);
    for (;;) {
        const KXV3 away = source.unit_vector();
        if (std::fabs(away.x * plane.a + away.y * plane.b + away.z * plane.c) > 0.2f) {
            return through(sum(target, away, 1.0f, source.from_to(2.0, 20.0)), target);
        }
    }
}

/** In a slim triangle the margins of on_plane would come down to a rounding. */
bool is_slim(const KXP3 *corners)
{
    const KXRay edge = through(corners[0], corners[1]);
    return KXRayPointDistance(&edge, &corners[2]) < 1.0;
}

void fill_targets(Data &out, Source &source)
{
    for (std::size_t i = 0; i < target_count; ++i) {
        const KXP3 middle = source.point(-10.0, 10.0);
        const KXV3 half = source.point(1.0, 3.0);
        out.boxes[i] = {sum(middle, half, 1.0f, -1.0f), sum(middle, half, 1.0f, 1.0f)};

        KXP3 *corners = &out.vertices[3 * i];
        KXTriangle &triangle = out.triangles[i];
        for (uint32_t k = 0; k < 3; ++k) {
            triangle.corner[k].vertex = static_cast<uint32_t>(3 * i) + k;
        }
        do {
            for (std::size_t k = 0; k < 3; ++k) {
                corners[k] = sum(middle, source.unit_vector(), 1.0f, source.from_to(1.0, 3.0));
            }
        } while (is_slim(corners));
        KXPlaneEquation(&corners[0], &corners[1], &corners[2], &triangle.plane);
        out.planes[i] = triangle.plane;
    }
}

void fill_rays(Data &out, Source &source)
{
    for (std::size_t i = 0; i < ray_count; ++i) {
        const std::size_t target = i % target_count;
        const KXBox &box = out.boxes[target];
        out.at_boxes.mixed[i] = at_box(source, box, source.coin());
        out.at_boxes.hits[i] = at_box(source, box, true);
        out.at_boxes.misses[i] = at_box(source, box, false);

        const KXPlane &plane = out.triangles[target].plane;
        const KXP3 *corners = &out.vertices[3 * target];
        out.at_triangles.mixed[i] = at_triangle(source, plane, corners, source.coin());
        out.at_triangles.hits[i] = at_triangle(source, plane, corners, true);
        out.at_triangles.misses[i] = at_triangle(source, plane, corners, false);
    }
    for (std::size_t i = 0; i < record_count; ++i) {
        const auto line = [](const KXRay &ray) {
            return KXLine{ray.origin, sum(ray.origin, ray.direction, 1.0f, 30.0f)};
        };
        out.lines_at_boxes[i] = line(out.at_boxes.mixed[i]);
        out.lines_at_triangles[i] = line(out.at_triangles.mixed[i]);
    }
}

std::unique_ptr<Data> make()
{
    Source source;
    auto out = std::make_unique<Data>();
    fill(out->affine, source, affine);
    fill(out->general, source, general);
    fill(out->placements, source, placement);
    fill(out->points, record_count);
    fill(out->homogeneous_points, record_count);
    for (std::size_t i = 0; i < record_count; ++i) {
        out->plane_matrices[i] = plane_matrix(source);
        out->plane_points[i] = {out->points[i].x, out->points[i].y};
        out->other_points[i] = source.point(-10.0, 10.0);
        out->unit_vectors[i] = source.unit_vector();
        out->angles[i] = source.point(-3.1, 3.1);
        const KXP3 place = source.point(-10.0, 10.0), angles = source.point(-3.1, 3.1);
        out->positions[i] = {place.x, place.y, place.z, angles.x, angles.y, angles.z};
        out->components[i] = components(source);
        out->quaternions[i] = quaternion(source);
        out->factors[i] = source.from_to(0.5, 2.0);
        out->words[i] = source.word();
    }
    fill_targets(*out, source);
    fill_rays(*out, source);
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
    for (std::size_t i = 0; i < count; ++i) {
        points[i] = source.point(-10.0, 10.0);
    }
}

void fill(KXP4 *points, std::size_t count)
{
    Source source;
    for (std::size_t i = 0; i < count; ++i) {
        const KXP3 p = source.point(-10.0, 10.0);
        points[i] = {p.x, p.y, p.z, source.from_to(0.5, 2.0)};
    }
}
