"""Drawing on matplotlib."""
import numpy as np

from . import _arrays

# Of the eight fields; told apart by colour-blind readers too.
_COLOURS = ("#0072b2", "#e69f00", "#009e73", "#cc79a7", "#56b4e9", "#d55e00", "#7f7f00", "#5e4fa2")
_MOST_POINTS = 100_000


def _write(axes, text, at, color="#1f2933", **style):
    """A name, with a pale edge that keeps it legible over points."""
    from matplotlib.patheffects import withStroke
    axes.annotate(text, at, fontsize=8, color=color, clip_on=True, zorder=5,
                  path_effects=[withStroke(linewidth=2.5, foreground="white")], **style)


def _outline(axes, shape, name, labels, **style):
    ring = shape.vertices
    ring = ring[np.isfinite(ring).all(axis=1)]
    if not len(ring):
        return
    axes.fill(*ring.T, **style)
    if labels and name:
        middle = (ring.min(axis=0) + ring.max(axis=0)) / 2
        _write(axes, name, middle, ha="center", va="center")


def _line(axes, name, line, labels):
    (x, y), (to_x, to_y) = line.first, line.second
    axes.plot([x, to_x], [y, to_y], color="#b3123f", linewidth=2, zorder=3)
    # A mark at the left, which is where crossings to the left end.
    left = np.array([y - to_y, to_x - x])
    middle = np.array([x + to_x, y + to_y]) / 2
    arrow = {"arrowstyle": "->", "color": "#b3123f", "shrinkA": 0, "shrinkB": 0, "linewidth": 2}
    axes.annotate("", middle + left * 0.25, middle, arrowprops=arrow, zorder=3)
    if labels:
        _write(axes, name, (to_x, to_y), color="#b3123f", xytext=(3, 3), textcoords="offset points")


def _scan(axes, site, points):
    given = _arrays.points(points)
    array = np.stack(given, axis=1) if isinstance(given, tuple) else given[:, :3]
    array = array[:: max(1, -(-len(array) // _MOST_POINTS))]
    array = array[np.isfinite(array).all(axis=1)]
    masks = site.classify(array)
    counted = (masks != 0) & (masks < np.uint64(1 << 24))
    axes.scatter(*array[~counted, :2].T, s=1, c="#93a4b5", linewidths=0, zorder=1, rasterized=True)
    axes.scatter(*array[counted, :2].T, s=2, c="#b8500c", linewidths=0, zorder=2, rasterized=True)


def plot(site, *, points=None, tracks=None, ax=None, labels=True):
    """Draws the site on matplotlib axes of equal aspect, and returns them. Needs python3-matplotlib.

    points: a scan under the zones, of which those that count are coloured; of more than 100,000 every so many is drawn.
    tracks: paths (N, 2) by id. ax: axes to draw on; none: new ones. labels: whether names are written.

    >>> site = Site()
    >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
    >>> plot(site, points=[(1, 1, 1)]).get_aspect()
    1.0
    """
    if ax is None:
        import matplotlib.pyplot
        ax = matplotlib.pyplot.subplots()[1]
    if points is not None:
        _scan(ax, site, points)
    for zone in site.exclusion_zones:
        _outline(ax, zone.shape, zone.name, labels, facecolor="none", edgecolor="#52606d", hatch="///", linewidth=1)
    for field, _, zone in site.zones():
        colour = _COLOURS[field]
        _outline(ax, zone.shape, zone.name, labels, facecolor=colour + "40", edgecolor=colour, linewidth=1.5)
    for name, line in site.counter_lines.items():
        _line(ax, name, line, labels)
    for number, path in (tracks or {}).items():
        path = np.asarray(path, np.float64)
        ax.plot(path[:, 0], path[:, 1], linewidth=1, color="#3e5870", zorder=3)
        if labels and len(path):
            _write(ax, str(number), path[-1, :2], color="#3e5870")
    ax.set_aspect("equal", adjustable="datalim")
    return ax
