"""What happens around a ufunc: outputs by their names, indices in range, and errors that say what is wrong."""
from __future__ import annotations

import operator
from typing import Any, NamedTuple, NoReturn, Optional

import numpy as np

from . import _ufuncs  # type: ignore[attr-defined]  # compiled
from ._records import Record, as_numbers, as_records


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
        self.ufunc: Any = _ufuncs.make(name, 0)
        self.variants = {0: (self.ufunc, outputs)}
        # Nothing has to be looked at before the ufunc is called, or named after it.
        self.is_plain = not any(each.number == "uint32" for each in inputs) and not any(
            each.record for each in outputs)
        self.simply = _ufuncs.make_simply(name, self._others, tuple(
            each.record and each.record.dtype for each in inputs + outputs))

    def _others(self, out: Any, *given: Any) -> Any:
        """A call with no options. If the ufunc refuses it, there is time to say why."""
        if self.is_plain and (out is None or isinstance(out, np.ndarray)):
            try:
                return self.ufunc(*given) if out is None else self.ufunc(
                    *given, out=(*[None] * (len(self.outputs) - 1), out))
            except (TypeError, ValueError):
                pass
        return self(given, out, (), {})

    def __call__(self, given: tuple[Any, ...], out: Any, named: tuple[Any, ...],
                 options: dict[str, Any]) -> Any:
        if "where" in options:
            return self._where(given, out, named, options)
        ufunc, outputs = self.ufunc, self.outputs
        if any(each is not None for each in named) or isinstance(out, tuple):
            ufunc, outputs, out = self._wanted(out, named)
        if not outputs:
            return None
        given = tuple(self._index(value, each) if each.number == "uint32" and not each.record else
                      self._numbers(value, each) for value, each in zip(given, self.inputs))
        if self.vertices is not None:
            for place in self.vertex_indices:
                self._check_vertices(given[self.vertices], given[place], self.inputs[place])
        written: tuple[Any, ...] = (None,) * len(outputs)
        if out is not None:
            # A single array is for the one output that isn't the result.
            written = out if isinstance(out, tuple) else (*written[1:], out)
            options = {**options, "out": self._out(written, outputs)}
        try:
            results = ufunc(*given, **options)
        except (TypeError, ValueError) as error:
            self._explain(given, outputs, options, error)
        if len(outputs) == 1:
            results = (results,)
        named_results = tuple(
            was_given if was_given is not None else as_records(value, each.record) if each.record else value
            for value, each, was_given in zip(results, outputs, written))
        return named_results if len(outputs) > 1 else named_results[0]

    def _where(self, given: tuple[Any, ...], out: Any, named: tuple[Any, ...],
               options: dict[str, Any]) -> Any:
        """NumPy has where= for ufuncs without core dimensions alone; where it is false, a given output
        keeps what it had, and a new one holds NaN or 0."""
        mask = np.asarray(options["where"], bool)
        kept = {name: value for name, value in options.items() if name != "where"}
        left_out = tuple(False if each is False else None for each in named)
        made = self(given, None, left_out, kept)
        _, outputs, targets = self._wanted(out, named)
        made = made if isinstance(made, tuple) else (made,)
        targets = targets or (None,) * len(outputs)
        results = []
        for value, each, target in zip(made, outputs, targets):
            if target is None:
                target = np.zeros_like(value) if each.record or each.number.endswith("int32") \
                    else np.full_like(value, np.nan)
            loop = mask.reshape(*mask.shape, *[1] * (0 if each.record else len(each.shape)))
            np.copyto(target, value, casting="same_kind", where=loop)
            results.append(target)
        return tuple(results) if len(results) > 1 else results[0]

    def _wanted(self, out: Any, named: tuple[Any, ...]) -> tuple[Any, list[Operand], Any]:
        """The ufunc without the outputs that are not wanted, and what is given for the others."""
        places = [i for i, each in enumerate(self.outputs) if not each.has_no_name]
        values: list[Any] = [None] * len(self.outputs)
        if out is not None:
            given = out if isinstance(out, tuple) else (*[None] * (len(values) - 1), out)
            if len(given) != len(values):
                raise ValueError(f"{self.name}: out has {len(given)} arrays for {len(values)} outputs")
            values = list(given)
        for place, value in zip(places[len(places) - len(named):], named):
            if value is not None:
                values[place] = value
        mask = 0
        for value, each in zip(values, self.outputs):
            if value is False:
                if each.left_out is None:
                    raise ValueError(f"{self.name}: {each.name} can't be left out")
                mask |= 1 << each.left_out
        if mask not in self.variants:
            kept = [each for each, value in zip(self.outputs, values) if value is not False]
            self.variants[mask] = (_ufuncs.make(self.name, mask) if kept else None, kept)
        left = tuple(value for value in values if value is not False)
        return (*self.variants[mask], left if any(value is not None for value in left) else None)

    def _out(self, out: tuple[Any, ...], outputs: list[Operand]) -> tuple[Any, ...]:
        """The arrays to be written to, as plain numbers."""
        taken = []
        for value, each in zip(out, outputs):
            if value is not None and not isinstance(value, np.ndarray):
                raise TypeError(f"{self.name}: {each.name} is a {type(value).__name__}, "
                                "not an array to be written to")
            numbers = as_numbers(value, each.shape, each.number) if value is not None else None
            if value is not None and not np.shares_memory(numbers, value) and value.size:
                raise ValueError(f"{self.name}: the records of {each.name} are not contiguous")
            taken.append(numbers)
        return tuple(taken)

    def _numbers(self, value: Any, each: Operand) -> Any:
        """A record's numbers, whichever way it is given."""
        try:
            numbers = as_numbers(value, each.shape, each.number)
        except ValueError:
            raise ValueError(f"{self.name}: {each.name} is not an array of one shape") from None
        if each.number == "uint32" and np.shape(numbers)[-1:] != each.shape:
            raise TypeError(f"{self.name}: {each.name} is not made of records of the type "
                            f"{each.record.__name__ if each.record else each.number}")
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

    def _explain(self, given: tuple[Any, ...], outputs: list[Operand], options: dict[str, Any],
                 error: Exception) -> NoReturn:
        """NumPy numbers a ufunc's operands; here they have names."""
        shapes = []
        for value, each in zip(given, self.inputs):
            try:
                array = np.asarray(value)
            except ValueError:
                raise ValueError(f"{self.name}: {each.name} is not an array of one shape") from None
            if array.dtype.kind not in "biuf":
                raise TypeError(f"{self.name}: {each.name} is made of {array.dtype}, not of numbers") \
                    from None
            if not _ends_in(array.shape, each.shape):
                raise ValueError(f"{self.name}: {each.name} has the shape {array.shape}, which doesn't "
                                 f"end in {_text(each.shape)}") from None
            shapes.append(f"{each.name} {array.shape}")
        for value, each in zip(options.get("out", ()), outputs):
            if value is not None and not value.flags.writeable:
                raise ValueError(f"{self.name}: {each.name} is read-only") from None
            if value is not None and value.dtype.kind != "f" and each.number not in ("int32", "uint32"):
                raise TypeError(f"{self.name}: {each.name} is an array of {value.dtype}, not of floats") \
                    from None
            if value is not None and not _ends_in(value.shape, each.shape):
                raise ValueError(f"{self.name}: {each.name} has the shape {value.shape}, which doesn't "
                                 f"end in {_text(each.shape)}") from None
            if value is not None:
                shapes.append(f"{each.name} {value.shape}")
        if "broadcast" in str(error) or "mismatch" in str(error):
            raise ValueError(f"{self.name}: these shapes do not fit together: {', '.join(shapes)}") \
                from None
        raise (TypeError if isinstance(error, TypeError) else ValueError)(f"{self.name}: {error}") from None


def _ends_in(shape: tuple[int, ...], end: tuple[Any, ...]) -> bool:
    last = shape[len(shape) - len(end):] if end else ()
    return len(shape) >= len(end) and all(
        not isinstance(wanted, int) or size == wanted for size, wanted in zip(last, end))


def _text(shape: tuple[Any, ...]) -> str:
    return f"({', '.join(map(str, shape))}{',' if len(shape) == 1 else ''})"
