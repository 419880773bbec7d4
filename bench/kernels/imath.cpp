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

constexpr auto point = [](V3f &out, const V3f &in, const M44f &matrix) { out = in * matrix; };
constexpr auto product = [](M44f &out, const M44f &a, const M44f &b) { out = b * a; };
constexpr auto inverse = [](M44f &out, const M44f &matrix) { out = matrix.inverse(); };

} // namespace

constinit const Kernel kernels_of_imath[] = {
    {"points_xyz", arrays(point)},
    {"point", each(point)},
    {"product", each(product)},
    {"product_chain", chain(product)},
    {"inverse_affine", each(inverse)},
    {"inverse_general", each(inverse)},
    {"determinant", each([](float &out, const M44f &matrix) { out = matrix.determinant(); })},
    {"box_transform", each([](Box3f &out, const Box3f &in, const M44f &matrix) {
         Imath::affineTransform(in, matrix, out);
     })},
    {"ray_box", rays([](Hit &out, const Line3f &ray, const Box3f &box) {
         V3f contact;
         out.hit = Imath::intersects(box, ray, contact);
         if (out.hit) {
             out.point = {contact.x, contact.y, contact.z};
         }
     })},
    {},
};
