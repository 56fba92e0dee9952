// Whatever is dropped on the page: an answer or a refusal in words, and the engine goes on.

import { existsSync, readdirSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { beforeAll, expect, test } from 'vitest';

import { EngineError } from '../module';
import type { EngineCore } from '../core';
import { loadCore, ROOT, runAll } from './load';

const crossing = readFileSync(`${ROOT}examples/crossing/crossing.json`, 'utf8');
const folders = ['fuzz/seeds', 'fuzz/found'].map((name) => ROOT + name).filter(existsSync);
const seeds = folders.flatMap((folder) =>
  readdirSync(folder, { recursive: true, withFileTypes: true }).filter((entry) => entry.isFile())
    .map((entry) => join(entry.parentPath, entry.name)));
// A pcd file is read as what it says it is, and as everything else.
const endings = ['pcd', 'ply', 'las', 'bin', 'xyz', 'csv'];

let core: EngineCore;
beforeAll(async () => {
  core = await loadCore();
});

/** @returns whether it was refused */
function tried(work: () => void): boolean {
  try {
    work();
    return false;
  } catch (error) {
    expect(error).toBeInstanceOf(EngineError);
    expect((error as EngineError).message).not.toBe('');
    return true;
  }
}

test('every seed of the fuzzers, as a document, as frames, as a recording and as tracks', () => {
  expect(seeds.length).toBeGreaterThan(100);
  const scene = core.openPoints(Float32Array.of(1, 2), Float32Array.of(1, 2), Float32Array.of(1, 2));
  const before = core.count(scene.id, crossing).counts!.inside;
  let refused = 0;
  for (const path of seeds) {
    const bytes = new Uint8Array(readFileSync(path));
    expect(core.check(bytes).findings).toBeInstanceOf(Array);
    for (const ending of endings) {
      refused += tried(() => core.closeScene(core.openFrame({ name: `a.${ending}`, bytes }).id)) ? 1 : 0;
    }
    for (const tracksFormat of ['csv', 'kitti'] as const) {
      refused += tried(() => {
        const recording = core.openRecording({ tracks: { name: 'tracks', bytes } }, { tracksFormat });
        try {
          core.closeSession(runAll(core, recording.id, crossing).id);
        } finally {
          core.closeRecording(recording.id);
        }
      }) ? 1 : 0;
    }
    tried(() => core.closeRecording(core.openRecording({ clouds: [{ name: 'a.mcap', bytes }] }).id));
  }
  expect(refused).toBeGreaterThan(seeds.length);
  expect(core.count(scene.id, crossing).counts!.inside).toEqual(before);
});

test('a file that can no longer be read is refused by its name', () => {
  const gone = { name: 'gone.pcd', size: 1000, read: () => { throw new Error('removed'); } };
  expect(() => core.openFrame(gone)).toThrow('gone.pcd: cannot be read: the browser gives no bytes');
  const shorter = { name: 'short.xyz', size: 1000, read: (offset: number, to: Uint8Array) => {
    const text = new TextEncoder().encode('1 2 3\n').subarray(offset);
    to.set(text);
    return text.length;
  } };
  expect(core.openFrame(shorter).points).toBe(1);
});
