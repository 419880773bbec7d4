/*
 * The page's compiled part: the hierarchy of examples/cast_mesh over a mesh, and the digests. Each
 * use has an instance of the module, and with it a memory of its own, so nothing here is ever
 * freed. compiled.js calls it.
 */
#include "../examples/cast_mesh/hierarchy.h"
#include "../tools/digest/trial.h"
#include "../tools/replay/replay.h"

#include <kxmaths5/everyday.h>

namespace
{

/** Scaled to the size for which the tolerances of the triangle test are made. */
struct Mesh {
    std::vector<KXP3> points;
    std::vector<KXTriangle> triangles;
    KXM4 fit, back;
    std::optional<example::Hierarchy> hierarchy;
} mesh;

/** Of a call of JavaScript, and of what it gets back. */
struct Cast {
    KXRay ray;
    KXP3 point;
    float distance;
} cast;

std::optional<replay::Replay> run;

/** What is drawn of the replay. */
struct Picture {
    KXP3 corners[126][8]; /**< Of the bodies, then of the blocks in the room. */
    KXP3 rays[8][2];
    std::uint32_t seen[120];
} picture;

/** The corners of a box after a transform. */
void put_corners(const KXBox &box, const KXM4 &matrix, KXP3 *corners)
{
    for (int i = 0; i < 8; ++i) {
        corners[i] = {(i & 1 ? box.maximum : box.minimum).x, (i & 2 ? box.maximum : box.minimum).y,
                      (i & 4 ? box.maximum : box.minimum).z};
    }
    KXM4NP3I1(&matrix, 8, corners, corners);
}

/** Calls `act` with the entry of one function. */
template <typename Act>
void with_function(std::uint32_t wanted, Act act)
{
    catalogue::for_every_function([&, index = 0U](const auto &entry) mutable {
        if (index++ == wanted) {
            act(entry);
        }
    });
}

} // namespace

#define EXPORT(name) extern "C" __attribute__((export_name(#name)))

EXPORT(reserve) void *reserve(std::uint32_t bytes)
{
    return std::malloc(bytes);
}

/** corners: three indices for each triangle. Returns what is wrong with the mesh, or null. */
EXPORT(set_mesh)
const char *set_mesh(const KXP3 *points, std::uint32_t point_count, const std::uint32_t *corners,
                     std::uint32_t triangle_count)
{
    const auto *const corners_end = corners + std::size_t{3} * triangle_count;
    if (std::any_of(corners, corners_end, [&](std::uint32_t i) { return i >= point_count; })) {
        return "a triangle has a corner that is none of the points";
    }
    KXBox box = point_count == 0 ? KXBox{} : KXBox{points[0], points[0]};
    for (std::uint32_t i = 0; i < point_count; ++i) {
        KXPutPointInBox(&points[i], &box);
    }
    if (kx_fit_mesh(&box, &mesh.fit, &mesh.back) != 0) {
        return "the mesh has no extent, or one beyond what can be drawn";
    }
    mesh.points.resize(point_count);
    KXM4NP3I1(&mesh.fit, point_count, points, mesh.points.data());
    mesh.triangles.resize(triangle_count);
    for (KXTriangle &triangle : mesh.triangles) {
        kx_triangle(mesh.points.data(), corners[0], corners[1], corners[2], &triangle);
        corners += 3;
    }
    // Rays may come from as far away as the page's camera goes.
    KXTransformBox(&box, &mesh.fit, &box);
    const auto reach = static_cast<float>(64.0 * kx_distance(&box.minimum, &box.maximum));
    mesh.hierarchy.emplace(mesh.triangles, mesh.points, reach);
    return nullptr;
}

EXPORT(cast) Cast *the_cast()
{
    return &cast;
}

/** The triangle that the ray meets first; -1 for none. */
EXPORT(nearest) std::int32_t nearest()
{
    KXRay ray;
    KXTransformRay(&cast.ray, &mesh.fit, &ray);
    const auto hit = mesh.hierarchy->nearest(ray);
    if (!hit) {
        return -1;
    }
    KXM4P3I1(&mesh.back, &hit->point, &cast.point);
    cast.distance = static_cast<float>(kx_distance(&cast.ray.origin, &cast.point));
    return static_cast<std::int32_t>(hit->triangle);
}

/** Null after the last function. */
EXPORT(function_name) const char *function_name(std::uint32_t index)
{
    const char *name = nullptr;
    with_function(index, [&](const auto &entry) { name = entry.name; });
    return name;
}

EXPORT(function_digest) std::uint64_t function_digest(std::uint32_t index)
{
    std::uint64_t digest = 0;
    with_function(index,
                  [&](const auto &entry) { digest = test::Trial(entry.name, {}).run(entry); });
    return digest;
}

/** Begins the run that kx_replay prints, or the same with one bit of one body changed. */
EXPORT(replay_start) void replay_start(bool change_a_bit)
{
    run.emplace(replay::seed);
    if (change_a_bit) {
        float &x = run->bodies[0].place.x;
        x = test::bits_as<float>(test::bits_as<std::uint32_t>(x) ^ 1);
    }
}

EXPORT(replay_step) void replay_step()
{
    run->step();
}

EXPORT(replay_digest) std::uint64_t replay_digest()
{
    return run->digest();
}

EXPORT(replay_picture) Picture *replay_picture()
{
    auto *corners = picture.corners;
    for (const replay::Body &body : run->bodies) {
        put_corners(body.own_box(), body.to_world, *corners++);
        picture.seen[&body - run->bodies.data()] = body.seen;
    }
    KXM4 unit;
    KXM4Unit(&unit);
    // The first six obstacles are the walls.
    std::for_each(run->obstacles.begin() + 6, run->obstacles.end(),
                  [&](const KXBox &block) { put_corners(block, unit, *corners++); });
    auto *ray = picture.rays;
    for (const replay::Watcher &watcher : run->watchers) {
        (*ray)[0] = watcher.path.origin();
        (*ray++)[1] = watcher.end;
    }
    return &picture;
}
