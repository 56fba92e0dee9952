"""What the engine's answers are told as."""
from dataclasses import dataclass

import numpy as np


@dataclass(frozen=True, eq=False)
class Counts:
    """How many points of a frame are where.

    inside: uint64 (8, 3), the points in each zone and in no exclusion zone, by field and slot. excluded: points in an
    exclusion zone. no_returns: points with a coordinate that is not finite, which count nowhere. total: all points.
    """
    inside: np.ndarray
    excluded: int
    no_returns: int
    total: int

    def __eq__(self, other):
        if not isinstance(other, Counts):
            return NotImplemented
        return (np.array_equal(self.inside, other.inside) and self.excluded == other.excluded
                and self.no_returns == other.no_returns and self.total == other.total)

    __hash__ = None


def zone_bit(field, zone):
    """The bit of a zone in a mask, shifted: uint64. Raises IndexError.

    >>> int(zone_bit(1, 0))
    8
    """
    if not (0 <= field < 8 and 0 <= zone < 3):
        raise IndexError(f"zone {field}/{zone} is not in a site; it has fields 0 to 7 of zones 0 to 2")
    return np.uint64(1 << (3 * field + zone))


def exclusion_bit(k):
    """The bit of exclusion zone number k in a mask, shifted: uint64. Raises IndexError.

    >>> hex(exclusion_bit(0))
    '0x1000000'
    """
    if not 0 <= k < 32:
        raise IndexError(f"exclusion zone {k} is not in a site; it has 0 to 31")
    return np.uint64(1 << (24 + k))
