"""A batch in this process: results, resume, and what cannot be read."""
import os
import pathlib
import pickle
import sys
import tempfile
import types
import zipfile

import fleet
import pytest

import orvantis_zones as oz
from orvantis_zones.batch import evaluate
from orvantis_zones.batch._outcome import Outcome
from orvantis_zones.batch._unit import units_of
from orvantis_zones.batch._work import work


def texts(table, column):
    return table[column].tolist()


def test_rows_are_those_of_each_run_in_the_order_given():
    given = fleet.recordings(4)
    batch = evaluate(fleet.site(), given[::-1])
    runs = [oz.evaluate(fleet.site(), recording) for recording in given[::-1]]
    for name in ("events", "zones", "lines"):
        assert texts(getattr(batch, name), "recording") == [
            recording.name for recording, run in zip(given[::-1], runs) for _ in range(getattr(run, name).num_rows)]
        for column in getattr(runs[0], name):
            assert str(texts(getattr(batch, name), column)) == str(
                [value for run in runs for value in getattr(run, name)[column].tolist()])


def test_the_table_of_recordings_is_exact():
    moments = [(0.1, [(1, 1, 1)], None), (0.3, [(1, 1, 1)], None)]
    batch = evaluate(fleet.site(), [oz.Recording.from_arrays(moments, name='a,"b"'), oz.Recording.from_arrays([], name="none")])
    table = bytes(batch.recordings._text).decode()
    assert table == ('recording,frames,begin,end,seconds,status\n"a,""b""",2,0.1,0.3,0.2,finished\n'
                     "none,0,,,0,finished\n")


def test_no_recordings_are_tables_without_rows():
    batch = evaluate(fleet.site(), [])
    assert [getattr(batch, name).num_rows for name in fleet.TABLES] == [0] * 6
    assert list(batch.events)[:3] == ["recording", "stamp", "type"]


def test_what_cannot_be_read_is_a_row_and_not_the_end(tmp_path):
    (tmp_path / "bad.csv").write_text("stamp,id\n1,x\n")
    given = [oz.Recording(tracks=tmp_path / "bad.csv", name="bad"), str(tmp_path / "none.pcd"), *fleet.recordings(1),
             fleet.raising(KeyError("topic")), oz.Recording.from_arrays([(1.0, [], None), (0.5, [], None)], name="back")]
    batch = evaluate(fleet.site(), given)
    assert texts(batch.errors, "recording") == ["bad", str(tmp_path / "none.pcd"), "raising", "back"]
    assert texts(batch.errors, "kind") == ["unreadable", "unreadable", "failed", "unreadable"]
    assert texts(batch.errors, "text")[1] == f"{tmp_path}/none.pcd: cannot be read: No such file or directory"
    assert texts(batch.errors, "text")[2] == "KeyError: 'topic'"
    assert texts(batch.recordings, "status") == ["unreadable", "unreadable", "finished", "failed", "unreadable"]
    assert set(texts(batch.events, "recording")) == {"recording 0"}


def test_a_second_run_evaluates_nothing_twice(tmp_path):
    log = tmp_path / "log"
    given = [fleet.slow(k, log) for k in range(6)]
    half = evaluate(fleet.site(), given[:3], folder=tmp_path / "out")
    whole = evaluate(fleet.site(), given[::-1], folder=tmp_path / "out")
    again = evaluate(fleet.site(), given[::-1], folder=tmp_path / "out")
    assert sorted(log.read_text().split()) == list("012345")
    fresh = evaluate(fleet.site(), given[::-1])
    assert half.recordings.num_rows == 3
    assert fleet.written(whole, tmp_path / "a") == fleet.written(again, tmp_path / "b") == fleet.written(fresh, tmp_path / "c")
    assert not list((tmp_path / "out").rglob("*.part"))


@pytest.mark.parametrize("damage", [lambda data: data[:-1], lambda data: data[:40], lambda data: b"",
                                    lambda data: data.replace(b"recording 1", b"recording 2"),
                                    lambda data: data.replace(b"occupied", b"0ccupied")])
def test_a_damaged_result_is_made_again(tmp_path, damage):
    log = tmp_path / "log"
    first = evaluate(fleet.site(), [fleet.slow(0, log)], folder=tmp_path)
    [kept] = (tmp_path / "finished").iterdir()
    whole = kept.read_bytes()
    kept.write_bytes(damage(whole))
    assert kept.read_bytes() != whole
    again = evaluate(fleet.site(), [fleet.slow(0, log)], folder=tmp_path)
    assert again.events == first.events and log.read_text().split() == ["0", "0"]


def test_another_site_option_recording_or_content_is_another_result(tmp_path):
    path = fleet.tracks(tmp_path / "a.csv")
    folder = tmp_path / "out"

    def kept(site=None, path=path, **options):
        evaluate(site or fleet.site(), [oz.Recording(tracks=path, name="a")], folder=folder, **options)
        return len(list((folder / "finished").iterdir()))

    other = fleet.site()
    other.debounce_ms = 100
    assert [kept(), kept(), kept(other), kept(clearance=0.5), kept(path=fleet.tracks(tmp_path / "b.csv"))] == [1, 1, 2, 3, 4]
    fleet.tracks(path, rows=4)
    assert kept() == 5
    loaded = pickle.loads(pickle.dumps(fleet.site()))
    assert kept(loaded) == 5


def test_another_version_is_another_result(monkeypatch):
    def key():
        [unit] = units_of(fleet.site(), fleet.recordings(1), {}, keyed=True, isolate=False)
        return unit.key

    ours = key()
    assert key() == ours
    monkeypatch.setattr("orvantis_zones.batch._unit.__version__", "0.1")
    assert key() != ours


def test_a_frame_that_a_list_names_is_part_of_the_recording(tmp_path):
    (tmp_path / "one.xyz").write_text("1 1 1\n")
    (tmp_path / "frames.txt").write_text("0.5 one.xyz\n")
    given = [oz.Recording(stamps=tmp_path / "frames.txt", name="list")]
    before = evaluate(fleet.site(), given, folder=tmp_path)
    (tmp_path / "one.xyz").write_text("1 1 1\n1 1 1\n")
    after = evaluate(fleet.site(), given, folder=tmp_path)
    assert [batch.zones["peak_points"].tolist() for batch in (before, after)] == [[1], [2]]


def test_errors_are_tried_again(tmp_path):
    given = [fleet.when(tmp_path / "late")]
    assert evaluate(fleet.site(), given, folder=tmp_path).errors.num_rows == 1
    (tmp_path / "late").touch()
    assert evaluate(fleet.site(), given, folder=tmp_path).errors.num_rows == 0


def test_ctrl_c_keeps_what_is_finished(tmp_path):
    log = tmp_path / "log"
    given = [fleet.slow(0, log), fleet.raising(KeyboardInterrupt()), fleet.slow(1, log)]
    with pytest.raises(KeyboardInterrupt):
        evaluate(fleet.site(), given, folder=tmp_path)
    evaluate(fleet.site(), [given[0], given[2]], folder=tmp_path)
    assert log.read_text().split() == ["0", "1"]


def test_a_recording_that_kills_its_process_is_a_row_when_isolated():
    given = [fleet.recordings(1)[0], fleet.killer(), *fleet.recordings(2)[1:]]
    batch = evaluate(fleet.site(), given, isolate=True)
    assert texts(batch.errors, "text") == ["the process that evaluated it ended with SIGKILL; it was tried 2 times"]
    assert texts(batch.recordings, "status") == ["finished", "worker died", "finished"]
    assert batch.events == evaluate(fleet.site(), fleet.recordings(2)).events


def test_a_folder_is_one_recording(tmp_path):
    for k in range(3):
        (tmp_path / f"{k}.xyz").write_text("1 1 1\n")
    fleet.tracks(tmp_path / "tracks.csv")
    batch = evaluate(fleet.site(), [tmp_path])
    assert texts(batch.recordings, "recording") == [str(tmp_path)] and texts(batch.lines, "line") != []


def test_urls_are_read_where_the_work_is(tmp_path):
    pytest.importorskip("fsspec")
    (tmp_path / "a.xyz").write_text("1 1 1\n")
    (tmp_path / "b.xyz").write_text("1 1 1\nx\n")
    urls = [f"file://{tmp_path}/{name}.xyz" for name in "abc"]
    batch = evaluate(fleet.site(), urls)
    assert batch.zones["peak_points"].tolist() == [1]
    assert texts(batch.errors, "recording") == urls[1:]
    assert texts(batch.errors, "text")[0].startswith(f"{urls[1]}:2:")
    assert texts(batch.errors, "text")[1].startswith(f"{urls[2]}: cannot be read: ")


def test_storages_of_every_kind_give_files_of_their_names(tmp_path):
    fsspec = pytest.importorskip("fsspec")
    memory = fsspec.filesystem("memory")
    memory.pipe("/day/a.xyz", b"1 1 1\n")
    memory.pipe("/day/b.xyz", b"1 1 1\n1 1 1\n")
    memory.pipe("/t.csv", pathlib.Path(fleet.tracks(tmp_path / "t.csv")).read_bytes())
    with zipfile.ZipFile(tmp_path / "x.zip", "w") as archive:
        archive.writestr("in/c.xyz", "1 1 1\n" * 3)
    given = ["memory://day/b.xyz", "memory://day", f"zip://in/c.xyz::file://{tmp_path}/x.zip",
             oz.Recording(["memory://day/a.xyz"], tracks="memory://t.csv", name="both")]
    batch = evaluate(fleet.site(), given)
    assert texts(batch.errors, "text") == []
    assert texts(batch.zones, "peak_points") == [2, 2, 3, 1]
    assert texts(batch.recordings, "frames") == [1, 2, 1, 3] and "both" in texts(batch.events, "recording")
    for listing in ({"stamps": "memory://frames.txt"}, {"sensors": "memory://sensors.json"}):
        [text] = texts(evaluate(fleet.site(), [oz.Recording(**listing)]).errors, "text")
        assert text == f"{[*listing.values()][0]}: a list of files cannot be a URL; give the files as clouds"


def test_nothing_is_written_outside_of_the_folder_of_a_recording(tmp_path):
    fsspec = pytest.importorskip("fsspec")
    with zipfile.ZipFile(tmp_path / "x.zip", "w") as archive:
        archive.writestr("in/../../../../escaped.xyz", "1 1 1\n")
        archive.writestr("in/a.xyz", "1 1 1\n")
    found = fsspec.filesystem("zip", fo=str(tmp_path / "x.zip")).find("in")
    assert any(".." in name for name in found)
    [text] = texts(evaluate(fleet.site(), [f"zip://in::file://{tmp_path}/x.zip"]).errors, "text")
    assert text.endswith("escaped.xyz does not lie in it")
    assert not list(pathlib.Path(tempfile.gettempdir()).glob("**/escaped.xyz"))


def test_what_code_of_others_reads_is_known():
    given = ["a.pcd", "s3://bucket/a.pcd", oz.Recording(["b.pcd"], tracks="memory://t.csv"), *fleet.recordings(1),
             fleet.process("a function"), fleet.process("an object", call=False)]
    for isolate, expected in ((None, [False, True, True, False, True, True]), (True, [True] * 6), (False, [False] * 6)):
        units = units_of(fleet.site(), given, {}, keyed=False, isolate=isolate)
        assert [unit.isolate for unit in units] == expected


def test_a_web_address_ends_where_its_question_begins(monkeypatch):
    class Web:
        def isdir(self, there):
            return False

        def get_file(self, there, path):
            assert there == "https://host/a.xyz?key=7/8"
            pathlib.Path(path).write_text("1 1 1\n")

    fsspec = pytest.importorskip("fsspec")
    monkeypatch.setattr(fsspec.core, "url_to_fs", lambda url: (Web(), url))
    assert texts(evaluate(fleet.site(), ["https://host/a.xyz?key=7/8"]).zones, "peak_points") == [1]


def test_without_fsspec_a_url_is_an_error_that_says_so(monkeypatch):
    monkeypatch.setitem(sys.modules, "fsspec", None)
    [text] = texts(evaluate(fleet.site(), ["s3://bucket/a.xyz"]).errors, "text")
    assert text == "s3://bucket/a.xyz: URLs need python3-fsspec on the worker"


def test_what_the_caller_has_wrong_raises(tmp_path):
    one = fleet.recordings(1)[0]
    for given, options, error, said in [
            ([one, one], {}, ValueError, "two recordings have the name 'recording 0'; rows tell them apart by name"),
            ([one], {"client": 3}, TypeError, "a int was given; client is None, an Executor or a distributed.Client"),
            ([one], {"forget_after": -1.0}, ValueError, ""),
            ([oz.Recording.from_arrays(lambda: [], name="a")], {}, ValueError, "recording 'a' cannot be sent to a worker: ")]:
        with pytest.raises(error) as raised:
            evaluate(fleet.site(), given, **options)
        assert str(raised.value).startswith(said)
    with pytest.raises(TypeError, match="a str was given; a batch needs a Site"):
        evaluate("site.json", [one])


def test_progress_counts_what_was_finished_before(tmp_path):
    told = []
    given = fleet.recordings(3)
    evaluate(fleet.site(), given[:1], folder=tmp_path)
    evaluate(fleet.site(), given, folder=tmp_path, progress=lambda *what: told.append(what))
    assert told == [(2, 3, "recording 1"), (3, 3, "recording 2")]


def test_a_notebook_has_a_bar(monkeypatch):
    shown = []
    handle = types.SimpleNamespace(update=lambda data, raw: shown.append((data, raw)))
    display = types.SimpleNamespace(display=lambda data, raw, display_id: handle)
    kernel = types.SimpleNamespace(kernel=None)
    monkeypatch.setitem(sys.modules, "IPython", types.SimpleNamespace(get_ipython=lambda: kernel))
    monkeypatch.setitem(sys.modules, "IPython.display", display)
    evaluate(fleet.site(), fleet.recordings(3), progress=True)
    last, raw = shown[-1]
    assert raw and last["text/plain"].startswith("3 of 3 recordings, ")
    assert last["text/html"] == f'<progress value="3" max="3"></progress> {last["text/plain"]}'


def test_outside_a_notebook_there_is_a_line(monkeypatch, capsys):
    monkeypatch.setitem(sys.modules, "IPython", types.SimpleNamespace(get_ipython=lambda: None))
    evaluate(fleet.site(), fleet.recordings(2), progress=True)
    shown = capsys.readouterr()
    assert shown.out == "" and "\r2 of 2 recordings, " in shown.err and shown.err.endswith("\r\033[K")


def test_what_cannot_be_kept_raises(tmp_path, monkeypatch):
    def full(*words):
        raise OSError(28, "No space left on device")

    monkeypatch.setattr(os, "fsync", full)
    with pytest.raises(OSError, match="No space left"):
        evaluate(fleet.site(), fleet.recordings(100), folder=tmp_path)
    assert list((tmp_path / "finished").iterdir()) == []


def test_the_picture_is_not_drawn(monkeypatch):
    made = []
    real = oz._core.Evaluation

    def evaluation(*words):
        made.append(real(*words))
        return made[-1]

    monkeypatch.setattr(oz._core, "Evaluation", evaluation)
    evaluate(fleet.site(), fleet.recordings(2))
    pictures = [each.finish(True, False, "")["svg"] for each in made]
    assert len(made) == 4 and pictures[1:] == [None, None, None] and pictures[0] is not None


def test_files_appear_whole(tmp_path, monkeypatch):
    steps = []
    for name in ("fsync", "replace"):
        real = getattr(os, name)
        monkeypatch.setattr(os, name, lambda *words, name=name, real=real: (steps.append(name), real(*words))[1])
    evaluate(fleet.site(), fleet.recordings(1), folder=tmp_path)
    assert steps == ["fsync", "replace"]
    assert [len(path.name) for path in pathlib.Path(tmp_path / "finished").iterdir()] == [64]


def test_another_version_is_refused_by_name():
    outcome = Outcome.unpack(work(pickle.dumps(("0.1", b"what only that version understands"))))
    assert (outcome.kind, outcome.text) == ("wrong version", f"orvantis_zones {oz.__version__}; the client has 0.1")
