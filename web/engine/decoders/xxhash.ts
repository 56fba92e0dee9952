// xxHash, 32 bits, of whole byte arrays, as github.com/Cyan4973/xxHash describes it

const P1 = 0x9e3779b1;
const P2 = 0x85ebca77;
const P3 = 0xc2b2ae3d;
const P4 = 0x27d4eb2f;
const P5 = 0x165667b1;

const turn = (value: number, bits: number): number => (value << bits) | (value >>> (32 - bits));

export function xxhash32(bytes: Uint8Array): number {
  const view = new DataView(bytes.buffer, bytes.byteOffset, bytes.byteLength);
  const size = bytes.length;
  let at = 0;
  let hash = P5 | 0;
  if (size >= 16) {
    const sums = [(P1 + P2) | 0, P2 | 0, 0, -P1 | 0];
    for (; at + 16 <= size; at += 16) {
      for (let lane = 0; lane < 4; ++lane) {
        const word = view.getInt32(at + 4 * lane, true);
        sums[lane] = Math.imul(turn((sums[lane]! + Math.imul(word, P2)) | 0, 13), P1);
      }
    }
    hash = (turn(sums[0]!, 1) + turn(sums[1]!, 7) + turn(sums[2]!, 12) + turn(sums[3]!, 18)) | 0;
  }
  hash = (hash + size) | 0;
  for (; at + 4 <= size; at += 4) {
    hash = Math.imul(turn((hash + Math.imul(view.getInt32(at, true), P3)) | 0, 17), P4);
  }
  for (; at < size; ++at) {
    hash = Math.imul(turn((hash + Math.imul(bytes[at]!, P5)) | 0, 11), P1);
  }
  hash = Math.imul(hash ^ (hash >>> 15), P2);
  hash = Math.imul(hash ^ (hash >>> 13), P3);
  return (hash ^ (hash >>> 16)) >>> 0;
}
