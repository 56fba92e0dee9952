"""Recordings in object storage: brought here for the time of one evaluation."""
from __future__ import annotations

import contextlib
import copy
import importlib
import os
import tempfile
from collections.abc import Iterator
from typing import Any

from .. import Recording
from ._unit import is_url


@contextlib.contextmanager
def brought(recording: Recording) -> Iterator[tuple[Recording, dict[str, str]]]:
    """The recording with local files in place of its URLs, and which URL each of them is. Raises OSError."""
    urls = [path for path in (*recording.clouds, recording.stamps, recording.sensors, recording.tracks)
            if path is not None and is_url(path)]
    if not urls:
        yield recording, {}
        return
    for listing in (recording.stamps, recording.sensors):
        if listing is not None and is_url(listing):
            raise OSError(f"{listing}: a list of files cannot be a URL; give the files as clouds")
    try:
        fsspec: Any = importlib.import_module("fsspec")
    except ImportError:
        raise OSError(f"{urls[0]}: URLs need python3-fsspec on the worker") from None
    with tempfile.TemporaryDirectory(prefix="orvantis-zones-") as folder:
        local = {url: _bring(fsspec, url, os.path.join(folder, str(number))) for number, url in enumerate(urls)}
        here = copy.copy(recording)
        here.clouds = [local.get(path, path) for path in recording.clouds]
        if recording.tracks is not None:
            here.tracks = local.get(recording.tracks, recording.tracks)
        yield here, {path: url for url, path in local.items()}


def _bring(fsspec: Any, url: str, folder: str) -> str:
    os.mkdir(folder)
    try:
        storage, there = fsspec.core.url_to_fs(url)
        # Its name says what kind of file it is. After the path of a web address there may be more.
        name = there.split("?")[0] if url.startswith(("http:", "https:")) else there
        path = os.path.join(folder, os.path.basename(name.rstrip("/")) or "recording")
        if storage.isdir(there):
            _bring_folder(storage, there, path)
        else:
            storage.get_file(there, path)
    except Exception as error:  # each kind of storage raises its own
        raise OSError(f"{url}: cannot be read: {error or type(error).__name__}") from None
    return path


def _bring_folder(storage: Any, there: str, folder: str) -> None:
    os.mkdir(folder)
    for file in storage.find(there):
        path = os.path.normpath(os.path.join(folder, file[len(there):].lstrip("/")))
        # Archives may have any names.
        if not path.startswith(folder + os.sep):
            raise OSError(f"{file} does not lie in it")
        os.makedirs(os.path.dirname(path), exist_ok=True)
        storage.get_file(file, path)
