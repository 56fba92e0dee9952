"""Evaluation in this process, in order."""
from __future__ import annotations

from collections.abc import Callable, Iterator, Mapping

from ._isolated import work_isolated
from ._unit import Unit
from ._work import work


def work_of(isolate: bool) -> Callable[[bytes], bytes]:
    return work_isolated if isolate else work


def run_here(units: Mapping[int, Unit]) -> Iterator[tuple[int, bytes]]:
    for position, unit in units.items():
        yield position, work_of(unit.isolate)(unit.task)
