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

#include <kxmaths5.h>

#include <array>
#include <optional>

namespace replay
{

/** Of the run whose digests are recorded. */
constexpr std::uint64_t seed = 5;

struct Body {
    KXPosition place; /**< Angles from -pi to pi. */
    KXV3 velocity, spin;
    KXV3 half; /**< Of its edges. */
    std::uint32_t seen;
    KXM4 to_world, to_body;
    KXBox reach; /**< In the world. */
};

struct Watcher {
    KXRay ray;
    KXM4 turn;         /**< From step to step. */
    std::int32_t sees; /**< A body, or -1. */
    KXP3 end;          /**< Of what is drawn of the ray. */
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
            const KXV3 margin = {body_radius, body_radius, body_radius};
            grown[i] = obstacles[i];
            KXV3Combine(&grown[i].minimum, &margin, &grown[i].minimum, 1.0f, -1.0f);
            KXV3Combine(&grown[i].maximum, &margin, &grown[i].maximum, 1.0f, 1.0f);
        }
        for (Body &body : bodies) {
            const KXP3 start = free_place();
            body = {};
            body.place = {start.x,         start.y,         start.z,
                          pi * fraction(), pi * fraction(), pi * fraction()};
            body.velocity = {fraction(), fraction(), fraction()};
            body.spin = {0.01f * fraction(), 0.01f * fraction(), 0.01f * fraction()};
            body.half = {0.5f + 0.2f * fraction(), 0.5f + 0.2f * fraction(),
                         0.5f + 0.2f * fraction()};
            keep_speed(body);
            place(body);
        }
        for (Watcher &watcher : watchers) {
            watcher.ray.origin = free_place();
            watcher.ray.direction = {fraction(), fraction(), fraction()};
            KXV3Normalise(&watcher.ray.direction, &watcher.ray.direction);
            // In braces, since compilers choose the order of a call's arguments.
            const KXV3 turn = {0.004f * fraction(), 0.02f * fraction(), 0.004f * fraction()};
            KXM4Orientation(&watcher.turn, nullptr, turn.x, turn.y, turn.z, KX_ORDER_XYZ);
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
            KXM4P3I0(&watcher.turn, &watcher.ray.direction, &watcher.ray.direction);
            KXV3Normalise(&watcher.ray.direction, &watcher.ray.direction);
            look(watcher);
        }
        for (const Body &body : bodies) {
            enter(body.place);
            enter(body.velocity);
            enter(body.spin);
            enter(body.to_world);
            states.word(body.seen);
        }
        for (const Watcher &watcher : watchers) {
            enter(watcher.ray);
            enter(watcher.end);
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
    std::array<KXBox, 12> obstacles;

private:
    static constexpr float pi = 3.1415927f, body_radius = 0.9f, speed = 0.03f;

    /** From -1 to 1. */
    float fraction()
    {
        random += 0x9e3779b97f4a7c15U;
        const auto bits = static_cast<std::int32_t>(test::mixed(random) >> 40);
        return static_cast<float>(bits - 0x800000) * 0x1p-23f;
    }

    KXP3 free_place()
    {
        KXP3 place;
        do {
            place = {width * fraction(), height * fraction(), width * fraction()};
        } while (obstacle_on({place, place}));
        return place;
    }

    /** The first obstacle that the centre of a body meets on its way, and where. */
    std::optional<std::pair<std::size_t, KXP3>> obstacle_on(const KXLine &way) const
    {
        KXP3 point;
        for (std::size_t i = 0; i < grown.size(); ++i) {
            if (KXLineIxBox(&way, &grown[i], &point) == 1) {
                return std::pair{i, point};
            }
        }
        return {};
    }

    static void keep_speed(Body &body)
    {
        KXV3Scale(&body.velocity, speed);
    }

    void move(Body &body) const
    {
        const KXP3 from = centre(body);
        KXP3 to;
        KXV3Combine(&from, &body.velocity, &to, 1.0f, 1.0f);
        if (const auto met = obstacle_on({from, to})) {
            bounce(body, grown[met->first], met->second);
        } else {
            body.place.x = to.x;
            body.place.y = to.y;
            body.place.z = to.z;
        }
        body.place.rotateX = turned(body.place.rotateX, body.spin.x);
        body.place.rotateY = turned(body.place.rotateY, body.spin.y);
        body.place.rotateZ = turned(body.place.rotateZ, body.spin.z);
    }

    static float turned(float angle, float by)
    {
        const float sum = angle + by;
        return sum > pi ? sum - 2.0f * pi : sum < -pi ? sum + 2.0f * pi : sum;
    }

    /** Off the face that is closest to the point of contact. */
    static void bounce(Body &body, const KXBox &box, const KXP3 &point)
    {
        const float below[] = {point.x - box.minimum.x, point.y - box.minimum.y,
                               point.z - box.minimum.z};
        const float above[] = {box.maximum.x - point.x, box.maximum.y - point.y,
                               box.maximum.z - point.z};
        float nearest = 1e9f;
        KXV3 normal = {};
        for (int axis = 0; axis < 3; ++axis) {
            for (const float side : {-1.0f, 1.0f}) {
                const float depth = side < 0.0f ? below[axis] : above[axis];
                if (depth < nearest) {
                    nearest = depth;
                    normal = {axis == 0 ? side : 0.0f, axis == 1 ? side : 0.0f,
                              axis == 2 ? side : 0.0f};
                }
            }
        }
        const float along = dot(body.velocity, normal);
        if (along < 0.0f) {
            KXV3Combine(&body.velocity, &normal, &body.velocity, 1.0f, -2.0f * along);
        }
        // The face drags at the body, which is made to roll.
        KXV3 roll;
        KXV3Cross(&normal, &body.velocity, &roll);
        KXV3Combine(&body.spin, &roll, &body.spin, 0.5f, 0.5f);
    }

    static float dot(const KXV3 &a, const KXV3 &b)
    {
        return a.x * b.x + a.y * b.y + a.z * b.z;
    }

    /** Two bodies whose boxes overlap exchange what they have of velocity towards each other. */
    static void collide(Body &a, Body &b)
    {
        const KXBox &p = a.reach, &q = b.reach;
        if (p.maximum.x < q.minimum.x || q.maximum.x < p.minimum.x || p.maximum.y < q.minimum.y ||
            q.maximum.y < p.minimum.y || p.maximum.z < q.minimum.z || q.maximum.z < p.minimum.z) {
            return;
        }
        const KXP3 from = centre(a), to = centre(b);
        KXV3 way, change;
        KXV3Combine(&to, &from, &way, 1.0f, -1.0f);
        KXV3Normalise(&way, &way);
        KXV3Combine(&b.velocity, &a.velocity, &change, 1.0f, -1.0f);
        const float approach = dot(change, way);
        if (approach < 0.0f) {
            KXV3Combine(&a.velocity, &way, &a.velocity, 1.0f, approach);
            KXV3Combine(&b.velocity, &way, &b.velocity, 1.0f, -approach);
        }
    }

    static KXP3 centre(const Body &body)
    {
        return {body.place.x, body.place.y, body.place.z};
    }

    void place(Body &body) const
    {
        const auto order = static_cast<KXRotationOrder>((&body - bodies.data()) % 6);
        KXM4Position(&body.to_world, &body.to_body, &body.place, order);
        const KXBox own = own_box(body);
        KXTransformBox(&own, &body.to_world, &body.reach);
    }

    static KXBox own_box(const Body &body)
    {
        const KXV3 &half = body.half;
        return {{-half.x, -half.y, -half.z}, half};
    }

    static double distance(const KXRay &ray, const KXP3 &point)
    {
        KXV3 way;
        KXV3Combine(&point, &ray.origin, &way, 1.0f, -1.0f);
        return KXV3Length(&way);
    }

    /** Finds the first body on the ray, which then shies away. */
    void look(Watcher &watcher)
    {
        const KXRay &ray = watcher.ray;
        watcher.sees = -1;
        double nearest = static_cast<double>(KX_HUGE);
        KXP3 point;
        for (const KXBox &obstacle : obstacles) {
            if (KXRayIxBox(&ray, &obstacle, &point) == 1 && distance(ray, point) < nearest) {
                nearest = distance(ray, point);
                watcher.end = point;
            }
        }
        for (std::size_t i = 0; i < bodies.size(); ++i) {
            const Body &body = bodies[i];
            if (KXRayIxBox(&ray, &body.reach, nullptr) == 0) {
                continue;
            }
            KXRay own_ray;
            KXTransformRay(&ray, &body.to_body, &own_ray);
            const KXBox box = own_box(body);
            if (KXRayIxBox(&own_ray, &box, &point) == 1 && distance(own_ray, point) < nearest) {
                nearest = distance(own_ray, point);
                watcher.sees = static_cast<std::int32_t>(i);
                KXM4P3I1(&body.to_world, &point, &watcher.end);
            }
        }
        if (watcher.sees >= 0) {
            Body &body = bodies[static_cast<std::size_t>(watcher.sees)];
            ++body.seen;
            KXV3Combine(&body.velocity, &ray.direction, &body.velocity, 1.0f, 0.1f * speed);
            keep_speed(body);
        }
    }

    template <typename Record>
    void enter(const Record &record)
    {
        std::array<std::uint32_t, sizeof(Record) / 4> words;
        std::memcpy(words.data(), &record, sizeof record);
        for (const std::uint32_t word : words) {
            states.word(word);
        }
    }

    std::array<KXBox, 12> grown;
    std::uint64_t random;
    test::Digest states;
};

} // namespace replay

#endif
