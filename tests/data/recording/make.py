#!/usr/bin/python3
"""Writes the sample frames of this folder with numpy and liblzf, and what must be read from them.

Run once with Debian's python3-numpy and liblzf1; the results are kept. expected.txt has for each file its name,
the columns to be given ("-": none) and the file with its points: x, y and z as hexadecimal floats, a line each.
"""

import ctypes
import struct
from pathlib import Path

import numpy as np

here = Path(__file__).parent
manifest = []


def expect(name, data, points, columns="-"):
    (here / name).write_bytes(data)
    manifest.append(f"{name} {columns} {points}")


def keep(name, points):
    rows = [" ".join(float(value).hex() for value in row) for row in np.asarray(points, "f8")]
    (here / name).write_text("\n".join(rows) + "\n")


def packed(columns):
    """Records of these columns, one after the other, without gaps."""
    dtype = [(f"c{i}", column.dtype, column.shape[1:]) for i, column in enumerate(columns)]
    records = np.zeros(len(columns[0]), dtype)
    for i, column in enumerate(columns):
        records[f"c{i}"] = column
    return records.tobytes()


def lzf(data):
    library = ctypes.CDLL("liblzf.so.1")
    out = ctypes.create_string_buffer(2 * len(data))
    size = library.lzf_compress(data, len(data), out, len(out))
    assert size > 0
    return out.raw[:size]


def pcd(fields, count, data, body):
    names, sizes, types, counts = zip(*fields)
    lines = ["# .PCD v0.7 - Point Cloud Data file format", "VERSION 0.7", "FIELDS " + " ".join(names),
             "SIZE " + " ".join(map(str, sizes)), "TYPE " + " ".join(types), "COUNT " + " ".join(map(str, counts)),
             f"WIDTH {count}", "HEIGHT 1", "VIEWPOINT 0 0 0 1 0 0 0", f"POINTS {count}", f"DATA {data}", ""]
    return "\n".join(lines).encode() + body


def ply(kind, properties, count, body):
    lines = ["ply", f"format {kind} 1.0", "comment by numpy", f"element vertex {count}"]
    return "\n".join(lines + ["property " + p for p in properties] + ["end_header", ""]).encode() + body


random = np.random.default_rng(13)
n = 40
xyz = random.normal(0, 20, (n, 3)).astype("<f4")
xyz[3] = np.nan
xyz[4] = [np.inf, -np.inf, 1]
xyz[5] = 0
xyz[6] = [-0.0, 0.0, -0.0]
xyz[7] = [1e-42, 3.4e38, -1.17549435e-38]
keep("floats.txt", xyz)
wide = (random.normal(0, 20, (n, 3)) + [447000, 5411000, 300]).astype("<f8")
keep("doubles.txt", wide)
whole = np.stack([random.integers(-128, 128, n), random.integers(-32768, 32768, n),
                  random.integers(-2**31, 2**31, n)], 1)
keep("whole.txt", whole)
intensity = random.integers(0, 256, n).astype("<f4")
ring = (np.arange(n) % 16).astype("<u2")
gap = random.integers(0, 256, (n, 3)).astype("u1")

f4, u2 = [(name, 4, "F", 1) for name in "xyz"], ("ring", 2, "U", 1)
expect("floats.pcd", pcd(f4, n, "binary", xyz.tobytes()), "floats.txt")
expect("gaps.pcd", pcd([("_", 1, "U", 3), f4[1], u2, f4[2], ("intensity", 4, "F", 1), f4[0]], n, "binary",
                       packed([gap, xyz[:, 1], ring, xyz[:, 2], intensity, xyz[:, 0]])), "floats.txt")
columns = gap.tobytes() + b"".join(c.tobytes() for c in (xyz[:, 2], ring, xyz[:, 0], xyz[:, 1]))
block = lzf(columns)
expect("compressed.pcd", pcd([("_", 1, "U", 3), f4[2], u2, f4[0], f4[1]], n, "binary_compressed",
                             struct.pack("<II", len(block), len(columns)) + block), "floats.txt")
flat = np.zeros((400, 3), "<f4")
flat[:, 0] = np.arange(400) // 100
keep("flat.txt", flat)
columns = b"".join(flat[:, axis].tobytes() for axis in range(3))
block = lzf(columns)
expect("repeating.pcd", pcd(f4, 400, "binary_compressed", struct.pack("<II", len(block), len(columns)) + block),
       "flat.txt")
rows = "".join(" ".join(np.format_float_positional(v) if np.isfinite(v) else str(v) for v in row) + "\n"
               for row in xyz)
expect("floats_ascii.pcd", pcd(f4, n, "ascii", rows.encode()), "floats.txt")
f8 = [(name, 8, "F", 1) for name in "XYZ"]
expect("doubles.pcd", pcd(f8, n, "binary", wide.tobytes()), "doubles.txt")
rows = "".join(" ".join(repr(float(v)) for v in row) + "\n" for row in wide)
expect("doubles_ascii.pcd", pcd(f8, n, "ascii", rows.encode()), "doubles.txt")
expect("whole.pcd", pcd([("x", 1, "I", 1), ("y", 2, "I", 1), ("z", 4, "I", 1)], n, "binary",
                        packed([whole[:, 0].astype("i1"), whole[:, 1].astype("<i2"), whole[:, 2].astype("<i4")])),
       "whole.txt")

floats = ["float x", "float y", "float z", "uchar r", "uchar g", "uchar b"]
for kind, order in (("binary_little_endian", "<"), ("binary_big_endian", ">")):
    expect(f"floats_{order == '>' and 'big' or 'little'}.ply",
           ply(kind, floats, n, packed([xyz.astype(order + "f4"), gap])), "floats.txt")
    expect(f"whole_{order == '>' and 'big' or 'little'}.ply",
           ply(kind, ["int8 x", "short y", "int32 z"], n,
               packed([whole[:, 0].astype("i1"), whole[:, 1].astype(order + "i2"), whole[:, 2].astype(order + "i4")])),
           "whole.txt")
expect("doubles.ply", ply("binary_big_endian", ["double x", "double y", "float64 z"], n, wide.astype(">f8").tobytes()),
       "doubles.txt")
rows = "".join(" ".join(repr(float(v)) for v in row) + " 7\n" for row in wide)
expect("doubles_ascii.ply", ply("ascii", ["double x", "double y", "double z", "int label"], n, rows.encode()),
       "doubles.txt")

expect("three.bin", xyz.tobytes(), "floats.txt", "3")
expect("four.bin", packed([xyz, intensity]), "floats.txt", "xyzi")
expect("five.pcd.bin", packed([xyz, intensity, ring.astype("<f4")]), "floats.txt", "5")
expect("time_first.bin", packed([np.linspace(0, 0.1, n).astype("<f4"), xyz]), "floats.txt", "t,x,y,z")

np.savetxt(here / "blanks.xyz", wide)
expect("blanks.xyz", (here / "blanks.xyz").read_bytes(), "doubles.txt")
table = np.column_stack([np.arange(n), wide[:, ::-1]])
for name, separator, header, comment in (("comma.csv", ",", "id,z,y,x", ""), ("semicolon.txt", ";", "id;z;y;x", ""),
                                         ("tab.txt", "\t", "id\tz\ty\tx", ""), ("comment.txt", " ", "id z y x", "# ")):
    np.savetxt(here / name, table, "%.17g", separator, header=header, comments=comment)
    expect(name, (here / name).read_bytes(), "doubles.txt")
np.savetxt(here / "count.pts", wide, "%.17g", header=str(n), comments="", newline="\r\n")
expect("count.pts", (here / "count.pts").read_bytes(), "doubles.txt")

scale, offset = np.array([0.001, 0.01, 0.0001]), np.array([447000.0, 5411000.0, -3.5])
raw = random.integers(-2**31, 2**31, (n, 3)).astype("<i4")
keep("scaled.txt", raw * scale + offset)
lengths = [20, 28, 26, 34, 57, 63, 30, 36, 38, 59, 67]
for minor, kind, extra in ((0, 0, 0), (1, 1, 0), (2, 2, 0), (2, 3, 5), (3, 4, 0), (3, 5, 0), (4, 6, 0), (4, 7, 0),
                           (4, 8, 2), (4, 9, 0), (4, 10, 0)):
    size = {3: 235, 4: 375}.get(minor, 227)
    header = bytearray(size)
    header[0:4] = b"LASF"
    header[24:26] = bytes([1, minor])
    length = lengths[kind] + extra
    struct.pack_into("<HIIBHI", header, 94, size, size + 3, 0, kind, length, 0 if kind >= 6 else n)
    struct.pack_into("<6d", header, 131, *scale, *offset)
    if minor == 4:
        struct.pack_into("<Q", header, 247, n)
    records = np.zeros((n, length), "u1")
    records[:, :12] = raw.view("u1").reshape(n, 12)
    records[:, 12:] = random.integers(0, 256, (n, length - 12))
    expect(f"format{kind}.las", bytes(header) + b"gap" + records.tobytes(), "scaled.txt")

(here / "expected.txt").write_text("\n".join(manifest) + "\n")
