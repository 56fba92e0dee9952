"""The evaluation of one unit. Pure: it writes nothing, and the same task gives the same tables."""
from __future__ import annotations

import csv
import importlib
import io
import pickle
import socket
import time
from typing import Any

from .. import Recording, RecordingError, Site, __version__
from ._outcome import TABLES, Outcome
from ._remote import brought

_evaluate: Any = importlib.import_module("orvantis_zones._recording")


class BatchError(RuntimeError):
    """The batch cannot go on: without workers or a scheduler. What is finished is kept in its folder."""


def work(task: bytes) -> bytes:
    """A packed Outcome. A worker of another version says so, and evaluates nothing."""
    began = time.monotonic()
    host = socket.gethostname()
    version, content = pickle.loads(task)
    if version != __version__:
        return Outcome("wrong version", f"orvantis_zones {__version__}; the client has {version}", host=host).pack()
    try:
        site, recording, options = pickle.loads(content)
    except Exception as error:  # a function that a recording is made of, which this worker does not have
        return Outcome("failed", f"{type(error).__name__}: {error}", host=host).pack()
    values = _evaluated(site, recording, options)
    return Outcome(**values, host=host, seconds=time.monotonic() - began).pack()


def _evaluated(site: Site, recording: Recording, options: dict[str, Any]) -> dict[str, Any]:
    urls: dict[str, str] = {}

    def told(text: str) -> str:
        for path, url in urls.items():
            text = text.replace(path, url)
        return text

    try:
        with brought(recording) as (here, found):
            urls = found
            parts: dict[str, Any] = _evaluate.evaluated(site, here, options)
    except (RecordingError, OSError, ValueError) as error:
        return {"kind": "unreadable", "text": told(str(error))}
    except Exception as error:  # of the caller's own code, in a recording that is made of a function
        return {"kind": "failed", "text": told(f"{type(error).__name__}: {error}")}
    warnings = tuple(map(told, _evaluate.warnings_of(parts)))
    return {**_extent(parts), "warnings": warnings, **{name: text_of(parts, name) for name in TABLES}}


def text_of(parts: dict[str, Any], table: str) -> str:
    """Names are the user's bytes; those that are not UTF-8 are kept."""
    text: bytes = parts[table]
    return text.decode("utf-8", "surrogateescape")


def tables_without_rows(site: Site) -> dict[str, str]:
    """What each table has as its head."""
    parts = _evaluate.evaluated(site, Recording.from_arrays([]), {"forget_after": 2.0, "clearance": 0.0, "max_speed": 1.0})
    return {name: text_of(parts, name) for name in TABLES}


def _extent(parts: dict[str, Any]) -> dict[str, Any]:
    stamps = [row[0] for row in csv.reader(io.StringIO(text_of(parts, "frames"), newline=""))][1:]
    return {"frames": len(stamps), "begin": stamps[0] if stamps else "", "end": stamps[-1] if stamps else ""}
