#include "hierarchy.h"

#include <algorithm>
#include <numeric>

namespace example
{

namespace
{

constexpr std::uint32_t triangles_in_leaf = 4;

float coordinate(const KXP3 &p, int axis)
{
    return axis == 0 ? p.x : axis == 1 ? p.y : p.z;
}

int longest_axis(const KXV3 &extent)
{
    if (extent.x >= extent.y && extent.x >= extent.z) {
        return 0;
    }
    return extent.y >= extent.z ? 1 : 2;
}

void grow(KXBox &box, float margin)
{
    const KXV3 step = {margin, margin, margin};
    KXV3Combine(&box.minimum, &step, &box.minimum, 1.0f, -1.0f);
    KXV3Combine(&box.maximum, &step, &box.maximum, 1.0f, 1.0f);
}

KXBox box_around(const KXTriangle &triangle, const std::vector<KXP3> &vertices)
{
    const KXP3 &first = vertices[triangle.corner[0].vertex];
    KXBox box = {first, first};
    KXPutPointInBox(&vertices[triangle.corner[1].vertex], &box);
    KXPutPointInBox(&vertices[triangle.corner[2].vertex], &box);
    return box;
}

} // namespace

Hierarchy::Hierarchy(const std::vector<KXTriangle> &triangles_, const std::vector<KXP3> &vertices_,
                     float reach)
    : triangles(triangles_), vertices(vertices_), order(triangles_.size())
{
    std::vector<KXBox> boxes;
    boxes.reserve(triangles.size());
    for (const KXTriangle &triangle : triangles) {
        boxes.push_back(box_around(triangle, vertices));
        grow(boxes.back(), 4e-6f * reach);
    }
    std::iota(order.begin(), order.end(), 0U);
    nodes.reserve(2 * triangles.size());
    build(0, static_cast<std::uint32_t>(order.size()), boxes);
}

std::uint32_t Hierarchy::build(std::uint32_t begin, std::uint32_t end,
                               const std::vector<KXBox> &boxes)
{
    const auto index = static_cast<std::uint32_t>(nodes.size());
    KXBox box = boxes[order[begin]];
    for (std::uint32_t i = begin; i < end; ++i) {
        KXCombineBoxes(&box, &boxes[order[i]]);
    }
    KXV3 extent;
    KXBoxDiagonal(&box, &extent);
    const int axis = longest_axis(extent);
    nodes.push_back({box, begin, end, 0, axis});
    if (end - begin > triangles_in_leaf) {
        const std::uint32_t middle = begin + (end - begin) / 2;
        std::nth_element(order.begin() + begin, order.begin() + middle, order.begin() + end,
                         [&](std::uint32_t a, std::uint32_t b) {
                             KXP3 of_a, of_b;
                             KXBoxMidPoint(&boxes[a], &of_a);
                             KXBoxMidPoint(&boxes[b], &of_b);
                             return coordinate(of_a, axis) < coordinate(of_b, axis);
                         });
        build(begin, middle, boxes);
        const std::uint32_t second = build(middle, end, boxes);
        nodes[index].second = second;
    }
    return index;
}

template <typename Meets, typename Visit>
bool Hierarchy::search(const KXV3 &direction, Meets meets, Visit visit) const
{
    // Halving at every step, no tree over 2^32 triangles is deeper than this.
    std::uint32_t waiting[64];
    int count = 0;
    waiting[count++] = 0;
    while (count > 0) {
        const std::uint32_t index = waiting[--count];
        const Node &node = nodes[index];
        if (!meets(node.box)) {
            continue;
        }
        if (node.second == 0) {
            for (std::uint32_t i = node.begin; i < node.end; ++i) {
                if (visit(order[i])) {
                    return true;
                }
            }
            continue;
        }
        // The child that the path comes to first is taken first: what it hits rules out the other.
        const bool backwards = coordinate(direction, node.axis) < 0.0f;
        waiting[count++] = backwards ? index + 1 : node.second;
        waiting[count++] = backwards ? node.second : index + 1;
    }
    return false;
}

std::optional<Hit> Hierarchy::nearest(const KXRay &ray) const
{
    // After the first hit only what is nearer counts, and that is what the line to it meets: each
    // hit shortens the line, and no distance has to be worked out.
    std::optional<Hit> hit;
    KXLine way = {ray.origin, ray.origin};
    search(
        ray.direction,
        [&](const KXBox &box) {
            return (hit ? KXLineIxBox(&way, &box, nullptr) : KXRayIxBox(&ray, &box, nullptr)) == 1;
        },
        [&](std::uint32_t i) {
            KXP3 point;
            const KXTriangle &triangle = triangles[i];
            if ((hit ? KXLineIxTriangle(&way, &triangle, vertices.data(), &point)
                     : KXRayIxTriangle(&ray, &triangle, vertices.data(), &point)) == 1) {
                hit = Hit{i, point};
                way.end = point;
            }
            return false;
        });
    return hit;
}

bool Hierarchy::is_blocked(const KXLine &line) const
{
    KXV3 direction;
    KXV3Combine(&line.end, &line.start, &direction, 1.0f, -1.0f);
    return search(
        direction, [&](const KXBox &box) { return KXLineIxBox(&line, &box, nullptr) == 1; },
        [&](std::uint32_t i) {
            KXP3 point;
            return KXLineIxTriangle(&line, &triangles[i], vertices.data(), &point) == 1;
        });
}

} // namespace example
