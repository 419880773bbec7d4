/*
 * Imath's kernels, inlined as in its users' programs. Imath multiplies row vectors from the left,
 * so it takes the transposed matrices as they lie in memory, and a product's factors change places.
 */
#include "work.h"

#include <ImathBoxAlgo.h>
#include <ImathLine.h>
#include <ImathMatrix.h>
#include <ImathVec.h>

namespace
{

using Imath::Box3f;
using Imath::Line3f;
using Imath::M44f;
using Imath::V3f;
static_assert(sizeof(V3f) == 12 && sizeof(M44f) == 64 && sizeof(Box3f) == 24 &&
                  sizeof(Line3f) == 24,
              "records of the arrays' sizes");

void point(V3f &out, const V3f &in, const M44f &matrix)
{
    out = in * matrix;
}

void product(M44f &out, const M44f &a, const M44f &b)
{
    out = b * a;
}

void inverse(M44f &out, const M44f &matrix)
{
    out = matrix.inverse();
}

void determinant(float &out, const M44f &matrix)
{
    out = matrix.determinant();
}

void box_transform(Box3f &out, const Box3f &box, const M44f &matrix)
{
    Imath::affineTransform(box, matrix, out);
}

void ray_box(Hit &out, const Line3f &ray, const Box3f &box)
{
    V3f contact;
    out.hit = Imath::intersects(box, ray, contact);
    if (out.hit) {
        out.point = {contact.x, contact.y, contact.z};
    }
}

const Kernel kernels[] = {
    {"points_xyz", Each<point>::group},
    {"point", Each<point>::record},
    {"product", Each<product>::record},
    {"product_chain", Each<product>::chain},
    {"inverse_affine", Each<inverse>::record},
    {"inverse_general", Each<inverse>::record},
    {"determinant", Each<determinant>::record},
    {"box_transform", Each<box_transform>::record},
    {"ray_box", Each<ray_box>::ray},
    {},
};

} // namespace

BENCH_TABLE(imath)
{
    return kernels;
}
