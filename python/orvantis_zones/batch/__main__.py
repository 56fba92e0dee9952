"""The command line of batches."""
from __future__ import annotations

import argparse
import importlib
import logging
import os
import sys
from collections.abc import Sequence
from typing import Any

from .. import Recording, load
from . import Batch, BatchError, evaluate
from ._batch import WRITTEN

_ABOUT = """Evaluates many recordings with one zone document, here or on a Dask cluster. A RECORDING is a file, a folder of
frames or recordings, or a URL of storage that fsspec knows; - stands for a list of them on the standard input. With -o, what
is finished is kept in the folder, and the same command goes on where it was ended; without, the events are printed."""
_CODES = """Exit codes: 0 all is good; 1 recordings are in errors, or an input or output is at fault, or the scheduler has
no workers; 2 wrong usage; 130 Ctrl-C ended it."""


def main(words: Sequence[str] | None = None) -> int:
    """Exit code of a command line, that of this process unless given."""
    parser = argparse.ArgumentParser("python3 -m orvantis_zones.batch", description=_ABOUT, epilog=_CODES)
    parser.add_argument("site", metavar="SITE", help="zone document")
    parser.add_argument("recordings", metavar="RECORDING", nargs="+", help="file, folder or URL; each is one recording")
    parser.add_argument("-o", dest="folder", metavar="FOLDER", help="folder to write tables into, and to keep what is finished")
    parser.add_argument("--scheduler", metavar="URL", help="of a Dask scheduler, such as tcp://host:8786")
    parser.add_argument("--isolate", action="store_true", help="each evaluation in a process of its own, as that of a URL on a scheduler")
    parser.add_argument("--tracks", action="store_true", help="each RECORDING is a file of tracked objects")
    parser.add_argument("--rate", metavar="HZ", type=float, help="of single frames; 10 unless given")
    parser.add_argument("--forget-after", metavar="S", type=float, default=2.0, help="as that of zone-detector run")
    parser.add_argument("--clearance", metavar="M", type=float, default=0.0, help="as that of zone-detector run")
    parser.add_argument("--max-speed", metavar="M/S", type=float, default=float("inf"), help="as that of zone-detector run")
    parser.add_argument("-q", "--quiet", action="store_true", help="no warnings and no progress on the error stream")
    given = parser.parse_args(words)
    if given.tracks and given.rate is not None:
        parser.error("--rate is of frames; --tracks have stamps")
    logging.basicConfig(format="orvantis_zones.batch: %(message)s", level=logging.ERROR if given.quiet else logging.WARNING)
    try:
        batch = _batch(given)
    except KeyboardInterrupt:
        kept = f"; what is finished is kept in {given.folder}" if given.folder else ""
        _say(f"interrupted{kept}")
        return 130
    except (BatchError, OSError, ValueError) as error:
        _say(str(error))
        return 1
    for name, kind, text in zip(*(batch.errors[column].tolist() for column in ("recording", "kind", "text"))):
        _say(f"{name}: {kind}: {text}")
    if not given.quiet:
        for name, text in zip(batch.warnings["recording"].tolist(), batch.warnings["text"].tolist()):
            _say(f"warning: {name}: {text}")
    return 1 if batch.errors.num_rows else 0


def _batch(given: argparse.Namespace) -> Batch:
    site = load(given.site)
    paths = _paths(given.recordings)
    if given.folder:
        _refuse_to_overwrite(given.folder, [given.site, *paths])
    client: Any = _client(given.scheduler) if given.scheduler else None
    try:
        batch = evaluate(site, [_recording(path, given) for path in paths], client=client,
                         folder=given.folder, isolate=given.isolate or None, progress=not given.quiet and sys.stderr.isatty(),
                         forget_after=given.forget_after, clearance=given.clearance, max_speed=given.max_speed)
    finally:
        if client is not None:
            client.close()
    if given.folder:
        batch.write(given.folder)
    else:
        sys.stdout.buffer.write(getattr(batch.events, "_text"))
    return batch


def _refuse_to_overwrite(folder: str, inputs: list[str]) -> None:
    for table in (os.path.join(folder, name + ".csv") for name in WRITTEN):
        # Every .csv file of a folder of frames is a frame.
        if os.path.exists(table) and any(os.path.exists(path) and os.path.samefile(path, other)
                                         for path in inputs for other in (table, folder)):
            raise ValueError(f"{table}: cannot be written: the tables are made from it; give another folder")


def _paths(given: list[str]) -> list[str]:
    return [path for word in given
            for path in (filter(None, sys.stdin.read().splitlines()) if word == "-" else [word])]


def _recording(path: str, given: argparse.Namespace) -> Recording | str:
    if given.tracks:
        return Recording(tracks=path, name=path)
    if given.rate is None:
        return path
    if os.path.isdir(path):
        recording = Recording.from_folder(path, rate=given.rate)
        recording.name = path
        return recording
    return Recording([path], rate=given.rate, name=path)


def _client(url: str) -> Any:
    try:
        distributed: Any = importlib.import_module("distributed")
    except ImportError:
        raise BatchError("--scheduler needs python3-distributed") from None
    try:
        return distributed.Client(url, timeout=10, set_as_default=False)
    except (OSError, ValueError, TimeoutError) as error:
        raise BatchError(f"the scheduler {url} cannot be reached: {error}") from None


def _say(text: str) -> None:
    print(f"orvantis_zones.batch: {text}", file=sys.stderr)


if __name__ == "__main__":
    sys.exit(main())
