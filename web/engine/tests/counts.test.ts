// Counts of a scene: after any edit the same as of a scene that never knew another document.

import { readFileSync } from 'node:fs';
import { beforeAll, expect, test } from 'vitest';

import type { EngineCore } from '../core';
import { NUM_SLOTS, slotOf, VERDICT, verdictOf, type Counts } from '../types';
import { loadCore, ROOT } from './load';
import { chance, type Chance } from './chance';

interface Shape {
  readonly shape: string;
  readonly [key: string]: unknown;
}

/** A shape of any kind, somewhere near. */
function shapeOf(random: Chance): Shape {
  const at = () => Math.round(400 * (random() - 0.5)) / 4;
  switch (Math.floor(3 * random())) {
    case 0: {
      const [x, y, r] = [at(), at(), 5 + 30 * random()];
      const corners = 3 + Math.floor(10 * random());
      const Point = Array.from({ length: corners }, (_, i) => {
        const angle = (2 * Math.PI * i) / corners;
        return { x: x + r * Math.cos(angle), y: y + r * Math.sin(angle) };
      });
      return { shape: 'polygon', Polygon: { Point } };
    }
    case 1:
      return {
        shape: 'rectangle',
        Rectangle: { rotation: random() < 0.5 ? 0 : 6 * random(), Point: [{ x: at(), y: at() }, { x: at(), y: at() }] },
      };
    default:
      return { shape: 'sector', Sector: { minAngle: 6 * random() - 3, maxAngle: 6 * random() - 3, radius: 5 + 60 * random() } };
  }
}

const volumeOf = (random: Chance, name: string) => ({
  name, zMin: Math.round(4 * random()) / 2 - 1, zMax: 1 + Math.round(4 * random()), ...shapeOf(random),
});

function documentOf(random: Chance): Record<string, any> {
  return {
    ZoneDetector: {
      sensitivity: 10,
      EvaluationField: [0, 3].map((index) => ({
        index, name: `F${index}`,
        Zone: [0, 2].map((slot) => ({ index: slot, ...volumeOf(random, `Z${slot}`) })),
      })),
      ExclusionZone: Array.from({ length: Math.floor(3 * random()) }, (_, i) => volumeOf(random, `E${i}`)),
    },
  };
}

/** One change of the kind that a hand makes. */
function edit(document: Record<string, any>, random: Chance): void {
  const { ZoneDetector: detector } = document;
  const field = detector.EvaluationField[Math.floor(2 * random())];
  const slot = Math.floor(2 * random());
  switch (Math.floor(5 * random())) {
    case 0:
      field.Zone[slot] = { index: field.Zone[slot].index, ...volumeOf(random, 'New') };
      break;
    case 1:
      field.Zone[slot].zMax += 0.25;
      break;
    case 2:
      detector.ExclusionZone.push(volumeOf(random, 'More'));
      break;
    case 3:
      detector.ExclusionZone.splice(0, 1);
      break;
    default:
      field.Zone[slot].name = 'Other';
  }
}

const textOf = (document: object) => JSON.stringify(document);

function points(random: Chance, size: number, holes: boolean): [Float32Array, Float32Array, Float32Array] {
  const axis = (scale: number) =>
    Float32Array.from({ length: size }, (_, i) => {
      if (holes && i % 97 === 3) {
        return [NaN, Infinity, -Infinity][i % 3]!;
      }
      // On a raster, so that many lie on borders exactly.
      return Math.round(8 * scale * (random() - 0.5) * random()) / 8;
    });
  return [axis(200), axis(200), axis(6)];
}

let core: EngineCore;
beforeAll(async () => {
  core = await loadCore();
});

const plain = ({ tiles: _tiles, milliseconds: _ms, ...counts }: Counts) => counts;

test('after any edit the counts are those of a scene that knew no other document', () => {
  const random = chance(16);
  for (let round = 0; round < 3; ++round) {
    const cloud = points(random, 8000, round % 2 === 1);
    const edited = core.openPoints(...cloud);
    const document = documentOf(random);
    let fewer = 0;
    for (let step = 0; step < 30; ++step) {
      const text = textOf(document);
      const fresh = core.openPoints(...cloud);
      const found = core.count(edited.id, text).counts;
      const wanted = core.count(fresh.id, text).counts;
      core.closeScene(fresh.id);
      expect(found === null).toBe(wanted === null);
      if (found && wanted) {
        const { verdicts, ...numbers } = plain(found);
        const { verdicts: wantedVerdicts, ...wantedNumbers } = plain(wanted);
        expect(numbers).toEqual(wantedNumbers);
        expect(Buffer.compare(verdicts!, wantedVerdicts!)).toBe(0);
        expect(wanted.tiles[0]).toBe(wanted.tiles[1]);
        fewer += found.tiles[0] < found.tiles[1] ? 1 : 0;
      }
      edit(document, random);
    }
    expect(fewer).toBeGreaterThan(12);
    core.closeScene(edited.id);
  }
});

// Each way of editing, one after the other, on one scene, so that a fault of one edit is seen in the next.
const HANDS: readonly ((detector: any, random: Chance) => void)[] = [
  ({ EvaluationField: [field] }, random) => (field.Zone[0].zMax = Math.round(16 * random()) / 4),
  ({ EvaluationField: [field] }, random) => (field.Zone[0].Polygon.Point[1].x += Math.round(8 * (random() - 0.5)) / 8),
  ({ EvaluationField: [field] }, random) => {
    const [dx, dy] = [Math.round(80 * (random() - 0.5)) / 8, Math.round(80 * (random() - 0.5)) / 8];
    for (const point of field.Zone[0].Polygon.Point) [point.x, point.y] = [point.x + dx, point.y + dy];
  },
  ({ EvaluationField: [, field] }, random) => (field.Zone[1] = { index: 2, ...volumeOf(random, 'Other') }),
  ({ EvaluationField: [, field] }, random) => {
    if (field.Zone.length === 2) field.Zone.push({ index: 1, ...volumeOf(random, 'Third') });
    else field.Zone.pop();
  },
  // Names that come twice are doubtful, and count all the same.
  ({ ExclusionZone: zones }, random) => zones.push(volumeOf(random, random() < 0.5 ? 'Twice' : 'Once')),
  ({ ExclusionZone: zones }, random) => zones.splice(Math.floor(zones.length * random()), 1),
  (detector, random) => (detector.sensitivity = 1 + Math.floor(10 * random())),
  (detector) => detector.ExclusionZone.reverse(),
  ({ EvaluationField: [field] }, random) => (field.Zone[0].name = random() < 0.1 ? '' : 'Named'), // '' is an error
];

test('after each of two hundred edits counts and findings are those of an engine that knew no other document', async () => {
  const random = chance(200);
  const cloud = points(random, 6000, true);
  const edited = core.openPoints(...cloud);
  const ring = [[0, 0], [20, 0], [20, 20], [0, 20]].map(([x, y]) => ({ x, y }));
  const document = documentOf(random);
  document.ZoneDetector.EvaluationField[0].Zone[0] = { index: 0, name: 'Drawn', zMin: 0, zMax: 2, shape: 'polygon', Polygon: { Point: ring } };
  let fewer = 0;
  for (let step = 0; step < 200; ++step) {
    const hand = HANDS[Math.floor(HANDS.length * random())]!;
    hand(document.ZoneDetector, random);
    const text = textOf(document);
    const found = core.count(edited.id, text);
    const check = core.check(text);
    const fresh = await loadCore();
    const wantedCheck = fresh.check(text);
    const wanted = fresh.count(fresh.openPoints(...cloud).id, text);
    expect({ step, check, counts: found.counts && plain(found.counts) })
      .toEqual({ step, check: wantedCheck, counts: wanted.counts && plain(wanted.counts) });
    expect(found.counts === null).toBe(check.site === null);
    fewer += found.counts && found.counts.tiles[0] < found.counts.tiles[1] ? 1 : 0;
  }
  expect(fewer).toBeGreaterThan(100);
});

test('the verdicts add up to the counts', () => {
  const random = chance(5);
  const scene = core.openPoints(...points(random, 30000, true));
  const text = textOf(documentOf(random));
  const { counts } = core.count(scene.id, text);
  expect(core.check(text).findings.filter((finding) => finding.severity === 'error')).toEqual([]);
  const { verdicts, inside, excluded, noReturns } = counts!;
  expect(verdicts!.length).toBe(scene.positions.length / 3);
  expect(scene.points).toBe(verdicts!.length + noReturns);
  const by = [0, 0, 0, 0];
  const lowest = new Uint32Array(NUM_SLOTS);
  let areZoned = true;
  for (const byte of verdicts!) {
    by[verdictOf(byte)]!++;
    if (verdictOf(byte) === VERDICT.counted) {
      lowest[slotOf(byte)]!++;
    }
    areZoned &&= slotOf(byte) >= 0 === (verdictOf(byte) === VERDICT.counted || verdictOf(byte) === VERDICT.taken);
  }
  expect(areZoned).toBe(true);
  expect(by[VERDICT.taken]! + by[VERDICT.excluded]!).toBe(excluded);
  inside.forEach((count, slot) => expect(lowest[slot]!).toBeLessThanOrEqual(count));
  expect(lowest[0]).toBe(inside[0]);
  expect(by.reduce((a, b) => a + b)).toBe(verdicts!.length);
  expect(by.every((count) => count > 0)).toBe(true);
});

test('a name that changes counts nothing again', () => {
  const random = chance(9);
  const scene = core.openPoints(...points(random, 5000, false));
  const document = documentOf(random);
  core.count(scene.id, textOf(document));
  document.ZoneDetector.EvaluationField[0].name = 'Elsewhere';
  expect(core.count(scene.id, textOf(document)).counts!.tiles[0]).toBe(0);
});

test('a document with errors gives findings and no counts, and the next one is counted right', () => {
  const random = chance(3);
  const scene = core.openPoints(...points(random, 5000, false));
  const text = textOf(documentOf(random));
  const before = core.count(scene.id, text).counts!;
  const broken = core.count(scene.id, text.slice(0, -1));
  expect(broken.counts).toBeNull();
  expect(core.check(text.slice(0, -1)).findings[0]!.severity).toBe('error');
  expect(plain(core.count(scene.id, text).counts!)).toEqual(plain(before));
});

test('coordinates far from zero are given from an origin near them, and counted as they are', () => {
  const x = Float64Array.of(500000.25, 500001.5);
  const text = `${x[0]} 5400000.5 1\n${x[1]} 5400000.5 1\n`;
  const scene = core.openFrame({ name: 'a.xyz', bytes: new TextEncoder().encode(text) });
  const document = {
    ZoneDetector: {
      sensitivity: 10,
      EvaluationField: [{ index: 0, name: 'F', Zone: [{
        index: 0, name: 'Z', zMin: 0, zMax: 2, shape: 'polygon',
        Polygon: { Point: [[500000, 5400000], [500001, 5400000], [500001, 5400001], [500000, 5400001]].map(([px, py]) => ({ x: px, y: py })) },
      }] }],
    },
  };
  expect(core.count(scene.id, textOf(document)).counts!.inside[0]).toBe(1);
  const [ox] = scene.origin;
  expect([...scene.positions].filter((_, i) => i % 3 === 0).map((value) => value + ox).sort()).toEqual([...x]);
});

test('a scene without a finite point is a scene', () => {
  const scene = core.openPoints(Float32Array.of(NaN), Float32Array.of(0), Float32Array.of(0));
  expect({ points: scene.points, noReturns: scene.noReturns, extents: scene.extents, ground: scene.ground }).toEqual({
    points: 1, noReturns: 1, extents: null, ground: null,
  });
  const text = readFileSync(`${ROOT}examples/crossing/crossing.json`, 'utf8');
  expect(core.count(scene.id, text).counts!.noReturns).toBe(1);
  expect(core.heights(scene.id, 4)).toEqual({ least: 0, step: 0, counts: new Uint32Array(4) });
});

test('heights are counted from the lowest to the highest', () => {
  const z = Float32Array.of(0, 0, 1, 2, 4);
  const scene = core.openPoints(new Float32Array(5), new Float32Array(5), z);
  expect(core.heights(scene.id, 4)).toEqual({ least: 0, step: 1, counts: Uint32Array.of(2, 1, 1, 1) });
  expect(() => core.heights(scene.id, 0)).toThrow('the number of bins must be 1 to 10000');
});
