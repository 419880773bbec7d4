#!/usr/bin/python3
"""Places a mesh, tells where it stands, reads its placement back, and draws it before and after."""
import argparse
import pathlib
import sys

import meshio
import numpy as np
from matplotlib.figure import Figure
from mpl_toolkits.mplot3d.art3d import Line3DCollection, Poly3DCollection

import kxmaths5 as kx

BUNNY = "/usr/share/glmark2/models/bunny.obj"  # Debian's package glmark2-data
UNITS = {"mm": kx.KX_UNIT_MILLIMETRE, "cm": kx.KX_UNIT_CENTIMETRE, "m": kx.KX_UNIT_METRE,
         "in": kx.KX_UNIT_INCH, "ft": kx.KX_UNIT_FOOT}
ORDERS = {order.name.removeprefix("KX_ORDER_"): order for order in kx.KXRotationOrder}


def read_options():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("mesh", nargs="?", default=BUNNY, help="any mesh of triangles; %(default)s")
    parser.add_argument("--from", dest="from_", choices=UNITS, default="cm", help="its unit")
    parser.add_argument("--to", choices=UNITS, default="mm", help="the unit of all other lengths")
    parser.add_argument("--position", nargs=3, type=float, default=(30, 5, -20),
                        metavar=("X", "Y", "Z"))
    parser.add_argument("--rotate", nargs=3, type=float, default=(20, 115, 0),
                        metavar=("X", "Y", "Z"), help="angles in degrees")
    parser.add_argument("--order", choices=ORDERS, default="YXZ")
    parser.add_argument("--output", default="place_mesh.png", help="the picture; %(default)s")
    return parser.parse_args()


def read_mesh(path):
    """The points, and the indices of the triangles' corners."""
    if not pathlib.Path(path).is_file():
        sys.exit(f"place_mesh.py: there is no mesh {path}")
    try:
        mesh = meshio.read(path)
        with np.errstate(over="ignore"):
            points = np.ascontiguousarray(mesh.points, np.float32)
        triangles = mesh.get_cells_type("triangle")
    except (meshio.ReadError, ValueError, IndexError) as error:
        sys.exit(f"place_mesh.py: {path} can't be read as a mesh: {error}")
    if not len(triangles) or triangles.min() < 0 or triangles.max() >= len(points):
        sys.exit(f"place_mesh.py: {path} has no triangles, or their points aren't there")
    return points, triangles


def draw(axes, points, triangles, unit):
    """The mesh, lit along its normals, in its box."""
    corners = points[triangles]
    _, planes = kx.KXPlaneEquation(corners[:, 0], corners[:, 1], corners[:, 2])
    light = 0.3 + 0.7 * np.abs(kx.dot(planes[:, :3], [0.4, 0.8, 0.45]))
    colours = np.outer(light, [0.85, 0.65, 0.45]).clip(0, 1)
    axes.add_collection3d(Poly3DCollection(corners, facecolors=colours, linewidth=0))

    box = kx.box_around(points)
    unit_corners = np.array([[x, y, z] for x in (0, 1) for y in (0, 1) for z in (0, 1)])
    edges = [(a, b) for a in unit_corners for b in unit_corners
             if (b >= a).all() and (b - a).sum() == 1]
    axes.add_collection3d(Line3DCollection(np.where(edges, box[1], box[0]), linewidth=0.8))

    middle, reach = kx.KXBoxMidPoint(box), kx.KXBoxDiagonal(box).max() * 0.55
    axes.set(xlabel=f"X, {unit}", ylabel=f"Y, {unit}", zlabel=f"Z, {unit}",
             **{f"{axis}lim": (at - reach, at + reach) for axis, at in zip("xyz", middle)})
    axes.locator_params(nbins=4)
    axes.set_box_aspect((1, 1, 1))
    axes.view_init(elev=20, azim=30, vertical_axis="y")


def text(numbers):
    return "(" + ", ".join(f"{number + 0.0:.6g}" for number in numbers) + ")"


def report(points, placed, matrix, off, unit):
    own_box, placed_box = kx.box_around(points), kx.box_around(placed)
    carried = kx.KXTransformBox(own_box, matrix)
    away, elevation, azimuth = kx.KXPointsToREA([0, 0, 0], kx.KXBoxMidPoint(placed_box))
    position, scale = kx.KXM4MatrixComponents(matrix)
    angles = np.degrees([position.rotateX, position.rotateY, position.rotateZ])

    print(f"own box       {text(own_box[0])} to {text(own_box[1])} {unit}")
    print(f"placed        {text(placed_box[0])} to {text(placed_box[1])} {unit}")
    print(f"box placed    {text(carried[0])} to {text(carried[1])} {unit}")
    print(f"from origin   range {away:.6g} {unit}, elevation {np.degrees(elevation):.6g}, "
          f"azimuth {np.degrees(azimuth):.6g} degrees")
    print(f"read back     {text(angles)} degrees in the order YXZ, scale {text(scale)}")
    print(f"moved back    at most {off:.2g} {unit} off")


def main():
    options = read_options()
    points, triangles = read_mesh(options.mesh)
    points = kx.KXP3ChangeUnits(UNITS[options.from_], UNITS[options.to], points)
    position = kx.KXPosition(*options.position, *np.radians(options.rotate))
    matrix, inverse = kx.KXM4Position(position, ORDERS[options.order])
    placed = kx.KXM4NP3I1(matrix, points)
    off = np.abs(kx.KXM4NP3I1(inverse, placed) - points).max()
    if not off < 0.01 * np.ptp(points, axis=0).max():  # NaN is refused as well.
        sys.exit("place_mesh.py: floats can't tell the mesh's points apart, here or where it is placed")

    figure = Figure(figsize=(12, 6))
    figure.subplots_adjust(left=0, right=1, bottom=0.02, top=0.95, wspace=0)
    for at, (title, shown) in enumerate({"as it is": points, "placed": placed}.items(), start=1):
        axes = figure.add_subplot(1, 2, at, projection="3d", title=title)
        draw(axes, shown, triangles, options.to)
    try:
        figure.savefig(options.output, dpi=100)
    except (OSError, ValueError) as error:
        sys.exit(f"place_mesh.py: {options.output} can't be written: {error}")
    print(f"mesh          {options.mesh}: {len(points)} points, {len(triangles)} triangles")
    report(points, placed, matrix, off, options.to)
    print(f"picture       {options.output}")


if __name__ == "__main__":
    main()
