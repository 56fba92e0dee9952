"""Every block of docs/python.md runs, and prints what stands below it."""
import contextlib
import io
import os
import re
import shutil

import pytest
from conftest import CROSSING, SOURCE

PAGE = SOURCE / "docs" / "python.md"
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
            assert kind in ("bash",), f"a block of {kind} is not run"
    assert run > 8 and os.listdir(tmp_path)
