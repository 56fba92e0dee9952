// Plane geometry for drawing and picking. What counts where is never decided here, but by the engine.

import type { Item, Pt, RectangleShape, SectorShape, Shape } from './model';

export function minus(a: Pt, b: Pt): Pt {
  return { x: a.x - b.x, y: a.y - b.y };
}
export function plus(a: Pt, b: Pt): Pt {
  return { x: a.x + b.x, y: a.y + b.y };
}
export function distance(a: Pt, b: Pt): number {
  return Math.hypot(a.x - b.x, a.y - b.y);
}
export function middle(a: Pt, b: Pt): Pt {
  return { x: (a.x + b.x) / 2, y: (a.y + b.y) / 2 };
}
export function turned(p: Pt, about: Pt, radians: number): Pt {
  const [c, s] = [Math.cos(radians), Math.sin(radians)];
  const d = minus(p, about);
  return { x: about.x + c * d.x - s * d.y, y: about.y + s * d.x + c * d.y };
}

/** Without the dust of binary fractions: to the micrometre, where a double tells micrometres. */
export function tidy(value: number): number {
  return Math.abs(value) < 1e9 ? Math.round(value * 1e6) / 1e6 + 0 : value;
}
export function tidyPoint(p: Pt): Pt {
  return { x: tidy(p.x), y: tidy(p.y) };
}

export const radians = (degrees: number): number => (degrees * Math.PI) / 180;
export const degrees = (angle: number): number => (angle * 180) / Math.PI;

/** In order around the rectangle from the first given corner, as they stand on the plan. */
export function cornersOf(shape: RectangleShape): [Pt, Pt, Pt, Pt] {
  const [a, b] = shape.corners;
  const centre = middle(a, b);
  const turn = (p: Pt): Pt => turned(p, centre, radians(shape.rotation));
  return [turn(a), turn({ x: b.x, y: a.y }), turn(b), turn({ x: a.x, y: b.y })];
}

const TURN = 2 * Math.PI;

/** How far a sector reaches counterclockwise from minAngle; equal bearings are the whole disc. */
export function sweepOf(shape: SectorShape): number {
  const sweep = (((shape.maxAngle - shape.minAngle) % TURN) + TURN) % TURN;
  return sweep < 1e-4 || TURN - sweep < 1e-4 ? TURN : sweep;
}

export function bearing(p: Pt): number {
  return Math.atan2(p.y, p.x);
}

/** The border as a ring of points. */
export function outline(shape: Shape): readonly Pt[] {
  if (shape.kind === 'polygon') return shape.points;
  if (shape.kind === 'rectangle') return cornersOf(shape);
  const sweep = sweepOf(shape);
  const steps = Math.max(4, Math.ceil(sweep / radians(3)));
  const arc = Array.from({ length: steps + 1 }, (_, i): Pt => {
    const angle = shape.minAngle + (sweep * i) / steps;
    return { x: shape.radius * Math.cos(angle), y: shape.radius * Math.sin(angle) };
  });
  return sweep === TURN ? arc.slice(0, -1) : [{ x: 0, y: 0 }, ...arc];
}

/** With the sign of the direction: counterclockwise is positive. */
export function area(ring: readonly Pt[]): number {
  let sum = 0;
  ring.forEach((p, i) => {
    const q = ring[(i + 1) % ring.length]!;
    sum += p.x * q.y - q.x * p.y;
  });
  return sum / 2;
}

/** Whether the ring winds around the point. */
export function holds(ring: readonly Pt[], p: Pt): boolean {
  let winding = 0;
  ring.forEach((a, i) => {
    const b = ring[(i + 1) % ring.length]!;
    const side = (b.x - a.x) * (p.y - a.y) - (p.x - a.x) * (b.y - a.y);
    if (a.y <= p.y && b.y > p.y && side > 0) ++winding;
    if (a.y > p.y && b.y <= p.y && side < 0) --winding;
  });
  return winding !== 0;
}

/** The point of a segment that is nearest. */
export function nearestOn(a: Pt, b: Pt, p: Pt): Pt {
  const d = minus(b, a);
  const square = d.x * d.x + d.y * d.y;
  const t = square === 0 ? 0 : ((p.x - a.x) * d.x + (p.y - a.y) * d.y) / square;
  const held = Math.min(1, Math.max(0, t));
  return { x: a.x + held * d.x, y: a.y + held * d.y };
}

export function ringOf(item: Item): readonly Pt[] {
  if (item.kind === 'line') return [item.first, item.second];
  return item.shape ? outline(item.shape) : [];
}

const MOST_FOR_DIAGONALS = 64; // a document with more is wrong, and there are as many diagonals as corners squared

/**
 * Where a name stands: in the middle of a shape, or where that lies outside, in the middle of a diagonal inside, of which
 * every ring without crossings has one.
 */
export function labelPlace(ring: readonly Pt[]): Pt {
  const total = area(ring);
  if (ring.length < 3 || Math.abs(total) < 1e-12)
    return ring.length > 1 ? middle(ring[0]!, ring[1]!) : (ring[0] ?? { x: 0, y: 0 });
  let [x, y] = [0, 0];
  ring.forEach((p, i) => {
    const q = ring[(i + 1) % ring.length]!;
    const cross = p.x * q.y - q.x * p.y;
    x += (p.x + q.x) * cross;
    y += (p.y + q.y) * cross;
  });
  const centre = { x: x / (6 * total), y: y / (6 * total) };
  if (!Number.isFinite(centre.x) || !Number.isFinite(centre.y)) return ring[0]!; // a file may hold any number
  if (holds(ring, centre) || ring.length > MOST_FOR_DIAGONALS) return centre;
  const inside = ring
    .flatMap((p, i) => ring.slice(i + 2).map((q) => middle(p, q)))
    .filter((place) => holds(ring, place))
    .sort((a, b) => distance(a, centre) - distance(b, centre));
  return inside[0] ?? centre;
}
