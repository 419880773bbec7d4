"""A mesh that rays are cast at."""
from __future__ import annotations

from typing import Any

import numpy as np
from numpy.typing import ArrayLike, NDArray

from . import _functions as kx
from . import _tree


class Mesh:
    """Triangles that rays are cast at, in a hierarchy of boxes.

    The mesh is kept as the intersection functions serve best: about the origin, 512 to 1024 units
    large, each triangle begun at its best corner. What comes in and goes out is in the caller's own
    place and unit.

    vertices: (n, 3). faces: (m, 3) indices of them; each row is a triangle, and its number is what
    nearest returns. can_be_hit: (m,) bool, False for triangles too small or too flat.
    """

    def __init__(self, vertices: ArrayLike, faces: ArrayLike) -> None:
        self.vertices = np.ascontiguousarray(_numbers(vertices, "vertices"))
        self.faces: NDArray[Any] = np.asarray(faces)
        if self.vertices.ndim != 2 or self.vertices.shape[1] != 3:
            raise ValueError(f"Mesh: vertices has the shape {self.vertices.shape}, not (n, 3)")
        if self.faces.ndim != 2 or self.faces.shape[1] != 3 or not len(self.faces):
            raise ValueError(f"Mesh: faces has the shape {self.faces.shape}, not (m, 3) with m above 0")
        if self.faces.dtype.kind not in "iu":
            raise TypeError(f"Mesh: faces is made of {self.faces.dtype}, not of integers")
        for vertex in (self.faces.min(), self.faces.max()):
            if not 0 <= vertex < len(self.vertices):
                raise ValueError(f"Mesh: faces has the vertex {vertex}, and vertices has {len(self.vertices)}")
        self.box: NDArray[np.float32] = kx.box_around(self.vertices)
        status, self._to, self._from = kx.fit_mesh(self.box)
        if status:
            raise ValueError("Mesh: its box has no extent, or coordinates that are not finite")
        self._scale = float(self._to[0, 0])
        self._vertices = kx.KXM4P3I1(self._to, self.vertices)
        status, triangles = kx.triangle(self._vertices, *self.faces.T)
        self.can_be_hit: NDArray[np.bool_] = status == 0
        self._triangles = np.ascontiguousarray(triangles).view(np.uint32)
        self._reach_and_tree: tuple[float, Any] = (0.0, None)

    def __getstate__(self) -> dict[str, Any]:
        """The tree is not pickled; it is built again when it is needed."""
        return {**self.__dict__, "_reach_and_tree": (0.0, None)}

    def nearest(self, rays: ArrayLike) -> tuple[Any, Any, Any]:
        """The nearest triangle that each ray of (..., 2, 3) meets.

        Returns its number, -1 for none, the point of contact, and its distance from the origin of
        the ray, in the mesh's unit; both are NaN for none. A direction may have any length but 0.
        """
        inside = self._carried(kx.KXTransformRay, rays, "rays")
        triangles = np.empty(inside.shape[:-2], np.int64)
        points = np.full((*inside.shape[:-2], 3), np.nan, np.float32)
        _tree.nearest(self._reaching(inside[..., 0, :]), inside, triangles, points)
        distances = kx.distance(inside[..., 0, :], points) / self._scale
        return triangles[()], kx.KXM4P3I1(self._from, points), distances

    def meets(self, rays: ArrayLike) -> Any:
        """Whether each ray of (..., 2, 3) meets any triangle, which is found sooner than the nearest."""
        inside = self._carried(kx.KXTransformRay, rays, "rays")
        verdicts = np.empty(inside.shape[:-2], np.bool_)
        _tree.met(self._reaching(inside[..., 0, :]), inside, verdicts)
        return verdicts[()]

    def blocks(self, lines: ArrayLike) -> Any:
        """Whether any triangle is between the start and the end of each line of (..., 2, 3)."""
        inside = self._carried(kx.KXTransformLine, lines, "lines")
        verdicts = np.empty(inside.shape[:-2], np.bool_)
        _tree.blocked(self._reaching(inside), inside, verdicts)
        return verdicts[()]

    def _carried(self, carry: Any, paths: ArrayLike, name: str) -> NDArray[np.float32]:
        given = _numbers(paths, name)
        if given.shape[-2:] != (2, 3):
            raise ValueError(f"Mesh: {name} has the shape {given.shape}, which doesn't end in (2, 3)")
        return np.ascontiguousarray(carry(given, self._to))

    def _reaching(self, starts: NDArray[np.float32]) -> Any:
        """The tree, whose boxes are a little larger than what is in them, in proportion to how far away
        paths begin."""
        reach, tree = self._reach_and_tree  # Another thread may exchange both at any time.
        far = 2048.0 + 2.0 * float(np.abs(starts[np.isfinite(starts)]).max(initial=0.0))
        if far > reach:
            tree = _tree.build(self._triangles, self._vertices, 2.0 * far)
            self._reach_and_tree = 2.0 * far, tree
        return tree


def _numbers(value: ArrayLike, name: str) -> NDArray[np.float32]:
    try:
        return np.asarray(value, np.float32)
    except (TypeError, ValueError):
        raise TypeError(f"Mesh: {name} is not an array of numbers") from None
