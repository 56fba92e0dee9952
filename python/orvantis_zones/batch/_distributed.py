"""Evaluation on a Dask cluster: workers return bytes and write nothing, and results are taken as they come."""
from __future__ import annotations

import concurrent.futures
import contextlib
import importlib
import logging
import queue
import time
from collections.abc import Iterator, Mapping
from typing import Any

from ._carried import carrier
from ._here import Work
from ._isolated import work_isolated
from ._outcome import Outcome
from ._unit import Unit
from ._work import BatchError

_scheduler: Any = importlib.import_module("distributed.scheduler")
_log = logging.getLogger("orvantis.batch")


def run_on_dask(client: Any, units: Mapping[int, Unit], work: Work, no_worker_timeout: float) -> Iterator[tuple[int, bytes]]:
    """Raises BatchError when there is no worker for so many seconds, or the scheduler is gone."""
    run = _Run(client, units, work is work_isolated, no_worker_timeout)
    try:
        yield from run.results()
    finally:
        run.cancel()


class _Run:
    def __init__(self, client: Any, units: Mapping[int, Unit], isolate: bool, no_worker_timeout: float) -> None:
        self._client, self._units, self._no_worker_timeout = client, units, no_worker_timeout
        self._waiting = [(position, isolate) for position in reversed(list(units))]
        self._running: dict[Any, tuple[int, bool]] = {}
        self._done: queue.SimpleQueue[Any] = queue.SimpleQueue()
        self._refused: dict[str, str] = {}
        self._usable: dict[str, int] = {}
        self._looked = self._seen = time.monotonic()
        self._look()

    def results(self) -> Iterator[tuple[int, bytes]]:
        while self._waiting or self._running:
            self._submit()
            try:
                future = self._done.get(timeout=1.0)
            except queue.Empty:
                self._look()
                continue
            result = self._taken(future)
            if result is not None:
                yield result
            if time.monotonic() - self._looked > 1.0:
                self._look()

    def _look(self) -> None:
        """Which workers there are."""
        self._looked = time.monotonic()
        workers = {}
        if self._client.status == "running":
            with contextlib.suppress(OSError, TimeoutError):
                workers = self._client.scheduler_info()["workers"]
        self._usable = {address: about["nthreads"] for address, about in workers.items() if address not in self._refused}
        if self._usable:
            self._seen = self._looked
        elif self._looked - self._seen >= self._no_worker_timeout:
            names = "".join(f"; worker {address} was refused: it {why}" for address, why in self._refused.items())
            raise BatchError(f"the scheduler {self._client.scheduler.address} has had no worker for "
                             f"{self._no_worker_timeout:g} s{names}")

    def _submit(self) -> None:
        # So few at once, so that neither the scheduler nor the memory of the workers is filled.
        room = 4 * sum(self._usable.values())
        while self._waiting and len(self._running) < room:
            position, isolate = self._waiting.pop()
            future = self._client.submit(carrier(), self._units[position].task, isolate, pure=False,
                                         workers=list(self._usable) if self._refused else None)
            self._running[future] = (position, isolate)
            future.add_done_callback(self._done.put)

    def _taken(self, future: Any) -> tuple[int, bytes] | None:
        """None: it has to be evaluated again."""
        position, isolate = self._running.pop(future)
        if future.status == "cancelled":
            raise BatchError(f"the scheduler {self._client.scheduler.address} is gone")
        if future.status != "error":
            try:
                address, packed, refusal = future.result(timeout=5)
            except (OSError, TimeoutError, concurrent.futures.CancelledError):
                # The worker that had the bytes died or is stopped, or the scheduler is gone.
                self._waiting.append((position, isolate))
                return None
            finally:
                future.release()
            outcome = Outcome.unpack(packed) if packed else None
            if outcome is None or outcome.kind == "wrong version":
                self._refuse(address, refusal if outcome is None else f"has {outcome.text}")
                self._waiting.append((position, isolate))
                return None
            return position, packed
        error = future.exception()
        if not isinstance(error, _scheduler.KilledWorker):
            return position, Outcome("failed", f"{type(error).__name__}: {error}").pack()
        if isolate:
            return position, Outcome("worker died", "its worker died again, with the recording in a process of its own",
                                     attempts=2).pack()
        # Whatever ran on a worker that died is suspected. In a process of its own only the guilty one dies.
        self._waiting.append((position, True))
        return None

    def _refuse(self, address: str, why: str) -> None:
        if address not in self._refused:
            _log.warning("worker %s is refused: it %s", address, why)
        self._refused[address] = why
        self._look()

    def cancel(self) -> None:
        # A scheduler that is gone is not waited for.
        if self._running and self._client.status == "running":
            with contextlib.suppress(OSError, TimeoutError):
                self._client.cancel(list(self._running))
