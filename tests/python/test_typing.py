"""The stubs are those of the module, and the examples are typed by them."""
import pathlib
import subprocess
import sys

import pytest
from conftest import SOURCE

import orvantis_zones as oz

pytest.importorskip("mypy")


def run(*words):
    return subprocess.run([sys.executable, "-m", *map(str, words)], capture_output=True, text=True, timeout=600)


def test_the_examples_are_typed(tmp_path):
    examples = sorted((SOURCE / "examples" / "python").glob("*.py"))
    done = run("mypy", "--strict", "--cache-dir", tmp_path, "--ignore-missing-imports", *examples)
    assert done.returncode == 0, done.stdout


def test_a_wrong_call_is_found(tmp_path):
    (tmp_path / "wrong.py").write_text('import orvantis_zones as oz\noz.Site().classify()\noz.load("a").zone(0, 0).name\n')
    done = run("mypy", "--strict", "--cache-dir", tmp_path, tmp_path / "wrong.py")
    assert "Missing positional argument" in done.stdout and 'has no attribute "name"' in done.stdout, done.stdout


def test_the_stubs_say_what_is_there(tmp_path):
    # The types of batches stand in their code.
    # The compiled classes have a metaclass that stubs cannot name.
    compiled = "Classifier CounterLine Field Polygon Rectangle Sector SensorZone Session Site Zone".split()
    members = "__(eq|hash|init|getitem|setitem|len|new|slots|match_args|reduce|getstate|setstate|iter|copy)__"
    (tmp_path / "allowed").write_text("\n".join([r"orvantis_zones\._.*", r"orvantis_zones\.batch\..*", rf"orvantis_zones\..*\.{members}",
                                                 *(rf"orvantis_zones\.{name}" for name in compiled)]))
    # What is private is not typed, and has no stubs.
    private = ",".join(f"orvantis_zones.{path.stem}" for path in pathlib.Path(oz.__file__).parent.glob("_[a-z]*.py"))
    (tmp_path / "mypy.ini").write_text(f"[mypy]\n[mypy-{private}]\nignore_errors = True\n"
                                       "[mypy-pandas,matplotlib.*,orvantis_zones._core]\nignore_missing_imports = True\n")
    done = run("mypy.stubtest", "orvantis_zones", "--mypy-config-file", tmp_path / "mypy.ini",
               "--allowlist", tmp_path / "allowed", "--ignore-unused-allowlist")
    assert done.returncode == 0, done.stdout + done.stderr
