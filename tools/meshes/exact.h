/* What is true of a ray and a triangle, for the very singles: their products have at most 75 bits,
 * and 113 hold the sums of those unless the coordinates are more than ten digits apart. */
#ifndef KX_MESHES_EXACT_H
#define KX_MESHES_EXACT_H

#include "../accuracy/quad.h"

namespace meshes
{

using accuracy::Vector3;

/** Whether the ray meets the triangle, edges and corners included, in front of its origin. */
inline bool meets(const KXRay &ray, const KXP3 &a, const KXP3 &b, const KXP3 &c)
{
    const auto at = [&ray](const KXP3 &p) {
        return Vector3(accuracy::wide(p) - accuracy::wide(ray.origin));
    };
    const Vector3 A = at(a), B = at(b), C = at(c), d = accuracy::wide(ray.direction);
    const Quad u = d.dot(B.cross(C)), v = d.dot(C.cross(A)), w = d.dot(A.cross(B));
    const bool inside = (u >= 0 && v >= 0 && w >= 0) || (u <= 0 && v <= 0 && w <= 0);
    const Vector3 normal = (B - A).cross(C - A);
    const Quad towards = d.dot(normal), away = A.dot(normal);
    return inside && towards != 0 && (away > 0) == (towards > 0) && away != 0;
}

} // namespace meshes

#endif
