// How unfolding ended: the words are those of the toolkit's decoders, the numbers what the module understands.

export const ENDING = {
  complete: 0,
  /** The room was not enough. */
  full: -1,
  /** The compressed bytes end too early; what came out is right as far as it goes. */
  cutOff: -2,
  damaged: -3,
} as const;

export type Ending = (typeof ENDING)[keyof typeof ENDING];

export interface Unfolded {
  readonly ending: Ending;
  /** Bytes that came out; they stand at the begin of the room. */
  readonly size: number;
}

/** Ends unfolding from within. */
export class Stop extends Error {
  constructor(readonly ending: Ending) {
    super();
  }
}

/** Little-endian numbers, one after the other; ends with `cutOff` where there are no more. */
export class ByteReader {
  at = 0;

  constructor(readonly bytes: Uint8Array) {}

  get left(): number {
    return this.bytes.length - this.at;
  }

  byte(): number {
    if (this.left < 1) {
      throw new Stop(ENDING.cutOff);
    }
    return this.bytes[this.at++]!;
  }

  word(): number {
    if (this.left < 4) {
      throw new Stop(ENDING.cutOff);
    }
    const at = this.at;
    this.at += 4;
    const b = this.bytes;
    return (b[at]! | (b[at + 1]! << 8) | (b[at + 2]! << 16) | (b[at + 3]! << 24)) >>> 0;
  }
}
