#include "hierarchy.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace example
{

namespace
{

constexpr std::uint32_t triangles_in_leaf = 4;
constexpr std::size_t most_pieces = 4'000'000;
/** From this depth on a node is halved, so that no tree over 2^32 pieces is deeper than 96. */
constexpr int deepest_division = 60;

float coordinate(const KXP3 &p, int axis)
{
    return axis == 0 ? p.x : axis == 1 ? p.y : p.z;
}

double surface(const KXBox &box)
{
    KXV3 extent;
    KXBoxDiagonal(&box, &extent);
    const double x = extent.x, y = extent.y, z = extent.z;
    return 2.0 * (x * y + y * z + z * x);
}

double area(const KXP3 &a, const KXP3 &b, const KXP3 &c)
{
    KXV3 along, across, normal;
    KXV3Combine(&b, &a, &along, 1.0f, -1.0f);
    KXV3Combine(&c, &a, &across, 1.0f, -1.0f);
    KXV3Cross(&along, &across, &normal);
    return 0.5 * KXV3Length(&normal);
}

double length(const KXP3 &a, const KXP3 &b)
{
    KXV3 step;
    KXV3Combine(&b, &a, &step, 1.0f, -1.0f);
    return KXV3Length(&step);
}

void grow(KXBox &box, float margin)
{
    const KXV3 step = {margin, margin, margin};
    KXV3Combine(&box.minimum, &step, &box.minimum, 1.0f, -1.0f);
    KXV3Combine(&box.maximum, &step, &box.maximum, 1.0f, 1.0f);
}

KXBox box_around(const KXP3 &a, const KXP3 &b, const KXP3 &c)
{
    KXBox box = {a, a};
    KXPutPointInBox(&b, &box);
    KXPutPointInBox(&c, &box);
    return box;
}

/** The boxes of some pieces. */
struct Bin {
    KXBox box;
    std::uint32_t count = 0;

    void add(const KXBox &other, std::uint32_t pieces)
    {
        if (count == 0) {
            box = other;
        } else if (pieces > 0) {
            KXCombineBoxes(&box, &other);
        }
        count += pieces;
    }

    /** How long a search takes in it, but for a factor. */
    double cost() const
    {
        return count == 0 ? 0.0 : surface(box) * count;
    }
};

} // namespace

Hierarchy::Hierarchy(const std::vector<KXTriangle> &triangles_, const std::vector<KXP3> &vertices_,
                     float reach)
    : triangles(triangles_), vertices(vertices_)
{
    KXBox whole = {vertices.front(), vertices.front()};
    for (const KXP3 &vertex : vertices) {
        KXPutPointInBox(&vertex, &whole);
    }
    int depth = 8;
    while (depth > 0 && triangles.size() << depth > most_pieces) {
        --depth;
    }
    for (std::uint32_t i = 0; i < triangles.size(); ++i) {
        const auto &corner = triangles[i].corner;
        add_pieces(i, vertices[corner[0].vertex], vertices[corner[1].vertex],
                   vertices[corner[2].vertex], depth, 1e-5 * surface(whole));
    }
    for (Piece &piece : pieces) {
        grow(piece.box, 4e-6f * reach);
        KXBoxMidPoint(&piece.box, &piece.middle);
    }
    if (!pieces.empty()) {
        nodes.reserve(2 * pieces.size());
        build(0, static_cast<std::uint32_t>(pieces.size()), 0);
    }
    order.reserve(pieces.size());
    for (const Piece &piece : pieces) {
        order.push_back(piece.triangle);
    }
    pieces = {};
}

void Hierarchy::add_pieces(std::uint32_t triangle, const KXP3 &a, const KXP3 &b, const KXP3 &c,
                           int depth, double small_area)
{
    const KXBox box = box_around(a, b, c);
    const double box_area = surface(box);
    if (depth == 0 || box_area < small_area || box_area < 16.0 * area(a, b, c)) {
        pieces.push_back({box, {}, triangle});
        return;
    }
    // Halved across its longest edge, from a to b after a turn of the corners.
    const double ab = length(a, b), bc = length(b, c), ca = length(c, a);
    if (ab < bc || ab < ca) {
        return bc >= ca ? add_pieces(triangle, b, c, a, depth, small_area)
                        : add_pieces(triangle, c, a, b, depth, small_area);
    }
    KXP3 middle;
    KXV3Combine(&a, &b, &middle, 0.5f, 0.5f);
    add_pieces(triangle, a, middle, c, depth - 1, small_area);
    add_pieces(triangle, middle, b, c, depth - 1, small_area);
}

Hierarchy::Division Hierarchy::best_division(std::uint32_t begin, std::uint32_t end) const
{
    constexpr std::size_t bins = 16;
    KXBox middles = {pieces[begin].middle, pieces[begin].middle};
    for (std::uint32_t i = begin; i < end; ++i) {
        KXPutPointInBox(&pieces[i].middle, &middles);
    }
    Division best = {0, 0.0};
    double least = std::numeric_limits<double>::infinity();
    for (int axis = 0; axis < 3; ++axis) {
        const double low = coordinate(middles.minimum, axis);
        const double width = (coordinate(middles.maximum, axis) - low) / bins;
        if (!(width > 0.0)) {
            continue;
        }
        std::array<Bin, bins> bin;
        for (std::uint32_t i = begin; i < end; ++i) {
            const double place = (coordinate(pieces[i].middle, axis) - low) / width;
            bin[std::min(static_cast<std::size_t>(place), bins - 1)].add(pieces[i].box, 1);
        }
        // Costs of all that lies before a bin's end, and of all after it.
        std::array<double, bins> before;
        Bin sum;
        for (std::size_t k = 0; k < bins; ++k) {
            sum.add(bin[k].box, bin[k].count);
            before[k] = sum.cost();
        }
        sum = {};
        for (std::size_t k = bins - 1; k > 0; --k) {
            sum.add(bin[k].box, bin[k].count);
            if (before[k - 1] + sum.cost() < least) {
                least = before[k - 1] + sum.cost();
                best = {axis, low + static_cast<double>(k) * width};
            }
        }
    }
    return best;
}

std::uint32_t Hierarchy::build(std::uint32_t begin, std::uint32_t end, int depth)
{
    const auto index = static_cast<std::uint32_t>(nodes.size());
    KXBox box = pieces[begin].box;
    for (std::uint32_t i = begin; i < end; ++i) {
        KXCombineBoxes(&box, &pieces[i].box);
    }
    nodes.push_back({box, begin, end, 0, 0});
    if (end - begin > triangles_in_leaf) {
        const Division division = best_division(begin, end);
        const auto first = pieces.begin() + begin, last = pieces.begin() + end;
        auto middle = std::partition(first, last, [&](const Piece &piece) {
            return static_cast<double>(coordinate(piece.middle, division.axis)) < division.end;
        });
        if (middle == first || middle == last || depth > deepest_division) {
            middle = first + (end - begin) / 2;
        }
        const auto half = static_cast<std::uint32_t>(middle - pieces.begin());
        build(begin, half, depth + 1);
        const std::uint32_t second = build(half, end, depth + 1);
        nodes[index].second = second;
        nodes[index].axis = division.axis;
    }
    return index;
}

template <typename Meets, typename Visit>
bool Hierarchy::search(const KXV3 &direction, Meets meets, Visit visit) const
{
    std::uint32_t waiting[128];
    int count = 0;
    if (!nodes.empty()) {
        waiting[count++] = 0;
    }
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

bool Hierarchy::is_met(const KXRay &ray) const
{
    return search(
        ray.direction, [&](const KXBox &box) { return KXRayIxBox(&ray, &box, nullptr) == 1; },
        [&](std::uint32_t i) {
            KXP3 point;
            return KXRayIxTriangle(&ray, &triangles[i], vertices.data(), &point) == 1;
        });
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
