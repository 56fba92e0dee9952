"""Every public name says what it is, and the examples in the docstrings are true."""
import doctest

import numpy as np
import pytest

import orvantis_zones as oz


def public():
    for name in oz.__all__:
        thing = getattr(oz, name)
        if isinstance(thing, (int, str, np.dtype)) or not hasattr(thing, "__doc__"):
            continue
        yield name, thing
        if isinstance(thing, type):
            for member, value in vars(thing).items():
                if not member.startswith("_") and (callable(value) or isinstance(value, (property, staticmethod))):
                    yield f"{name}.{member}", getattr(thing, member)


NAMES = dict(public())


@pytest.mark.parametrize("name", NAMES)
def test_every_public_name_has_a_docstring(name):
    text = NAMES[name].__doc__ or ""
    # The first line of the engine's own functions is their signature.
    lines = [line for line in text.strip().splitlines() if line and "->" not in line]
    assert lines, f"{name} has no docstring"


def test_the_examples_of_the_docstrings_are_true():
    runner = doctest.DocTestRunner(optionflags=doctest.ELLIPSIS)
    parser = doctest.DocTestParser()
    texts = {**{name: thing.__doc__ for name, thing in NAMES.items()}, "orvantis_zones": oz.__doc__}
    for name, text in texts.items():
        runner.run(parser.get_doctest(text or "", dict(vars(oz)), name, None, None))
    assert runner.summarize().failed == 0
    assert runner.tries > 15
