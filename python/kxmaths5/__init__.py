"""Maths for 3-D work, with the same bits on every machine: the functions of the library kxmaths5.

Functions have the names and the order of arguments that they have in C; help(KXM4Inverse) prints what
one does. What NumPy changes:

Every function is a generalised ufunc. Records are the last dimensions of float32 arrays: KXV3, KXP3
(3,), KXP2 (2,), KXP4, KXQuat, KXPlane (4,), KXM3 (3, 3), KXM4 (4, 4), KXBox, KXLine, KXRay (2, 3),
KXPosition (6,), KXComponents (16,), KXTriangle (17,) words. All dimensions in front of them broadcast.
Numbers of other types and lists are converted; strides and overlaps are taken care of.

Outputs are made and returned, after the result if there is one; several make a tuple. What C changes in
place is an input here, and its new value is returned. out=array, or whatever the output's name is,
writes there instead; out=, where=, axes=, casting= and so on are the ufunc's. Where C allows an output
to be null, name=False leaves it out. An output holds NaN where the function writes nothing.

The functions that in C begin with kx_ have their names without it: dot, look_at, perspective. Mesh
casts many rays at a mesh.

KXPosition, KXComponents and KXTriangle have named fields: they come back as NumPy records, and
structured arrays of them are taken.

A wrong type or shape, an index out of range and an array that can't be written to are a TypeError or a
ValueError that names the argument.
"""
from ._constants import *
from ._constants import VERSION as __version__
from ._constants import __all__ as _constant_names
from ._functions import *
from ._functions import __all__ as _function_names
from ._mesh import Mesh

__all__ = [*_constant_names, *_function_names, "Mesh"]
