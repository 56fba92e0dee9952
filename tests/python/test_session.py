"""Sessions: events as the command tells them, one after the other, and nothing lost when something is refused."""
import copy
import datetime
import json
import pickle
import threading

import numpy as np
import pytest
from conftest import square

import orvantis_zones as oz

HERE = np.array([[1.0, 1.0, 1.0]])


@pytest.fixture
def gate():
    site = oz.Site()
    site.fields[0] = oz.Field([oz.Zone(square(name="gate"), 0.0, 2.0)], "day")
    site.counter_lines["door"] = oz.CounterLine((0.0, 1.0), (2.0, 1.0))
    return site


def person(track, x, y, name="person"):
    return oz.TrackedObject(track, x, y, 0.25, 0.25, 0.0, 0.0, 1.8, name)


def test_a_frame_tells_counts_states_and_events(gate):
    frame = oz.Session(gate).take(0.5, points=HERE, objects=[person(7, 1.0, 0.5), person(-1, 9.0, 9.0)])
    assert frame.stamp == 0.5 and frame.stamp_ns == 500_000_000
    assert frame.counts.inside[0, 0] == 1 and frame.counts.total == 1
    assert frame.occupied.tolist() == [[True, False, False]] + [[False] * 3] * 7
    assert frame.outputs == ("high", "low", "low")
    assert frame.object_zones.tolist() == [1, 0] and frame.object_zones.dtype == np.uint32
    assert [str(event) for event in frame.events] == [
        '     0.500 s  zone 0/0 "gate" occupied, since 0.500 s', "     0.500 s  outputs of field 0: high low low",
        '     0.500 s  person 7 entered zone 0/0 "gate"']
    occupied, outputs, entered = frame.events
    assert occupied == oz.ZoneEvent(500_000_000, "", "occupied", 0, "day", 0, "gate", 500_000_000)
    assert (occupied.began, occupied.stamp) == (0.5, 0.5)
    assert outputs.levels == ("high", "low", "low")
    assert (entered.track, entered.class_name, entered.dwell, entered.last_seen) == (7, "person", None, None)
    assert entered.to_dict() == {"type": "object", "stamp": 0.5, "event": "entered", "field": 0, "fieldName": "day",
                                 "zone": 0, "name": "gate", "track": 7, "class": "person"}


def test_what_was_not_there_is_none(gate):
    session = oz.Session(gate)
    frame = session.take(1)
    assert (frame.counts, frame.occupied, frame.outputs, frame.object_zones, frame.events) == (None,) * 4 + ((),)
    frame = session.take(2, points=[], objects=[])
    assert frame.counts.total == 0 and frame.object_zones.shape == (0,)


def test_crossings(gate):
    session = oz.Session(gate)
    session.take(0.0, objects=[person(7, 1.0, 0.5)])
    frame = session.take(1.0, objects=[person(7, 1.0, 1.5)])
    [crossing] = frame.events
    assert str(crossing) == '     1.000 s  person 7 crossed line "door" from right to left at 0.500 s, (1, 1)'
    assert (crossing.to, crossing.from_side, crossing.met, crossing.x, crossing.y) == ("left", "right", 0.5, 1.0, 1.0)
    tallies = session.tallies()
    assert {name: column.tolist() for name, column in tallies.items()} == {
        "line": ["door", "door"], "class": ["*", "person"], "to_left": [1, 1], "to_right": [0, 0],
        "net_to_left": [1, 1]}
    why = session.explain_crossing("door", 7)
    assert (why.verdict, why.side, why.last_crossing) == ("counted", "left", crossing)
    assert session.explain_crossing("door", 8).verdict == "notSeen"
    assert session.explain_crossing("door", 8).side is None
    with pytest.raises(KeyError, match="gate"):
        session.explain_crossing("gate", 7)
    assert session.occupants(0, 0) == [(7, "person", 0.0, 1.0)]
    with pytest.raises(IndexError):
        session.occupants(8, 0)
    assert session.take(9.0, points=HERE).events[-1].kind == "lost"


def test_what_is_told_is_of_these_types(gate):
    session = oz.Session(gate)
    first = session.take(0.0, HERE, [person(7, 1.0, 0.5)])
    second = session.take(1.0, [], [person(7, 1.0, 1.5)])
    assert type(first) is oz.Frame and type(first.counts) is oz.Counts
    assert [type(event) for event in first.events] == [oz.ZoneEvent, oz.OutputEvent, oz.ObjectEvent]
    assert [type(event) for event in second.events] == [oz.ZoneEvent, oz.OutputEvent, oz.CrossingEvent]
    assert all(isinstance(event, oz.Event) for event in (*first.events, *second.events))
    assert [type(why) for why in session.explain([])] == [oz.ZoneExplanation]
    assert type(session.explain_crossing("door", 7)) is oz.CrossingExplanation and type(session.tallies()) is oz.Table
    again = pickle.loads(pickle.dumps((first.counts, first.events, session.explain([]), session.tallies())))
    assert again == (first.counts, first.events, session.explain([]), session.tallies())
    assert [str(event) for event in again[1]] == [str(event) for event in first.events]


def test_why_a_zone_is_as_it_is(gate):
    gate.min_points, gate.debounce_ms = 2, 500
    gate.exclusion_zones.append(oz.Zone(square(0.5, name="pillar")))
    session = oz.Session(gate)
    points = [[1.0, 1, 1], [1.5, 1, 1], [0.25, 0.25, 1]]
    session.take(1.0, points)
    [why] = session.explain(points)
    assert (why.counted, why.min_points, why.taken, why.taken_by) == (2, 2, 1, {"pillar": 1})
    assert (why.occupied_now, why.occupied, why.differs_since, why.missing) == (True, False, 1.0, 0.5)


STAMPS = {
    "float": (0.1, 100_000_000),
    "float since 1970": (1700000000.123456, 1_700_000_000_123_456_000),
    "small": (1e-9, 1),
    "whole": (3, 3_000_000_000),
    "numpy whole": (np.int32(3), 3_000_000_000),
    "numpy double": (np.float64(0.3), 300_000_000),
    "numpy single": (np.float32(0.1), 100_000_000),
    "datetime64": (np.datetime64("2023-11-14T22:13:20.123456789"), 1_700_000_000_123_456_789),
    "datetime64 day": (np.datetime64("1970-01-02"), 86_400 * 10**9),
    "timedelta64": (np.timedelta64(1500, "us"), 1_500_000),
    "timedelta64 of several": (np.timedelta64(3, "25s"), 75 * 10**9),
    "timedelta": (datetime.timedelta(days=1, microseconds=1), 86_400_000_001_000),
    "datetime": (datetime.datetime(1970, 1, 1, 1, tzinfo=datetime.timezone.utc), 3600 * 10**9),
    "other zone": (datetime.datetime(1970, 1, 1, 1, tzinfo=datetime.timezone(datetime.timedelta(hours=1))), 0),
    "before": (-2.5, -2_500_000_000),
}


@pytest.mark.parametrize("name", STAMPS)
def test_stamps_count_exactly(gate, name):
    given, nanoseconds = STAMPS[name]
    assert oz.Session(gate).take(given).stamp_ns == nanoseconds


@pytest.mark.parametrize("given, error", [
    (float("nan"), ValueError), (float("inf"), ValueError), (5e9, ValueError), (-5e9, ValueError), (2**40, ValueError),
    ("0.5", TypeError), (None, TypeError), (True, TypeError), (np.datetime64("NaT"), ValueError),
    (np.timedelta64(5), ValueError), (np.timedelta64(1, "Y"), ValueError), (np.timedelta64(1, "ps"), ValueError),
    (datetime.datetime(2020, 1, 1), ValueError)])
def test_what_is_not_a_stamp_is_refused(gate, given, error):
    with pytest.raises(error, match="stamp is "):
        oz.Session(gate).take(given)


def test_a_refusal_changes_nothing(gate):
    session, twin = oz.Session(gate), oz.Session(gate)
    for each in (session, twin):
        each.take(1.0, HERE, [person(7, 1.0, 0.5)])
    before = session.tallies()
    for stamp in (1.0, 0.5):
        with pytest.raises(ValueError, match=f"stamp {stamp:g} s is not later than the last one, 1 s"):
            session.take(stamp, HERE, [])
    for stamp, points, objects in [(2.0, HERE, [person(7, 1, 1), person(7, 1, 1)]), (2.0, [[1, 2]], []),
                                   (2.0, HERE, [person(1, float("nan"), 0)]), (2.0, HERE, "people")]:
        with pytest.raises((ValueError, TypeError)):
            session.take(stamp, points, objects)
    assert session.tallies() == before
    first, second = (each.take(1.5, HERE * 9, [person(7, 1.0, 1.5)]) for each in (session, twin))
    assert first.events == second.events and len(first.events) == 3


def test_a_copy_is_a_fork(gate):
    session = oz.Session(gate)
    session.take(0.0, objects=[person(7, 1.0, 0.5)])
    fork = copy.copy(session)
    assert type(fork) is oz.Session
    with pytest.raises(ValueError, match="stamp 0 s is not later than the last one, 0 s"):
        fork.take(0.0, HERE)
    assert len(fork.take(1.0, objects=[person(7, 1.0, 1.5)]).events) == 1
    assert session.tallies()["to_left"][0] == 0 and fork.tallies()["to_left"][0] == 1
    assert len(session.take(1.0, objects=[person(7, 1.0, 1.5)]).events) == 1


def test_reconfiguring_tells_what_is_lost(gate):
    session = oz.Session(gate)
    session.take(1.0, HERE)
    gate.fields[0].name = "night"
    assert session.reconfigure(gate) == ()
    gate.zone(0, 0).z_max = 3.0
    [event] = session.reconfigure(gate)
    assert str(event) == '     1.000 s  zone 0/0 "gate" cleared, since 1.000 s'


def test_a_session_keeps_the_site_as_it_was(gate):
    session = oz.Session(gate)
    gate.zone(0, 0).shape = square(0.5)
    assert session.take(1.0, HERE).counts.inside[0, 0] == 1


def test_a_session_keeps_the_names_as_they_were(gate):
    session = oz.Session(gate)
    gate.zone(0, 0).name = "other"
    assert [event.zone_name for event in session.take(1.0, HERE).events[:1]] == ["gate"]
    assert [why.zone_name for why in session.explain(HERE)] == ["gate"]
    gate.exclusion_zones.append(oz.Zone(square(1.5, name="pillar")))
    session.reconfigure(gate)
    gate.exclusion_zones[0].name = "column"
    assert [(why.zone_name, why.taken_by) for why in session.explain(HERE)] == [("other", {"pillar": 1})]


def test_a_session_is_not_copied_by_chance(gate):
    for wrong in (copy.deepcopy, pickle.dumps):
        for thing in (oz.Session(gate), gate.classifier()):
            with pytest.raises(TypeError):
                wrong(thing)


def test_options(gate):
    session = oz.Session(gate)
    assert session.active_field == 0
    session.active_field = 5
    assert session.active_field == 5 and session.take(1.0, HERE).events[-1].field == 5
    with pytest.raises(ValueError, match="active_field is 8; 0 to 7 are allowed"):
        session.active_field = 8
    for wrong in ({"forget_after": 0.0}, {"forget_after": -1.0}, {"clearance": -0.1}, {"clearance": float("nan")},
                  {"max_speed": 0.0}):
        with pytest.raises(ValueError):
            oz.Session(gate, **wrong)
    quick = oz.Session(gate, forget_after=datetime.timedelta(milliseconds=500), max_speed=1.5)
    quick.take(0.0, objects=[person(7, 1.0, 0.5)])
    assert [event.kind for event in quick.take(0.5, objects=[]).events] == ["lost"]


def test_objects_of_every_kind_are_the_same(gate):
    made = oz.objects_from_boxes([(1, 0.5, 0.9, 0.25, 0.25, 1.8, 0.0)], ids=[7], classes=["person"])
    assert made.dtype == oz.OBJECT_DTYPE
    pandas = pytest.importorskip("pandas")
    frame = pandas.DataFrame({name: made[name] for name in made.dtype.names})
    ring = [(0.875, 0.375), (1.125, 0.375), (1.125, 0.625), (0.875, 0.625)]
    outline = [oz.TrackedObject(7, 0, 0, 0, 0, 0, 0.0, 1.8, "person", np.array(ring))]
    for objects in (made, frame, [person(7, 1.0, 0.5)], outline, made[::-1], (person(7, 1.0, 0.5),)):
        frame = oz.Session(gate).take(0.0, objects=objects)
        assert str(frame.events[0]) == '     0.000 s  person 7 entered zone 0/0 "gate"'
    assert (made["z_min"][0], made["z_max"][0]) == (0.0, 1.8)
    assert oz.objects_from_boxes([]).shape == (0,)
    assert oz.objects_from_boxes([(0,) * 7])["id"].tolist() == [-1]
    assert oz.objects_from_boxes([(0,) * 7], classes=["x" * 40])["class"][0] == "x" * 40


BOX = (7, "a", 1.0, 2.0, 0.5, 0.5, 0.0, 0.0, 1.8)


def changed(**values):
    made = np.array([BOX], oz.OBJECT_DTYPE)
    for name, value in values.items():
        made[name.replace("class_", "class")] = value
    return made


@pytest.mark.parametrize("objects, text", [
    (changed(x=np.nan), "x of object 0 is not finite"), (changed(heading=np.inf), "heading of object 0 is not finite"),
    (changed(length=-1), "length of object 0 is below zero"), (changed(width=-1), "width of object 0 is below zero"),
    (changed(z_min=2), "z_max of object 0 is below its z_min"),
    (np.array([BOX, BOX], oz.OBJECT_DTYPE), "track 7 is there twice"),
    (changed()[["id", "x"]], "the columns class, y, length, width, heading, z_min, z_max are not there"),
    (np.ma.masked_array(changed()), "masked"), (np.zeros((3, 9)), r"shape \(3, 9\)"), ([1, 2], "a list with a int"),
    ([oz.TrackedObject(2**31, 0, 0, 0, 0, 0, 0, 0)], "2147483648 is out of range"), (7, "a int was given")])
def test_what_is_not_objects_is_refused(gate, objects, text):
    with pytest.raises((ValueError, TypeError), match=text):
        oz.Session(gate).take(0.0, objects=objects)


def test_objects_without_identity_may_repeat(gate):
    flat = oz.TrackedObject(-1, 0, 0, 0.0, 0.0, 0, 1.0, 1.0)
    oz.Session(gate).take(0.0, objects=[person(-1, 0, 0), person(-1, 0, 0), flat])


def test_a_session_that_many_threads_call_takes_each_stamp_once(gate, points):
    session, taken, refused = oz.Session(gate), [], []

    def ask():
        for number in range(100):
            try:
                taken.append(session.take(number, points).stamp)
            except ValueError:
                refused.append(number)

    threads = [threading.Thread(target=ask) for _ in range(4)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    assert sorted(taken) == sorted(set(taken)) and len(taken) + len(refused) == 400


def test_names_that_are_not_utf8_are_shown(gate):
    event = json.loads(json.dumps(oz.Session(gate).take(0, HERE).events[0].to_dict()))
    assert event["name"] == "gate"
