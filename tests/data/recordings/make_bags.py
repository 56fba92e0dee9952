#!/usr/bin/python3
"""Writes the ROS bags of this folder, and whole.mcap.zst from plain.mcap.

Run once in this folder with Debian's python3-rosbag, python3-sensor-msgs and zstd; the results are kept. Point i
of cloud k is (k + i / 8, -i / 4, k / 2 - i / 16); cloud k has k + 2 points.
"""

import struct
import subprocess

import genpy
import rosbag
from sensor_msgs.msg import PointCloud2, PointField
from std_msgs.msg import String

START = 1_700_000_000


def cloud(k):
    message = PointCloud2()
    message.header.stamp = genpy.Time(START + k, 5)
    message.header.frame_id = f"lidar{k}"
    message.height = 1
    message.width = k + 2
    for name, offset, datatype in (("x", 0, 7), ("y", 4, 7), ("z", 8, 7), ("ring", 14, 4)):
        message.fields.append(PointField(name, offset, datatype, 1))
    message.point_step = 18
    message.row_step = 18 * message.width
    points = ((k + i / 8, -i / 4, k / 2 - i / 16, i) for i in range(message.width))
    message.data = b"".join(struct.pack("<fffxxHxx", *point) for point in points)
    return message


for compression in (rosbag.Compression.NONE, rosbag.Compression.BZ2, rosbag.Compression.LZ4):
    with rosbag.Bag(f"{compression}.bag", "w", compression, chunk_threshold=300) as bag:
        for k in range(4):
            time = genpy.Time(START + k, 1000)
            bag.write("/status", String("well"), time)
            bag.write("/points", cloud(k), time)

subprocess.run(["zstd", "--quiet", "--force", "plain.mcap", "-o", "whole.mcap.zst"], check=True)
