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
from ._here import run_here
from ._outcome import Outcome
from ._progress import Progress, Shown
from ._store import Store
from ._unit import PathLike, Unit, units_of

def evaluate(site: Site, recordings: Iterable[Recording | PathLike], *, client: Any = None,
             folder: PathLike | None = None, isolate: bool | None = None, progress: Progress = False,
             no_worker_timeout: float = 60.0, forget_after: float = 2.0, clearance: float = 0.0,
             max_speed: float = float("inf")) -> Batch:
    """Evaluates each recording as orvantis_zones.evaluate() does: Batch. The same bytes wherever it runs.

    recordings: each a Recording, or a path or URL of a file or a folder, which is one recording; names must differ.
    client: None: here, in order; or an executor of concurrent.futures; or a client of Dask distributed.
    folder: keeps finished recordings, also when this ends early; the next call with it evaluates none of them again.
    isolate: True: each evaluation in a process of its own, so that a recording that crashes its reader is a row in errors;
    None: on a client, those of recordings that code of others reads: an object or a function of yours, fsspec's storages.
    progress: True: a line on the error stream or a bar in a notebook; or a function of done, total and name.
    no_worker_timeout: seconds to wait for a worker of the Dask client.

    Raises ValueError for recordings that cannot be told apart or sent, OSError for the folder, and BatchError when the
    scheduler is gone or has no workers. A recording that cannot be read is a row in errors.

    >>> batch = evaluate(Site(), [Recording.from_arrays([(0.0, [(1, 1, 1)], None)], name="monday"), "none.pcd"])
    >>> batch.recordings["recording"].tolist(), batch.recordings["status"].tolist()
    (['monday', 'none.pcd'], ['finished', 'unreadable'])
    """
    # A site or an option that no recording can be evaluated with is the caller's mistake, not each recording's.
    options: dict[str, Any] = {"forget_after": forget_after, "clearance": clearance, "max_speed": max_speed}
    _check(site, options)
    if isolate is None and client is None:
        isolate = False
    units = units_of(site, recordings, options, folder is not None, isolate)
    if folder is None:
        outcomes = _outcomes(units, None, progress, client, no_worker_timeout)
    else:
        with Store(folder) as store:
            outcomes = _outcomes(units, store, progress, client, no_worker_timeout)
    return Batch(site, [unit.name for unit in units], [outcomes[position] for position in range(len(units))])


def _outcomes(units: list[Unit], store: Store | None, progress: Progress, client: Any,
              no_worker_timeout: float) -> dict[int, Outcome]:
    outcomes: dict[int, Outcome] = {}
    if store is not None:
        for position, unit in enumerate(units):
            kept = store.load(unit)
            if kept is not None:
                outcomes[position] = kept
    left = {position: unit for position, unit in enumerate(units) if position not in outcomes}
    shown = Shown(progress, len(units), len(outcomes))
    try:
        for position, packed in _run(client, left, no_worker_timeout) if left else ():
            outcome = Outcome.unpack(packed)
            # What went wrong may be right the next time: a storage that was away, a file that was not there yet.
            if store is not None and not outcome.kind:
                store.save(units[position], packed)
            outcomes[position] = outcome
            shown.finished(units[position].name, outcome.frames, float(outcome.length()))
    finally:
        shown.end()
    return outcomes


def _check(site: Site, options: dict[str, Any]) -> None:
    if not isinstance(site, Site):
        raise TypeError(f"a {type(site).__name__} was given; a batch needs a Site")
    evaluate_one(site, Recording.from_arrays([]), **options)


def _run(client: Any, units: Mapping[int, Unit], no_worker_timeout: float) -> Iterator[tuple[int, bytes]]:
    if client is None:
        return run_here(units)
    if isinstance(client, Executor):
        return run_on_executor(client, units)
    distributed = sys.modules.get("distributed")
    if distributed is not None and isinstance(client, distributed.Client):
        from ._distributed import run_on_dask
        return run_on_dask(client, units, no_worker_timeout)
    raise TypeError(f"a {type(client).__name__} was given; client is None, an Executor or a distributed.Client")
