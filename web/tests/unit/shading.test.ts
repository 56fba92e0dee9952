import { describe, expect, test } from 'vitest';
import { type Counts, type Scene, VERDICT } from '../../engine/types';
import { type Doc, read } from '../../src/edit/model';
import { reachOf } from '../../src/edit/reach';
import { coloured, rampEnds, type Shading } from '../../src/scene/colours';
import { crossing } from './example';
import { randomOf } from './random';

const hex = (colour: number): string =>
  [0, 8, 16].map((shift) => ((colour >>> shift) & 255).toString(16).padStart(2, '0')).join('');

function sceneOf(points: readonly (readonly number[])[], more: Partial<Scene> = {}): Scene {
  return {
    id: 1,
    points: points.length,
    noReturns: 0,
    atOrigin: points.filter((point) => point.every((value) => value === 0)).length,
    dropped: 0,
    droppedAtOrigin: 0,
    droppedTooNear: 0,
    droppedTooFar: 0,
    positions: Float32Array.from(points.flat()),
    origin: [0, 0, 0],
    extents: null,
    ground: 0,
    columns: [],
    intensities: null,
    ...more,
  };
}

const counts = (verdicts: readonly number[]): Counts => ({ verdicts: Uint8Array.from(verdicts) }) as Counts;

describe('what no zone reaches', () => {
  const withHeights = (...heights: readonly (readonly [number, number])[]): Doc =>
    read(
      JSON.stringify({
        EvaluationField: heights.map(([zMin, zMax], index) => ({ name: 'F', index, Zone: { name: 'Z', zMin, zMax } })),
      }),
    );

  test('is outside the heights of all zones, which are merged where they meet', () => {
    expect(reachOf(read(crossing))).toEqual([{ low: 0.2, high: 4 }]);
    expect(reachOf(withHeights([3, 4], [0, 1], [1, 2], [0.2, 0.5]))).toEqual([
      { low: 0, high: 2 },
      { low: 3, high: 4 },
    ]);
    expect(reachOf(withHeights([2, 1]))).toBeNull();
    expect(reachOf(read('{}'))).toBeNull();
  });
});

const pointColours = (scene: Scene, found: Counts | null, shading: Shading): Uint32Array =>
  coloured(scene, found, shading, null).colours;

describe('colours of points', () => {
  const shading = { colouring: 'verdict', isDark: false, reach: [{ low: 0.5, high: 2 }] } as const;

  test('what counts is lit wherever it is; what is out of reach, excluded or at the origin is pale', () => {
    const scene = sceneOf([
      [1, 1, 9],
      [1, 1, 9],
      [1, 1, 9],
      [1, 1, 1],
      [1, 1, 1],
      [0, 0, 0],
      [0, 0, 0],
    ]);
    const verdicts = [
      VERDICT.counted,
      VERDICT.taken,
      VERDICT.outside,
      VERDICT.outside,
      VERDICT.excluded,
      VERDICT.outside,
      VERDICT.counted,
    ];
    expect(Array.from(pointColours(scene, counts(verdicts), shading), hex)).toEqual([
      'b8500c',
      '7d4a8f',
      'd5dbe1',
      '3e5870',
      'd5dbe1',
      'd5dbe1',
      'b8500c',
    ]);
    const all = { ...shading, reach: null };
    expect(hex(pointColours(scene, counts(verdicts), all)[2]!)).toBe('3e5870');
    expect(hex(pointColours(scene, counts(verdicts), { ...all, isDark: true })[2]!)).toBe('a9bccf');
  });

  test('heights and the origin are those of the frame, not of what is subtracted from it', () => {
    const scene = sceneOf(
      [
        [0, 0, 0],
        [-5000, -6000, -100],
      ],
      { origin: [5000, 6000, 100], atOrigin: 1 },
    );
    const at = (reach: readonly { low: number; high: number }[]): string[] =>
      Array.from(pointColours(scene, null, { ...shading, reach }), hex);
    expect(at([{ low: 99, high: 101 }])).toEqual(['3e5870', 'd5dbe1']);
    expect(at([{ low: -1, high: 1 }])).toEqual(['d5dbe1', 'd5dbe1']);
  });

  test('heights go from half a metre below the ground to four and a half above', () => {
    const scene = sceneOf(
      [-3, -0.5, 2, 4.5, 9].map((z) => [1, 1, z + 7]),
      { ground: 7 },
    );
    expect(rampEnds(scene, 'height')).toEqual({ low: -0.5, high: 4.5 });
    const colours = Array.from(pointColours(scene, null, { ...shading, colouring: 'height', reach: null }), hex);
    expect([colours[0], colours[1], colours[3], colours[4]]).toEqual(['30437f', '30437f', 'e2d94f', 'e2d94f']);
    expect(colours[2]).not.toBe(colours[1]);
  });

  test('intensities go from the second to the last but second of a hundred; what is not finite has none', () => {
    const values = Float32Array.from({ length: 101 }, (_, i) => (i === 100 ? 1e9 : i));
    values[50] = NaN;
    const scene = sceneOf(
      Array.from(values, () => [1, 1, 1]),
      { intensities: values },
    );
    expect(rampEnds(scene, 'intensity')).toEqual({ low: 2, high: 98 });
    const colours = Array.from(pointColours(scene, null, { ...shading, colouring: 'intensity' }), hex);
    expect([colours[0], colours[2], colours[98], colours[100], colours[50]]).toEqual([
      '30437f',
      '30437f',
      'e2d94f',
      'e2d94f',
      '3e5870',
    ]);
  });

  test('a frame without intensities has the colours of verdicts', () => {
    const scene = sceneOf([[1, 1, 1]]);
    expect(rampEnds(scene, 'intensity')).toBeNull();
    expect(rampEnds(sceneOf([[1, 1, 1]], { intensities: Float32Array.of(NaN) }), 'intensity')).toBeNull();
    expect(hex(pointColours(scene, null, { ...shading, colouring: 'intensity' })[0]!)).toBe('3e5870');
    const flat = sceneOf([[1, 1, 1]], { intensities: Float32Array.of(7) });
    expect(hex(pointColours(flat, null, { ...shading, colouring: 'intensity' })[0]!)).toBe('30437f');
  });

  test('both ends of each interval of heights are reached', () => {
    const scene = sceneOf([-0.5, 0, 2, 2.5, 3, 4, 4.5].map((z) => [1, 1, z]));
    const reach = [
      { low: 0, high: 2 },
      { low: 3, high: 4 },
    ];
    const pale = Array.from(pointColours(scene, null, { ...shading, reach }), (one) => hex(one) === 'd5dbe1');
    expect(pale).toEqual([true, false, false, true, false, false, true]);
  });

  test('after an edit only what differs is coloured again, and equals what is coloured anew; seed 11', () => {
    const random = randomOf(11);
    const points = Array.from({ length: 500 }, () => [random(), random(), 4 * random()]);
    const scene = sceneOf(points, { intensities: Float32Array.from(points, () => random()) });
    const verdicts = (): Counts => counts(points.map(() => Math.floor(4 * random())));
    let last = coloured(scene, null, shading, null);
    for (let i = 0; i < 100; ++i) {
      const now = random() < 0.1 ? null : verdicts();
      const colouring = (['verdict', 'height', 'intensity'] as const)[Math.floor(random() * 3)]!;
      const how = random() < 0.3 ? { ...shading, colouring, isDark: random() < 0.5 } : last.shading;
      const before = last.colours.slice();
      const next = coloured(scene, now, how, last);
      expect(next.colours).toEqual(coloured(scene, now, how, null).colours);
      expect(last.colours).toEqual(before);
      last = next;
    }
    expect(coloured(scene, { verdicts: last.verdicts } as Counts, { ...last.shading }, last)).toBe(last);
  });
});
