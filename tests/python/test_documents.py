"""Every block of docs/python.md runs, and prints what stands below it; so do those of docs/fleets.md in Python."""
import contextlib
import io
import os
import re
import shutil
import subprocess
import sys

import pytest
from conftest import CROSSING, SOURCE

PAGE, FLEETS = SOURCE / "docs" / "python.md", SOURCE / "docs" / "fleets.md"
RECORDING = SOURCE / "tests" / "data" / "recordings" / "plain.mcap"
BLOCK = re.compile(r"^```(\w+)\n(.*?)^```$", re.MULTILINE | re.DOTALL)


def test_every_block_of_the_page_runs(tmp_path, monkeypatch):
    for module in ("matplotlib", "pandas"):
        pytest.importorskip(module)
    monkeypatch.setenv("MPLBACKEND", "Agg")
    monkeypatch.chdir(tmp_path)
    shutil.copy(CROSSING, tmp_path)
    namespace, printed, run = {}, "", 0
    for kind, text in BLOCK.findall(PAGE.read_text(encoding="utf-8")):
        if kind == "python":
            out = io.StringIO()
            with contextlib.redirect_stdout(out):
                exec(compile(text, f"block {run} of {PAGE.name}", "exec"), namespace)
            printed, run = out.getvalue(), run + 1
        elif kind == "text":
            assert printed == text, f"block {run}"
            printed = ""
        else:
            assert kind == "bash" and "test_the_installation_of_the_page" in globals(), f"a block of {kind} is not run"
    assert run > 8 and os.listdir(tmp_path)


def test_the_installation_of_the_page(tmp_path):
    [text] = [text for kind, text in BLOCK.findall(PAGE.read_text(encoding="utf-8")) if kind == "bash"]
    build, *lines = text.splitlines()
    assert build == "cmake --preset release && cmake --build --preset release"  # whose tests these are
    script = "\n".join(lines).replace("sudo ", "").replace("build/release", os.environ["ORVANTIS_BINARY_DIR"])
    script = script.replace("/opt/orvantis", str(tmp_path / "opt")) + f"\n{sys.executable} -B -c '{SAY_WHERE}'"
    done = subprocess.run(["bash", "-ec", script], capture_output=True, text=True, timeout=120,
                          env={key: value for key, value in os.environ.items() if key != "PYTHONPATH"})
    assert done.returncode == 0, done.stderr
    assert done.stdout.splitlines()[-1].startswith(str(tmp_path / "opt"))


SAY_WHERE = "import orvantis_zones; print(orvantis_zones.__file__)"


def test_the_blocks_about_fleets_run(tmp_path, monkeypatch):
    pytest.importorskip("pandas")
    monkeypatch.chdir(tmp_path)
    shutil.copy(CROSSING, "site.json")
    for day in ("monday", "tuesday"):
        shutil.copy(RECORDING, f"{day}.mcap")
    blocks = [text for kind, text in BLOCK.findall(FLEETS.read_text(encoding="utf-8")) if kind == "python"]
    namespace = {}
    for text in blocks:
        exec(compile(text, FLEETS.name, "exec"), namespace)
    assert blocks and namespace["batch"].recordings["status"].tolist() == ["finished"] * 2
    assert (tmp_path / "out" / "events.csv").read_bytes() == namespace["batch"].events._text
