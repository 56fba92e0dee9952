"""The package of batches is typed throughout, and what is public tells what it is."""
import doctest
import pathlib
import subprocess
import sys

import fleet
import pytest

from orvantis_zones import batch


def test_mypy_is_content(tmp_path):
    pytest.importorskip("mypy")
    files = sorted(pathlib.Path(batch.__file__).parent.glob("*.py"))
    done = subprocess.run([sys.executable, "-m", "mypy", "--strict", "--cache-dir", str(tmp_path), *map(str, files)],
                          capture_output=True, text=True, timeout=300, env=fleet.environment(), cwd=tmp_path)
    assert done.returncode == 0, done.stdout


def test_public_names_have_docstrings_and_their_examples_are_true():
    assert all(getattr(batch, name).__doc__ for name in batch.__all__)
    assert doctest.testmod(batch).failed == 0 and doctest.testmod(batch).attempted >= 4
    assert all(method.__doc__ for method in (batch.Batch.write,))


def test_columns_of_numbers_are_numbers():
    made = batch.evaluate(fleet.site(), fleet.recordings(2))
    assert [made.recordings[name].dtype.kind for name in ("frames", "begin", "end", "seconds")] == list("ifff")
    assert [made.work[name].dtype.kind for name in ("host", "attempts", "seconds")] == list("Uif")
