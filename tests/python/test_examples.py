"""The examples run, and say what they say."""
import os
import pathlib
import subprocess
import sys

import numpy as np
import pytest
from conftest import CROSSING, SOURCE

EXAMPLES = SOURCE / "examples" / "python"
RECORDINGS = SOURCE / "tests" / "data" / "recordings"


def run(name, *words):
    done = subprocess.run([sys.executable, "-B", EXAMPLES / name, *map(str, words)], capture_output=True, text=True,
                          timeout=120, env={**os.environ, "MPLBACKEND": "Agg"})
    assert done.returncode == 0, done.stderr
    return done.stdout


def test_every_example_is_short_and_is_run_here():
    text = pathlib.Path(__file__).read_text()
    for path in EXAMPLES.glob("*.py"):
        assert len(path.read_text().splitlines()) < 40, path
        assert f'run("{path.name}"' in text, path


@pytest.fixture
def scan(tmp_path):
    points = np.random.default_rng(3).uniform((8, 3, 0), (14, 12, 2), (500, 3))
    np.savetxt(tmp_path / "scan.xyz", points)
    return tmp_path / "scan.xyz"


@pytest.fixture
def folder(tmp_path):
    made = tmp_path / "recording"
    made.mkdir()
    rows = ["stamp,id,class,x,y,length,width,heading,zmin,zmax"]
    rows += [f"{n / 10},7,person,11,{3 + n * 0.5},0.4,0.4,0,0,1.8" for n in range(20)]
    (made / "tracks.csv").write_text("\n".join(rows) + "\n")
    (made / "frame_1.xyz").write_text("11 5 1\n11 6 1\n")
    return made


def test_draw_site(scan, tmp_path):
    pytest.importorskip("matplotlib")
    out = run("draw_site.py", CROSSING, scan, tmp_path / "plan.svg")
    assert out == run("draw_site.py", CROSSING, scan, tmp_path / "plan.png")
    assert out.splitlines()[0].startswith("Walkway: ") and len(out.splitlines()) == 8
    assert (tmp_path / "plan.svg").read_text().startswith("<svg") and (tmp_path / "plan.png").stat().st_size > 10_000


def test_count_people(folder):
    out = run("count_people.py", CROSSING, folder / "tracks.csv", "Crossing")
    assert out.splitlines()[-1].startswith("Crossing: ")


def test_compare_sites(folder, tmp_path):
    other = tmp_path / "other.json"
    other.write_text(CROSSING.read_text().replace('"Walkway"', '"Way"'))
    out = run("compare_sites.py", CROSSING, other, folder)
    assert [line for line in out.splitlines() if line.startswith("- ") and '"Walkway"' in line]
    assert len([line for line in out.splitlines() if line.startswith("+ ")]) == len(
        [line for line in out.splitlines() if line.startswith("- ")])
    assert run("compare_sites.py", CROSSING, CROSSING, folder).count("\n") == 1


@pytest.mark.parametrize("name", ["plain.mcap", "none.bag", "lz4.bag", "bz2.bag", "zstd.mcap"])
def test_bag_to_table(tmp_path, name):
    out = run("bag_to_table.py", CROSSING, RECORDINGS / name, tmp_path / "events.csv")
    assert len(out.splitlines()) == 8 and (tmp_path / "events.csv").read_text().startswith("stamp,type,event,")


def test_host_loop():
    pytest.importorskip("matplotlib")
    out = run("host_loop.py", CROSSING, 10)
    assert 'zone 0/0 "Walkway" occupied' in out
