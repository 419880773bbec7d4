"""What is measured: the inputs that a function is given, the true values by its definition, and what is compared.

In all arrays the inputs are the last dimension; records are in front of it.
"""
import itertools
from typing import Any, Callable, NamedTuple

import kxmaths5
import numpy as np
from numpy.lib.recfunctions import structured_to_unstructured

from inputs import Random, affine, identity, product, single

PI = np.arctan2(np.longdouble(0), np.longdouble(-1))
# Near a quarter turn an arcsine has half of the bits of its operand; up to here it has most.
CLEAR_OF_A_QUARTER_TURN = 1.4
# What two edges, or a path and a normal, may have in common: sines and cosines below are refused.
LEAST_SINE = 0.1

ITSELF = "itself"
DOUBLE = True

# Why a function needs no measurement.
UNMEASURED = {
    "does what a measured function does, with the same bits":
        "KXM3NP2I1 KXM4NP3I0 KXM4NP3I1 KXM4NP4 KXTransformLine KXP3ChangeUnits KXP4ChangeUnits KXBoxChangeUnits "
        "KXPlaneChangeUnits KXM4ChangeUnits KXP3ChangeNUnits KXP4ChangeNUnits KXPlaneChangeNUnits",
    "one rounding: half an ulp, and 2^-29 of one":
        "KXV3Cross KXV3Combine KXM3P2I0 KXM3NP2I0 KXM4Add KXM3Add KXBoxMidPoint KXBoxDiagonal",
    "nothing is rounded":
        "KXM4Unit KXM3Unit KXM4Transpose KXM3Transpose KXM4Copy KXM3Copy KXM4Scale KXM4Translate KXM4RotateX2 "
        "KXM4RotateY2 KXM4RotateZ2 KXM4ShearXY2 KXM4ShearXZ2 KXM4ShearYZ2 KXM3Scale KXM3Translate KXM3Rotate2 "
        "KXPutPointInBox KXCombineBoxes",
    "counts, bits and verdicts":
        "KXBitCount KXLSB KXMSB KXM4IsUnit KXM3IsUnit KXM4IsOrthogonal KXIsValidBox",
}


class Result(NamedTuple):
    name: str
    unit: str  # Of which value an ulp is meant.
    is_double: bool = False


class Experiment(NamedTuple):
    function: str
    inputs: str
    results: list[Result]
    # Draws inputs, calls the function and compares: gives the arguments, the errors of each result and, if not all
    # inputs are, which of them are those meant; others are drawn in place of the rest.
    run: Callable[..., tuple[list[Any], list[Any]] | tuple[list[Any], list[Any], Any]]
    parameters: tuple[Any, ...]


EXPERIMENTS: list[Experiment] = []


def measures(results, *variants):
    """Of a function that runs them: experiments with the same results. The variants are names of the library's
    function and of its inputs, and what else the one that runs them is given after a Random and the function."""
    def add(run):
        for function, inputs, *parameters in variants:
            called = library(function.split(",")[0])
            EXPERIMENTS.append(Experiment(function, inputs, [Result(*each) for each in results], run,
                                          (called, *parameters)))
        return run
    return add


def library(name):
    """The library's function, for arrays whose inputs are the last dimension."""
    def inputs_last(result):
        return np.moveaxis(structured_to_unstructured(result) if result.dtype.names else result, 0, -1)

    def call(*arguments):
        results = getattr(kxmaths5, name)(*(np.moveaxis(each, -1, 0) for each in arguments))
        return [inputs_last(each) for each in results] if isinstance(results, tuple) else inputs_last(results)
    return call


def wide(numbers):
    """In these the true values are worked out."""
    return np.asarray(numbers).astype(np.longdouble)


def dot(a, b):
    return (a * b).sum(0)


def length(v):
    return np.sqrt(dot(v, v))


def cross(a, b):
    return np.cross(a, b, axis=0)


def largest(elements):
    """The largest magnitude of each input."""
    return abs(elements).reshape(-1, elements.shape[-1]).max(0)


def largest_in_rows(matrix):
    return abs(matrix).max(1, keepdims=True)


def determinant(m):
    if len(m) == 1:
        return m[0, 0]
    return sum((-1)**c * m[0, c] * determinant(without(m, 0, c)) for c in range(len(m)))


def without(m, row, column):
    places = np.arange(len(m))
    return m[np.ix_(places != row, places != column)]


def inverse(m):
    places = range(len(m))
    adjugate = np.array([[(-1)**(r + c) * determinant(without(m, c, r)) for c in places] for r in places])
    return adjugate / dot(m[0], adjugate[:, 0])


def rotation_about(axis, angle):
    m = identity(3, len(angle), np.longdouble)
    j, k = (axis + 1) % 3, (axis + 2) % 3
    m[j, j] = m[k, k] = np.cos(angle)
    m[k, j] = np.sin(angle)
    m[j, k] = -m[k, j]
    return m


def error(got, wanted, unit=None):
    """The largest of all elements' errors, in ulp of a single at `unit`, which is the true value if not given."""
    _, exponent = np.frexp(wanted if unit is None else unit)
    ulp = np.ldexp(1.0, np.maximum(exponent - 24, -149))
    errors = (abs(wide(got) - wanted) / ulp).astype(float)
    # A NaN would be above nothing.
    return largest(np.where(np.isnan(errors), np.inf, errors))


def angle_error(got, wanted):
    """By the ulp of 1; pi and -pi are one angle."""
    difference = wide(got) - wanted
    return error(difference - 2 * PI * np.rint(difference / (2 * PI)), 0, 1)


# ---- Vectors, scalars and length units

ANY_VECTOR = "coordinates ±2^[-16, 16)"


@measures([("length", ITSELF, DOUBLE)], ("KXV3Length", ANY_VECTOR))
def measure_length(random, function):
    v = random.spread(-16, 16, 3)
    return [v], [error(function(v), length(wide(v)))]


@measures([("x, y, z", ITSELF), ("length", ITSELF, DOUBLE)], ("KXV3Normalise", ANY_VECTOR))
def normalise(random, function):
    v = random.spread(-16, 16, 3)
    returned, out = function(v)
    wanted = length(wide(v))
    return [v], [error(out, wide(v) / wanted), error(returned, wanted)]


@measures([("x, y, z", ITSELF)], ("KXV3Scale", "coordinates and length ±2^[-16, 16)"))
def scale(random, function):
    v, wanted = random.spread(-16, 16, 3), random.spread(-16, 16)
    return [v, wanted], [error(function(v, wanted), wide(v) * (wide(wanted) / length(wide(v))))]


@measures([("x, z", ITSELF)], ("KXV3Perpendicular", ANY_VECTOR))
def perpendicular(random, function):
    v = random.spread(-16, 16, 3)
    x, _, z = wide(v)
    turned = np.array([-z, 0 * x, x])
    return [v], [error(function(v), turned / length(turned))]


@measures([("value", "the larger of y0, y1", DOUBLE)], ("KXInterpolate", "x0 < x < x1 and y0, y1 in [-1000, 1000]"))
def interpolate(random, function):
    x0 = random.uniform(1000)
    x1 = random.between(x0, 1000)
    x = random.between(x0, x1)
    given = [x0, random.uniform(1000), x1, random.uniform(1000), x]
    x0, y0, x1, y1, x = map(wide, given)
    wanted = (x - x0) * (y1 - y0) / (x1 - x0) + y0
    return given, [error(function(*given), wanted, np.maximum(abs(y0), abs(y1)))], (x0 < x) & (x < x1)


@measures([("difference / 1000", ITSELF, DOUBLE)], ("KXDiffTime", "any words"))
def difference_of_ticks(random, function):
    later, earlier = random.word().astype(np.uint32), random.word().astype(np.uint32)
    return [later, earlier], [error(function(later, earlier), wide((later - earlier).view(np.int32)) / 1000)]


@measures([("length by the units' definitions", ITSELF)], ("KXChangeUnits", "units 1 to 9, value ±2^[-16, 16)"))
def change_units(random, function):
    # In tenths of a millimetre, all but the millimetre's own of which are whole.
    sizes = wide([0, 10, 100, 10000, 10000000, 254, 3048, 9144, 16093440, 18520000])
    unit, to, value = 1 + random.below(9), 1 + random.below(9), random.spread(-16, 16)
    wanted = wide(value) * sizes[unit] / sizes[to]
    return [unit, to, value], [error(function(unit, to, value), wanted)]


# ---- Determinants, products, matrices applied to points, and inversion

ELEMENTS = "elements in [-1000, 1000]"
ELEMENTS_AND_COORDINATES = "elements and coordinates in [-1000, 1000]"
PLACEMENT = "rotation, scales ±2^[-4, 4), translation in [-1000, 1000]"
ROW = "the largest element of its row"


@measures([("determinant", "the product of the rows' lengths", DOUBLE)],
          ("KXM4Determinant", ELEMENTS, 4), ("KXM3Determinant", ELEMENTS, 3))
def measure_determinant(random, function, size):
    m = random.uniform(1000, size, size)
    # By Hadamard no determinant of these rows exceeds it.
    unit = np.prod([length(row) for row in wide(m)], axis=0)
    return [m], [error(function(m), determinant(wide(m)), unit)]


@measures([("elements", ITSELF)], ("KXM4Mult", ELEMENTS, 4), ("KXM3Mult", ELEMENTS, 3))
def multiply(random, function, size):
    a, b = random.uniform(1000, size, size), random.uniform(1000, size, size)
    return [a, b], [error(function(a, b), product(wide(a), wide(b)))]


@measures([("block", ITSELF)], ("KXM43Mult", ELEMENTS))
def multiply_blocks(random, function):
    a, b = random.uniform(1000, 4, 4), random.uniform(1000, 4, 4)
    return [a, b], [error(function(a, b, np.zeros_like(a))[:3, :3], product(wide(a[:3, :3]), wide(b[:3, :3])))]


@measures([("x, y, z", ITSELF)],
          ("KXM4P3I0", ELEMENTS_AND_COORDINATES, 4, 0),
          ("KXM4P3I1", ELEMENTS_AND_COORDINATES, 4, 1))
@measures([("x, y", ITSELF)], ("KXM3P2I1", ELEMENTS_AND_COORDINATES, 3, 1))
def transform_point(random, function, size, last):
    m, p = random.uniform(1000, size, size), random.uniform(1000, size - 1)
    wanted = product(wide(m[:-1, :-1]), wide(p)) + wide(m[:-1, -1]) * last
    return [m, p], [error(function(m, p), wanted)]


@measures([("x, y, z, w", ITSELF)], ("KXM4P4", ELEMENTS_AND_COORDINATES))
def transform_homogeneous(random, function):
    m, p = random.uniform(1000, 4, 4), random.uniform(1000, 4)
    return [m, p], [error(function(m, p), product(wide(m), wide(p)))]


@measures([("block", ROW), ("translation", "the largest product in its sum")],
          ("KXM4Inverse, affine", PLACEMENT, Random.scaled_rotation),
          ("KXM4Inverse, affine", "blocks of condition 64 at most, translation in [-1000, 1000]",
           Random.conditioned_block))
def invert_affine(random, function, draw_block):
    m = affine(draw_block(random), random.uniform(1000, 3))
    status, out = function(m)
    wanted, t = inverse(wide(m[:3, :3])), wide(m[:3, 3])
    return [m], [error(out[:3, :3], wanted, largest_in_rows(wanted)),
                 error(out[:3, 3], -product(wanted, t), abs(wanted * t).max(1))], status == 0


@measures([("elements", ROW)],
          ("KXM3Inverse", PLACEMENT, Random.placement_in_plane, largest_in_rows),
          ("KXM3Inverse", "any matrix of condition 64 at most",
           lambda random: single(random.conditioned_block()), largest_in_rows))
@measures([("elements", "the largest element of all")],
          ("KXM4Inverse, general", "unit matrix, each element ±0.25", Random.near_unit, largest),
          ("KXM4Inverse, general", "any matrix of condition 64 at most", Random.conditioned_matrix,
           largest))
def invert(random, function, draw, unit):
    m = draw(random)
    status, out = function(m)
    wanted = inverse(wide(m))
    return [m], [error(out, wanted, unit(wanted))], status == 0


# ---- Orientation, position, the viewing matrix, and quaternions

def rotation_in_order(angles, order):
    turns = [rotation_about(axis, angle) for axis, angle in enumerate(angles)]
    # The orders are numbered as permutations are.
    return np.choose(order, [product(a, product(b, c)) for a, b, c in itertools.permutations(turns)])


@measures([("matrix", ROW), ("inverse", ROW)],
          ("KXM4Orientation", "angles in [-pi, pi], each order", lambda random: random.uniform(np.pi, 3)),
          ("KXM4Orientation", "every other angle the single next to a multiple of pi/2", Random.quarter_turns))
def orient(random, function, draw_angles):
    angles, order = draw_angles(random), random.below(6)
    matrix, back = function(*angles, order)
    wanted = rotation_in_order(wide(angles), order)
    transposed = wanted.swapaxes(0, 1)
    return [angles, order], [error(matrix[:3, :3], wanted, largest_in_rows(wanted)),
                             error(back[:3, :3], transposed, largest_in_rows(transposed))]


@measures([("translation of the inverse", "the largest coordinate given")],
          ("KXM4Position", "angles in [-pi, pi], each order, translation in [-1000, 1000]"))
def place(random, function):
    position, order = random.position(), random.below(6)
    _, out = function(position, order)
    t, angles = wide(position[:3]), wide(position[3:])
    wanted = product(-rotation_in_order(angles, order).swapaxes(0, 1), t)
    return [position, order], [error(out[:3, 3], wanted, largest(t))]


@measures([("block", ROW), ("translation", "the largest coordinate given")],
          ("KXM4Projection1", "position as above, distance 1 to 1000, offset in [-1, 1], scale 2^[-2, 2)"))
def project(random, function):
    given = [random.position(), random.between(1, 1000), random.uniform(1), abs(random.spread(-2, 2))]
    position, distance, offset, scale = map(wide, given)
    # The others are taken as 0 and 1.
    is_taken = (abs(offset) > np.float32(1e-5)) & (abs(1 - scale) > 1e-5)
    t = position[:3]
    block = rotation_in_order(position[3:], np.full(len(scale), kxmaths5.KX_ORDER_YXZ))
    block[0] += offset / distance * block[2]
    block[1] *= scale
    moved = np.array([t[0] + offset / distance * t[2] - offset, scale * t[1], t[2]])
    out = function(*given)
    return given, [error(out[:3, :3], block, largest_in_rows(block)), error(out[:3, 3], moved, largest(t))], is_taken


@measures([("x, y, z", ITSELF), ("w", ITSELF)], ("KXGenerateQuat", "angle in [-6.28, 6.28], axis ±2^[-16, 16)"))
def generate(random, function):
    angle, axis = random.uniform(6.28), random.spread(-16, 16, 3)
    out = function(angle, axis)
    wanted = wide(axis) * (np.sin(wide(angle) / 2) / length(wide(axis)))
    return [angle, axis], [error(out[:3], wanted), error(out[3], np.cos(wide(angle) / 2))]


@measures([("block", ROW)], ("KXQuatToMatrix", "x, y, z, w in [-1, 1]"))
def to_matrix(random, function):
    q = random.uniform(1, 4)
    x, y, z, w = wide(q)
    turned = np.array([[0 * x, -z, y], [z, 0 * x, -x], [-y, x, 0 * x]])
    # w*w + v*v for 1, so that the quaternion needs no length.
    wanted = identity(3, len(x), np.longdouble) + (w * turned + product(turned, turned)) * 2 / dot(wide(q), wide(q))
    return [q], [error(function(q)[:3, :3], wanted, largest_in_rows(wanted))]


@measures([("x, y, z, w", ITSELF)], ("KXMatrixToQuat", "rotations, rounded to singles"))
def from_matrix(random, function):
    m = affine(random.rotation(), 0)
    e = wide(m[:3, :3])
    trace = np.trace(e)
    # Four times the products of x, y, z, w with one another: each row is a multiple of the quaternion.
    products = np.empty((4, 4, len(trace)), np.longdouble)
    products[:3, :3] = e + e.swapaxes(0, 1) + (1 - trace) * identity(3, len(trace))
    products[3, :3] = products[:3, 3] = e[2, 1] - e[1, 2], e[0, 2] - e[2, 0], e[1, 0] - e[0, 1]
    products[3, 3] = 1 + trace
    # By the row of w if the trace is positive, that of the largest otherwise: the sign is that element's.
    by = np.where(trace > 0, 3, np.einsum("iin->in", e).argmax(0))
    row = np.choose(by, products)
    return [m], [error(function(m), row / (2 * np.sqrt(np.choose(by, row))))]


# ---- Transforms taken apart, composed, and read by their columns

def taken_apart(m):
    """Scale, shear and angles: m is diag(scale)*H*RX*RY*RZ."""
    rows = m.copy()
    scale, shear = np.empty_like(m[0]), np.empty_like(m[0])
    for i in range(3):
        for j in range(i):
            shear[i + j - 1] = dot(rows[i], rows[j])
            rows[i] -= shear[i + j - 1] * rows[j]
        scale[i] = length(rows[i])
        rows[i] /= scale[i]
        for j in range(i):
            shear[i + j - 1] /= scale[i]
    mirror = np.where(determinant(rows) < 0, -1, 1)
    rows *= mirror
    angles = np.array([np.arctan2(-rows[1, 2], rows[2, 2]), np.arcsin(rows[0, 2]),
                       np.arctan2(-rows[0, 1], rows[0, 0])])
    return scale * mirror, shear, angles


@measures([("scale", ITSELF), ("shear", "1, or the largest shear"), ("angles", "1")],
          ("KXM4Decompose", "rotation, shears in [-1, 1], scales ±2^[-4, 4); rotateY in [-1.4, 1.4]",
           Random.sheared_placement, 3),
          ("KXM3Decompose", "rotation, shear in [-1, 1], scales ±2^[-4, 4)",
           Random.sheared_in_plane, 2))
def decompose(random, function, draw_matrix, size):
    m = draw_matrix(random)
    status, parts = function(m)
    in_space = identity(3, len(status), np.longdouble)
    in_space[:size, :size] = m[:size, :size]
    scale, shear, angles = taken_apart(in_space)
    return [m], [error(parts[:3], scale), error(parts[3:6], shear, np.maximum(1, largest(shear))),
                 angle_error(parts[6:9], angles)], (status == 0) & (abs(angles[1]) <= CLEAR_OF_A_QUARTER_TURN)


@measures([("perspective", "the largest product in its sum")],
          ("KXM4Decompose", "block of condition 64 at most, translation in [-10, 10], m30 to m32 in [-0.5, 0.5], "
           "m33 ±2^[-1, 1)"))
def find_perspective(random, function):
    m = affine(random.conditioned_block(), random.uniform(10, 3))
    m[3, :3], m[3, 3] = random.uniform(0.5, 3), random.spread(-1, 1)
    status, parts = function(m)
    normalised = wide(m) / wide(m[3, 3])
    to_block, row, t = inverse(normalised[:3, :3]), normalised[3, :3], normalised[:3, 3]
    unit = np.maximum(abs(to_block * row).max(1), abs(to_block * t).max(1))
    return [m], [error(parts[12:15], product(to_block, row - t), unit)], status == 0


@measures([("block", ROW)], ("KXM4Compose", "angles in [-pi, pi], scales ±2^[-4, 4)"))
def compose(random, function):
    parts = random.components()
    scale, angles = wide(parts[:3]), wide(parts[6:9])
    wanted = scale[:, None] * rotation_in_order(angles, np.full(angles.shape[-1], kxmaths5.KX_ORDER_XYZ))
    return [parts], [error(function(parts)[:3, :3], wanted, largest_in_rows(wanted))]


@measures([("block", ITSELF)], ("KXM3Compose", "angle in [-pi, pi], scales ±2^[-4, 4)"))
def compose_in_plane(random, function):
    parts = random.components()
    wanted = wide(parts[:2])[:, None] * rotation_about(2, wide(parts[8]))[:2, :2]
    return [parts], [error(function(parts)[:2, :2], wanted)]


@measures([("scale", ITSELF), ("angles", "1")],
          ("KXM4MatrixComponents", "rotation, scales 2^[-4, 4), the first ±; rotateX in [-1.4, 1.4]"))
def read_components(random, function):
    scale = random.scales(-4, 4)
    scale[1:] = abs(scale[1:])
    m = affine(random.rotation() * scale, random.uniform(1000, 3))
    block = wide(m[:3, :3])
    lengths = np.array([length(block[:, column]) for column in range(3)])
    unit = block / lengths
    side = np.sign(determinant(block))
    x, y = -np.arcsin(unit[1, 2]), np.arctan2(unit[0, 2], unit[2, 2])
    turned_back = product(rotation_about(1, -y), unit)[0]
    z = -np.arctan2(turned_back[1], side * turned_back[0])
    lengths[0] *= side
    position, scale = function(m)
    # Below it a mirror is not detected.
    has_side = abs(determinant(block)) >= 2e-6
    return [m], [error(scale, lengths), angle_error(position[3:], np.array([x, y, z]))], \
        has_side & (abs(x) <= CLEAR_OF_A_QUARTER_TURN)


@measures([("scale", ITSELF), ("angles", "1")], ("KXM3MatrixComponents", "rotation, scales 2^[-4, 4), the first ±"))
def read_components_in_plane(random, function):
    scale = random.scales(-4, 4)[:2]
    side = np.sign(scale[0])
    scale[1] = abs(scale[1])
    m = random.placed_in_plane(random.rotation_of_plane() * scale)
    first, second = (length(wide(m[:2, column])) for column in range(2))
    angle = -np.arctan2(wide(m[0, 1]) / second, side * wide(m[0, 0]) / first)
    _, angle_got, scale_x, scale_y = function(m)
    return [m], [error(np.array([scale_x, scale_y]), np.array([side * first, second])), angle_error(angle_got, angle)]


# ---- Boxes, lines and rays, triangles and planes

@measures([("corners", "the largest term in its sum")],
          ("KXTransformBox", "box in [-1000, 1000]; rotation, scales ±2^[-4, 4), translation in [-1000, 1000]"))
def transform_box(random, function):
    box, m = random.box(), random.placement()
    t = wide(m[:3, 3])
    a, b = (wide(m[:3, :3]) * wide(corner) for corner in box)
    wanted = np.array([t + np.minimum(a, b).sum(1), t + np.maximum(a, b).sum(1)])
    unit = np.maximum(abs(t), np.maximum(abs(a), abs(b)).max(1))
    return [box, m], [error(function(box, m), wanted, unit)]


@measures([("direction", "its largest coordinate")], ("KXTransformRay", "unit direction; matrix as above"))
def transform_ray(random, function):
    ray, m = random.ray(), random.placement()
    carried = product(wide(m[:3, :3]), wide(ray[1]))
    wanted = carried / length(carried)
    return [ray, m], [error(function(ray, m)[1], wanted, largest(wanted))]


@measures([("distance", "the distance from the origin", DOUBLE)],
          ("KXRayPointDistance", "coordinates in [-1000, 1000], a unit direction"))
def distance_from_ray(random, function):
    ray, point = random.ray(), random.uniform(1000, 3)
    offset = wide(point) - wide(ray[0])
    wanted = length(cross(offset, wide(ray[1])))
    return [ray, point], [error(function(ray, point), wanted, length(offset))]


def clipped(start, step, box):
    """The parameters at which a path enters the last slab of a box and leaves the first."""
    at = (wide(box) - start) / step
    return at.min(0).max(0), at.max(0).min(0)


@measures([("point", "the line's largest coordinate")],
          ("KXLineIxBox", "coordinates in [-1000, 1000]; hits from outside"))
def meet_box_with_line(random, function):
    line, box = random.uniform(1000, 2, 3), random.box()
    verdict, point = function(line, box)
    start, end = wide(line)
    near, _ = clipped(start, end - start, box)
    return [line, box], [error(point, start + near * (end - start), largest(line))], \
        (verdict != 0) & (point != line[0]).any(0)


@measures([("point", "the largest coordinate of origin and point")],
          ("KXRayIxBox", "coordinates in [-1000, 1000], a unit direction; hits"))
def meet_box_with_ray(random, function):
    ray, box = random.ray(), random.box()
    verdict, point = function(ray, box)
    start, step = wide(ray)
    near, far = clipped(start, step, box)
    wanted = start + np.where(near < 0, far, near) * step
    return [ray, box], [error(point, wanted, np.maximum(largest(start), largest(wanted)))], \
        (verdict != 0) & (point != ray[0]).any(0)


def draw_triangle(random):
    """Three corners with no small angle between the edges, and their plane."""
    def draw(random):
        corners = random.uniform(1000, 3, 3)
        a, b, c = wide(corners)
        has_angle = length(cross(b - a, c - b)) >= LEAST_SINE * length(b - a) * length(c - b)
        status, plane = library("KXPlaneEquation")(*corners)
        return corners, plane, has_angle & (status == 0)
    return random.until_accepted(draw)


@measures([("a, b, c", "the largest of a, b, c"), ("d", "the largest coordinate of the second point")],
          ("KXPlaneEquation", "coordinates in [-1000, 1000]; sine between the edges at least 0.1"))
def find_plane(random, function):
    corners, plane = draw_triangle(random)
    a, b, c = wide(corners)
    normal = cross(b - a, c - b)
    normal /= length(normal)
    return [corners], [error(plane[:3], normal, largest(normal)), error(plane[3], -dot(normal, b), largest(b))]


def line_at(random, corners):
    start, reach = random.uniform(1000, 3), random.between(1, 2)
    end = single(start + (random.point_of(corners) - start) * reach.astype(float))
    return np.array([start, end]), wide(end) - wide(start)


def ray_at(random, corners):
    origin = random.uniform(1000, 3)
    direction = random.point_of(corners) - origin
    direction = single(direction / length(direction))
    return np.array([origin, direction]), wide(direction)


@measures([("point", "the largest coordinate of start and point")],
          ("KXLineIxTriangle", "triangle as above; cosine of line and normal at least 0.1; hits", line_at),
          ("KXRayIxTriangle", "the same with a ray, unit direction", ray_at))
def meet_triangle(random, function, draw_path):
    corners, plane = draw_triangle(random)
    path, step = draw_path(random, corners)
    triangles = np.zeros(path.shape[-1], kxmaths5.KXTriangle)
    triangles["corner"]["vertex"] = range(3)
    triangles["plane"] = plane.T.copy().view(triangles["plane"].dtype)[:, 0]
    verdict, point = function(path, triangles, corners)
    start, normal = wide(path[0]), wide(plane[:3])
    has_angle = abs(dot(normal, step)) >= LEAST_SINE * length(normal) * length(step)
    wanted = start - (dot(normal, start) + wide(plane[3])) / dot(normal, step) * step
    return [path, plane], [error(point, wanted, np.maximum(largest(start), largest(wanted)))], \
        has_angle & (verdict == 1)


@measures([("x, y, z", "the largest coordinate given")],
          ("KXRotateInPlane",
           "coordinates in [-1000, 1000], axis a unit vector in singles, angle in [-3.14, 3.14]"))
def rotate_in_plane(random, function):
    point, axis, angle = random.uniform(1000, 3), random.unit_vector(), random.uniform(3.14)
    p, n, cosine = wide(point), wide(axis) / length(wide(axis)), np.cos(wide(angle))
    wanted = p * cosine + cross(n, p) * np.sin(wide(angle)) + n * (dot(n, p) * (1 - cosine))
    return [point, axis, angle], [error(function(point, axis, angle), wanted, largest(p))]


# ---- Range, bearing, elevation and azimuth

@measures([("range", ITSELF, DOUBLE)], ("KXRange", "coordinates in [-1000, 1000]"))
def measure_range(random, function):
    points = random.uniform(1000, 2, 3)
    x, _, z = wide(points[0]) - wide(points[1])
    return [points], [error(function(*points), np.sqrt(x * x + z * z))]


@measures([("bearing", ITSELF, DOUBLE)], ("KXBearing", "coordinates in [-1000, 1000]"))
def bearing(random, function):
    points = random.uniform(1000, 2, 3)
    x, _, z = wide(points[0]) - wide(points[1])
    return [points], [error(function(*points), np.arctan2(x, z) % (2 * PI))], points[0, 2] != points[1, 2]


@measures([("x, y, z", ITSELF)],
          ("KXREAToPoint", "range ±2^[-16, 16); angles as below", True),
          ("KXEAToVector", "elevation in [-pi/2, pi/2], azimuth in [-pi, pi]", False))
def to_point(random, function, has_range):
    reach = [random.spread(-16, 16)] if has_range else []
    angles = [random.uniform(np.pi / 2), random.uniform(np.pi)]
    elevation, azimuth = map(wide, angles)
    wanted = np.array([np.cos(elevation) * np.sin(azimuth), np.sin(elevation), np.cos(elevation) * np.cos(azimuth)])
    return [*reach, *angles], [error(function(*reach, *angles), wanted * wide(reach[0]) if has_range else wanted)]


ELEVATION, AZIMUTH = ("elevation", "1"), ("azimuth", ITSELF)
FLAT = "coordinates in [-1000, 1000]; elevation in [-1.4, 1.4]"


def angles_of(x, y, z):
    return np.arctan2(y, np.sqrt(x * x + z * z)), np.arctan2(x, z)


@measures([ELEVATION, AZIMUTH, ("range", ITSELF)], ("KXPointsToREA", FLAT))
def from_points(random, function):
    points = random.uniform(1000, 2, 3)
    step = wide(points[1]) - wide(points[0])
    reach, elevation, azimuth = function(*points)
    wanted_elevation, wanted_azimuth = angles_of(*step)
    return [points], [angle_error(elevation, wanted_elevation), error(azimuth, wanted_azimuth),
                      error(reach, length(step))], \
        (abs(wanted_elevation) <= CLEAR_OF_A_QUARTER_TURN) & (abs(step[2]) >= 1e-5)


@measures([ELEVATION, AZIMUTH],
          ("KXVectorToEA", FLAT, lambda random: random.uniform(1000, 3), False),
          ("KXVectorToEA", "x, z ±2^[-16, 8), y in [-1000, 1000]; elevation beyond ±1.4", Random.steep_vector, True))
def from_vector(random, function, draw_vector, is_steep):
    v = draw_vector(random)
    elevation, azimuth = function(v)
    wanted_elevation, wanted_azimuth = angles_of(*wide(v))
    return [v], [angle_error(elevation, wanted_elevation), error(azimuth, wanted_azimuth)], \
        ((abs(wanted_elevation) > CLEAR_OF_A_QUARTER_TURN) == is_steep) & (abs(v[2]) >= 1e-5)
