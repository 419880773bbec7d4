/* Boxes, and rays against boxes and triangles. */
#include "comparison.h"
#include "data.h"

namespace
{

Comparison box_row()
{
    static const Memory out = allocate(record_count * sizeof(KXBox));
    const Data &in = data();
    Work ours = {};
    ours.first = in.boxes;
    ours.second = in.affine.rows;
    ours.out = out.get();
    ours.count = record_count;
    ours.groups = 1;
    Work theirs = ours;
    theirs.second = in.affine.columns;
    return {"box transform",
            "box_transform",
            ours,
            theirs,
            {{cglm, {1.35}}, {eigen, {0.65}}, {imath, {0.65}}},
            difference_of_records<6>,
            1e-5,
            sizeof(KXBox)};
}

Comparison ray_row(const char *operation, const char *kernel, const KXRay *rays,
                   const void *targets, std::vector<Peer> peers)
{
    static const Memory out = allocate(ray_count * sizeof(Hit));
    Work work = {};
    work.first = rays;
    work.second = targets;
    work.third = data().vertices;
    work.out = out.get();
    work.count = ray_count;
    work.groups = 1;
    return {operation, kernel, work, work, std::move(peers), difference_of_hits, 1e-4, sizeof(Hit)};
}

} // namespace

std::vector<Comparison> spatial_comparisons()
{
    const Data &in = data();
    return {
        box_row(),
        ray_row("ray against box, mixed", "ray_box", in.at_boxes.mixed, in.boxes,
                {{imath, {0.35}}}),
        ray_row("ray against box, all hit", "ray_box", in.at_boxes.hits, in.boxes,
                {{imath, {0.35}}}),
        ray_row("ray against triangle, mixed", "ray_triangle", in.at_triangles.mixed, in.triangles,
                {{glm_plain, {0.65}}}),
        ray_row("ray against triangle, all hit", "ray_triangle", in.at_triangles.hits, in.triangles,
                {{glm_plain, {0.9}}}),
        ray_row("ray against triangle, all miss", "ray_triangle", in.at_triangles.misses,
                in.triangles, {{glm_plain, {0.78}}}),
    };
}
