"""Zones and counter lines on LiDAR points.

Frame and unit are those of the points; x forward, y left, z up. Stamps are seconds; a datetime64 or timedelta64 counts
exactly, to the nanosecond. What takes longer than microseconds lets other threads go on meanwhile.

>>> site = Site()
>>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"), 0.0, 2.0)]
>>> site.zone(0, 0).contains_points([(1, 1, 1), (3, 1, 1)])
array([ True, False])
"""
from . import _core, _notebook, _shapes
from ._core import (Classifier, CounterLine, Field, MAX_EXCLUSION_ZONES, MAX_FIELDS, Polygon, Rectangle, Sector,
                    SensorZone, Zone, ZONES_PER_FIELD, __version__)
from ._document import DocumentError, Error, Finding, Report, load, loads, validate, validates
from ._events import CrossingEvent, Event, ObjectEvent, OutputEvent, ZoneEvent
from ._log import set_log_level
from ._objects import OBJECT_DTYPE, TrackedObject, objects_from_boxes
from ._plot import plot
from ._recording import Recording, RecordingError, Run, evaluate, read_points, read_tracks
from ._results import Counts, exclusion_bit, zone_bit
from ._session import CrossingExplanation, Frame, Session, ZoneExplanation
from ._site import CounterLines, ExclusionZones, FieldSlots, SensorZones, Site
from ._tables import Table

__all__ = [
    "Classifier", "CounterLine", "CounterLines", "Counts", "CrossingEvent", "CrossingExplanation", "DocumentError",
    "Error", "Event", "ExclusionZones", "Field", "FieldSlots", "Finding", "Frame", "MAX_EXCLUSION_ZONES", "MAX_FIELDS",
    "OBJECT_DTYPE", "ObjectEvent", "OutputEvent", "Polygon", "Recording", "RecordingError", "Rectangle", "Report", "Run",
    "Sector", "SensorZone", "SensorZones", "Session", "Site", "Table", "TrackedObject", "Zone",
    "ZoneEvent", "ZoneExplanation", "ZONES_PER_FIELD", "__version__", "evaluate", "exclusion_bit", "load", "loads",
    "objects_from_boxes", "plot", "read_points", "read_tracks", "set_log_level", "validate", "validates", "zone_bit",
]

Site._repr_html_ = _notebook.site
Report._repr_html_ = _notebook.report
Run._repr_html_ = _notebook.run

# Users meet them here, in messages, help and pickles.
for _name in __all__:
    if isinstance(globals()[_name], type):
        globals()[_name].__module__ = __name__
