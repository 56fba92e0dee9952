"""A batch on a real scheduler and real workers, which die, stop and are of other versions."""
import collections
import os
import pathlib
import signal
import subprocess
import tempfile
import threading
import time
import zipfile

import fleet
import pytest

import orvantis_zones as oz
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
        evaluate(fleet.site(), given, client=client, folder=tmp_path / "out", isolate=False)))
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
    again = evaluate(fleet.site(), given, client=client, folder=tmp_path / "out", isolate=False)
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
    batch = evaluate(fleet.site(), [first, fleet.killer(), second], client=client)
    assert batch.events == evaluate(fleet.site(), [first, second]).events
    assert batch.recordings["status"].tolist() == ["finished", "worker died", "finished"]
    assert sum("is refused: it cannot import" in record.message for record in caplog.records) == 2
    # Without isolation the recording kills the worker itself, and the scheduler has no other one.
    with pytest.raises(BatchError, match="has had no worker"):
        evaluate(fleet.site(), [fleet.killer()], client=client, no_worker_timeout=0.5, isolate=False)


def test_a_worker_of_another_version_is_refused_by_name(cluster, client, tmp_path, caplog):
    (tmp_path / "sitecustomize.py").write_text("import orvantis_zones\norvantis_zones.__version__ = '0.1'\n")
    cluster.add_worker(PYTHONPATH=f"{tmp_path}:{fleet.environment()['PYTHONPATH']}")
    client.wait_for_workers(1, timeout=50)
    with pytest.raises(BatchError, match=rf"worker tcp://127\.0\.0\.1:\d+ was refused: it has orvantis_zones 0\.1; the client "
                                         rf"has {oz.__version__}$"):
        evaluate(fleet.site(), fleet.recordings(3), client=client, no_worker_timeout=0.5)
    assert ["is refused: it has orvantis_zones 0.1" in record.message for record in caplog.records] == [True]


def test_urls_are_fetched_in_the_worker(cluster, client, tmp_path):
    fsspec = pytest.importorskip("fsspec")
    cluster.add_worker()
    with zipfile.ZipFile(tmp_path / "day.zip", "w") as archive:
        archive.writestr("a.xyz", "1 1 1\n1 1 1\n")
    # The memory of this process is not that of the worker.
    fsspec.filesystem("memory").pipe("/b.xyz", b"1 1 1\n")
    urls = [f"zip://a.xyz::file://{tmp_path}/day.zip", "memory://b.xyz"]
    assert evaluate(fleet.site(), urls).zones["peak_points"].tolist() == [2, 1]
    for isolate in (None, False):
        batch = evaluate(fleet.site(), urls, client=client, isolate=isolate)
        assert batch.zones["peak_points"].tolist() == [2]
        assert batch.errors["recording"].tolist() == urls[1:]
        assert batch.errors["text"][0].startswith("memory://b.xyz: cannot be read: ")


def test_ten_thousand_tiny_recordings_take_few_tasks_files_and_no_processes(cluster, client, tmp_path, monkeypatch):
    given = [oz.Recording.from_arrays(fleet.moments(k), name=f"recording {k}") for k in range(10_000)]
    counts = collections.Counter()
    for owner, name in ((client, "submit"), (os, "fsync"), (os, "replace"), (subprocess, "Popen"), (tempfile, "mkstemp")):
        def counted(*words, _name=name, _real=getattr(owner, name), **named):
            counts[_name] += 1
            return None if _name == "fsync" else _real(*words, **named)
        monkeypatch.setattr(owner, name, counted)
    for _ in range(2):
        cluster.add_worker()
    client.wait_for_workers(2, timeout=50)
    counts.clear()
    batch = evaluate(fleet.site(), given, client=client, folder=tmp_path)
    assert counts.pop("submit") < 2_000
    assert counts == {"fsync": 10_000, "replace": 10_000, "mkstemp": 10_000}
    assert batch.recordings["recording"].tolist() == [recording.name for recording in given]
    assert set(batch.recordings["status"]) == {"finished"} and set(batch.work["attempts"]) == {1}
    # Recordings of the same moments have the same rows.
    sample = evaluate(fleet.site(), given[:28])
    begin = {name: table.num_rows for name, table in (("events", sample.events), ("zones", sample.zones))}
    assert (batch.events["stamp"][:begin["events"]] == sample.events["stamp"]).all()
    rows = collections.Counter(batch.events["recording"].tolist())
    assert all(rows[f"recording {k}"] == rows[f"recording {k % 28}"] for k in range(10_000))
    assert batch.zones["activations"].tolist() == (sample.zones["activations"].tolist() * 358)[:10_000]
    # And it is taken up again from its files alone.
    counts.clear()
    again = evaluate(fleet.site(), given, client=client, folder=tmp_path)
    assert counts == {} and again.events == batch.events


def test_a_recording_that_killed_its_workers_is_found_out_alone(cluster, client, tmp_path):
    client.run_on_scheduler(_allow_failures, 0)
    for _ in range(2):
        cluster.add_worker()
    client.wait_for_workers(2, timeout=50)
    first, second = fleet.recordings(2)
    batch = evaluate(fleet.site(), [first, fleet.killer(), second], client=client, isolate=False)
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
        evaluate(fleet.site(), given, client=client, folder=tmp_path / "out", progress=kill, no_worker_timeout=3,
                 isolate=False)
    kept = len(list(pathlib.Path(tmp_path / "out" / "finished").iterdir()))
    assert kept >= 5
    # The worker does not know yet that nobody waits for it.
    cluster.end(cluster.workers)
    log.unlink()
    evaluate(fleet.site(), given, folder=tmp_path / "out")
    assert len(log.read_text().split()) == 20 - kept
