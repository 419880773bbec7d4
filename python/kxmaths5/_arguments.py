"""What a caller may give for an argument, and how it reaches the library."""
import ctypes
import keyword
import operator

import numpy as np

from ._records import SCALARS, Record, is_read_by_name, shape_of


def python_name(name):
    """A name that is a word of the language gets an underscore: from_."""
    return name + "_" if keyword.iskeyword(name) else name


class Value:
    """A number that goes in by value."""

    def __init__(self, described):
        self.name = python_name(described["name"])
        self.is_float = described["type"] == "float"
        # The enumerations are unsigned too.
        self.c_type = SCALARS.get(described["type"], ctypes.c_uint32)
        self.lowest, self.highest = described.get("range", (0, 2**32 - 1))
        self.type_text = "number" if self.is_float else described["type"]

    def take(self, value):
        try:
            if self.is_float:
                return self.c_type(value)
            number = operator.index(value)
        except TypeError as error:
            raise TypeError(f"{self.name}: {error}") from None
        if not self.lowest <= number <= self.highest:
            raise ValueError(f"{self.name} is {number}, not in {self.lowest} to {self.highest}")
        return self.c_type(number)


class Address:
    """A record or an array of records that goes by address."""

    def __init__(self, described, classes):
        self.c_name = described["name"]
        self.name = python_name(self.c_name)
        self.is_read = described["role"] != "out"
        self.is_written = described["role"] != "in"
        self.may_be_null = described["may_be_null"]
        self.may_be = described["may_be"]
        self.count = described.get("count")
        self.indexed_by = described.get("indexed_by")
        self.is_array = bool(self.count or self.indexed_by)
        self.kind = SCALARS.get(described["type"]) or classes[described["type"]]
        self.shape = shape_of(self.kind)
        self.shape_text = str(("n", *self.shape) if self.is_array else self.shape).replace("'", "")
        self.type_text = "float32" if self.shape == () else f"float32 {self.shape_text}"
        if self.shape is None:
            self.type_text = described["type"]
        elif is_read_by_name(self.kind):
            self.type_text = f"{described['type']} or {self.type_text}"

    def new(self, count):
        """An output that the caller has not given; NaN shows where nothing is written."""
        array = np.full((count, *self.shape) if self.is_array else self.shape, np.nan, np.float32)
        return self.kind.from_buffer(array) if is_read_by_name(self.kind) else array

    def take(self, value):
        """The caller's own record or array; a copy of anything else."""
        if isinstance(value, Record) and isinstance(value, self.kind) and not self.is_array:
            return value
        if self.shape is None:
            raise TypeError(f"{self.name} is a {type(value).__name__}, not a {self.kind.__name__}")
        if not isinstance(value, np.ndarray):
            value = self._copy(value)
        return self._checked(value)

    def _copy(self, value):
        if not self.is_read:
            raise TypeError(f"{self.name} is a {type(value).__name__}, not an array to be written to")
        try:
            array = np.array(value)
        except ValueError as error:
            raise ValueError(f"{self.name}: {error}") from None
        if array.dtype.kind not in "iuf":
            raise TypeError(f"{self.name} is not made of numbers: wanted {self.type_text}")
        return array.astype(np.float32, order="C")

    def _checked(self, array):
        if array.dtype != np.float32:
            raise TypeError(f"{self.name} is an array of {array.dtype}, not of float32")
        if (array.shape[1:] if self.is_array else array.shape) != self.shape:
            raise ValueError(f"{self.name} has the shape {array.shape}, not {self.shape_text}")
        if not (array.flags.c_contiguous and array.flags.aligned):
            raise ValueError(f"{self.name} is not contiguous; a copy of it would be")
        if self.is_written and not array.flags.writeable:
            raise ValueError(f"{self.name} would be written to, and is read-only")
        return array


def memory(operand):
    """Where a record or an array begins, and how many bytes it has."""
    if isinstance(operand, Record):
        return ctypes.addressof(operand), ctypes.sizeof(operand)
    return operand.ctypes.data, operand.nbytes
