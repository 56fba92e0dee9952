"""One evaluation in a process of its own, so that what kills it kills nothing else."""
from __future__ import annotations

import os
import signal
import socket
import subprocess
import sys
from dataclasses import replace

from ._outcome import Outcome

TRIES = 2


def work_isolated(task: bytes) -> bytes:
    """As work(); a recording that kills its process twice becomes an Outcome that says how."""
    command = [sys.executable, "-B", "-c", "from orvantis_zones.batch._isolated import child; child()"]
    # The process finds what this one finds.
    environment = {**os.environ, "PYTHONPATH": os.pathsep.join(filter(None, sys.path))}
    ended = ""
    for attempt in range(1, TRIES + 1):
        done = subprocess.run(command, input=task, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, env=environment)
        try:
            return replace(Outcome.unpack(done.stdout), attempts=attempt).pack()
        except ValueError:
            ended = _ending(done.returncode)
    text = f"the process that evaluated it ended with {ended}; it was tried {TRIES} times"
    return Outcome("worker died", text, host=socket.gethostname(), attempts=TRIES).pack()


def _ending(code: int) -> str:
    if code >= 0:
        return f"exit code {code}"
    try:
        return signal.Signals(-code).name
    except ValueError:
        return f"signal {-code}"


def child() -> None:
    """The other end: a task on the standard input, an Outcome on the standard output."""
    from ._work import work

    # What a reader prints must not get between the bytes.
    output = os.dup(1)
    os.dup2(2, 1)
    packed = work(sys.stdin.buffer.read())
    with os.fdopen(output, "wb") as file:
        file.write(packed)
