"""What only arrays have: meshes, boxes around clouds, the everyday functions."""
import resource

import numpy as np
import pytest

import kxmaths5 as kx


def sphere(turns=24):
    """Vertices and faces of a ball of radius 1."""
    u, v = np.meshgrid(np.linspace(0, 2 * np.pi, turns), np.linspace(0, np.pi, turns))
    vertices = np.stack([np.sin(v) * np.cos(u), np.cos(v), np.sin(v) * np.sin(u)], -1).reshape(-1, 3)
    corner = (np.arange(turns - 1)[:, None] * turns + np.arange(turns - 1)).ravel()
    faces = np.concatenate([np.stack([corner, corner + 1, corner + turns], -1),
                            np.stack([corner + 1, corner + turns + 1, corner + turns], -1)])
    return vertices, faces


@pytest.mark.parametrize("scale, shift", [(1, 0), (1e-4, 0), (1e7, 0), (3, 500)])
def test_nearest_against_every_triangle(scale, shift):
    vertices, faces = sphere()
    vertices = (vertices * scale + shift).astype(np.float32)
    mesh = kx.Mesh(vertices, faces)
    generator = np.random.default_rng(2)
    starts = generator.uniform(-3, 3, (200, 3))
    rays = np.stack([shift + scale * starts, generator.uniform(-1, 1, (200, 3)) - starts / 2], axis=1)
    numbers, points, distances = mesh.nearest(rays)
    # The same by trying all triangles, in double and with no tree.
    a, b, c = (vertices.astype(float)[faces[:, i]] for i in range(3))
    origin, direction = rays[:, None, 0].astype(np.float32), rays[:, None, 1]
    p = np.cross(direction, c - a)
    with np.errstate(divide="ignore", invalid="ignore"):
        factor = 1 / np.sum((b - a) * p, -1)
        u = np.sum((origin - a) * p, -1) * factor
        q = np.cross(origin - a, b - a)
        v = np.sum(direction * q, -1) * factor
        t = np.sum((c - a) * q, -1) * factor
        t[~((u >= 0) & (v >= 0) & (u + v <= 1) & (t > 0))] = np.inf
    hit = np.isfinite(t.min(axis=1))
    assert 20 < hit.sum() < 180
    assert ((numbers >= 0) == hit).mean() > 0.99
    both = (numbers >= 0) & hit
    lengths = np.linalg.norm(rays[:, 1], axis=-1)
    np.testing.assert_allclose(distances[both], (t.min(axis=1) * lengths)[both],
                               rtol=1e-3, atol=1e-4 * scale + 1e-6 * shift)
    np.testing.assert_allclose(np.linalg.norm(points - rays[:, 0], axis=-1)[both], distances[both],
                               rtol=1e-3, atol=1e-4 * scale + 1e-6 * shift)
    assert np.isnan(points[numbers < 0]).all() and np.isnan(distances[numbers < 0]).all()

    assert (mesh.meets(rays.reshape(20, 10, 2, 3).swapaxes(0, 1)) == (numbers >= 0).reshape(20, 10).T).all()
    ends = rays[:, 0] + 2 * scale * rays[:, 1] / lengths[:, None]
    blocked = mesh.blocks(np.stack([rays[:, 0], ends], axis=1))
    assert (blocked == (hit & (t.min(axis=1) * lengths < 2 * scale))).mean() > 0.98


def test_shapes_of_rays():
    mesh = kx.Mesh(*sphere())
    number, point, distance = mesh.nearest([[5, 0.1, 0.2], [-1, 0, 0]])
    assert np.ndim(number) == np.ndim(distance) == 0 and point.shape == (3,) and 3.9 < distance < 4.1
    assert mesh.nearest(np.zeros((2, 0, 2, 3)))[1].shape == (2, 0, 3)
    far = mesh.nearest([[[5e5, 0.1, 0.2], [-1, 0, 0]], [[5, 0.1, 0.2], [-1, 0, 0]]])[0]
    assert far[1] == number and far[0] >= 0
    # A step of less than KX_TOLERANCE along Y, which on so long a way leads from below the triangle into it: only boxes
    # that are grown for this distance, after those for a nearer one, are on the way.
    wall = kx.Mesh([[0, -300, -300], [0, 300, -300], [0, -300, 300]], [[0, 1, 2]])
    assert wall.nearest([[5, 0, -100], [-1, 0, 0]])[0] == 0
    grazing = [[-1e6, -300.5, -250], [1, 9e-7, 0]]
    nowhere = [[np.nan, 0, np.inf], [1, 0, 0]]
    assert wall.nearest([grazing, nowhere])[0].tolist() == [0, -1] and wall.meets([grazing]).all()
    tree = wall._reach_and_tree[1]
    assert wall.meets([grazing]).all() and wall._reach_and_tree[1] is tree, "built again for each call"
    flat = kx.Mesh([[0, 0, 0], [1, 0, 0], [0, 1, 0]], [[0, 1, 2], [0, 1, 1]])
    assert flat.can_be_hit.tolist() == [True, False]


def test_trees_are_given_back():
    vertices, faces = sphere(100)
    for count in range(60):  # Of several megabytes each.
        kx.Mesh(vertices, faces).meets(np.ones((2, 3)))
        if count == 20:
            before = resource.getrusage(resource.RUSAGE_SELF).ru_maxrss
    assert resource.getrusage(resource.RUSAGE_SELF).ru_maxrss < before + 40000


@pytest.mark.parametrize("call, words", [
    (lambda: kx.Mesh(np.zeros((4, 2)), [[0, 1, 2]]), "vertices has the shape"),
    (lambda: kx.Mesh(np.eye(3), [0, 1, 2]), "faces has the shape"),
    (lambda: kx.Mesh(np.eye(3), np.zeros((0, 3), int)), "m above 0"),
    (lambda: kx.Mesh(np.eye(3), [[0, 1, 3]]), "faces has the vertex 3, and vertices has 3"),
    (lambda: kx.Mesh(np.eye(3), [[0, -1, 2]]), "faces has the vertex -1"),
    (lambda: kx.Mesh(np.full((3, 3), np.nan), [[0, 1, 2]]), "not finite"),
    (lambda: kx.Mesh(np.ones((3, 3)), [[0, 1, 2]]), "no extent"),
    (lambda: kx.Mesh(*sphere()).nearest(np.zeros((4, 3))), "rays has the shape")])
def test_refused(call, words):
    with pytest.raises(ValueError, match=words):
        call()


def test_everyday():
    generator = np.random.default_rng(8)
    a, b, v = generator.normal(size=(50, 4)), generator.normal(size=(50, 4)), generator.normal(size=(50, 3))
    a, b = (each / np.linalg.norm(each, axis=1)[:, None] for each in (a, b))
    product = kx.KXQuatToMatrix(kx.quat_product(a, b))
    np.testing.assert_allclose(product, kx.KXQuatToMatrix(a) @ kx.KXQuatToMatrix(b), atol=1e-6)
    np.testing.assert_allclose(kx.quat_rotate(a, v), kx.KXM4P3I0(kx.KXQuatToMatrix(a), v), atol=1e-6)
    np.testing.assert_allclose(kx.dot(v, v), np.sum(v * v, axis=1), rtol=1e-6)
    status, placement, view = kx.look_at(v, [0, 0, 0], [0, 1, 0])
    assert not status.any()
    np.testing.assert_allclose(placement @ view, np.broadcast_to(np.eye(4), (50, 4, 4)), atol=1e-5)
    projection = kx.perspective(0.8, 1.5, 0.1, 100, kx.KX_DEPTH_0_TO_1)
    rays = kx.screen_to_ray(projection, placement, 300, 200, 600, 400)
    np.testing.assert_allclose(rays[:, 1], -v / np.linalg.norm(v, axis=1)[:, None], atol=1e-6)
    clouds = generator.normal(size=(4, 30, 3)).astype(np.float32)
    np.testing.assert_array_equal(kx.box_around(clouds)[:, 0], clouds.min(axis=1))
    np.testing.assert_array_equal(kx.box_around(clouds[:, ::-2])[:, 1], clouds[:, ::-2].max(axis=1))
    assert np.isnan(kx.box_around(clouds[:, :0])).all()
