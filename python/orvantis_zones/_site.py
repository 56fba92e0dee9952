"""A site: the zones, lines and options of a zone document."""
from collections.abc import MutableMapping, MutableSequence, Sequence

import numpy as np

from . import _core
from ._core import CounterLine, Field, SensorZone, Zone
from ._results import exclusion_bit, zone_bit
from ._words import counted


class FieldSlots(Sequence):
    """The eight fields of a site; an empty slot is None.

    Assigning a list of up to three zones makes a Field, assigning a Field shares it, and None empties the slot.

    >>> site = Site()
    >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
    >>> site.fields[0].name, site.fields[0][0].name, site.fields[1]
    ('EvaluationField0', 'gate', None)
    """

    def __init__(self, site):
        self._site = site

    def __len__(self):
        return _core.MAX_FIELDS

    def __getitem__(self, index):
        if isinstance(index, slice):
            return [self[i] for i in range(*index.indices(len(self)))]
        return self._site._field(_slot(index))

    def __setitem__(self, index, field):
        if field is not None and not isinstance(field, Field):
            field = Field(list(field))
        self._site._set_field(_slot(index), field)

    def __repr__(self):
        return repr(list(self))


def _slot(index):
    size = _core.MAX_FIELDS
    if not -size <= index < size:
        raise IndexError(f"field {index} is not in a site; it has 0 to {size - 1}")
    return index % size


class ExclusionZones(MutableSequence):
    """The exclusion zones of a site: at most 32, each with a name of its own of 1 to 18 bytes.

    Raises ValueError where the library would log and ignore.
    """

    def __init__(self, site):
        self._site = site

    def __len__(self):
        return len(self._site._exclusion_zones())

    def __getitem__(self, index):
        return self._site._exclusion_zones()[index]

    def __setitem__(self, index, zone):
        zones = self._site._exclusion_zones()
        index = range(len(zones))[index]
        zones[index] = _checked(zone)
        self._site._set_exclusion_zones(zones, index)

    def __delitem__(self, index):
        zones = self._site._exclusion_zones()
        del zones[index]
        self._site._set_exclusion_zones(zones, None)

    def insert(self, index, zone):
        """Puts the zone before that number. Raises ValueError for its name and for the 33rd.

        >>> site = Site()
        >>> site.exclusion_zones.insert(0, Zone(Rectangle((0, 0), (1, 1), name="pillar")))
        >>> site.exclusion_zones[0].name
        'pillar'
        """
        zones = self._site._exclusion_zones()
        index = slice(index, None).indices(len(zones))[0]
        zones.insert(index, _checked(zone))
        self._site._set_exclusion_zones(zones, index)

    def __eq__(self, other):
        return isinstance(other, Sequence) and list(self) == list(other)

    def __repr__(self):
        return repr(list(self))


def _checked(zone):
    if not isinstance(zone, Zone):
        raise TypeError(f"a {type(zone).__name__} was given; an exclusion zone is a Zone")
    return zone


class SensorZones(MutableSequence):
    """The zones of a site that are bound to sensors, in order. They have no bits in masks."""

    def __init__(self, site):
        self._site = site

    def _changed(self, change):
        zones = self._site._sensor_zones()
        change(zones)
        self._site._set_sensor_zones(zones)

    def __len__(self):
        return len(self._site._sensor_zones())

    def __getitem__(self, index):
        return self._site._sensor_zones()[index]

    def __setitem__(self, index, zone):
        self._changed(lambda zones: zones.__setitem__(index, _bound(zone)))

    def __delitem__(self, index):
        self._changed(lambda zones: zones.__delitem__(index))

    def insert(self, index, zone):
        """Puts the zone before that number.

        >>> site = Site()
        >>> site.sensor_zones.insert(0, SensorZone(Rectangle((0, 0), (1, 1), name="mat"), sensors=["roof"]))
        >>> site.sensor_zones[0].sensors
        frozenset({'roof'})
        """
        self._changed(lambda zones: zones.insert(index, _bound(zone)))

    def __eq__(self, other):
        return isinstance(other, Sequence) and list(self) == list(other)

    def __repr__(self):
        return repr(list(self))


def _bound(zone):
    if not isinstance(zone, SensorZone):
        raise TypeError(f"a {type(zone).__name__} was given; a sensor zone is a SensorZone")
    return zone


class CounterLines(MutableMapping):
    """The counter lines of a site by name. A line is stored under the key, which becomes its name.

    >>> site = Site()
    >>> site.counter_lines["door"] = CounterLine((0, 0), (0, 2))
    >>> site.counter_lines["door"].name
    'door'
    """

    def __init__(self, site):
        self._site = site

    def __len__(self):
        return len(self._site._lines())

    def __iter__(self):
        return iter(self._site._lines())

    def __getitem__(self, name):
        return self._site._lines()[name]

    def __setitem__(self, name, line):
        if not isinstance(line, CounterLine):
            raise TypeError(f"a {type(line).__name__} was given; a counter line is a CounterLine")
        self._site._set_line(line._renamed(name))

    def __delitem__(self, name):
        if not self._site._erase_line(name):
            raise KeyError(name)

    def __repr__(self):
        return repr(dict(self))


class Site(_core.Site):
    """A zone document: fields of zones, exclusion zones, counter lines and options.

    == compares content; a pickle is exact. Changes of its zones write through. Not to be changed by one thread while
    another one reads it without a lock, as any Python object.

    debounce_ms: how long a zone must differ to be reported, milliseconds.
    min_points: so many points make a zone occupied; sensitivity is 11 - min_points.
    trigger_level: "low" or "high", what an occupied zone drives its output to.
    software_command: stored for a host. active_field: 0 to 7, not in documents.

    >>> site = Site()
    >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"), 0.0, 2.0)]
    >>> site.zone(0, 0) is site.fields[0][0]
    True
    >>> site.min_points = 3
    >>> site.sensitivity
    8
    """

    @property
    def fields(self):
        """The eight field slots: FieldSlots."""
        return FieldSlots(self)

    @fields.setter
    def fields(self, fields):
        fields = list(fields)
        if len(fields) > _core.MAX_FIELDS:
            raise ValueError(f"a site has {_core.MAX_FIELDS} fields; {len(fields)} were given")
        for index in range(_core.MAX_FIELDS):
            self.fields[index] = fields[index] if index < len(fields) else None

    @property
    def exclusion_zones(self):
        """The exclusion zones: ExclusionZones."""
        return ExclusionZones(self)

    @exclusion_zones.setter
    def exclusion_zones(self, zones):
        zones = [_checked(zone) for zone in zones]
        before = self._exclusion_zones()
        try:
            self._set_exclusion_zones([], None)
            self.exclusion_zones.extend(zones)
        except ValueError:
            self._set_exclusion_zones(before, None)
            raise

    @property
    def sensor_zones(self):
        """The zones that are bound to sensors: SensorZones."""
        return SensorZones(self)

    @sensor_zones.setter
    def sensor_zones(self, zones):
        self._set_sensor_zones([_bound(zone) for zone in zones])

    @property
    def counter_lines(self):
        """The counter lines by name: CounterLines."""
        return CounterLines(self)

    @counter_lines.setter
    def counter_lines(self, lines):
        lines = dict(lines)
        self.counter_lines.clear()
        self.counter_lines.update(lines)

    def zones(self):
        """Field, slot and zone of each slot that is not empty.

        >>> site = Site()
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> [(field, slot, zone.name) for field, slot, zone in site.zones()]
        [(0, 0, 'gate')]
        """
        for number, field in enumerate(self.fields):
            for slot, zone in enumerate(field or ()):
                if zone is not None:
                    yield number, slot, zone

    def find(self, name):
        """The zones and exclusion zones of that name: a list.

        >>> site = Site()
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> site.find("gate") == [site.zone(0, 0)]
        True
        """
        return [zone for zone in [*(zone for _, _, zone in self.zones()), *self.exclusion_zones] if zone.name == name]

    def classify(self, points, out=None):
        """One mask for each point, of the site as it is now: uint64 (N,), or `out`, filled.

        Bit 3 * field + slot is that of a zone, bit 24 + k that of exclusion zone k: see zone_bit, exclusion_bit. The
        index is kept until the content changes.
        points: (N, 3 or more) or structured with x, y and z; float32 and float64 of any strides are not copied.

        >>> site = Site()
        >>> site.fields[0] = [None, Zone(Rectangle((0, 0), (2, 2)))]
        >>> site.classify([(1, 1, 1), (3, 1, 1)])
        array([2, 0], dtype=uint64)
        """
        return _core.classify(self, points, out)

    def count(self, points):
        """How many points are in each zone and in no exclusion zone: Counts.

        >>> site = Site()
        >>> site.fields[0] = [None, Zone(Rectangle((0, 0), (2, 2)))]
        >>> int(site.count([(1, 1, 1), (3, 1, 1)]).inside[0, 1])
        1
        """
        return _core.count(self, points)

    def indices(self, points, field, zone):
        """Which points are in the zone and in no exclusion zone: their indices, ascending.

        A point with a coordinate that is not finite is in none. Raises IndexError.

        >>> site = Site()
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> site.indices([(5, 5, 1), (1, 1, 1)], 0, 0)
        array([1])
        """
        bit = zone_bit(field, zone)
        masks = _core.counted_masks(self, points)
        return np.flatnonzero((masks & bit != 0) & (masks < exclusion_bit(0)))

    def classifier(self):
        """A frozen snapshot for loops and threads: Classifier.

        >>> site = Site()
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> classifier = site.classifier()
        >>> site.fields[0] = None
        >>> classifier.classify([(1, 1, 1)])
        array([1], dtype=uint64)
        """
        return _core.Classifier(self)

    def to_svg(self, points=None, title=""):
        """The picture of `zone-detector plot`, over a scan if points are given: text.

        Its ids are those of no other picture, so several fit into one page. Raises ValueError when the coordinates are
        too far apart, or too far from the origin, to draw.

        >>> site = Site()
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> site.to_svg(points=[(1, 1, 1)], title="A gate")[:4]
        '<svg'
        """
        return _core.to_svg(self, points, title)

    def copy(self):
        """A site of its own with zones of its own; copy.copy(site) shares the zones.

        >>> site = Site()
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> site.copy() == site, site.copy().zone(0, 0) is site.zone(0, 0)
        (True, False)
        """
        return _deepcopy(self)

    @property
    def __geo_interface__(self):
        """The zones and exclusion zones as GeoJSON has them, with name, field, zone, z_min and z_max."""
        places = [*self.zones(), *((None, k, zone) for k, zone in enumerate(self.exclusion_zones))]
        return {"type": "FeatureCollection", "features": [
            {"type": "Feature", "geometry": zone.shape.__geo_interface__,
             "properties": {"name": zone.name, "field": field, "zone": number, "z_min": zone.z_min,
                            "z_max": zone.z_max}} for field, number, zone in places]}

    def __repr__(self):
        zones = sum(1 for _ in self.zones())
        return (f"<Site: {counted(zones, 'zone')}, {counted(len(self.exclusion_zones), 'exclusion zone')}, "
                f"{counted(len(self.counter_lines), 'line')}>")


from copy import deepcopy as _deepcopy  # noqa: E402
