"""Records with named fields."""
from __future__ import annotations

from typing import Any, ClassVar, cast

import numpy as np


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


def as_numbers(value: Any, shape: tuple[Any, ...], number: str) -> Any:
    """A structured array, as the numbers that its records are made of; anything else as it is."""
    array = np.asarray(value)
    if array.dtype.names is None:
        return value
    words = array.dtype.itemsize // 4
    record_shape = [size for size in shape if isinstance(size, int)]
    if words != np.prod(record_shape, dtype=int):
        return value
    packed = array.reshape(-1).view(np.uint32 if number == "uint32" else np.float32)
    return packed.reshape(*array.shape, *record_shape)


def as_records(numbers: Any, record: type[Record]) -> Any:
    """Numbers that a function has made, as records whose fields have names."""
    records = numbers.view(record.dtype)[..., 0]
    return records.view(np.recarray) if records.ndim else records[()]
