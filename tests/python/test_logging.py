"""The engine's log goes to `logging`, once, and never while a lock is held."""
import logging
import subprocess
import sys

import numpy as np
import pytest
from conftest import square

import orvantis_zones as oz


@pytest.fixture
def traced(caplog):
    oz.set_log_level("TRACE")
    caplog.set_level(1)
    yield caplog
    oz.set_log_level(logging.WARNING)


def ask():
    oz.CounterLine((0, 0), (0, 2), "door").side((1.0, 1.0))


def test_records_come_once_with_name_and_level(traced, capfd):
    oz.loads(a_document())
    names = {record.name for record in traced.records}
    assert "orvantis.SettingsManager" in names and all(name.split(".")[0] == "orvantis" for name in names)
    assert {record.levelno for record in traced.records} <= {5, 10}
    traced.clear()
    ask()
    direction = [record for record in traced.records if "direction::'door'" in record.getMessage()]
    assert len(direction) == 1 and direction[0].levelno == 5 and direction[0].pathname == oz._shapes.__file__
    shown = capfd.readouterr()
    assert shown.out == "" and shown.err == ""


def a_document():
    site = oz.Site()
    site.fields[0] = [oz.Zone(square(name="gate"))]
    site.counter_lines["door"] = oz.CounterLine((0, 0), (0, 2))
    return site.dumps()


def test_errors_keep_their_level_and_come_with_the_next_call(caplog):
    # What no user would make, and no call of the module: a rectangle of three corners.
    oz.Rectangle.__new__(oz.Rectangle).__setstate__((b"three", np.zeros((3, 2)), 0.0))
    assert not caplog.records
    ask()
    told = [(record.levelno, record.name, record.getMessage()) for record in caplog.records]
    assert told == [(40, "orvantis", "Invalid rectangle inputs of corners size 3")]


def test_nothing_is_logged_below_the_level(caplog):
    caplog.set_level(1)
    ask()
    oz.loads(a_document())
    assert not caplog.records


def test_levels_have_names_and_numbers():
    for level in ("ERROR", "WARNING", logging.DEBUG, "TRACE", 1, 100):
        oz.set_log_level(level)
    for wrong in ("LOUD", None, 1.5, True):
        with pytest.raises(ValueError, match="it must be a level of logging"):
            oz.set_log_level(wrong)
    oz.set_log_level("WARNING")


def test_a_handler_may_call_the_module(traced):
    depth = []

    class Asking(logging.Handler):
        def emit(self, record):
            if len(depth) < 3:
                depth.append(record.getMessage())
                ask()

    handler = Asking()
    logging.getLogger("orvantis").addHandler(handler)
    try:
        ask()
    finally:
        logging.getLogger("orvantis").removeHandler(handler)
    assert len(depth) == 3


def test_a_handler_that_throws_does_not_end_the_call(traced, monkeypatch):
    told = []
    monkeypatch.setattr(sys, "unraisablehook", lambda unraisable: told.append(unraisable.exc_value))

    def throws(record):
        raise KeyError("handler")

    logger = logging.getLogger("orvantis")
    logger.addFilter(throws)
    try:
        assert oz.CounterLine((0, 0), (0, 2), "door").side((1.0, 1.0)) == 1
    finally:
        logger.removeFilter(throws)
    assert [str(error) for error in told] == ["'handler'"] * len(told) and told


def run(script, timeout=120):
    return subprocess.run([sys.executable, "-B", "-c", script], capture_output=True, text=True, timeout=timeout)


THREADS = """
import logging, sys, threading
import numpy as np
import orvantis_zones as oz
sys.setswitchinterval(1e-5)
count = [0]
class Slow(logging.Handler):
    def emit(self, record):
        count[0] += 1
logging.getLogger("orvantis").addHandler(Slow())
logging.getLogger("orvantis").setLevel(1)
logging.getLogger("orvantis").propagate = False
oz.set_log_level("TRACE")
site = oz.Site()
site.fields[0] = [oz.Zone(oz.Rectangle((0, 0), (2, 2), name="gate"))]
site.counter_lines["door"] = oz.CounterLine((0, 0), (0, 2))
points = np.random.default_rng(1).uniform(-1, 3, (200_000, 3))
text = site.dumps()
def log():
    for _ in range(150):
        oz.loads(text)
        site.counter_lines["door"].side([(1, 1)] * 20)
def classify():
    for _ in range(150):
        site.classify(points)
        oz.Session(site).take(0.0, points)
threads = [threading.Thread(target=target) for target in (log, log, classify)]
[thread.start() for thread in threads]
[thread.join() for thread in threads]
print(count[0] > 10_000)
"""


def test_two_threads_that_log_and_one_that_classifies_come_to_an_end():
    done = run(THREADS)
    assert (done.stdout, done.stderr, done.returncode) == ("True\n", "", 0)


AT_END = """
import atexit, logging, threading
import orvantis_zones as oz
logging.basicConfig(level=1)
oz.set_log_level("TRACE")
line = oz.CounterLine((0, 0), (0, 2))
class Late:
    def __del__(self):
        line.side((1, 1))
late = Late()
def forever():
    while True:
        line.side((1, 1))
threading.Thread(target=forever, daemon=True).start()
"""


def test_the_interpreter_ends_while_threads_log():
    for _ in range(3):
        assert run(AT_END).returncode == 0
