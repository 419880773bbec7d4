"""The description against what else knows the functions: the exports, and the catalogue by which
every sharing is tried."""
import itertools
import json
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[2]
API = json.loads((ROOT / "api/kxmaths5.json").read_text("utf-8"))
FUNCTIONS = {each["name"]: each for each in API["functions"]}


def catalogue():
    text = (ROOT / "tests/support/catalogue.h").read_text()
    return re.findall(r'KX_ENTRY\((\w+),\s*"([^"]+)",\s*\w+\)([^;]*);', text)


def test_every_exported_function_is_described():
    exported = (ROOT / "src/exports.txt").read_text().split()
    assert sorted(FUNCTIONS) == sorted(exported) == sorted(name for name, _, _ in catalogue())


def test_what_the_catalogue_lets_a_caller_do():
    for name, sharings, promises in catalogue():
        arguments = FUNCTIONS[name]["arguments"]
        places = range(len(arguments))
        sharings = sharings.split(" ")
        first = sharings[0]

        pairs = {(i, j) for i, j in itertools.combinations(places, 2)
                 if any(each[i] == each[j] and each[i].isalpha() for each in sharings)}
        nulls = {i for i in places for each in sharings if each[i] == "-" and "0" not in each}
        count = {arguments[i]["name"] for i in places if first[i] == "#"}
        wanted = {"by address": [i for i in places if first[i] not in ".#"],
                  "pairs": pairs, "nulls": nulls,
                  "arrays": [i for i in places if count and i > first.index("#")],
                  "indexed": [i for i in places if first[i].isupper()],
                  "null when 0": count if any("0" in each for each in sharings) else set(),
                  "units": {(0, 9)} if "below(10)" in promises else set()}

        described = {"by address": [i for i in places if arguments[i]["by"] == "address"],
                     "pairs": {(i, j) for i, j in itertools.combinations(places, 2)
                               if arguments[j]["name"] in arguments[i].get("may_be", [])},
                     "nulls": {i for i in places if arguments[i].get("may_be_null")},
                     "arrays": [i for i in places if arguments[i].get("count") in count],
                     "indexed": [i for i in places if "indexed_by" in arguments[i]],
                     "null when 0": {FUNCTIONS[name].get("null_when_0")} - {None},
                     "units": {tuple(each["range"]) for each in arguments if "range" in each}}
        assert described == wanted, name
