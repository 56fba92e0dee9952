"""Every call that takes more than microseconds lets other threads go on meanwhile."""
import copy
import sys
import threading
import time

import numpy as np
import pytest
from conftest import CROSSING

import orvantis_zones as oz
from orvantis_zones import _core

POINTS = np.random.default_rng(1).uniform((-5, -5, -1), (30, 20, 4), (100_000, 3))
SITE = oz.load(CROSSING)
TEXT = SITE.dumps().encode()
STAMPS = iter(range(10**9))


@pytest.fixture(scope="module")
def files(tmp_path_factory):
    folder = tmp_path_factory.mktemp("files")
    (folder / "a.bin").write_bytes(np.zeros((50_021, 4), np.float32).tobytes())
    (folder / "many").mkdir()
    for number in range(2_000):
        (folder / "many" / f"{number}.bin").touch()
    return folder


def frames(files):
    return _core.Frames({"clouds": [str(files / "a.bin")], "rate": 10.0, "stamps": "", "sensors": "", "window": 0.05,
                         "tracks": "", "tracks_format": "csv"}, SITE)


def evaluation(files=None):
    made = _core.Evaluation(SITE, 2.0, 0.0, float("inf"), False, True)
    if files is not None:
        made.feed(frames(files), 1)
    return made


def session():
    made = oz.Session(SITE)
    made.take(0.0, POINTS)
    return made


# What is called, and what makes its arguments.
CALLS = {
    "classify": (lambda _: oz.Site.classify, lambda _: (SITE, POINTS)),
    "count": (lambda _: oz.Site.count, lambda _: (SITE, POINTS)),
    "counted masks": (lambda _: _core.counted_masks, lambda _: (SITE, POINTS)),
    "contains points": (lambda _: oz.Zone.contains_points, lambda _: (SITE.zone(0, 0), POINTS)),
    "a classifier": (lambda _: oz.Classifier, lambda _: (SITE.copy(),)),
    "classify of a classifier": (lambda _: oz.Classifier.classify, lambda _: (SITE.classifier(), POINTS)),
    "count of a classifier": (lambda _: oz.Classifier.count, lambda _: (SITE.classifier(), POINTS)),
    "check": (lambda _: _core.check, lambda _: (TEXT,)),
    "write": (lambda _: _core.write, lambda _: (SITE,)),
    "write whole": (lambda _: _core.write_whole, lambda f: (str(f / "out"), TEXT)),
    "to svg": (lambda _: _core.to_svg, lambda _: (SITE, POINTS, "")),
    "read points": (lambda _: _core.read_points, lambda f: (str(f / "a.bin"),)),
    "files of": (lambda _: _core.files_of, lambda f: (str(f / "many"),)),
    "frames": (lambda f: lambda: frames(f), lambda _: ()),
    "next": (lambda _: _core.Frames.next, lambda f: (frames(f),)),
    "a session": (lambda _: oz.Session, lambda _: (SITE,)),
    "take": (lambda _: oz.Session.take, lambda _: (session(), 1.0, POINTS)),
    "explain": (lambda _: oz.Session.explain, lambda _: (session(), POINTS)),
    "reconfigure": (lambda _: oz.Session.reconfigure, lambda _: (session(), SITE)),
    "an evaluation": (lambda _: evaluation, lambda _: ()),
    "take of an evaluation": (lambda _: _core.Evaluation.take, lambda _: (evaluation(), 0.0, POINTS, None)),
    "feed": (lambda _: _core.Evaluation.feed, lambda f: (evaluation(), frames(f), 16)),
    "finish": (lambda _: _core.Evaluation.finish, lambda f: (evaluation(f), True, False, "")),
}


@pytest.fixture
def other():
    """A thread that notes when it goes on. Until this one gives the lock away by itself, it does not."""
    before = sys.getswitchinterval()
    noted, wake, ended = [], threading.Semaphore(0), []

    def note():
        while wake.acquire() and not ended:
            noted.append(True)

    thread = threading.Thread(target=note)
    thread.start()
    sys.setswitchinterval(1000.0)
    try:
        yield noted, wake
    finally:
        sys.setswitchinterval(before)
        ended.append(True)
        wake.release()
        thread.join()


def goes_on(other, call):
    """Whether the other thread went on in the call."""
    noted, wake = other
    noted.clear()
    wake.release()
    awake = time.perf_counter() + 0.0005
    while time.perf_counter() < awake:
        pass
    assert not noted
    call()
    return bool(noted)


@pytest.mark.parametrize("name", CALLS)
def test_another_thread_goes_on_in(name, files, other):
    call, arguments = CALLS[name]
    call = call(files)
    # Whether the other thread is awake in time is the system's matter, so it is tried until it was.
    for _ in range(500):
        given = arguments(files)
        if goes_on(other, lambda: call(*given)):
            return
    raise AssertionError("the lock was held all the time")


SHORT = {
    "fork": copy.copy,
    "occupants": lambda session: session.occupants(0, 0),
    "explain crossing": lambda session: session.explain_crossing("Crossing", 1),
    "tallies": lambda session: session.tallies(),
    "active field": lambda session: session.active_field,
    "another active field": lambda session: setattr(session, "active_field", 1),
}


@pytest.mark.parametrize("name", SHORT)
def test_another_thread_goes_on_while_a_session_is_busy_with_another_call(name, other):
    session, many = oz.Session(SITE), np.tile(POINTS, (50, 1))
    for _ in range(100):
        thread = threading.Thread(target=lambda: session.take(next(STAMPS), many))
        thread.start()
        time.sleep(0.002)  # in which it begins
        found = goes_on(other, lambda: SHORT[name](session))
        thread.join()
        if found:
            return
    raise AssertionError("the lock was held all the time")


def test_a_call_that_needs_the_lock_all_the_time_is_found_out(other):
    assert not any(goes_on(other, lambda: sum(range(10_000))) for _ in range(50))
