"""How many recordings one task of a scheduler evaluates: a task costs the scheduler milliseconds, whatever it does."""
from __future__ import annotations

from collections import deque
from collections.abc import Mapping, Sequence

# A task should take so long, in seconds: long beside what it costs, short beside what is lost with a worker.
_AIM = 0.25
_MOST = 100


class Shares:
    """Recordings that wait, in order. Those in a process of their own are given one by one."""

    def __init__(self, isolate: Mapping[int, bool]) -> None:
        self._waiting = deque(isolate.items())
        self._seconds, self._count = 0.0, 0

    def __bool__(self) -> bool:
        return bool(self._waiting)

    def learn(self, seconds: float) -> None:
        """What the evaluation of a recording took."""
        self._seconds += seconds
        self._count += 1

    def put(self, positions: Sequence[int], isolate: bool) -> None:
        """They come next."""
        self._waiting.extendleft((position, isolate) for position in reversed(positions))

    def take(self, tasks: int) -> tuple[list[int], bool]:
        """Positions for one of so many tasks, and whether each needs a process of its own."""
        position, isolate = self._waiting.popleft()
        positions = [position]
        if not isolate:
            size = self._size(tasks)
            while len(positions) < size and self._waiting and not self._waiting[0][1]:
                positions.append(self._waiting.popleft()[0])
        return positions, isolate

    def _size(self, tasks: int) -> int:
        # None is known yet: one. Not so many that other workers have none.
        fair = (len(self._waiting) + tasks) // tasks
        known = int(_AIM * self._count / max(self._seconds, 1e-9)) if self._count else 1
        return max(1, min(fair, known, _MOST))
