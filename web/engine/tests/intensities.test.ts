// How strongly points were reflected: with a frame, and of moments of a recording.

import { beforeAll, expect, test } from 'vitest';

import type { EngineCore } from '../core';
import type { Scene } from '../types';
import { chance } from './chance';
import { loadCore, runAll } from './load';

let core: EngineCore;
beforeAll(async () => {
  core = await loadCore();
});

const text = (name: string, content: string) => ({ name, bytes: new TextEncoder().encode(content) });
/** x, y, z and intensity of each point, whatever their order. */
const rowsOf = ({ positions, origin, intensities }: Scene): number[][] =>
  Array.from(intensities!, (value, i) => [...origin.map((at, k) => at + positions[3 * i + k]!), value]).sort((a, b) => a[0]! - b[0]!);
const document = '{"CounterLines": {"CounterLine": [{"name": "L", "first": {"x": 0, "y": 0}, "second": {"x": 1, "y": 0}}]}}';

test('each stays with its point while points are sorted into tiles; points that are not finite have none', () => {
  const random = chance(3);
  const points = Array.from({ length: 5000 }, (_, i) => [i, Math.round(100 * random()), Math.round(5 * random()), i % 251]);
  const rows = points.flatMap((point, i) => (i % 100 === 7 ? ['nan nan nan 9', point.join(' ')] : [point.join(' ')]));
  const scene = core.openFrame(text('a.xyz', `x y z intensity\n${rows.join('\n')}\n`));
  expect([scene.points, scene.noReturns]).toEqual([5050, 50]);
  expect(rowsOf(scene)).toEqual(points);
});

test('other words for it are known; without one, with one that is not a number, or with points left out there are none', () => {
  for (const word of ['Intensity', 'reflectivity', 'remission', 'scalar_intensity']) {
    expect(core.openFrame(text('a.csv', `x,y,z,${word}\n1,2,3,4\n`)).intensities).toEqual(Float32Array.of(4));
  }
  expect(core.openFrame(text('a.xyz', '1 2 3 4\n')).intensities).toBeNull();
  expect(core.openFrame(text('a.csv', 'x,y,z,intensity\n1,2,3,\n')).intensities).toBeNull();
  const rows = text('a.csv', 'x,y,z,intensity\n0,0,0,1\n1,2,3,4\n');
  expect(core.openFrame(rows, { dropOrigin: true }).intensities).toBeNull();
  expect(core.openFrame(rows).intensities).toEqual(Float32Array.of(1, 4));
  expect(core.openPoints(Float32Array.of(1), Float32Array.of(1), Float32Array.of(1)).intensities).toBeNull();
});

test('of moments when they are asked for, onwards, backwards and the same again', () => {
  const clouds = [0, 1, 2, 3].map((i) => text(`f${i}.csv`, `x,y,z,intensity\n${i},0,0,${10 * i}\n${i + 9},0,0,${10 * i + 1}\n`));
  const recording = core.openRecording({ clouds }).id;
  const wanted = (i: number): number[][] => [[i, 0, 0, 10 * i], [i + 9, 0, 0, 10 * i + 1]];
  const at = (moment: number): number[][] => rowsOf(core.openMoment(recording, moment, { intensities: true }));
  expect(at(1)).toEqual(wanted(1)); // before a run, too
  runAll(core, recording, document);
  expect(core.openMoment(recording, 2).intensities).toBeNull();
  for (const moment of [2, 3, 3, 0, 1, 3]) expect(at(moment)).toEqual(wanted(moment));
  expect(() => at(4)).toThrow('this moment has no points');
  expect(at(0)).toEqual(wanted(0));
  core.closeRecording(recording);
});
