"""python3 -m orvantis_zones.batch: what it writes and says, and its exit codes."""
import io
import re
import signal
import subprocess
import sys
import time

import fleet
import pytest

import orvantis_zones as oz
from orvantis_zones.batch import evaluate
from orvantis_zones.batch.__main__ import main


@pytest.fixture
def here(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    fleet.site().save("site.json")
    return tmp_path


def command(*words):
    return [sys.executable, "-m", "orvantis_zones.batch", *map(str, words)]


@pytest.fixture
def run(here, monkeypatch, capfd):
    """Exit code, output and error stream of a command line."""
    def made(*words, text=""):
        monkeypatch.setattr(sys, "stdin", io.StringIO(text))
        try:
            code = main([str(word) for word in words])
        except SystemExit as end:
            code = end.code
        sys.stdout.flush()
        return (code, *capfd.readouterr())
    return made


def test_it_writes_the_tables_of_evaluate(here, run):
    files = [fleet.tracks(f"{k}.csv", k) for k in range(4)]
    assert run("site.json", "--tracks", *files, "-o", "out") == (0, "", "")
    batch = evaluate(oz.load("site.json"), [oz.Recording(tracks=file, name=file) for file in files])
    assert batch.events.num_rows > 0
    assert fleet.written(batch, "want") == {path.name: path.read_bytes() for path in sorted((here / "out").glob("*.csv"))}


def test_without_a_folder_the_events_are_printed_and_names_come_from_a_list(here, run):
    fleet.tracks("a.csv")
    code, out, error = run("site.json", "--tracks", "-", text="a.csv\n\n")
    assert (code, error) == (0, "") and out.splitlines()[0].startswith("recording,stamp,type,event,")
    assert out.splitlines()[1].startswith("a.csv,0.2,crossing,to right,")


def test_errors_are_told_and_leave_the_others(here, run):
    (here / "a.xyz").write_text("1 1 1\n")
    code, out, error = run("site.json", "a.xyz", "none.xyz")
    assert code == 1 and "a.xyz,0,zone,occupied" in out
    assert error == ("orvantis_zones.batch: none.xyz: unreadable: none.xyz: cannot be read: No such file or directory\n")


def test_a_table_never_takes_the_place_of_an_input(here, run):
    frame = "x,y,z\n1,1,1\n"
    (here / "zones.csv").write_text(frame)
    (here / "scans").mkdir()
    (here / "scans" / "lines.csv").write_text(frame)
    made = ": cannot be written: the tables are made from it; give another folder\n"
    assert run("site.json", "zones.csv", "-o", ".") == (1, "", "orvantis_zones.batch: ./zones.csv" + made)
    assert run("site.json", "-", "-o", here, text="zones.csv\n")[0] == 1
    assert run("site.json", "scans", "-o", "scans") == (1, "", "orvantis_zones.batch: scans/lines.csv" + made)
    assert sorted(path.name for path in here.rglob("*")) == ["lines.csv", "scans", "site.json", "zones.csv"]
    assert (here / "zones.csv").read_text() == (here / "scans" / "lines.csv").read_text() == frame
    assert run("site.json", "zones.csv", "-o", "out")[0] == 0
    assert run("site.json", "zones.csv", "-o", "out")[0] == 0


def test_exit_codes(here, run):
    fleet.tracks("a.csv")
    (here / "bad.json").write_text("{")
    assert run("site.json")[0] == 2
    assert run("site.json", "--tracks", "a.csv", "--rate", "5")[0] == 2
    code, _, error = run("none.json", "a.csv")
    assert code == 1 and error.startswith("orvantis_zones.batch: ") and "none.json" in error
    assert run("bad.json", "a.csv")[0] == 1
    code, _, error = run("site.json", "--tracks", "a.csv", "-o", "site.json")
    assert code == 1 and "site.json" in error and "Traceback" not in error
    assert run("site.json", "--tracks", "a.csv", "a.csv")[2] == (
        "orvantis_zones.batch: two recordings have the name 'a.csv'; rows tell them apart by name\n")


def test_ctrl_c_keeps_what_is_finished_and_the_same_command_goes_on(here):
    files = [fleet.tracks(f"{k}.csv", k, 200) for k in range(60)]
    words = ("site.json", "--tracks", *files, "-o", "out")
    process = subprocess.Popen(command(*words), stderr=subprocess.PIPE, text=True, env=fleet.environment())
    deadline = time.monotonic() + 50
    while not any(not path.suffix for path in here.glob("out/finished/*")) and time.monotonic() < deadline:
        time.sleep(0.005)
    process.send_signal(signal.SIGINT)
    error = process.communicate(timeout=50)[1]
    kept = {path: path.stat().st_mtime_ns for path in here.glob("out/finished/*")}
    assert (process.returncode, error) == (130, "orvantis_zones.batch: interrupted; what is finished is kept in out\n")
    assert 0 < len(kept) < 60 and not any(path.suffix for path in kept)
    assert subprocess.run(command(*words), timeout=50, env=fleet.environment()).returncode == 0
    assert len(list(here.glob("out/finished/*"))) == 60
    assert {path: path.stat().st_mtime_ns for path in kept} == kept


def test_a_terminal_is_told_how_far_it_is(here):
    import os
    import pty
    fleet.tracks("a.csv")
    ours, theirs = pty.openpty()
    done = subprocess.run(command("site.json", "--tracks", "a.csv", "-o", "out"), stderr=theirs, timeout=50,
                          env=fleet.environment())
    os.close(theirs)
    text = os.read(ours, 10_000).decode()
    os.close(ours)
    assert done.returncode == 0
    assert re.fullmatch(r"\r1 of 1 recordings, \d+ frames a second, \d+\.\d hours of recording an hour, 0:00:00 left\x1b\[K"
                        r"\r\x1b\[K", text), repr(text)
