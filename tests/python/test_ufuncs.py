"""Every function against plain C calls, whatever the shapes, strides, types and overlaps."""
import ctypes
import itertools
import json
import pathlib
import pickle
import threading
import time
import tracemalloc

import numpy as np
import pytest

import kxmaths5 as kx

API = json.loads((pathlib.Path(__file__).resolve().parents[2] / "api/kxmaths5.json").read_text("utf-8"))
FUNCTIONS = API["functions"]
NUMBERS = {"float": np.float32, "double": np.float64, "int32": np.int32, "uint32": np.uint32}
HIGHEST = {each["name"]: len(each["values"]) - 1 for each in API["enumerations"]}
VERTICES = 6
_library = ctypes.CDLL(str(next(pathlib.Path(kx.__file__).parent.glob("libkxmaths5*"))))
_results = {"double": ctypes.c_double, "int32": ctypes.c_int32, "uint32": ctypes.c_uint32, "void": None}


def python_name(name):
    return name + "_" if name in ("in", "from") else name


def core(argument, length=5):
    """The type and the shape of one of an argument's records."""
    if argument["type"] in NUMBERS:
        shape = ()
    elif argument["type"] in HIGHEST:
        return np.uint32, ()
    elif argument["type"] == "KXTriangle":
        return np.uint32, (17,)
    else:
        record = next(each for each in API["records"] if each["name"] == argument["type"])
        if "same_as" in record:
            return core(argument | {"type": record["same_as"]}, length)
        field = record["fields"][0]
        inner = core(field)[1]
        shape = tuple(field["shape"]) + inner if len(record["fields"]) == 1 else (len(record["fields"]), *inner)
        return np.float32, (length, *shape) if argument.get("count") else (
            (VERTICES, *shape) if argument.get("indexed_by") else shape)
    return NUMBERS[argument["type"]], (length, *shape) if argument.get("count") else shape


def arguments(function):
    """Those of a function that Python has: a count is an array's own length."""
    counts = {each.get("count") for each in function["arguments"]}
    return [each for each in function["arguments"] if each["name"] not in counts]


def inputs(function):
    return [each for each in arguments(function) if each["role"] != "out"]


def call(function, given):
    """What one call of the function in C gives back, through ctypes: the result, then what it has written."""
    places, passed = {}, []
    for each in arguments(function):
        number, shape = core(each)
        places[each["name"]] = np.array(given[each["name"]], number) if each["role"] != "out" \
            else np.full(shape, np.nan, number)
    for each in function["arguments"]:
        if each["name"] not in places:
            passed.append(ctypes.c_uint32(next(len(places[other["name"]]) for other in arguments(function)
                                               if other.get("count") == each["name"])))
        elif each["by"] == "address":
            passed.append(ctypes.c_void_p(places[each["name"]].ctypes.data))
        else:
            value = places[each["name"]]
            passed.append(ctypes.c_float(value) if value.dtype == np.float32 else ctypes.c_uint32(value))
    c_function = getattr(_library, function["name"])
    c_function.restype = _results[function["result"]["type"]]
    result = c_function(*passed)
    outputs = [places[each["name"]] for each in arguments(function) if "out" in each["role"]]
    return outputs if result is None else [NUMBERS[function["result"]["type"]](result), *outputs]


def call_all(function, given, shape):
    """The outputs of call for each element of the broadcast shape."""
    wide = {each["name"]: np.broadcast_to(given[each["name"]], shape + core(each)[1])
            for each in inputs(function)}
    rows = [call(function, {name: value[index] for name, value in wide.items()})
            for index in itertools.product(*map(range, shape))]
    return [np.array(column).reshape(shape + np.shape(column[0])) for column in zip(*rows)]


SHAPES = [((), (), (), ()), ((7,), (7,), (7,), (7,)), ((3, 1), (4,), (1, 4), (3, 4)), ((600,), (), (1,), (600,)),
          ((0,), (0,), (0,), (0,)), ((), (5,), (), (5,)), ((2, 0, 3), (), (1,), ())]


def random(argument, shape, generator):
    number, record = core(argument)
    if argument["type"] == "KXTriangle":
        triangle = np.zeros(shape, kx.KXTriangle)
        triangle["corner"]["vertex"] = generator.integers(0, VERTICES, (*shape, 3))
        triangle["plane"]["c"] = 1
        triangle["plane"]["d"] = -generator.uniform(0, 2, shape)
        return triangle[..., None].view(np.uint32)
    if number == np.uint32:
        highest = HIGHEST.get(argument["type"], 2**32 - 1)
        return generator.integers(0, highest, shape, endpoint=True, dtype=np.uint64).astype(np.uint32)
    values = generator.uniform(-4, 4, (*shape, *record)).astype(np.float32)
    if record == (4, 4) and generator.random() < 0.7:
        values[..., 3, :] = [0, 0, 0, 1]
    if record == (2, 3) and argument["type"] == "KXBox":
        values.sort(axis=-2)
    return values


def strided(array, generator):
    """The same numbers in memory that is not packed: reversed, transposed or with gaps."""
    kind = generator.integers(0, 4)
    if kind == 0 or array.ndim == 0:
        return array
    if kind == 1:
        return np.asfortranarray(array)
    if kind == 2:
        return np.ascontiguousarray(array[::-1])[::-1]
    wide = np.zeros((*array.shape[:-1], 2 * array.shape[-1]), array.dtype)
    wide[..., ::2] = array
    return wide[..., ::2]


def as_list(results):
    """Results without their names, as numbers."""
    results = results if isinstance(results, tuple) else (results,)
    return [np.asarray(each)[..., None].view(np.float32) if np.asarray(each).dtype.names else np.asarray(each)
            for each in results]


def same_bits(got, wanted):
    assert len(got) == len(wanted)
    for one, other in zip(got, wanted):
        assert one.dtype == other.dtype and one.shape == other.shape
        assert np.ascontiguousarray(one).tobytes() == np.ascontiguousarray(other).tobytes()


@pytest.mark.parametrize("function", FUNCTIONS, ids=lambda each: each["name"])
def test_against_c(function):
    generator = np.random.default_rng([ord(letter) for letter in function["name"]])
    ufunc = getattr(kx, function["name"])
    taken = inputs(function)
    for shapes in SHAPES:
        given = {each["name"]: random(each, shapes[i % 4], generator) for i, each in enumerate(taken)}
        shape = np.broadcast_shapes((), *(shapes[i % 4] for i in range(len(taken))))
        if function["name"] == "KXM43Mult":  # Its output is an input too, and is written in place.
            given["out"] = np.broadcast_to(given["out"], (*shape, 4, 4)).copy()
        wanted = call_all(function, given, shape)
        if 0 in shape:
            wanted = [np.empty(each.shape, each.dtype) for each in as_list(
                ufunc(*(random(each, shape, generator) for each in taken)))]
        values = [strided(given[each["name"]], generator) for each in taken]
        got = as_list(ufunc(**{python_name(each["name"]): value for each, value in zip(taken, values)}))
        same_bits(got, wanted)
        if function["name"] == "KXM43Mult":
            continue
        same_bits(as_list(ufunc(*(value.item() if np.ndim(value) == 0 else value for value in values))), wanted)
        # Wider types and lists are converted.
        wider = [value.astype(np.float64) if value.dtype == np.float32 else value for value in values]
        same_bits(as_list(ufunc(*wider)), wanted)
        # Given outputs are written: packed ones, and ones with gaps.
        outputs = [strided(np.zeros(each.shape, each.dtype), generator) for each in wanted]
        ufunc(*values, out=tuple(outputs))
        same_bits(outputs, wanted)


@pytest.mark.parametrize("function", FUNCTIONS, ids=lambda each: each["name"])
def test_overlaps(function):
    """An output that is an input, wholly or in part, gets what an output of its own would."""
    generator = np.random.default_rng(9)
    ufunc, taken = getattr(kx, function["name"]), inputs(function)
    outputs = [each for each in arguments(function) if "out" in each["role"]]
    for source in taken:
        for output in outputs:
            if core(source) != core(output) or function["name"] == "KXM43Mult":
                continue
            wanted = None
            for shift in (None, 0, 1):
                generator = np.random.default_rng(9)
                given = [random(each, (9,), generator) for each in taken]
                memory = np.zeros((10, *core(source)[1]), core(source)[0])
                memory[:9] = given[taken.index(source)]
                given[taken.index(source)] = memory[:9]
                where = {} if shift is None else {
                    "out": tuple(memory[shift:shift + 9] if each is output else None for each in
                                 [None] * (function["result"]["type"] != "void") + outputs)}
                got = [each.copy() for each in as_list(ufunc(*given, **where))]
                wanted = wanted or got
                same_bits(got, wanted)


def test_structured_arrays():
    places = np.zeros(3, kx.KXPosition)
    places["rotateY"] = [0.1, 0.2, 0.3]
    matrices, inverses = kx.KXM4Position(places, kx.KX_ORDER_YXZ)
    assert matrices.shape == inverses.shape == (3, 4, 4)
    read, scale = kx.KXM4MatrixComponents(matrices)
    np.testing.assert_allclose(read.rotateY, [0.1, 0.2, 0.3], rtol=1e-6)
    assert scale.shape == (3, 3)
    one, _ = kx.KXM4MatrixComponents(matrices[1])
    assert abs(one.rotateY - 0.2) < 1e-6
    np.testing.assert_array_equal(kx.KXM4Position(one, 2)[0], kx.KXM4Position(
        [one.x, one.y, one.z, one.rotateX, one.rotateY, one.rotateZ], 2)[0])
    triangle = kx.KXTriangle()
    triangle.corner["vertex"] = [0, 1, 2]
    triangle.plane = (0, 0, 1, -1)
    vertices = np.float32([[0, 0, 1], [4, 0, 1], [0, 4, 1]])
    hits, points = kx.KXRayIxTriangle([[[1, 1, 5], [0, 0, -1]], [[9, 1, 5], [0, 0, -1]]], triangle, vertices)
    assert hits.tolist() == [1, 0] and points[0].tolist() == [1, 1, 1]

    # Fields of other types, byte orders and places mean the same numbers.
    swapped = np.zeros(3, [("rotateY", ">f8"), ("x", "i2"), *((name, "f4") for name in ("y", "z", "rotateX", "rotateZ"))])
    swapped["rotateY"] = places["rotateY"]
    np.testing.assert_array_equal(kx.KXM4Position(swapped, kx.KX_ORDER_YXZ)[0], matrices)
    mixed = np.array([(0, 4, 1, 2)], [("x", "<i2"), ("y", ">f8"), ("colour", "u1"), ("z", "<f4")])[["x", "y", "z"]]
    assert kx.KXM4P3I1(M, mixed).tolist() == [[0, 4, 2]]
    other = np.broadcast_to(triangle, 1).byteswap().newbyteorder()
    assert kx.KXRayIxTriangle([[1, 1, 5], [0, 0, -1]], other, vertices)[0].tolist() == [1]
    given = np.zeros((3, 2), kx.KXPosition)[:, 0]
    assert kx.KXM4MatrixComponents(matrices, position=given)[0] is given and given.tolist() == read.tolist()


def test_what_is_left_out_and_not_written():
    line, box = [[[0, 9, 0], [1, 9, 0]], [[-1, -1, -1], [1, 1, 1]]], [[0, 0, 0], [1, 1, 1]]
    verdicts, points = kx.KXLineIxBox(line, box)
    assert verdicts.tolist() == [0, 1] and verdicts.dtype == np.int32
    assert np.isnan(points[0]).all() and points[1].tolist() == [0, 0, 0]
    kept = np.float32(line)
    assert kx.KXLineIxBox(kept, box, point=False).tolist() == [0, 1] and (kept == line).all()
    assert kx.KXM4Orientation(0, 0, 0, 0, matrix=False, inverse=False) is None
    inverse = kx.KXM4Orientation(0.1, 0.2, 0.3, 0, matrix=False)
    np.testing.assert_array_equal(inverse, kx.KXM4Orientation(0.1, 0.2, 0.3, 0)[1])
    given = np.zeros((4, 4), np.float32)
    assert kx.KXM4Orientation(0.1, 0.2, 0.3, 0, matrix=False, inverse=given) is given
    assert len(kx.KXM3MatrixComponents(M[:3, :3], angle=False, scaleX=False)) == 2
    elevation = kx.KXPointsToREA([0, 0, 0], [3, 0, 4])[1]
    assert elevation == 0 and type(elevation) is np.float32
    masked = kx.KXV3Length([[3, 0, 4], [1, 0, 0]], where=[True, False], out=np.full(2, -1.0))
    assert masked.tolist() == [5, -1]
    statuses, inverses = kx.KXM4Inverse(np.stack([M, 2 * M]), where=[False, True])
    assert statuses.tolist() == [0, 0] and np.isnan(inverses[0]).all() and inverses[1, 0, 0] == 0.5
    assert kx.KXV3Cross([1, 0, 0], [0, 1, 0], dtype=np.float32).dtype == np.float32
    columns = np.arange(12, dtype=np.float32).reshape(3, 4)
    np.testing.assert_array_equal(kx.KXV3Length(columns, axes=[(0,), ()]), kx.KXV3Length(columns.T))


def read_only(array):
    array.flags.writeable = False
    return array


M, P = np.eye(4, dtype=np.float32), np.zeros((6, 3), np.float32)
TRIANGLE = kx.KXTriangle(((0, 0, 0, 0), (0, 1, 0, 0), (0, 2, 0, 0)), 0, (0, 0, 1, -1))
TOP_BIT = kx.KXTriangle(((0, 0, 0, 0), (0, 1, 0, 0), [0, 2**31, 0, 0]), 0, plane=[0, 0, 1, -1])
SWAPPED = np.zeros((), [(name, ">f4") for name in kx.KXPosition.dtype.names])


@pytest.mark.parametrize("call, error, words", [
    (lambda: kx.KXM4P3I1(M, None), TypeError, "p is made of object"),
    (lambda: kx.KXM4P3I1(M, [1, [2]]), ValueError, "p is not an array"),
    (lambda: kx.KXM4P3I1(M, [1j, 2, 3]), TypeError, "p is made of complex"),
    (lambda: kx.KXM4P3I1(M, "abc"), TypeError, "p is made of"),
    (lambda: kx.KXM4P3I1(M, [1, 2]), ValueError, r"p has the shape \(2,\)"),
    (lambda: kx.KXM4P3I1(M[:3], P), ValueError, r"m has the shape \(3, 4\)"),
    (lambda: kx.KXM4NP3I1(M, P[0]), ValueError, "in_ has the shape"),
    (lambda: kx.KXV3Cross(P[:5], P), ValueError, r"a \(5, 3\), b \(6, 3\)"),
    (lambda: kx.KXM4NP3I1(M, P, out=read_only(P.copy())), ValueError, "out is read-only"),
    (lambda: kx.KXM4NP3I1(M, P, out=P[:5].copy()), ValueError, "do not fit"),
    (lambda: kx.KXM4NP3I1(M, P, out=np.zeros((7, 3), np.float32)), ValueError, "do not fit"),
    (lambda: kx.KXV3Cross(P, P, out=np.zeros((2, 6, 2), np.float32)), ValueError, "out has the shape"),
    (lambda: kx.KXM4Inverse(M, out=[0] * 16), TypeError, "not an array to be written to"),
    (lambda: kx.KXM4Inverse(M, out=M.astype(int)), TypeError, "out is made of int64, not of floats"),
    (lambda: kx.KXM4MatrixComponents(M, position=[0] * 6), TypeError, "position is a list"),
    (lambda: kx.KXPlaneEquation(P, P, P, out=(None, None, None)), ValueError, "KXPlaneEquation"),
    (lambda: kx.KXLineIxBox(P[:2], P[:2], point=P[0].astype(bool)), TypeError, "point"),
    (lambda: kx.KXM4Inverse(M, inverse=M), TypeError, "KXM4Inverse"),
    (lambda: kx.KXM4Inverse(), TypeError, "KXM4Inverse"),
    (lambda: kx.KXChangeUnits(0, 10, 1.0), ValueError, "to is 10, not in 0 to 9"),
    (lambda: kx.KXChangeUnits([0, -1], 9, 1.0), ValueError, "from_ is -1"),
    (lambda: kx.KXM4Orientation(0, 0, 0, 6), ValueError, "order is 6, not in 0 to 5"),
    (lambda: kx.KXBitCount(-1), ValueError, "v is -1"),
    (lambda: kx.KXBitCount(2**32), ValueError, "v is 4294967296"),
    (lambda: kx.KXBitCount(1.0), TypeError, "v is made of float64"),
    (lambda: kx.KXM4Scale(1, "2", 3), TypeError, "sy is made of"),
    (lambda: kx.KXRayIxTriangle(P[:2], TRIANGLE, P[:2]), ValueError, "triangle has the vertex 2"),
    (lambda: kx.KXRayIxTriangle(P[:2], TOP_BIT, P), ValueError, "triangle has the vertex 2147483648"),
    (lambda: kx.Mesh(P, M[:3, :3]), TypeError, "faces is made of float32"),
    (lambda: kx.Mesh([["a"] * 3] * 3, [[0, 1, 2]]), TypeError, "vertices is not an array of numbers"),
    (lambda: kx.KXM4MatrixComponents(M, position=SWAPPED), TypeError, "can't be written to"),
    (lambda: kx.triangle(P, 0, 1, [0, 6]), ValueError, "third has the vertex 6"),
    (lambda: kx.KXM4Position(TRIANGLE, 0), TypeError, "position is made of"),
    (lambda: kx.KXM4Scale(10**400, 1, 1), TypeError, "sx is made of object"),
    (lambda: kx.KXRayIxTriangle(P[:2], [0, 1, 2], P), TypeError, "of the type KXTriangle"),
    (lambda: kx.KXV3Cross(P, P, casting="no", out=P.astype(float)), TypeError, "KXV3Cross"),
    (lambda: kx.KXV3Length(np.ma.masked_equal(P, 0)), TypeError, "v is a masked array"),
    (lambda: kx.KXV3Length(P, where=[True, False]), ValueError, r"v \(6, 3\), where \(2,\)"),
    (lambda: kx.KXV3Length(P, where=P[0] == 0, out=read_only(np.zeros(6))), ValueError, "result is read-only"),
    (lambda: kx.KXM4P3I1(M, np.zeros(2, [("x", "f4"), ("y", "f4")])), TypeError, "p is made of"),
    (lambda: kx.KXM4P3I1(M, P[0], dtype=float), TypeError, "out is always float32, not float64"),
    (lambda: kx.KXPosition(1, 2, 3, 4, 5, 6, 7), TypeError, "6 fields"),
    (lambda: kx.KXPosition(1, x=2), TypeError, "given twice")])
def test_refused(call, error, words):
    with pytest.raises(error, match=words):
        call()


def test_what_help_says():
    assert kx.__version__ == API["version"]
    assert [getattr(kx, each["name"]) for each in API["constants"]] == [each["value"] for each in API["constants"]]
    for function in FUNCTIONS:
        notes = [text for label, text in function["notes"].items() if label not in ("Null", "Aliasing")]
        texts = [each["text"].removesuffix("; or null") for each in arguments(function)]
        said = " ".join(getattr(kx, function["name"]).__doc__.split())
        missing = [text for text in [function["brief"], *texts, *notes] if " ".join(text.split()) not in said]
        assert not missing, function["name"]


def test_pickles():
    """Dask sends functions and what they are called with to its workers."""
    assert pickle.loads(pickle.dumps(kx.KXM4Inverse)) is kx.KXM4Inverse
    place = kx.KXPosition(1, 2, 3)
    assert pickle.loads(pickle.dumps(place)) == place
    mesh = kx.Mesh([[0, 0, 0], [1, 0, 0], [0, 1, 0]], [[0, 1, 2]])
    assert mesh.meets([[0.2, 0.2, 5], [0, 0, -1]])  # From here on it has a tree.
    for same in (mesh, pickle.loads(pickle.dumps(mesh)), pickle.loads(pickle.dumps(mesh))):
        assert same.meets([[0.2, 0.2, 5], [0, 0, -1]])


def test_memory_is_given_back():
    mesh, rays = kx.Mesh(np.eye(3), [[0, 1, 2]]), np.ones((9, 2, 3))

    def kept():
        for _ in range(3000):  # The interpreter itself keeps up to 2000 free tuples.
            kx.KXRayIxTriangle(P[:2], TRIANGLE, P)
            kx.KXM4MatrixComponents(M)
            mesh.nearest(rays), mesh.blocks(rays)
        return tracemalloc.get_traced_memory()[0]
    tracemalloc.start()
    before = kept()
    assert kept() < before + 5000
    tracemalloc.stop()


def test_top_bits():
    words = np.array([0x80000000, 0xFFFFFFFF, 0x80000001], np.uint32)
    assert kx.KXMSB(words).tolist() == [31, 31, 31] and kx.KXBitCount(words).tolist() == [1, 32, 2]
    assert kx.KXLSB(0x80000000) == 31 and kx.KXBitCount(words.astype(np.int64)).tolist() == [1, 32, 2]
    # Halfway between two singles, and a little more than a double holds.
    assert kx.KXM4Translate(2**60 + 2**36 + 1, 0, 0)[0, 3] == 2**60 + 2**37
    # A clock that has run over.
    assert kx.KXDiffTime(5, 2**32 - 5) == pytest.approx(kx.KXDiffTime(15, 5))


ROWS = np.random.default_rng(1).random((1000000, 16), np.float32)
MESH = kx.Mesh([[0, 0, 0], [1, 0, 0], [0, 1, 0]], [[0, 1, 2]] * 300)
RAYS = np.float32([[[0.8, 0.8, 1], [0, 0, -1]]] * 20000)  # Into the box, and past the triangles in it.


@pytest.mark.parametrize("work", [
    lambda: kx.KXM4Inverse(ROWS.reshape(-1, 4, 4)), lambda: MESH.nearest(RAYS),
    lambda: MESH.meets(RAYS), lambda: kx.Mesh(ROWS[:30000, :3], np.arange(30000).reshape(-1, 3)).meets(RAYS[:1])])
def test_interpreter_lock_is_released(work):
    """Another thread runs while a loop does."""
    ticks, done = [], threading.Event()

    def tick():
        while not done.is_set():
            ticks.append(time.perf_counter())
            time.sleep(0)
    thread = threading.Thread(target=tick)
    thread.start()
    while not ticks:
        time.sleep(0)
    started = time.perf_counter()
    work()
    ended = time.perf_counter()
    done.set()
    thread.join()
    inside = [started, *(each for each in ticks if started < each < ended), ended]
    assert np.diff(inside).max() < (ended - started) / 2
