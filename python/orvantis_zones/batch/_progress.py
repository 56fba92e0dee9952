"""How far a batch is: a line on a terminal, a bar in a notebook."""
from __future__ import annotations

import importlib
import sys
import time
from collections.abc import Callable
from typing import Any, Union

Progress = Union[Callable[[int, int, str], None], bool]


class Shown:
    """Counts what finishes. What was finished before counts as done, and not for the pace."""

    def __init__(self, progress: Progress, total: int, before: int) -> None:
        self._call = progress if callable(progress) else None
        self._show = progress is True
        self._total, self._done, self._before = total, before, before
        self._frames, self._recorded, self._began, self._told = 0, 0.0, time.monotonic(), 0.0
        self._bar: Any = _notebook_bar() if self._show else None

    def finished(self, name: str, frames: int, seconds: float) -> None:
        self._done += 1
        self._frames += frames
        self._recorded += seconds
        if self._call is not None:
            self._call(self._done, self._total, name)
        if self._show and (time.monotonic() - self._told > 0.2 or self._done == self._total):
            self._told = time.monotonic()
            self._tell()

    def text(self, elapsed: float) -> str:
        here = self._done - self._before
        left = elapsed / here * (self._total - self._done) if here else 0.0
        return (f"{self._done} of {self._total} recordings, {self._frames / elapsed:.0f} frames a second, "
                f"{self._recorded / elapsed:.1f} hours of recording an hour, {_clock(left)} left")

    def _tell(self) -> None:
        text = self.text(max(time.monotonic() - self._began, 1e-9))
        if self._bar is not None:
            self._bar.update({"text/html": f'<progress value="{self._done}" max="{self._total}"></progress> {text}',
                              "text/plain": text}, raw=True)
        else:
            print(f"\r{text}\033[K", end="", file=sys.stderr, flush=True)

    def end(self) -> None:
        if self._show and self._bar is None and self._told:
            print("\r\033[K", end="", file=sys.stderr, flush=True)


def _clock(seconds: float) -> str:
    whole = int(seconds + 0.5)
    return f"{whole // 3600}:{whole // 60 % 60:02}:{whole % 60:02}"


def _notebook_bar() -> Any:
    """A display that can be changed, or None outside a notebook."""
    python = sys.modules.get("IPython")
    shell = python.get_ipython() if python is not None else None
    if shell is None or not hasattr(shell, "kernel"):
        return None
    display: Any = importlib.import_module("IPython.display")
    return display.display({"text/plain": ""}, raw=True, display_id=True)
