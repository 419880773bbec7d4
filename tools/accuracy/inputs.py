"""Inputs from a seed, many at a time. An array has its inputs in the last dimension, so that x, y, z = vectors.

Each input has a generator of its own: input 7 is the same one however many are drawn, and whatever had to be drawn
again for the others.
"""
import numpy as np


class Random:
    """SplitMix64, one for each input."""

    def __init__(self, states):
        self.states = states

    @classmethod
    def of_inputs(cls, seed, first, end):
        return cls(np.uint64(seed) + np.arange(first, end, dtype=np.uint64) * np.uint64(0xd1342543de82ef95))

    def word(self):
        self.states = x = self.states + np.uint64(0x9e3779b97f4a7c15)
        x = (x ^ (x >> np.uint64(30))) * np.uint64(0xbf58476d1ce4e5b9)
        x = (x ^ (x >> np.uint64(27))) * np.uint64(0x94d049bb133111eb)
        return x ^ (x >> np.uint64(31))

    def below(self, limit):
        return ((self.word() >> np.uint64(32)) * np.uint64(limit) >> np.uint64(32)).astype(np.uint32)

    def between(self, low, high):
        """Uniform between two bounds."""
        low, high = np.asarray(low, float), np.asarray(high, float)
        return (low + (high - low) * ((self.word() >> np.uint64(11)) * 2.0**-53)).astype(np.float32)

    def uniform(self, limit, *shape):
        """Up to a magnitude."""
        return self._many(shape, lambda: self.between(-limit, limit))

    def spread(self, low, high, *shape):
        """Either sign, and a magnitude from 2^low to 2^high: each binade as often as any other."""
        def one():
            exponent = low + self.below(high - low).astype(int)
            magnitude = np.ldexp(self.below(2**23) + 2.0**23, exponent - 23)
            return np.where(self.below(2) == 0, magnitude, -magnitude).astype(np.float32)
        return self._many(shape, one)

    def _many(self, shape, draw):
        values = np.array([draw() for _ in range(int(np.prod(shape)))])
        return values.reshape(*shape, len(self.states))

    def until_accepted(self, draw):
        """What `draw` makes of a Random, drawn again where the last of its arrays is false."""
        *arrays, accepted = draw(self)
        left = np.flatnonzero(~accepted)
        while left.size:
            again = Random(self.states[left])
            *redrawn, accepted = draw(again)
            for array, new in zip(arrays, redrawn):
                array[..., left] = new
            self.states[left] = again.states
            left = left[~accepted]
        return arrays

    def direction(self, size):
        """A unit vector of doubles, every direction alike."""
        def draw(random):
            v = random.uniform(1, size).astype(float)
            square = (v * v).sum(0)
            return v / np.sqrt(square), (square >= 0.01) & (square <= 1)
        direction, = self.until_accepted(draw)
        return direction

    def unit_vector(self):
        return single(self.direction(3))

    def rotation(self):
        """Any rotation of space, every one alike."""
        x, y, z, w = self.direction(4)
        return np.array([[1 - 2 * (y * y + z * z), 2 * (x * y - w * z), 2 * (x * z + w * y)],
                         [2 * (x * y + w * z), 1 - 2 * (x * x + z * z), 2 * (y * z - w * x)],
                         [2 * (x * z - w * y), 2 * (y * z + w * x), 1 - 2 * (x * x + y * y)]])

    def rotation_of_plane(self):
        x, y = self.direction(2)
        return np.array([[x, -y], [y, x]])

    def rotation_of_four(self):
        """Of four dimensions: p*v*q, with p and q unit quaternions and v any."""
        x, y, z, w = self.direction(4)
        left = np.array([[w, -z, y, x], [z, w, -x, y], [-y, x, w, z], [-x, -y, -z, w]])
        x, y, z, w = self.direction(4)
        return product(left, np.array([[w, z, -y, x], [-z, w, x, y], [y, -x, w, z], [-x, -y, -z, w]]))

    def scaled_rotation(self):
        """Scaled along its own axes, then turned."""
        return self.rotation() * self.scales(-4, 4)

    def conditioned_block(self):
        """Any block whose longest and shortest stretch differ by a factor of 64 at most."""
        first, second = self.rotation(), self.rotation()
        return product(first * self.scales(-3, 3), second)

    def scales(self, low, high, size=3):
        return self.spread(low, high, size).astype(float)

    def conditioned_matrix(self):
        """The same of four dimensions."""
        first, second = self.rotation_of_four(), self.rotation_of_four()
        return single(product(first * self.scales(-3, 3, 4), second))

    def near_unit(self):
        return self.uniform(0.25, 4, 4) + np.eye(4, dtype=np.float32)[..., None]

    def placement(self):
        return affine(self.scaled_rotation(), self.uniform(1000, 3))

    def placed_in_plane(self, block):
        """The transform of the plane with a block and any translation."""
        return affine(block, self.uniform(1000, 2))

    def placement_in_plane(self):
        scale = self.scales(-4, 4)[:2]
        return self.placed_in_plane(self.rotation_of_plane() * scale)

    def sheared_placement(self):
        """diag(scale)*H*R."""
        shear = identity(3, len(self.states))
        shear[1, 0], shear[2, 0], shear[2, 1] = self.uniform(1, 3)
        scale = self.scales(-4, 4)
        block = product(scale[:, None] * shear, self.rotation())
        return affine(block, self.uniform(1000, 3))

    def sheared_in_plane(self):
        scale = self.scales(-4, 4)[:2]
        shear = identity(2, len(self.states))
        shear[1, 0] = self.uniform(1)
        return self.placed_in_plane(product(scale[:, None] * shear, self.rotation_of_plane()))

    def quarter_turns(self):
        """Three angles, every other one the single next to a multiple of a quarter turn."""
        def one():
            quarters, is_quarter = self.below(9).astype(int) - 4, self.below(2) == 0
            return np.where(is_quarter, single(quarters * (np.pi / 2)), self.uniform(np.pi))
        return np.array([one() for _ in range(3)])

    def position(self):
        return np.concatenate([self.uniform(1000, 3), self.uniform(np.pi, 3)])

    def components(self):
        """No shear and no perspective."""
        parts = np.zeros((16, len(self.states)), np.float32)
        parts[0:3], parts[6:9], parts[9:12] = self.spread(-4, 4, 3), self.uniform(np.pi, 3), self.uniform(1000, 3)
        parts[15] = 1
        return parts

    def box(self):
        return np.sort(self.uniform(1000, 2, 3), axis=0)

    def ray(self):
        return np.array([self.uniform(1000, 3), self.unit_vector()])

    def point_of(self, corners):
        """Somewhere in a triangle, in doubles."""
        u, v = self.between(0, 1).astype(float), self.between(0, 1).astype(float)
        is_beyond = u + v > 1
        u, v = np.where(is_beyond, 1 - u, u), np.where(is_beyond, 1 - v, v)
        return corners[0] * (1 - u - v) + corners[1] * u + corners[2] * v

    def steep_vector(self):
        return np.array([self.spread(-16, 8), self.uniform(1000), self.spread(-16, 8)])


def product(a, b):
    """Of two matrices, or of a matrix and a vector."""
    return np.einsum("ij...,j...->i...", a, b)


def single(numbers):
    return numbers.astype(np.float32)


def affine(block, translation):
    """The transform with a block and a translation, in singles."""
    size = len(block)
    matrix = np.zeros((size + 1, size + 1, block.shape[-1]), np.float32)
    matrix[:size, :size] = block
    matrix[:size, size] = translation
    matrix[size, size] = 1
    return matrix


def identity(size, inputs, dtype=float):
    """A unit matrix for each input."""
    return np.repeat(np.eye(size, dtype=dtype)[..., None], inputs, axis=-1)
