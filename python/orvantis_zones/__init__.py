"""Zones and counter lines on LiDAR points.

Frame and unit are those of the points; x forward, y left, z up. Stamps are seconds; a datetime64 or timedelta64 counts
exactly, to the nanosecond. What takes longer than microseconds lets other threads go on meanwhile.

>>> site = Site()
>>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"), 0.0, 2.0)]
>>> site.zone(0, 0).contains_points([(1, 1, 1), (3, 1, 1)])
array([ True, False])
"""
from . import _core, _shapes
from ._core import (Classifier, CounterLine, Field, MAX_EXCLUSION_ZONES, MAX_FIELDS, Polygon, Rectangle, Sector,
                    SensorZone, Zone, ZONES_PER_FIELD, __version__)
from ._document import DocumentError, Error, Finding, Report, load, loads, validate, validates
from ._results import Counts, exclusion_bit, zone_bit
from ._site import CounterLines, ExclusionZones, FieldSlots, Site

__all__ = [
    "Classifier", "CounterLine", "CounterLines", "Counts", "DocumentError", "Error", "ExclusionZones", "Field",
    "FieldSlots", "Finding", "MAX_EXCLUSION_ZONES", "MAX_FIELDS", "Polygon", "Rectangle", "Report", "Sector",
    "SensorZone", "Site", "Zone", "ZONES_PER_FIELD", "__version__", "exclusion_bit", "load", "loads", "validate",
    "validates", "zone_bit",
]

# Users meet them here, in messages, help and pickles.
for _name in __all__:
    if isinstance(globals()[_name], type):
        globals()[_name].__module__ = __name__
