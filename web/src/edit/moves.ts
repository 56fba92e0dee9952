// Edits of several shapes at once: moved, turned, mirrored, duplicated. A drag computes from where it began: it
// calls these with the document as it was then and the whole way since.

import { type Splice, spliced } from '../text/splice';
import { cornersOf, middle, plus, radians, ringOf, tidy, tidyPoint, turned } from './geometry';
import { exclusionAdded, fieldAdded, freeSlot, lineAdded, zoneAdded } from './items';
import { fittingName, MOST_ZONES, Refusal } from './limits';
import { type Doc, type Item, type Line, type Pt, type RectangleShape, type Shape, type Zone, read } from './model';
import { lineSplices, shapeSplices, withShape } from './values';

type Moving = (p: Pt) => Pt;

// A sector stands at the origin: what moves it is left out.
function movedSplices(doc: Doc, item: Item, move: Moving): Splice[] {
  if (item.kind === 'line') return lineSplices(doc, item, move(item.first), move(item.second));
  const { shape } = item;
  if (shape?.kind === 'polygon') return shapeSplices(doc, item, { ...shape, points: shape.points.map(move) });
  if (shape?.kind === 'rectangle') {
    return shapeSplices(doc, item, { ...shape, corners: [move(shape.corners[0]), move(shape.corners[1])] });
  }
  return [];
}

export function itemsOf(doc: Doc, ids: readonly string[]): Item[] {
  return ids.map((id) => doc.byId.get(id)).filter((item): item is Item => item !== undefined);
}

export function moved(doc: Doc, ids: readonly string[], by: Pt): string {
  const items = itemsOf(doc, ids);
  if (items.every((item) => item.kind !== 'line' && item.shape?.kind === 'sector') && items.length > 0) {
    throw new Refusal('A sector sits at the origin. Its bearings and its radius can be changed.');
  }
  return spliced(
    doc.text,
    items.flatMap((item) => movedSplices(doc, item, (p) => tidyPoint(plus(p, by)))),
  );
}

/** A vertex of a polygon, a corner of a rectangle or an end of a line at another place. */
export function vertexMoved(doc: Doc, item: Item, vertex: number, to: Pt): string {
  const place = tidyPoint(to);
  if (item.kind === 'line') {
    return spliced(
      doc.text,
      lineSplices(doc, item, vertex === 0 ? place : item.first, vertex === 1 ? place : item.second),
    );
  }
  const { shape } = item;
  if (shape?.kind === 'polygon') {
    return withShape(doc, item, { ...shape, points: shape.points.map((p, i) => (i === vertex ? place : p)) });
  }
  if (shape?.kind === 'rectangle') return withShape(doc, item, cornerMoved(shape, vertex, place));
  return doc.text;
}

// The opposite corner stays where it is on the plan. Corners 0 and 2 are the written ones; 1 has the x of the
// second and the y of the first, 3 the other way round.
function cornerMoved(shape: RectangleShape, vertex: number, to: Pt): RectangleShape {
  const fixed = cornersOf(shape)[(vertex + 2) % 4]!;
  const centre = middle(fixed, to);
  const back = -radians(shape.rotation);
  const m = tidyPoint(turned(to, centre, back));
  const f = tidyPoint(turned(fixed, centre, back));
  if (vertex === 0) return { ...shape, corners: [m, f] };
  if (vertex === 2) return { ...shape, corners: [f, m] };
  return vertex === 1
    ? {
        ...shape,
        corners: [
          { x: f.x, y: m.y },
          { x: m.x, y: f.y },
        ],
      }
    : {
        ...shape,
        corners: [
          { x: m.x, y: f.y },
          { x: f.x, y: m.y },
        ],
      };
}

/** Turned about its own centre; a rectangle turns by its rotation, a sector by its bearings. */
export function turnedBy(doc: Doc, zone: Zone, angle: number): string {
  const { shape } = zone;
  if (shape?.kind === 'rectangle') {
    return withShape(doc, zone, { ...shape, rotation: tidy(wrapped(shape.rotation + (angle * 180) / Math.PI, 180)) });
  }
  if (shape?.kind === 'sector') {
    const turn = (a: number): number => tidy(wrapped(a + angle, Math.PI));
    return withShape(doc, zone, { ...shape, minAngle: turn(shape.minAngle), maxAngle: turn(shape.maxAngle) });
  }
  if (shape?.kind === 'polygon') {
    const [low, high] = boundsOf([zone]);
    const centre = middle(low, high);
    return withShape(doc, zone, { ...shape, points: shape.points.map((p) => tidyPoint(turned(p, centre, angle))) });
  }
  return doc.text;
}

/** Within half a turn of either side of 0. */
export function wrapped(value: number, half: number): number {
  const whole = 2 * half;
  const rest = ((value % whole) + whole) % whole;
  return rest > half ? rest - whole : rest;
}

export function boundsOf(items: readonly Item[]): [Pt, Pt] {
  const points = items.flatMap((item) => ringOf(item));
  return [
    { x: Math.min(...points.map((p) => p.x)), y: Math.min(...points.map((p) => p.y)) },
    { x: Math.max(...points.map((p) => p.x)), y: Math.max(...points.map((p) => p.y)) },
  ];
}

/** Mirrored at the middle of all of them: left and right, or up and down. Sectors stay at the origin. */
export function mirrored(doc: Doc, ids: readonly string[], axis: 'x' | 'y'): string {
  const items = itemsOf(doc, ids);
  if (items.length === 0) return doc.text;
  const [low, high] = boundsOf(items.filter((item) => item.kind === 'line' || item.shape?.kind !== 'sector'));
  const centre = middle(low, high);
  const flip = (p: Pt): Pt =>
    tidyPoint(axis === 'x' ? { x: 2 * centre.x - p.x, y: p.y } : { x: p.x, y: 2 * centre.y - p.y });
  return spliced(
    doc.text,
    items.flatMap((item) => mirroredSplices(doc, item, flip, axis)),
  );
}

function mirroredSplices(doc: Doc, item: Item, flip: Moving, axis: 'x' | 'y'): Splice[] {
  if (item.kind === 'line' || item.shape?.kind === 'polygon') return movedSplices(doc, item, flip);
  const { shape } = item;
  if (shape?.kind === 'rectangle') {
    const [a, b] = [flip(shape.corners[0]), flip(shape.corners[1])];
    return shapeSplices(doc, item, { ...shape, corners: [a, b], rotation: -shape.rotation + 0 });
  }
  if (shape?.kind === 'sector') {
    const over = (angle: number): number => tidy(wrapped(axis === 'x' ? Math.PI - angle : -angle, Math.PI));
    return shapeSplices(doc, item, { ...shape, minAngle: over(shape.maxAngle), maxAngle: over(shape.minAngle) });
  }
  return [];
}

function copyName(doc: Doc, name: string): string {
  const names = new Set([...doc.byId.values()].map((item) => item.name));
  for (let i = 2; ; ++i) {
    const ending = ` ${i}`;
    let stem = fittingName(name);
    while (fittingName(stem + ending) !== stem + ending) stem = [...stem].slice(0, -1).join('');
    if (!names.has(stem + ending)) return stem + ending;
  }
}

function shifted(shape: Shape, by: Pt): Shape {
  const move = (p: Pt): Pt => tidyPoint(plus(p, by));
  if (shape.kind === 'polygon') return { ...shape, points: shape.points.map(move) };
  if (shape.kind === 'rectangle') return { ...shape, corners: [move(shape.corners[0]), move(shape.corners[1])] };
  return shape;
}

function zoneDuplicated(doc: Doc, zone: Zone, by: Pt): string {
  if (!zone.shape) throw new Refusal('This zone has no shape that can be read.');
  const { zMin, zMax } = zone;
  const copy = { name: copyName(doc, zone.name), shape: shifted(zone.shape, by), zMin, zMax };
  if (zone.kind === 'exclusion') return exclusionAdded(doc, copy);
  const own = doc.fields[zone.field];
  const field =
    own && freeSlot(own.zones, MOST_ZONES) !== undefined
      ? own
      : doc.fields.find((one) => freeSlot(one.zones, MOST_ZONES) !== undefined);
  return field ? zoneAdded(doc, field, copy) : fieldAdded(doc, copyName(doc, own?.name ?? 'Field'), copy);
}

/** A copy of each beside it; a zone whose field is full goes to the next field with a free slot. */
export function duplicated(doc: Doc, ids: readonly string[], by: Pt): string {
  return itemsOf(doc, ids).reduce((text, item) => {
    const now = read(text);
    if (item.kind !== 'line') return zoneDuplicated(now, now.byId.get(item.id) as Zone, by);
    const line = now.byId.get(item.id) as Line;
    return lineAdded(now, copyName(now, line.name), plus(line.first, by), plus(line.second, by));
  }, doc.text);
}
