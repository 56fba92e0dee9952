"""What a Dask worker runs."""
from __future__ import annotations

from collections.abc import Callable, Sequence


def carrier() -> Callable[[Sequence[bytes], bool], tuple[str, list[bytes], str]]:
    """A function that is sent as it is, not by its name, so that it can also tell of a worker without this package: the
    worker's address, the packed Outcome of each task, and why there are none."""
    def carried(tasks: Sequence[bytes], isolate: bool) -> tuple[str, list[bytes], str]:
        import importlib
        address: str = importlib.import_module("distributed").get_worker().address
        try:
            from orvantis_zones.batch._here import work_of
        except ImportError as error:
            return address, [], f"cannot import orvantis_zones.batch: {error}"
        return address, [work_of(isolate)(task) for task in tasks], ""
    return carried
