#include "render.h"

#include "report.h"

#include <kxmaths5/everyday.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <thread>

namespace example
{

namespace
{

/** Rays for each pixel, each way, and for one whose rays differ in colour: edges come out smooth.
 */
constexpr int samples = 2, samples_at_edge = 5;
/** In steps of the picture's bytes. */
constexpr int visible_difference = 6;

/** Light, in equal steps of energy; a picture wants equal steps for the eye. */
struct Colour {
    float r, g, b;
};

Colour mix(const Colour &a, const Colour &b, float t)
{
    return {a.r + t * (b.r - a.r), a.g + t * (b.g - a.g), a.b + t * (b.b - a.b)};
}

Colour dimmed(const Colour &c, float t)
{
    return {c.r * t, c.g * t, c.b * t};
}

float dot(const KXV3 &a, const KXV3 &b)
{
    return static_cast<float>(kx_dot(&a, &b));
}

std::array<unsigned char, 3> bytes_for(const Colour &c)
{
    const auto byte = [](float energy) {
        return static_cast<unsigned char>(
            255.0f * std::pow(std::clamp(energy, 0.0f, 1.0f), 1 / 2.2f) + 0.5f);
    };
    return {byte(c.r), byte(c.g), byte(c.b)};
}

/** Colours what a ray meets. Reads the scene only, so that all threads share one. */
class Shader
{
public:
    Shader(const Scene &scene_, const Hierarchy &hierarchy_,
           const std::vector<CornerNormals> &normals_, const Light &light)
        : scene(scene_), hierarchy(hierarchy_), normals(normals_)
    {
        // Directions go into the scene's space as vectors do.
        const KXV3 world_up = {0.0f, 1.0f, 0.0f};
        KXEAToVector(light.elevation, light.azimuth, &to_light);
        KXM4P3I0(&scene.turn_back, &to_light, &to_light);
        KXM4P3I0(&scene.turn_back, &world_up, &up);
    }

    Colour seen_along(const KXRay &ray) const
    {
        // Paler near the horizon, wherever the world's up is in this space.
        const Colour sky = mix({0.80f, 0.84f, 0.90f}, {0.45f, 0.58f, 0.80f},
                               std::clamp(1.6f * dot(up, ray.direction) + 0.3f, 0.0f, 1.0f));
        const auto hit = hierarchy.nearest(ray);
        if (!hit) {
            return sky;
        }
        const KXPlane &plane = scene.triangles[hit->triangle].plane;
        const KXV3 flat = facing({plane.a, plane.b, plane.c}, ray.direction);
        const KXV3 smooth = facing(normal_at(*hit, flat), {-flat.x, -flat.y, -flat.z});
        const float direct =
            in_light(hit->point, flat) ? std::max(0.0f, dot(smooth, to_light)) : 0.0f;
        const float from_sky = 0.5f + 0.5f * dot(smooth, up);
        const float bright = 0.10f + 0.22f * from_sky + 0.80f * direct;
        if (!scene.is_floor(hit->triangle)) {
            return dimmed({0.84f, 0.72f, 0.55f}, bright);
        }
        return mix(dimmed({0.66f, 0.68f, 0.70f}, bright), sky, haze(hit->point));
    }

private:
    /** A normal or its opposite: whichever a path comes at from the front. */
    static KXV3 facing(const KXV3 &normal, const KXV3 &path)
    {
        return dot(normal, path) > 0.0f ? KXV3{-normal.x, -normal.y, -normal.z} : normal;
    }

    /** The corners' normals, in the shares that the corners have in the point. */
    KXV3 normal_at(const Hit &hit, const KXV3 &flat) const
    {
        float share[3];
        if (normals.empty() || scene.is_floor(hit.triangle) ||
            kx_barycentric(&scene.triangles[hit.triangle], scene.points.data(), &hit.point,
                           share) != 0) {
            return flat;
        }
        const CornerNormals &corner = normals[hit.triangle];
        KXV3 normal;
        KXV3Combine(&corner[0], &corner[1], &normal, share[0], share[1]);
        KXV3Combine(&normal, &corner[2], &normal, 1.0f, share[2]);
        return KXV3Normalise(&normal, &normal) > 0.0 ? normal : flat;
    }

    bool in_light(const KXP3 &point, const KXV3 &normal) const
    {
        if (dot(normal, to_light) <= 0.0f) {
            return false;
        }
        // Off the surface by 10 to 20 millionths of the mesh, so that no triangle shades itself;
        // four times the mesh's size and more, which is as far as the floor shows.
        KXLine line;
        KXV3Combine(&point, &normal, &line.start, 1.0f, 0.01f);
        KXV3Combine(&line.start, &to_light, &line.end, 1.0f, 4096.0f);
        return !hierarchy.is_blocked(line);
    }

    /** The floor fades into the sky before it ends. */
    float haze(const KXP3 &point) const
    {
        const auto end = static_cast<float>(Scene::floor_reach * scene.diagonal);
        const auto away = static_cast<float>(KXV3Length(&point));
        return std::clamp(away / end * 1.4f - 0.35f, 0.0f, 1.0f);
    }

    const Scene &scene;
    const Hierarchy &hierarchy;
    const std::vector<CornerNormals> &normals;
    KXV3 to_light, up;
};

using Pixel = std::array<unsigned char, 3>;

/** The mean of rays on a grid in a pixel, and whether a person would see the rays differ. */
std::pair<Pixel, bool> sampled(const Shader &shader, const Camera &camera, int column, int row,
                               int rays_each_way)
{
    const float share = 1.0f / static_cast<float>(rays_each_way * rays_each_way);
    Colour sum = {0, 0, 0};
    Pixel darkest = {255, 255, 255}, brightest = {0, 0, 0};
    for (int s = 0; s < rays_each_way * rays_each_way; ++s) {
        const Colour c =
            shader.seen_along(camera.ray_through(column + (s % rays_each_way + 0.5) / rays_each_way,
                                                 row + (s / rays_each_way + 0.5) / rays_each_way));
        const Colour seen = {std::min(c.r, 1.0f), std::min(c.g, 1.0f), std::min(c.b, 1.0f)};
        sum = {sum.r + share * seen.r, sum.g + share * seen.g, sum.b + share * seen.b};
        const Pixel bytes = bytes_for(seen);
        for (std::size_t i = 0; i < 3; ++i) {
            darkest[i] = std::min(darkest[i], bytes[i]);
            brightest[i] = std::max(brightest[i], bytes[i]);
        }
    }
    bool differ = false;
    for (std::size_t i = 0; i < 3; ++i) {
        differ = differ || brightest[i] - darkest[i] > visible_difference;
    }
    return {bytes_for(sum), differ};
}

void render_row(const Shader &shader, const Camera &camera, int row, Picture &picture)
{
    unsigned char *out = &picture.rgb[std::size_t{3} * static_cast<std::size_t>(row) *
                                      static_cast<std::size_t>(picture.width)];
    for (int column = 0; column < picture.width; ++column) {
        auto [pixel, is_edge] = sampled(shader, camera, column, row, samples);
        if (is_edge) {
            pixel = sampled(shader, camera, column, row, samples_at_edge).first;
        }
        out = std::copy(pixel.begin(), pixel.end(), out);
    }
}

} // namespace

Picture render(const Scene &scene, const Hierarchy &hierarchy, const Camera &camera,
               const std::vector<CornerNormals> &normals, const Light &light, int width, int height)
{
    Picture picture = {width, height, {}};
    picture.rgb.resize(std::size_t{3} * static_cast<std::size_t>(width) *
                       static_cast<std::size_t>(height));
    const Shader shader(scene, hierarchy, normals, light);
    Progress progress("casting", static_cast<std::size_t>(height));
    std::atomic<int> next_row{0};
    const auto work = [&] {
        for (int row = next_row++; row < height; row = next_row++) {
            render_row(shader, camera, row, picture);
            progress.advance(1);
        }
    };
    std::vector<std::thread> threads;
    for (unsigned i = 1; i < std::thread::hardware_concurrency(); ++i) {
        threads.emplace_back(work);
    }
    work();
    for (std::thread &thread : threads) {
        thread.join();
    }
    return picture;
}

} // namespace example
