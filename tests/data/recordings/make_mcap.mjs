// Writes the MCAP files of this folder. Run once, with Node.js and the programs lz4 and zstd; the results are kept.
//   npm install @mcap/core@2.2.2 @foxglove/rosmsg@5.0.5 @foxglove/rosmsg2-serialization@3.1.0
//   node make_mcap.mjs FOLDER
// Point i of cloud k is (k + i / 8, -i / 4, k / 2 - i / 16); cloud k has k + 2 points.

import { execFileSync } from "node:child_process";
import { writeFileSync } from "node:fs";
import { createRequire } from "node:module";

// The packages lie where the script is run, not where it is kept.
const require = createRequire(process.cwd() + "/");
const { McapWriter } = require("@mcap/core");
const { parse } = require("@foxglove/rosmsg");
const { MessageWriter } = require("@foxglove/rosmsg2-serialization");

const folder = process.argv[2];
const start = 1_700_000_000;

const pointCloud2 = `std_msgs/Header header
uint32 height
uint32 width
sensor_msgs/PointField[] fields
bool is_bigendian
uint32 point_step
uint32 row_step
uint8[] data
bool is_dense
================================================================================
MSG: std_msgs/Header
builtin_interfaces/Time stamp
string frame_id
================================================================================
MSG: builtin_interfaces/Time
int32 sec
uint32 nanosec
================================================================================
MSG: sensor_msgs/PointField
string name
uint32 offset
uint8 datatype
uint32 count`;
const text = "string data";

const cloudWriter = new MessageWriter(parse(pointCloud2, { ros2: true }));
const textWriter = new MessageWriter(parse(text, { ros2: true }));

function cloud(k) {
  const size = k + 2;
  const step = 18;
  const data = new DataView(new ArrayBuffer(size * step));
  for (let i = 0; i < size; ++i) {
    data.setFloat32(i * step, k + i / 8, true);
    data.setFloat32(i * step + 4, -i / 4, true);
    data.setFloat32(i * step + 8, k / 2 - i / 16, true);
    data.setUint16(i * step + 14, i, true);
  }
  const fields = [["x", 0, 7], ["y", 4, 7], ["z", 8, 7], ["ring", 14, 4]].map(([name, offset, datatype]) => ({ name, offset, datatype, count: 1 }));
  return cloudWriter.writeMessage({
    header: { stamp: { sec: start + k, nanosec: 5 }, frame_id: "lidar" + k },
    height: 1, width: size, fields, is_bigendian: false, point_step: step, row_step: step * size,
    data: new Uint8Array(data.buffer), is_dense: true,
  });
}

function compressedBy(program, ...options) {
  return (chunk) => ({
    compression: program,
    compressedData: execFileSync(program, [...options, "-c"], { input: chunk }),
  });
}

async function write(name, options) {
  const parts = [];
  let position = 0n;
  const writable = {
    async write(bytes) {
      parts.push(Buffer.from(bytes));
      position += BigInt(bytes.byteLength);
    },
    position: () => position,
  };
  const writer = new McapWriter({ writable, ...options });
  await writer.start({ profile: "ros2", library: "" });
  const encoder = new TextEncoder();
  const register = async (topic, type, definition) =>
    await writer.registerChannel({
      topic, messageEncoding: "cdr", metadata: new Map(),
      schemaId: await writer.registerSchema({ name: type, encoding: "ros2msg", data: encoder.encode(definition) }),
    });
  const points = await register("/points", "sensor_msgs/msg/PointCloud2", pointCloud2);
  const status = await register("/status", "std_msgs/msg/String", text);
  for (let k = 0; k < 4; ++k) {
    const logTime = BigInt(start + k) * 1_000_000_000n + 1_000n;
    await writer.addMessage({ channelId: status, sequence: k, logTime, publishTime: logTime, data: textWriter.writeMessage({ data: "well" }) });
    await writer.addMessage({ channelId: points, sequence: k, logTime, publishTime: logTime, data: cloud(k) });
  }
  await writer.addMetadata({ name: "site", metadata: new Map([["a", "b"]]) });
  await writer.addAttachment({ name: "notes", logTime: 0n, createTime: 0n, mediaType: "text/plain", data: encoder.encode("some notes") });
  await writer.end();
  writeFileSync(`${folder}/${name}`, Buffer.concat(parts));
}

const bare = {
  useStatistics: false, useSummaryOffsets: false, repeatSchemas: false, repeatChannels: false,
  useAttachmentIndex: false, useMetadataIndex: false, useMessageIndex: false, useChunkIndex: false,
};
await write("plain.mcap", { chunkSize: 300 });
await write("unchunked.mcap", { useChunks: false });
await write("unchunked_bare.mcap", { useChunks: false, ...bare });
await write("lz4.mcap", { chunkSize: 300, compressChunk: compressedBy("lz4") });
await write("lz4_linked_bare.mcap", { chunkSize: 300, compressChunk: compressedBy("lz4", "-BD", "-B4"), ...bare });
await write("zstd.mcap", { chunkSize: 300, compressChunk: compressedBy("zstd", "-19") });
