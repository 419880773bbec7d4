#!/usr/bin/python3
"""Describes the library for other languages: its records, constants and functions, as JSON.

Everything comes from the headers: types, sizes and offsets from libclang, the roles of arguments
from the contracts.
"""
import argparse
import json
import pathlib
import re
import struct
import sys

from clang.cindex import CursorKind, Index, LibclangError, TranslationUnit, TypeKind

import contract
from contract import ContractError

INCLUDE = pathlib.Path(__file__).resolve().parents[2] / "include"


def parse_headers():
    arguments = ["-x", "c", "-std=c99", f"-I{INCLUDE}"]
    everything = "#include <kxmaths5.h>\n#include <kxmaths5/everyday.h>\n"
    unit = Index.create().parse("host.c", args=arguments, unsaved_files=[("host.c", everything)],
                                options=TranslationUnit.PARSE_DETAILED_PROCESSING_RECORD)
    for diagnostic in unit.diagnostics:
        raise ContractError(str(diagnostic))
    return unit


def type_name(kind):
    return kind.spelling.replace("const ", "").removesuffix("_t")


def macros(unit):
    """The constants: numbers, and numbers cast to float."""
    found = []
    for cursor in unit.cursor.get_children():
        if cursor.kind != CursorKind.MACRO_DEFINITION or not cursor.spelling.startswith("KX_"):
            continue
        value = "".join(token.spelling for token in list(cursor.get_tokens())[1:])
        if match := re.match(r"\(\(float\)([^)]+)\)", value):
            single, = struct.unpack("f", struct.pack("f", float(match[1])))
            found.append({"name": cursor.spelling, "type": "float", "value": single})
        elif re.match(r"\d", value):
            number = re.match(r"\d+", value)[0]
            found.append({"name": cursor.spelling, "type": "int32", "value": int(number)})
    return found


def fields(cursor):
    for field in cursor.type.get_fields():
        kind, shape = field.type, []
        while kind.kind == TypeKind.CONSTANTARRAY:
            shape.append(kind.element_count)
            kind = kind.element_type
        yield {"name": field.spelling, "type": type_name(kind), "shape": shape,
               "offset": field.get_field_offsetof() // 8, "text": contract.one_line(field.raw_comment)}


def records(cursors):
    found = []
    for cursor in cursors:
        target = cursor.type.get_canonical()
        if cursor.kind == CursorKind.STRUCT_DECL:
            found.append({"name": cursor.spelling, "size": cursor.type.get_size(),
                          "fields": list(fields(cursor)), "text": contract.body(cursor.raw_comment)})
        elif (cursor.kind == CursorKind.TYPEDEF_DECL and target.kind == TypeKind.RECORD
              and target.get_declaration().spelling != cursor.spelling):
            found.append({"name": cursor.spelling, "same_as": type_name(cursor.underlying_typedef_type),
                          "text": contract.body(cursor.raw_comment)})
    return found


def enumerations(cursors):
    """An integer type says which enumerators are its values: those of a prefix."""
    lists = [cursor for cursor in cursors if cursor.kind == CursorKind.ENUM_DECL]
    found = []
    for cursor in cursors:
        text = contract.body(cursor.raw_comment or "")
        prefix = re.search(r"one of the (KX_\w+_) values", text)
        if cursor.kind != CursorKind.TYPEDEF_DECL or not prefix:
            continue
        members, = (each for each in lists
                    if next(each.get_children()).spelling.startswith(prefix[1]))
        found.append({"name": cursor.spelling, "type": type_name(cursor.underlying_typedef_type),
                      "values": [{"name": value.spelling, "value": value.enum_value,
                                  "text": contract.one_line(value.raw_comment)}
                                 for value in members.get_children()],
                      "text": f"{text}\n\n{contract.body(members.raw_comment)}"})
    return found


def groups(header):
    """The named groups of a header: where each begins, its name and its text."""
    text = header.read_text()
    for match in re.finditer(r"/\*\* @name (.+)\n((?: \*.*\n)*?) \*/", text):
        yield match.start(), match[1], contract.body(f"/**\n{match[2]}*/")


def argument(cursor, said, sharings, may_be_null):
    role, text = said.arguments[cursor.spelling]
    kind = cursor.type
    is_array = kind.kind == TypeKind.CONSTANTARRAY
    by_address = is_array or kind.kind == TypeKind.POINTER
    target = kind.element_type if is_array else kind.get_pointee() if by_address else kind
    if (by_address and not target.is_const_qualified()) != (role != "in"):
        raise ContractError(f"{cursor.spelling} is said to be [{role}], its type says otherwise")
    described = {"name": cursor.spelling, "role": role, "text": text, "by": "value"}
    described["type"] = type_name(target)
    if is_array:
        described["shape"] = [kind.element_count]
    if by_address:
        described["by"] = "address"
        described["may_be_null"] = cursor.spelling in may_be_null
        described["may_be"] = sorted(name for pair in sharings if cursor.spelling in pair
                                     for name in pair - {cursor.spelling})
    described.update(contract.extent(text))
    return described


def function(cursor, group):
    said = contract.read(cursor.raw_comment or "")
    names = [parameter.spelling for parameter in cursor.get_arguments()]
    if names != list(said.arguments):
        raise ContractError(f"takes {names}, described are {list(said.arguments)}")
    if (cursor.result_type.kind == TypeKind.VOID) != (not said.result):
        raise ContractError("either it returns something, or @return says so")
    may_be_null, count = contract.nulls(said)
    sharings = contract.sharings(said)
    described = {"name": cursor.spelling, "group": group, "brief": said.brief, "text": said.text,
                 "arguments": [argument(parameter, said, sharings, may_be_null)
                               for parameter in cursor.get_arguments()],
                 "result": {"type": type_name(cursor.result_type), "text": said.result},
                 "notes": said.notes}
    if count:
        described["null_when_0"] = count
    return described


def describe():
    unit = parse_headers()
    headers = sorted(INCLUDE.glob("kxmaths5/*.h"))
    cursors = [cursor for cursor in unit.cursor.get_children() if cursor.location.file
               and pathlib.Path(cursor.location.file.name) in headers]
    topics, functions, everyday = [], [], []
    for header in headers:
        begins = list(groups(header))
        topics += [{"name": name, "header": f"kxmaths5/{header.name}", "text": text}
                   for _, name, text in begins]
        for cursor in cursors:
            if (cursor.kind == CursorKind.FUNCTION_DECL
                    and cursor.location.file.name == str(header)
                    and not cursor.spelling.startswith("kx_detail_")):
                group = [name for start, name, _ in begins if start < cursor.location.offset][-1]
                try:
                    (everyday if cursor.spelling.startswith("kx_") else functions).append(
                        function(cursor, group))
                except ContractError as error:
                    raise ContractError(f"{header.name}: {cursor.spelling}: {error}") from error
    constants = macros(unit)
    version = [str(c["value"]) for c in constants if c["name"].startswith("KX_VERSION_")]
    return {"library": "kxmaths5", "version": ".".join(version), "constants": constants,
            "enumerations": enumerations(cursors), "records": records(cursors),
            "groups": topics, "functions": functions, "everyday": everyday}


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("output", nargs="?", type=pathlib.Path, help="standard output without it")
    options = parser.parse_args()
    try:
        text = json.dumps(describe(), indent=1, ensure_ascii=False) + "\n"
        if options.output:
            options.output.write_text(text)
        else:
            sys.stdout.write(text)
    except (ContractError, LibclangError, OSError) as error:
        sys.exit(f"describe.py: {error}")


if __name__ == "__main__":
    main()
