// The LZ4 frame format: https://github.com/lz4/lz4/blob/dev/doc/lz4_Frame_format.md

import { ByteReader, ENDING, Stop, type Unfolded } from './unfolding';
import { xxhash32 } from './xxhash';

const MAGIC = 0x184d2204;
const LEAST_SKIPPABLE = 0x184d2a50;

/** Any number of frames into room. What a block refers to may lie in the block before. */
export function unfoldLz4(from: Uint8Array, room: Uint8Array): Unfolded {
  const reader = new ByteReader(from);
  const writer = { room, size: 0 };
  try {
    do {
      frame(reader, writer);
    } while (reader.left > 0);
    return { ending: ENDING.complete, size: writer.size };
  } catch (error) {
    if (error instanceof Stop) {
      return { ending: error.ending, size: writer.size };
    }
    throw error;
  }
}

interface Writer {
  readonly room: Uint8Array;
  size: number;
}

function frame(reader: ByteReader, writer: Writer): void {
  const magic = reader.word();
  if ((magic & ~0xf) >>> 0 === LEAST_SKIPPABLE) {
    const size = reader.word();
    if (size > reader.left) {
      throw new Stop(ENDING.cutOff);
    }
    reader.at += size;
    return;
  }
  if (magic !== MAGIC) {
    throw new Stop(ENDING.damaged);
  }
  const begin = reader.at;
  const flags = reader.byte();
  const sizes = reader.byte();
  const largest = (sizes >> 4) & 7;
  // Version 1; no dictionary, since none is there; the reserved bits are 0.
  if (flags >> 6 !== 1 || (flags & 3) !== 0 || (sizes & 0x8f) !== 0 || largest < 4) {
    throw new Stop(ENDING.damaged);
  }
  const blockSums = (flags & 0x10) !== 0;
  const hasSize = (flags & 8) !== 0;
  const hasSum = (flags & 4) !== 0;
  const size = hasSize ? reader.word() + reader.word() * 0x100000000 : 0;
  const header = reader.bytes.subarray(begin, reader.at);
  if (reader.byte() !== ((xxhash32(header) >>> 8) & 0xff)) {
    throw new Stop(ENDING.damaged);
  }
  const first = writer.size;
  const isLinked = (flags & 0x20) === 0;
  const most = 1 << (8 + 2 * largest);
  for (let word = reader.word(); word !== 0; word = reader.word()) {
    block(reader, word, { blockSums, most, oldest: isLinked ? first : -1 }, writer);
  }
  const content = writer.room.subarray(first, writer.size);
  if ((hasSize && size !== content.length) || (hasSum && reader.word() !== xxhash32(content))) {
    throw new Stop(ENDING.damaged);
  }
}

function block(
  reader: ByteReader, word: number, frame: { blockSums: boolean; most: number; oldest: number }, writer: Writer,
): void {
  const size = word & 0x7fffffff;
  if (size > frame.most) {
    throw new Stop(ENDING.damaged);
  }
  const isCutOff = size > reader.left;
  const bytes = reader.bytes.subarray(reader.at, reader.at + size);
  if (isCutOff && word >>> 31 === 0) {
    throw new Stop(ENDING.cutOff);
  }
  reader.at += bytes.length;
  if (!isCutOff && frame.blockSums && reader.word() !== xxhash32(bytes)) {
    throw new Stop(ENDING.damaged);
  }
  if (word >>> 31 === 1) {
    store(bytes, writer);
  } else {
    sequences(bytes, frame.oldest < 0 ? writer.size : frame.oldest, frame.most, writer);
  }
  if (isCutOff) {
    throw new Stop(ENDING.cutOff);
  }
}

function store(bytes: Uint8Array, writer: Writer): void {
  const fitting = Math.min(bytes.length, writer.room.length - writer.size);
  writer.room.set(bytes.subarray(0, fitting), writer.size);
  writer.size += fitting;
  if (fitting < bytes.length) {
    throw new Stop(ENDING.full);
  }
}

/** @param oldest the first byte that a match may lie at */
function sequences(bytes: Uint8Array, oldest: number, most: number, writer: Writer): void {
  const { room } = writer;
  const end = writer.size + most;
  let at = 0;
  const length = (start: number): number => {
    let sum = start;
    for (let more = start === 15 ? 255 : 0; more === 255; sum += more) {
      if (at >= bytes.length) {
        throw new Stop(ENDING.damaged);
      }
      more = bytes[at++]!;
    }
    return sum;
  };
  while (at < bytes.length) {
    const token = bytes[at++]!;
    const literals = length(token >> 4);
    if (literals > bytes.length - at || writer.size + literals > end) {
      throw new Stop(ENDING.damaged);
    }
    store(bytes.subarray(at, at + literals), writer);
    at += literals;
    if (at === bytes.length) {
      return;
    }
    if (at + 2 > bytes.length) {
      throw new Stop(ENDING.damaged);
    }
    const offset = bytes[at]! | (bytes[at + 1]! << 8);
    at += 2;
    const match = length(token & 15) + 4;
    const source = writer.size - offset;
    if (offset === 0 || source < oldest || writer.size + match > end) {
      throw new Stop(ENDING.damaged);
    }
    const fitting = Math.min(match, room.length - writer.size);
    if (offset >= fitting) {
      room.copyWithin(writer.size, source, source + fitting);
    } else {
      for (let i = 0; i < fitting; ++i) {
        room[writer.size + i] = room[source + i]!; // a match may repeat itself
      }
    }
    writer.size += fitting;
    if (fitting < match) {
      throw new Stop(ENDING.full);
    }
  }
}
