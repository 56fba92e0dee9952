"""One recording as a unit of work: what a worker gets, and the name under which its result is kept."""
from __future__ import annotations

import hashlib
import json
import os
import pickle
from collections.abc import Iterable, Iterator
from dataclasses import dataclass
from typing import Any, Union

from .. import Recording, Site, __version__

PathLike = Union[str, "os.PathLike[str]"]
# As one number of pickles, so that the same content has the same name whichever Python wrote it.
_PROTOCOL = 4


@dataclass(frozen=True)
class Unit:
    """task: a pickle of site, recording, options and version; the same bytes give the same result. isolate: it is
    evaluated in a process of its own."""
    name: str
    key: str
    task: bytes
    isolate: bool


def is_url(path: str) -> bool:
    return "://" in path


def units_of(site: Site, recordings: Iterable[Recording | PathLike], options: dict[str, float], keyed: bool,
             isolate: bool | None) -> list[Unit]:
    """keyed: results are kept, so each unit gets its key. isolate: None: the recordings that code of others reads.
    Raises ValueError, TypeError, OSError."""
    # An edited site and one that was loaded may differ in what their pickles share.
    plain = pickle.loads(pickle.dumps(site, _PROTOCOL))
    units = []
    names: set[str] = set()
    for given in recordings:
        recording = given if isinstance(given, Recording) else _recording(given)
        if recording.name in names:
            raise ValueError(f"two recordings have the name {recording.name!r}; rows tell them apart by name")
        names.add(recording.name)
        try:
            # Within another pickle, so that another version does not look into what it may not understand.
            content = pickle.dumps((plain, recording, options), _PROTOCOL)
            task = pickle.dumps((__version__, content), _PROTOCOL)
        except (pickle.PicklingError, TypeError, AttributeError) as error:
            raise ValueError(f"recording {recording.name!r} cannot be sent to a worker: {error}; "
                             "from_arrays takes a list, or a function that a worker can import") from None
        units.append(Unit(recording.name, _key(task, recording) if keyed else "", task,
                          _is_read_by_others(recording) if isolate is None else isolate))
    return units


def _is_read_by_others(recording: Recording) -> bool:
    """By the caller's code, or by what fsspec has for a storage. Files are read by this package itself."""
    moments: Any = getattr(recording, "_moments")
    if moments is not None:
        return not isinstance(moments, (list, tuple))
    return any(map(is_url, _given(recording)))


def _given(recording: Recording) -> list[str]:
    given = [*recording.clouds, recording.stamps, recording.sensors, recording.tracks]
    return [path for path in given if path is not None]


def _recording(path: PathLike) -> Recording:
    text = os.fspath(path)
    if not is_url(text) and os.path.isdir(text):
        # A folder is one recording.
        recording = Recording.from_folder(text)
        recording.name = text
        return recording
    return Recording([text], name=text)


def _key(task: bytes, recording: Recording) -> str:
    digest = hashlib.sha256(task)
    for path in _files(recording):
        # Where only workers see the files, they are known by their names.
        try:
            about = os.stat(path)
        except OSError:
            continue
        digest.update(json.dumps([path, about.st_size, about.st_mtime_ns]).encode())
    return digest.hexdigest()


def _files(recording: Recording) -> Iterator[str]:
    for path in _given(recording):
        if is_url(path):
            continue
        yield path
        for folder, folders, files in os.walk(path):
            folders.sort()
            yield from (os.path.join(folder, file) for file in sorted(files))
    for listing in (recording.stamps, recording.sensors):
        if listing is not None and not is_url(listing):
            yield from _listed(listing)


def _listed(listing: str) -> Iterator[str]:
    """What a list of files may name: whatever in it is the name of a file, in its folder or whole."""
    try:
        with open(listing, encoding="utf-8", errors="replace") as lines:
            texts = lines.read().splitlines()
    except OSError:
        return
    for text in texts:
        for part in {text, *text.replace(",", " ").replace('"', " ").split(), *text.split(" ", 1)[1:],
                     *text.split(",", 1)[1:]}:
            path = os.path.join(os.path.dirname(listing), part.strip())
            if part.strip() and os.path.isfile(path):
                yield path
