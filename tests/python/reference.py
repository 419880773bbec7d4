"""The library called through ctypes, one packed record at a time: what the ufuncs are held to."""
import ctypes
import itertools
import json
import pathlib

import numpy as np

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
    """What one call of the function in C gives back: the result, then what it has written."""
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
