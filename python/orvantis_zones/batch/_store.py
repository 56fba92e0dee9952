"""The folder of finished recordings: one file each, whole or not there."""
from __future__ import annotations

import logging
import os
import tempfile
from collections import deque
from concurrent.futures import Future, ThreadPoolExecutor

from ._outcome import Outcome
from ._unit import PathLike, Unit

_log = logging.getLogger("orvantis.batch")
# To synchronise a file is to wait for the disk, which does so for several files at once.
_THREADS = 8


class Store:
    """A context: at its end all that was saved is on the disk."""

    def __init__(self, folder: PathLike) -> None:
        self._folder = os.path.join(os.fspath(folder), "finished")
        os.makedirs(self._folder, exist_ok=True)
        self._threads = ThreadPoolExecutor(_THREADS)
        self._writing: deque[Future[None]] = deque()

    def __enter__(self) -> Store:
        return self

    def __exit__(self, *_: object) -> None:
        with self._threads:
            while self._writing:
                self._writing.popleft().result()

    def _path(self, unit: Unit) -> str:
        return os.path.join(self._folder, unit.key)

    def load(self, unit: Unit) -> Outcome | None:
        """None: it is not there, or is damaged and has to be made again."""
        try:
            with open(self._path(unit), "rb") as file:
                packed = file.read()
        except FileNotFoundError:
            return None
        try:
            return Outcome.unpack(packed)
        except (ValueError, TypeError, KeyError, AttributeError) as error:
            _log.warning("%s is evaluated again: %s: %s", unit.name, self._path(unit), error)
            return None

    def save(self, unit: Unit, packed: bytes) -> None:
        """Raises OSError, also for one that was saved before."""
        if len(self._writing) == 4 * _THREADS:
            self._writing.popleft().result()
        self._writing.append(self._threads.submit(self._write, unit, packed))

    def _write(self, unit: Unit, packed: bytes) -> None:
        """Another process that writes the same one at the same time writes the same tables."""
        handle, part = tempfile.mkstemp(prefix=unit.key + ".", suffix=".part", dir=self._folder)
        try:
            with os.fdopen(handle, "wb") as file:
                file.write(packed)
                file.flush()
                os.fsync(file.fileno())
            os.replace(part, self._path(unit))
        except BaseException:
            os.unlink(part)
            raise
