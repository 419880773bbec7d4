/*
 * Lines and rays against boxes. Both clip the path's parameter against the box's three slabs, the
 * space between two opposite faces, x first; they differ in what comes before and after.
 */
#include "kxmaths5/spatial.h"

#include "numeric.h"
#include "spatial/inverted.h"

using kx::Wide3;

namespace
{

constexpr int32_t contact = 1;
constexpr int32_t miss = 0;

/** One axis of the job. */
struct Axis {
    double start, step;
    double lo, hi;

    bool starts_outside() const
    {
        return start < lo || start > hi;
    }
    /** The path moves too little here to tell when it meets the slab: the start alone decides. */
    bool is_still() const
    {
        return kx::magnitude(step) < kx::tolerance;
    }
};

/** The parameters at which a path meets the two faces of a slab. */
struct Crossing {
    double t1, t2;
};

/** Only for an axis that is not still: the division is guarded by that. */
Crossing crossing(const Axis &axis)
{
    const double r = 1.0 / axis.step;
    return {(axis.lo - axis.start) * r, (axis.hi - axis.start) * r};
}

/** The parameters for which a path is inside all slabs so far. */
struct Interval {
    double near = -kx::huge;
    double far = kx::huge;

    /**
     * Narrows the interval; false once nothing in front of the start is left of it. The start being
     * behind the slab is found before this in every finite case, by either caller.
     */
    bool narrow(const Crossing &c)
    {
        const double enter = c.t1 > c.t2 ? c.t2 : c.t1;
        const double leave = c.t1 > c.t2 ? c.t1 : c.t2;
        if (enter > near) {
            near = enter;
        }
        if (leave < far) {
            far = leave;
        }
        return !(near > far || far < 0.0);
    }
};

void store(KXP3 *point, const KXP3 &value)
{
    if (point != nullptr) {
        *point = value;
    }
}

KXP3 along(const Axis (&axes)[3], double t)
{
    return kx::single(Wide3{axes[0].step * t + axes[0].start, axes[1].step * t + axes[1].start,
                            axes[2].step * t + axes[2].start});
}

} // namespace

int32_t KXLineIxBox(const KXLine *line, const KXBox *box, KXP3 *point)
{
    const Wide3 s = kx::wide(line->start), e = kx::wide(line->end);
    const Wide3 lo = kx::wide(box->minimum), hi = kx::wide(box->maximum);
    if (kx::is_inverted(lo, hi)) {
        return miss;
    }
    if ((s.x < lo.x && e.x < lo.x) || (s.y < lo.y && e.y < lo.y) || (s.z < lo.z && e.z < lo.z) ||
        (s.x > hi.x && e.x > hi.x) || (s.y > hi.y && e.y > hi.y) || (s.z > hi.z && e.z > hi.z)) {
        return miss;
    }
    store(point, line->start);
    if (s.x >= lo.x && s.x <= hi.x && s.y >= lo.y && s.y <= hi.y && s.z >= lo.z && s.z <= hi.z) {
        return contact;
    }

    const Axis axes[3] = {{s.x, kx::rounded(e.x - s.x), lo.x, hi.x},
                          {s.y, kx::rounded(e.y - s.y), lo.y, hi.y},
                          {s.z, kx::rounded(e.z - s.z), lo.z, hi.z}};
    Interval inside;
    for (const Axis &axis : axes) {
        if (axis.is_still()) {
            return axis.starts_outside() ? miss : contact;
        }
        if (!inside.narrow(crossing(axis))) {
            return miss;
        }
    }
    if (inside.near < 0.0 || inside.near > 1.0) {
        return miss;
    }
    store(point, along(axes, inside.near));
    return contact;
}

int32_t KXRayIxBox(const KXRay *ray, const KXBox *box, KXP3 *point)
{
    const Wide3 o = kx::wide(ray->origin), d = kx::wide(ray->direction);
    const Wide3 lo = kx::wide(box->minimum), hi = kx::wide(box->maximum);
    if (kx::is_inverted(lo, hi)) {
        return miss;
    }
    store(point, ray->origin);

    const Axis axes[3] = {{o.x, d.x, lo.x, hi.x}, {o.y, d.y, lo.y, hi.y}, {o.z, d.z, lo.z, hi.z}};
    Interval inside;
    for (const Axis &axis : axes) {
        if (axis.is_still()) {
            return axis.starts_outside() ? miss : contact;
        }
        const Crossing c = crossing(axis);
        if (c.t1 < 0.0 && c.t2 < 0.0) {
            return miss;
        }
        if (!inside.narrow(c)) {
            return miss;
        }
    }
    // From inside the box the contact is the way out.
    store(point, along(axes, inside.near < 0.0 ? inside.far : inside.near));
    return contact;
}
