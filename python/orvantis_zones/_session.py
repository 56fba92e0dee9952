"""Zones, objects and lines over time."""
from dataclasses import dataclass
from typing import Dict, Optional, Tuple

import numpy as np

from . import _core
from ._events import CrossingEvent, Event
from ._results import Counts
from ._stamps import seconds
from ._tables import Table


@dataclass(frozen=True, eq=False)
class Frame:
    """What one moment came to; None where it had no points or no objects.

    counts: of the points. occupied: bool (8, 3), debounced, by field and slot. outputs: the three levels. object_zones:
    uint32 (M,), a mask for each object as given, with the bits of zone_bit. events: in order.
    """
    stamp_ns: int
    counts: Optional[Counts]
    occupied: Optional[np.ndarray]
    outputs: Optional[Tuple[str, str, str]]
    object_zones: Optional[np.ndarray]
    events: Tuple[Event, ...]

    @property
    def stamp(self):
        """Seconds."""
        return seconds(self.stamp_ns)


@dataclass(frozen=True)
class ZoneExplanation:
    """Why a zone is in the state it is in.

    counted: points inside it and in no exclusion zone; min_points: it is occupied from this count on. taken: points
    that exclusion zones took, taken_by: by their names. occupied_now: what the last frame alone said; occupied: the reported
    state. Where the two differ: differs_since, and missing, how much longer they must differ, in seconds.
    """
    field: int
    zone: int
    zone_name: str
    counted: int
    min_points: int
    taken: int
    taken_by: Dict[str, int]
    occupied_now: bool
    occupied: bool
    differs_since_ns: Optional[int]
    missing_ns: Optional[int]

    @property
    def differs_since(self):
        """Seconds, or None."""
        return seconds(self.differs_since_ns)

    @property
    def missing(self):
        """Seconds, or None."""
        return seconds(self.missing_ns)


@dataclass(frozen=True)
class CrossingExplanation:
    """Why a track did or did not count on a line.

    verdict: a word for programs, such as "counted" (docs/command.md has them all); text: the same in words. side: where
    it was last clear, "left" or "right". last_crossing: its last one of this line.
    """
    verdict: str
    text: str
    side: Optional[str]
    last_crossing: Optional[CrossingEvent]


class Session(_core.Session):
    """Zones, objects and lines over time, for a site as it is when the session is made.

    Stamps must go up: ValueError otherwise, and nothing is changed. copy.copy() forks it. Several threads may call it;
    their calls come one after the other.

    forget_after: a track not seen so long is forgotten, seconds. clearance: how far off a line an object must be to be
    clear of it. max_speed: what is faster is taken for another object, units a second.

    >>> site = Site()
    >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
    >>> session = Session(site)
    >>> for event in session.take(0.5, points=[(1, 1, 1)]).events: print(event)
         0.500 s  zone 0/0 "gate" occupied, since 0.500 s
         0.500 s  outputs of field 0: high low low
    """

    def __init__(self, site, *, forget_after=2.0, clearance=0.0, max_speed=float("inf")):
        super().__init__(site, forget_after, clearance, max_speed)

    def take(self, stamp, points=None, objects=None):
        """Takes what there is for the next stamp: a Frame. Points come first.

        stamp: seconds, or a time of datetime or numpy, which counts exactly. points: (N, 3 or more) or structured.
        objects: an array of OBJECT_DTYPE, a DataFrame of its columns, or a list of TrackedObject.
        None: nothing is known of objects at this stamp; an empty list says that none is in sight.
        Raises ValueError for a stamp that is not later than the last one, and for what is not points or objects.

        >>> site = Site()
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> frame = Session(site).take(0.5, points=[(1, 1, 1), (5, 5, 1)])
        >>> int(frame.counts.inside[0, 0]), bool(frame.occupied[0, 0]), frame.outputs
        (1, True, ('high', 'low', 'low'))
        """
        return self._take(stamp, points, objects)

    def reconfigure(self, site):
        """Goes on with another site: the events of what loses its state.

        Zones that are the same, by shape and heights, keep their state. Where any counter line changed, all lines begin
        anew.

        >>> site = Site()
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> session = Session(site)
        >>> frame = session.take(0.5, points=[(1, 1, 1)])
        >>> for event in session.reconfigure(Site()): print(event)
             0.500 s  zone 0/0 "gate" cleared, since 0.500 s
        """
        return self._reconfigure(site)

    @property
    def active_field(self):
        """The field that drives the outputs, 0 to 7; from the next frame on."""
        return self._active_field

    @active_field.setter
    def active_field(self, field):
        if not 0 <= field < _core.MAX_FIELDS:
            raise ValueError(f"active_field is {field}; 0 to 7 are allowed")
        self._active_field = field

    def explain(self, points):
        """Why zones are as they are: a ZoneExplanation for each. points: those of the last take().

        >>> site = Site()
        >>> site.min_points = 2
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> session = Session(site)
        >>> frame = session.take(0.5, points=[(1, 1, 1)])
        >>> [why] = session.explain([(1, 1, 1)])
        >>> why.counted, why.min_points, why.occupied
        (1, 2, False)
        """
        return self._explain(points)

    def explain_crossing(self, line, track):
        """Why a track did or did not count: CrossingExplanation. Raises KeyError for an unknown line.

        >>> site = Site()
        >>> site.counter_lines["door"] = CounterLine((0, 0), (0, 2))
        >>> session = Session(site)
        >>> for stamp, x in ((0.0, 1.0), (1.0, -1.0)):
        ...     frame = session.take(stamp, objects=objects_from_boxes([(x, 1, 1, 0.5, 0.5, 2, 0)], ids=[7]))
        >>> session.explain_crossing("door", 7).verdict
        'counted'
        """
        return self._explain_crossing(line, track)

    def occupants(self, field, zone):
        """The tracks in a zone: a list of track, class, entered and last seen, in seconds. Raises IndexError.

        >>> site = Site()
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> session = Session(site)
        >>> frame = session.take(0.5, objects=[TrackedObject(7, 1, 1, 0.5, 0.5, 0, 0, 1.8, "person")])
        >>> session.occupants(0, 0)
        [(7, 'person', 0.5, 0.5)]
        """
        return self._occupants(field, zone)

    def tallies(self):
        """What was counted: a Table of line, class (* for all), to_left, to_right and net_to_left.

        >>> site = Site()
        >>> site.counter_lines["door"] = CounterLine((0, 0), (0, 2))
        >>> session = Session(site)
        >>> for stamp, x in ((0.0, 1.0), (1.0, -1.0)):
        ...     frame = session.take(stamp, objects=objects_from_boxes([(x, 1, 1, 0.5, 0.5, 2, 0)], ids=[7]))
        >>> {name: column.tolist() for name, column in session.tallies().items() if name != "class"}
        {'line': ['door', 'door'], 'to_left': [1, 1], 'to_right': [0, 0], 'net_to_left': [1, 1]}
        """
        return Table(self._lines_csv())

    def __copy__(self):
        made = Session.__new__(type(self))
        _core.Session.__init__(made, self)
        return made
