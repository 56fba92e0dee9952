// The palette, that of the command's pictures, so that page and picture look alike.

import { VERDICT, verdictOf, type Counts, type Scene } from '../../engine/types';
import type { Colouring } from '../app/state';

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
  readonly excluded: number;
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
  excluded: packed('#d5dbe1'),
};
const DARK: ScanColours = {
  ground: packed('#3b4652'),
  low: packed('#64788c'),
  high: packed('#a9bccf'),
  counted: packed('#ff9a4d'),
  taken: packed('#c792d6'),
  excluded: packed('#303943'),
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

const RAMP_STEPS = Uint32Array.from({ length: 256 }, (_, i) => rampColour(i / 255));

/** A colour for each point of the scene. In metres over the ground a rough ground ends, and a person begins. */
export function pointColours(scene: Scene, counts: Counts | null, colouring: Colouring, isDark: boolean): Uint32Array {
  const { positions } = scene;
  const shades = isDark ? DARK : LIGHT;
  const colours = new Uint32Array(positions.length / 3);
  const ground = (scene.ground ?? 0) - scene.origin[2];
  const verdicts = counts?.verdicts?.length === colours.length ? counts.verdicts : null;
  for (let k = 0, i = 2; k < colours.length; ++k, i += 3) {
    const height = positions[i]! - ground;
    const verdict = verdicts ? verdictOf(verdicts[k]!) : VERDICT.outside;
    if (verdict === VERDICT.counted) colours[k] = shades.counted;
    else if (verdict === VERDICT.taken) colours[k] = shades.taken;
    else if (colouring === 'height') colours[k] = RAMP_STEPS[Math.min(255, Math.max(0, ((height + 0.5) * 51) | 0))]!;
    else if (verdict === VERDICT.excluded) colours[k] = shades.excluded;
    else colours[k] = height <= 0.25 ? shades.ground : height <= 0.7 ? shades.low : shades.high;
  }
  return colours;
}
