// bzip2: blocks that were sorted, moved to front, and coded by up to six Huffman tables.

import { BitReader } from './bits';
import { ENDING, Stop, type Unfolded } from './unfolding';

const LONGEST_CODE = 20;
const GROUP = 50;

/** Any number of streams into room. */
export function unfoldBzip2(from: Uint8Array, room: Uint8Array): Unfolded {
  const bits = new BitReader(from);
  const writer = new Writer(room);
  try {
    do {
      stream(bits, writer);
      bits.align();
    } while (!bits.isAtEnd);
    return { ending: ENDING.complete, size: writer.size };
  } catch (error) {
    if (error instanceof Stop) {
      return { ending: error.ending, size: writer.size };
    }
    throw error;
  }
}

const TABLE = Int32Array.from({ length: 256 }, (_, byte) => {
  let sum = byte << 24;
  for (let i = 0; i < 8; ++i) {
    sum = (sum << 1) ^ (sum < 0 ? 0x04c11db7 : 0);
  }
  return sum;
});

/** Undoes the runs of the first step, and sums up what comes out. */
class Writer {
  size = 0;
  #sum = -1;
  #last = -1;
  #run = 0;

  constructor(readonly room: Uint8Array) {}

  begin(): void {
    this.#sum = -1;
    this.#last = -1;
    this.#run = 0;
  }

  get sum(): number {
    return ~this.#sum >>> 0;
  }

  put(byte: number): void {
    if (this.#run === 4) {
      for (let i = 0; i < byte; ++i) {
        this.#byte(this.#last);
      }
      this.#run = 0;
      this.#last = -1;
      return;
    }
    this.#run = byte === this.#last ? this.#run + 1 : 1;
    this.#last = byte;
    this.#byte(byte);
  }

  #byte(byte: number): void {
    if (this.size === this.room.length) {
      throw new Stop(ENDING.full);
    }
    this.room[this.size++] = byte;
    this.#sum = (this.#sum << 8) ^ TABLE[((this.#sum >>> 24) ^ byte) & 0xff]!;
  }
}

function require(isTrue: boolean): void {
  if (!isTrue) {
    throw new Stop(ENDING.damaged);
  }
}

function stream(bits: BitReader, writer: Writer): void {
  require(bits.take(24) === 0x425a68); // BZh
  const level = bits.take(8) - 0x30;
  require(level >= 1 && level <= 9);
  let sums = 0;
  for (;;) {
    const head = bits.take(24);
    const tail = bits.take(24);
    const wanted = bits.word();
    if (head === 0x177245 && tail === 0x385090) {
      require(wanted === sums);
      return;
    }
    require(head === 0x314159 && tail === 0x265359);
    writer.begin();
    block(bits, 100000 * level, writer);
    require(writer.sum === wanted);
    sums = (((sums << 1) | (sums >>> 31)) ^ wanted) >>> 0;
  }
}

function block(bits: BitReader, most: number, writer: Writer): void {
  require(!bits.bit()); // blocks that were shuffled are of a version of last century
  const origin = bits.take(24);
  const sorted = symbols(bits, most);
  require(origin < sorted.length);
  // Where each byte of the sorted block comes from.
  const starts = new Int32Array(257);
  for (const byte of sorted) {
    starts[byte + 1]!++;
  }
  for (let i = 1; i < 257; ++i) {
    starts[i]! += starts[i - 1]!;
  }
  const next = new Int32Array(sorted.length);
  for (let i = 0; i < sorted.length; ++i) {
    next[starts[sorted[i]!]!++] = i;
  }
  for (let i = 0, at = next[origin]!; i < sorted.length; ++i, at = next[at]!) {
    writer.put(sorted[at]!);
  }
}

/** The bytes of a block, still sorted. */
function symbols(bits: BitReader, most: number): Uint8Array {
  const alphabet = usedBytes(bits);
  const numTables = bits.take(3);
  const numSelectors = bits.take(15);
  require(alphabet.length > 0 && numTables >= 2 && numTables <= 6 && numSelectors > 0);
  const order = Array.from({ length: numTables }, (_, i) => i);
  const selectors = Array.from({ length: numSelectors }, () => {
    let place = 0;
    while (bits.bit()) {
      require(++place < numTables);
    }
    return toFront(order, place);
  });
  const tables = Array.from({ length: numTables }, () => new Codes(lengths(bits, alphabet.length + 2)));

  const out = new Uint8Array(most);
  const end = alphabet.length + 1;
  let size = 0;
  let run = 0;
  let step = 1;
  for (let i = 0; ; ++i) {
    const selector = selectors[Math.floor(i / GROUP)];
    require(selector !== undefined);
    const symbol = tables[selector!]!.take(bits);
    if (symbol <= 1) {
      run += step << symbol; // a run is a number of ones and twos
      step <<= 1;
      require(run <= most - size);
      continue;
    }
    out.fill(alphabet[0]!, size, size + run);
    size += run;
    run = 0;
    step = 1;
    if (symbol === end) {
      return out.subarray(0, size);
    }
    require(size < most);
    out[size++] = toFront(alphabet, symbol - 1);
  }
}

function usedBytes(bits: BitReader): number[] {
  const groups = bits.take(16);
  const used: number[] = [];
  for (let i = 0; i < 16; ++i) {
    const group = (groups >> (15 - i)) & 1 ? bits.take(16) : 0;
    for (let k = 0; k < 16; ++k) {
      if ((group >> (15 - k)) & 1) {
        used.push(16 * i + k);
      }
    }
  }
  return used;
}

function toFront(list: number[], place: number): number {
  const [entry] = list.splice(place, 1);
  require(entry !== undefined);
  list.unshift(entry!);
  return entry!;
}

function lengths(bits: BitReader, count: number): number[] {
  let length = bits.take(5);
  return Array.from({ length: count }, () => {
    for (;;) {
      require(length >= 1 && length <= LONGEST_CODE);
      if (!bits.bit()) {
        return length;
      }
      length += bits.bit() ? -1 : 1;
    }
  });
}

/** Huffman codes of these lengths, in order. */
class Codes {
  readonly #symbols: number[] = [];
  readonly #counts = new Int32Array(LONGEST_CODE + 1);

  constructor(lengths: readonly number[]) {
    for (let length = 1; length <= LONGEST_CODE; ++length) {
      lengths.forEach((of, symbol) => {
        if (of === length) {
          this.#symbols.push(symbol);
          this.#counts[length]!++;
        }
      });
    }
  }

  take(bits: BitReader): number {
    let code = 0;
    let first = 0;
    let index = 0;
    for (let length = 1; length <= LONGEST_CODE; ++length) {
      code |= bits.take(1);
      const count = this.#counts[length]!;
      if (code - first < count) {
        return this.#symbols[index + code - first]!;
      }
      index += count;
      first = (first + count) << 1;
      code <<= 1;
    }
    throw new Stop(ENDING.damaged);
  }
}
