"""What happens: events as objects."""
from dataclasses import dataclass, field as _field, fields as _fields
from typing import Optional, Tuple

from ._stamps import seconds


@dataclass(frozen=True)
class Event:
    """Base of the events. str(event) is the line that `zone-detector run` prints.

    stamp_ns, and what else ends with _ns, is a whole number of nanoseconds, exact; the same name without it is the
    float of seconds next to it.
    """
    stamp_ns: int
    text: str = _field(repr=False, compare=False)

    @property
    def stamp(self):
        """Seconds."""
        return seconds(self.stamp_ns)

    def __str__(self):
        return self.text

    def to_dict(self):
        """The keys and values of `zone-detector run --json`.

        >>> site = Site()
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> event = Session(site).take(0.5, points=[(1, 1, 1)]).events[0]
        >>> event.to_dict()["event"], event.to_dict()["name"]
        ('occupied', 'gate')
        """
        values = {"type": self._type, "stamp": self.stamp}
        for entry in _fields(self):
            value = getattr(self, entry.name)
            if entry.name not in ("stamp_ns", "text") and (value is not None or entry.name not in _OPTIONAL):
                values[_KEYS.get(entry.name, entry.name)] = seconds(value) if entry.name.endswith("_ns") else value
            if entry.name == "line":
                values["from"] = self.from_side
        values["levels"] = list(values["levels"]) if "levels" in values else None
        if values["levels"] is None:
            del values["levels"]
        return values


_KEYS = {"kind": "event", "field_name": "fieldName", "zone_name": "name", "class_name": "class", "began_ns": "began",
         "dwell_ns": "dwell", "last_seen_ns": "lastSeen", "met_ns": "met"}
_OPTIONAL = ("dwell_ns", "last_seen_ns")


@dataclass(frozen=True)
class ZoneEvent(Event):
    """A zone's debounced state changed. kind: "occupied" or "cleared"; began: when its points first said so."""
    kind: str
    field: int
    field_name: str
    zone: int
    zone_name: str
    began_ns: int
    _type = "zone"

    @property
    def began(self):
        """Seconds."""
        return seconds(self.began_ns)


@dataclass(frozen=True)
class OutputEvent(Event):
    """The levels of the outputs changed, or are told first. levels: three of "low" and "high"."""
    field: int
    levels: Tuple[str, str, str]
    _type = "outputs"


@dataclass(frozen=True)
class ObjectEvent(Event):
    """A track entered a zone or left it. kind: "entered", "left" or "lost".

    dwell: seconds in the zone, when it left or was lost; last_seen: seconds, when it was lost.
    """
    kind: str
    field: int
    field_name: str
    zone: int
    zone_name: str
    track: int
    class_name: str
    dwell_ns: Optional[int] = None
    last_seen_ns: Optional[int] = None
    _type = "object"

    @property
    def dwell(self):
        """Seconds, or None."""
        return seconds(self.dwell_ns)

    @property
    def last_seen(self):
        """Seconds, or None."""
        return seconds(self.last_seen_ns)


@dataclass(frozen=True)
class CrossingEvent(Event):
    """A track went over a line. to: "left" or "right"; met, x, y: when and where its reference point met the line."""
    line: str
    to: str
    track: int
    class_name: str
    met_ns: int
    x: float
    y: float
    _type = "crossing"

    @property
    def from_side(self):
        """The side it came from: "left" or "right"."""
        return "right" if self.to == "left" else "left"

    @property
    def met(self):
        """Seconds."""
        return seconds(self.met_ns)


_TYPES = {made._type: made for made in (ZoneEvent, OutputEvent, ObjectEvent, CrossingEvent)}
_NAMES = {key: name for name, key in _KEYS.items()}


def event_of(record, text):
    """The event that the engine tells."""
    made = _TYPES[record.pop("type")]
    values = {_NAMES.get(key, key): value for key, value in record.items() if key != "from"}
    if made is OutputEvent:
        values["levels"] = tuple(values["levels"])
    return made(stamp_ns=values.pop("stamp"), text=text, **values)
