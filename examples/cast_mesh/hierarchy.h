/* A hierarchy of boxes over triangles, and the search for what a ray or a line meets. */
#ifndef CAST_MESH_HIERARCHY_H
#define CAST_MESH_HIERARCHY_H

#include <kxmaths5.h>

#include <cstdint>
#include <optional>
#include <vector>

namespace example
{

/** Where a path meets a triangle. */
struct Hit {
    std::uint32_t triangle;
    KXP3 point;
};

/**
 * Three properties of the library's tests matter to a filter of boxes before a test of triangles.
 *
 * The box test settles on the first axis along which the path moves by less than 1e-6, and looks at
 * no axis after it. If the start is between the box's faces there, it reports a hit for boxes that
 * the path passes in the other axes: for a ray along an axis of the space these are many. That
 * costs time only.
 *
 * If the start is not between them, it reports a miss, and there it could be wrong: a ray whose
 * direction has 9e-7 on that axis drifts by 9e-7 for each unit of its way. Over `reach` units that
 * comes to less than 1e-6 * reach.
 *
 * The triangle test rounds the crossing of the plane to singles and accepts it as it then is, by a
 * few units in the last place of the way and of the coordinates. So it can accept a point outside
 * the tight box of its triangle, and the more easily where that box is flat.
 *
 * Growing every box by a few millionths of the reach covers the last two.
 *
 * The boxes are divided by the surface area heuristic. A long triangle across the axes, whose box
 * is mostly empty, is first divided into pieces with a box each.
 */
class Hierarchy
{
public:
    /** reach: the longest way that a ray goes. The vectors must outlive the hierarchy. */
    Hierarchy(const std::vector<KXTriangle> &triangles, const std::vector<KXP3> &vertices,
              float reach);

    /** The nearest triangle that a ray meets. */
    std::optional<Hit> nearest(const KXRay &ray) const;

    /** Whether a ray meets any triangle. */
    bool is_met(const KXRay &ray) const;

    /** Whether any triangle is between the ends of a line. */
    bool is_blocked(const KXLine &line) const;

private:
    /** A box around a triangle or a part of one. */
    struct Piece {
        KXBox box;
        KXP3 middle;
        std::uint32_t triangle;
    };
    struct Node {
        KXBox box;
        std::uint32_t begin, end; /**< The triangles below it, in `order`. */
        std::uint32_t second;     /**< Its second child; the first follows it. 0 for a leaf. */
        int axis;                 /**< Along which the children lie apart. */
    };
    /** Where a node's pieces are divided: at the places before a bin's end, along an axis. */
    struct Division {
        int axis;
        double end;
    };

    void add_pieces(std::uint32_t triangle, const KXP3 &a, const KXP3 &b, const KXP3 &c, int depth,
                    double small_area);
    Division best_division(std::uint32_t begin, std::uint32_t end) const;
    std::uint32_t build(std::uint32_t begin, std::uint32_t end, int depth);

    /** Calls visit for every triangle in boxes that `meets`, until it returns true. */
    template <typename Meets, typename Visit>
    bool search(const KXV3 &direction, Meets meets, Visit visit) const;

    const std::vector<KXTriangle> &triangles;
    const std::vector<KXP3> &vertices;
    std::vector<Piece> pieces; /**< While it is built. */
    std::vector<std::uint32_t> order;
    std::vector<Node> nodes;
};

} // namespace example

#endif
