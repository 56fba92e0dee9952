#!/usr/bin/env python3
"""What recordings of each kind cost, how a Dask cluster on this machine scales, and what tiny recordings cost.

    PYTHONPATH=build/release/python benchmarks/python/batches.py [kinds] [scaling] [tiny]

Tables are compared before times are told. Needs python3-distributed."""
import contextlib
import os
import pathlib
import sys
import tempfile
import time

import recordings

import orvantis_zones as oz
import orvantis_zones.batch._shares
from orvantis_zones.batch import evaluate
from orvantis_zones.batch._unit import units_of
from orvantis_zones.batch._work import work

# The cluster of the tests.
sys.path.append(str(pathlib.Path(__file__).resolve().parents[2] / "tests" / "python" / "batch"))
import fleet as cluster  # noqa: E402


def kinds(folder):
    """Processor time a frame, least of three."""
    count = 200
    made = {kind: oz.Recording.from_folder(recordings.write_files(folder / kind, kind, count)) for kind in recordings.FILES}
    made[".mcap"] = oz.Recording([recordings.write_mcap(folder / "a.mcap", count)])
    print("| frames | bytes a frame | processor ms a frame | hours of recording (10 Hz) a core hour |\n|---|---|---|---|")
    tables = set()
    for kind, recording in made.items():
        taken = []
        for _ in range(3):
            begin = time.process_time()
            batch = evaluate(cluster.site(), [recording])
            taken.append((time.process_time() - begin) / count)
        assert batch.recordings["frames"].tolist() == [count], batch.errors
        tables.add((batch.zones["peak_points"].tolist()[0], batch.zones["activations"].tolist()[0]))
        size = sum(pathlib.Path(path).stat().st_size for path in recording.clouds) / count
        print(f"| {kind} | {size:,.0f} | {min(taken) * 1e3:.2f} | {0.1 / min(taken):.0f} |")
    assert len(tables) == 1, tables


@contextlib.contextmanager
def started(folder, workers):
    import distributed
    made = cluster.Cluster(folder)
    try:
        for _ in range(workers):
            made.add_worker()
        with distributed.Client(made.address, set_as_default=False, timeout=50) as client:
            client.wait_for_workers(workers, timeout=50)
            yield client
    finally:
        made.end()


def scaling(folder):
    """Elapsed time on one and two workers, least of three."""
    made = [recordings.write_files(folder / f"day {k}", ".bin, 4 columns", 2000) for k in range(8)]
    expected = cluster.written(evaluate(cluster.site(), made), folder / "here")
    found = {}
    for workers in (1, 2):
        (folder / f"cluster {workers}").mkdir()
        with started(folder / f"cluster {workers}", workers) as client:
            taken = []
            for _ in range(4):  # in the first, the workers import the package
                begin = time.perf_counter()
                batch = evaluate(cluster.site(), made, client=client)
                taken.append(time.perf_counter() - begin)
                assert cluster.written(batch, folder / "there") == expected
        found[workers] = min(taken[1:])
        print(f"{len(made)} recordings of 2000 frames on {workers} workers: {found[workers]:.2f} s")
    print(f"{found[1] / found[2]:.2f} times as fast")


def tiny(folder):
    """10,000 recordings of at most 8 frames against the work alone: 1.5 times that and 2 ms each are aimed at."""
    count = 10_000
    made = [oz.Recording.from_arrays(cluster.moments(k), name=f"recording {k}") for k in range(count)]
    options = {"forget_after": 2.0, "clearance": 0.0, "max_speed": float("inf")}
    units = units_of(cluster.site(), made, options, False, False)
    begin = time.perf_counter()
    for unit in units:
        work(unit.task)
    alone = time.perf_counter() - begin
    print(f"\nThe work: {alone:.2f} s, {alone / count * 1e3:.2f} ms each. Aimed at: {1.5 * alone + 0.002 * count:.2f} s\n")
    print("| how | s | of what is aimed at | beside the work, ms each |\n|---|---|---|---|")

    def told(how, call):
        begin = time.perf_counter()
        batch = call()
        taken = time.perf_counter() - begin
        print(f"| {how} | {taken:.2f} | {taken / (1.5 * alone + 0.002 * count):.2f} | {(taken - alone) / count * 1e3:.2f} |")
        return batch.events

    expected = told("here", lambda: evaluate(cluster.site(), made))
    assert told("here, with a folder", lambda: evaluate(cluster.site(), made, folder=folder / "a")) == expected
    assert told("the same again", lambda: evaluate(cluster.site(), made, folder=folder / "a")) == expected
    (folder / "cluster").mkdir()
    with started(folder / "cluster", 2) as client:
        evaluate(cluster.site(), made[:10], client=client)
        assert told("on Dask, 2 workers", lambda: evaluate(cluster.site(), made, client=client)) == expected
        assert told("the same with a folder",
                    lambda: evaluate(cluster.site(), made, client=client, folder=folder / "b")) == expected
        a_task_for_each(made[:1000], client, folder / "c")


def a_task_for_each(made, client, folder):
    """What a recording that is long enough for a task of its own costs client and scheduler."""
    orvantis_zones.batch._shares._MOST = 1
    scheduler = client.run_on_scheduler(os.getpid)
    spent = [processor_time(process) for process in (os.getpid(), scheduler)]
    evaluate(cluster.site(), made, client=client, folder=folder)
    for name, process, before in zip(("client", "scheduler"), (os.getpid(), scheduler), spent):
        print(f"A task for each on Dask, with a folder: {(processor_time(process) - before) / len(made) * 1e3:.1f} ms of the "
              f"{name}'s processor time each")


def processor_time(process):
    """In seconds, of all threads."""
    fields = pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")


def main(names):
    for measure in (kinds, scaling, tiny):
        if not names or measure.__name__ in names:
            with tempfile.TemporaryDirectory() as folder:
                measure(pathlib.Path(folder))


if __name__ == "__main__":
    main(sys.argv[1:])
