"""Makes a Python function out of a function's description."""
import ctypes
import inspect

import numpy as np

from ._arguments import Address, Value, memory
from ._help import docstring
from ._records import SCALARS


def make_function(library, described, group, classes):
    name = described["name"]
    try:
        function = getattr(library, name)
    except AttributeError:
        raise ImportError(f"{library._name} has no {name}: it is not this package's version") from None
    arguments = {each["name"]: Address(each, classes) if each["by"] == "address" else Value(each)
                 for each in described["arguments"]}
    addresses = [each for each in arguments.values() if isinstance(each, Address)]
    counts = {each.count for each in addresses if each.count}
    function.argtypes = [ctypes.c_void_p if isinstance(each, Address) else each.c_type
                         for each in arguments.values()]
    function.restype = SCALARS[described["result"]["type"]]

    inputs = {c_name: each for c_name, each in arguments.items()
              if c_name not in counts and (isinstance(each, Value) or each.is_read)}
    outputs = [each for each in addresses if not each.is_read]
    signature = inspect.Signature(
        [inspect.Parameter(each.name, inspect.Parameter.POSITIONAL_OR_KEYWORD)
         for each in inputs.values()]
        + [inspect.Parameter(each.name, inspect.Parameter.KEYWORD_ONLY, default=None)
           for each in outputs])

    def call(*positional, **named):
        try:
            given = signature.bind(*positional, **named).arguments
        except TypeError as error:
            raise TypeError(f"{name}: {error}") from None
        operands = {c_name: each.take(given[each.name]) for c_name, each in inputs.items()}
        made = _take_outputs(outputs, given, operands)
        for count in counts:
            operands[count] = _common_length(count, addresses, operands)
        for each in made:
            operands[each.c_name] = each.new(operands[each.count] if each.count else None)
        _check_indices(addresses, operands)
        _check_overlaps([each for each in addresses if each.is_written and each not in made],
                        addresses, operands)

        result = function(*(_passed(operands[c_name], each) for c_name, each in arguments.items()))
        returned = [] if function.restype is None else [result]
        returned += [_returned(operands[each.c_name], given.get(each.name)) for each in addresses
                     if each.is_written and operands[each.c_name] is not None]
        return tuple(returned) if len(returned) > 1 else (returned or [None])[0]

    call.__name__ = call.__qualname__ = name
    call.__module__ = "kxmaths5"
    call.__signature__ = signature
    call.__doc__ = docstring(described, group, inputs.values(), outputs)
    return call


def _take_outputs(outputs, given, operands):
    """Takes the outputs that are given or left out, and tells which are to be made."""
    made = []
    for each in outputs:
        value = given.get(each.name)
        if value is None:
            made.append(each)
        elif value is not False:
            operands[each.c_name] = each.take(value)
        elif each.may_be_null:
            operands[each.c_name] = None
        else:
            raise ValueError(f"{each.name} can't be left out")
    return made


def _common_length(count, addresses, operands):
    lengths = {each.name: len(operands[each.c_name]) for each in addresses
               if each.count == count and each.c_name in operands}
    if len(set(lengths.values())) > 1:
        listed = ", ".join(f"{name} has {length}" for name, length in lengths.items())
        raise ValueError(f"arrays of different lengths: {listed}")
    return next(iter(lengths.values()))


def _check_indices(addresses, operands):
    for each in addresses:
        if each.indexed_by:
            length = len(operands[each.c_name])
            for corner in operands[each.indexed_by].corner:
                if corner.vertex >= length:
                    raise ValueError(f"{each.indexed_by} has the vertex {corner.vertex}, "
                                     f"and {each.name} has {length}")


def _check_overlaps(written, addresses, operands):
    for each in written:
        start, size = _place(operands[each.c_name])
        for other in addresses:
            other_start, other_size = _place(operands[other.c_name])
            if (other is each or start + size <= other_start
                    or other_start + other_size <= start):
                continue
            is_same = (start, size) == (other_start, other_size)
            if not is_same or other.c_name not in each.may_be:
                raise ValueError(f"{each.name} overlaps {other.name}"
                                 + ("" if is_same else " without being the same"))


def _place(operand):
    return (0, 0) if operand is None else memory(operand)


def _passed(operand, argument):
    return _place(operand)[0] if isinstance(argument, Address) else operand


def _returned(operand, given):
    """A number that the caller has no array for is a number."""
    is_number = isinstance(operand, np.ndarray) and operand.shape == () and operand is not given
    return operand[()] if is_number else operand
