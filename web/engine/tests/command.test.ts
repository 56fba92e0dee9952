// What the command says is what the engine says: the example, every document and every kind of file of the tests. The
// command is named by ZONE_DETECTOR, or lies in the build.

import { execFileSync, spawnSync } from 'node:child_process';
import { existsSync, mkdtempSync, readdirSync, readFileSync, rmSync, statSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { afterAll, beforeAll, describe, expect, test } from 'vitest';

import type { EngineCore } from '../core';
import { slotIndex } from '../types';
import { fileOf, loadCore, ROOT, runAll } from './load';

const command = process.env.ZONE_DETECTOR ?? `${ROOT}build/release/apps/zone-detector/zone-detector`;
const maker = process.env.STUDIO_RECORDING ?? `${ROOT}build/release/examples/crossing/crossing_recording`;
const isThere = existsSync(command) && existsSync(maker);
if (!isThere) {
  console.log('NOT COMPARED with the command: it is not built');
}

const crossing = `${ROOT}examples/crossing/crossing.json`;

function say(...words: string[]): string {
  return spawnSync(command, words, { encoding: 'utf8', maxBuffer: 2 ** 28 }).stdout;
}

function filesIn(folder: string): string[] {
  return readdirSync(folder, { recursive: true, encoding: 'utf8' })
    .map((name) => join(folder, name)).filter((path) => statSync(path).isFile()).sort();
}

describe.skipIf(!isThere)('the command and the engine', () => {
  let core: EngineCore;
  let folder: string;
  let frames: string[];
  beforeAll(async () => {
    core = await loadCore();
    folder = mkdtempSync(join(tmpdir(), 'crossing-'));
    execFileSync(maker, [folder]);
    frames = filesIn(folder).filter((path) => path.endsWith('.pcd'));
  });
  afterAll(() => rmSync(folder, { recursive: true }));

  test('find the same in every document', () => {
    const documents = [crossing, ...['tests/data', 'fuzz/seeds/validate', 'fuzz/seeds/detector_round_trip']
      .flatMap((name) => filesIn(ROOT + name)).filter((path) => path.endsWith('.json'))];
    expect(documents.length).toBeGreaterThan(100);
    for (const path of documents) {
      const wanted = JSON.parse(say('validate', '--json', path)) as { ok: boolean; findings: { kind: string }[] };
      if (wanted.findings[0]?.kind === 'unreadable') {
        continue;
      }
      const { findings, site } = core.check(new Uint8Array(readFileSync(path)));
      expect({ path, ok: site !== null, findings: findings.map(({ excerpt: _excerpt, ...finding }) => finding) })
        .toEqual({ path, ok: wanted.ok, findings: wanted.findings });
    }
  });

  test('draw the same plan', () => {
    expect(core.planSvg(readFileSync(crossing, 'utf8'), { title: 'crossing.json' })).toBe(say('plot', crossing));
  });

  test('tell the same of the example, and write the same table of events', () => {
    const text = readFileSync(crossing, 'utf8');
    const tables = join(folder, 'tables');
    const tracks = join(folder, 'tracks.csv');
    const told = say('run', '--json', '--csv', tables, crossing, ...frames, '--tracks', tracks).trim().split('\n');
    const recording = core.openRecording({ clouds: frames.map((path) => fileOf(path)), tracks: fileOf(tracks) });
    const session = runAll(core, recording.id, text);
    expect(session.moments).toBe(20);
    expect([...session.events.map((event) => event.record), ...session.summary])
      .toEqual(told.map((line) => JSON.parse(line)));
    expect(core.eventTable(session.id)).toBe(readFileSync(join(tables, 'events.csv'), 'utf8'));
    const lines = say('run', crossing, ...frames, '--tracks', tracks).split('\n');
    expect(session.events.map((event) => event.line)).toEqual(lines.slice(0, session.events.length));
  });

  test('count the same in every kind of file', () => {
    const text = readFileSync(crossing, 'utf8');
    const files = [...frames, ...filesIn(`${ROOT}tests/data/recording`), ...filesIn(`${ROOT}tests/data/recordings`)]
      .filter((path) => !/\.(py|mjs|pcd\.bin)$|expected\.txt$/.test(path));
    expect(files.length).toBeGreaterThan(50);
    for (const path of files) {
      const told = say('run', '--json', '--quiet', crossing, path).trim().split('\n').filter((line) => line !== '');
      const wanted = told.map((line) => JSON.parse(line) as Record<string, any>);
      const found: Record<string, any>[] = [];
      let refused = '';
      try {
        const scene = core.openFrame(fileOf(path));
        const { counts } = core.count(scene.id, text);
        found.push({
          points: scene.points, noReturns: counts!.noReturns, excluded: counts!.excluded,
          inside: core.check(text).site!.evaluationFields.flatMap((field) =>
            field.zones.map((zone) => counts!.inside[slotIndex(field.index, zone.index)])),
        });
      } catch (error) {
        refused = (error as Error).message;
      }
      const first = wanted.slice(0, 1).map((frame) => ({
        points: frame.points, noReturns: frame.noReturns, excluded: frame.excluded,
        inside: frame.zones.map((zone: { points: number }) => zone.points),
      }));
      expect({ path, found, refused: found.length === 0 ? refused !== '' : false })
        .toEqual({ path, found: first, refused: first.length === 0 });
    }
  });

  test('refuse a broken file with the same words', () => {
    for (const path of ['pcd', 'ply', 'las', 'mcap', 'bag'].flatMap((kind) => filesIn(`${ROOT}fuzz/seeds/${kind}`))) {
      const name = `${path}`;
      const done = spawnSync(command, ['run', '--json', crossing, name], { encoding: 'utf8' });
      if (done.status !== 1) {
        continue;
      }
      const wanted = done.stderr.trim().split('\n').at(-1)!.replace(/^zone-detector: /, '');
      expect(() => core.openFrame(fileOf(name))).toThrow(wanted);
    }
  });

  test('explain the same', () => {
    const text = readFileSync(crossing, 'utf8');
    const tracks = join(folder, 'tracks.csv');
    const recording = core.openRecording({ clouds: frames.map((path) => fileOf(path)), tracks: fileOf(tracks) });
    const { stamps } = runAll(core, recording.id, text);
    const asked = (at: number, ...words: string[]) =>
      say('explain', crossing, ...words, '--at', `${Number(stamps[at]!) / 1e9}`);
    expect(core.explainZones(recording.id, text, 7).text).toBe(asked(7, ...frames));
    expect(core.explainZones(recording.id, text, null).text).toBe(say('explain', crossing, ...frames));
    const line = core.check(text).site!.counterLines[0]!.name;
    expect(core.explainLine(recording.id, text, line, 9).text).toBe(asked(9, '--tracks', tracks, '--line', line));
    expect(() => core.objectsAt(recording.id, 99))
      .toThrow(`moment 99 is not in the recording, which has ${stamps.length} moments`);
    const [track] = core.objectsAt(recording.id, 9);
    expect(core.explainTrack(recording.id, text, line, track!.id, 9).text)
      .toBe(asked(9, '--tracks', tracks, '--line', line, '--track', `${track!.id}`));
  });
});
