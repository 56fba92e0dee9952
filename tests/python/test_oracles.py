"""Against others that know nothing of the engine: shapely for polygons, formulas for sectors."""
import math

import numpy as np
import pytest
from hypothesis import given, strategies as st

import orvantis_zones as oz

shapely = pytest.importorskip("shapely.geometry")


def rings(random, corners):
    """Vertices about a centre, so that the edges of the ring do not cross."""
    angles = np.sort(random.uniform(0, 2 * math.pi, corners))
    radii = random.uniform(0.5, 5.0, corners)
    return np.stack([radii * np.cos(angles), radii * np.sin(angles)], axis=1)


@pytest.mark.parametrize("seed", range(40))
def test_polygons_hold_the_points_that_shapely_says(seed):
    random = np.random.default_rng(seed)
    ring = rings(random, random.integers(3, 17)) + random.uniform(-50, 50, 2)
    polygon, theirs = oz.Polygon(ring), shapely.Polygon(ring)
    points = random.uniform(ring.min(axis=0) - 1, ring.max(axis=0) + 1, (400, 2))
    expected = [theirs.contains(shapely.Point(x, y)) for x, y in points]
    assert polygon.contains_xy(*points.T).tolist() == expected
    assert polygon.area == pytest.approx(theirs.area)
    assert polygon.bounds == pytest.approx(theirs.bounds)
    # The corners and the middles of upright or level edges lie on the border, which is outside.
    assert not polygon.contains_xy(*ring.T).any()


@pytest.mark.parametrize("seed", range(20))
def test_footprints_meet_as_shapely_says(seed):
    random = np.random.default_rng(seed)
    shape = oz.Polygon(rings(random, 8))
    theirs = shapely.Polygon(shape.vertices)
    for _ in range(50):
        ring = rings(random, 5) * random.uniform(0.05, 1) + random.uniform(-5, 5, 2)
        other = shapely.Polygon(ring)
        assert shape.contains(ring) == theirs.contains(other)
        assert shape.intersects(ring) == theirs.intersects(other)
        assert shape.overlaps(ring) == theirs.overlaps(other)


COORDINATES = st.integers(-20, 20).map(lambda number: number / 4)


@given(st.tuples(COORDINATES, COORDINATES), st.tuples(COORDINATES, COORDINATES),
       st.lists(st.tuples(COORDINATES, COORDINATES), min_size=1))
def test_rectangles_on_a_grid_hold_what_is_strictly_inside(first, second, points):
    (a, b), (c, d) = first, second
    inside = [min(a, c) < x < max(a, c) and min(b, d) < y < max(b, d) for x, y in points]
    assert oz.Rectangle(first, second).contains_xy(*np.array(points).T).tolist() == inside


@pytest.mark.parametrize("low, high", [(-0.5, 0.75), (0.0, 1.0), (2.0, -2.0), (-3.0, 3.0), (1.0, -1.0), (0.5, 0.5)])
def test_sectors_hold_what_the_bearing_says(low, high):
    random = np.random.default_rng(9)
    points = random.uniform(-4, 4, (5000, 2))
    bearings = np.arctan2(points[:, 1] - 1.0, points[:, 0] + 0.5)
    near = np.hypot(points[:, 0] + 0.5, points[:, 1] - 1.0) <= 3.0
    between = (bearings >= low) & (bearings <= high) if low < high else (bearings >= low) | (bearings <= high)
    sector = oz.Sector(low, high, 3.0, origin=(-0.5, 1.0))
    assert np.array_equal(sector.contains_xy(*points.T), near & between)


def test_a_site_counts_what_shapely_counts(site):
    points = np.random.default_rng(4).uniform((-5, -5, -1), (30, 20, 4), (3000, 3))
    def inside(zone):
        ring = shapely.Polygon(zone.shape.vertices)
        return np.array([zone.z_min <= z <= zone.z_max and ring.contains(shapely.Point(x, y)) for x, y, z in points])
    polygons = [(f, s, z) for f, s, z in site.zones() if isinstance(z.shape, oz.Polygon)]
    excluded = np.any([inside(zone) for zone in site.exclusion_zones], axis=0)
    counts = site.count(points)
    assert counts.excluded == excluded.sum() and len(polygons) > 3
    for field, slot, zone in polygons:
        assert counts.inside[field, slot] == (inside(zone) & ~excluded).sum()
        assert np.array_equal(site.indices(points, field, slot), np.flatnonzero(inside(zone) & ~excluded))
