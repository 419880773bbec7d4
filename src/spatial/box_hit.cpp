/*
 * Lines and rays against boxes, by the slab method: the path's parameter is clipped against the
 * three slabs, the spaces between two opposite faces, x first. Lines and rays differ in what comes
 * before and after.
 *
 * Whether a path meets a box is unpredictable, and a mispredicted branch costs more than a slab. So
 * a path that is finite and still on no axis is clipped against all three slabs before its outcome
 * is tested, and the outcome selects the point without a branch. Nothing it computes can be
 * invalid, so bits and exception flags are the same. All other paths go slab by slab: there a slab
 * that rejects keeps those after it from being tested.
 */
#include "kxmaths5/spatial.h"

#include "numeric.h"

using namespace kx;

namespace
{

bool is_finite(const KXP3 &p)
{
    return magnitude_bits(p.x) < infinity_bits && magnitude_bits(p.y) < infinity_bits &&
           magnitude_bits(p.z) < infinity_bits;
}

/** Finite, and at or above the tolerance. */
bool moves(float step)
{
    return magnitude_bits(step) - tolerance_bits < infinity_bits - tolerance_bits;
}

bool moves_on_each_axis(const KXV3 &step)
{
    return moves(step.x) && moves(step.y) && moves(step.z);
}

/** One axis of the test. */
struct Axis {
    double start, step;
    double lo, hi;

    bool starts_outside() const
    {
        return start < lo || start > hi;
    }
    /** The path moves too little on this axis: only its start decides. */
    bool is_still() const
    {
        return magnitude(step) < tolerance;
    }
};

/** The parameters at which a path meets the two faces of a slab. */
struct Crossing {
    double t1, t2;

    double enter() const
    {
        return t1 > t2 ? t2 : t1;
    }
    double leave() const
    {
        return t1 > t2 ? t1 : t2;
    }
};

/** Only for an axis that is not still: the division is guarded by that. */
Crossing crossing(const Axis &axis)
{
    const double r = 1.0 / axis.step;
    return {(axis.lo - axis.start) * r, (axis.hi - axis.start) * r};
}

double higher(double value, double than)
{
    return value > than ? value : than;
}

double lower(double value, double than)
{
    return value < than ? value : than;
}

/** The parameters for which a path is inside all slabs so far. Neither bound ever becomes NaN. */
struct Interval {
    double near = -huge;
    double far = huge;

    void narrow(const Crossing &c)
    {
        near = higher(c.enter(), near);
        far = lower(c.leave(), far);
    }
    /**
     * All three, in that order. Compilers make this six minimums and maximums; two choices by the
     * same comparison next to each other become a branch.
     */
    void narrow(const Crossing &x, const Crossing &y, const Crossing &z)
    {
        near = higher(z.enter(), higher(y.enter(), higher(x.enter(), near)));
        far = lower(z.leave(), lower(y.leave(), lower(x.leave(), far)));
    }
    /**
     * Whether anything ahead of the start is left: far at or above both near and 0. Further slabs
     * never make it true again. A slab that the path has left before its start puts far below 0.
     */
    bool is_met() const
    {
        return higher(near, 0.0) <= far;
    }
};

/** The result of clipping slab by slab. */
struct Clip {
    enum Outcome { missed, settled, open } outcome; /**< Settled: in contact, with its start. */
    Interval inside;
};

/** Takes records, so that callers need not keep their axes in memory for it. */
Clip clip_in_order(const KXP3 &start, const KXV3 &step, const KXBox &box)
{
    const Xyz s = widen(start), d = widen(step);
    const Xyz lo = widen(box.minimum), hi = widen(box.maximum);
    const Axis axes[3] = {{s.x, d.x, lo.x, hi.x}, {s.y, d.y, lo.y, hi.y}, {s.z, d.z, lo.z, hi.z}};
    Interval inside;
    for (const Axis &axis : axes) {
        if (axis.is_still()) {
            return {axis.starts_outside() ? Clip::missed : Clip::settled, inside};
        }
        inside.narrow(crossing(axis));
        if (!inside.is_met()) {
            return {Clip::missed, inside};
        }
    }
    return {Clip::open, inside};
}

void store(KXP3 *point, const KXP3 &value)
{
    if (point != nullptr) {
        *point = value;
    }
}

/** One of two values, by their bits: compilers take a choice of three floats for a branch. */
float choice(bool first, float a, float b)
{
    const auto bits_a = bit_cast<uint32_t>(a), bits_b = bit_cast<uint32_t>(b);
    const uint32_t is_first = 0U - static_cast<uint32_t>(first);
    return bit_cast<float>(bits_b ^ ((bits_a ^ bits_b) & is_first));
}

/** Stores the point at t, or the start if the path did not get there. */
void store_reached(KXP3 *point, const KXP3 &start, const Axis &x, const Axis &y, const Axis &z,
                   double t, bool met)
{
    if (point == nullptr) {
        return;
    }
    const KXP3 at = narrow(Xyz{x.step * t + x.start, y.step * t + y.start, z.step * t + z.start});
    *point = {choice(met, at.x, start.x), choice(met, at.y, start.y), choice(met, at.z, start.z)};
}

/** Both ends beyond the same face. */
int beyond(double start, double end, double lo, double hi)
{
    return ((start < lo) & (end < lo)) | ((start > hi) & (end > hi));
}

/** The same of any face. A line that is not finite has no end compared without need. */
bool is_beyond(bool finite, const Xyz &s, const Xyz &e, const Xyz &lo, const Xyz &hi)
{
    if (finite) {
        return beyond(s.x, e.x, lo.x, hi.x) + beyond(s.y, e.y, lo.y, hi.y) +
                   beyond(s.z, e.z, lo.z, hi.z) !=
               0;
    }
    return (s.x < lo.x && e.x < lo.x) || (s.y < lo.y && e.y < lo.y) || (s.z < lo.z && e.z < lo.z) ||
           (s.x > hi.x && e.x > hi.x) || (s.y > hi.y && e.y > hi.y) || (s.z > hi.z && e.z > hi.z);
}

int within(double value, double lo, double hi)
{
    return (value >= lo) & (value <= hi);
}

bool is_inside(const Xyz &p, const Xyz &lo, const Xyz &hi)
{
    return within(p.x, lo.x, hi.x) + within(p.y, lo.y, hi.y) + within(p.z, lo.z, hi.z) == 3;
}

} // namespace

int32_t KXLineIxBox(const KXLine *line, const KXBox *box, KXP3 *point)
{
    const Xyz s = widen(line->start), e = widen(line->end);
    const Xyz lo = widen(box->minimum), hi = widen(box->maximum);
    const bool finite = is_finite(line->start) && is_finite(line->end);
    if (is_inverted(lo, hi) || is_beyond(finite, s, e, lo, hi)) {
        return miss;
    }
    if (is_inside(s, lo, hi)) {
        store(point, line->start);
        return hit;
    }

    // Clipping: the parameters at which start + t*delta is inside the box.
    const KXV3 delta = narrow(Xyz{e.x - s.x, e.y - s.y, e.z - s.z});
    const Xyz d = widen(delta);
    const Axis x = {s.x, d.x, lo.x, hi.x}, y = {s.y, d.y, lo.y, hi.y}, z = {s.z, d.z, lo.z, hi.z};
    Interval inside;
    if (finite && moves_on_each_axis(delta)) {
        inside.narrow(crossing(x), crossing(y), crossing(z));
    } else {
        store(point, line->start);
        const Clip clip = clip_in_order(line->start, delta, *box);
        if (clip.outcome != Clip::open) {
            return clip.outcome == Clip::settled ? hit : miss;
        }
        inside = clip.inside;
    }

    // Contact, where the line enters.
    const double last = inside.far < 1.0 ? inside.far : 1.0;
    const bool met = (inside.near >= 0.0) & (inside.near <= last);
    store_reached(point, line->start, x, y, z, met ? inside.near : 0.0, met);
    return met ? hit : miss;
}

int32_t KXRayIxBox(const KXRay *ray, const KXBox *box, KXP3 *point)
{
    const Xyz o = widen(ray->origin), d = widen(ray->direction);
    const Xyz lo = widen(box->minimum), hi = widen(box->maximum);
    if (is_inverted(lo, hi)) {
        return miss;
    }

    // Clipping: the parameters at which origin + t*direction is inside the box.
    const Axis x = {o.x, d.x, lo.x, hi.x}, y = {o.y, d.y, lo.y, hi.y}, z = {o.z, d.z, lo.z, hi.z};
    Interval inside;
    if (is_finite(ray->origin) && moves_on_each_axis(ray->direction)) {
        inside.narrow(crossing(x), crossing(y), crossing(z));
    } else {
        store(point, ray->origin);
        const Clip clip = clip_in_order(ray->origin, ray->direction, *box);
        if (clip.outcome != Clip::open) {
            return clip.outcome == Clip::settled ? hit : miss;
        }
        inside = clip.inside;
    }

    // Contact, where the ray enters; from inside the box, where it leaves.
    const bool met = inside.is_met();
    const double t = inside.near < 0.0 ? inside.far : inside.near;
    store_reached(point, ray->origin, x, y, z, met ? t : 0.0, met);
    return met ? hit : miss;
}
