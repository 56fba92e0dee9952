"""Evaluation on a Dask cluster: workers return bytes and write nothing, and results are taken as they come."""
from __future__ import annotations

import concurrent.futures
import contextlib
import importlib
import logging
import queue
import time
from collections.abc import Iterator, Mapping
from typing import Any, NamedTuple

from ._carried import carrier
from ._outcome import Outcome
from ._shares import Shares
from ._unit import Unit
from ._work import BatchError

_scheduler: Any = importlib.import_module("distributed.scheduler")
_log = logging.getLogger("orvantis.batch")


def run_on_dask(client: Any, units: Mapping[int, Unit], no_worker_timeout: float) -> Iterator[tuple[int, bytes]]:
    """Raises BatchError when the scheduler has had no workers for so many seconds, or is gone."""
    run = _Run(client, units, no_worker_timeout)
    try:
        yield from run.results()
    finally:
        run.cancel()


class _Share(NamedTuple):
    """Recordings that one task evaluates one after the other."""
    positions: list[int]
    isolate: bool


class _Run:
    def __init__(self, client: Any, units: Mapping[int, Unit], no_worker_timeout: float) -> None:
        self._client, self._units, self._no_worker_timeout = client, units, no_worker_timeout
        self._waiting = Shares({position: unit.isolate for position, unit in units.items()})
        self._running: dict[Any, _Share] = {}
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
            yield from self._taken(future)
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
            share = _Share(*self._waiting.take(room))
            future = self._client.submit(carrier(), [self._units[position].task for position in share.positions],
                                         share.isolate, pure=False, workers=list(self._usable) if self._refused else None)
            self._running[future] = share
            future.add_done_callback(self._done.put)

    def _taken(self, future: Any) -> list[tuple[int, bytes]]:
        """Results; what has to be evaluated again waits again."""
        share = self._running.pop(future)
        if future.status == "cancelled":
            raise BatchError(f"the scheduler {self._client.scheduler.address} is gone")
        if future.status == "error":
            return self._failed(share, future.exception())
        try:
            address, packed, refusal = future.result(timeout=5)
        except (OSError, TimeoutError, concurrent.futures.CancelledError):
            # The worker that had the bytes died or is stopped, or the scheduler is gone.
            self._waiting.put(share.positions, share.isolate)
            return []
        finally:
            future.release()
        outcomes = [Outcome.unpack(each) for each in packed]
        refusal = refusal or next((f"has {outcome.text}" for outcome in outcomes if outcome.kind == "wrong version"), "")
        if refusal:
            self._refuse(address, refusal)
            self._waiting.put(share.positions, share.isolate)
            return []
        for outcome in outcomes:
            self._waiting.learn(outcome.seconds)
        return list(zip(share.positions, packed))

    def _failed(self, share: _Share, error: BaseException) -> list[tuple[int, bytes]]:
        if not share.isolate:
            # Whatever ran on a worker that died is suspected. In a process of its own only the guilty one dies.
            self._waiting.put(share.positions, True)
            return []
        if isinstance(error, _scheduler.KilledWorker):
            outcome = Outcome("worker died", "its worker died again, with the recording in a process of its own", attempts=2)
        else:
            outcome = Outcome("failed", f"{type(error).__name__}: {error}", attempts=2)
        return [(position, outcome.pack()) for position in share.positions]

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
