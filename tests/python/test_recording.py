"""Recordings: the same frames, the same tables and the same picture as the command's, byte for byte."""
import json
import pickle
import re
import subprocess
import sys

import numpy as np
import pytest
from conftest import CROSSING, SOURCE, square

import orvantis_zones as oz

CASES = SOURCE / "tests" / "cases"
TABLES = ("events", "frames", "zones", "lines")


def write_ply(path, points):
    head = f"ply\nformat binary_little_endian 1.0\nelement vertex {len(points)}\n"
    head += "".join(f"property float {name}\n" for name in "xyz") + "end_header\n"
    path.write_bytes(head.encode() + np.asarray(points, "<f4").tobytes())


@pytest.fixture
def recording(tmp_path):
    """A folder of frames and tracks, in which zones are occupied and lines are crossed."""
    folder, random = tmp_path / "recording", np.random.default_rng(7)
    folder.mkdir()
    rows = ["stamp,id,class,x,y,length,width,heading,zmin,zmax"]
    for number in range(1, 13):
        cloud = random.uniform((8, 3, 0), (14, 12, 3), (400, 3)) if number % 5 else np.empty((0, 3))
        write_ply(folder / f"frame_{number}.ply", cloud)
        for track, name in ((1, "person"), (2, ""), (3, "bicycle fast")):
            y = 2.0 + 0.9 * number + 0.1 * track
            rows.append(f"{number / 10},{track},{name},{9.7 + track * 0.3},{y},0.53,0.47,1.{number},0.1,1.9")
    (folder / "tracks.csv").write_text("\n".join(rows) + "\n")
    return folder


def without_timings(text):
    """The table as it is without the cells of taken_ms, the one number with three decimals behind two levels."""
    if b"taken_ms" not in text:
        return text
    made, count = re.subn(rb",(low|high|),(low|high|),\d+\.\d{3},", rb",\1,\2,,", text)
    assert count == text.count(b"\n") - 1
    return made


@pytest.mark.parametrize("what", ["both", "points", "tracks"])
def test_tables_and_picture_are_those_of_the_command(recording, tmp_path, command, what):
    frames = sorted(recording.glob("*.ply"), key=lambda path: int(re.sub(r"\D", "", path.name)))
    words = ["run", CROSSING, "--csv", tmp_path / "theirs", "--plot", tmp_path / "theirs.svg"]
    words += [*frames, "--rate", 10] if what != "tracks" else []
    words += ["--tracks", recording / "tracks.csv"] if what != "points" else []
    code, out, err = command(*words)
    assert code == 0, err
    given = oz.Recording(frames if what != "tracks" else [], rate=10 if what != "tracks" else None,
                         tracks=recording / "tracks.csv" if what != "points" else None)
    run = oz.evaluate(oz.load(CROSSING), given, title=f"crossing.json, {given.name}")
    assert type(run) is oz.Run
    run.write(tmp_path / "ours")
    for name in TABLES:
        theirs = (tmp_path / "theirs" / f"{name}.csv").read_bytes()
        assert (tmp_path / "ours" / f"{name}.csv").read_bytes() == without_timings(theirs), name
    assert run.to_svg() == (tmp_path / "theirs.svg").read_text()
    assert [f"zone-detector: warning: {text}" for text in run.warnings] == [
        line for line in err.splitlines() if "warning:" in line]
    assert run.events.num_rows > (10 if what != "points" else 2)


SENSORS = [path.parent for path in sorted(CASES.glob("*/case.json")) if "--sensors" in path.read_text(encoding="utf-8")]


@pytest.mark.parametrize("folder", SENSORS, ids=lambda path: path.name)
@pytest.mark.parametrize("window", [0.02, 0.5])
def test_sensors_are_taken_together_as_by_the_command(folder, window, command, tmp_path, monkeypatch):
    monkeypatch.chdir(folder)
    words = ["run", "site.json", "--sensors", "sensors.json", "--window", window, "--rate", 4, "--csv", tmp_path / "theirs"]
    code, _, err = command(*words, cwd=folder)
    assert code == 0, err
    run = oz.evaluate(oz.load("site.json"), oz.Recording(sensors="sensors.json", window=window, rate=4))
    run.write(tmp_path / "ours")
    for name in TABLES:
        theirs = (tmp_path / "theirs" / f"{name}.csv").read_bytes()
        assert (tmp_path / "ours" / f"{name}.csv").read_bytes() == without_timings(theirs), name
    assert [f"zone-detector: warning: {text}" for text in run.warnings] == [
        line for line in err.splitlines() if "warning:" in line]


@pytest.mark.parametrize("change", [lambda site: None, lambda site: setattr(site.sensor_zones[0], "enabled", False),
                                    lambda site: setattr(site.sensor_zones[0], "z_max", -5.0),
                                    lambda site: setattr(site.zone(0, 0), "z_max", -5.0),
                                    lambda site: site.fields.__setitem__(0, None), lambda site: site.counter_lines.clear()])
def test_an_evaluation_goes_on_with_the_site_as_it_was(change, monkeypatch):
    [folder] = [path for path in SENSORS if path.name == "sensors_bound"]
    monkeypatch.chdir(folder)
    recording, tables = oz.Recording(sensors="sensors.json"), []
    for changed in (lambda site: None, change):
        site = oz.load("site.json")
        evaluation = oz._core.Evaluation(site, 2.0, 0.0, float("inf"), True, False)
        frames = recording._open(site)
        changed(site)
        evaluation.feed(frames, 16)
        tables.append(evaluation.finish(True, False, ""))
    assert tables[0] == tables[1] and b",1" in tables[0]["frames"]


def test_a_wider_window_takes_other_frames_together(tmp_path, command, monkeypatch):
    monkeypatch.syspath_prepend(SOURCE / "benchmarks" / "python")
    import recordings
    # Ten clouds a second, beside one cloud a second.
    recordings.write_mcap(tmp_path / "quick.mcap", 12)
    slow = SOURCE / "tests" / "data" / "recordings" / "plain.mcap"
    listed = [{"name": "slow", "files": [str(slow)]}, {"name": "quick", "files": [str(tmp_path / "quick.mcap")]}]
    (tmp_path / "sensors.json").write_text(json.dumps({"sensors": listed}))
    found = []
    for window in (0.05, 0.9):
        run = oz.evaluate(oz.load(CROSSING), oz.Recording(sensors=tmp_path / "sensors.json", window=window))
        code, _, err = command("run", CROSSING, "--sensors", tmp_path / "sensors.json", "--window", window, "--csv", tmp_path)
        assert code == 0, err
        assert run.frames._text == without_timings((tmp_path / "frames.csv").read_bytes())
        found.append(run.frames)
    assert found[0] != found[1]


def test_frames_that_are_not_later_are_left_out_with_a_warning(tmp_path, command):
    files = [SOURCE / "tests" / "data" / "recordings" / f"{name}.mcap" for name in ("plain", "unchunked")]
    run = oz.evaluate(oz.load(CROSSING), oz.Recording(files))
    _, _, err = command("run", CROSSING, *files, "--csv", tmp_path)
    told = [line for line in err.splitlines() if "warning:" in line]
    assert [f"zone-detector: warning: {text}" for text in run.warnings] == told
    assert any("left out: not later than the frame before" in text for text in told)


def test_events_are_the_lines_and_objects_of_the_command(recording, command):
    words = ["run", CROSSING, recording / "frame_1.ply", "--rate", 10, "--tracks", recording / "tracks.csv"]
    _, lines, _ = command(*words)
    _, objects, _ = command(*words, "--json")
    session, events = oz.Session(oz.load(CROSSING)), []
    for stamp, points, seen in oz.Recording([recording / "frame_1.ply"], rate=10, tracks=recording / "tracks.csv"):
        events += session.take(stamp, points, seen).events
    assert len(events) > 10
    assert lines.startswith("".join(f"{event}\n" for event in events))
    told = [json.loads(line) for line in objects.splitlines()]
    assert [event.to_dict() for event in events] == told[:len(events)]
    assert [list(event.to_dict()) for event in events] == [list(entry) for entry in told[:len(events)]]


def test_reading_and_feeding_frame_by_frame_gives_the_same_run(recording):
    site = oz.load(CROSSING)
    given = oz.Recording.from_folder(recording, rate=10)
    whole = oz.evaluate(site, given)
    by_arrays = oz.evaluate(site, oz.Recording.from_arrays(list(given), name=given.name))
    by_function = oz.evaluate(site, oz.Recording.from_arrays(lambda: iter(given), name=given.name))
    for run in (by_arrays, by_function):
        assert run.events == whole.events and run.zones == whole.zones and run.lines == whole.lines
        assert run.to_svg() == whole.to_svg()
        assert {name: column.tolist() for name, column in run.frames.items() if name not in ("cloud", "taken_ms")} == {
            name: column.tolist() for name, column in whole.frames.items() if name not in ("cloud", "taken_ms")}
    assert whole.name == "recording" and repr(whole).startswith("<Run: 13 frames")


def test_a_folder_is_its_frames_in_order_and_its_tracks(recording):
    given = oz.Recording.from_folder(recording, rate=10)
    moments = list(given)
    assert [round(stamp * 10) for stamp, _, _ in moments] == list(range(13))
    assert [points is None for _, points, _ in moments] == [False] * 12 + [True]
    assert [objects is None for _, _, objects in moments] == [True] + [False] * 12
    assert moments[0][1].dtype == np.float32 and moments[4][1].shape == (0, 3)
    assert list(given)[3][1].tolist() == moments[3][1].tolist()  # it opens anew each time
    (recording / "frames.txt").write_text("5.5 frame_2.ply\n6.5 frame_1.ply\n")
    assert [stamp for stamp, points, _ in oz.Recording.from_folder(recording) if points is not None] == [5.5, 6.5]
    with pytest.raises(FileNotFoundError):
        oz.Recording.from_folder(recording / "no")


def test_a_recording_can_be_sent(recording):
    given = oz.Recording.from_folder(recording, rate=10)
    sent = pickle.loads(pickle.dumps(given))
    site = oz.load(CROSSING)
    run, again = oz.evaluate(site, given), oz.evaluate(pickle.loads(pickle.dumps(site)), sent)
    back = pickle.loads(pickle.dumps(again))
    assert back.events == run.events and back.to_svg() == run.to_svg() and back.warnings == run.warnings


def test_objects_of_a_file_keep_every_digit(recording):
    [(stamp, objects)] = list(oz.read_tracks(recording / "tracks.csv"))[:1]
    assert stamp == 0.1 and objects["x"].tolist() == [10.0, 10.299999999999999, 10.6]
    assert objects["class"].tolist() == ["person", "", "bicycle fast"] and objects.dtype == oz.OBJECT_DTYPE
    with pytest.raises(FileNotFoundError):
        oz.read_tracks(recording / "no.csv")


def test_kitti_tracks(tmp_path):
    (tmp_path / "0.txt").write_text("0 7 Car 0 0 0 0 0 0 0 1.5 1.7 4.1 2.5 1.25 9.1 0.3\n")
    [(stamp, objects)] = oz.read_tracks(tmp_path / "0.txt", "kitti")
    assert stamp == 0.0 and objects["class"][0] == "Car"
    assert objects[["x", "y", "z_min", "z_max"]][0].tolist() == (9.1, -2.5, -1.25, 0.25)


def test_points_of_a_file(tmp_path):
    points = np.array([[1, 2, 3], [np.nan, 5, 6]], np.float32)
    write_ply(tmp_path / "a.ply", points)
    read = oz.read_points(tmp_path / "a.ply")
    assert read.dtype == np.float32 and np.array_equal(read, points, equal_nan=True)
    (tmp_path / "b.xyz").write_text("1.5 2.5 3.000000000001\n")
    assert oz.read_points(str(tmp_path / "b.xyz")).tolist() == [[1.5, 2.5, 3.000000000001]]
    with pytest.raises(FileNotFoundError):
        oz.read_points(tmp_path / "no.ply")


def test_what_cannot_be_read_says_where(tmp_path):
    tracks = tmp_path / "tracks.csv"
    head = "stamp,id,class,x,y,length,width,heading,zmin,zmax\n"
    tracks.write_text(head + "0,1,a,1,2,3,4,0,0,1\n1,1,a,1,word,3,4,0,0,1\n")
    with pytest.raises(oz.RecordingError) as told:
        list(oz.read_tracks(tracks))
    error = told.value
    assert (error.path, error.line, error.column) == (str(tracks), 3, 9) and "word" in error.reason
    assert str(error) == f"{tracks}:3:9: {error.reason}" and isinstance(error, oz.Error)
    again = pickle.loads(pickle.dumps(error))
    assert (str(again), again.line) == (str(error), 3)
    (tmp_path / "cut.ply").write_bytes(b"ply\nformat binary_little_endian 1.0\nelement vertex 5\n")
    with pytest.raises(oz.RecordingError) as told:
        oz.read_points(tmp_path / "cut.ply")
    assert told.value.path.endswith("cut.ply") and told.value.column is None
    (tmp_path / "a.what").write_bytes(b"?")
    with pytest.raises(oz.RecordingError, match="unknown kind of file"):
        oz.read_points(tmp_path / "a.what")
    with pytest.raises(oz.RecordingError, match="is a recording of any number of frames; Recording reads them"):
        oz.read_points(SOURCE / "tests" / "data" / "recordings" / "plain.mcap")
    with pytest.raises(oz.RecordingError, match="cannot be read"):
        oz.evaluate(oz.Site(), oz.Recording([tmp_path / "no.ply"], rate=10))


@pytest.mark.parametrize("words, text", [
    ({}, "a recording needs one"), ({"clouds": ["a.pcd"], "stamps": "b"}, "clouds and stamps were given"),
    ({"stamps": "b", "rate": 5}, "rate and stamps"), ({"tracks": "a", "tracks_format": "xml"}, "'csv' or 'kitti'"),
    ({"clouds": ["a.pcd"], "rate": 0}, "rate is 0"), ({"clouds": ["a"], "rate": float("inf")}, "rate is inf")])
def test_arguments_that_contradict_are_refused(words, text):
    with pytest.raises(ValueError, match=text):
        oz.Recording(**words)


def test_tables(recording, tmp_path):
    run = oz.evaluate(oz.load(CROSSING), oz.Recording.from_folder(recording, rate=10))
    events = run.events
    assert list(events) == "stamp type event field zone zone_name line track class began dwell met x y".split()
    crossings = events["type"] == "crossing"
    assert crossings.any() and (events["field"][crossings] == -1).all() and np.isnan(events["dwell"][crossings]).all()
    assert events["stamp"].dtype == np.float64 and events["track"].dtype == np.int64 and len(events) == 14
    with pytest.raises(ValueError):
        events["stamp"][0] = 5.0
    pandas = pytest.importorskip("pandas")
    assert events.to_pandas().equals(pandas.DataFrame(dict(events))) and len(events.to_pandas()) == events.num_rows
    read = pandas.read_csv(pandas.io.common.StringIO(events._text.decode()))
    assert list(read.columns) == list(events) and read["stamp"].tolist() == events["stamp"].tolist()
    with pytest.raises(OSError):
        events.to_csv(tmp_path)
    assert oz.Table(b"a,b\n").num_rows == 0 and oz.Table(b"a,b\n")["a"].shape == (0,)


def test_a_run_without_frames_has_empty_tables():
    run = oz.evaluate(oz.load(CROSSING), oz.Recording.from_arrays([]))
    assert (run.events.num_rows, run.frames.num_rows, run.zones.num_rows) == (0, 0, 8)
    assert run.events["stamp"].dtype == np.float64


def test_the_plan_is_that_of_the_command(site, command, tmp_path):
    _, plan, _ = command("plot", CROSSING)
    assert site.to_svg(title="crossing.json") == plan
    points = np.random.default_rng(5).uniform((-5, -5, 0), (30, 20, 3), (500, 3)).astype(np.float32)
    write_ply(tmp_path / "scan.ply", points)
    _, over_scan, _ = command("plot", CROSSING, tmp_path / "scan.ply")
    for given in (points, points.astype(np.float64), np.asfortranarray(points)):
        assert site.to_svg(given, "crossing.json over scan.ply") == over_scan


def test_two_plans_in_one_page_share_no_id(site):
    other = site.copy()
    other.zone(0, 0).name = "other"
    ids = [set(re.findall(r' id="([^"]+)"', picture)) for picture in (site.to_svg(), other.to_svg())]
    assert all(ids) and not ids[0] & ids[1]


def test_a_plan_that_cannot_be_drawn_says_so():
    site = oz.Site()
    site.fields[0] = [oz.Zone(square(1e308))]
    with pytest.raises((ValueError, RuntimeError), match="draw"):
        site.to_svg()


def test_progress_is_told_on_the_error_stream(recording, capsys):
    oz.evaluate(oz.load(CROSSING), oz.Recording.from_folder(recording, rate=10), progress=True)
    shown = capsys.readouterr()
    assert shown.out == "" and shown.err.endswith("\r\033[K")


WITHOUT = """
import sys
for name in ("pandas", "matplotlib", "shapely", "IPython", "distributed", "dask", "fsspec"):
    sys.modules[name] = None
import orvantis_zones as oz
from orvantis_zones.batch import evaluate
site = oz.load(sys.argv[1])
recording = oz.Recording.from_arrays([(0.0, [(11.0, 7.0, 1.0)], None)], name="one")
oz.evaluate(site, recording)._repr_html_()
evaluate(site, [recording])._repr_html_()
try:
    oz.evaluate(site, recording).events.to_pandas()
except ImportError:
    print("works")
"""


def test_nothing_but_numpy_is_required():
    done = subprocess.run([sys.executable, "-B", "-c", WITHOUT, CROSSING], capture_output=True, text=True, timeout=120)
    assert (done.stdout, done.stderr) == ("works\n", "")
