"""Evaluation on an executor of concurrent.futures."""
from __future__ import annotations

import os
from collections.abc import Iterator, Mapping
from concurrent.futures import FIRST_COMPLETED, BrokenExecutor, Executor, Future, wait
from dataclasses import replace

from ._here import run_here, work_of
from ._unit import Unit


def run_on_executor(executor: Executor, units: Mapping[int, Unit]) -> Iterator[tuple[int, bytes]]:
    """Yields results as they come. An executor that breaks is not used again: the rest is evaluated here, each recording
    in a process of its own, so that the one that broke it becomes known and no other one is lost."""
    # So many at once, so that what waits is soon cancelled and results do not pile up.
    room = 2 * int(getattr(executor, "_max_workers", None) or os.cpu_count() or 1)
    left = dict(units)
    waiting = iter(units.items())
    running: dict[Future[bytes], int] = {}
    try:
        while True:
            while len(running) < room and (following := next(waiting, None)) is not None:
                position, unit = following
                running[executor.submit(work_of(unit.isolate), unit.task)] = position
            if not running:
                return
            for future in wait(running, return_when=FIRST_COMPLETED).done:
                position = running[future]
                packed = future.result()
                del running[future], left[position]
                yield position, packed
    except BrokenExecutor:
        yield from run_here({position: replace(unit, isolate=True) for position, unit in left.items()})
    finally:
        for future in running:
            future.cancel()
