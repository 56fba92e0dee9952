// Points drawn by the loop: what is drawn again in other colours is what a painter draws that saw nothing before.

import { expect, test } from 'vitest';
import { rasterPainter } from '../../src/scene/raster';
import { randomOf } from './random';

function board() {
  let shown = new Uint8ClampedArray();
  const context = {
    createImageData: (width: number, height: number) => ({
      width,
      height,
      data: new Uint8ClampedArray(4 * width * height),
    }),
    putImageData: (image: { data: Uint8ClampedArray }) => (shown = image.data.slice()),
  };
  const canvas = { width: 0, height: 0, getContext: () => context };
  return {
    painter: rasterPainter(canvas as unknown as HTMLCanvasElement),
    shown: () => [...new Uint32Array(shown.buffer)],
  };
}

const random = randomOf(8);
const positions = Float32Array.from({ length: 900 }, () => Math.round(20 * (random() - 0.5)) / 10);
const coloursOf = (): Uint32Array =>
  Uint32Array.from({ length: 300 }, () => (0xff000000 | (random() * 0xffffff)) >>> 0);
const lookAt = (scale: number): Float64Array =>
  Float64Array.of(scale, 0, 0, 0, 0, scale, 0, 0, 0, 0, 0.5, 0, 0, 0, 0, 1);

test('other colours, another place, size or cloud are drawn as by a painter that saw nothing before', () => {
  const known = board();
  const sizes = [
    { width: 20, height: 16 },
    { width: 16, height: 20 },
  ];
  const clouds = [positions, positions.slice().reverse()];
  for (let step = 0; step < 60; ++step) {
    const size = sizes[Math.floor(random() * 1.2)]!;
    const args = [
      size,
      lookAt(random() < 0.7 ? 1 : 0.8),
      clouds[Math.floor(random() * 1.2)]!,
      coloursOf(),
      random() < 0.8 ? 2 : 1,
    ] as const;
    const fresh = board();
    known.painter.draw(...args);
    fresh.painter.draw(...args);
    expect(known.shown()).toEqual(fresh.shown());
    expect(known.shown().some((colour) => colour !== 0)).toBe(true);
  }
});

test('the nearer point is seen, and of two at one place the later', () => {
  const { painter, shown } = board();
  const places = Float32Array.of(0, 0, 1, 0, 0, 0, 0, 0, 0);
  painter.draw({ width: 2, height: 2 }, lookAt(1), places, Uint32Array.of(1, 2, 3), 1);
  expect(shown()).toEqual([0, 0, 0, 3]);
  painter.draw({ width: 2, height: 2 }, lookAt(1), places, Uint32Array.of(4, 5, 6), 1);
  expect(shown()).toEqual([0, 0, 0, 6]);
});
