"""Maths for 3-D work, exact to the last bit: the functions of the library kxmaths5.

Functions have the names and the order of arguments that they have in C; help(KXM4Inverse) tells
what one does. What Python changes:

Records are float32 arrays: KXV3, KXP3 of shape (3,), KXP2 (2,), KXP4, KXQuat, KXPlane (4,), KXM3
(3, 3), KXM4 (4, 4), KXBox, KXLine, KXRay (2, 3). KXPosition, KXComponents and KXTriangle are classes
with named fields. An array of n records has n in front: (n, 3). Any record may also be given as an
instance of its class, or as a list of its numbers.

An array is used as it stands and never copied: it must be float32, of the right shape and
contiguous. Lists, tuples and numbers are copied.

A count is left out, since an array knows its length. Outputs are left out too: they are made and
returned, behind the result if there is one; several make a tuple. out=array, or whatever the
output's name is, writes there instead. Where C allows an output to be null, out=False leaves it out.
A new output holds NaN where the function writes nothing. An argument that is both in and out is
changed in place if it is an array, and returned.

What C leaves to its caller is checked first: TypeError or ValueError tell what is wrong with an
argument's type, shape or range, or which two overlap that must not, and the library isn't called.
"""
import enum as _enum
import json as _json
import pathlib as _pathlib

from ._functions import make_function as _make_function
from ._library import load as _load
from ._records import make_classes as _make_classes

_api = _json.loads((_pathlib.Path(__file__).parent / "kxmaths5.json").read_text(encoding="utf-8"))
_library = _load(_api["version"])
_groups = {_group["name"]: _group for _group in _api["groups"]}
_classes = _make_classes(_api["records"])

__version__ = _api["version"]
globals().update(_classes)
for _constant in _api["constants"]:
    globals()[_constant["name"]] = _constant["value"]
for _described in _api["enumerations"]:
    _type = _enum.IntEnum(_described["name"],
                          [(_value["name"], _value["value"]) for _value in _described["values"]],
                          module=__name__)
    _type.__doc__ = _described["text"]
    globals()[_described["name"]] = _type
    globals().update(_type.__members__)
for _described in _api["functions"]:
    globals()[_described["name"]] = _make_function(
        _library, _described, _groups[_described["group"]], _classes)

__all__ = [_name for _name in globals() if _name.startswith("KX")]
