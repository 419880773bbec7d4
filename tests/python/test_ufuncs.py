"""Every function against plain C calls, whatever the shapes, strides, types and overlaps."""
import numpy as np
import pytest

import kxmaths5 as kx
from reference import FUNCTIONS, HIGHEST, VERTICES, arguments, call_all, core, inputs, python_name

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


def test_what_is_left_out_and_not_written():
    line, box = [[[0, 9, 0], [1, 9, 0]], [[-1, -1, -1], [1, 1, 1]]], [[0, 0, 0], [1, 1, 1]]
    verdicts, points = kx.KXLineIxBox(line, box)
    assert verdicts.tolist() == [0, 1] and verdicts.dtype == np.int32
    assert np.isnan(points[0]).all() and points[1].tolist() == [0, 0, 0]
    assert kx.KXLineIxBox(line, box, point=False).tolist() == [0, 1]
    assert kx.KXM4Orientation(0, 0, 0, 0, matrix=False, inverse=False) is None
    inverse = kx.KXM4Orientation(0.1, 0.2, 0.3, 0, matrix=False)
    np.testing.assert_array_equal(inverse, kx.KXM4Orientation(0.1, 0.2, 0.3, 0)[1])
    given = np.zeros((4, 4), np.float32)
    assert kx.KXM4Orientation(0.1, 0.2, 0.3, 0, matrix=False, inverse=given) is given
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
    (lambda: kx.KXM4Inverse(M, out=M.astype(int)), TypeError, "out is an array of int64"),
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
    (lambda: kx.KXRayIxTriangle(P[:2], [0, 1, 2], P), TypeError, "of the type KXTriangle"),
    (lambda: kx.KXV3Cross(P, P, dtype=np.float64), TypeError, "always float32"),
    (lambda: kx.KXV3Cross(P, P, casting="no", out=P.astype(float)), TypeError, "KXV3Cross"),
    (lambda: kx.KXPosition(1, 2, 3, 4, 5, 6, 7), TypeError, "6 fields"),
    (lambda: kx.KXPosition(1, x=2), TypeError, "given twice")])
def test_refused(call, error, words):
    with pytest.raises(error, match=words):
        call()


def test_top_bits():
    words = np.array([0x80000000, 0xFFFFFFFF, 0x80000001], np.uint32)
    assert kx.KXMSB(words).tolist() == [31, 31, 31] and kx.KXBitCount(words).tolist() == [1, 32, 2]
    assert kx.KXLSB(0x80000000) == 31 and kx.KXBitCount(words.astype(np.int64)).tolist() == [1, 32, 2]
    # A clock that has run over.
    assert kx.KXDiffTime(5, 2**32 - 5) == pytest.approx(kx.KXDiffTime(15, 5))


def test_interpreter_lock_is_released():
    """Another thread runs while a loop does."""
    import threading
    import time
    many, ticks, done = np.random.default_rng(1).random((400000, 4, 4), np.float32), [], threading.Event()

    def tick():
        while not done.is_set():
            ticks.append(time.perf_counter())
            time.sleep(0)
    thread = threading.Thread(target=tick)
    thread.start()
    while not ticks:
        time.sleep(0)
    started = time.perf_counter()
    kx.KXM4Inverse(many)
    ended = time.perf_counter()
    done.set()
    thread.join()
    inside = [each for each in ticks if started < each < ended]
    assert len(inside) > 20
