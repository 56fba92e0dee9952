"""Tracked objects: arrays of them, and single ones."""
from dataclasses import dataclass
from typing import Optional

import numpy as np

from . import _arrays

_NUMBERS = ("x", "y", "length", "width", "heading", "z_min", "z_max")

OBJECT_DTYPE = np.dtype([("id", np.int32), ("class", "U32"), *((name, np.float64) for name in _NUMBERS)])
"""The columns of tracks.csv. A class may be of any length: arrays that are read have as wide a field as they need."""


@dataclass(frozen=True, eq=False)
class TrackedObject:
    """One object of a frame, as a tracker reports it.

    id: of the track; below 0: no identity. x, y: the centre; length: along the heading, width: across it; heading:
    radians from +x. footprint: (N, 2) in place of the box.

    >>> TrackedObject(7, 1.0, 2.0, 0.5, 0.5, 0.0, 0.0, 1.8, "person").class_name
    'person'
    """
    id: int
    x: float
    y: float
    length: float
    width: float
    heading: float
    z_min: float
    z_max: float
    class_name: str = ""
    footprint: Optional[np.ndarray] = None


def objects_from_boxes(boxes, ids=None, classes=None):
    """Objects from boxes (M, 7) of x, y, z of the centre, length, width, height, heading: an array of OBJECT_DTYPE.

    ids: (M,), none: no identities. classes: M names, none: not classified.

    >>> objects_from_boxes([(1, 2, 0.9, 4, 2, 1.8, 0.0)], ids=[7], classes=["car"])["z_max"]
    array([1.8])
    """
    boxes = _arrays._array(boxes, "boxes", "they are an array (M, 7) of numbers").astype(np.float64)
    if boxes.size == 0 and boxes.ndim == 1:
        boxes = boxes.reshape(0, 7)
    if boxes.ndim != 2 or boxes.shape[1] != 7:
        raise ValueError(f"boxes: {_arrays._shown(boxes)} was given; they are an array (M, 7) of numbers")
    size = len(boxes)
    ids = np.full(size, -1) if ids is None else _ids(ids)
    names = [""] * size if classes is None else [str(name) for name in classes]
    if len(ids) != size or len(names) != size:
        raise ValueError(f"there are {size} boxes, {len(ids)} ids and {len(names)} classes; give one for each box")
    x, y, z, length, width, height, heading = boxes.T
    return array_of(ids, names, np.stack([x, y, length, width, heading, z - height / 2, z + height / 2], axis=1))


def array_of(ids, names, numbers):
    """An array of OBJECT_DTYPE, with a wider field for classes that need one."""
    widest = max(map(len, names), default=0)
    dtype = OBJECT_DTYPE
    if widest > 32:
        dtype = np.dtype([("id", np.int32), ("class", f"U{widest}"), *((name, np.float64) for name in _NUMBERS)])
    made = np.empty(len(names), dtype)
    made["id"], made["class"] = ids, names
    for name, column in zip(_NUMBERS, numbers.T):
        made[name] = column
    return made


def _ids(ids):
    ids = np.asarray(ids)
    if ids.dtype.kind not in "iu" and not (ids.dtype.kind == "f" and ids.size == 0):
        raise TypeError(f"id: {_arrays._shown(ids)} was given; ids are whole numbers")
    limits = np.iinfo(np.int32)
    if ids.size and (ids.min() < limits.min or ids.max() > limits.max):
        raise ValueError(f"id: {ids.max() if ids.max() > limits.max else ids.min()} is out of range; ids have 32 bits")
    return ids.astype(np.int32)


def _of_columns(given, names):
    missing = [name for name in ("id", "class", *_NUMBERS) if name not in names]
    if missing:
        raise ValueError(f"objects: the columns {', '.join(missing)} are not there; they are those of OBJECT_DTYPE")
    columns = [_arrays._array(given[name], name, "it is a column of numbers").astype(np.float64) for name in _NUMBERS]
    if any(column.ndim != 1 for column in columns):
        raise ValueError("objects: an array of more than one dimension was given; they are of one")
    return _ids(given["id"]), [str(name) for name in given["class"]], np.stack(columns, axis=1), []


def _of_list(given):
    for thing in given:
        if not isinstance(thing, TrackedObject):
            raise TypeError(f"objects: a list with a {type(thing).__name__} was given; they are an array of OBJECT_DTYPE, "
                            "a DataFrame of its columns, or a list of TrackedObject")
    numbers = np.array([[getattr(thing, name) for name in _NUMBERS] for thing in given], np.float64).reshape(-1, 7)
    names = [thing.class_name for thing in given]
    return _ids([thing.id for thing in given]), names, numbers, [thing.footprint for thing in given]


def parts(given):
    """Ids, class names, numbers (M, 7) and footprints of objects; nothing that a file of tracks could not say."""
    columns = given.dtype.names if isinstance(given, np.ndarray) else getattr(given, "columns", None)
    if isinstance(given, np.ma.MaskedArray):
        raise ValueError("objects: a masked array was given, and what is masked would count")
    if columns is not None:
        made = _of_columns(given, columns)
    elif isinstance(given, (list, tuple)):
        made = _of_list(given)
    else:
        shown = _arrays._shown(given) if isinstance(given, np.ndarray) else f"a {type(given).__name__}"
        raise TypeError(f"objects: {shown} was given; they are an array of OBJECT_DTYPE, a DataFrame of its columns, or "
                        "a list of TrackedObject")
    _check(*made)
    return made


def _check(ids, names, numbers, footprints):
    finite = np.isfinite(numbers)
    for wrong, reason in ((~finite, "is not finite"), (numbers[:, 2:4] < 0, "is below zero")):
        rows, columns = np.nonzero(wrong)
        if len(rows):
            name = _NUMBERS[columns[0] + (2 if wrong.shape[1] == 2 else 0)]
            raise ValueError(f"objects: {name} of object {rows[0]} {reason}")
    upside_down = np.flatnonzero(numbers[:, 5] > numbers[:, 6])
    if len(upside_down):
        raise ValueError(f"objects: z_max of object {upside_down[0]} is below its z_min")
    known = ids[ids >= 0]
    values, counts = np.unique(known, return_counts=True)
    if (counts > 1).any():
        raise ValueError(f"objects: track {values[counts > 1][0]} is there twice")
