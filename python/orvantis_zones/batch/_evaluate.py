"""A batch from its recordings to its tables."""
from __future__ import annotations

import sys
from collections.abc import Iterable, Iterator, Mapping
from concurrent.futures import Executor
from typing import Any

from .. import Recording, Site
from .. import evaluate as evaluate_one
from ._batch import Batch
from ._executor import run_on_executor
from ._here import Work, run_here
from ._isolated import work_isolated
from ._outcome import Outcome
from ._progress import Progress, Shown
from ._store import Store
from ._unit import PathLike, Unit, units_of
from ._work import work


def evaluate(site: Site, recordings: Iterable[Recording | PathLike], *, client: Any = None,
             folder: PathLike | None = None, isolate: bool = False, progress: Progress = False,
             no_worker_timeout: float = 60.0, forget_after: float = 2.0, clearance: float = 0.0,
             max_speed: float = float("inf")) -> Batch:
    """Evaluates each recording as orvantis_zones.evaluate() does: Batch. The same bytes wherever it runs.

    recordings: each a Recording, or a path or URL of a file or a folder, which is one recording; names must differ.
    client: None: here, in order; or an executor of concurrent.futures; or a client of Dask distributed.
    folder: keeps finished recordings, also when this ends early; the next call with it evaluates none of them again.
    isolate: each evaluation in a process of its own, so that a recording that crashes the reader is a row in errors.
    progress: True: a line on the error stream or a bar in a notebook; or a function of done, total and name.
    no_worker_timeout: seconds to wait for a worker of the Dask client.

    Raises ValueError for recordings that cannot be told apart or sent, OSError for the folder, and BatchError when there
    is no worker or scheduler. A recording that cannot be read is a row in errors.
    """
    # A site or an option that no recording can be evaluated with is the caller's mistake, not each recording's.
    options: dict[str, Any] = {"forget_after": forget_after, "clearance": clearance, "max_speed": max_speed}
    _check(site, options)
    store = Store(folder) if folder is not None else None
    units = units_of(site, recordings, options, store is not None)
    outcomes: dict[int, Outcome] = {}
    if store is not None:
        for position, unit in enumerate(units):
            kept = store.load(unit)
            if kept is not None:
                outcomes[position] = kept
    left = {position: unit for position, unit in enumerate(units) if position not in outcomes}
    shown = Shown(progress, len(units), len(outcomes))
    results = _run(client, left, work_isolated if isolate else work, no_worker_timeout) if left else iter(())
    try:
        for position, packed in results:
            outcome = Outcome.unpack(packed)
            # What went wrong may be right the next time: a storage that was away, a file that was not there yet.
            if store is not None and not outcome.kind:
                store.save(units[position], packed)
            outcomes[position] = outcome
            shown.finished(units[position].name, outcome.frames, float(outcome.length()))
    finally:
        shown.end()
    return Batch(site, [unit.name for unit in units], [outcomes[position] for position in range(len(units))])


def _check(site: Site, options: dict[str, Any]) -> None:
    if not isinstance(site, Site):
        raise TypeError(f"a {type(site).__name__} was given; a batch needs a Site")
    evaluate_one(site, Recording.from_arrays([]), **options)


def _run(client: Any, units: Mapping[int, Unit], work: Work, no_worker_timeout: float) -> Iterator[tuple[int, bytes]]:
    if client is None:
        return run_here(units, work)
    if isinstance(client, Executor):
        return run_on_executor(client, units, work)
    distributed = sys.modules.get("distributed")
    if distributed is not None and isinstance(client, distributed.Client):
        from ._distributed import run_on_dask
        return run_on_dask(client, units, work, no_worker_timeout)
    raise TypeError(f"a {type(client).__name__} was given; client is None, an Executor or a distributed.Client")
