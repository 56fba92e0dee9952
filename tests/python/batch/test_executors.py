"""A batch on executors: the bytes do not depend on who evaluates, and in which order."""
import concurrent.futures
import multiprocessing
import os
import pathlib
import random
import tempfile

import fleet
import pytest
from hypothesis import given, settings, strategies as st

from orvantis_zones.batch import evaluate


class Shuffled(concurrent.futures.Executor):
    """Runs what was submitted when somebody waits, in an order of its own, and some of it twice."""

    def __init__(self, seed, workers):
        self._max_workers, self._random, self._thread = workers, random.Random(seed), None
        self._pool = concurrent.futures.ThreadPoolExecutor(1)
        self._left = []

    def submit(self, work, *arguments):
        future = concurrent.futures.Future()
        self._left.insert(self._random.randrange(len(self._left) + 1), (future, work, arguments))
        self._pool.submit(self._one)
        return future

    def _one(self):
        future, work, arguments = self._left.pop()
        if self._random.random() < 0.3:
            work(*arguments)
        if future.set_running_or_notify_cancel():
            future.set_result(work(*arguments))


def bytes_of(batch):
    with tempfile.TemporaryDirectory() as folder:
        return fleet.written(batch, pathlib.Path(folder))


@settings(max_examples=25)
@given(st.lists(st.integers(0, 11), unique=True), st.integers(0, 1000), st.integers(1, 5))
def test_the_bytes_do_not_depend_on_order_workers_and_repeats(chosen, seed, workers):
    recordings = [fleet.recordings(12)[k] for k in chosen]
    recordings.insert(len(recordings) // 2, fleet.raising(OSError("no such storage")))
    here = evaluate(fleet.site(), recordings)
    there = evaluate(fleet.site(), recordings, client=Shuffled(seed, workers), isolate=False)
    assert bytes_of(there) == bytes_of(here)


@pytest.mark.parametrize("workers", [1, 2, 3])
def test_threads_and_processes_give_the_same_bytes(workers):
    recordings = fleet.recordings(9)
    here = bytes_of(evaluate(fleet.site(), recordings))
    with concurrent.futures.ThreadPoolExecutor(workers) as pool:
        assert bytes_of(evaluate(fleet.site(), recordings, client=pool)) == here
    with concurrent.futures.ProcessPoolExecutor(workers, multiprocessing.get_context("spawn")) as pool:
        assert bytes_of(evaluate(fleet.site(), recordings, client=pool)) == here


def test_no_recording_is_lost_with_a_pool_that_one_of_them_breaks():
    recordings = fleet.recordings(3)
    recordings.insert(1, fleet.killer())
    with concurrent.futures.ProcessPoolExecutor(2, multiprocessing.get_context("spawn")) as pool:
        batch = evaluate(fleet.site(), recordings, client=pool, isolate=False)
        assert getattr(pool, "_broken")
    assert batch.errors["recording"].tolist() == ["killer"]
    assert batch.errors["kind"].tolist() == ["worker died"]
    assert batch.events == evaluate(fleet.site(), fleet.recordings(3)).events


def test_what_code_of_others_reads_has_a_process_of_its_own():
    recordings = [*fleet.recordings(2), fleet.killer(), fleet.process("a function"), fleet.process("an object", call=False)]
    with concurrent.futures.ProcessPoolExecutor(1, multiprocessing.get_context("spawn")) as pool:
        batch = evaluate(fleet.site(), recordings, client=pool)
        [worker] = getattr(pool, "_processes")
        assert pool.submit(os.getpid).result() == worker
    assert batch.errors["recording"].tolist() == ["killer"] and batch.work["attempts"].tolist() == [1, 1, 2, 1, 1]
    processes = batch.zones["peak_points"][batch.zones["recording"] != "recording 0"].tolist()[1:]
    assert len({*processes, worker % 50_000 + 1, os.getpid() % 50_000 + 1}) == 4


class First(concurrent.futures.Executor):
    """Runs only what was submitted first."""

    def __init__(self):
        self._max_workers, self.futures = 4, []

    def submit(self, work, *arguments):
        self.futures.append(concurrent.futures.Future())
        if len(self.futures) == 1:
            self.futures[0].set_result(work(*arguments))
        return self.futures[-1]


def test_what_waits_is_cancelled_when_the_batch_ends_early():
    def stop(done, total, name):
        raise KeyboardInterrupt

    pool = First()
    with pytest.raises(KeyboardInterrupt):
        evaluate(fleet.site(), fleet.recordings(50), client=pool, progress=stop)
    assert len(pool.futures) == 8
    assert [future.cancelled() for future in pool.futures] == [False] + [True] * 7
