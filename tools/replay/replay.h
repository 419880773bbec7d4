/*
 * A hundred bodies that move, turn, bounce off boxes and are seen by rays, step after step from a
 * seed: a simulation that several machines run in step, each for itself, must have the same bits on
 * all of them.
 *
 * The geometry is the library's. What the program adds are sums, differences, products and
 * comparisons of singles, and it is compiled like the library: without contraction, and not for the
 * x87.
 */
#ifndef KX_REPLAY_H
#define KX_REPLAY_H

#include "support/digest.h"

#include <kxmaths5.hpp>

#include <array>
#include <optional>
#include <utility>

namespace replay
{

using namespace kxm;

/** Of the run whose digests are recorded. */
constexpr std::uint64_t seed = 5;

struct Body {
    position place; /**< Angles from -pi to pi. */
    vec3 velocity, spin;
    vec3 half; /**< Of its edges. */
    std::uint32_t seen = 0;
    mat4 to_world, to_body;
    box reach; /**< In the world. */

    point3 centre() const
    {
        return {place.x, place.y, place.z};
    }
    box own_box() const
    {
        return {point3(-half), point3(half)};
    }
};

struct Watcher {
    ray path;
    mat4 turn;  /**< From step to step. */
    point3 end; /**< Of what is drawn of the ray. */
};

class Replay
{
public:
    explicit Replay(std::uint64_t seed) : random(seed)
    {
        // The six sides of a room, and blocks in it, all grown by what a body needs around its
        // centre.
        const float w = width, h = height, out = 100.0f;
        obstacles = {{
            {{-out, -out, -out}, {-w, out, out}},
            {{w, -out, -out}, {out, out, out}},
            {{-out, -out, -out}, {out, -h, out}},
            {{-out, h, -out}, {out, out, out}},
            {{-out, -out, -out}, {out, out, -w}},
            {{-out, -out, w}, {out, out, out}},
            {{-8, -h, -7}, {-5, 2, -4}},
            {{4, -h, -8}, {7, -1, -5}},
            {{-3, -h, 3}, {0, 3, 6}},
            {{6, -2, 2}, {9, 1, 7}},
            {{-10, 1, 4}, {-7, h, 8}},
            {{-2, -1, -3}, {2, 2, -1}},
        }};
        for (std::size_t i = 0; i < obstacles.size(); ++i) {
            const vec3 margin(body_radius, body_radius, body_radius);
            grown[i] = {obstacles[i].minimum() - margin, obstacles[i].maximum() + margin};
        }
        for (Body &body : bodies) {
            const point3 start = free_place();
            const vec3 turn = fractions(pi, pi, pi);
            body.place = position(start, turn.x, turn.y, turn.z);
            body.velocity = fractions(1.0f, 1.0f, 1.0f);
            body.spin = fractions(0.01f, 0.01f, 0.01f);
            body.half = vec3(0.5f, 0.5f, 0.5f) + fractions(0.2f, 0.2f, 0.2f);
            keep_speed(body);
            place(body);
        }
        for (Watcher &watcher : watchers) {
            const point3 origin = free_place();
            watcher.path = unit_ray(origin, fractions(1.0f, 1.0f, 1.0f));
            const vec3 turn = fractions(0.004f, 0.02f, 0.004f);
            watcher.turn = mat4::rotation(turn.x, turn.y, turn.z, order::xyz);
        }
    }

    void step()
    {
        for (Body &body : bodies) {
            move(body);
            place(body);
        }
        for (std::size_t i = 0; i < bodies.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) {
                collide(bodies[i], bodies[j]);
            }
        }
        for (Watcher &watcher : watchers) {
            const ray &path = watcher.path;
            watcher.path = unit_ray(path.origin(), watcher.turn * path.direction());
            look(watcher);
        }
        for (const Body &body : bodies) {
            enter(body.place, body.velocity, body.spin, body.to_world, body.seen);
        }
        for (const Watcher &watcher : watchers) {
            enter(watcher.path, watcher.end);
        }
    }

    /** Of all states so out. */
    std::uint64_t digest() const
    {
        return states.value();
    }

    static constexpr float width = 12.0f, height = 6.0f; /**< Half of the room's. */
    std::array<Body, 120> bodies;
    std::array<Watcher, 8> watchers;
    std::array<box, 12> obstacles;

private:
    static constexpr float pi = 3.1415927f, body_radius = 0.9f, speed = 0.03f;

    /** From -1 to 1. */
    float fraction()
    {
        random += 0x9e3779b97f4a7c15U;
        const auto bits = static_cast<std::int32_t>(test::mixed(random) >> 40);
        return static_cast<float>(bits - 0x800000) * 0x1p-23f;
    }

    /** Of three numbers; in braces, since compilers choose the order of a call's arguments. */
    vec3 fractions(float x, float y, float z)
    {
        return {x * fraction(), y * fraction(), z * fraction()};
    }

    point3 free_place()
    {
        point3 place;
        do {
            place = point3(fractions(width, height, width));
        } while (obstacle_on({place, place}));
        return place;
    }

    /** The first obstacle that the centre of a body meets on its way, and where. */
    std::optional<std::pair<box, point3>> obstacle_on(const line &way) const
    {
        for (const box &obstacle : grown) {
            if (const auto point = way.hit(obstacle)) {
                return std::pair{obstacle, *point};
            }
        }
        return {};
    }

    static ray unit_ray(const point3 &origin, vec3 direction)
    {
        KXV3Normalise(&direction, &direction);
        return {origin, direction};
    }

    static void keep_speed(Body &body)
    {
        KXV3Scale(&body.velocity, speed);
    }

    void move(Body &body) const
    {
        point3 to = body.centre() + body.velocity;
        if (const auto met = obstacle_on({body.centre(), to})) {
            bounce(body, met->first, met->second);
            to = body.centre();
        }
        body.place = position(to, turned(body.place.rotateX, body.spin.x),
                              turned(body.place.rotateY, body.spin.y),
                              turned(body.place.rotateZ, body.spin.z));
    }

    static float turned(float angle, float by)
    {
        const float sum = angle + by;
        return sum > pi ? sum - 2.0f * pi : sum < -pi ? sum + 2.0f * pi : sum;
    }

    /** Off the face that is closest to the point of contact. */
    static void bounce(Body &body, const box &obstacle, const point3 &point)
    {
        const vec3 below = point - obstacle.minimum(), above = obstacle.maximum() - point;
        float nearest = 1e9f;
        vec3 normal;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            for (const float side : {-1.0f, 1.0f}) {
                const float depth = (side < 0.0f ? below : above)[axis];
                if (depth < nearest) {
                    nearest = depth;
                    normal = {axis == 0 ? side : 0.0f, axis == 1 ? side : 0.0f,
                              axis == 2 ? side : 0.0f};
                }
            }
        }
        const float along = dot_of_singles(body.velocity, normal);
        if (along < 0.0f) {
            body.velocity = combine(body.velocity, normal, 1.0f, -2.0f * along);
        }
        // The face drags at the body, which is made to roll.
        body.spin = combine(body.spin, cross(normal, body.velocity), 0.5f, 0.5f);
    }

    static float dot_of_singles(const vec3 &a, const vec3 &b)
    {
        return a.x * b.x + a.y * b.y + a.z * b.z;
    }

    /** Two bodies whose boxes overlap exchange what they have of velocity towards each other. */
    static void collide(Body &a, Body &b)
    {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            if (a.reach.maximum()[axis] < b.reach.minimum()[axis] ||
                b.reach.maximum()[axis] < a.reach.minimum()[axis]) {
                return;
            }
        }
        vec3 way = b.centre() - a.centre();
        KXV3Normalise(&way, &way);
        const float approach = dot_of_singles(b.velocity - a.velocity, way);
        if (approach < 0.0f) {
            a.velocity = combine(a.velocity, way, 1.0f, approach);
            b.velocity = combine(b.velocity, way, 1.0f, -approach);
        }
    }

    void place(Body &body) const
    {
        const auto number = static_cast<KXRotationOrder>(&body - bodies.data());
        KXM4Position(&body.to_world, &body.to_body, &body.place, number % 6);
        body.reach = body.to_world * body.own_box();
    }

    static double distance(const ray &path, const point3 &point)
    {
        return (point - path.origin()).length();
    }

    /** Finds the first body on the ray, which then shies away. */
    void look(Watcher &watcher)
    {
        const ray &path = watcher.path;
        Body *seen = nullptr;
        double nearest = static_cast<double>(KX_HUGE);
        for (const box &obstacle : obstacles) {
            const auto point = path.hit(obstacle);
            if (point && distance(path, *point) < nearest) {
                nearest = distance(path, *point);
                watcher.end = *point;
            }
        }
        for (Body &body : bodies) {
            if (!path.meets(body.reach)) {
                continue;
            }
            const ray own_path = body.to_body * path;
            const auto point = own_path.hit(body.own_box());
            if (point && distance(own_path, *point) < nearest) {
                nearest = distance(own_path, *point);
                seen = &body;
                watcher.end = body.to_world * *point;
            }
        }
        if (seen != nullptr) {
            ++seen->seen;
            seen->velocity = combine(seen->velocity, path.direction(), 1.0f, 0.1f * speed);
            keep_speed(*seen);
        }
    }

    template <typename... Records>
    void enter(const Records &...records)
    {
        const auto enter_one = [this](const auto &record) {
            for (const auto word :
                 test::bits_as<std::array<std::uint32_t, sizeof record / 4>>(record)) {
                states.word(word);
            }
        };
        (enter_one(records), ...);
    }

    std::array<box, 12> grown;
    std::uint64_t random;
    test::Digest states;
};

} // namespace replay

#endif
