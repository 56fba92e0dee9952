"""What the engine logs goes to `logging`, to the logger "orvantis" and those below it."""
import logging

from . import _core

# So that it has a name where it is shown.
logging.addLevelName(5, "TRACE")


def set_log_level(level):
    """From which level on the engine logs: a number or name of `logging`, or "TRACE"; WARNING unless set.

    Records come once a call is over, to logging.getLogger("orvantis.…"), whose own level holds too. The engine writes
    nothing to the error stream.

    >>> set_log_level("DEBUG")
    >>> set_log_level("WARNING")
    """
    number = logging.getLevelName(level) if isinstance(level, str) else level
    if isinstance(number, bool) or not isinstance(number, int):
        raise ValueError(f"level is {level!r}; it must be a level of logging, such as 'DEBUG'")
    _core.set_log_level(number)
