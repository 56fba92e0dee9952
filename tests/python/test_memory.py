"""Nothing leaks: calls in a loop keep the memory that they had."""
import copy
import ctypes
import gc
import pickle
import sys

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
ZONE = SITE.zone(0, 0)
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
    "classify into": (1_000_000, lambda: SITE.classify(POINTS, OUT)),
    "classify": (300_000, lambda: SITE.classify(POINTS)),
    "count": (50_000, lambda: SITE.count(POINTS)),
    "zone": (300_000, lambda: SITE.zone(0, 0)),
    "contains": (50_000, lambda: SITE.zone(0, 0).contains_points(POINTS)),
    "contains of new zones": (3_000, lambda: oz.Zone(square()).contains_points(POINTS)),
    "shape": (50_000, lambda: oz.Zone(oz.Polygon([(0, 0), (1, 0), (1, 1)])).shape.vertices),
    "edit": (5_000, lambda: (setattr(SITE.zone(0, 0), "z_max", 2.0), SITE.fields.__setitem__(1, [oz.Zone(square())]))),
    "stale": (5_000, lambda: (setattr(ZONE, "shape", square()), SITE.classify(POINTS))),
    "refused points": (20_000, lambda: refused(lambda: SITE.classify(POINTS[:, :2]))),
    "refused out": (20_000, lambda: refused(lambda: SITE.classify(POINTS, OUT[:3]))),
    "structured": (20_000, lambda: SITE.classify(POINTS.astype(np.float32).view([(n, "f4") for n in "xyz"])[:, 0])),
    "load": (1_000, lambda: oz.loads(TEXT)),
    "refused document": (2_000, lambda: refused(lambda: oz.loads("{"))),
    "take": (10_000, lambda: SESSION.take(next(STAMPS), POINTS, [oz.TrackedObject(7, 1, 1, 1, 1, 0, 0, 1)])),
    "refused take": (5_000, lambda: refused(lambda: SESSION.take(-1, POINTS))),
    "copy": (3_000, lambda: SITE.copy()),
    "pickle": (3_000, lambda: pickle.loads(pickle.dumps(SITE))),
    "evaluate": (1_000, lambda: oz.evaluate(SITE, oz.Recording.from_arrays([(0.0, POINTS, None)]))),
    "explain": (3_000, lambda: SESSION.explain(POINTS)),
    "fork": (3_000, lambda: copy.copy(SESSION)),
    "logged": (3_000, lambda: oz.CounterLine((0, 0), (0, 2)).side((1, 1))),
    "picture": (500, lambda: SITE.to_svg(POINTS)),
}


class Used:
    """What is in use now: objects of Python, bytes that the libraries hold, and references to what is passed."""

    def __init__(self):
        gc.collect()
        self.references = [sys.getrefcount(thing) for thing in (POINTS, OUT, SITE, SESSION, TEXT, None, ZONE)]
        self.objects = sys.getallocatedblocks()
        self.bytes = mallinfo().in_use if mallinfo is not None else 0


class Mallinfo(ctypes.Structure):
    _fields_ = [(name, ctypes.c_size_t) for name in "arena _1 _2 _3 mapped _4 _5 blocks _6 _7".split()]

    @property
    def in_use(self):
        return self.blocks + self.mapped


mallinfo = getattr(ctypes.CDLL(None), "mallinfo2", None)
if mallinfo is not None:
    mallinfo.restype = Mallinfo


@pytest.mark.parametrize("name", CALLS)
def test_a_loop_keeps_its_memory(name):
    times, call = CALLS[name]
    for _ in range(max(300, times // 10)):
        call()
    before = Used()
    for _ in range(times):
        call()
    after = Used()
    # Caches come and go; what is lost in each call, be it one object, adds up to more.
    few = max(100, times // 10)
    assert after.objects - before.objects < few
    assert after.bytes - before.bytes < 8 * times + 20_000
    assert all(b - a < few for a, b in zip(before.references, after.references))


def test_a_leak_would_be_found():
    kept, before = [], Used()
    for _ in range(5_000):
        kept.append(object())
    # An allocator of a sanitizer tells no numbers.
    if sys.getallocatedblocks() == 0:
        pytest.skip("this interpreter does not count its objects")
    assert Used().objects - before.objects >= 5_000
    copies = [bytes(1000) for _ in range(100)]
    assert Used().bytes - before.bytes >= 100_000 and copies
