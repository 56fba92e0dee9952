// A recording of any size that is made while it is read: an MCAP file of point clouds, whose points repeat.

import type { Slices } from '../files';

class Writer {
  readonly #bytes: number[] = [];

  get bytes(): Uint8Array {
    return Uint8Array.from(this.#bytes);
  }
  get size(): number {
    return this.#bytes.length;
  }
  put(size: 1 | 2 | 4 | 8, value: number): this {
    for (let i = 0, rest = value; i < size; ++i, rest = Math.floor(rest / 256)) this.#bytes.push(rest % 256);
    return this;
  }
  bytesOf(bytes: Iterable<number>): this {
    this.#bytes.push(...bytes);
    return this;
  }
  text(text: string): this {
    return this.put(4, text.length).bytesOf(new TextEncoder().encode(text));
  }
  record(kind: number, content: Writer): this {
    return this.put(1, kind).put(8, content.size).bytesOf(content.bytes);
  }
}

const MAGIC = [0x89, ...new TextEncoder().encode('MCAP0\r\n')];
const STEP = 16; // bytes of a point: x, y, z, intensity

/** All of a message of a cloud but its points; its texts and numbers stand where CDR has them. */
function cloudHead(points: number): Uint8Array {
  const cdr = new Writer();
  const align = () => {
    while (cdr.size % 4 !== 0) cdr.put(1, 0);
  };
  const number = (value: number) => (align(), cdr.put(4, value));
  const text = (value: string) => number(value.length + 1).bytesOf([...new TextEncoder().encode(value), 0]);
  number(0); // the stamp
  number(0);
  text('lidar');
  number(1);
  number(points);
  number(4);
  ['x', 'y', 'z', 'intensity'].forEach((name, i) => {
    text(name);
    number(4 * i);
    cdr.put(1, 7); // a float
    number(1);
  });
  cdr.put(1, 0);
  number(STEP);
  number(STEP * points);
  number(STEP * points);
  return new Uint8Array([0, 1, 0, 0, ...cdr.bytes]);
}

/** So many clouds, ten a second. */
export function largeRecording(clouds: number, points: Float32Array): Slices {
  const head = new Writer().bytesOf(MAGIC)
    .record(0x01, new Writer().text('ros2').text('generated'))
    .record(0x03, new Writer().put(2, 1).text('sensor_msgs/msg/PointCloud2').text('ros2msg').text('# text'))
    .record(0x04, new Writer().put(2, 0).put(2, 1).text('/lidar').text('cdr').text('')).bytes;
  const tail = new Writer().record(0x0f, new Writer().put(4, 0))
    .record(0x02, new Writer().put(8, 0).put(8, 0).put(4, 0)).bytesOf(MAGIC).bytes;

  const cloud = cloudHead(points.length / 4);
  const content = 22 + cloud.length + points.byteLength + 1;
  const message = new Uint8Array(9 + content);
  message.set(new Writer().put(1, 0x05).put(8, content).put(2, 0).put(4, 0).bytes);
  message.set(cloud, 31);
  message.set(new Uint8Array(points.buffer, points.byteOffset, points.byteLength), 31 + cloud.length);
  message[message.length - 1] = 1; // dense
  const view = new DataView(message.buffer);
  const stampIt = (number: number) => {
    const stamp = BigInt(number) * 100_000_000n;
    view.setBigUint64(15, stamp, true);
    view.setBigUint64(23, stamp, true);
    view.setInt32(35, Math.floor(number / 10), true);
    view.setUint32(39, (number % 10) * 100_000_000, true);
  };

  const end = head.length + clouds * message.length;
  /** The part that holds an offset, and where it begins. */
  const partAt = (offset: number): [Uint8Array, number] => {
    if (offset < head.length) return [head, 0];
    if (offset >= end) return [tail, end];
    const number = Math.floor((offset - head.length) / message.length);
    stampIt(number);
    return [message, head.length + number * message.length];
  };
  return {
    name: 'large.mcap',
    size: end + tail.length,
    read(offset, to) {
      let done = 0;
      while (done < to.length && offset + done < this.size) {
        const [part, begin] = partAt(offset + done);
        const piece = part.subarray(offset + done - begin, offset + to.length - begin);
        to.set(piece, done);
        done += piece.length;
      }
      return done;
    },
  };
}
