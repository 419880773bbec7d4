#!/usr/bin/python3
"""Measures what a host has to know of rays and meshes, against exact arithmetic.

Prints the tables of docs/meshes-and-rays.md or, with --grid, the numbers that its picture is drawn
from. A mesh is an array of triangles by the numbers of their corners, and an array of points.
"""
import argparse
import pathlib
import re
import subprocess
import sys
import tempfile

import numpy as np

import kxmaths5 as kx

# From the packages glmark2-data and assimp-testmodels: parts, figures, a city, vehicles, from 285 to 69,666
# triangles, in most formats that people have.
FILES = """
    glmark2/models/asteroid-high.3ds
    glmark2/models/asteroid-low.3ds
    glmark2/models/bunny.obj
    glmark2/models/cat.3ds
    glmark2/models/horse.3ds
    assimp/models/3DS/fels.3ds
    assimp/models/AC/SphereWithLight.ac
    assimp/models/BLEND/HUMAN.blend
    assimp/models/BLEND/Suzanne_248.blend
    assimp/models/BLEND/TorusLightsCams_250_compressed.blend
    assimp/models/Collada/COLLADA.dae
    assimp/models/Collada/Cinema4D.dae
    assimp/models/Collada/duck.dae
    assimp/models/Collada/earthCylindrical.DAE
    assimp/models/Collada/sphere.dae
    assimp/models/Collada/teapots.DAE
    assimp/models/DXF/PinkEggFromLW.dxf
    assimp/models/DXF/issue_2229.dxf
    assimp/models/LWO/LWO2/UglyVertexColors.lwo
    assimp/models/MS3D/jeep1.ms3d
    assimp/models/OBJ/WusonOBJ.obj
    assimp/models/OBJ/box_longline.obj
    assimp/models/OBJ/regr01.obj
    assimp/models/OBJ/spider.obj
    assimp/models/STL/3DSMaxExport.STL
    assimp/models/STL/sphereWithHole.stl
    assimp/models/X/BCN_Epileptic.X
    assimp/models/X/anim_test.x
    assimp/models/X/fromtruespace_bin32.x
    assimp/models/glTF/CesiumMilkTruck/CesiumMilkTruck.gltf
""".split()

DIAGONAL = 512.0  # The least that kx_fit_mesh makes.
EYE_DISTANCE = 2 * DIAGONAL
RAYS = 20_000  # For each mesh.


class Mesh:
    """Triangles with their corners as they come, or begun well: in the order that kx_triangle gives."""

    def __init__(self, points, corners, begun_well):
        self.points, self.corners = np.asarray(points, np.float32), np.asarray(corners)
        if begun_well:
            status, self.records = kx.triangle(self.points, *self.corners.T)
        else:
            status, planes = kx.KXPlaneEquation(*np.moveaxis(self.points[self.corners], 1, 0))
            self.records = np.zeros(len(corners), kx.KXTriangle)
            self.records["corner"]["vertex"] = self.corners
            self.records["plane"] = planes.view(self.records["plane"].dtype)[:, 0]
        self.has_plane = status == 0

    def normals(self, indices=slice(None)):
        plane = self.records["plane"][indices]
        return np.stack([plane["a"], plane["b"], plane["c"]], axis=-1)

    def hits(self, rays, indices=slice(None)):
        """Whether each ray hits its triangle, and where."""
        verdict, points = kx.KXRayIxTriangle(rays, self.records[indices], self.points)
        return self.has_plane[indices] & (verdict == 1), points

    def hits_any(self, rays):
        return np.array([self.hits(ray)[0].any() for ray in rays], bool)

    def truly_meets(self, rays, indices):
        """Whether each ray meets its triangle, edges and corners included, in front of its origin.

        That is true for the very singles: where doubles leave a doubt, integers decide.
        """
        origins, directions = rays[:, 0], rays[:, 1]
        corners = self.points[self.corners[indices]]
        verdict, is_sure = verdicts(origins.astype(float), directions.astype(float), corners.astype(float))
        doubtful = ~is_sure
        if doubtful.any():
            exact = (as_integers(each[doubtful]) for each in (origins, directions, corners))
            verdict[doubtful] = verdicts(*exact)[0]
        return verdict


# Every single is a whole number of the smallest.
as_integers = np.frompyfunc(lambda single: int(float(single) * 2.0**149), 1, 1)


def verdicts(origins, directions, corners):
    """Whether the rays meet the triangles, and whether that is sure with the rounding of doubles."""
    a, b, c = np.moveaxis(corners - origins[:, None], 1, 0)
    normals = np.cross(b - a, c - a)
    signs = [(directions * np.cross(p, q)).sum(1) for p, q in ((b, c), (c, a), (a, b))]
    towards, away = (directions * normals).sum(1), (a * normals).sum(1)
    is_inside = np.all([s >= 0 for s in signs], 0) | np.all([s <= 0 for s in signs], 0)
    reach = abs(corners - origins[:, None]).max((1, 2))
    bound = 1e-13 * reach**2 * np.maximum(abs(directions).max(1), reach)
    is_sure = np.all([abs(s) > bound for s in (*signs, towards, away)], 0)
    return is_inside & (towards != 0) & (away != 0) & ((away > 0) == (towards > 0)), is_sure


def read(path, folder):
    """Assimp's triangles; it writes all digits. Points in the same place are one, since 0 is -0 as well."""
    copy = pathlib.Path(folder, "mesh.obj")
    subprocess.run(["assimp", "export", f"/usr/share/{path}", copy, "-tri", "-ptv"], check=True,
                   stdout=subprocess.DEVNULL)
    text = copy.read_text("latin-1")
    points = np.array(re.findall(r"^v +(\S+) (\S+) (\S+)", text, re.M), np.float32)
    corners = np.array(re.findall(r"^f +(\d+)\S* (\d+)\S* (\d+)\S*\s*$", text, re.M), int) - 1
    points, places = np.unique(points, axis=0, return_inverse=True)
    return points, places[corners]


def placed(points, diagonal, middle=(0, 0, 0)):
    """The points scaled to a diagonal of their box, with its middle moved to a point."""
    box = kx.box_around(points)
    scale = diagonal / kx.KXV3Length(kx.KXBoxDiagonal(box))
    return ((points.astype(float) - kx.KXBoxMidPoint(box)) * scale + middle).astype(np.float32)


def fitted(meshes):
    for points, corners in meshes:
        yield Mesh(placed(points, DIAGONAL), corners, True)


def rays_at(targets, away, distance):
    """From a distance along a direction back to each target."""
    origins = kx.KXV3Combine(targets, away, 1, distance)
    return np.stack([origins, kx.KXV3Normalise(kx.KXV3Combine(targets, origins, 1, -1))[1]], axis=-2)


def unit_vectors(random, count):
    return kx.KXV3Normalise(random.standard_normal((count, 3)))[1]


def rays_at_the_inside(mesh, random, count):
    """Rays from everywhere at any points of any triangles, and the triangles' numbers."""
    indices = random.integers(len(mesh.corners), size=count)
    u, v = random.random((2, count, 1))
    u, v = np.where(u + v > 1, 1 - u, u), np.where(u + v > 1, 1 - v, v)
    k = np.moveaxis(mesh.points[mesh.corners[indices]].astype(float), 1, 0)
    return rays_at((1 - u - v) * k[0] + u * k[1] + v * k[2], unit_vectors(random, count), EYE_DISTANCE), indices


def text(percent):
    """Two digits, and no exponent."""
    decimals = sum(0 < percent < 9.95 / 10**i for i in range(4))
    return f"{percent:.{decimals}f}"


def share(lost):
    return text(100 * np.mean(lost))


def middle_and_worst(verdicts_of_meshes):
    """Of one share for each mesh."""
    percents = sorted(100 * np.mean(lost) if len(lost) else 0.0 for lost in verdicts_of_meshes)
    return f"{text(percents[len(percents) // 2])} | {text(percents[-1])}"


def turned_square():
    turn = kx.KXM4Compose(kx.KXComponents(scaleX=1, scaleY=1, scaleZ=1, perspectiveW=1, rotateZ=1.5707964))
    return kx.KXM4P3I1(turn, [[-0.5, -0.5, 0], [0.5, -0.5, 0], [0.5, 0.5, 0], [-0.5, 0.5, 0]]), [[0, 1, 2], [0, 2, 3]]


def turned_triangle():
    return kx.KXRotateInPlane([[-0.5, -0.3, 0], [0.7, -0.3, 0], [-0.1, 0.6, 0]], [0, 0, 1], 1.5707964), [[0, 1, 2]]


def straight_down(x, y):
    return np.stack([x, y, np.full_like(x, 10), 0 * x, 0 * x, 0 * x - 1], axis=-1).astype(np.float32).reshape(-1, 2, 3)


def is_inside(mesh, rays):
    return np.any([mesh.truly_meets(rays, np.full(len(rays), i)) for i in range(len(mesh.corners))], axis=0)


def is_hit(mesh, rays):
    return np.any([mesh.hits(rays, i)[0] for i in range(len(mesh.corners))], axis=0)


def print_first_edge():
    print("| shape | missed at its inside | hit next to it | missed, begun well | hit next to it |\n"
          "|---|---:|---:|---:|---:|")
    shapes = {"a unit square, turned by `KXM4Compose`": turned_square(),
              "a triangle, turned by `KXRotateInPlane`": turned_triangle()}
    for across in (1e-2, 1e-4, 1e-5, 1e-6, 1e-7):
        shapes[f"legs of 1, the first edge {across:g} across"] = (
            [[-0.5, -0.5, 0], [np.float32(-0.5) + np.float32(across), 0.5, 0], [0.5, 0.2, 0]], [[0, 1, 2]])
    rays = straight_down(*np.random.default_rng(1).uniform(-1, 1, (2, 200_000)))
    for name, shape in shapes.items():
        cells = []
        for begun_well in (False, True):
            mesh = Mesh(*shape, begun_well)
            inside, hit = is_inside(mesh, rays), is_hit(mesh, rays)
            cells += [share(~hit[inside]), share(hit[~inside])]
        print(f"| {name} | {' | '.join(cells)} |")


def print_grid():
    """What rays at the turned triangle do: 0 is a miss and 1 a hit that are right, 2 and 3 those that are not."""
    axis = 1.6 * (np.arange(300, dtype=np.float32) + 0.5) / 300 - 0.8
    rays = straight_down(*np.meshgrid(axis, axis))
    pictures = []
    for begun_well in (False, True):
        mesh = Mesh(*turned_triangle(), begun_well)
        inside, hit = is_inside(mesh, rays), is_hit(mesh, rays)
        pictures.append(np.where(inside, np.where(hit, 1, 2), np.where(hit, 3, 0)).reshape(300, 300))
    for row in np.hstack(pictures):
        print(*row)


def not_hit_at_the_middle(mesh):
    """The triangles that a ray straight at the middle doesn't hit: they are below the tolerances."""
    k = np.moveaxis(mesh.points[mesh.corners].astype(float), 1, 0)
    rays = rays_at(k.mean(0), mesh.normals(), 1)
    edges = k - np.roll(k, 1, axis=0)
    area, longest = np.linalg.norm(np.cross(edges[1], edges[2]), axis=1), (edges**2).sum(2).max(0)
    # Those thinner than singles can resolve, by a millionth of the longest edge, aren't counted.
    return ~mesh.hits(rays)[0][area > 1e-6 * longest]


def print_sizes(meshes):
    print("| diagonal | median | worst | median, begun well | worst |\n|---:|---:|---:|---:|---:|")
    for size in (0.1, 0.2, 0.5, 1.0, 2.0, 5.0, 10.0, 100.0, 1000.0):
        cells = [middle_and_worst([not_hit_at_the_middle(Mesh(placed(points, size), corners, begun_well))
                                   for points, corners in meshes]) for begun_well in (False, True)]
        print(f"| {size:g} | {cells[0]} | {cells[1]} |")


def hits_nothing(mesh, count):
    """Of rays at the inside of triangles that truly meet their triangle, those that hit none at all."""
    rays, indices = rays_at_the_inside(mesh, np.random.default_rng(2), count)
    missed = np.flatnonzero(~mesh.hits(rays, indices)[0])
    truly = missed[mesh.truly_meets(rays[missed], indices[missed])]
    lost = np.zeros(count - len(missed) + len(truly), bool)
    lost[:len(truly)] = ~mesh.hits_any(rays[truly])
    return lost


def print_distances(meshes):
    print("| middle of the mesh | median | worst | median, begun well | worst |\n|---|---:|---:|---:|---:|")
    for away in (0, 10, 100, 1000, 10000):
        middle = away * DIAGONAL * np.array([0.64, 0.6, 0.48])
        cells = [middle_and_worst([hits_nothing(Mesh(placed(points, DIAGONAL, middle), corners, begun_well), RAYS)
                                   for points, corners in meshes]) for begun_well in (False, True)]
        print(f"| {f'{away} diagonals away' if away else 'the origin'} | {cells[0]} | {cells[1]} |")


def lost_where_shared(mesh, shared, targets, is_wanted):
    """Of rays at what triangles share, from the outside, that truly meet one of them, those that hit none of them.

    shared: for each of a triangle's three edges or corners, which of the targets it is.
    """
    places, indices = shared.ravel(), np.repeat(np.arange(len(shared)), 3)
    outward = np.stack([np.bincount(places, along, len(targets)) for along in mesh.normals(indices).T], axis=1)
    rays = rays_at(targets, kx.KXV3Normalise(outward)[1], EYE_DISTANCE)[places]
    truly = np.bincount(places, mesh.truly_meets(rays, indices)) > 0
    return np.bincount(places, mesh.hits(rays, indices)[0])[is_wanted & truly] == 0


def print_edges(meshes):
    at_edges, at_corners, inside = [], [], []
    for mesh in fitted(meshes):
        both = np.sort(np.stack([mesh.corners, np.roll(mesh.corners, -1, axis=1)], axis=2).reshape(-1, 2))
        ends, edges, triangles = np.unique(both, axis=0, return_inverse=True, return_counts=True)
        at_edges.append(lost_where_shared(mesh, edges.reshape(-1, 3), mesh.points[ends].astype(float).mean(1),
                                          triangles == 2))
        triangles = np.bincount(mesh.corners.ravel())
        at_corners.append(lost_where_shared(mesh, mesh.corners, mesh.points, triangles > 2))
        inside.append(hits_nothing(mesh, 10 * RAYS))
    inside = np.concatenate(inside)
    print("| rays at | median | worst |\n|---|---:|---:|")
    print(f"| the middle of an edge of two triangles | {middle_and_worst(at_edges)} |")
    print(f"| a corner of three or more triangles | {middle_and_worst(at_corners)} |")
    print(f"| random points: {inside.sum()} of {len(inside)} rays | | |")


def print_restarts(meshes):
    print("| step, of the diagonal | median | worst |\n|---:|---:|---:|")
    steps = {0: [], 1e-8: [], 1e-7: [], 3e-7: [], 1e-6: []}
    for mesh in fitted(meshes):
        random = np.random.default_rng(3)
        rays, indices = rays_at_the_inside(mesh, random, RAYS)
        is_hit_there, points = mesh.hits(rays, indices)
        rays, indices, points = rays[is_hit_there], indices[is_hit_there], points[is_hit_there]
        # To the side that the ray has come from, and on that side.
        normals = mesh.normals(indices)
        normals *= -np.sign(kx.dot(normals, rays[:, 1]))[:, None]
        back = unit_vectors(random, len(rays))
        back *= np.sign(kx.dot(normals, back))[:, None]
        for step, again in steps.items():
            starts = kx.KXV3Combine(points, normals, 1, step * DIAGONAL)
            again.append(mesh.hits(np.stack([starts, back], axis=1), indices)[0])
    for step, again in steps.items():
        print(f"| {step:g} | {middle_and_worst(again)} |")


def print_lengths(meshes):
    print("| length | boxes missed | triangles missed |\n|---:|---:|---:|")
    lengths = {length: ([], []) for length in (100, 1, 1e-1, 1e-2, 1e-3, 1e-4, 1e-5, 1e-6)}
    for mesh in fitted(meshes):
        rays, indices = rays_at_the_inside(mesh, np.random.default_rng(4), RAYS)
        # What a unit direction hits, and the box around it, grown as the header asks for.
        is_hit_there = mesh.hits(rays, indices)[0]
        rays, indices = rays[is_hit_there], indices[is_hit_there]
        boxes = kx.box_around(mesh.points[mesh.corners[indices]]) + np.float32([[-0.001], [0.001]])
        for length, (missed_boxes, missed_triangles) in lengths.items():
            other = rays * np.float32([[1], [length]])
            missed_boxes.append(kx.KXRayIxBox(other, boxes, point=False) == 0)
            missed_triangles.append(~mesh.hits(other, indices)[0])
    for length, missed in lengths.items():
        print(f"| {length:g} | {share(np.concatenate(missed[0]))} | {share(np.concatenate(missed[1]))} |")


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("--grid", action="store_true", help="print what the picture is drawn from")
    if parser.parse_args().grid:
        print_grid()
        return
    try:
        with tempfile.TemporaryDirectory() as folder:
            meshes = [read(path, folder) for path in FILES]
    except (OSError, subprocess.CalledProcessError) as error:
        sys.exit(f"measure.py: {error}")
    print_first_edge()
    for table in (print_sizes, print_distances, print_edges, print_restarts, print_lengths):
        print()
        table(meshes)


if __name__ == "__main__":
    main()
