"""Every function by its description, some of them against NumPy, and what is refused."""
import os
import subprocess
import sys

import numpy as np
import pytest

import kxmaths5 as kx
from kxmaths5._arguments import Address, python_name

RANDOM = np.random.default_rng(5)
FUNCTIONS = kx._api["functions"]
WRITING = [each for each in FUNCTIONS if any(a["role"] != "in" for a in each["arguments"])]
TRIANGLE = kx.KXTriangle(((0, 0, 0, 0), (0, 1, 0, 0), (0, 2, 0, 0)), 0, (0, 0, 1, -1))
CORNERS = np.float32([[0, 0, 1], [4, 0, 1], [0, 4, 1]])


def numbers(*shape):
    return RANDOM.uniform(0.5, 4, shape).astype(np.float32)


def example(argument):
    if argument["by"] == "value":
        return RANDOM.integers(0, 6) if argument["type"] != "float" else RANDOM.uniform(0.5, 4)
    address = Address(argument, kx._classes)
    if address.shape is None:
        return TRIANGLE
    if address.indexed_by:
        return CORNERS
    return numbers(*((5, *address.shape) if address.is_array else address.shape))


def examples(function):
    counts = {each.get("count") for each in function["arguments"]}
    return {each["name"]: example(each) for each in function["arguments"]
            if each["name"] not in counts}


def call(function, values, share=None):
    """The bytes of what comes back for copies of the values, two of which may be one array."""
    given = {name: np.copy(value) if isinstance(value, np.ndarray) else value
             for name, value in values.items()}
    if share:
        given[share[1]] = given[share[0]].reshape(given[share[1]].shape)
    result = getattr(kx, function["name"])(
        **{python_name(name): value for name, value in given.items()})
    return [np.asarray(each).tobytes() for each in (result if isinstance(result, tuple) else [result])]


@pytest.mark.parametrize("function", FUNCTIONS, ids=lambda each: each["name"])
def test_outputs_made_and_given(function):
    roles = {each["name"]: each["role"] for each in function["arguments"]}
    given = {name: np.full_like(value, np.nan) if roles[name] == "out" else value
             for name, value in examples(function).items()}
    inputs = {name: value for name, value in given.items() if roles[name] != "out"}
    made = call(function, inputs)
    assert made == call(function, given)
    outputs = [each for each in roles.values() if each != "in"]
    assert len(made) == max(1, len(outputs) + (function["result"]["type"] != "void"))
    # What is out alone is written wholly or not at all.
    for output in made[len(made) - len(outputs):]:
        untouched = np.isnan(np.frombuffer(output, np.float32))
        assert untouched.all() or not untouched.any()


@pytest.mark.parametrize("function", WRITING, ids=lambda each: each["name"])
def test_sharings(function):
    arguments = {each["name"]: each for each in function["arguments"] if each["by"] == "address"}
    for name, written in arguments.items():
        for other, argument in arguments.items():
            values = examples(function)
            if (name == other or written["role"] == "in"
                    or np.size(values[name]) != np.size(values[other])):
                continue
            values[other] = values[name].reshape(np.shape(values[other]))
            if other not in written["may_be"]:
                with pytest.raises(ValueError, match="overlaps"):
                    call(function, values, (name, other))
            elif argument["role"] == "in":
                assert call(function, values, (name, other)) == call(function, values)
            else:
                call(function, values, (name, other))


def test_against_numpy():
    a, b, m, u, v, box = numbers(4, 4), numbers(4, 4), numbers(3, 3), numbers(3), numbers(3), numbers(2, 3)
    points, flat, homogeneous = numbers(9, 3), numbers(9, 2), numbers(9, 4)
    for got, wanted in (
            (kx.KXM4Mult(a, b), a @ b), (kx.KXM3Mult(m, m), m @ m), (kx.KXM4Add(a, b), a + b),
            (kx.KXM4Determinant(a), np.linalg.det(a)), (kx.KXM3Determinant(m), np.linalg.det(m)),
            (kx.KXM4Inverse(a)[1], np.linalg.inv(a)), (kx.KXM3Inverse(m)[1], np.linalg.inv(m)),
            (kx.KXM4Transpose(a), a.T), (kx.KXM4P3I1(a, u), a[:3, :3] @ u + a[:3, 3]),
            (kx.KXM4NP3I1(a, points), points @ a[:3, :3].T + a[:3, 3]),
            (kx.KXM4NP3I0(a, points), points @ a[:3, :3].T),
            (kx.KXM3NP2I1(m, flat), flat @ m[:2, :2].T + m[:2, 2]),
            (kx.KXM4NP4(a, homogeneous), homogeneous @ a.T),
            (kx.KXV3Length(u), np.linalg.norm(u)), (kx.KXV3Cross(u, v), np.cross(u, v)),
            (kx.KXV3Combine(u, v, 2, -3), 2 * u - 3 * v), (kx.KXBitCount(0xF0F0), 8),
            (kx.KXBoxMidPoint(box), box.mean(axis=0)), (kx.KXBoxDiagonal(box), box[1] - box[0]),
            (kx.KXP3ChangeNUnits(kx.KX_UNIT_FOOT, kx.KX_UNIT_INCH, points.copy()), points * 12),
            (kx.KXPointsToREA(u, v)[0], np.linalg.norm(v - u)),
            (kx.KXRayIxTriangle([[1, 1, 5], [0, 0, -2]], TRIANGLE, CORNERS)[1], [1, 1, 1])):
        np.testing.assert_allclose(got, wanted, rtol=1e-3)


def test_what_comes_back():
    box, v = np.float32([[0, 0, 0], [1, 1, 1]]), np.float32([3, 0, 4])
    assert kx.KXV3Scale(v, 10) is v and v.tolist() == [6, 0, 8]
    assert kx.KXPutPointInBox([2, 0, 0], box)[1] is box and box[1, 0] == 2
    assert kx.KXLineIxBox([[0, 9, 0], [1, 9, 0]], box, point=False) == 0
    assert np.isnan(kx.KXLineIxBox([[0, 9, 0], [1, 9, 0]], box)[1]).all()
    assert kx.KXM4Orientation(0, 0, 0, kx.KX_ORDER_XYZ, matrix=False, inverse=False) is None
    position = kx.KXPosition(1, 2, 3, 0.3, 0.4, 0.5)
    read, scale = kx.KXM4MatrixComponents(kx.KXM4Position(position, kx.KX_ORDER_YXZ)[0])
    assert abs(read.rotateY - position.rotateY) < 1e-6 and scale.shape == (3,)
    assert type(kx.KXChangeUnits(kx.KX_UNIT_FOOT, kx.KX_UNIT_INCH, 1)) is np.float32
    points = numbers(6, 3)
    kx.KXM4NP3I1(M, points[:3], out=points[3:])
    assert points[:3].tobytes() == points[3:].tobytes()
    assert kx.KXM4NP3I1(M, points[:0]).shape == (0, 3)


def read_only(array):
    array.flags.writeable = False
    return array


M, P = np.eye(4, dtype=np.float32), np.zeros((6, 3), np.float32)


@pytest.mark.parametrize("call, error, words", [
    (lambda: kx.KXM4P3I1(M, np.zeros(3)), TypeError, "float64"),
    (lambda: kx.KXM4P3I1(M, np.zeros(3, ">f4")), TypeError, ">f4"),
    (lambda: kx.KXM4P3I1(M, None), TypeError, "not made of numbers"),
    (lambda: kx.KXM4P3I1(M, [1, [2]]), ValueError, "p: "),
    (lambda: kx.KXM4P3I1(M, [1, 2]), ValueError, "shape"),
    (lambda: kx.KXM4NP3I1(M, P[0]), ValueError, "shape"),
    (lambda: kx.KXM4NP3I1(M, P[::2]), ValueError, "contiguous"),
    (lambda: kx.KXM4Determinant(np.asfortranarray(numbers(4, 4))), ValueError, "contiguous"),
    (lambda: kx.KXV3Length(np.frombuffer(bytes(13), np.float32, 3, 1)), ValueError, "contiguous"),
    (lambda: kx.KXM4NP3I1(M, P, out=read_only(P.copy())), ValueError, "read-only"),
    (lambda: kx.KXV3Scale(read_only(np.ones(3, np.float32)), 2), ValueError, "read-only"),
    (lambda: kx.KXM4NP3I1(M, P, out=P[:5].copy()), ValueError, "different lengths"),
    (lambda: kx.KXM4NP3I1(M, P[:5], out=P[1:]), ValueError, "without being the same"),
    (lambda: kx.KXM4P3I1(M, P[0], out=M[0, :3]), ValueError, "out overlaps m"),
    (lambda: kx.KXM4Inverse(M, out=[0] * 16), TypeError, "written to"),
    (lambda: kx.KXM4Inverse(M, out=False), ValueError, "left out"),
    (lambda: kx.KXM4Inverse(M, inverse=M), TypeError, "KXM4Inverse: "),
    (lambda: kx.KXChangeUnits(0, 10, 1.0), ValueError, "0 to 9"),
    (lambda: kx.KXBitCount(-1), ValueError, "v is -1"),
    (lambda: kx.KXBitCount(1.0), TypeError, "v: "),
    (lambda: kx.KXM4Scale(1, "2", 3), TypeError, "sy: "),
    (lambda: kx.KXIsValidBox(kx.KXV3()), TypeError, "float32 \\(2, 3\\)"),
    (lambda: kx.KXRayIxTriangle(P[:2], TRIANGLE, P[:2]), ValueError, "vertex 2"),
    (lambda: kx.KXRayIxTriangle(P[:2], [0, 1, 2], P), TypeError, "not a KXTriangle")])
def test_refused(call, error, words):
    with pytest.raises(error, match=words):
        call()


@pytest.mark.parametrize("path, words", [("missing.so", "as KXMATHS5_LIBRARY says"),
                                         ("libm.so.6", "has no KX")])
def test_no_library(path, words):
    run = subprocess.run([sys.executable, "-c", "import kxmaths5"], capture_output=True, text=True,
                         env=os.environ | {"KXMATHS5_LIBRARY": path}, check=False)
    assert run.returncode == 1
    assert "ImportError: " in run.stderr and words in run.stderr.strip().split("\n")[-1]
