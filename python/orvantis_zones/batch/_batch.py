"""The results of many recordings, merged by position."""
from __future__ import annotations

import csv
import html
import io
import os
from collections.abc import Iterable, Iterator, Sequence

from .. import Site, Table
from .._words import counted
from ._outcome import TABLES, Outcome
from ._unit import PathLike
from ._work import tables_without_rows

WRITTEN = (*TABLES, "recordings", "errors", "warnings")


class Batch:
    """Tables with a first column `recording`, in the order given. Made by evaluate().

    events, zones, lines: as those of a Run. recordings: recording, frames, begin, end, seconds, status. errors:
    recording, kind, text. warnings: recording, text. All of these are the same bytes wherever they were made. work tells
    of this time: recording, host, attempts, and the seconds that the evaluation took.
    """

    def __init__(self, site: Site, names: Sequence[str], outcomes: Sequence[Outcome]) -> None:
        both = list(zip(names, outcomes))
        good = [(name, outcome) for name, outcome in both if not outcome.kind]
        empty = tables_without_rows(site)
        self.events, self.zones, self.lines = (
            _table(["recording", *next(_rows(empty[table]))],
                   ([name, *row] for name, outcome in good for row in list(_rows(getattr(outcome, table)))[1:]))
            for table in TABLES)
        self.recordings = _table(["recording", "frames", "begin", "end", "seconds", "status"],
                                 ([name, o.frames, o.begin, o.end, format(o.length(), "f"), o.kind or "finished"]
                                  for name, o in both))
        self.errors = _table(["recording", "kind", "text"], ([name, o.kind, o.text] for name, o in both if o.kind))
        self.warnings = _table(["recording", "text"], ([name, text] for name, o in both for text in o.warnings))
        self.work = _table(["recording", "host", "attempts", "seconds"],
                           ([name, o.host, o.attempts, f"{o.seconds:.3f}"] for name, o in both))

    def write(self, folder: PathLike) -> None:
        """Writes a .csv file of each table but work, each whole or not at all. Raises OSError.

        >>> import os
        >>> evaluate(Site(), []).write("out")
        >>> sorted(os.listdir("out"))
        ['errors.csv', 'events.csv', 'lines.csv', 'recordings.csv', 'warnings.csv', 'zones.csv']
        """
        os.makedirs(folder, exist_ok=True)
        for name in WRITTEN:
            getattr(self, name).to_csv(os.path.join(folder, name + ".csv"))

    def __repr__(self) -> str:
        return (f"<Batch: {counted(self.recordings.num_rows, 'recording')}, "
                f"{counted(self.events.num_rows, 'event')}, {counted(self.errors.num_rows, 'error')}>")

    def _repr_html_(self) -> str:
        parts = [f"<p>{html.escape(repr(self)[1:-1])}</p>", self.recordings._repr_html_()]
        if self.errors.num_rows:
            parts += ["<p>Errors:</p>", self.errors._repr_html_()]
        return "".join(parts)


def _rows(text: str) -> Iterator[list[str]]:
    return csv.reader(io.StringIO(text, newline=""))


def _table(names: Iterable[str], rows: Iterable[Iterable[object]]) -> Table:
    text = io.StringIO(newline="")
    writer = csv.writer(text, lineterminator="\n")
    writer.writerow(names)
    writer.writerows(rows)
    return Table(text.getvalue().encode("utf-8", "surrogateescape"))
