"""Stamps as users give them, and as they are told."""
import datetime

import numpy as np

_LIMIT = 4_600_000_000 * 10**9  # the time between any two stamps must fit into 64 bits
_EPOCH = datetime.datetime(1970, 1, 1, tzinfo=datetime.timezone.utc)


def _of_timedelta(time):
    return ((time.days * 86_400 + time.seconds) * 1_000_000 + time.microseconds) * 1000


def _of_numpy(time):
    if np.isnat(time):
        raise ValueError("stamp is NaT; it must be a time")
    unit, count = np.datetime_data(time.dtype)
    if unit == "generic":
        raise ValueError("stamp is a time without a unit; give it one, such as numpy.timedelta64(5, 'ms')")
    kind = type(time)
    if unit in ("Y", "M"):
        if kind is np.timedelta64:
            raise ValueError(f"stamp is a time in {unit}, which has no fixed length")
        time, unit, count = time.astype("datetime64[D]"), "D", 1
    parts = {"W": 604_800 * 10**9, "D": 86_400 * 10**9, "h": 3600 * 10**9, "m": 60 * 10**9, "s": 10**9, "ms": 10**6,
             "us": 1000, "ns": 1}
    if unit not in parts:
        raise ValueError(f"stamp is a time in {unit}; nanoseconds are the finest")
    return int(time.astype(np.int64)) * count * parts[unit]


def nanoseconds(time):
    """The time as a whole number of nanoseconds; the time must not be a float."""
    if isinstance(time, (np.datetime64, np.timedelta64)):
        value = _of_numpy(time)
    elif isinstance(time, datetime.timedelta):
        value = _of_timedelta(time)
    elif isinstance(time, datetime.datetime):
        if time.tzinfo is None:
            raise ValueError(f"stamp is {time!r}, without a time zone; give it one, such as tzinfo=datetime.timezone.utc")
        value = _of_timedelta(time - _EPOCH)
    elif isinstance(time, (int, np.integer)) and not isinstance(time, bool):
        value = int(time) * 10**9
    elif isinstance(time, np.floating):
        # As its own shortest text says, which is not that of the double next to it.
        from ._core import stamp_of
        return stamp_of(float(str(time)))
    else:
        raise TypeError(f"stamp is a {type(time).__name__}; it is seconds as a number, or a time of datetime or numpy")
    if not -_LIMIT < value < _LIMIT:
        raise ValueError(f"stamp is {time}; it must be above -4.6e9 s and below 4.6e9 s")
    return value


def seconds(time):
    """Nanoseconds as the float of seconds next to them; None stays None."""
    return None if time is None else time / 10**9
