"""Evaluation in this process, in order."""
from __future__ import annotations

from collections.abc import Callable, Iterator, Mapping

from ._unit import Unit

Work = Callable[[bytes], bytes]


def run_here(units: Mapping[int, Unit], work: Work) -> Iterator[tuple[int, bytes]]:
    for position, unit in units.items():
        yield position, work(unit.task)
