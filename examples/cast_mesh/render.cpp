#include "render.h"

#include "progress.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <thread>

namespace example
{

namespace
{

/** Rays for each pixel, each way: edges come out smooth. */
constexpr int samples = 2;

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
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

unsigned char byte_for(float energy)
{
    return static_cast<unsigned char>(255.0f * std::pow(std::clamp(energy, 0.0f, 1.0f), 1 / 2.2f) +
                                      0.5f);
}

/** Colours what a ray meets. Reads the scene only, so that all threads share one. */
class Shader
{
public:
    Shader(const Scene &scene_, const Hierarchy &hierarchy_, const Light &light)
        : scene(scene_), hierarchy(hierarchy_)
    {
        // Directions go into the scene's space as vectors do, and become unit length there.
        const KXV3 world_up = {0.0f, 1.0f, 0.0f};
        KXEAToVector(light.elevation, light.azimuth, &to_light);
        KXM4P3I0(&scene.from_world, &to_light, &to_light);
        KXV3Normalise(&to_light, &to_light);
        KXM4P3I0(&scene.from_world, &world_up, &up);
        KXV3Normalise(&up, &up);
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
        KXV3 normal = {plane.a, plane.b, plane.c};
        if (dot(normal, ray.direction) > 0.0f) {
            normal = {-normal.x, -normal.y, -normal.z}; // towards the eye
        }
        const float direct = in_light(hit->point, normal) ? dot(normal, to_light) : 0.0f;
        const float from_sky = 0.5f + 0.5f * dot(normal, up);
        const float bright = 0.10f + 0.22f * from_sky + 0.80f * direct;
        if (!scene.is_floor(hit->triangle)) {
            return dimmed({0.84f, 0.72f, 0.55f}, bright);
        }
        return mix(dimmed({0.66f, 0.68f, 0.70f}, bright), sky, haze(hit->point));
    }

private:
    bool in_light(const KXP3 &point, const KXV3 &normal) const
    {
        if (dot(normal, to_light) <= 0.0f) {
            return false;
        }
        // Off the surface by a ten-thousandth of the mesh or two, so that no triangle shades
        // itself; four times the mesh's size and more, which is as far as the floor shows.
        KXLine line;
        KXV3Combine(&point, &normal, &line.start, 1.0f, 0.1f);
        KXV3Combine(&line.start, &to_light, &line.end, 1.0f, 4096.0f);
        return !hierarchy.is_blocked(line);
    }

    /** The floor fades into the sky before it ends. */
    float haze(const KXP3 &point) const
    {
        const auto end = static_cast<float>(Scene::floor_reach * scene.diagonal) * scene.scale;
        const auto away = static_cast<float>(KXV3Length(&point));
        return std::clamp(away / end * 1.4f - 0.35f, 0.0f, 1.0f);
    }

    const Scene &scene;
    const Hierarchy &hierarchy;
    KXV3 to_light, up;
};

void render_row(const Shader &shader, const Camera &camera, int row, Picture &picture)
{
    constexpr float share = 1.0f / (samples * samples);
    unsigned char *pixel = &picture.rgb[std::size_t{3} * static_cast<std::size_t>(row) *
                                        static_cast<std::size_t>(picture.width)];
    for (int column = 0; column < picture.width; ++column) {
        Colour sum = {0, 0, 0};
        for (int s = 0; s < samples * samples; ++s) {
            const Colour c = shader.seen_along(camera.ray_through(
                column + (s % samples + 0.5) / samples, row + (s / samples + 0.5) / samples));
            sum = {sum.r + share * c.r, sum.g + share * c.g, sum.b + share * c.b};
        }
        *pixel++ = byte_for(sum.r);
        *pixel++ = byte_for(sum.g);
        *pixel++ = byte_for(sum.b);
    }
}

} // namespace

Picture render(const Scene &scene, const Hierarchy &hierarchy, const Camera &camera,
               const Light &light, int width, int height)
{
    Picture picture = {width, height, {}};
    picture.rgb.resize(std::size_t{3} * static_cast<std::size_t>(width) *
                       static_cast<std::size_t>(height));
    const Shader shader(scene, hierarchy, light);
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
