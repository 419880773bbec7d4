/* The numbers that everything here works on: the same in every run, from a fixed seed. */
#ifndef BENCH_DATA_H
#define BENCH_DATA_H

#include "work.h"

#include <cstddef>

/** Records of each kind: enough that no two neighbouring calls see the same, few enough for L1. */
constexpr std::size_t record_count = target_count;

/** Some 100 kB of rays: a branch predictor can't learn their outcomes, the second cache holds them.
 */
constexpr std::size_t ray_count = 16384;

/** Matrices as this library reads them, and transposed, as its peers do. */
struct Matrices {
    alignas(64) KXM4 rows[record_count];
    alignas(64) KXM4 columns[record_count];
};

/** Rays and what they are cast at: ray i at target i modulo target_count. */
struct Rays {
    alignas(64) KXRay mixed[ray_count]; /**< Half of them hit, in no order. */
    alignas(64) KXRay hits[ray_count];
    alignas(64) KXRay misses[ray_count];
};

struct Data {
    /** Scale, shear, rotation and translation. */
    Matrices affine;
    /** As affine, with a last row that isn't 0 0 0 1. */
    Matrices general;
    /**
     * A rotation about a point, and a thousandth closer to it. So points may go through again and
     * again in place and neither run away nor sink to subnormals, and chains stay in bounds.
     */
    Matrices placements;
    alignas(64) KXM3 plane_matrices[record_count];

    /** From -10 to 10. */
    alignas(64) KXP3 points[record_count];
    alignas(64) KXP3 other_points[record_count];
    alignas(64) KXP4 homogeneous_points[record_count];
    alignas(64) KXP2 plane_points[record_count];
    /** Of length 1. */
    alignas(64) KXV3 unit_vectors[record_count];
    /** Three from -pi to pi. */
    alignas(64) KXV3 angles[record_count];
    alignas(64) KXPosition positions[record_count];
    /** Scale, rotation and translation; no shear and no perspective. */
    alignas(64) KXComponents components[record_count];
    alignas(64) KXQuat quaternions[record_count];
    /** From 0.5 to 2. */
    alignas(64) float factors[record_count];
    alignas(64) uint32_t words[record_count];

    alignas(64) KXBox boxes[target_count];
    alignas(64) KXTriangle triangles[target_count];
    alignas(64) KXPlane planes[target_count];
    alignas(64) KXP3 vertices[3 * target_count];
    Rays at_boxes;
    Rays at_triangles;
    alignas(64) KXLine lines_at_boxes[record_count];
    alignas(64) KXLine lines_at_triangles[record_count];
};

const Data &data();

/** Fills an array of points with coordinates from -10 to 10. */
void fill(KXP3 *points, std::size_t count);

/** The same for homogeneous points. */
void fill(KXP4 *points, std::size_t count);

#endif
