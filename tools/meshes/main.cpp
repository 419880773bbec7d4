/*
 * Measures what a host has to know of rays and meshes, against exact arithmetic: prints the tables
 * of docs/meshes-and-rays.md or, with --grid, the numbers that its picture is drawn from.
 */
#include "../accuracy/numbers.h"
#include "mesh.h"

#include <kxmaths5/everyday.h>

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdio>
#include <map>
#include <stdexcept>

namespace
{

using accuracy::Random;
using accuracy::Vector3;
using meshes::Mesh;
using Corners = std::array<std::uint32_t, 3>;

/** A share of what was tried. */
struct Share {
    unsigned long lost = 0, tried = 0;

    void count(bool is_lost)
    {
        lost += is_lost;
        ++tried;
    }
    double percent() const
    {
        return tried == 0 ? 0.0 : 100.0 * static_cast<double>(lost) / static_cast<double>(tried);
    }
};

/** Two digits, and no exponent. */
std::string text(double percent)
{
    int decimals = 0;
    for (double limit = 9.95; percent > 0 && percent < limit && decimals < 4; limit /= 10) {
        ++decimals;
    }
    char digits[32];
    std::snprintf(digits, sizeof digits, "%.*f", decimals, percent);
    return digits;
}

/** Of one share for each mesh. */
std::string middle_and_worst(std::vector<double> percents)
{
    std::sort(percents.begin(), percents.end());
    return text(percents[percents.size() / 2]) + " | " + text(percents.back());
}

/** A triangle with its corners as they come, or begun well: in the order that kx_triangle gives. */
struct Triangle {
    KXTriangle record = {};
    bool has_plane;

    Triangle(const std::vector<KXP3> &points, const Corners &c, bool begun_well)
    {
        if (begun_well) {
            has_plane = kx_triangle(points.data(), c[0], c[1], c[2], &record) == 0;
            return;
        }
        has_plane =
            KXPlaneEquation(&points[c[0]], &points[c[1]], &points[c[2]], &record.plane) == 0;
        for (std::size_t i = 0; i < 3; ++i) {
            record.corner[i].vertex = c[i];
        }
    }

    bool is_hit(const KXRay &ray, const std::vector<KXP3> &points, KXP3 *point) const
    {
        return has_plane && KXRayIxTriangle(&ray, &record, points.data(), point) == 1;
    }
};

using Triangles = std::vector<Triangle>;

Triangles triangles_of(const Mesh &mesh, bool begun_well)
{
    Triangles triangles;
    for (const Corners &corners : mesh.triangles) {
        triangles.emplace_back(mesh.points, corners, begun_well);
    }
    return triangles;
}

KXP3 mean(const std::vector<KXP3> &points, const Corners &c, const std::array<double, 3> &w)
{
    const KXP3 &k0 = points[c[0]], &k1 = points[c[1]], &k2 = points[c[2]];
    const auto sum = [&w](float a, float b, float d) {
        return static_cast<float>(w[0] * double(a) + w[1] * double(b) + w[2] * double(d));
    };
    return {sum(k0.x, k1.x, k2.x), sum(k0.y, k1.y, k2.y), sum(k0.z, k1.z, k2.z)};
}

/** A point of the triangle, every one alike. */
KXP3 point_on(const std::vector<KXP3> &points, const Corners &corners, Random &random)
{
    double u = double(random.between(0, 1)), v = double(random.between(0, 1));
    if (u + v > 1) {
        u = 1 - u;
        v = 1 - v;
    }
    return mean(points, corners, {1 - u - v, u, v});
}

/** From a distance along a direction back to the target. */
KXRay ray_at(const KXP3 &target, const KXV3 &from, double distance)
{
    KXRay ray;
    KXV3Combine(&target, &from, &ray.origin, 1.0f, float(distance));
    KXV3Combine(&target, &ray.origin, &ray.direction, 1.0f, -1.0f);
    KXV3Normalise(&ray.direction, &ray.direction);
    return ray;
}

/**
 * Whether the ray meets the triangle, edges and corners included, in front of its origin: what is
 * true for the very singles. Their products have at most 75 bits, and 113 hold the sums of those
 * unless the coordinates are more than ten digits apart.
 */
bool truly_meets(const KXRay &ray, const Mesh &mesh, const Corners &c)
{
    const auto at = [&](std::size_t i) {
        return Vector3(accuracy::wide(mesh.points[c[i]]) - accuracy::wide(ray.origin));
    };
    const Vector3 A = at(0), B = at(1), C = at(2), d = accuracy::wide(ray.direction);
    const Quad u = d.dot(B.cross(C)), v = d.dot(C.cross(A)), w = d.dot(A.cross(B));
    const bool inside = (u >= 0 && v >= 0 && w >= 0) || (u <= 0 && v <= 0 && w <= 0);
    const Vector3 normal = (B - A).cross(C - A);
    const Quad towards = d.dot(normal), away = A.dot(normal);
    return inside && towards != 0 && (away > 0) == (towards > 0) && away != 0;
}

bool hits_any(const KXRay &ray, const Triangles &triangles, const std::vector<KXP3> &points)
{
    return std::any_of(triangles.begin(), triangles.end(), [&](const Triangle &triangle) {
        KXP3 point;
        return triangle.is_hit(ray, points, &point);
    });
}

constexpr double diagonal = 512; // The least that kx_fit_mesh makes.
constexpr double eye_distance = 2 * diagonal;
constexpr int rays_per_mesh = 20000;

// ---- The first edge

struct Flat {
    Share missed, hit_outside;
};

/** Rays straight down at a flat shape: missed at its inside, and hit next to it. */
Flat measure_flat(const Mesh &mesh, bool begun_well)
{
    const Triangles triangles = triangles_of(mesh, begun_well);
    Random random(1);
    Flat flat;
    for (int i = 0; i < 200000; ++i) {
        const KXRay ray = {{random.uniform(1), random.uniform(1), 10}, {0, 0, -1}};
        const bool is_inside =
            std::any_of(mesh.triangles.begin(), mesh.triangles.end(),
                        [&](const Corners &c) { return truly_meets(ray, mesh, c); });
        const bool is_hit = hits_any(ray, triangles, mesh.points);
        is_inside ? flat.missed.count(!is_hit) : flat.hit_outside.count(is_hit);
    }
    return flat;
}

Mesh turned_square()
{
    KXComponents parts = {};
    parts.scaleX = parts.scaleY = parts.scaleZ = parts.perspectiveW = 1;
    parts.rotateZ = 1.5707964f;
    KXM4 turn;
    KXM4Compose(&turn, &parts);
    Mesh square{"a unit square, turned by `KXM4Compose`",
                {{-0.5f, -0.5f, 0}, {0.5f, -0.5f, 0}, {0.5f, 0.5f, 0}, {-0.5f, 0.5f, 0}},
                {{0, 1, 2}, {0, 2, 3}}};
    KXM4NP3I1(&turn, 4, square.points.data(), square.points.data());
    return square;
}

Mesh turned_triangle()
{
    Mesh triangle{"a triangle, turned by `KXRotateInPlane`",
                  {{-0.5f, -0.3f, 0}, {0.7f, -0.3f, 0}, {-0.1f, 0.6f, 0}},
                  {{0, 1, 2}}};
    const KXV3 axis = {0, 0, 1};
    for (KXP3 &point : triangle.points) {
        KXRotateInPlane(&point, &axis, 1.5707964f);
    }
    return triangle;
}

void print_first_edge()
{
    std::puts("| shape | missed at its inside | hit next to it | missed, begun well | hit next to "
              "it |\n|---|---:|---:|---:|---:|");
    std::vector<Mesh> shapes = {turned_square(), turned_triangle()};
    for (const float across : {1e-2f, 1e-4f, 1e-5f, 1e-6f, 1e-7f}) {
        char name[64];
        std::snprintf(name, sizeof name, "legs of 1, the first edge %g across", double(across));
        shapes.push_back(
            {name, {{-0.5f, -0.5f, 0}, {-0.5f + across, 0.5f, 0}, {0.5f, 0.2f, 0}}, {{0, 1, 2}}});
        shapes.back().points[1].x = shapes.back().points[0].x + across;
    }
    for (const Mesh &shape : shapes) {
        const Flat as_is = measure_flat(shape, false), well = measure_flat(shape, true);
        std::printf("| %s | %s | %s | %s | %s |\n", shape.name.c_str(),
                    text(as_is.missed.percent()).c_str(), text(as_is.hit_outside.percent()).c_str(),
                    text(well.missed.percent()).c_str(), text(well.hit_outside.percent()).c_str());
    }
}

/** What rays at the turned triangle do, a grid of them: 0 for a miss that is one, 1 for a hit that
 * is one, 2 for a miss and 3 for a hit that is none. */
void print_grid()
{
    constexpr int rows = 300;
    const Mesh mesh = turned_triangle();
    for (int row = 0; row < rows; ++row) {
        for (const bool begun_well : {false, true}) {
            const Triangles triangles = triangles_of(mesh, begun_well);
            for (int column = 0; column < rows; ++column) {
                const auto at = [](int i) { return 1.6f * (float(i) + 0.5f) / rows - 0.8f; };
                const KXRay ray = {{at(column), at(row), 10}, {0, 0, -1}};
                const bool is_inside = truly_meets(ray, mesh, mesh.triangles[0]);
                const bool is_hit = hits_any(ray, triangles, mesh.points);
                std::printf("%d ", is_inside ? (is_hit ? 1 : 2) : (is_hit ? 3 : 0));
            }
        }
        std::puts("");
    }
}

// ---- Size

/** Thinner than singles can resolve: by a millionth of its longest edge. */
bool is_a_line(const std::vector<KXP3> &points, const Corners &c)
{
    const auto edge = [&](std::size_t from, std::size_t to) {
        return Vector3(accuracy::wide(points[c[to]]) - accuracy::wide(points[c[from]]));
    };
    const auto a = edge(0, 1), b = edge(1, 2);
    const Quad longest = std::max({a.squaredNorm(), b.squaredNorm(), edge(2, 0).squaredNorm()});
    return accuracy::length(a.cross(b)) <= 1e-6 * longest;
}

/** The triangles that a ray straight at the middle doesn't hit: they are below the tolerances. */
Share not_hit_at_the_middle(const Mesh &mesh, bool begun_well)
{
    Share share;
    for (const Corners &c : mesh.triangles) {
        if (is_a_line(mesh.points, c)) {
            continue;
        }
        const KXP3 middle = mean(mesh.points, c, {1.0 / 3, 1.0 / 3, 1.0 / 3});
        const Triangle triangle(mesh.points, c, begun_well);
        const KXPlane &plane = triangle.record.plane;
        const KXRay ray = ray_at(middle, {plane.a, plane.b, plane.c}, 1);
        KXP3 point;
        share.count(!triangle.is_hit(ray, mesh.points, &point));
    }
    return share;
}

void print_sizes(const std::vector<Mesh> &all)
{
    std::puts(
        "| diagonal | median | worst | median, begun well | worst |\n|---:|---:|---:|---:|---:|");
    for (const double size : {0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0, 100.0, 1000.0}) {
        std::vector<double> as_is, well;
        for (const Mesh &mesh : all) {
            const Mesh scaled = meshes::placed(mesh, size);
            as_is.push_back(not_hit_at_the_middle(scaled, false).percent());
            well.push_back(not_hit_at_the_middle(scaled, true).percent());
        }
        std::printf("| %g | %s | %s |\n", size, middle_and_worst(as_is).c_str(),
                    middle_and_worst(well).c_str());
    }
}

// ---- Rays at the inside of triangles

/** Rays at points of triangles, from everywhere, that truly meet the triangle and hit nothing at
 * all. */
Share hits_nothing(const Mesh &mesh, bool begun_well, int rays)
{
    const Triangles triangles = triangles_of(mesh, begun_well);
    Random random(2);
    Share share;
    for (int i = 0; i < rays; ++i) {
        const std::size_t index = random.below(std::uint32_t(triangles.size()));
        const KXRay ray = ray_at(point_on(mesh.points, mesh.triangles[index], random),
                                 random.unit_vector(), eye_distance);
        KXP3 point;
        if (triangles[index].is_hit(ray, mesh.points, &point)) {
            share.count(false);
        } else if (truly_meets(ray, mesh, mesh.triangles[index])) {
            share.count(!hits_any(ray, triangles, mesh.points));
        }
    }
    return share;
}

void print_distances(const std::vector<Mesh> &all)
{
    std::puts("| middle of the mesh | median | worst | median, begun well | worst "
              "|\n|---|---:|---:|---:|---:|");
    for (const int away : {0, 10, 100, 1000, 10000}) {
        std::vector<double> as_is, well;
        const float far = float(away * diagonal);
        for (const Mesh &mesh : all) {
            const Mesh moved =
                meshes::placed(mesh, diagonal, {far * 0.64f, far * 0.6f, far * 0.48f});
            as_is.push_back(hits_nothing(moved, false, rays_per_mesh).percent());
            well.push_back(hits_nothing(moved, true, rays_per_mesh).percent());
        }
        std::printf("| %s | %s | %s |\n",
                    away == 0 ? "the origin" : (std::to_string(away) + " diagonals away").c_str(),
                    middle_and_worst(as_is).c_str(), middle_and_worst(well).c_str());
    }
}

// ---- Edges and corners

KXV3 unit_sum(const Triangles &triangles, const std::vector<std::size_t> &some)
{
    KXV3 sum = {0, 0, 0};
    for (const std::size_t i : some) {
        const KXPlane &plane = triangles[i].record.plane;
        sum = {sum.x + plane.a, sum.y + plane.b, sum.z + plane.c};
    }
    KXV3Normalise(&sum, &sum);
    return sum;
}

/** Rays at one point that several triangles share: the share that truly meets one and hits none. */
void count_shared(const Mesh &mesh, const Triangles &triangles, const KXP3 &target,
                  const std::vector<std::size_t> &some, Share &share)
{
    const KXRay ray = ray_at(target, unit_sum(triangles, some), eye_distance);
    if (std::any_of(some.begin(), some.end(),
                    [&](std::size_t i) { return truly_meets(ray, mesh, mesh.triangles[i]); })) {
        share.count(std::none_of(some.begin(), some.end(), [&](std::size_t i) {
            KXP3 point;
            return triangles[i].is_hit(ray, mesh.points, &point);
        }));
    }
}

void print_edges(const std::vector<Mesh> &all)
{
    std::vector<double> at_edges, at_corners;
    Share inside;
    for (const Mesh &mesh : all) {
        const Mesh scaled = meshes::placed(mesh, diagonal);
        const Triangles triangles = triangles_of(scaled, true);
        std::map<std::pair<std::uint32_t, std::uint32_t>, std::vector<std::size_t>> edges;
        std::vector<std::vector<std::size_t>> corners(scaled.points.size());
        for (std::size_t i = 0; i < triangles.size(); ++i) {
            for (std::size_t k = 0; k < 3; ++k) {
                const std::uint32_t a = scaled.triangles[i][k],
                                    b = scaled.triangles[i][(k + 1) % 3];
                edges[{std::min(a, b), std::max(a, b)}].push_back(i);
                corners[a].push_back(i);
            }
        }
        Share edge, corner;
        for (const auto &[ends, some] : edges) {
            if (some.size() == 2) {
                const Corners both = {ends.first, ends.second, ends.second};
                count_shared(scaled, triangles, mean(scaled.points, both, {0.5, 0.5, 0}), some,
                             edge);
            }
        }
        for (std::size_t i = 0; i < corners.size(); ++i) {
            if (corners[i].size() > 2) {
                count_shared(scaled, triangles, scaled.points[i], corners[i], corner);
            }
        }
        const Share random = hits_nothing(scaled, true, 10 * rays_per_mesh);
        inside.lost += random.lost;
        inside.tried += random.tried;
        at_edges.push_back(edge.percent());
        at_corners.push_back(corner.percent());
    }
    std::puts("| rays at | median | worst |\n|---|---:|---:|");
    std::printf("| the middle of an edge of two triangles | %s |\n",
                middle_and_worst(at_edges).c_str());
    std::printf("| a corner of three or more triangles | %s |\n",
                middle_and_worst(at_corners).c_str());
    std::printf("| random points: %lu of %lu rays | | |\n", inside.lost, inside.tried);
}

// ---- A ray that starts at a hit

double dot(const KXV3 &a, const KXV3 &b)
{
    return double(a.x) * double(b.x) + double(a.y) * double(b.y) + double(a.z) * double(b.z);
}

void print_restarts(const std::vector<Mesh> &all)
{
    std::puts("| step, of the diagonal | median | worst |\n|---:|---:|---:|");
    for (const double step : {0.0, 1e-8, 1e-7, 3e-7, 1e-6}) {
        std::vector<double> again;
        for (const Mesh &mesh : all) {
            const Mesh scaled = meshes::placed(mesh, diagonal);
            const Triangles triangles = triangles_of(scaled, true);
            Random random(3);
            Share share;
            for (int i = 0; i < rays_per_mesh; ++i) {
                const std::size_t index = random.below(std::uint32_t(triangles.size()));
                const KXRay ray = ray_at(point_on(scaled.points, scaled.triangles[index], random),
                                         random.unit_vector(), eye_distance);
                KXV3 away = random.unit_vector();
                KXP3 hit, ignored;
                if (!triangles[index].is_hit(ray, scaled.points, &hit)) {
                    continue;
                }
                // To the side that the ray has come from, and on that side.
                const KXPlane &plane = triangles[index].record.plane;
                const KXV3 normal = {plane.a, plane.b, plane.c};
                const float side = dot(normal, ray.direction) < 0 ? 1.0f : -1.0f;
                if (dot(normal, away) * double(side) < 0) {
                    away = {-away.x, -away.y, -away.z};
                }
                KXRay next = {hit, away};
                KXV3Combine(&hit, &normal, &next.origin, 1.0f, side * float(step * diagonal));
                share.count(triangles[index].is_hit(next, scaled.points, &ignored));
            }
            again.push_back(share.percent());
        }
        std::printf("| %g | %s |\n", step, middle_and_worst(again).c_str());
    }
}

// ---- The direction's length

void print_lengths(const std::vector<Mesh> &all)
{
    std::puts("| length | boxes missed | triangles missed |\n|---:|---:|---:|");
    for (const float length : {100.0f, 1.0f, 1e-1f, 1e-2f, 1e-3f, 1e-4f, 1e-5f, 1e-6f}) {
        Share boxes, hits;
        for (const Mesh &mesh : all) {
            const Mesh scaled = meshes::placed(mesh, diagonal);
            const Triangles triangles = triangles_of(scaled, true);
            Random random(4);
            for (int i = 0; i < rays_per_mesh; ++i) {
                const std::size_t index = random.below(std::uint32_t(triangles.size()));
                KXRay ray = ray_at(point_on(scaled.points, scaled.triangles[index], random),
                                   random.unit_vector(), eye_distance);
                KXP3 point;
                // What a unit direction hits, and the box around it, grown as the header asks for.
                if (!triangles[index].is_hit(ray, scaled.points, &point)) {
                    continue;
                }
                KXBox box = {point, point};
                for (const std::uint32_t corner : scaled.triangles[index]) {
                    KXPutPointInBox(&scaled.points[corner], &box);
                }
                const float more = 0.001f;
                box.minimum = {box.minimum.x - more, box.minimum.y - more, box.minimum.z - more};
                box.maximum = {box.maximum.x + more, box.maximum.y + more, box.maximum.z + more};
                ray.direction = {ray.direction.x * length, ray.direction.y * length,
                                 ray.direction.z * length};
                boxes.count(KXRayIxBox(&ray, &box, nullptr) == 0);
                hits.count(!triangles[index].is_hit(ray, scaled.points, &point));
            }
        }
        std::printf("| %g | %s | %s |\n", double(length), text(boxes.percent()).c_str(),
                    text(hits.percent()).c_str());
    }
}

} // namespace

int main(int argc, char **argv)
{
    CLI::App app("Measures what a host has to know of rays and meshes.", "meshes");
    const CLI::Option *const grid = app.add_flag("--grid", "Prints what the picture is drawn from");
    CLI11_PARSE(app, argc, argv);
    if (*grid) {
        print_grid();
        return 0;
    }
    try {
        const std::vector<Mesh> all = meshes::all_meshes();
        const auto section = [](const char *title) { std::printf("\n%s\n\n", title); };
        section("The first edge");
        print_first_edge();
        section("Small meshes");
        print_sizes(all);
        section("Far from the origin");
        print_distances(all);
        section("Edges and corners");
        print_edges(all);
        section("Restarted rays");
        print_restarts(all);
        section("Directions");
        print_lengths(all);
        return 0;
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "meshes: %s\n", failure.what());
        return 1;
    }
}
