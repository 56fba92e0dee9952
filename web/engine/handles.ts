import { EngineError } from './module';

/**
 * Things in the module's memory, by numbers that are never used again: what was closed is refused, and not taken for what
 * lies at its address now.
 */
export class Handles {
  readonly #addresses = new Map<number, number>();
  #last = 0;

  /** @param kind what they are, such as "scene" */
  constructor(readonly kind: string) {}

  add(address: number): number {
    this.#addresses.set(++this.#last, address);
    return this.#last;
  }

  at(id: number): number {
    const address = this.#addresses.get(id);
    if (address === undefined) {
      const message = `${this.kind} ${id} is not open`;
      throw new EngineError({ message, path: '', line: 0, column: 0, reason: message });
    }
    return address;
  }

  /** The address of what is to be freed. */
  remove(id: number): number {
    const address = this.at(id);
    this.#addresses.delete(id);
    return address;
  }
}
