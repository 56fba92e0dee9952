"""What shapes, zones and lines can do that needs no engine."""
import numpy as np

from . import _arrays, _core
from ._core import CounterLine, Field, Polygon, Rectangle, Sector, SensorZone, Zone, _Shape

# Fewer than these are asked one by one: the tables of the classifier would take longer to make.
_FEW = 64


def _contains_each(contains, arrays):
    found = [contains(*values) for values in zip(*(array.ravel().tolist() for array in arrays))]
    return np.array(found, dtype=np.bool_).reshape(arrays[0].shape)


def _contains(owner, shape, z_min, z_max, arrays):
    if arrays[0].ndim == 0:
        return owner._contains(*(float(array) for array in arrays))
    if arrays[0].size < _FEW:
        return _contains_each(owner._contains, arrays)
    columns = [array.ravel() for array in arrays]
    points = np.stack(columns if len(columns) == 3 else [*columns, np.zeros_like(columns[0])], axis=1)
    return _core.contains_points(shape, z_min, z_max, points, None).reshape(arrays[0].shape)


def contains_xy(self, x, y):
    """Which points of the plan are inside. Arrays broadcast.

    bool for two numbers, else a bool array. A point on the edge of a polygon is outside; that on the arc of a sector
    is inside.

    >>> Polygon([(0, 0), (4, 0), (0, 3)]).contains_xy([1, 3], 1)
    array([ True, False])
    """
    return _contains(self, self, -np.inf, np.inf, _arrays.coordinates(x, y))


def contains_xyz(self, x, y, z):
    """As contains_xy of the shape, and z_min <= z <= z_max.

    >>> Zone(Rectangle((0, 0), (2, 2)), 0.0, 1.0).contains_xyz(1, 1, [0.5, 1.0, 1.5])
    array([ True,  True, False])
    """
    return _contains(self, self.shape, self.z_min, self.z_max, _arrays.coordinates(x, y, z))


def contains_points(self, points, out=None):
    """Whether each point is in the zone: a bool array (N,), or `out`, filled.

    points: (N, 3 or more) or structured with x, y and z; float32 and float64 of any strides are not copied.

    >>> Zone(Rectangle((0, 0), (2, 2))).contains_points([(1, 1, 1), (3, 1, 1)])
    array([ True, False])
    """
    return _core.contains_points(self.shape, self.z_min, self.z_max, points, out)


def indices(self, points):
    """Which points are in the zone: their indices, ascending.

    >>> Zone(Rectangle((0, 0), (2, 2))).indices([(1, 1, 1), (3, 1, 1), (1.5, 1, 1)])
    array([0, 2])
    """
    return np.flatnonzero(contains_points(self, points))


def from_geo(geometry, name=""):
    """A polygon from anything with a `__geo_interface__` of type Polygon, or from such a mapping; holes are refused.

    >>> Polygon.from_geo({"type": "Polygon", "coordinates": [[(0, 0), (4, 0), (0, 3), (0, 0)]]}).area
    6.0
    """
    mapping = getattr(geometry, "__geo_interface__", geometry)
    if not isinstance(mapping, dict) or mapping.get("type") != "Polygon":
        kind = mapping.get("type") if isinstance(mapping, dict) else type(geometry).__name__
        raise ValueError(f"geometry: {kind} was given; it must be a Polygon")
    rings = mapping["coordinates"]
    if len(rings) > 1:
        raise ValueError(f"geometry: it has {len(rings) - 1} holes; a zone has none. Make the hole an exclusion zone")
    ring = [position[:2] for position in rings[0]] if rings else []
    if len(ring) > 1 and tuple(ring[0]) == tuple(ring[-1]):
        ring = ring[:-1]  # closed there, and read as closed here
    return Polygon(ring, name)


def geo(self):
    """The shape as GeoJSON has it, so that shapely.geometry.shape(zone.shape) works."""
    ring = [tuple(vertex) for vertex in self.vertices.tolist()]
    return {"type": "Polygon", "coordinates": [[*ring, *ring[:1]]]}


def side(self, xy):
    """On which side of the line each point is: 0 left, 1 right, 2 on it; int32 of shape (...) for xy of shape (..., 2).

    Left and right are seen from first to second; the line goes on beyond them.

    >>> CounterLine((0, 0), (0, 5)).side([(-1, 2), (1, 2), (0, 9)])
    array([0, 1, 2], dtype=int32)
    """
    xy = _arrays._array(xy, "xy", "it is an array (..., 2) of numbers").astype(np.float64)
    if xy.ndim == 0 or xy.shape[-1] != 2:
        raise ValueError(f"xy: {_arrays._shown(xy)} was given; it is an array (..., 2) of numbers")
    sides = [self._side(x, y) for x, y in xy.reshape(-1, 2).tolist()]
    return np.array(sides, dtype=np.int32).reshape(xy.shape[:-1])


def with_left(first, second, left_of, name=""):
    """A line between the two points, ordered so that the point `left_of` lies left of it.

    >>> CounterLine.with_left((0, 0), (0, 5), left_of=(2, 2)).first
    (0.0, 5.0)
    """
    return CounterLine._with_left(first, second, left_of, name)


def _arguments(*values, **named):
    return ", ".join([*(repr(value) for value in values), *(f"{k}={v!r}" for k, v in named.items())])


def _name(self):
    return {"name": self.name} if self.name else {}


def _pairs(array):
    return [tuple(row) for row in array.tolist()]


_REPRS = {
    Polygon: lambda s: f"Polygon({_arguments(_pairs(s.vertices), **_name(s))})",
    Rectangle: lambda s: f"Rectangle({_arguments(*_pairs(s.corners), s.rotation_deg, **_name(s))})",
    Sector: lambda s: f"Sector({_arguments(s.min_angle, s.max_angle, s.radius, s.origin, **_name(s))})",
    Zone: lambda z: f"Zone({z.shape!r}, {z.z_min!r}, {z.z_max!r})",
    SensorZone: lambda z: f"SensorZone({z.shape!r}, {z.z_min!r}, {z.z_max!r}, id={z.id!r})",
    Field: lambda f: f"Field({_arguments(list(f), **_name(f))})",
    CounterLine: lambda line: f"CounterLine({_arguments(line.first, line.second, **_name(line))})",
}


def _complete():
    """Gives the engine's classes what stands above."""
    for made, show in _REPRS.items():
        made.__repr__ = show
    _Shape.contains_xy = contains_xy
    _Shape.__geo_interface__ = property(geo)
    Polygon.from_geo = staticmethod(from_geo)
    Zone.contains_xyz = contains_xyz
    Zone.contains_points = contains_points
    Zone.indices = indices
    CounterLine.side = side
    CounterLine.with_left = staticmethod(with_left)


_complete()
