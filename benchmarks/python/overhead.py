#!/usr/bin/env python3
"""What a call of the module takes beside the same call in C++: the same points and zones, by turns, in one process.

    cmake --build build/benchmark --target direct_call
    PYTHONPATH=build/release/python benchmarks/python/overhead.py build/benchmark/benchmarks/python/libdirect_call.so

Results are compared before anything is timed. Times are processor time, medians of the rounds, on one thread."""
import ctypes
import statistics
import sys
import time

import numpy as np
from sites import EXTENT, site_of

import orvantis_zones as oz


class Direct:
    """The call in C++, with its own reading of the same document."""

    def __init__(self, library, document):
        self._library = ctypes.CDLL(library)
        self._library.classifier_of.restype = ctypes.c_void_p
        self._classifier = ctypes.c_void_p(self._library.classifier_of(document.encode()))
        assert self._classifier

    def seconds(self, points, masks, calls=1):
        call = getattr(self._library, f"seconds_of_{points.dtype}")
        call.restype = ctypes.c_double
        return call(self._classifier, ctypes.c_void_p(points.ctypes.data), ctypes.c_size_t(len(points)),
                    ctypes.c_void_p(masks.ctypes.data), ctypes.c_int(calls))


def timed(call):
    begin = time.thread_time()
    call()
    return time.thread_time() - begin


def compare(site, direct, points, rounds):
    """Medians in milliseconds: in C++, with out=, with a new array."""
    masks, out = np.zeros(len(points), np.uint64), np.zeros(len(points), np.uint64)
    direct.seconds(points, masks)
    if not (np.array_equal(site.classify(points, out), masks) and np.array_equal(site.classify(points), masks)):
        raise SystemExit("the masks differ")
    calls = (lambda: direct.seconds(points, out), lambda: timed(lambda: site.classify(points, out)),
             lambda: timed(lambda: site.classify(points)))
    times = [[] for _ in calls]
    for number in range(rounds):
        # Each is first in turn, so that none always follows the same one.
        for k in range(3):
            times[(number + k) % 3].append(calls[(number + k) % 3]())
    return [statistics.median(each) * 1e3 for each in times]


def main(library, count=1_000_000, rounds=151):
    random = np.random.default_rng(15)
    print(f"{count} points, {rounds} rounds\n")
    print("| zones | type | C++ ms | out= ms | ratio | new array ms | ratio |\n|---|---|---|---|---|---|---|")
    for zones in (1, 56):
        site, _, _ = site_of(zones, random)
        direct = Direct(library, site.dumps())
        for real in (np.float32, np.float64):
            points = random.uniform((-EXTENT, -EXTENT, -1), (EXTENT, EXTENT, 3), (count, 3)).astype(real)
            plain, into, new = compare(site, direct, points, rounds)
            print(f"| {zones} | {points.dtype} | {plain:.3f} | {into:.3f} | {into / plain:.3f} | {new:.3f} | "
                  f"{new / plain:.3f} |")
        one, out, calls = points[:1].copy(), np.zeros(1, np.uint64), 20_000
        each = [(timed(lambda: [site.classify(one, out) for _ in range(calls)]) - direct.seconds(one, out, calls)) / calls
                for _ in range(11)]
        print(f"\n{zones} zones: a call adds {statistics.median(each) * 1e6:.2f} us.\n")
    print(f"orvantis_zones {oz.__version__}")


if __name__ == "__main__":
    main(sys.argv[1], *map(int, sys.argv[2:]))
