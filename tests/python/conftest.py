"""What the tests of the module share: fixed seeds, and the example that stands in the repository."""
import os
import pathlib
import subprocess
import tempfile

import numpy as np
import pytest

# Nothing is left where the tests are started.
os.environ.setdefault("HYPOTHESIS_STORAGE_DIRECTORY", os.path.join(tempfile.gettempdir(), "orvantis-hypothesis"))
from hypothesis import HealthCheck, settings  # noqa: E402

import orvantis_zones as oz  # noqa: E402

settings.register_profile("fixed", derandomize=True, database=None, deadline=None, print_blob=False,
                          suppress_health_check=list(HealthCheck))
settings.load_profile("fixed")

SOURCE = pathlib.Path(os.environ.get("ORVANTIS_SOURCE_DIR", pathlib.Path(__file__).parents[2]))
CROSSING = SOURCE / "examples" / "crossing" / "crossing.json"


@pytest.fixture
def site():
    return oz.load(CROSSING)


@pytest.fixture
def points():
    """Points of the crossing's extent, some of them no returns."""
    made = np.random.default_rng(15).uniform((-5, -5, -1), (30, 20, 4), (20_000, 3))
    made[::97, 1] = np.nan
    return made


@pytest.fixture
def command():
    """Runs the command, and gives its exit code, output and error stream."""
    def run(*words, cwd=None):
        program = os.environ["ORVANTIS_COMMAND"]
        done = subprocess.run([program, *map(str, words)], cwd=cwd, capture_output=True, text=True, timeout=120)
        return done.returncode, done.stdout, done.stderr
    return run


def square(side=2.0, name="square", x=0.0, y=0.0):
    return oz.Rectangle((x, y), (x + side, y + side), name=name)
