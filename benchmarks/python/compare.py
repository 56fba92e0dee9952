#!/usr/bin/env python3
"""Points in zones by this module and by others, each plain and behind bounding boxes.

    PYTHONPATH=build/release/python benchmarks/python/compare.py [POINTS]

Results are compared before anything is timed: only points whose distance from every border is above 1 mm are given, since
the others differ there. Times are processor time, the best of several runs, in milliseconds, on one thread. Needs
python3-shapely and python3-matplotlib."""
import sys
import time
import warnings

import matplotlib.path
import numpy as np
from sites import EXTENT, site_of

with warnings.catch_warnings():
    warnings.simplefilter("ignore")
    import shapely.geometry
    import shapely.prepared
    import shapely.vectorized


def far_from_borders(points, rings):
    away = np.ones(len(points), bool)
    for ring in rings:
        for a, b in zip(ring, np.roll(ring, -1, 0)):
            along = np.clip(((points[:, :2] - a) @ (b - a)) / ((b - a) @ (b - a)), 0, 1)
            away &= np.hypot(*(points[:, :2] - a - along[:, None] * (b - a)).T) > 1e-3
    return points[away]


def ray_casting(ring, x, y):
    inside = np.zeros(len(x), bool)
    for (ax, ay), (bx, by) in zip(ring, np.roll(ring, -1, 0)):
        if ay != by:
            inside ^= ((ay > y) != (by > y)) & (x < (bx - ax) * (y - ay) / (by - ay) + ax)
    return inside


def with_shapely(ring):
    polygon = shapely.geometry.Polygon(ring)
    return lambda x, y: shapely.vectorized.contains(polygon, x, y)


def with_matplotlib(ring):
    path = matplotlib.path.Path(ring)
    return lambda x, y: path.contains_points(np.stack([x, y], 1))


def with_numpy(ring):
    return lambda x, y: ray_casting(ring, x, y)


def masks_of(tests, rings, bits, points, boxed):
    x, y, z = np.ascontiguousarray(points.T)
    masks = np.zeros(len(points), np.uint64)
    high = (z >= 0.0) & (z <= 2.0)
    for test, ring, bit in zip(tests, rings, bits):
        if not boxed:
            masks[test(x, y) & high] |= bit
            continue
        (left, low), (right, top) = ring.min(0), ring.max(0)
        near = np.flatnonzero(high & (x >= left) & (x <= right) & (y >= low) & (y <= top))
        masks[near[test(x[near], y[near])]] |= bit
    return masks


def best(call, seconds=1.0):
    times = []
    while sum(times) < seconds or len(times) < 3:
        begin = time.process_time()
        call()
        times.append(time.process_time() - begin)
    return min(times) * 1e3


def main(count=1_000_000):
    random = np.random.default_rng(15)
    print(f"{count} points, float64\n\n| zones | by | ms | times this module |\n|---|---|---|---|")
    for zones in (1, 56):
        site, rings, bits = site_of(zones, random)
        points = far_from_borders(random.uniform((-EXTENT, -EXTENT, -1), (EXTENT, EXTENT, 3), (count, 3)), rings)
        out = np.empty(len(points), np.uint64)
        expected = site.classify(points)
        ours = best(lambda: site.classify(points, out))
        print(f"| {zones} | this module, with out= | {ours:.2f} | |")
        print(f"| {zones} | this module, a new array | {best(lambda: site.classify(points)):.2f} | |")
        for name, make in (("shapely", with_shapely), ("matplotlib", with_matplotlib), ("numpy", with_numpy)):
            tests = [make(ring) for ring in rings]
            for boxed in (False, True):
                def ask():
                    return masks_of(tests, rings, bits, points, boxed)
                if not np.array_equal(ask(), expected):
                    raise SystemExit(f"{name} gives other masks")
                taken = best(ask)
                print(f"| {zones} | {name}{', behind boxes' if boxed else ''} | {taken:.1f} | {taken / ours:.1f} |")
    one = np.zeros((1, 3))
    out = np.empty(1, np.uint64)
    begin = time.process_time()
    for _ in range(100_000):
        site.classify(one, out)
    print(f"\nA call with one point takes {(time.process_time() - begin) * 10:.2f} us.")


if __name__ == "__main__":
    main(*map(int, sys.argv[1:]))
