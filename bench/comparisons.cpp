#include "bench.h"

#include <kxmaths5.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace
{

std::size_t bytes_of(const Work &work)
{
    return work.groups * work.count * sizeof(KXP3);
}

void copy(const Work &work)
{
    std::memcpy(work.out, work.in[0], bytes_of(work));
}

/** Four floats, loaded and stored from any address. */
typedef float Four __attribute__((vector_size(16), aligned(4), may_alias));

void scale(const Work &work)
{
    const Four *in = static_cast<const Four *>(work.in[0]);
    Four *out = static_cast<Four *>(work.out);
    for (std::size_t i = 0; i < bytes_of(work) / sizeof(Four); ++i) {
        out[i] = in[i] * 1.0009765625f;
    }
}

/** What memory allows: the bytes of an array of points moved with no arithmetic, or next to none.
 */
const Kernel kernels_of_memory[] = {{"copy", copy}, {"scale", scale}, {}};

const Library cpp = {"kxmaths5, C++", kernels_of_cpp, nullptr, true};
const Library calls = {"kxmaths5, C", kernels_of_kxmaths5, nullptr, true};
const Library glm = {"GLM", kernels_of_glm};
const Library glm_intrinsics = {"GLM with intrinsics", kernels_of_glm_intrinsics};
const Library cglm = {"cglm, called", kernels_of_cglm};
const Library eigen = {"Eigen", kernels_of_eigen};
const Library imath = {"Imath", kernels_of_imath};
const Library copying = {"memcpy", kernels_of_memory, "copy"};
const Library scaling = {"load, scale, store", kernels_of_memory, "scale"};

/** Infinite for a NaN, which would be lost in a maximum. */
template <typename Record>
double apart(const Record &ours, const Record &theirs)
{
    float a[sizeof(Record) / sizeof(float)], b[sizeof(Record) / sizeof(float)];
    std::memcpy(a, &ours, sizeof a);
    std::memcpy(b, &theirs, sizeof b);
    double difference = 0.0, largest = 0.0;
    for (std::size_t i = 0; i < std::size(a); ++i) {
        const double here = std::fabs(double(a[i]) - double(b[i]));
        if (std::isnan(here)) {
            return std::numeric_limits<double>::infinity();
        }
        difference = std::max(difference, here);
        largest = std::max(largest, std::fabs(double(a[i])));
    }
    return difference == 0.0 ? 0.0 : difference / largest;
}

double apart(const KXM4 &ours, const KXM4 &theirs)
{
    float rows[16], columns[16];
    for (int i = 0; i < 16; ++i) {
        rows[i] = ours.m[i / 4][i % 4];
        columns[i] = theirs.m[i % 4][i / 4];
    }
    return apart(rows, columns);
}

double apart(const Hit &ours, const Hit &theirs)
{
    if (ours.hit != theirs.hit) {
        return std::numeric_limits<double>::infinity();
    }
    return ours.hit ? apart(ours.point, theirs.point) : 0.0;
}

template <typename Record>
double difference(const void *ours, const void *theirs, std::size_t records)
{
    double largest = 0.0;
    for (std::size_t i = 0; i < records; ++i) {
        largest = std::max(largest, apart(static_cast<const Record *>(ours)[i],
                                          static_cast<const Record *>(theirs)[i]));
    }
    return largest;
}

/** Matrices as each library reads them, or records that are the same for all. */
struct Operand {
    const void *ours = nullptr, *theirs = nullptr;

    Operand() = default;
    Operand(const Matrices &matrices) : ours(matrices.rows), theirs(matrices.columns) {}
    Operand(const void *records) : ours(records), theirs(records) {}
};
using Operands = std::array<Operand, 3>;

/** A row whose results are records of a type, in memory of their own. */
template <typename Record>
Comparison row(const std::string &operation, const char *kernel, const Operands &in,
               double tolerance, std::vector<Peer> peers, std::size_t count = record_count,
               std::size_t groups = 1)
{
    const Memory out = allocate(count * groups * sizeof(Record));
    return {operation,
            kernel,
            {{in[0].ours, in[1].ours, in[2].ours}, out.get(), count, groups},
            {{in[0].theirs, in[1].theirs, in[2].theirs}, out.get(), count, groups},
            std::move(peers),
            sizeof(Record),
            difference<Record>,
            tolerance,
            &kxmaths5,
            {out}};
}

/** Vectors, by the operators of the C++ face; the results are of one type, or floats. */
template <typename Result>
Comparison vector_row(const char *operation, const char *kernel, Operand second, double goal)
{
    Comparison result =
        row<Result>(operation, kernel, {data().points, second}, 1e-4, {{glm, goal, goal}, {calls}});
    result.library = &cpp;
    return result;
}

Comparison ray_row(const char *operation, const char *kernel, const KXRay *rays,
                   const void *targets, std::vector<Peer> peers)
{
    return row<Hit>(operation, kernel, {rays, targets, data().vertices}, 1e-4, std::move(peers),
                    ray_count);
}

/** Arrays of points. In place, the results take the points' values first and are what is moved. */
template <auto Single, typename Point>
Comparison array_row(const std::string &operation, const char *kernel, std::size_t count,
                     std::size_t groups, bool in_place, std::vector<Peer> peers)
{
    const std::size_t total = count * groups;
    const Memory memory = allocate(total * sizeof(Point));
    Point *const points = static_cast<Point *>(memory.get());
    const KXM4 *const matrices = data().placements.rows;
    // Of ten million points some come near the origin, where the terms cancel.
    Comparison result =
        row<Point>(operation + (in_place ? ", in place" : ""), kernel, {points, data().placements},
                   1e-4, std::move(peers), count, groups);
    result.memory.push_back(memory);
    Point *const images = static_cast<Point *>(result.ours.out);
    if (in_place) {
        result.ours.in[0] = result.theirs.in[0] = images;
    }
    // Also the first touch of both arrays.
    result.reset = [=] {
        fill(points, total);
        std::memcpy(images, points, total * sizeof(Point));
    };
    result.has_bits_of_single_calls = [=, ours = result.ours] {
        kxmaths5.find(kernel)(ours);
        for (std::size_t i = 0; i < total; ++i) {
            Point image;
            Single(&matrices[i / count], &points[i], &image);
            if (std::memcmp(&image, &images[i], sizeof image) != 0) {
                return false;
            }
        }
        return true;
    };
    return result;
}

} // namespace

const Library kxmaths5 = {"kxmaths5", kernels_of_kxmaths5};

KernelFunction Library::find(const char *kernel) const
{
    const char *wanted = limit != nullptr ? limit : kernel;
    for (const Kernel *k = kernels; k->name != nullptr; ++k) {
        if (std::strcmp(k->name, wanted) == 0) {
            return k->run;
        }
    }
    throw std::logic_error(std::string(name) + " has no kernel " + wanted);
}

Memory allocate(std::size_t bytes)
{
    constexpr std::size_t alignment = 64;
    void *address = std::aligned_alloc(alignment, (bytes + alignment - 1) / alignment * alignment);
    if (address == nullptr) {
        throw std::bad_alloc();
    }
    return Memory(address, std::free);
}

std::vector<Comparison> all_comparisons()
{
    const Data &in = data();
    // A peer that works in single loses what the matrix's condition costs.
    constexpr double of_inverses = 1e-3;
    const auto xyz = array_row<KXM4P3I1, KXP3>;
    const auto xyzw = array_row<KXM4P4, KXP4>;
    const std::vector<Peer> all = {
        {glm_intrinsics, 0.70}, {glm, 0.47, 1.10}, {cglm, 0.40}, {eigen}, {imath}};
    const char *const name = "points_xyz";
    return {
        vector_row<KXV3>("C++: sum of two vectors", "add", in.other_points, 1.1),
        vector_row<KXV3>("C++: vector times a number", "scale", in.factors, 1.1),
        vector_row<float>("C++: dot product", "dot", in.other_points, 0.0),
        vector_row<KXV3>("C++: cross product", "cross", in.other_points, 0.0),
        vector_row<float>("C++: length", "length", nullptr, 0.0),
        xyz("array of xyz points, 1,000", name, 1000, 1, false, all),
        xyz("array of xyz points, 1,000", name, 1000, 1, true, all),
        xyz("array of xyz points, 100,000", name, 100000, 1, false, all),
        xyz("array of xyz points, 100,000", name, 100000, 1, true, all),
        // Small arrays: many of them, each with a matrix of its own.
        xyz("array of xyz points, 64", name, 64, 16, false,
            {{glm_intrinsics, 0.80}, {glm}, {cglm}}),
        xyz("array of xyz points, 8", name, 8, 64, false, {{glm_intrinsics, 1.10}, {glm}, {cglm}}),
        xyz("array of xyz points, 10 million", name, 10000000, 1, false,
            {{copying, 1.0}, {scaling}, {glm_intrinsics}, {glm}}),
        xyzw("array of xyzw points, 1,000", "points_xyzw", 1000, 1, false,
             {{cglm, 0.60}, {glm_intrinsics, 1.15}, {glm}, {eigen}}),
        row<KXP3>("one point", "point", {in.points, in.affine}, 1e-4,
                  {{cglm, 1.15}, {cpp}, {glm}, {glm_intrinsics}, {eigen}, {imath}}),
        row<KXM4>("4x4 product", "product", {in.affine, in.general}, 1e-5,
                  {{cglm, 1.15}, {cpp}, {glm}, {glm_intrinsics}, {eigen}, {imath}}),
        row<KXM4>("4x4 product, each of the one before", "product_chain",
                  {in.placements, in.placements}, 1e-5,
                  {{glm, 1.10}, {glm_intrinsics}, {cglm}, {eigen}, {imath}}),
        row<KXM4>("inverse, affine", "inverse_affine", {in.affine}, of_inverses,
                  {{imath, 0.85}, {cpp}, {glm, 1.6}, {glm_intrinsics}, {eigen}}),
        row<KXM4>("inverse, general", "inverse_general", {in.general}, of_inverses,
                  {{imath, 0.42}, {cpp}, {glm, 2.0}, {glm_intrinsics}, {cglm}, {eigen}}),
        row<float>("4x4 determinant", "determinant", {in.general}, 1e-4,
                   {{glm, 1.2}, {glm_intrinsics}, {cglm}, {eigen}, {imath}}),
        row<KXM4>("orientation from three angles, one output", "orientation", {in.angles}, 1e-5,
                  {{glm, 1.6}, {cglm}}),
        row<KXBox>("box transform", "box_transform", {in.boxes, in.affine}, 1e-5,
                   {{cglm, 1.35}, {eigen, 0.65}, {imath, 0.65}}),
        ray_row("ray against box, mixed", "ray_box", in.at_boxes.mixed, in.boxes,
                {{imath, 0.35}, {cpp}}),
        ray_row("ray against box, all hit", "ray_box", in.at_boxes.hits, in.boxes, {{imath, 0.35}}),
        ray_row("ray against triangle, mixed", "ray_triangle", in.at_triangles.mixed, in.triangles,
                {{glm, 0.65}, {cpp}}),
        ray_row("ray against triangle, all hit", "ray_triangle", in.at_triangles.hits, in.triangles,
                {{glm, 0.9}}),
        ray_row("ray against triangle, all miss", "ray_triangle", in.at_triangles.misses,
                in.triangles, {{glm, 0.78}}),
    };
}
