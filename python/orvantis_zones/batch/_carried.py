"""What a Dask worker runs."""
from __future__ import annotations

from collections.abc import Callable


def carrier() -> Callable[[bytes, bool], tuple[str, bytes, str]]:
    """A function that is sent as it is, not by its name, so that it can also tell of a worker without this package: the
    worker's address, the packed Outcome, and why there is none."""
    def carried(task: bytes, isolate: bool) -> tuple[str, bytes, str]:
        import importlib
        address: str = importlib.import_module("distributed").get_worker().address
        try:
            from orvantis_zones.batch._isolated import work_isolated
            from orvantis_zones.batch._work import work
        except ImportError as error:
            return address, b"", f"cannot import orvantis_zones.batch: {error}"
        return address, (work_isolated if isolate else work)(task), ""
    return carried
