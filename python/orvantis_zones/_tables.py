"""Tables: columns of the CSV files that the command writes."""
import csv
import html
import io
import os
from collections.abc import Mapping

import numpy as np

from . import _core
from ._words import counted

_FLOATS = {"stamp", "began", "dwell", "met", "x", "y", "taken_ms", "occupied", "median_dwell", "longest_dwell",
           "begin", "end", "seconds"}
_INTEGERS = {"field", "zone", "track", "points", "no_returns", "excluded", "objects", "activations", "peak_points",
             "peak_objects", "visits", "to_left", "to_right", "net_to_left", "frames", "attempts"}
_NUMBERED = ("points_", "occupied_", "objects_")


def _column(name, cells):
    if name in _FLOATS:
        return np.array([float(cell) if cell else np.nan for cell in cells], np.float64)
    if name in _INTEGERS or name.startswith(_NUMBERED):
        return np.array([int(cell) if cell else -1 for cell in cells], np.int64)
    return np.array(cells, np.str_) if cells else np.empty(0, "U1")


class Table(Mapping):
    """Columns by name, as numpy arrays; pandas.DataFrame(dict(table)) works.

    What is absent is NaN in floats, -1 in integers and '' in texts. Stamps are floats; the file has them exactly.

    >>> table = Table(b"stamp,zone,name\\n0.5,,gate\\n")
    >>> table.num_rows, table["stamp"].tolist(), table["zone"].tolist(), table["name"].tolist()
    (1, [0.5], [-1], ['gate'])
    """

    def __init__(self, text):
        self._text = bytes(text)
        rows = csv.reader(io.StringIO(self._text.decode("utf-8", "replace"), newline=""))
        names = next(rows)
        cells = list(zip(*rows)) or [()] * len(names)
        self._columns = {name: _column(name, column) for name, column in zip(names, cells)}
        for column in self._columns.values():
            column.flags.writeable = False
        self.num_rows = len(cells[0])

    def __getitem__(self, name):
        return self._columns[name]

    def __iter__(self):
        return iter(self._columns)

    def __len__(self):
        return len(self._columns)

    def __eq__(self, other):
        return isinstance(other, Table) and self._text == other._text

    __hash__ = None

    def __reduce__(self):
        return Table, (self._text,)

    def __repr__(self):
        return f"<Table: {counted(self.num_rows, 'row')} of {', '.join(self)}>"

    def to_pandas(self):
        """A pandas.DataFrame of it. Needs python3-pandas.

        >>> print(Table(b"stamp,name\\n0.5,gate\\n").to_pandas())
           stamp  name
        0    0.5  gate
        """
        import pandas
        return pandas.DataFrame(dict(self))

    def to_csv(self, path):
        """Writes the bytes that the command writes: whole or not at all. Raises OSError.

        >>> Table(b"stamp,name\\n0.5,gate\\n").to_csv("events.csv")
        >>> open("events.csv").read()
        'stamp,name\\n0.5,gate\\n'
        """
        _core.write_whole(os.fspath(path), self._text)

    def _repr_html_(self):
        shown = 50
        text = self._text.decode("utf-8", "replace")
        rows = list(csv.reader(io.StringIO(text, newline="")))
        head, body = rows[0], rows[1:shown + 1]
        parts = ["<table><thead><tr>", *(f"<th>{html.escape(name)}</th>" for name in head), "</tr></thead><tbody>"]
        for row in body:
            parts += ["<tr>", *(f"<td>{html.escape(cell)}</td>" for cell in row), "</tr>"]
        parts.append("</tbody></table>")
        if self.num_rows > shown:
            parts.append(f"<p>{shown} of {self.num_rows} rows are shown.</p>")
        return "".join(parts)
