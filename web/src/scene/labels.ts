// Where names stand, so that none covers another: those that matter most first, the others beside or left out.

import type { Pt } from '../edit/model';

export interface Wanted {
  readonly id: string;
  readonly at: Pt;
  readonly letters: number;
  readonly lines: number;
}

const LETTER = 7.2;
const LINE = 15;
const SHIFTS = [0, 17, -17, 34, -34];

interface Box {
  readonly left: number;
  readonly right: number;
  readonly top: number;
  readonly bottom: number;
}

function overlaps(a: Box, b: Box): boolean {
  return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

/** The places by id; an id is missing where there is no room. The first ones choose first. */
export function placed(wanted: readonly Wanted[]): Map<string, Pt> {
  const taken: Box[] = [];
  const places = new Map<string, Pt>();
  for (const { id, at, letters, lines } of wanted) {
    const half = (letters * LETTER) / 2;
    for (const shift of SHIFTS) {
      const y = at.y + shift;
      const box = { left: at.x - half, right: at.x + half, top: y - 11, bottom: y - 11 + lines * LINE };
      if (taken.some((other) => overlaps(box, other))) continue;
      taken.push(box);
      places.set(id, { x: at.x, y });
      break;
    }
  }
  return places;
}
