/* Lines and rays: transformed by a matrix, and the distance of a point from a ray. */
#include "kxmaths5/spatial.h"

#include "kxmaths5/foundations.h"
#include "kxmaths5/matrix.h"
#include "numeric.h"

using namespace kx;

void KXTransformLine(const KXLine *line, const KXM4 *matrix, KXLine *result)
{
    KXM4P3I1(matrix, &line->start, &result->start);
    KXM4P3I1(matrix, &line->end, &result->end);
}

void KXTransformRay(const KXRay *ray, const KXM4 *matrix, KXRay *result)
{
    KXM4P3I1(matrix, &ray->origin, &result->origin);
    KXM4P3I0(matrix, &ray->direction, &result->direction);
    KXV3Normalise(&result->direction, &result->direction);
}

double KXRayPointDistance(const KXRay *ray, const KXP3 *point)
{
    const Xyz d = widen(ray->direction);
    const Xyz w = {
        widen(point->x) - widen(ray->origin.x),
        round_to_single(widen(point->y) - widen(ray->origin.y)),
        round_to_single(widen(point->z) - widen(ray->origin.z)),
    };
    // The cross product of w and d, with its middle component negated.
    const double cx = round_to_single(w.y * d.z - w.z * d.y);
    const double cz = round_to_single(w.x * d.y - w.y * d.x);
    const double cy = w.x * d.z - w.z * d.x;
    return square_root(cy * cy + cz * cz + cx * cx);
}
