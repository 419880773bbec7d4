/* Boxes, lines, rays, triangles and planes. */
#include "functions.h"

#include <kxmaths5/spatial.h>

namespace
{

void add_boxes(Functions &functions)
{
    functions.add("KXTransformBox", [](const Data &in, Results &out, std::size_t i) {
        KXTransformBox(&in.boxes[i], &in.affine.rows[i], &out.boxes[i]);
    });
    // Boxes that grow are given afresh: else only the first run would change them.
    functions.add("KXPutPointInBox", [](const Data &in, Results &out, std::size_t i) {
        out.boxes[i] = in.boxes[i];
        out.verdicts[i] = KXPutPointInBox(&in.points[i], &out.boxes[i]);
    });
    functions.add("KXCombineBoxes", [](const Data &in, Results &out, std::size_t i) {
        out.boxes[i] = in.boxes[i];
        KXCombineBoxes(&out.boxes[i], &in.boxes[(i + 1) % target_count]);
    });
    functions.add("KXBoxMidPoint", [](const Data &in, Results &out, std::size_t i) {
        KXBoxMidPoint(&in.boxes[i], &out.vectors[i]);
    });
    functions.add("KXBoxDiagonal", [](const Data &in, Results &out, std::size_t i) {
        KXBoxDiagonal(&in.boxes[i], &out.vectors[i]);
    });
    functions.add("KXIsValidBox", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXIsValidBox(&in.boxes[i]);
    });
}

void add_paths(Functions &functions)
{
    functions.add("KXTransformLine", [](const Data &in, Results &out, std::size_t i) {
        KXTransformLine(&in.lines_at_boxes[i], &in.affine.rows[i], &out.lines[i]);
    });
    functions.add("KXTransformRay", [](const Data &in, Results &out, std::size_t i) {
        KXTransformRay(&in.at_boxes.mixed[i], &in.affine.rows[i], &out.rays[i]);
    });
    functions.add("KXRayPointDistance", [](const Data &in, Results &out, std::size_t i) {
        out.values[i] = KXRayPointDistance(&in.at_boxes.mixed[i], &in.points[i]);
    });
    functions.add("KXLineIxBox", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXLineIxBox(&in.lines_at_boxes[i], &in.boxes[i], &out.vectors[i]);
    });
    functions.add("KXRayIxBox", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXRayIxBox(&in.at_boxes.mixed[i], &in.boxes[i], &out.vectors[i]);
    });
    functions.add("KXLineIxTriangle", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXLineIxTriangle(&in.lines_at_triangles[i], &in.triangles[i], in.vertices,
                                           &out.vectors[i]);
    });
    functions.add("KXRayIxTriangle", [](const Data &in, Results &out, std::size_t i) {
        out.verdicts[i] = KXRayIxTriangle(&in.at_triangles.mixed[i], &in.triangles[i], in.vertices,
                                          &out.vectors[i]);
    });
}

} // namespace

void add_spatial(Functions &functions)
{
    add_boxes(functions);
    add_paths(functions);
    functions.add("KXPlaneEquation", [](const Data &in, Results &out, std::size_t i) {
        const KXP3 *corners = &in.vertices[3 * i];
        out.verdicts[i] = KXPlaneEquation(&corners[0], &corners[1], &corners[2], &out.planes[i]);
    });
    functions.add("KXRotateInPlane", [](const Data &in, Results &out, std::size_t i) {
        out.vectors[i] = in.points[i];
        KXRotateInPlane(&out.vectors[i], &in.unit_vectors[i], in.angles[i].x);
    });
}
