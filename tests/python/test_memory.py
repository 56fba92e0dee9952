"""Nothing leaks: calls in a loop keep the memory that they had."""
import gc
import resource

import numpy as np
import pytest
from conftest import square

import orvantis_zones as oz

POINTS = np.random.default_rng(2).uniform(-1, 3, (64, 3))


def a_site():
    site = oz.Site()
    site.fields[0] = [oz.Zone(square(name="gate")), None]
    site.exclusion_zones.append(oz.Zone(square(0.5, name="pillar")))
    site.counter_lines["door"] = oz.CounterLine((0, 1), (2, 1))
    return site


SITE = a_site()
OUT = np.empty(len(POINTS), np.uint64)
TEXT = SITE.dumps()
SESSION = oz.Session(SITE)
STAMPS = iter(range(10**9))


def refused(call):
    try:
        call()
    except (ValueError, TypeError):
        return
    raise AssertionError("was not refused")


CALLS = {
    "classify into": (300_000, lambda: SITE.classify(POINTS, OUT)),
    "classify": (300_000, lambda: SITE.classify(POINTS)),
    "count": (50_000, lambda: SITE.count(POINTS)),
    "zone": (300_000, lambda: SITE.zone(0, 0)),
    "contains": (50_000, lambda: SITE.zone(0, 0).contains_points(POINTS)),
    "shape": (50_000, lambda: oz.Zone(oz.Polygon([(0, 0), (1, 0), (1, 1)])).shape.vertices),
    "edit": (5_000, lambda: (setattr(SITE.zone(0, 0), "z_max", 2.0), SITE.fields.__setitem__(1, [oz.Zone(square())]))),
    "stale": (5_000, lambda: (setattr(SITE.zone(0, 0), "shape", square()), SITE.classify(POINTS))),
    "refused points": (20_000, lambda: refused(lambda: SITE.classify(POINTS[:, :2]))),
    "refused out": (20_000, lambda: refused(lambda: SITE.classify(POINTS, OUT[:3]))),
    "structured": (20_000, lambda: SITE.classify(POINTS.astype(np.float32).view([(n, "f4") for n in "xyz"])[:, 0])),
    "load": (1_000, lambda: oz.loads(TEXT)),
    "refused document": (2_000, lambda: refused(lambda: oz.loads("{"))),
    "take": (10_000, lambda: SESSION.take(next(STAMPS), POINTS, [oz.TrackedObject(7, 1, 1, 1, 1, 0, 0, 1)])),
    "refused take": (5_000, lambda: refused(lambda: SESSION.take(-1, POINTS))),
    "copy": (3_000, lambda: SITE.copy()),
    "picture": (500, lambda: SITE.to_svg(POINTS)),
}


def used():
    gc.collect()
    with open("/proc/self/statm") as file:
        return int(file.read().split()[1]) * resource.getpagesize()


@pytest.mark.parametrize("name", CALLS)
def test_a_loop_keeps_its_memory(name):
    times, call = CALLS[name]
    for _ in range(times // 10):
        call()
    before = used()
    for _ in range(times):
        call()
    # A leak of one byte a call would hide in this; one of an object, of 40 bytes or more, would not.
    assert used() - before < max(2_000_000, 8 * times)
