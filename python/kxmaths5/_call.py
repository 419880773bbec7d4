"""What happens around a ufunc: outputs by their names, indices in range, and errors that say what is wrong."""
from __future__ import annotations

import operator
import re
from typing import Any, ClassVar, NamedTuple, NoReturn, Optional, cast

import numpy as np
from numpy.lib.recfunctions import structured_to_unstructured

from . import _ufuncs


class Record:
    """A record's class makes one record, np.dtype(class) many: np.zeros(9, KXTriangle)."""

    fields: ClassVar[list[Any]]
    dtype: ClassVar[np.dtype[Any]]

    def __init_subclass__(cls) -> None:
        cls.dtype = np.dtype((np.record, cls.fields))

    def __new__(cls, *values: Any, **named: Any) -> Any:
        names = cast("tuple[str, ...]", cls.dtype.names)
        if len(values) > len(names):
            raise TypeError(f"{cls.__name__} has {len(names)} fields, not {len(values)}")
        record = np.zeros((), cls.dtype)
        for name, value in [*zip(names, values), *named.items()]:
            if name not in names or name in named and name in names[:len(values)]:
                raise TypeError(f"{cls.__name__} has no field {name}, or it is given twice")
            record[name] = _nested(value, record.dtype[name])
        return record[()]


def _nested(value: Any, dtype: np.dtype[Any]) -> Any:
    """NumPy wants the fields of a record within a record as a tuple."""
    if dtype.subdtype:
        return [_nested(each, dtype.subdtype[0]) for each in value] if dtype.base.names else value
    return tuple(value) if dtype.names else value


class Operand(NamedTuple):
    """One of a ufunc's."""

    name: str
    shape: tuple[Any, ...]
    number: str
    record: Optional[type[Record]]
    highest: Optional[int]  # of an index
    left_out: Optional[int]  # its place, for an output that need not be made
    has_no_name: bool  # an output that out= alone can give


class Call:
    """A function of the library. Called with its inputs, what is given as out=, and its named outputs."""

    def __init__(self, name: str, inputs: list[Operand], outputs: list[Operand],
                 vertices: Optional[int] = None, indices: Optional[list[int]] = None) -> None:
        """vertices and indices: the places of an array of vertices, and of what has indices of them."""
        self.name = name
        self.vertices = vertices
        self.vertex_indices = indices or []
        self.inputs = inputs
        self.outputs = outputs
        self.named = [i for i, each in enumerate(outputs) if not each.has_no_name and each.name != "out"]
        self.ufunc: Any = _ufuncs.make(name, 0)
        self.variants = {0: (self.ufunc, outputs)}
        # Nothing has to be looked at before the ufunc is called, or named after it.
        self.is_plain = not any(each.number == "uint32" for each in inputs) and not any(
            each.record for each in outputs)
        self.simply = _ufuncs.make_simply(name, self._others, tuple(
            each.record and each.record.dtype for each in inputs + outputs))

    def _others(self, out: Any, *given: Any) -> Any:
        """A call with no options. If the ufunc refuses it, there is time to say why."""
        if self.is_plain and (out is None or isinstance(out, np.ndarray)) and not any(map(_is_masked, given)):
            try:
                return self.ufunc(*given) if out is None else self.ufunc(
                    *given, out=(*[None] * (len(self.outputs) - 1), out))
            except (TypeError, ValueError):
                pass
        return self(given, out, (), {})

    def __call__(self, given: tuple[Any, ...], out: Any, named: tuple[Any, ...],
                 options: dict[str, Any]) -> Any:
        ufunc, outputs, written = self._wanted(out, named)
        if not outputs:
            return None
        given = tuple(map(self._input, given, self.inputs))
        if self.vertices is not None:
            for place in self.vertex_indices:
                self._check_vertices(given[self.vertices], given[place], self.inputs[place])
        targets = [self._output(value, each) for value, each in zip(written, outputs)]
        rest = {name: value for name, value in options.items() if name != "where"}
        is_masked = len(rest) < len(options)
        try:
            results = ufunc(*given, out=tuple([None] * len(targets) if is_masked else targets), **rest)
            results = results if isinstance(results, tuple) else (results,)
            if is_masked:
                results = tuple(_masked(value, target, options["where"], each)
                                for value, target, each in zip(results, targets, outputs))
        except (TypeError, ValueError) as error:
            self._explain(given, outputs, targets, options, error)
        named_results = tuple(
            was_given if was_given is not None else _as_records(value, each.record) if each.record else value
            for value, each, was_given in zip(results, outputs, written))
        return named_results if len(outputs) > 1 else named_results[0]

    def _wanted(self, out: Any, named: tuple[Any, ...]) -> tuple[Any, list[Operand], list[Any]]:
        """The ufunc without the outputs that are not wanted, and what is given for the others."""
        values: list[Any] = [None] * len(self.outputs)
        if isinstance(out, tuple):
            if len(out) != len(values):
                raise ValueError(f"{self.name}: out has {len(out)} arrays for {len(values)} outputs")
            values = list(out)
        elif out is not None:
            values[-1] = out  # A single array is for the one output that isn't the result.
        mask = 0
        for place, value in zip(self.named, named):
            values[place] = values[place] if value is None else value
            if value is False:
                left_out = self.outputs[place].left_out
                if left_out is None:
                    raise ValueError(f"{self.name}: {self.outputs[place].name} can't be left out")
                mask |= 1 << left_out
        if mask not in self.variants:
            kept = [each for each, value in zip(self.outputs, values) if value is not False]
            self.variants[mask] = (_ufuncs.make(self.name, mask) if kept else None, kept)
        return (*self.variants[mask], [value for value in values if value is not False])

    def _input(self, value: Any, each: Operand) -> Any:
        """Numbers and records as the ufunc takes them."""
        if _is_masked(value):
            raise TypeError(f"{self.name}: {each.name} is a masked array, whose mask would be lost")
        if each.number == "uint32" and not each.record:
            return self._index(value, each)
        try:
            numbers = _as_numbers(value, each)
        except ValueError:
            raise ValueError(f"{self.name}: {each.name} is not an array of one shape") from None
        words = np.asarray(numbers)
        if each.number == "uint32" and (words.shape[-1:] != each.shape or words.dtype.kind not in "iu"):
            raise TypeError(f"{self.name}: {each.name} is not made of records of the type "
                            f"{cast('type[Record]', each.record).__name__}")
        return numbers

    def _output(self, value: Any, each: Operand) -> Any:
        """An array to be written to, as plain numbers."""
        if value is None:
            return None
        if not isinstance(value, np.ndarray):
            raise TypeError(f"{self.name}: {each.name} is a {type(value).__name__}, "
                            "not an array to be written to")
        numbers = _as_numbers(value, each)
        if numbers is not value and not np.may_share_memory(numbers, value) and value.size:
            raise TypeError(f"{self.name}: {each.name} is made of {value.dtype}, which can't be written to")
        return numbers

    def _check_vertices(self, vertices: Any, indices: Any, each: Operand) -> None:
        shape = np.shape(vertices)
        highest = _ufuncs.highest_vertex(indices) if each.record else np.max(indices, initial=0)
        if len(shape) > 1 and highest >= shape[-2] and np.size(indices):
            raise ValueError(f"{self.name}: {each.name} has the vertex {highest}, "
                             f"and vertices has {shape[-2]}")

    def _index(self, value: Any, each: Operand) -> Any:
        """An integer of the library's, which NumPy would wrap round if it were out of range."""
        limit = 2**32 - 1 if each.highest is None else each.highest
        if isinstance(value, (int, np.integer)):
            lowest = highest = operator.index(value)
        else:
            value = np.asarray(value)
            if value.dtype.kind not in "iu":
                raise TypeError(f"{self.name}: {each.name} is made of {value.dtype}, not of integers")
            if not value.size:
                return value.astype(np.uint32)
            lowest, highest = value.min(), value.max()
        if lowest < 0 or highest > limit:
            wrong = lowest if lowest < 0 else highest
            raise ValueError(f"{self.name}: {each.name} is {wrong}, not in 0 to {limit}")
        return np.uint32(value) if np.ndim(value) == 0 else value.astype(np.uint32, copy=False)

    def _explain(self, given: tuple[Any, ...], outputs: list[Operand], targets: list[Any],
                 options: dict[str, Any], error: Exception) -> NoReturn:
        """NumPy numbers a ufunc's operands; here they have names."""
        written = [(value, each) for value, each in zip(targets, outputs) if value is not None]
        shapes: list[str] = []
        for value, each in [*zip(given, self.inputs), *written]:
            is_written = len(shapes) >= len(given)
            if _is_foreign(value):
                raise TypeError(f"{self.name}: {each.name} is a {type(value).__name__}; "
                                f"np.asarray makes an array of it") from None
            array = np.asarray(value)
            if is_written and not array.flags.writeable:
                raise ValueError(f"{self.name}: {each.name} is read-only") from None
            kinds = "f" if is_written and not each.number.endswith("int32") else "biuf"
            if array.dtype.kind not in kinds:
                raise TypeError(f"{self.name}: {each.name} is made of {array.dtype}, "
                                f"not of {'floats' if kinds == 'f' else 'numbers'}") from None
            if not _ends_in(array.shape, each.shape) and not {"axes", "axis"} & set(options):
                raise ValueError(f"{self.name}: {each.name} has the shape {array.shape}, which doesn't "
                                 f"end in {_text(each.shape)}") from None
            shapes.append(f"{each.name} {array.shape}")
        if "where" in options:
            shapes.append(f"where {np.shape(options['where'])}")
        if "broadcast" in str(error) or "mismatch" in str(error):
            raise ValueError(f"{self.name}: these shapes do not fit together: {', '.join(shapes)}") from None
        names = [each.name for each in self.inputs + outputs]
        text = re.sub(r"[Oo]perand (\d+)", lambda found: names[int(found[1])],
                      str(error).removeprefix(f"{self.name}() "))
        raise (TypeError if isinstance(error, TypeError) else ValueError)(f"{self.name}: {text}") from None


def _masked(result: Any, target: Any, mask: Any, each: Operand) -> Any:
    """NumPy has where= for ufuncs without core dimensions alone; where it is false, a given output keeps
    what it had, and a new one holds NaN or 0."""
    made = np.full_like(result, 0 if each.number.endswith("int32") else np.nan) if target is None else target
    np.copyto(made, result, casting="same_kind", where=np.reshape(mask, np.shape(mask) + (1,) * len(each.shape)))
    return made[()] if target is None else target


def _is_masked(value: Any) -> bool:
    return isinstance(value, np.ma.MaskedArray)


def _is_foreign(value: Any) -> bool:
    """Another library's array, which itself decides what a ufunc does with it: it may not fit in memory."""
    return hasattr(value, "__array_ufunc__") and not isinstance(value, (np.ndarray, np.generic))


def _as_numbers(value: Any, each: Operand) -> Any:
    """A structured array, as the numbers that its records are made of; anything else as it is."""
    array = value if _is_foreign(value) else np.asarray(value)
    if _is_foreign(value) or array.dtype.names is None:
        return value
    if each.record is None:
        numbers = structured_to_unstructured(array)
    else:
        dtype = each.record.dtype
        if array.dtype != dtype:
            if sorted(array.dtype.names) != sorted(dtype.names or ()):
                return value
            array = array[list(dtype.names or ())].astype(dtype)
        numbers = array[..., None].view(np.uint32 if each.number == "uint32" else np.float32)
    record_shape = [size for size in each.shape if isinstance(size, int)]
    if numbers.shape[-1] != np.prod(record_shape, dtype=int):
        return value
    return numbers.reshape(*array.shape, *record_shape)


def _as_records(numbers: Any, record: type[Record]) -> Any:
    """Numbers that a function has made, as records whose fields have names."""
    records = numbers.view(record.dtype)[..., 0]
    return records.view(np.recarray) if records.ndim else records[()]


def _ends_in(shape: tuple[int, ...], end: tuple[Any, ...]) -> bool:
    last = shape[len(shape) - len(end):] if end else ()
    return len(shape) >= len(end) and all(
        not isinstance(wanted, int) or size == wanted for size, wanted in zip(last, end))


def _text(shape: tuple[Any, ...]) -> str:
    return f"({', '.join(map(str, shape))}{',' if len(shape) == 1 else ''})"
