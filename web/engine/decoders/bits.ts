import { ENDING, Stop } from './unfolding';

/** Bits from bytes, the highest first; ends with `cutOff` where there are no more. */
export class BitReader {
  #at = 0;
  #held = 0; // bits of #bits that are still to be taken
  #bits = 0;

  constructor(readonly bytes: Uint8Array) {}

  /** @param count at most 24 */
  take(count: number): number {
    while (this.#held < count) {
      if (this.#at === this.bytes.length) {
        throw new Stop(ENDING.cutOff);
      }
      this.#bits = ((this.#bits << 8) | this.bytes[this.#at++]!) & 0xffffffff;
      this.#held += 8;
    }
    this.#held -= count;
    return (this.#bits >>> this.#held) & ((1 << count) - 1);
  }

  bit(): boolean {
    return this.take(1) === 1;
  }

  word(): number {
    return ((this.take(16) << 16) | this.take(16)) >>> 0;
  }

  /** Goes on at the next whole byte. */
  align(): void {
    this.#held -= this.#held % 8;
  }

  get isAtEnd(): boolean {
    return this.#at === this.bytes.length && this.#held < 8;
  }
}
