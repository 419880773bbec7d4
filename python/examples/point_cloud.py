#!/usr/bin/python3
"""Takes a point cloud larger than memory through the library, in chunks, on a Dask cluster."""
import argparse
import hashlib
import pathlib
import sys
import time

import dask
import numpy as np
from dask.distributed import Client, LocalCluster

import kxmaths5 as kx

BLOCK = 1 << 16  # The points are made block by block, so that they do not depend on the chunks.


def read_options():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.ArgumentDefaultsHelpFormatter)
    parser.add_argument("--points", type=int, default=1_000_000, help="how many")
    parser.add_argument("--chunk", type=int, default=250_000, help="how many a task has in memory")
    parser.add_argument("--workers", type=int, default=2, help="processes of the local cluster")
    parser.add_argument("--scheduler", help="the address of a cluster that runs already")
    parser.add_argument("--file", type=pathlib.Path, default="points.npy",
                        help="where the cloud is kept; it is made if it isn't there")
    options = parser.parse_args()
    if min(options.points, options.chunk, options.workers) < 1:
        parser.error("--points, --chunk and --workers are 1 or more")
    return options


def make_cloud(path, count):
    """A hilly landscape in feet, as a scanner would deliver it."""
    cloud = np.lib.format.open_memmap(path, "w+", np.float32, (count, 3))
    for block, start in enumerate(range(0, count, BLOCK)):
        generator = np.random.default_rng([5, block])
        points = generator.uniform(-3000, 3000, (min(BLOCK, count - start), 3)).astype(np.float32)
        points[:, 1] = 300 * np.sin(points[:, 0] / 700) * np.cos(points[:, 2] / 900)
        cloud[start:start + len(points)] = points
    cloud.flush()


def tower():
    """A mesh between the sensor and a part of the cloud: a box on the ground, in metres."""
    corners = np.float32([[x, y, z] for x in (100, 180) for y in (-200, 250) for z in (50, 140)])
    sides = [[0, 1, 3, 2], [4, 6, 7, 5], [0, 4, 5, 1], [2, 3, 7, 6], [0, 2, 6, 4], [1, 5, 7, 3]]
    faces = [[a, b, c] for side in sides for a, b, c in (side[:3], [side[0], *side[2:]])]
    return corners, faces


def process(path, start, stop, place):
    """One chunk: its box, how many points the tower hides, and a digest of each block of points."""
    points = np.load(path, mmap_mode="r")[start:stop]
    metres = kx.KXP3ChangeUnits(kx.KX_UNIT_FOOT, kx.KX_UNIT_METRE, points)
    placed = kx.KXM4P3I1(place, metres)
    sensor = np.broadcast_to(np.float32([0, 120, 0]), placed.shape)
    hidden = kx.Mesh(*tower()).blocks(np.stack([sensor, placed], axis=1))
    digests = [hashlib.sha256(placed[at:at + BLOCK].tobytes() + hidden[at:at + BLOCK].tobytes()).digest()
               for at in range(0, len(placed), BLOCK)]
    return kx.box_around(placed), int(hidden.sum()), digests


def run(options):
    place, _ = kx.KXM4Position(kx.KXPosition(12, -3, 40, rotateY=0.7), kx.KX_ORDER_YXZ)
    chunk = -(-options.chunk // BLOCK) * BLOCK  # Whole blocks, for digests that do not depend on it.
    task = dask.delayed(process)
    parts = dask.compute(*(task(str(options.file.resolve()), start, min(start + chunk, options.points), place)
                           for start in range(0, options.points, chunk)))
    boxes, hidden, digests = zip(*parts)
    box = kx.box_around(np.concatenate(boxes))
    return box, sum(hidden), hashlib.sha256(b"".join(sum(digests, []))).hexdigest()


def text(numbers):
    return "(" + ", ".join(f"{number:.6g}" for number in numbers) + ")"


def main():
    options = read_options()
    try:
        if not options.file.exists():
            make_cloud(options.file, options.points)
        shape = np.load(options.file, mmap_mode="r").shape
    except (OSError, ValueError) as error:
        sys.exit(f"point_cloud.py: {options.file} can't be used: {error}")
    if shape != (options.points, 3):
        sys.exit(f"point_cloud.py: {options.file} has the shape {shape}, not ({options.points}, 3)")
    try:
        cluster = None if options.scheduler else LocalCluster(
            n_workers=options.workers, threads_per_worker=1, dashboard_address=None)
        client = Client(options.scheduler or cluster, timeout=20)
    except (OSError, ValueError) as error:
        sys.exit(f"point_cloud.py: there is no scheduler at {options.scheduler}: {error}")
    with client:
        started = time.perf_counter()
        box, hidden, digest = run(options)
        seconds = time.perf_counter() - started
    if cluster:
        cluster.close()
    print(f"points        {options.points} in {seconds:.1f} s")
    print(f"box           {text(box[0])} to {text(box[1])} m")
    print(f"hidden        {hidden} points by the tower")
    print(f"digest        {digest}")


if __name__ == "__main__":
    main()
