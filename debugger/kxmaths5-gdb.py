"""Shows kxmaths5's records in gdb; docs/debugging.md says how to load it."""

import math
import pathlib
import struct

import gdb
import gdb.printing

UNITS = ("NONE", "MILLIMETRE", "CENTIMETRE", "METRE", "KILOMETRE",
         "INCH", "FOOT", "YARD", "MILE", "NAUTICAL_MILE")
ORDERS = ("XYZ", "XZY", "YXZ", "YZX", "ZXY", "ZYX")


def number(value):
    """Six digits, or as many as it takes to tell this single from every other."""
    value = float(value)
    for digits in range(6, 10):
        text = f"{value:.{digits}g}"
        if math.isinf(value) or struct.pack("f", float(text)) == struct.pack("f", value):
            break
    return text


def numbers(record, names):
    """The members named, in brackets."""
    return "(" + ", ".join(number(record[name]) for name in names.split()) + ")"


def vector(record):
    return numbers(record, "x y z")


def matrix(record):
    """The rows, one a line, with the numbers of a column below each other."""
    size = range(record["m"].type.range()[1] + 1)
    rows = [[number(record["m"][row][column]) for column in size] for row in size]
    widths = [max(map(len, column)) for column in zip(*rows)]
    lines = ["  ".join(map(str.rjust, row, widths)) for row in rows]
    return "\n    ".join([record.type.strip_typedefs().unqualified().name, *lines])


def box(record):
    inverted = any(record["minimum"][axis] > record["maximum"][axis] for axis in "xyz")
    text = f"{vector(record['minimum'])} to {vector(record['maximum'])}"
    return text + ", inverted" if inverted else text


def quaternion(record):
    """The four numbers, and their rotation about an axis, if there is one."""
    text = numbers(record, "x y z w")
    x, y, z, w = (float(record[name]) for name in "xyzw")
    sine = math.sqrt(x * x + y * y + z * z)
    if not (math.isfinite(w) and 0 < sine < math.inf):
        return text
    axis = ", ".join(f"{part / sine:.4g}" for part in (x, y, z))
    return f"{text}: {2 * math.atan2(sine, w):.4g} about ({axis})"


def plane(record):
    return f"normal {numbers(record, 'a b c')}, offset {number(record['d'])}"


def position(record):
    return f"at {vector(record)}, rotate {numbers(record, 'rotateX rotateY rotateZ')}"


def components(record):
    return ", ".join(f"{part} {numbers(record, names)}" for part, names in (
        ("scale", "scaleX scaleY scaleZ"),
        ("shear", "shearXY shearXZ shearYZ"),
        ("rotate", "rotateX rotateY rotateZ"),
        ("translate", "translateX translateY translateZ"),
        ("perspective", "perspectiveX perspectiveY perspectiveZ perspectiveW")))


def triangle(record):
    vertices = ", ".join(str(int(record["corner"][i]["vertex"])) for i in range(3))
    return f"vertices {vertices}, plane {plane(record['plane'])}"


TEXTS = {
    "KXV3": vector,
    "KXP2": lambda record: numbers(record, "x y"),
    "KXP4": lambda record: numbers(record, "x y z w"),
    "KXM3": matrix,
    "KXM4": matrix,
    "KXBox": box,
    "KXLine": lambda record: f"{vector(record['start'])} to {vector(record['end'])}",
    "KXRay": lambda record: f"{vector(record['origin'])} towards {vector(record['direction'])}",
    "KXPlane": plane,
    "KXQuat": quaternion,
    "KXPosition": position,
    "KXComponents": components,
    "KXTriangle": triangle,
}
# Plain integers by their type, but with names for their values.
NAMES = {"KXUnit": ("KX_UNIT_", UNITS), "KXRotationOrder": ("KX_ORDER_", ORDERS)}


class Printer:
    def __init__(self, text):
        self.text = text

    def to_string(self):
        return self.text


def enumerator(value):
    prefix, names = NAMES[value.type.unqualified().name]
    index = int(value)
    return prefix + names[index] if index < len(names) else f"{index}, none of {prefix}"


class Records(gdb.printing.PrettyPrinter):
    """Chooses by a value's type: by its own name, or that which it is a typedef of."""

    def __init__(self):
        super().__init__("kxmaths5")

    def __call__(self, value):
        if value.type.unqualified().name in NAMES:
            return Printer(enumerator(value))
        text = TEXTS.get(value.type.strip_typedefs().unqualified().name)
        return Printer(text(value)) if text else None


gdb.printing.register_pretty_printer(gdb.current_objfile(), Records(), replace=True)

# Debug information names the sources from this directory's parent on, where they are.
sources = pathlib.Path(__file__).resolve().parent.parent
if (sources / "src" / "exports.txt").is_file():
    gdb.execute(f"directory {sources}", to_string=True)
