#!/usr/bin/python3
"""Writes what the package has of each function, from the description of the library.

    _table.h        for _ufuncs.c: each function's operands, and the loop that calls it
    _functions.py   the functions as they are imported, with types and contracts
    _constants.py   constants, enumerations and records
    *.pyi, py.typed the types of the compiled modules, and the word that there are types
"""
import argparse
import json
import keyword
import pathlib
import re
import textwrap

NUMPY_TYPES = {"float": "NPY_FLOAT", "double": "NPY_DOUBLE", "int32": "NPY_INT32", "uint32": "NPY_UINT32"}
TYPE_NAMES = {"float": "float32", "double": "float64", "int32": "int32", "uint32": "uint32"}
C_TYPES = {"int32": "int32_t", "uint32": "uint32_t"}
# A record that is read by the names of its fields, or isn't made of floats alone.
NAMED = ("KXPosition", "KXComponents", "KXTriangle")
STUBS = {
    "_ufuncs.pyi": """\
from typing import Any, Callable

def make(name: str, left_out: int) -> Any: ...
def make_simply(name: str, others: Callable[..., Any], records: tuple[Any, ...]) -> Callable[..., Any]: ...
def highest_vertex(words: Any) -> int: ...
""",
    "_tree.pyi": """\
from typing import Any

def build(triangles: Any, vertices: Any, reach: float) -> Any: ...
def nearest(tree: Any, rays: Any, triangles: Any, points: Any) -> None: ...
def blocked(tree: Any, lines: Any, verdicts: Any) -> None: ...
def met(tree: Any, rays: Any, verdicts: Any) -> None: ...
""",
    "py.typed": ""}
# What arrays make natural and C leaves to a loop; in _ufuncs.c.
BOX_AROUND = {
    "name": "kx_box_around", "group": "Boxes", "brief": "The smallest box around points.", "text": "",
    "arguments": [
        {"name": "count", "type": "uint32", "by": "value", "role": "in", "text": "how many"},
        {"name": "points", "type": "KXP3", "by": "address", "role": "in", "count": "count", "may_be": [],
         "text": "the points, in front of the last two dimensions as many clouds of them as there are"},
        {"name": "out", "type": "KXBox", "by": "address", "role": "out", "may_be": [],
         "text": "the box around each cloud"}],
    "result": {"type": "void", "text": ""},
    "notes": {"Degenerate": "no points give a box of NaN. A NaN coordinate is passed over, unless it is "
                            "the first point's."}}


def python_name(name):
    """A name that is a word of the language gets an underscore: from_."""
    return name + "_" if keyword.iskeyword(name) else name


class Operand:
    """One of a ufunc's: an argument as an input or as an output, or the result."""

    def __init__(self, api, described, is_output):
        self.described = described
        self.c_name = described.get("name")
        self.name = python_name(self.c_name) if self.c_name else "result"
        self.is_output = is_output
        self.record = described["type"] if described["type"] in api.records else None
        self.type, self.shape = api.numbers_of(described["type"])
        self.shape = (*described.get("shape", ()), *self.shape)
        if described.get("count"):
            self.shape = ("n", *self.shape)
        elif described.get("indexed_by"):
            self.shape = ("v", *self.shape)
        self.may_be_left_out = is_output and described.get("may_be_null", False)
        self.highest = api.highest.get(described["type"])

    @property
    def signature(self):
        return "(" + ",".join(map(str, self.shape)) + ")"

    @property
    def is_named(self):
        return self.record in NAMED

    @property
    def type_text(self):
        shape = f" ({', '.join(map(str, self.shape))}{',' if len(self.shape) == 1 else ''})"
        text = TYPE_NAMES[self.type] + (shape if self.shape else "")
        return f"{self.record} or {text}" if self.is_named else text


class Function:
    """One of the library's functions, and its operands in NumPy's order."""

    def __init__(self, api, described):
        self.described = described
        self.c_name = described["name"]
        self.name = self.c_name.removeprefix("kx_")  # The module's name is prefix enough.
        self.result_type = described["result"]["type"]
        self.arguments = described["arguments"]
        counts = {each.get("count") for each in self.arguments}
        given = [each for each in self.arguments if each["name"] not in counts]
        self.inputs = [Operand(api, each, False) for each in given if "in" in each["role"].split(",")]
        self.outputs = [Operand(api, each, True) for each in given if "out" in each["role"].split(",")]
        if self.result_type != "void":
            self.outputs.insert(0, Operand(api, described["result"], True))
        self.operands = self.inputs + self.outputs
        self.group = api.groups[described["group"]]

    @property
    def signature(self):
        return "->".join(",".join(each.signature for each in some) for some in (self.inputs, self.outputs))

    @property
    def may_write_nothing(self):
        """Verdicts and statuses can come without the outputs that go with them."""
        return self.result_type == "int32" and any(each.described.get("role") == "out"
                                                   for each in self.outputs)

    def place(self, c_name, is_output):
        return next((i for i, each in enumerate(self.operands)
                     if each.c_name == c_name and each.is_output == is_output), None)


class Api:
    def __init__(self, described):
        self.described = described
        self.records = {each["name"]: each for each in described["records"]}
        self.groups = {each["name"]: each for each in described["groups"]}
        self.highest = {each["name"]: max(value["value"] for value in each["values"])
                        for each in described["enumerations"]}
        self.functions = [Function(self, each) for each in
                          [*described["functions"], *described["everyday"], BOX_AROUND]]

    def numbers_of(self, name):
        """The numbers that a type is made of, and the shape of them."""
        if name in NUMPY_TYPES:
            return name, ()
        if name in self.highest:
            return "uint32", ()
        record = self.records[name]
        if "same_as" in record:
            return self.numbers_of(record["same_as"])
        fields = {(number, (*field["shape"], *shape)) for field in record["fields"]
                  for number, shape in [self.numbers_of(field["type"])]}
        if len(fields) > 1:  # Words of several kinds are read as words.
            return "uint32", (record["size"] // 4,)
        (number, shape), = fields
        return number, shape if len(record["fields"]) == 1 else (len(record["fields"]), *shape)

    def array_form(self, function):
        """The function that does the same for an array: KXM4NP3I1 for KXM4P3I1."""
        for other in self.functions:
            head, n, tail = other.name.rpartition("N")
            if n and head + tail == function.name and "n" in str(other.operands[-1].shape[:1]):
                return other
        return None


def c_argument(function, argument, is_array):
    """How the loop passes an argument: by value, or as a record's address."""
    name, kind = argument["name"], argument["type"]
    counts = {each.get("count") for each in function.arguments}
    if name in counts:
        return "(uint32_t)n" if is_array else f"(uint32_t)length[{dimensions(function)['n']}]"
    is_output = "out" in argument["role"]
    at = f"a{function.place(name, is_output)}"
    if argument["by"] == "value":
        kind = C_TYPES.get(kind, kind)
        return f"*(const {kind} *){at}"
    return f"({'' if is_output else 'const '}{kind} *){at}"


def dimensions(function):
    """The signature's different dimensions, in the order in which they appear."""
    names = dict.fromkeys(size for operand in function.operands for size in operand.shape)
    return {name: index for index, name in enumerate(names)}


def copies(function):
    """What is both in and out is copied to the output, where it is changed."""
    for index, operand in enumerate(function.outputs, len(function.inputs)):
        source = function.place(operand.c_name, False) if operand.c_name else None
        if source is not None:
            yield index, source, operand


def may_stay_unwritten(function):
    """Verdicts and statuses can come without the floats that go with them, which are then NaN."""
    for index, operand in enumerate(function.outputs, len(function.inputs)):
        if function.may_write_nothing and operand.described.get("role") == "out" and operand.type == "float":
            yield index, operand


def bytes_of(operand, function):
    count = 1
    factors = []
    for size in operand.shape:
        if isinstance(size, int):
            count *= size
        else:
            factors.append(f"(size_t)length[{dimensions(function)[size]}]")
    return " * ".join([*factors, str(count * (8 if operand.type == "double" else 4))])


def c_loop(function):
    """The distances between records are constants in the copy for packed arrays, which is quicker."""
    used = range(len(function.operands))
    distances = ", ".join(f"npy_intp s{i}" for i in used)
    lines = [f"static KX_INLINE void walk_{function.name}(char *const *at, const npy_intp *length, "
             f"npy_intp n, {distances})", "{", "    (void)length;"]
    lines += [f"    char *a{i} = at[{i}];" for i in used]
    advance = ", ".join(f"a{i} += s{i}" for i in used)
    lines += [f"    for (; n > 0; --n, {advance}) {{"]
    for output, source, operand in copies(function):
        lines += [f"        if (a{output} != a{source}) {{",
                  f"            memcpy(a{output}, a{source}, {bytes_of(operand, function)});", "        }"]
    lines += [f"        {f'if (a{index}) ' * each.may_be_left_out}memcpy(a{index}, no_result, "
              f"{bytes_of(each, function)});" for index, each in may_stay_unwritten(function)]
    call = f"{function.c_name}({', '.join(c_argument(function, each, False) for each in function.arguments)})"
    if function.result_type != "void":
        kind = C_TYPES.get(function.result_type, function.result_type)
        call = f"*({kind} *)a{len(function.inputs)} = {call}"
    lines += [f"        {call};", "    }", "}", ""]

    sizes = [bytes_of(each, function) for each in function.operands]
    lines += [f"static void loop_{function.name}(char *const *at, const npy_intp *step, "
              "const npy_intp *length, npy_intp n)", "{"]
    if all(size.isdigit() for size in sizes):
        packed = " && ".join(f"step[{i}] == {size}" for i, size in enumerate(sizes))
        lines += [f"    if ({packed}) {{",
                  f"        walk_{function.name}(at, length, n, {', '.join(sizes)});", "        return;", "    }"]
    steps = ", ".join(f"step[{i}]" for i in used)
    return "\n".join([*lines, f"    walk_{function.name}(at, length, n, {steps});", "}"])


def c_array_form(function, form):
    """All records in one call of the array form."""
    lines = [f"static void array_{function.name}(char *const *at, const npy_intp *step, "
             "const npy_intp *length, npy_intp n)", "{", "    (void)step;", "    (void)length;"]
    lines += [f"    char *const a{i} = at[{i}];" for i in range(len(function.operands))]
    for output, source, operand in copies(function):
        lines += [f"    if (a{output} != a{source}) {{",
                  f"        memcpy(a{output}, a{source}, (size_t)n * {bytes_of(operand, function)});",
                  "    }"]
    call = ", ".join(c_argument(form, each, True) for each in form.arguments)
    return "\n".join([*lines, f"    {form.name}({call});", "}"])


def c_operand(function, operand):
    known = dimensions(function)
    places = [known[size] for size in operand.shape]
    # What is both in and out is copied first, so nothing but its own input may be where it is.
    is_both = operand.c_name and function.place(operand.c_name, False) is not None
    may_be = sum(1 << index for index, other in enumerate(function.inputs)
                 if operand.is_output and operand.c_name
                 and (other.c_name == operand.c_name if is_both
                      else other.c_name in operand.described["may_be"] and not function.may_write_nothing))
    sizes = [size if isinstance(size, int) else -1 for size in operand.shape]
    highest = 2**32 - 1 if operand.highest is None else operand.highest
    return (f"{{{NUMPY_TYPES[operand.type]}, {len(places)}, {{{', '.join(map(str, places or [0]))}}}, "
            f"{{{', '.join(map(str, sizes or [0]))}}}, {may_be}, {highest}u}}")


def c_table(api):
    parts = ["/* Made by generate.py from the description of the library. */"]
    rows = []
    for function in api.functions:
        form = api.array_form(function)
        parts.append(c_loop(function))
        single = 0
        if form:
            parts.append(c_array_form(function, form))
            single = sum(1 << i for i, each in enumerate(form.operands) if "n" not in each.shape)
        operands = ", ".join(c_operand(function, each) for each in function.operands)
        rows.append(f'    {{"{function.name}", "{function.signature}", {len(function.inputs)}, '
                    f"{len(function.outputs)},\n     {{{operands}}},\n     loop_{function.name}, "
                    f"{'array_' + function.name if form else 'NULL'}, {single}}},")
    return "\n\n".join([*parts, "static const Function functions[] = {\n" + "\n".join(rows) + "\n};\n"])


def entry(name, type_text, text=""):
    head = f"{name} : {type_text}" if type_text else name
    return head + ("\n" + textwrap.indent(textwrap.fill(text, 88), "    ") if text else "")


def section(title, entries):
    text = "\n".join(entry for entry in entries if entry)
    return f"{title}\n{'-' * len(title)}\n{text}" if text else ""


def reflowed(text):
    """Paragraphs filled; those that have formulas or tables as they are."""
    return "\n\n".join(each if re.search(r"^ |  ", each, re.MULTILINE) else textwrap.fill(each, 92)
                       for each in text.split("\n\n"))


def docstring(function):
    described = function.described
    texts = {each["name"]: each["text"] for each in described["arguments"]}
    parts = [described["brief"], reflowed(described["text"]),
             f"As a ufunc: {function.signature}"]
    parameters = [entry(each.name, each.type_text, texts[each.c_name]) for each in function.inputs]
    for each in function.outputs:
        if each.c_name and function.place(each.c_name, False) is None:
            left_out = "; False leaves it out" if each.may_be_left_out else ""
            parameters.append(entry(each.name, f"{each.type_text}, a new one unless given",
                                    texts[each.c_name].removesuffix("; or null") + left_out))
    parts.append(section("Parameters", parameters))
    returned = [entry(each.name if each.c_name else "", each.type_text,
                      "" if each.c_name else described["result"]["text"]).lstrip(" :")
                for each in function.outputs]
    parts.append(section("Returns", returned))
    # Null and aliasing are C's: here an output is left out by False, and overlaps are copied.
    notes = [textwrap.fill(f"{label}: {text}", 92) for label, text in described["notes"].items()
             if label not in ("Null", "Aliasing")]
    parts += [section("Notes", notes), section(function.group["name"], [function.group["text"]])]
    return "\n\n".join(part for part in parts if part)


def returned_type(function):
    types = ["Any" if each.is_named or not each.shape else "Floats" for each in function.outputs]
    return types[0] if len(types) == 1 else f"tuple[{', '.join(types)}]"


def python_function(function):
    inputs = [f"{each.name}: ArrayLike" for each in function.inputs]
    own = [each for each in function.outputs if each.c_name]
    named = [each for each in own if each.name != "out" and function.place(each.c_name, False) is None]
    is_out_an_input = any(each.name == "out" for each in function.inputs)
    options = ["out: Out = None"] * (not is_out_an_input) + [
        f"{each.name}: {'Out | bool' if each.may_be_left_out else 'Out'} = None" for each in named]
    parameters = ", ".join([*inputs, *(["*", *options] if options else []), "**options: Any"])
    arguments = "".join(f", {each.name}" for each in function.inputs)
    outputs = "".join(f", {each.name}" for each in named)
    doc = textwrap.indent(docstring(function), "    ").strip().replace("\\", "\\\\")
    lines = [f"def {function.name}({parameters}) -> {returned_type(function)}:", f'    """{doc}\n    """']
    unset = " and ".join(["not options", *(f"{each.name} is None" for each in named)])
    if not is_out_an_input:
        lines += [f"    if {unset}:", f"        return _{function.name}.simply(out{arguments})"]
    return "\n".join([
        *lines,
        f"    return _{function.name}(({arguments[2:]}{',' if len(function.inputs) == 1 else ''}), "
        f"{'out if isinstance(out, np.ndarray) else None' if is_out_an_input else 'out'}, "
        f"({outputs[2:]}{',' if len(named) == 1 else ''}), options)"])


def python_call(function):
    """The object that does the work: what it has to know of each operand."""
    def described(each):
        left_out = function.operands.index(each) if each.may_be_left_out else None
        return (f"Operand({each.name!r}, {each.shape!r}, {each.type!r}, "
                f"{each.record if each.is_named else None}, {each.highest}, {left_out}, "
                f"{function.place(each.c_name, False) is not None if each.c_name else True})")
    inputs = ", ".join(described(each) for each in function.inputs)
    outputs = ", ".join(described(each) for each in function.outputs)
    indexed = [(each.described["indexed_by"], i) for i, each in enumerate(function.inputs)
               if "indexed_by" in each.described]
    vertices = "".join(f", {i}, {[function.place(name, False) for name in ([by] if isinstance(by, str) else by)]}"
                       for by, i in indexed)
    return f"_{function.name} = Call({function.name!r}, [{inputs}], [{outputs}]{vertices})"


def functions_module(api):
    names = ", ".join(f'"{each.name}"' for each in api.functions)
    head = ['"""The functions of the library, one by one. Made by generate.py."""',
            "# mypy: no-warn-return-any",  # NumPy's ufuncs have no types.
            "from __future__ import annotations", "",
            "from typing import Any", "",
            "import numpy as np", "from numpy.typing import ArrayLike, NDArray", "",
            "from ._call import Call, Operand",
            f"from ._constants import {', '.join(NAMED)}", "",
            "Floats = NDArray[np.float32]", "Out = Any", "",
            f"__all__ = [{names}]"]
    return "\n".join(head) + "\n\n\n" + "\n".join(
        f"{python_call(each)}\n\n\n{python_function(each)}\n\n" for each in api.functions)


def constants_module(api):
    described = api.described
    lines = ['"""Constants, enumerations and records. Made by generate.py."""',
             "import enum", "from typing import Any", "",
             "from ._call import Record", "", f'VERSION = "{described["version"]}"']
    lines += [f"{each['name']} = {each['value']!r}" for each in described["constants"]]
    names = [each["name"] for each in described["constants"]]
    for each in described["enumerations"]:
        lines += ["", "", f"class {each['name']}(enum.IntEnum):",
                  f'    """{textwrap.indent(each["text"], "    ").strip()}\n    """', ""]
        lines += [f"    {value['name']} = {value['value']}" for value in each["values"]]
        lines += ["", ""] + [f"{value['name']} = {each['name']}.{value['name']}"
                             for value in each["values"]]
        names += [each["name"], *(value["name"] for value in each["values"])]
    for each in described["records"]:
        names.append(each["name"])
        if "same_as" in each:
            lines += ["", "", f"{each['name']} = {each['same_as']}"]
            continue
        text = "\n".join([each["text"], "", *(f"{field['name']}: {field['text']}"
                                              for field in each["fields"])])
        fields = ", ".join(
            f'("{field["name"]}", {repr(field_type(field))}, {tuple(field["shape"])})'
            if field["type"] in TYPE_NAMES else
            f'("{field["name"]}", {field["type"]}.dtype, {tuple(field["shape"])})'
            for field in each["fields"])
        lines += ["", "", f"class {each['name']}(Record):",
                  f'    """{textwrap.indent(text, "    ").strip()}\n    """', "",
                  *(f"    {field['name']}: Any" for field in each["fields"]),
                  f"    fields = [{fields}]"]
    lines += ["", "", "__all__ = [" + ", ".join(f'"{name}"' for name in names) + "]", ""]
    return "\n".join(lines)


def field_type(field):
    return TYPE_NAMES[field["type"]]


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("api", type=pathlib.Path, help="kxmaths5.json")
    parser.add_argument("table", type=pathlib.Path, help="the folder for _table.h")
    parser.add_argument("package", type=pathlib.Path, help="the folder for the other files")
    options = parser.parse_args()
    api = Api(json.loads(options.api.read_text(encoding="utf-8")))
    files = {"_functions.py": functions_module(api), "_constants.py": constants_module(api), **STUBS}
    for name, text in files.items():
        (options.package / name).write_text(text, encoding="utf-8")
    (options.table / "_table.h").write_text(c_table(api), encoding="utf-8")


if __name__ == "__main__":
    main()
