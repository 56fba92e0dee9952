"""Recordings and a cluster for the tests of batches. Workers import it too."""
import contextlib
import functools
import json
import os
import pathlib
import signal
import subprocess
import sys
import time

import orvantis_zones as oz

TABLES = ("events", "zones", "lines", "recordings", "errors", "warnings")


def site():
    made = oz.Site()
    made.fields[0] = [oz.Zone(oz.Rectangle((0, 0), (2, 2), name='gate, "old"'))]
    made.counter_lines["door"] = oz.CounterLine((3, 0), (3, 2))
    return made


def moments(seed):
    """A point goes in and out of the zone, in a rhythm of the seed."""
    return [(0.1 * k, [(1.0 if (k * (seed % 7 + 1)) % 5 < 2 else 9.0, 1.0, 1.0)], None) for k in range(5 + seed % 4)]


def recordings(count):
    return [oz.Recording.from_arrays(moments(k), name=f"recording {k}") for k in range(count)]


def _slow(seed, log, seconds):
    with open(log, "a") as file:
        file.write(f"{seed}\n")
    time.sleep(seconds)
    return moments(seed)


def slow(seed, log, seconds=0.0):
    """A recording that notes each evaluation in a log."""
    return oz.Recording.from_arrays(functools.partial(_slow, seed, str(log), seconds), name=f"recording {seed}")


def _kill():
    os.kill(os.getpid(), signal.SIGKILL)


def killer(name="killer"):
    """A recording that kills the process that reads it."""
    return oz.Recording.from_arrays(_kill, name=name)


class _Process:
    """Moments of as many points as the number of the process that reads them says."""

    def __call__(self):
        yield 0.0, [(1.0, 1.0, 1.0)] * (os.getpid() % 50_000 + 1), None

    def __iter__(self):
        return self()


def process(name, call=True):
    made = _Process()
    return oz.Recording.from_arrays(made if call else iter_only(made), name=name)


class iter_only:
    """An object of a caller that is read by being iterated, and cannot be called."""

    def __init__(self, made):
        self._made = made

    def __iter__(self):
        return iter(self._made)


def _raise(error):
    raise error


def raising(error, name="raising"):
    return oz.Recording.from_arrays(functools.partial(_raise, error), name=name)


def _when(path):
    with open(path):
        return moments(0)


def when(path, name="when"):
    """A recording that can be read once that file is there."""
    return oz.Recording.from_arrays(functools.partial(_when, str(path)), name=name)


def written(batch, folder):
    """The bytes of the files of a batch."""
    batch.write(folder)
    return {path.name: path.read_bytes() for path in sorted(pathlib.Path(folder).glob("*.csv"))}


def tracks(path, seed=0, rows=3):
    """A file of an object that crosses the line."""
    lines = [f"{0.1 * k:g},1,car,{2.5 + 0.5 * ((k + seed) % 3):g},1,0.2,0.2,0,0,1" for k in range(rows)]
    pathlib.Path(path).write_text("\n".join(["stamp,id,class,x,y,length,width,heading,zmin,zmax", *lines]) + "\n")
    return str(path)


def environment():
    here = [str(pathlib.Path(__file__).parent), str(pathlib.Path(oz.__file__).parents[1])]
    return {**os.environ, "PYTHONPATH": os.pathsep.join(here), "PYTHONDONTWRITEBYTECODE": "1"}


class Cluster:
    """A scheduler and workers on 127.0.0.1, without nannies: what is killed stays dead."""

    def __init__(self, folder):
        self._folder, self.processes, self.workers = folder, [], []
        file = folder / "scheduler.json"
        self.scheduler = self._start("dask_scheduler", "--host", "127.0.0.1", "--port", "0", "--no-dashboard",
                                     "--scheduler-file", file)
        deadline = time.monotonic() + 50
        while not (file.exists() and file.read_text().endswith("}")) and time.monotonic() < deadline:
            time.sleep(0.05)
        self.address = json.loads(file.read_text())["address"]

    def _start(self, module, *words, **changed):
        process = subprocess.Popen([sys.executable, "-m", f"distributed.cli.{module}", *map(str, words)],
                                   env={**environment(), **changed}, stdin=subprocess.DEVNULL,
                                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, cwd=self._folder)
        self.processes.append(process)
        return process

    def add_worker(self, **changed):
        number = len(self.processes)
        self.workers.append(self._start("dask_worker", self.address, "--nthreads", "1", "--no-nanny", "--no-dashboard",
                                        "--host", "127.0.0.1", "--local-directory", self._folder / f"worker{number}",
                                        **changed))
        return self.workers[-1]

    def end(self, processes=None):
        for process in processes or self.processes:
            with contextlib.suppress(OSError):
                process.send_signal(signal.SIGCONT)
            process.kill()
            process.wait()
