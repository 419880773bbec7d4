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
 * Three things a host has to know of the library's tests before it builds a filter of boxes in
 * front of a test of triangles.
 *
 * - The box test settles on the first axis along which the path moves by less than 1e-6 and looks
 * at no axis behind it. If the start is between the box's faces there, it says 1 for boxes that the
 *   path passes by in the axes behind: for a ray along an axis of the space these are many. That
 *   costs time only.
 * - If the start is not between them, it says 0, and there it could miss: a ray whose direction has
 *   9e-7 on that axis drifts by 9e-7 for each unit of its way. Over `reach` units that comes to
 * less than 1e-6 * reach.
 * - The triangle test rounds the crossing of the plane to singles and accepts it as it then stands,
 *   by a few units in the last place of the way and of the coordinates. So it can accept a point
 *   outside the tight box of its triangle, and the more easily where that box is flat.
 *
 * Growing every box by a few millionths of the reach covers the last two.
 */
class Hierarchy
{
public:
    /** reach: the longest way that a ray goes. The vectors must outlive the hierarchy. */
    Hierarchy(const std::vector<KXTriangle> &triangles, const std::vector<KXP3> &vertices,
              float reach);

    /** The nearest triangle that a ray meets. */
    std::optional<Hit> nearest(const KXRay &ray) const;

    /** Whether any triangle stands between the ends of a line. */
    bool is_blocked(const KXLine &line) const;

private:
    struct Node {
        KXBox box;
        std::uint32_t begin, end; /**< The triangles below it, in `order`. */
        std::uint32_t second;     /**< Its second child; the first follows it. 0 for a leaf. */
        int axis;                 /**< Along which the children lie apart. */
    };

    /** Calls visit for every triangle in boxes that `meets`, until it returns true. */
    template <typename Meets, typename Visit>
    bool search(const KXV3 &direction, Meets meets, Visit visit) const;

    std::uint32_t build(std::uint32_t begin, std::uint32_t end, const std::vector<KXBox> &boxes);

    const std::vector<KXTriangle> &triangles;
    const std::vector<KXP3> &vertices;
    std::vector<std::uint32_t> order;
    std::vector<Node> nodes;
};

} // namespace example

#endif
