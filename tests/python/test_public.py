"""Every public name says what it is, has types and a test, and the examples in the docstrings are true."""
import ast
import doctest
import inspect
import pathlib
import re

import numpy as np
import pytest

import orvantis_zones as oz
from orvantis_zones import batch

HERE = pathlib.Path(__file__)
PACKAGE = pathlib.Path(oz.__file__).parent
VALUES = (int, str, np.dtype)


def members(owner):
    """What a class has of its own and shows; what it has of a private base is its own."""
    for base in owner.__mro__:
        if base is owner or base.__name__.startswith("_") or base.__module__.endswith("._core"):
            for name, value in vars(base).items():
                if not name.startswith("_") and (callable(value) or isinstance(value, (property, staticmethod, classmethod))):
                    yield name, inspect.getattr_static(base, name)


def public():
    """Name, thing and module of all that is public."""
    for module in (oz, batch):
        for name in module.__all__:
            thing = getattr(module, name)
            prefix = "" if module is oz else "batch."
            yield prefix + name, thing, module
            if isinstance(thing, type):
                for member, value in members(thing):
                    yield f"{prefix}{name}.{member}", getattr(value, "__func__", value), module


NAMES = {name: (thing, module) for name, thing, module in public()}
TOLD = [name for name, (thing, _) in NAMES.items() if not isinstance(thing, VALUES)]
# What one calls: its docstring shows how. Errors are raised, and the rest is made by calls that are shown.
MADE_ELSEWHERE = {"Error", "DocumentError", "RecordingError", "batch.BatchError", "Event", "ExclusionZones", "SensorZones",
                  "Run", "batch.Batch", "Frame", "ZoneExplanation", "CrossingExplanation", "CrossingEvent", "ObjectEvent",
                  "OutputEvent", "ZoneEvent", "Counts", "Report"}
SHOWN = [name for name in TOLD if callable(NAMES[name][0]) and name not in MADE_ELSEWHERE]


def test_what_is_public_is_named():
    for module in (oz, batch):
        shown = {name for name, thing in vars(module).items() if not name.startswith("_") and not inspect.ismodule(thing)}
        assert shown == set(module.__all__) - {"__version__"}
    assert len(NAMES) > 150


@pytest.mark.parametrize("name", TOLD)
def test_every_public_name_has_a_docstring(name):
    text = NAMES[name][0].__doc__ or ""
    # The first line of the engine's own functions is their signature.
    lines = [line for line in text.strip().splitlines() if line and "->" not in line]
    assert lines, f"{name} has no docstring"


@pytest.mark.parametrize("name", SHOWN)
def test_every_public_call_is_shown_in_an_example(name):
    assert ">>> " in (NAMES[name][0].__doc__ or ""), f"{name} has no example"


def test_the_examples_of_the_docstrings_are_true(tmp_path, monkeypatch):
    pytest.importorskip("matplotlib")
    pytest.importorskip("pandas")
    monkeypatch.setenv("MPLBACKEND", "Agg")
    monkeypatch.chdir(tmp_path)
    runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS)
    parser = doctest.DocTestParser()
    texts = {**{name: (thing.__doc__, module) for name, (thing, module) in NAMES.items() if name in TOLD},
             "orvantis_zones": (oz.__doc__, oz), "orvantis_zones.batch": (batch.__doc__, batch)}
    for name, (text, module) in texts.items():
        runner.run(parser.get_doctest(text or "", {**vars(oz), **vars(module)}, name, None, None))
    assert runner.summarize().failed == 0
    assert runner.tries > 2 * len(SHOWN)


def typed():
    """The names in the stub, those of private bases as the names of their classes; and those of the code of batches."""
    names = set()
    for path in (PACKAGE / "__init__.pyi", *(PACKAGE / "batch").glob("*.py")):
        classes, prefix = {}, "batch." if path.suffix == ".py" else ""
        for node in ast.parse(path.read_text(encoding="utf-8")).body:
            if isinstance(node, ast.ClassDef):
                classes[node.name] = set().union(*(classes.get(getattr(base, "id", ""), set()) for base in node.bases))
                for part in node.body:
                    if isinstance(part, ast.FunctionDef) and part.returns is not None:
                        classes[node.name].add(part.name)
                    elif isinstance(part, ast.AnnAssign):
                        classes[node.name].add(part.target.id)
                names |= {prefix + node.name, *(f"{prefix}{node.name}.{member}" for member in classes[node.name])}
            elif isinstance(node, ast.FunctionDef) and node.returns is not None:
                names.add(prefix + node.name)
            elif isinstance(node, ast.AnnAssign):
                names.add(node.target.id)
    return names


def test_every_public_name_has_types():
    assert set(NAMES) - typed() == set()


TESTS = "\n".join(path.read_text(encoding="utf-8") for path in HERE.parent.rglob("test_*.py") if path.name != HERE.name)


@pytest.mark.parametrize("name", NAMES)
def test_every_public_name_is_in_a_test(name):
    last = name.rpartition(".")[2]
    assert re.search(rf"(\.|import .*\b){re.escape(last)}\b|{re.escape(last)}=", TESTS), f"{name} is in no test"
