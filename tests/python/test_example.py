"""The examples: their pictures and reports, and what they must refuse."""
import pathlib
import subprocess
import sys

import numpy as np
import pytest
from PIL import Image

ROOT = pathlib.Path(__file__).resolve().parents[2]
WEDGE = "v 0 0 0\nv 1 0 0\nv 0 2 0\nv 0 0 4\nf 1 3 2\nf 1 4 3\n"


def run(folder, script, *options):
    return subprocess.run([sys.executable, ROOT / "python/examples" / script, *map(str, options)], cwd=folder,
                          capture_output=True, text=True, check=False)


def place(folder, mesh, *options):
    (folder / "mesh.obj").write_text(mesh)
    return run(folder, "place_mesh.py", "mesh.obj", *options)


def test_picture(tmp_path):
    """That of the documents, with what its options are without being given; another Matplotlib has other text."""
    assert run(tmp_path, "place_mesh.py").returncode == 0
    drawn, shown = map(Image.open, [tmp_path / "place_mesh.png", ROOT / "docs/pictures/python_place_mesh.png"])
    assert drawn.size == shown.size
    if drawn.info["Software"] == shown.info["Software"]:
        assert (np.abs(np.asarray(drawn, int) - shown).max(axis=-1) > 2).sum() < 20


def test_report(tmp_path):
    # A quarter turn about Z takes (x, y, z) to (-y, x, z), before the mesh is moved.
    ran = place(tmp_path, WEDGE, "--from", "m", "--to", "cm", "--position", 1000, 0, 0, "--rotate", 0, 0, 90)
    assert ran.stdout == """\
mesh          mesh.obj: 4 points, 2 triangles
own box       (0, 0, 0) to (100, 200, 400) cm
placed        (800, 0, 0) to (1000, 100, 400) cm
box placed    (800, 0, 0) to (1000, 100, 400) cm
from origin   range 923.309 cm, elevation 3.10426, azimuth 77.4712 degrees
read back     (0, 0, 90) degrees in the order YXZ, scale (1, 1, 1)
moved back    at most 0 cm off
picture       place_mesh.png
""", ran.stderr
    # X first, then Z: (x, y, z) goes to (z, x, y).
    ran = place(tmp_path, WEDGE, "--from", "ft", "--to", "in", "--position", 0, 0, 0, "--rotate", 90, 0, 90,
                "--order", "ZYX")
    assert "box placed    (0, 0, 0) to (48, 12, 24) in\n" in ran.stdout


@pytest.mark.parametrize("mesh, options", [
    ("v 0 0 0\n", []), (WEDGE + "f 1 2 5\n", []), (WEDGE + "f 0 1 2\n", []), ("v a b c\n", []),
    (WEDGE, ["--position", "3e38", "3e38", "3e38"]), (WEDGE, ["--output", "nowhere/picture.png"])],
    ids=["no triangles", "no such point", "point 0", "no numbers", "too far", "no such folder"])
def test_refused(tmp_path, mesh, options):
    for ran in place(tmp_path, mesh, *options), run(tmp_path, "place_mesh.py", "nowhere.obj"):
        assert ran.returncode == 1 and ran.stdout == ""
        assert ran.stderr.startswith("place_mesh.py: ") and ran.stderr.count("\n") == 1
        assert not list(tmp_path.glob("*.png"))


def test_point_cloud_whatever_the_chunks(tmp_path):
    said = []
    for options in (["--workers", 2, "--chunk", 50000], ["--workers", 1, "--chunk", 1000000]):
        ran = run(tmp_path, "point_cloud.py", "--points", 200001, *options)
        assert ran.stdout.startswith("points        200001 in "), ran.stderr
        said.append(ran.stdout.split("\n", 1)[1])
    # The hills' square of 6000 feet by 600, turned about Y and moved.
    assert said[0].startswith("box           (-1273.74, -94.4399, -1246.64) to (1299.49, 88.4388, 1323.73) m\n"
                              "hidden        20089 points by the tower\ndigest ") and said[0] == said[1]
    for options, words in (([], "points.npy has the shape (200001, 3)"), (["--file", "."], ". can't be used"),
                           (["--points", 200001, "--scheduler", "nowhere"], "there is no scheduler at nowhere: ")):
        ran = run(tmp_path, "point_cloud.py", *options)
        assert ran.returncode == 1 and ran.stderr.startswith("point_cloud.py: " + words) and not ran.stdout
    assert "are 1 or more" in run(tmp_path, "point_cloud.py", "--workers", 0).stderr
