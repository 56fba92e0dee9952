import { readFileSync } from 'node:fs';
import { expect, test } from 'vitest';

import { compiled } from './load';

test('the module exports what the loader calls, and nothing else of its own', () => {
  const loader = readFileSync(new URL('../module.ts', import.meta.url), 'utf8');
  const named = [...new Set(loader.match(/(?<=^ {2})engine_\w+(?=\()/gm))].sort();
  const exported = WebAssembly.Module.exports(compiled).map((entry) => entry.name);
  expect(exported.filter((name) => name.startsWith('engine_')).sort()).toEqual(named);
  expect(exported).toContain('memory');
  expect(exported).toContain('_initialize');
});

test('the module asks for files, decoders, chance and a clock alone', () => {
  const asked = WebAssembly.Module.imports(compiled).map((entry) => `${entry.module}.${entry.name}`);
  const known = /^(host\.(read|unfold)|env\.(emscripten_notify_memory_growth|getentropy)|wasi_snapshot_preview1\.(clock_time_get|proc_exit|environ_\w+|fd_\w+))$/;
  expect(asked.filter((name) => !known.test(name))).toEqual([]);
});
