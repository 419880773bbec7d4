#!/usr/bin/python3
"""The Python package next to a loop in C, NumPy and SciPy: ratios of medians, taken in turns."""
import argparse
import ctypes
import pathlib
import random
import statistics
import subprocess
import tempfile
import timeit

import meshio
import numpy as np
from scipy.spatial.transform import Rotation

import kxmaths5 as kx

MESH = "/usr/share/glmark2/models/bunny.obj"

# What a host in C would write for arrays, and nothing else.
C_LOOPS = """
#include <kxmaths5.h>
#define LOOP(name, First, Second, Out, call) \\
    void name(long n, const First *a, const Second *b, Out *out) { for (long i = 0; i < n; ++i) call; }
LOOP(cross, KXV3, KXV3, KXV3, KXV3Cross(&a[i], &b[i], &out[i]))
LOOP(inverse, KXM4, void, KXM4, KXM4Inverse(&a[i], &out[i]))
LOOP(product, KXM4, KXM4, KXM4, KXM4Mult(&a[i], &b[i], &out[i]))
LOOP(quaternion, KXM4, void, KXQuat, KXMatrixToQuat(&a[i], &out[i]))
LOOP(decompose, KXM4, void, KXComponents, KXM4Decompose(&a[i], &out[i]))
LOOP(put, KXP3, void, KXBox, KXPutPointInBox(&a[i], out))
void box(long n, const KXP3 *p, const void *b, KXBox *out) { out->minimum = out->maximum = p[0]; put(n, p, b, out); }
void points(long n, const KXP3 *p, const KXM4 *m, KXP3 *out) { KXM4NP3I1(m, (uint32_t)n, p, out); }
"""


def c_loops():
    """The loops above, compiled for the very library that the package has loaded."""
    module = next(pathlib.Path(kx.__file__).parent.glob("libkxmaths5*"))
    folder = tempfile.mkdtemp()
    source, built = pathlib.Path(folder, "loops.c"), pathlib.Path(folder, "loops.so")
    source.write_text(C_LOOPS)
    subprocess.run(["cc", "-O2", "-shared", "-fPIC", "-Iinclude", source, "-o", built, module,
                    f"-Wl,-rpath,{module.parent}"], check=True)
    return ctypes.CDLL(str(built))


def timed(ways, repetitions, calls=1):
    """Median seconds of a call of each way, in turns. What ran before empties caches, so the order is random."""
    seconds = {name: [] for name in ways}
    order = random.Random(5)
    for _ in range(repetitions):
        for name in order.sample(list(ways), len(ways)):
            ways[name]()
            seconds[name].append(timeit.timeit(ways[name], number=calls) / calls)
    return {name: statistics.median(each) for name, each in seconds.items()}


def rows(count, loops):
    generator = np.random.default_rng(3)
    a, b = generator.uniform(-4, 4, (2, count, 3)).astype(np.float32)
    places = np.zeros(count, kx.KXPosition)
    for name in places.dtype.names:
        places[name] = generator.uniform(-1.5, 1.5, count)
    matrices, _ = kx.KXM4Position(places, kx.KX_ORDER_YXZ)
    matrix, rotations = matrices[0], np.ascontiguousarray(matrices[:, :3, :3])
    others = matrices[::-1].copy()
    vectors, squares = np.empty_like(a), np.empty_like(matrices)
    quats, parts = np.empty((count, 4), np.float32), np.zeros(count, kx.KXComponents)
    one_box, statuses = np.empty((2, 3), np.float32), np.zeros(count, np.int32)

    def loop(name, first, second, out):
        arguments = [ctypes.c_long(count)] + [ctypes.c_void_p(each.ctypes.data if each is not None else None)
                                              for each in (first, second, out)]
        return lambda: getattr(loops, name)(*arguments)

    yield "a cross product", {
        "ours": lambda: kx.KXV3Cross(a, b, out=vectors), "C": loop("cross", a, b, vectors),
        "NumPy": lambda: np.cross(a, b)}
    yield "a product of matrices", {
        "ours": lambda: kx.KXM4Mult(matrices, others, out=squares), "C": loop("product", matrices, others, squares),
        "NumPy": lambda: np.matmul(matrices, others, out=squares)}
    yield "an inverse", {
        "ours": lambda: kx.KXM4Inverse(matrices, out=(statuses, squares)), "C": loop("inverse", matrices, None, squares),
        "NumPy": lambda: np.linalg.inv(matrices)}
    yield "a point by one matrix", {
        "ours": lambda: kx.KXM4P3I1(matrix, a, out=vectors), "C": loop("points", a, matrix, vectors),
        "NumPy": lambda: a @ matrix[:3, :3].T + matrix[:3, 3]}
    yield "a quaternion of a matrix", {
        "ours": lambda: kx.KXMatrixToQuat(matrices, out=quats), "C": loop("quaternion", matrices, None, quats),
        "SciPy": lambda: Rotation.from_matrix(rotations).as_quat()}
    yield "a decomposition", {
        "ours": lambda: kx.KXM4Decompose(matrices, out=(statuses, parts)),
        "C": loop("decompose", matrices, None, parts),
        "SciPy": lambda: Rotation.from_matrix(rotations).as_euler("XYZ")}
    yield "a point put into a box", {
        "ours": lambda: kx.box_around(a), "C": loop("box", a, None, one_box),
        "NumPy": lambda: (a.min(axis=0), a.max(axis=0))}


def single_calls():
    a, b, m = np.float32([1, 2, 3]), np.float32([3, 2, 1]), np.eye(4, dtype=np.float32)
    yield "one call of KXV3Cross", {"ours": lambda: kx.KXV3Cross(a, b), "NumPy": lambda: np.cross(a, b)}
    yield "one call of KXM4Inverse", {"ours": lambda: kx.KXM4Inverse(m), "NumPy": lambda: np.linalg.inv(m)}
    yield "one call of KXM4P3I1", {"ours": lambda: kx.KXM4P3I1(m, a), "NumPy": lambda: m[:3, :3] @ a + m[:3, 3]}


def print_rows(jobs, repetitions, calls, records):
    for name, ways in jobs:
        taken = timed(ways, repetitions, calls)
        *_, peer = ways
        ours = taken["ours"]
        of_loop = f"{ours / taken['C']:.2f}" if "C" in ways else ""
        print(f"| {name} | {ours / records * 1e9:.2f} | {of_loop} | {ours / taken[peer]:.3f} ({peer}) |")


def print_rays():
    read = meshio.read(MESH)
    mesh = kx.Mesh(read.points, read.get_cells_type("triangle"))
    generator = np.random.default_rng(4)
    middle, extent = kx.KXBoxMidPoint(mesh.box), kx.KXBoxDiagonal(mesh.box)
    origins = middle + extent * generator.normal(size=(100_000, 3))
    targets = middle + extent * generator.uniform(-0.3, 0.3, (100_000, 3))
    paths = np.stack([origins, targets - origins], axis=1).astype(np.float32)
    found = mesh.nearest(paths)[0] >= 0
    seconds = timed({"rays": lambda: mesh.nearest(paths)}, 9)["rays"]
    print(f"| 100,000 rays at {pathlib.Path(MESH).name}, {found.mean():.0%} of them hits | "
          f"{seconds * 10:.2f} µs a ray |")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--count", type=int, default=1_000_000, help="records in an array")
    parser.add_argument("--repetitions", type=int, default=15)
    options = parser.parse_args()
    print("| | ours, ns | of the C loop | of NumPy or SciPy |\n|---|---|---|---|")
    print_rows(rows(options.count, c_loops()), options.repetitions, 1, options.count)
    print_rows(single_calls(), options.repetitions, 1000, 1)
    print_rays()


if __name__ == "__main__":
    main()
