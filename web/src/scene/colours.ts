// The palette, that of the command's pictures, so that page and picture look alike.

import { VERDICT, verdictOf, type Counts, type Scene } from '../../engine/types';
import type { Colouring } from '../app/state';
import type { Interval } from '../edit/reach';

const FIELDS = ['#0072b2', '#d55e00', '#009e73', '#aa4499', '#b8860b', '#56a0d3', '#7a5195', '#8c564b'];
export const EXCLUSION = '#5b6672';
export const LINE = '#b3123f';

export function fieldColour(index: number): string {
  return FIELDS[((index % FIELDS.length) + FIELDS.length) % FIELDS.length] ?? FIELDS[0]!; // a slot that is not a number has the first
}

interface ScanColours {
  readonly ground: number;
  readonly low: number;
  readonly high: number;
  readonly counted: number;
  readonly taken: number;
  /** In an exclusion zone alone, where no zone reaches, or not come back. */
  readonly away: number;
}

// Bytes red, green, blue, opacity in the order of memory.
function packed(hex: string): number {
  const [r, g, b] = [1, 3, 5].map((at) => Number.parseInt(hex.slice(at, at + 2), 16));
  return (0xff000000 | (b! << 16) | (g! << 8) | r!) >>> 0;
}

const LIGHT: ScanColours = {
  ground: packed('#c3ccd5'),
  low: packed('#93a4b5'),
  high: packed('#3e5870'),
  counted: packed('#b8500c'),
  taken: packed('#7d4a8f'),
  away: packed('#d5dbe1'),
};
const DARK: ScanColours = {
  ground: packed('#3b4652'),
  low: packed('#64788c'),
  high: packed('#a9bccf'),
  counted: packed('#ff9a4d'),
  taken: packed('#c792d6'),
  away: packed('#303943'),
};

// From blue over green to yellow: even steps of lightness, told apart by colour-blind readers too.
const RAMP = ['#30437f', '#3a6a9b', '#3b8d97', '#4aae83', '#8fc766', '#e2d94f'].map((hex) =>
  [1, 3, 5].map((at) => Number.parseInt(hex.slice(at, at + 2), 16)),
);

function rampColour(t: number): number {
  const at = Math.min(Math.max(t, 0), 1) * (RAMP.length - 1);
  const i = Math.min(Math.floor(at), RAMP.length - 2);
  const mix = (k: number): number => Math.round(RAMP[i]![k]! + (at - i) * (RAMP[i + 1]![k]! - RAMP[i]![k]!));
  return (0xff000000 | (mix(2) << 16) | (mix(1) << 8) | mix(0)) >>> 0;
}

/** The ramp for a legend. */
export const RAMP_STOPS = RAMP.map((rgb) => `rgb(${rgb.join(' ')})`);

const RAMP_STEPS = Uint32Array.from({ length: 256 }, (_, i) => rampColour(i / 255));

/** How points are shown. */
export interface Shading {
  readonly colouring: Colouring;
  readonly isDark: boolean;
  /** Heights that zones hold, from the lowest on: points elsewhere are greyed out. null: none is. */
  readonly reach: readonly Interval[] | null;
}

const LOWEST = -0.5; // metres over the ground, where the colours of heights begin
const STEPS_OF_A_METRE = 51; // a rough ground ends, and a person begins

/** From where to where the ramp goes, in the unit of what it shows; null: there is nothing to show. */
export function rampEnds(scene: Scene, colouring: Colouring): Interval | null {
  if (colouring === 'height') return { low: LOWEST, high: LOWEST + 255 / STEPS_OF_A_METRE };
  return colouring === 'intensity' && scene.intensities ? intensityRange(scene.intensities) : null;
}

const ranges = new WeakMap<Float32Array, Interval | null>();

// Without the outermost fiftieth on each side: one mirror must not make all else dark.
function intensityRange(values: Float32Array): Interval | null {
  const known = ranges.get(values);
  if (known !== undefined) return known;
  const step = Math.max(1, Math.floor(values.length / 20000));
  const some: number[] = [];
  for (let i = 0; i < values.length; i += step) if (Number.isFinite(values[i])) some.push(values[i]!);
  some.sort((a, b) => a - b);
  const at = (part: number): number => some[Math.round(part * (some.length - 1))]!;
  const range = some.length > 0 ? { low: at(0.02), high: at(0.98) } : null;
  ranges.set(values, range);
  return range;
}

/** The colour of a point by its number and its verdict. What counts is lit in any case. */
function colourerOf(scene: Scene, shading: Shading): (k: number, verdict: number) => number {
  const { positions, origin, intensities, atOrigin } = scene;
  const { ground, low, high, counted, taken, away } = shading.isDark ? DARK : LIGHT;
  const [x0, y0, z0] = [-origin[0], -origin[1], -origin[2]];
  const floor = (scene.ground ?? 0) + z0;
  const reach = shading.reach ? Float64Array.from(shading.reach.flatMap((one) => [one.low + z0, one.high + z0])) : null;
  const ends = rampEnds(scene, shading.colouring);
  const isHeight = shading.colouring === 'height';
  const values = !ends ? null : isHeight ? positions : intensities;
  const [step, first] = isHeight ? [3, 2] : [1, 0];
  const least = (ends?.low ?? 0) + (isHeight ? floor : 0);
  const factor = ends ? 255 / Math.max(ends.high - ends.low, 1e-30) : 0;
  return (k, verdict) => {
    if (verdict === VERDICT.counted) return counted;
    if (verdict === VERDICT.taken) return taken;
    const i = 3 * k;
    const z = positions[i + 2]!;
    // Drivers write the origin for what did not come back.
    if (atOrigin > 0 && z === z0 && positions[i] === x0 && positions[i + 1] === y0) return away;
    if (reach) {
      let at = 0;
      while (at < reach.length && z > reach[at + 1]!) at += 2;
      if (at === reach.length || z < reach[at]!) return away;
    }
    if (values) {
      const value = values[step * k + first]!;
      const t = (value - least) * factor + 0.5;
      if (value - value === 0) return RAMP_STEPS[t < 0 ? 0 : t > 255 ? 255 : t | 0]!;
    }
    if (verdict === VERDICT.excluded) return away;
    return z - floor <= 0.25 ? ground : z - floor <= 0.7 ? low : high;
  };
}

/** The points of a scene with their colours. */
export interface Coloured {
  readonly scene: Scene;
  readonly verdicts: Uint8Array | null;
  readonly shading: Shading;
  readonly colours: Uint32Array;
}

function isSame(a: Shading, b: Shading): boolean {
  return a.colouring === b.colouring && a.isDark === b.isDark && JSON.stringify(a.reach) === JSON.stringify(b.reach);
}

/** A colour for each point of the scene; where only verdicts differ from the last time, of those that differ. */
export function coloured(scene: Scene, counts: Counts | null, shading: Shading, last: Coloured | null): Coloured {
  const size = scene.positions.length / 3;
  const verdicts = counts?.verdicts?.length === size ? counts.verdicts : null;
  const colour = colourerOf(scene, shading);
  if (last?.scene === scene && isSame(last.shading, shading)) {
    if (last.verdicts === verdicts) return last;
    if (last.verdicts && verdicts) {
      const colours = last.colours.slice();
      const before = last.verdicts;
      for (let k = 0; k < size; ++k) if (before[k] !== verdicts[k]) colours[k] = colour(k, verdictOf(verdicts[k]!));
      return { scene, verdicts, shading, colours };
    }
  }
  const colours = new Uint32Array(size);
  if (verdicts) for (let k = 0; k < size; ++k) colours[k] = colour(k, verdictOf(verdicts[k]!));
  else for (let k = 0; k < size; ++k) colours[k] = colour(k, VERDICT.outside);
  return { scene, verdicts, shading, colours };
}
