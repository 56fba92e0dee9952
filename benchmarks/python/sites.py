"""The sites that the benchmarks ask."""
import math

import numpy as np

import orvantis_zones as oz

EXTENT = 50.0


def site_of(count, random):
    """So many polygons of 8 corners and 2 to 6 m, which do not cross themselves; 24 in fields, the others excluded."""
    rings = []
    for _ in range(count):
        angles = np.sort(random.uniform(0, 2 * math.pi, 8))
        radii = random.uniform(1.0, 3.0, 8)
        rings.append(np.stack([radii * np.cos(angles), radii * np.sin(angles)], 1) + random.uniform(-45, 45, 2))
    site = oz.Site()
    zones = [oz.Zone(oz.Polygon(ring, f"z{number}"), 0.0, 2.0) for number, ring in enumerate(rings)]
    site.fields = [zones[first:first + 3] for first in range(0, min(count, 24), 3)]
    site.exclusion_zones = zones[24:]
    bits = [np.uint64(1 << number) for number in range(count)]
    return site, rings, bits
