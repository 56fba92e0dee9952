// From metres to pixels and back.

import type { Pt } from '../edit/model';

/** The plan: which place is in the middle, and how many pixels a metre has. */
export interface PlanCamera {
  readonly x: number;
  readonly y: number;
  readonly scale: number;
}
export interface Size {
  readonly width: number;
  readonly height: number;
}
/** The view in three dimensions: around which place, from where. Angles are radians. */
export interface Orbit {
  readonly x: number;
  readonly y: number;
  readonly z: number;
  readonly yaw: number;
  readonly pitch: number;
  readonly distance: number;
}

const FARTHEST = 1e7; // pixels: a picture takes no number that is much longer

/** A pixel far outside of the view, at the end of the numbers that a picture takes. */
export function held(pixel: number): number {
  return Math.min(FARTHEST, Math.max(-FARTHEST, pixel));
}

export function toPixel(camera: PlanCamera, size: Size, p: Pt): Pt {
  return {
    x: held(size.width / 2 + (p.x - camera.x) * camera.scale),
    y: held(size.height / 2 - (p.y - camera.y) * camera.scale),
  };
}

export function toPlane(camera: PlanCamera, size: Size, pixel: Pt): Pt {
  return {
    x: camera.x + (pixel.x - size.width / 2) / camera.scale,
    y: camera.y - (pixel.y - size.height / 2) / camera.scale,
  };
}

const LEAST_SCALE = 1e-3;
const GREATEST_SCALE = 1e5;

/** Nearer or farther by a factor; the place under the pixel stays where it is. */
export function zoomed(camera: PlanCamera, size: Size, pixel: Pt, factor: number): PlanCamera {
  const fixed = toPlane(camera, size, pixel);
  const scale = Math.min(GREATEST_SCALE, Math.max(LEAST_SCALE, camera.scale * factor));
  return {
    x: fixed.x - (pixel.x - size.width / 2) / scale,
    y: fixed.y + (pixel.y - size.height / 2) / scale,
    scale,
  };
}

/** All of that in view, with a margin. */
export function fitted(low: Pt, high: Pt, size: Size): PlanCamera {
  const width = Math.max(high.x - low.x, 0.5);
  const height = Math.max(high.y - low.y, 0.5);
  const scale = 0.9 * Math.min(size.width / width, size.height / height);
  return {
    x: low.x / 2 + high.x / 2,
    y: low.y / 2 + high.y / 2,
    scale: Math.min(GREATEST_SCALE, Math.max(LEAST_SCALE, scale)),
  };
}

/** The smallest 1, 2 or 5 times a power of ten that is not below. */
export function niceStep(atLeast: number): number {
  const power = 10 ** Math.floor(Math.log10(atLeast));
  return [1, 2, 5].map((factor) => factor * power).find((step) => step >= atLeast) ?? 10 * power;
}

export function decimalsOf(step: number): number {
  return Math.max(0, -Math.floor(Math.log10(step) + 1e-9));
}

const MOST_TICKS = 1000;

/**
 * The whole multiples of a step from one value to another, as numbers of steps; none where they are too many, or where
 * a double does not tell them apart: files hold any number.
 */
export function ticksOf(low: number, high: number, step: number): number[] {
  const [first, last] = [Math.ceil(low / step), Math.floor(high / step)];
  const isTold = Number.isSafeInteger(first) && Number.isSafeInteger(last) && last - first < MOST_TICKS;
  return isTold ? Array.from({ length: Math.max(0, last - first + 1) }, (_, i) => first + i) : [];
}

/** Between lines of the grid, in metres. */
export function gridStep(camera: PlanCamera): number {
  return niceStep(70 / camera.scale);
}

/** Sixteen numbers, column by column, from places less an origin to the clip space of a graphics card. */
export type Matrix = Float64Array;

export function planMatrix(camera: PlanCamera, size: Size, origin: readonly number[]): Matrix {
  const [sx, sy] = [(2 * camera.scale) / size.width, (2 * camera.scale) / size.height];
  const m = new Float64Array(16);
  m[0] = sx;
  m[5] = sy;
  m[12] = (origin[0]! - camera.x) * sx;
  m[13] = (origin[1]! - camera.y) * sy;
  m[10] = -1e-4; // the higher one is nearer
  m[14] = -(origin[2]! * 1e-4);
  m[15] = 1;
  return m;
}

interface Eye {
  readonly place: readonly [number, number, number];
  readonly right: readonly [number, number, number];
  readonly up: readonly [number, number, number];
  readonly ahead: readonly [number, number, number];
}

export function eyeOf(orbit: Orbit): Eye {
  const [cy, sy, cp, sp] = [Math.cos(orbit.yaw), Math.sin(orbit.yaw), Math.cos(orbit.pitch), Math.sin(orbit.pitch)];
  const ahead = [-cy * cp, -sy * cp, -sp] as const;
  const right = [-sy, cy, 0] as const;
  const up = [-cy * sp, -sy * sp, cp] as const;
  const place = [
    orbit.x - ahead[0] * orbit.distance,
    orbit.y - ahead[1] * orbit.distance,
    orbit.z - ahead[2] * orbit.distance,
  ] as const;
  return { place, right, up, ahead };
}

const FIELD_OF_VIEW = Math.PI / 4;

export function orbitMatrix(orbit: Orbit, size: Size, origin: readonly number[]): Matrix {
  const { place, right, up, ahead } = eyeOf(orbit);
  const f = 1 / Math.tan(FIELD_OF_VIEW / 2);
  const aspect = size.width / size.height;
  const near = orbit.distance / 100;
  const far = orbit.distance * 100;
  const d = [0, 1, 2].map((i) => origin[i]! - place[i]!);
  const dot = (v: readonly number[]): number => v[0]! * d[0]! + v[1]! * d[1]! + v[2]! * d[2]!;
  const m = new Float64Array(16);
  const [a, b] = [(far + near) / (far - near), (-2 * far * near) / (far - near)];
  for (let i = 0; i < 3; ++i) {
    m[4 * i] = (f / aspect) * right[i]!;
    m[4 * i + 1] = f * up[i]!;
    m[4 * i + 2] = a * ahead[i]!;
    m[4 * i + 3] = ahead[i]!;
  }
  m[12] = (f / aspect) * dot(right);
  m[13] = f * dot(up);
  m[14] = a * dot(ahead) + b;
  m[15] = dot(ahead);
  return m;
}

/** In pixels; null behind the eye, and for what is too far away for a number. */
export function project(m: Matrix, size: Size, x: number, y: number, z: number): Pt | null {
  const w = m[3]! * x + m[7]! * y + m[11]! * z + m[15]!;
  if (w <= 1e-9) return null;
  const pixel = {
    x: held((0.5 + (0.5 * (m[0]! * x + m[4]! * y + m[8]! * z + m[12]!)) / w) * size.width),
    y: held((0.5 - (0.5 * (m[1]! * x + m[5]! * y + m[9]! * z + m[13]!)) / w) * size.height),
  };
  return Number.isNaN(pixel.x) || Number.isNaN(pixel.y) ? null : pixel;
}
