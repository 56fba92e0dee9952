// Recordings that are compressed as a whole, and documents with zones that are bound to sensors.

import { readFileSync } from 'node:fs';
import { expect, test } from 'vitest';

import { unfoldWhole } from '../decoders/whole';
import { fileOf, loadCore, ROOT, runAll } from './load';

const crossing = readFileSync(`${ROOT}examples/crossing/crossing.json`, 'utf8');
const folded = fileOf(`${ROOT}tests/data/recordings/whole.mcap.zst`, 'whole.mcap.zst');
const readFrom = (bytes: Uint8Array, step: number) => (offset: number, to: Uint8Array) => {
  const part = bytes.subarray(offset, offset + Math.min(step, to.length));
  to.set(part);
  return part.length;
};
const unfolded = unfoldWhole('whole', readFrom(folded.bytes, 2 ** 20));

test('a recording that is compressed as a whole gives what its content gives', async () => {
  const core = await loadCore();
  const answers = [folded, { name: folded.name, bytes: unfolded }].map((file) => {
    const { id, ...recording } = core.openRecording({ clouds: [file] });
    const { id: _session, ...session } = runAll(core, id, crossing);
    return { ...recording, size: 0, bytes: 0, session };
  });
  expect(answers[0]!.session.moments).toBeGreaterThan(1);
  expect(answers[0]!.session.points[0]).toBeGreaterThan(0);
  expect(answers[0]).toEqual(answers[1]);
});

test('its content is the same whatever the steps in which it is read', () => {
  expect(String.fromCharCode(...unfolded.subarray(1, 5))).toBe('MCAP');
  for (const step of [1, 7, 100]) {
    expect(Buffer.compare(unfoldWhole('whole', readFrom(folded.bytes, step)), unfolded)).toBe(0);
  }
});

test('what was compressed in two goes is one content, in order', () => {
  const magic = folded.bytes.subarray(0, 4);
  const second = [...magic, 0x20, 3, 0x19, 0, 0, ...Buffer.from('ABC')]; // three bytes in one block, not compressed
  const inOne = new Uint8Array([...folded.bytes, ...second]);
  const expected = Buffer.concat([unfolded, Buffer.from('ABC')]);
  expect(Buffer.compare(unfoldWhole('both', readFrom(inOne, 100)), expected)).toBe(0);
});

test('what is cut off, damaged or too large is told, and the engine goes on', async () => {
  const core = await loadCore();
  const open = (bytes: Uint8Array) => core.openRecording({ clouds: [{ name: 'a.zst', bytes }] });
  const reserved = Uint8Array.of(0x28, 0xb5, 0x2f, 0xfd, 0x20, 5, 7, 0, 0, 1, 2, 3); // a kind of block that there is not
  expect(() => open(reserved)).toThrow('a.zst: the compressed bytes are damaged');
  for (const size of [4, 5, 20]) {
    expect(() => open(folded.bytes.subarray(0, size))).toThrow('a.zst: the compressed bytes end before');
  }
  // Of one block of a recording nothing comes out before its end; of two the first does.
  const twice = new Uint8Array([...folded.bytes, ...folded.bytes.subarray(0, 30)]);
  expect(Buffer.compare(unfoldWhole('c.zst', readFrom(twice, 100)), unfolded)).toBe(0);
  expect(() => unfoldWhole('b.zst', readFrom(folded.bytes, 100), 100)).toThrow('b.zst: holds more than');
  expect(runAll(core, open(folded.bytes).id, crossing).moments).toBeGreaterThan(1);
});

test('zones that are bound to sensors are checked with the document, and the others count as without them', async () => {
  const core = await loadCore();
  const bound = JSON.parse(readFileSync(`${ROOT}tests/cases/sensors_bound/site.json`, 'utf8')) as Record<string, unknown>;
  const { Zone3d: zones, ...rest } = bound;
  expect(zones).toHaveLength(4);
  const random = Float32Array.from({ length: 3000 }, (_, i) => ((i * 7919) % 1000) / 50 - 10);
  const scene = core.openPoints(random, random.slice().reverse(), random.map((value) => Math.abs(value) / 5));
  const counted = (document: object) => {
    const { milliseconds: _ms, tiles: _tiles, ...counts } = core.count(scene.id, JSON.stringify(document)).counts!;
    return counts;
  };
  expect(counted(bound)).toEqual(counted(rest));
  expect(counted(bound).inside.some((count) => count > 0)).toBe(true);
  const [zone] = zones as Record<string, unknown>[];
  const wrong = { ...bound, Zone3d: [{ ...zone, id: 'none' }] };
  expect(core.check(JSON.stringify(bound)).findings).toEqual([]);
  const { findings, site } = core.check(JSON.stringify(wrong));
  expect(site).toBeNull();
  expect(findings[0]!.path).toBe('Zone3d[0]/id');
  const recording = core.openRecording({ clouds: [{ name: 'a.xyz', bytes: new TextEncoder().encode('1 1 1\n2 2 1\n') }] });
  expect(runAll(core, recording.id, JSON.stringify(bound)).moments).toBe(1);
});
