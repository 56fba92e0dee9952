"""Recordings: frames of points and tracked objects, and what becomes of them."""
import os
import sys
import time

import numpy as np

from . import _core
from ._document import Error
from ._site import Site
from ._stamps import nanoseconds, seconds
from ._tables import Table
from ._words import counted


class RecordingError(Error):
    """A frame or row cannot be read. line and column, in bytes, are counted from 1; None: not known."""

    def __init__(self, path, line, column, reason):
        place = "".join(f":{number}" for number in (line, column) if number is not None)
        super().__init__(f"{path}{place}: {reason}" if path else reason)
        self.path, self.line, self.column, self.reason = path, line, column, reason

    def __reduce__(self):
        return type(self), (self.path, self.line, self.column, self.reason)


def _path(path):
    path = os.fspath(path)
    # To the command that is the standard input.
    return "./-" if path == "-" else path


def _existing(path):
    os.stat(path)
    return _path(path)


def read_points(path):
    """A frame in a file as an array (N, 3): float32 where the file holds float32. NaN: no return.

    Reads .pcd, .ply, .las, .bin, .xyz, .txt, .csv and .pts. Raises OSError, RecordingError.

    >>> with open("scan.xyz", "w") as file: _ = file.write("1 2 0.5")
    >>> read_points("scan.xyz")
    array([[1. , 2. , 0.5]])
    """
    return _core.read_points(_existing(path))


def read_tracks(path, format="csv"):
    """Stamp in seconds and objects, an array of OBJECT_DTYPE, frame by frame of a file of tracks.

    format: "csv", with the columns of the command, or "kitti". Raises OSError, RecordingError.

    >>> with open("tracks.csv", "w") as file:
    ...     _ = file.write("stamp,id,class,x,y,length,width,heading,zmin,zmax\\n0.5,7,car,1,2,4,2,0,0,1.5")
    >>> for stamp, objects in read_tracks("tracks.csv"): print(stamp, objects["class"], objects["z_max"])
    0.5 ['car'] [1.5]
    """
    recording = Recording(tracks=_existing(path), tracks_format=format)
    return ((stamp, objects) for stamp, _, objects in recording)


def _title(parts):
    return os.path.basename(parts[0]) + (f" to {os.path.basename(parts[-1])}" if len(parts) > 1 else "")


class Recording:
    """Frames of points, tracked objects or both. Opened when iterated, so it can be sent to a worker.

    clouds: files, recordings (MCAP, ROS bag) and folders of them.
    rate: of single frames in Hz; none: 10.
    stamps: a list of frames with their stamps, in place of clouds.
    sensors: a list of sensors, in place of clouds; their frames are taken together when their stamps are within the
    window, in seconds.
    tracks: a file of tracked objects; tracks_format: "csv" or "kitti".

    Iterating gives stamp in seconds, points (N, 3) or None, and objects of OBJECT_DTYPE or None; raises RecordingError.

    >>> with open("scan.xyz", "w") as file: _ = file.write("1 2 0.5")
    >>> for stamp, points, objects in Recording(["scan.xyz", "scan.xyz"], rate=2): print(stamp, points, objects)
    0.0 [[1.  2.  0.5]] None
    0.5 [[1.  2.  0.5]] None
    """

    def __init__(self, clouds=(), *, rate=None, stamps=None, sensors=None, window=0.05, tracks=None,
                 tracks_format="csv", name=None):
        if isinstance(clouds, (str, os.PathLike)):
            clouds = [clouds]
        self.clouds = [_path(path) for path in clouds]
        self.rate = None if rate is None else float(rate)
        self.stamps = None if stamps is None else _path(stamps)
        self.tracks = None if tracks is None else _path(tracks)
        self.sensors = None if sensors is None else _path(sensors)
        self.window, self.tracks_format = window, tracks_format
        self._moments = None
        if tracks_format not in ("csv", "kitti"):
            raise ValueError(f"tracks_format is {tracks_format!r}; it must be 'csv' or 'kitti'")
        if self.rate is not None and not 0 < self.rate < float("inf"):
            raise ValueError(f"rate is {rate}; it must be above 0 and finite")
        given = [name for name in ("clouds", "stamps", "sensors") if getattr(self, name)]
        if len(given) > 1:
            raise ValueError(f"{' and '.join(given)} were given; the frames come from one of them")
        if self.rate is not None and self.stamps:
            raise ValueError("rate and stamps were given; frames in a list have stamps")
        if not given and not self.tracks:
            raise ValueError("neither clouds, stamps, sensors nor tracks were given; a recording needs one")
        files = [_title(part) for part in (self.clouds or [self.stamps or self.sensors], [self.tracks]) if part[0]]
        self.name = ", ".join(files) if name is None else name

    @classmethod
    def from_folder(cls, path, *, rate=None):
        """The frames and recordings in a folder, or those that its frames.txt lists; its tracks.csv. Raises OSError.

        >>> import os
        >>> os.mkdir("day")
        >>> with open("day/1.xyz", "w") as file: _ = file.write("1 2 0.5")
        >>> Recording.from_folder("day")
        <Recording: day>
        """
        path = _path(path)
        here = set(os.listdir(path))
        tracks = os.path.join(path, "tracks.csv") if "tracks.csv" in here else None
        name = os.path.basename(os.path.abspath(path))
        if "frames.txt" in here:
            return cls(stamps=os.path.join(path, "frames.txt"), tracks=tracks, name=name)
        clouds = [file for file in _core.files_of(path) if os.path.basename(file) != "tracks.csv"]
        return cls(clouds, rate=rate, tracks=tracks, name=name)

    @classmethod
    def from_arrays(cls, moments, *, name=""):
        """From any source, such as a ROS bag: stamp, points or None, and objects or None for each moment.

        moments: an iterable, or a function that returns one, which is called each time the recording is read.

        >>> recording = Recording.from_arrays([(0.0, [(1, 1, 1)], None)])
        >>> [(stamp, len(points)) for stamp, points, objects in recording]
        [(0.0, 1)]
        """
        made = cls.__new__(cls)
        made.clouds, made.rate, made.stamps, made.sensors, made.tracks = [], None, None, None, None
        made.window, made.tracks_format = 0.05, "csv"
        made.name, made._moments = name, moments
        return made

    def _arrays(self):
        return self._moments() if callable(self._moments) else self._moments

    def _open(self, site):
        return _core.Frames({"clouds": self.clouds, "rate": self.rate, "stamps": self.stamps or "",
                             "sensors": self.sensors or "", "window": self.window, "tracks": self.tracks or "",
                             "tracks_format": self.tracks_format}, site)

    def __iter__(self):
        if self._moments is not None:
            for stamp, points, objects in self._arrays():
                exact = _core.stamp_of(stamp) if isinstance(stamp, float) else nanoseconds(stamp)
                yield seconds(exact), None if points is None else np.asarray(points), objects
            return
        frames = self._open(Site())
        while (moment := frames.next()) is not None:
            yield (seconds(moment[0]), *moment[1:])

    def __repr__(self):
        return f"<Recording: {self.name}>"


class Run:
    """A recording evaluated: the four tables of `zone-detector run --csv`, without the timings.

    events, frames, zones, lines: Tables, described in docs/command.md. warnings: what the command warns of.
    name: of the recording.
    """

    def __init__(self, parts, name):
        self._parts, self.name = parts, name
        self.events, self.frames = Table(parts["events"]), Table(parts["frames"])
        self.zones, self.lines = Table(parts["zones"]), Table(parts["lines"])
        self.warnings = warnings_of(parts)

    def __reduce__(self):
        return Run, (self._parts, self.name)

    def __repr__(self):
        return (f"<Run: {counted(self.frames.num_rows, 'frame')}, {counted(self.events.num_rows, 'event')} of "
                f"{self.name}>")

    def to_svg(self):
        """The picture of `zone-detector run --plot`: text. Raises ValueError when it cannot be drawn.

        >>> site = Site()
        >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
        >>> evaluate(site, Recording.from_arrays([(0.0, [(1, 1, 1)], None)])).to_svg()[:4]
        '<svg'
        """
        if self._parts["svg"] is None:
            raise ValueError(self._parts["undrawn"])
        return self._parts["svg"]

    def write(self, folder):
        """Writes events.csv, frames.csv, zones.csv and lines.csv, each whole or not at all. Raises OSError.

        >>> import os
        >>> evaluate(Site(), Recording.from_arrays([])).write("tables")
        >>> sorted(os.listdir("tables"))
        ['events.csv', 'frames.csv', 'lines.csv', 'zones.csv']
        """
        os.makedirs(folder, exist_ok=True)
        for name in ("events", "frames", "zones", "lines"):
            getattr(self, name).to_csv(os.path.join(folder, name + ".csv"))


def warnings_of(parts):
    """What the command warns of, without its name."""
    return tuple(parts["warnings"].splitlines())


class _Progress:
    """A line on the error stream, at most five times a second."""

    def __init__(self, name, count):
        self._name, self._count, self._shown = name, count, 0.0

    def show(self, done):
        if time.monotonic() - self._shown > 0.2:
            self._shown = time.monotonic()
            of = "" if self._count is None else f" of {self._count}"
            print(f"\r{self._name}: frame {done}{of}\033[K", end="", file=sys.stderr, flush=True)

    def end(self):
        print("\r\033[K", end="", file=sys.stderr, flush=True)


def evaluate(site, recording, *, forget_after=2.0, clearance=0.0, max_speed=float("inf"), title=None, progress=False):
    """Feeds a whole recording to a new Session: Run. Raises RecordingError, and ValueError as Session does.

    title: of the picture; none: the recording's name. progress: tells frames on the error stream.

    >>> site = Site()
    >>> site.fields[0] = [Zone(Rectangle((0, 0), (2, 2), name="gate"))]
    >>> run = evaluate(site, Recording.from_arrays([(0.0, [(1, 1, 1)], None), (0.5, [], None)]))
    >>> run.events["event"].tolist()
    ['occupied', 'high low low', 'cleared', 'low low low']
    """
    options = {"forget_after": forget_after, "clearance": clearance, "max_speed": max_speed}
    title = recording.name if title is None else title
    return Run(evaluated(site, recording, options, title, progress), recording.name)


def evaluated(site, recording, options, title=None, progress=False):
    """The parts of a Run. The picture is drawn only with a title."""
    evaluation = _core.Evaluation(site, options["forget_after"], options["clearance"], options["max_speed"],
                                  recording.sensors is not None, title is not None)
    feed = _evaluate_arrays if recording._moments is not None else _evaluate_files
    has_points, has_objects = feed(evaluation, site, recording, progress)
    return evaluation.finish(has_points, has_objects, title or "")


def _evaluate_files(evaluation, site, recording, progress):
    frames = recording._open(site)
    line, done, most = _Progress(recording.name, frames.count), 0, 16
    while True:
        count = evaluation.feed(frames, most)  # some at once; in between, Python looks for Ctrl-C
        done += count
        if count < most:
            break
        if progress:
            line.show(done)
    if progress:
        line.end()
    return bool(recording.clouds or recording.stamps or recording.sensors), recording.tracks is not None


def _evaluate_arrays(evaluation, _, recording, progress):
    has_points = has_objects = False
    line = _Progress(recording.name, None)
    for done, (stamp, points, objects) in enumerate(recording._arrays()):
        has_points, has_objects = has_points or points is not None, has_objects or objects is not None
        evaluation.take(stamp, points, objects)
        if progress:
            line.show(done)
    if progress:
        line.end()
    return has_points, has_objects
