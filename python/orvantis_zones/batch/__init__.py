"""Many recordings, here, on an executor or on a cluster. One recording is one unit of work.

The tables are the same bytes however many workers there are, whatever order they finish in, and whichever of them die.
`python3 -m orvantis_zones.batch --help` is the same for the command line.

>>> from orvantis_zones import Recording, Rectangle, Site, Zone
>>> site = Site()
>>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
>>> batch = evaluate(site, [Recording.from_arrays([(0.0, [(1, 1, 1)], None)], name="monday")])
>>> batch.events["recording"].tolist(), batch.events["event"].tolist()
(['monday', 'monday'], ['occupied', 'high low low'])
"""
from ._batch import Batch
from ._evaluate import evaluate
from ._work import BatchError

__all__ = ["Batch", "BatchError", "evaluate"]
