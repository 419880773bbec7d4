#!/usr/bin/python3
"""The Python package next to a loop in C, NumPy and SciPy: ratios of medians, taken in turns."""
import argparse
import ctypes
import pathlib
import random
import statistics
import subprocess
import tempfile
import time

import numpy as np
from scipy.spatial.transform import Rotation

import kxmaths5 as kx

# What a host in C would write for arrays, and nothing else.
C_LOOPS = """
#include <kxmaths5.h>
void cross(long n, const KXV3 *a, const KXV3 *b, KXV3 *out)
{ for (long i = 0; i < n; ++i) KXV3Cross(&a[i], &b[i], &out[i]); }
void inverse(long n, const KXM4 *m, const void *unused, KXM4 *out)
{ (void)unused; for (long i = 0; i < n; ++i) KXM4Inverse(&m[i], &out[i]); }
void product(long n, const KXM4 *a, const KXM4 *b, KXM4 *out)
{ for (long i = 0; i < n; ++i) KXM4Mult(&a[i], &b[i], &out[i]); }
void quaternion(long n, const KXM4 *m, const void *unused, KXQuat *out)
{ (void)unused; for (long i = 0; i < n; ++i) KXMatrixToQuat(&m[i], &out[i]); }
void decompose(long n, const KXM4 *m, const void *unused, KXComponents *out)
{ (void)unused; for (long i = 0; i < n; ++i) KXM4Decompose(&m[i], &out[i]); }
void points(long n, const KXP3 *p, const KXM4 *m, KXP3 *out)
{ KXM4NP3I1(m, (uint32_t)n, p, out); }
void box(long n, const KXP3 *p, const void *unused, KXBox *out)
{ (void)unused; out->minimum = out->maximum = p[0];
  for (long i = 1; i < n; ++i) KXPutPointInBox(&p[i], out); }
"""


def c_loops(include):
    """The loops above, compiled for the very library that the package has loaded."""
    module = next(pathlib.Path(kx.__file__).parent.glob("libkxmaths5*"))
    folder = tempfile.mkdtemp()
    source, built = pathlib.Path(folder, "loops.c"), pathlib.Path(folder, "loops.so")
    source.write_text(C_LOOPS)
    subprocess.run(["cc", "-O2", "-shared", "-fPIC", f"-I{include}", source, "-o", built, module,
                    f"-Wl,-rpath,{module.parent}"], check=True)
    return ctypes.CDLL(str(built))


def timed(ways, repetitions):
    """Median seconds of each way, all of them in turns. What ran before empties caches, so the order is random."""
    seconds = {name: [] for name in ways}
    order = random.Random(5)
    for _ in range(repetitions):
        for name in order.sample(list(ways), len(ways)):
            way = ways[name]
            way()
            started = time.perf_counter()
            way()
            seconds[name].append(time.perf_counter() - started)
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
    many = range(1000)
    yield "KXV3Cross", {"ours": lambda: [kx.KXV3Cross(a, b) for _ in many],
                        "NumPy": lambda: [np.cross(a, b) for _ in many]}
    yield "KXM4Inverse", {"ours": lambda: [kx.KXM4Inverse(m) for _ in many],
                          "NumPy": lambda: [np.linalg.inv(m) for _ in many]}
    yield "KXM4P3I1", {"ours": lambda: [kx.KXM4P3I1(m, a) for _ in many],
                       "NumPy": lambda: [m[:3, :3] @ a + m[:3, 3] for _ in many]}


def rays(path):
    import meshio
    read = meshio.read(path)
    mesh = kx.Mesh(read.points, read.get_cells_type("triangle"))
    generator = np.random.default_rng(4)
    middle, extent = kx.KXBoxMidPoint(mesh.box), kx.KXBoxDiagonal(mesh.box)
    origins = middle + extent * generator.normal(size=(100_000, 3))
    targets = middle + extent * generator.uniform(-0.3, 0.3, (100_000, 3))
    paths = np.stack([origins, targets - origins], axis=1).astype(np.float32)
    found = mesh.nearest(paths)[0] >= 0
    seconds = timed({"rays": lambda: mesh.nearest(paths)}, 9)["rays"]
    print(f"| 100,000 rays at {pathlib.Path(path).name}, {found.mean():.0%} of them hits | "
          f"{seconds * 10:.2f} µs a ray |")


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--count", type=int, default=1_000_000, help="records in an array")
    parser.add_argument("--repetitions", type=int, default=15)
    parser.add_argument("--include", default="include", help="the folder of the headers")
    parser.add_argument("--mesh", default="/usr/share/glmark2/models/bunny.obj")
    options = parser.parse_args()
    loops = c_loops(options.include)
    print("| | ours, ns | of the C loop | of NumPy or SciPy |\n|---|---|---|---|")
    for name, ways in rows(options.count, loops):
        taken = timed(ways, options.repetitions)
        peer = next(each for each in ways if each not in ("ours", "C"))
        print(f"| {name} | {taken['ours'] / options.count * 1e9:.2f} | {taken['ours'] / taken['C']:.2f} | "
              f"{taken['ours'] / taken[peer]:.3f} ({peer}) |")
    for name, ways in single_calls():
        taken = timed(ways, options.repetitions)
        print(f"| one call of {name} | {taken['ours'] * 1e6:.0f} | | {taken['ours'] / taken['NumPy']:.3f} (NumPy) |")
    rays(options.mesh)


if __name__ == "__main__":
    main()
