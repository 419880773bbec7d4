"""The example on a wedge whose place is known, and on what it must refuse."""
import pathlib
import subprocess
import sys

import numpy as np
import pytest
from matplotlib.image import imread

EXAMPLE = pathlib.Path(__file__).resolve().parents[2] / "python/examples/place_mesh.py"
WEDGE = "v 0 0 0\nv 1 0 0\nv 0 2 0\nv 0 0 4\nf 1 3 2\nf 1 4 3\n"


def run(folder, mesh, *options):
    (folder / "mesh.obj").write_text(mesh)
    return subprocess.run([sys.executable, EXAMPLE, "mesh.obj", *options], cwd=folder,
                          capture_output=True, text=True, check=False)


def test_report(tmp_path):
    # A quarter turn about Z takes (x, y, z) to (-y, x, z), before the mesh is moved.
    ran = run(tmp_path, WEDGE, "--from", "m", "--to", "cm", "--position", "1000", "0", "0",
              "--rotate", "0", "0", "90")
    assert ran.returncode == 0, ran.stderr
    assert "own box       (0, 0, 0) to (100, 200, 400) cm\n" in ran.stdout
    assert "placed        (800, 0, 0) to (1000, 100, 400) cm\n" in ran.stdout
    assert "box placed    (800, 0, 0) to (1000, 100, 400) cm\n" in ran.stdout
    assert "from origin   range 923.309 cm, elevation 3.10426, azimuth 77.4712 degrees\n" in ran.stdout
    assert "read back     (-0, 0, 90) degrees in the order YXZ, scale (1, 1, 1)\n" in ran.stdout
    # In both halves of the picture the mesh, in its own colour, and the blue lines of its box; turned in the second.
    halves = np.hsplit(imread(tmp_path / "place_mesh.png"), 2)
    mesh = [half[..., 0] > half[..., 2] + 0.1 for half in halves]
    box = [half[..., 2] > half[..., 0] + 0.3 for half in halves]
    assert min(each.sum() for each in mesh + box) > 300 and (mesh[0] != mesh[1]).any()
    # X first, then Z: (x, y, z) goes to (z, x, y).
    ran = run(tmp_path, WEDGE, "--from", "ft", "--to", "in", "--position", "0", "0", "0",
              "--rotate", "90", "0", "90", "--order", "ZYX")
    assert "box placed    (0, 0, 0) to (48, 12, 24) in\n" in ran.stdout


@pytest.mark.parametrize("mesh, options", [
    ("v 0 0 0\n", []), (WEDGE + "f 1 2 5\n", []), (WEDGE + "f 0 1 2\n", []), ("v a b c\n", []),
    (WEDGE, ["--position", "1e9", "0", "0"]), (WEDGE, ["--output", "nowhere/picture.png"])],
    ids=["no triangles", "no such point", "point 0", "no numbers", "too far", "no such folder"])
def test_refused(tmp_path, mesh, options):
    ran = run(tmp_path, mesh, *options)
    assert ran.returncode == 1 and ran.stdout == ""
    assert ran.stderr.startswith("place_mesh.py: ") and ran.stderr.count("\n") == 1
    assert not list(tmp_path.glob("*.png"))


CLOUD = EXAMPLE.with_name("point_cloud.py")


def test_point_cloud_whatever_the_chunks(tmp_path):
    said = []
    for options in (["--workers", "2", "--chunk", "50000"], ["--workers", "1", "--chunk", "1000000"]):
        ran = subprocess.run([sys.executable, CLOUD, "--points", "200001", *options], cwd=tmp_path,
                             capture_output=True, text=True, check=False)
        assert ran.returncode == 0, ran.stderr
        said.append(ran.stdout.split("\n", 1)[1])
    assert said[0] == said[1] and "digest" in said[0] and "hidden        0 " not in said[0]
    (tmp_path / "points.npy").write_bytes(b"not an array")
    ran = subprocess.run([sys.executable, CLOUD], cwd=tmp_path, capture_output=True, text=True, check=False)
    assert ran.returncode == 1 and ran.stderr.startswith("point_cloud.py: points.npy can't be used: ")
