"""Recordings of each kind with the same frames."""
import struct

import numpy as np

POINTS = 30_007
_FIELDS = [("x", 0), ("y", 4), ("z", 8), ("intensity", 12)]


def frame(number):
    """x, y, z and intensity, float32."""
    made = np.random.default_rng(number % 7).uniform((-50, -50, -1, 0), (50, 50, 3, 1), (POINTS, 4))
    return made.astype(np.float32)


def _pcd(points, data, body):
    head = f"VERSION .7\nFIELDS x y z intensity\nSIZE 4 4 4 4\nTYPE F F F F\nCOUNT 1 1 1 1\nWIDTH {len(points)}\nHEIGHT 1\n"
    return f"{head}VIEWPOINT 0 0 0 1 0 0 0\nPOINTS {len(points)}\nDATA {data}\n".encode() + body


def _text(points, columns):
    return ("\n".join(" ".join(f"{value:.4f}" for value in row) for row in points[:, :columns].tolist()) + "\n").encode()


FILES = {
    ".bin, 4 columns": ("bin", lambda points: points.tobytes()),
    "binary .pcd": ("pcd", lambda points: _pcd(points, "binary", points.tobytes())),
    "ascii .pcd": ("pcd", lambda points: _pcd(points, "ascii", _text(points, 4))),
    ".xyz": ("xyz", lambda points: _text(points, 3)),
}


def write_files(folder, kind, count):
    """A folder of frames."""
    ending, made = FILES[kind]
    folder.mkdir()
    written = [made(frame(number)) for number in range(min(count, 7))]
    for number in range(count):
        (folder / f"{number:05}.{ending}").write_bytes(written[number % 7])
    return folder


def _text32(text):
    return struct.pack("<I", len(text)) + text.encode()


def _record(op, body):
    return struct.pack("<BQ", op, len(body)) + body


def _cloud(points, stamp):
    """A message sensor_msgs/PointCloud2 in CDR."""
    made = bytearray(b"\0\1\0\0")

    def put(form, *values):
        # Numbers lie at multiples of their size, counted behind the first four bytes.
        while (len(made) - 4) % struct.calcsize(form[-1]):
            made.append(0)
        made.extend(struct.pack("<" + form, *values))

    def put_text(text):
        put("I", len(text) + 1)
        made.extend(text.encode() + b"\0")

    put("I", int(stamp))
    put("I", round(stamp % 1 * 1e9))
    put_text("lidar")
    put("I", 1)
    put("I", len(points))
    put("I", len(_FIELDS))
    for name, offset in _FIELDS:
        put_text(name)
        put("I", offset)
        put("B", 7)
        put("I", 1)
    put("B", 0)
    put("I", 16)
    put("I", 16 * len(points))
    put("I", 16 * len(points))
    made.extend(points.tobytes())
    put("B", 1)
    return bytes(made)


def write_mcap(path, count):
    """An MCAP file without chunks and compression, 10 clouds a second."""
    with open(path, "wb") as file:
        file.write(b"\x89MCAP0\r\n" + _record(1, _text32("ros2") + _text32("benchmark")))
        file.write(_record(3, struct.pack("<H", 1) + _text32("sensor_msgs/msg/PointCloud2") + _text32("ros2msg") + _text32("")))
        file.write(_record(4, struct.pack("<HH", 1, 1) + _text32("/points") + _text32("cdr") + struct.pack("<I", 0)))
        for number in range(count):
            stamp = 1_700_000_000 + number / 10
            head = struct.pack("<HIQQ", 1, number, round(stamp * 1e9), round(stamp * 1e9))
            file.write(_record(5, head + _cloud(frame(number), stamp)))
        file.write(_record(15, struct.pack("<I", 0)) + _record(2, struct.pack("<QQI", 0, 0, 0)) + b"\x89MCAP0\r\n")
    return path
