// Against the programs of the formats, where they are installed.

import { execFileSync } from 'node:child_process';
import { describe, expect, test } from 'vitest';

import { unfold } from '../decoders/index';
import { ENDING } from '../decoders/unfolding';
import { xxhash32 } from '../decoders/xxhash';

function contents(): Uint8Array[] {
  let state = 7;
  const random = () => ((state = (Math.imul(state, 1664525) + 1013904223) >>> 0), state / 2 ** 32);
  const noise = Uint8Array.from({ length: 300000 }, () => Math.floor(256 * random()));
  const text = new TextEncoder().encode(Array.from({ length: 60000 }, () => `${Math.floor(100 * random())},`).join(''));
  const runs = Uint8Array.from({ length: 200000 }, (_, i) => (Math.floor(i / 1000) * 7) % 11);
  return [new Uint8Array(), Uint8Array.of(65), new Uint8Array(1000000), noise, text, runs];
}

function isThere(program: string): boolean {
  try {
    execFileSync(program, ['--version'], { stdio: 'ignore' });
    return true;
  } catch {
    return false;
  }
}

const formats = [
  { kind: 0, program: 'lz4', ways: [['-1'], ['-9', '-B4'], ['-BD', '-BX', '--content-size'], ['--no-frame-crc']] },
  { kind: 1, program: 'zstd', ways: [['-1'], ['-19'], ['--no-check'], ['--fast=5']] },
  { kind: 2, program: 'bzip2', ways: [['-1'], ['-9']] },
];

for (const { kind, program, ways } of formats) {
  describe.skipIf(!isThere(program))(program, () => {
    const pack = (bytes: Uint8Array, way: string[]): Uint8Array =>
      new Uint8Array(execFileSync(program, [...way, '-c'], { input: bytes, maxBuffer: 2 ** 26, stdio: ['pipe', 'pipe', 'ignore'] }));

    test('what was packed comes out again', () => {
      for (const way of ways) {
        for (const bytes of contents()) {
          const room = new Uint8Array(bytes.length + 5);
          expect(unfold(kind, pack(bytes, way), room)).toEqual({ ending: ENDING.complete, size: bytes.length });
          expect(Buffer.compare(room.subarray(0, bytes.length), bytes)).toBe(0);
        }
      }
    });

    test('frames may follow each other', () => {
      const [, one, , , text] = contents();
      const packed = Buffer.concat([pack(text!, ways[0]!), pack(one!, ways[0]!)]);
      const room = new Uint8Array(text!.length + 1);
      expect(unfold(kind, packed, room)).toEqual({ ending: ENDING.complete, size: room.length });
      expect(Buffer.compare(room, Buffer.concat([text!, one!]))).toBe(0);
    });

    test('room that is too small is said to be', () => {
      const text = contents()[4]!;
      const room = new Uint8Array(text.length - 1);
      expect(unfold(kind, pack(text, ways[0]!), room).ending).toBe(ENDING.full);
    });

    test('what is cut off is right as far as it goes', () => {
      const noise = contents()[3]!;
      const packed = pack(noise, ways[0]!);
      for (const size of [1, 5, 20, packed.length >> 1, packed.length - 1]) {
        const room = new Uint8Array(noise.length);
        const done = unfold(kind, packed.subarray(0, size), room);
        expect(done.ending).toBe(ENDING.cutOff);
        expect(Buffer.compare(room.subarray(0, done.size), noise.subarray(0, done.size))).toBe(0);
      }
    });

    test('no bytes make it hang, write beyond its room, or throw', () => {
      const packed = pack(contents()[4]!.subarray(0, 5000), ways[0]!);
      let state = 1;
      for (let i = 0; i < 2000; ++i) {
        state = (Math.imul(state, 1103515245) + 12345) >>> 0;
        const bytes = packed.slice();
        bytes[(state >>> 8) % bytes.length]! ^= 1 << (state & 7);
        const room = new Uint8Array(6000);
        expect(unfold(kind, bytes, room).size).toBeLessThanOrEqual(room.length);
      }
    });
  });
}

test('xxHash gives what its makers say', () => {
  const of = (text: string) => xxhash32(new TextEncoder().encode(text));
  expect(of('')).toBe(0x02cc5d05);
  expect(of('a')).toBe(0x550d7456);
  expect(of('Nobody inspects the spammish repetition')).toBe(0xe2293b2f);
});
