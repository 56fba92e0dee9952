"""A batch on a real scheduler and real workers, which die, stop and are of other versions."""
import pathlib
import signal
import threading
import time

import fleet
import pytest

from orvantis_zones.batch import BatchError, evaluate
from orvantis_zones.batch.__main__ import main

dask = pytest.importorskip("dask")
distributed = pytest.importorskip("distributed")


@pytest.fixture(scope="module")
def started(tmp_path_factory):
    made = fleet.Cluster(tmp_path_factory.mktemp("cluster"))
    try:
        yield made
    finally:
        made.end()


@pytest.fixture(scope="module")
def client(started):
    # A scheduler that was killed is not waited for.
    with dask.config.set({"distributed.comm.timeouts.connect": "2s"}):
        with distributed.Client(started.address, set_as_default=False, timeout=50) as made:
            yield made


@pytest.fixture
def cluster(started, client):
    """Without workers of the test before."""
    yield started
    started.end(started.workers)
    started.workers.clear()
    wait_until(lambda: client.status != "running" or not client.scheduler_info()["workers"])


def wait_until(true):
    deadline = time.monotonic() + 50
    while not true():
        assert time.monotonic() < deadline
        time.sleep(0.02)


def test_the_bytes_are_those_of_here_when_a_worker_dies_and_another_one_stops_for_a_while(cluster, client, tmp_path):
    first, second = cluster.add_worker(), cluster.add_worker()
    log = tmp_path / "log"
    given = [fleet.slow(k, log, 0.05) for k in range(30)]
    here = fleet.written(evaluate(fleet.site(), given), tmp_path / "here")
    log.unlink()
    client.wait_for_workers(2, timeout=50)
    finished = tmp_path / "out" / "finished"
    result = []
    thread = threading.Thread(target=lambda: result.append(
        evaluate(fleet.site(), given, client=client, folder=tmp_path / "out")))
    thread.start()
    wait_until(lambda: finished.exists() and len(list(finished.iterdir())) >= 4)
    first.send_signal(signal.SIGKILL)
    second.send_signal(signal.SIGSTOP)
    time.sleep(1)
    assert thread.is_alive()
    second.send_signal(signal.SIGCONT)
    thread.join(timeout=50)
    assert fleet.written(result[0], tmp_path / "there") == here
    assert {int(line) for line in log.read_text().split()} == set(range(30))
    # And all of it was kept.
    count = len(log.read_text().split())
    again = evaluate(fleet.site(), given, client=client, folder=tmp_path / "out")
    assert fleet.written(again, tmp_path / "again") == here and len(log.read_text().split()) == count


def test_the_command_line_takes_a_scheduler(cluster, tmp_path):
    cluster.add_worker()
    fleet.site().save(tmp_path / "site.json")
    words = [str(tmp_path / "site.json"), "--tracks", fleet.tracks(tmp_path / "a.csv"), "--scheduler"]
    assert main([*words, cluster.address, "-o", str(tmp_path / "out")]) == 0
    assert (tmp_path / "out" / "events.csv").read_text().count("crossing") == 1


def test_refused_workers_and_deadly_recordings_take_no_other_recording_along(cluster, client, tmp_path, caplog):
    # A package of that name that is found first, and has no batches.
    (tmp_path / "other" / "orvantis_zones").mkdir(parents=True)
    (tmp_path / "other" / "orvantis_zones" / "__init__.py").write_text("__version__ = '0.1'\n")
    other = fleet.environment()["PYTHONPATH"]
    cluster.add_worker(PYTHONPATH=f"{tmp_path / 'other'}:{other}")
    client.wait_for_workers(1, timeout=50)
    with pytest.raises(BatchError, match=r"has had no worker for 0\.5 s; worker tcp://127\.0\.0\.1:\d+ was refused: it "
                                         r"cannot import orvantis_zones\.batch: No module named"):
        evaluate(fleet.site(), fleet.recordings(3), client=client, no_worker_timeout=0.5)
    cluster.add_worker()
    client.wait_for_workers(2, timeout=50)
    first, second = fleet.recordings(2)
    batch = evaluate(fleet.site(), [first, fleet.killer(), second], client=client, isolate=True)
    assert batch.events == evaluate(fleet.site(), [first, second]).events
    assert batch.recordings["status"].tolist() == ["finished", "worker died", "finished"]
    assert sum("is refused: it cannot import" in record.message for record in caplog.records) == 2
    # Without isolation the recording kills the worker itself, and the scheduler has no other one.
    with pytest.raises(BatchError, match="has had no worker"):
        evaluate(fleet.site(), [fleet.killer()], client=client, no_worker_timeout=0.5)


def test_a_recording_that_killed_its_workers_is_found_out_alone(cluster, client, tmp_path):
    client.run_on_scheduler(_allow_failures, 0)
    for _ in range(2):
        cluster.add_worker()
    client.wait_for_workers(2, timeout=50)
    first, second = fleet.recordings(2)
    batch = evaluate(fleet.site(), [first, fleet.killer(), second], client=client)
    assert batch.errors["text"].tolist() == ["the process that evaluated it ended with SIGKILL; it was tried 2 times"]
    assert batch.events == evaluate(fleet.site(), [first, second]).events
    client.run_on_scheduler(_allow_failures, 3)


def _allow_failures(count, dask_scheduler=None):
    dask_scheduler.allowed_failures = count


def test_a_scheduler_without_workers_and_one_that_dies_are_told(cluster, client, tmp_path):
    began = time.monotonic()
    with pytest.raises(BatchError, match=r"^the scheduler tcp://127\.0\.0\.1:\d+ has had no worker for 0\.3 s$"):
        evaluate(fleet.site(), fleet.recordings(1), client=client, no_worker_timeout=0.3)
    assert time.monotonic() - began >= 0.3
    log = tmp_path / "log"
    given = [fleet.slow(k, log, 0.05) for k in range(20)]
    cluster.add_worker()
    client.wait_for_workers(1, timeout=50)

    def kill(done, total, name):
        if done == 5:
            cluster.scheduler.kill()

    with pytest.raises(BatchError, match="the scheduler tcp://.* (is gone|has had no worker for 3 s)$"):
        evaluate(fleet.site(), given, client=client, folder=tmp_path / "out", progress=kill, no_worker_timeout=3)
    kept = len(list(pathlib.Path(tmp_path / "out" / "finished").iterdir()))
    assert kept >= 5
    log.unlink()
    evaluate(fleet.site(), given, folder=tmp_path / "out")
    assert len(log.read_text().split()) == 20 - kept
