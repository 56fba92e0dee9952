import { describe, expect, test } from 'vitest';
import type { Session, SessionEvent } from '../../engine/types';
import { read } from '../../src/edit/model';
import { compared, intervals } from '../../src/panels/differences';
import { numberIn } from '../../src/panels/NumberField';
import { placeIn } from '../../src/panels/Tools';
import {
  decimalsOf,
  eyeOf,
  fitted,
  niceStep,
  orbitMatrix,
  planMatrix,
  project,
  ticksOf,
  toPixel,
  toPlane,
  zoomed,
} from '../../src/scene/camera';
import { labelPlace } from '../../src/edit/geometry';
import { fieldColour } from '../../src/scene/colours';
import { handlesOf } from '../../src/scene/handles';
import { placed } from '../../src/scene/labels';
import { itemsAt, itemsIn, nextBelow } from '../../src/scene/pick';
import { snapped, type Snapping } from '../../src/scene/snap';
import { crossing } from './example';

const doc = read(crossing);
const size = { width: 800, height: 600 };
const never = (): boolean => false;

describe('the camera', () => {
  const camera = { x: 3, y: -2, scale: 25 };

  test('x runs to the right, y up, and back again', () => {
    expect(toPixel(camera, size, { x: 4, y: -1 })).toEqual({ x: 425, y: 275 });
    expect(toPlane(camera, size, { x: 425, y: 275 })).toEqual({ x: 4, y: -1 });
  });

  test('what is far away stands where a picture still takes it', () => {
    expect(toPixel(camera, size, { x: 1e300, y: -1e300 })).toEqual({ x: 1e7, y: 1e7 });
  });

  test('the place under the pointer stays when the wheel turns', () => {
    const pixel = { x: 100, y: 500 };
    const before = toPlane(camera, size, pixel);
    const after = toPlane(zoomed(camera, size, pixel, 1.7), size, pixel);
    expect(after.x).toBeCloseTo(before.x, 12);
    expect(after.y).toBeCloseTo(before.y, 12);
  });

  test('ticks are the multiples of a step, and few, whatever numbers a file holds', () => {
    expect(ticksOf(-1, 1.1, 0.5)).toEqual([-2, -1, 0, 1, 2]);
    expect(ticksOf(0.1, 0.2, 1)).toEqual([]);
    expect(ticksOf(2, 1, 0.1)).toEqual([]);
    for (const [low, high, step] of [
      [1e300, 1e300, 1],
      [1e17, 1e17 + 16, 2],
      [-Infinity, Infinity, 1],
      [NaN, 1, 1],
      [0, 1, 0],
      [0, 1, NaN],
      [0, 1001, 1],
    ] as const)
      expect(ticksOf(low, high, step)).toEqual([]);
    expect(ticksOf(0, 999, 1)).toHaveLength(1000);
  });

  test('shapes at the ends of the range of numbers leave a camera that can be moved', () => {
    const { x, y, scale } = fitted({ x: 1e308, y: -1.7e308 }, { x: 1.7e308, y: 1.7e308 }, size);
    expect([x, y, scale].every(Number.isFinite)).toBe(true);
    expect(scale).toBe(1e-3);
  });

  test('everything is in view after fitting', () => {
    const fit = fitted({ x: -10, y: 0 }, { x: 30, y: 10 }, size);
    for (const p of [
      { x: -10, y: 0 },
      { x: 30, y: 10 },
    ]) {
      const q = toPixel(fit, size, p);
      expect(q.x > 0 && q.x < 800 && q.y > 0 && q.y < 600).toBe(true);
    }
  });

  test('points and shapes meet: the matrix and the plan say the same pixel', () => {
    const origin = [1000, 2000, 5];
    const m = planMatrix(camera, size, origin);
    const p = project(m, size, 4 - 1000, -1 - 2000, 0)!;
    expect(p.x).toBeCloseTo(425, 6);
    expect(p.y).toBeCloseTo(275, 6);
  });

  test('of two points above each other the higher one is nearer', () => {
    const m = planMatrix(camera, size, [0, 0, 0]);
    const depth = (z: number): number => m[10]! * z + m[14]!;
    expect(depth(2)).toBeLessThan(depth(1));
  });

  test('the view in three dimensions looks at its middle, with z up', () => {
    const orbit = { x: 1, y: 2, z: 3, yaw: 0.7, pitch: 0.5, distance: 10 };
    const m = orbitMatrix(orbit, size, [0, 0, 0]);
    const middle = project(m, size, 1, 2, 3)!;
    expect(middle.x).toBeCloseTo(400, 6);
    expect(middle.y).toBeCloseTo(300, 6);
    expect(project(m, size, 1, 2, 4)!.y).toBeLessThan(300);
    const { place, ahead, right } = eyeOf(orbit);
    expect(project(m, size, place[0] - ahead[0], place[1] - ahead[1], place[2] - ahead[2])).toBeNull();
    expect(project(m, size, -1.7e308, -1.7e308, 0)).toBeNull(); // a document may hold any number
    expect(project(m, size, 1 + right[0], 2 + right[1], 3)!.x).toBeGreaterThan(400);
  });

  test('steps of the grid are 1, 2 or 5', () => {
    expect([0.03, 0.05, 0.6, 1, 3, 70].map(niceStep)).toEqual([0.05, 0.05, 1, 1, 5, 100]);
    expect([0.05, 0.5, 1, 20].map(decimalsOf)).toEqual([2, 1, 0, 0]);
  });
});

describe('snapping', () => {
  const how: Snapping = { scale: 20, grid: 0.5, toShapes: true, without: never, about: null };

  test('a corner before an edge, an edge before the grid', () => {
    expect(snapped(doc, { x: 8.7, y: 4.1 }, how)).toEqual({ p: { x: 8.6, y: 4 }, to: 'vertex' });
    expect(snapped(doc, { x: 10.2, y: 11.1 }, how)).toEqual({ p: { x: 10.2, y: 11 }, to: 'edge' });
    expect(snapped(doc, { x: 20.2, y: 14.3 }, how)).toEqual({ p: { x: 20, y: 14.5 }, to: 'grid' });
    expect(snapped(doc, { x: 20.2004, y: 14.3 }, { ...how, grid: null })).toEqual({
      p: { x: 20.2, y: 14.3 },
      to: null,
    });
  });

  test('what is moved itself is left out', () => {
    const alone = { ...how, without: (id: string) => id.startsWith('ZoneDetector/EvaluationField[0]') };
    expect(snapped(doc, { x: 10.2, y: 11.1 }, alone).to).toBe('grid');
  });

  test('the direction holds to steps of 15 degrees', () => {
    const p = snapped(doc, { x: 2, y: 0.9 }, { ...how, about: { x: 0, y: 0 } }).p;
    expect((Math.atan2(p.y, p.x) * 180) / Math.PI).toBeCloseTo(30, 1);
  });
});

describe('picking', () => {
  const names = (ids: readonly string[]): (string | undefined)[] => ids.map((id) => doc.byId.get(id)?.name);

  test('lines before areas, small before large, and a click again goes down', () => {
    expect(names(itemsAt(doc, { x: 11, y: 7.55 }, 0.3, never))).toEqual(['Crossing', 'Walkway']);
    const under = itemsAt(doc, { x: 0.3, y: -1.3 }, 0.1, never);
    expect(names(under)).toEqual(['Robot arm', 'Stop', 'Slow']);
    expect(nextBelow(under, under[0])).toBe(under[1]);
    expect(nextBelow(under, under[2])).toBe(under[0]);
    expect(nextBelow([], 'x')).toBeUndefined();
    expect(names(itemsAt(doc, { x: 0.3, y: -1.3 }, 0.1, (id) => id === under[0]))).toEqual(['Stop', 'Slow']);
  });

  test('a box takes what is wholly in it', () => {
    expect(names(itemsIn(doc, { x: 31, y: 11 }, { x: 14, y: 7 }, never))).toEqual(['Lane west', 'Lane west entry']);
  });

  test('a polygon of 16 corners has no handles that add one', () => {
    const points = Array.from({ length: 16 }, (_, i) => `{"x":${Math.cos(i)},"y":${i}}`).join();
    const full = read(
      `{"ZoneDetector":{"ExclusionZone":[{"name":"a","shape":"polygon","Polygon":{"Point":[${points}]}}]}}`,
    );
    expect(handlesOf(full.exclusions[0]!, 1).filter((one) => one.kind === 'edge')).toEqual([]);
    expect(handlesOf(doc.exclusions[2]!, 1).filter((one) => one.kind === 'edge')).toHaveLength(5);
  });
});

describe('what is typed', () => {
  test('numbers with a point, and nothing that is only almost one', () => {
    expect(['4.2', ' -1 ', '−1.5', '.5', '2.', '1e3'].map(numberIn)).toEqual([4.2, -1, -1.5, 0.5, 2, 1000]);
    for (const wrong of ['', '1,5', '4abc', '0x10', 'NaN', 'Infinity', '1e999', '1 2', '--1'])
      expect(numberIn(wrong), wrong).toBeNull();
  });

  test('places, and ways from the last place', () => {
    expect(placeIn('4.2, -1.5', undefined)).toEqual({ x: 4.2, y: -1.5 });
    expect(placeIn('4 2', undefined)).toEqual({ x: 4, y: 2 });
    expect(placeIn('@2<90', { x: 1, y: 1 })).toEqual({ x: 1, y: 3 });
    for (const wrong of ['', '4', '4,', '1,2,3', '@2<', 'a, b'])
      expect(placeIn(wrong, { x: 0, y: 0 }), wrong).toBeNull();
    expect(placeIn('@2<90', undefined)).toBeNull();
  });
});

describe('before and after', () => {
  const event = (moment: number, line: string): SessionEvent => ({ moment, line, record: {} });

  test('equal events are paired off, the rest is gained or lost', () => {
    const before = [event(0, 'a'), event(1, 'b'), event(1, 'b'), event(2, 'c')];
    const after = [event(0, 'a'), event(1, 'b'), event(3, 'd')];
    expect(compared(before, after).map((one) => [one.event.line, one.change])).toEqual([
      ['a', 'same'],
      ['b', 'same'],
      ['b', 'lost'],
      ['c', 'lost'],
      ['d', 'gained'],
    ]);
    expect(compared([], [])).toEqual([]);
  });

  test('intervals of a bit', () => {
    const session = { moments: 6 } as Session;
    expect(intervals(session, Uint32Array.of(1, 3, 0, 2, 3, 1), 0)).toEqual([
      { from: 0, to: 2 },
      { from: 4, to: 6 },
    ]);
    expect(intervals(session, Uint32Array.of(0, 0, 0, 0, 0, 0), 0)).toEqual([]);
    const top = new Uint32Array(6).fill(2 ** 31);
    expect(intervals(session, top, 31)).toEqual([{ from: 0, to: 6 }]);
  });
});

test('the colours of the fields are those of the command, and wrong slots have one too', () => {
  expect([0, 1, 7, 8, -1].map(fieldColour)).toEqual(['#0072b2', '#d55e00', '#8c564b', '#0072b2', '#8c564b']);
});

test('a name stands inside of its shape, in the middle where that is inside, and at a corner of what is too large for a middle', () => {
  const at = (...corners: [number, number][]) => labelPlace(corners.map(([x, y]) => ({ x, y })));
  expect(at([0, 0], [4, 0], [4, 2], [0, 2])).toEqual({ x: 2, y: 1 });
  expect(at([0, 0], [6, 0], [6, 6], [5, 6], [5, 1], [0, 1])).toEqual({ x: 5.5, y: 3 });
  expect(at([0, 0], [2, 2], [0, 2], [2, 0])).toEqual({ x: 1, y: 1 }); // its two halves make no area together
  expect(at([3, 4])).toEqual({ x: 3, y: 4 });
  // An L of more corners than a document may have: its diagonals are not looked at.
  const many = Array.from({ length: 70 }, (_, i): [number, number] => [(6 * i) / 70, 0]);
  expect(at(...many, [6, 0], [6, 6], [5, 6], [5, 1], [0, 1]).x).toBeCloseTo(45.5 / 11, 9);
  expect(at([0, 1.7e308], [0, 0], [10, 0], [10, 1.7e308])).toEqual({ x: 0, y: 1.7e308 });
});

test('names do not cover each other; the first one has its place, the last one goes where there is room or nowhere', () => {
  const at = { x: 100, y: 100 };
  const places = placed(['a', 'b', 'c', 'd', 'e', 'f'].map((id) => ({ id, at, letters: 6, lines: 1 })));
  expect([...places]).toEqual([
    ['a', { x: 100, y: 100 }],
    ['b', { x: 100, y: 117 }],
    ['c', { x: 100, y: 83 }],
    ['d', { x: 100, y: 134 }],
    ['e', { x: 100, y: 66 }],
  ]);
  expect(
    placed([
      { id: 'a', at, letters: 6, lines: 1 },
      { id: 'b', at: { x: 150, y: 100 }, letters: 6, lines: 1 },
    ]).get('b'),
  ).toEqual({ x: 150, y: 100 });
});
