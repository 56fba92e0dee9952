// The project's own tests in C++, built to WebAssembly: what holds on the machine that built them holds here, too.

import { existsSync, readFileSync } from 'node:fs';
import { expect, test } from 'vitest';

import { ROOT } from './load';

/** What a program wrote, and what it ended with. */
interface Ended {
  readonly code: number;
  readonly text: string;
}

class Exit extends Error {
  constructor(readonly code: number) {
    super(`ended with ${code}`);
  }
}

// A system without files: arguments, clocks, randomness, and what is written to a console.
function run(program: WebAssembly.Module, args: readonly string[]): Ended {
  let memory: WebAssembly.Memory;
  const numbers = () => new DataView(memory.buffer);
  const bytes = () => new Uint8Array(memory.buffer);
  const words = args.map((arg) => new TextEncoder().encode(`${arg}\0`));
  const decoder = new TextDecoder();
  let text = '';
  const system: Record<string, (...values: never[]) => unknown> = {
    args_sizes_get: (count: number, size: number) => {
      numbers().setUint32(count, words.length, true);
      numbers().setUint32(size, words.reduce((sum, word) => sum + word.length, 0), true);
      return 0;
    },
    args_get: (pointers: number, room: number) => {
      words.forEach((word, i) => {
        numbers().setUint32(pointers + 4 * i, room, true);
        bytes().set(word, room);
        room += word.length;
      });
      return 0;
    },
    environ_sizes_get: (count: number, size: number) => {
      numbers().setUint32(count, 0, true);
      numbers().setUint32(size, 0, true);
      return 0;
    },
    environ_get: () => 0,
    clock_time_get: (_clock: number, _precision: bigint, at: number) => {
      numbers().setBigUint64(at, BigInt(Math.round(performance.now() * 1e6)), true);
      return 0;
    },
    fd_write: (_file: number, pieces: number, count: number, written: number) => {
      let size = 0;
      for (let i = 0; i < count; ++i) {
        const at = numbers().getUint32(pieces + 8 * i, true);
        const length = numbers().getUint32(pieces + 8 * i + 4, true);
        text += decoder.decode(bytes().subarray(at, at + length), { stream: true });
        size += length;
      }
      numbers().setUint32(written, size, true);
      return 0;
    },
    proc_exit: (code: number) => {
      throw new Exit(code);
    },
    getentropy: (at: number, size: number) => {
      crypto.getRandomValues(bytes().subarray(at, at + size));
      return 0;
    },
    emscripten_notify_memory_growth: () => undefined,
  };
  const imports: Record<string, Record<string, unknown>> = {};
  for (const { module, name } of WebAssembly.Module.imports(program)) {
    (imports[module] ??= {})[name] = system[name] ?? (() => 52); // ENOSYS
  }
  const instance = new WebAssembly.Instance(program, imports as WebAssembly.Imports);
  memory = instance.exports.memory as WebAssembly.Memory;
  try {
    (instance.exports._start as () => void)();
    return { code: 0, text };
  } catch (error) {
    if (error instanceof Exit) return { code: error.code, text };
    throw new Error(`${String(error)} after\n${text.slice(-1000)}`);
  }
}

// It takes a minute, and the bound that it holds to is the same on every machine.
const LEFT_OUT = 'Grid.ManyVerticesKeepTheBoundOnMemory';

// Built with -DORVANTIS_WASM_PROGRAMS=ON alone, as the tests of the whole project do.
const PROGRAM = `${ROOT}build/wasm/web/engine/tests/programs.wasm`;

test.skipIf(!existsSync(PROGRAM))('every test of the program passes', { timeout: 240000 }, () => {
  const { code, text } = run(new WebAssembly.Module(readFileSync(PROGRAM)), ['programs', `--gtest_filter=-${LEFT_OUT}`]);
  const lines = text.split('\n');
  expect(lines.filter((line) => line.includes('FAILED'))).toEqual([]);
  expect(code).toBe(0);
  const [, ran] = /\[==========\] (\d+) tests from \d+ test suites? ran/.exec(text) ?? [];
  expect(Number(ran)).toBeGreaterThan(600);
});
