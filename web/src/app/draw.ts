// What was drawn becomes a part of the document: a zone in its field and slot, an exclusion zone or a line.

import { bearing, distance, tidy } from '../edit/geometry';
import { exclusionAdded, fieldAdded, freeSlot, lineAdded, zoneAdded } from '../edit/items';
import { FEWEST_VERTICES, MOST_EXCLUSIONS, MOST_FIELDS, MOST_VERTICES, MOST_ZONES } from '../edit/limits';
import type { Doc, Pt, Shape } from '../edit/model';
import { edit, say } from './actions';
import { get, set, type Target, type Tool } from './state';

function freshName(doc: Doc, stem: string): string {
  const names = new Set([...doc.byId.values(), ...doc.fields].map((one) => one.name));
  for (let i = 1; ; ++i) if (!names.has(`${stem} ${i}`)) return `${stem} ${i}`;
}

// New zones reach as high as the zones that are there, or from a little over the ground to over a person's head.
function heightsOf(doc: Doc, target: Target): { zMin: number; zMax: number } {
  const like =
    target.kind === 'exclusion'
      ? doc.exclusions.at(-1)
      : (target.kind === 'field' ? doc.fields[target.field] : doc.fields.at(-1))?.zones.at(-1);
  if (like && Number.isFinite(like.zMin) && Number.isFinite(like.zMax)) return { zMin: like.zMin, zMax: like.zMax };
  const ground = get().scene?.ground ?? 0;
  return { zMin: tidy(Math.round((ground + 0.2) * 100) / 100), zMax: tidy(Math.round((ground + 2.2) * 100) / 100) };
}

/** Why nothing more can be drawn there; empty: it can. */
export function whyFull(doc: Doc, target: Target): string {
  if (target.kind === 'exclusion')
    return doc.exclusions.length < MOST_EXCLUSIONS
      ? ''
      : `The document has its ${MOST_EXCLUSIONS} exclusion zones already.`;
  if (target.kind === 'new')
    return doc.fields.length < MOST_FIELDS ? '' : `The document has its ${MOST_FIELDS} fields already.`;
  const field = doc.fields[target.field];
  if (!field) return 'That field is not there any more.';
  const isFull = field.zones.length >= MOST_ZONES || freeSlot(field.zones, MOST_ZONES) === undefined;
  return isFull ? `The field "${field.name}" has its ${MOST_ZONES} zones already. Choose another field.` : '';
}

/** The target itself, or the first place with room when it is full or gone. */
export function roomFor(doc: Doc, target: Target): Target {
  if (whyFull(doc, target) === '') return target;
  const field = doc.fields.findIndex((_, i) => whyFull(doc, { kind: 'field', field: i }) === '');
  if (field >= 0) return { kind: 'field', field };
  return whyFull(doc, { kind: 'new' }) === '' ? { kind: 'new' } : target;
}

export function chooseTool(tool: Tool): void {
  const { doc, target } = get();
  const draws = tool === 'polygon' || tool === 'rectangle' || tool === 'sector';
  const room = draws ? roomFor(doc, target) : target;
  set({ tool, sketch: [], target: room, message: null });
  if (draws && whyFull(doc, room) !== '') say(whyFull(doc, room), true);
}

function addShape(shape: Shape): void {
  const { target, doc } = get();
  const name = freshName(doc, target.kind === 'exclusion' ? 'Exclusion' : 'Zone');
  const zone = { name, shape, ...heightsOf(doc, target) };
  const isDone = edit(`Draw ${name}`, (now) => {
    if (target.kind === 'exclusion') return exclusionAdded(now, zone);
    const field = target.kind === 'field' ? now.fields[target.field] : undefined;
    return field ? zoneAdded(now, field, zone) : fieldAdded(now, freshName(now, 'Field'), zone);
  });
  set({ sketch: [] });
  if (isDone) finish(name);
}

function finish(name: string): void {
  const { doc } = get();
  const item = [...doc.byId.values()].filter((one) => one.name === name).at(-1);
  set({ tool: 'select', selection: item ? [item.id] : [], vertex: -1 });
  say(`${name} is drawn. Its name and numbers are in the panel.`);
}

function addLine(first: Pt, second: Pt): void {
  const name = freshName(get().doc, 'Line');
  const isDone = edit(`Draw ${name}`, (doc) => lineAdded(doc, name, first, second));
  set({ sketch: [] });
  if (isDone) finish(name);
}

/** The sector between two places: from the bearing of the first counterclockwise to that of the second. */
export function sectorOf(first: Pt, second: Pt): Shape | null {
  const radius = tidy(Math.round(distance({ x: 0, y: 0 }, first) * 1e3) / 1e3);
  return radius > 0
    ? { kind: 'sector', minAngle: tidy(bearing(first)), maxAngle: tidy(bearing(second)), radius }
    : null;
}

/** A place was clicked while a tool was in hand. */
export function placePoint(p: Pt): void {
  const { tool, sketch } = get();
  if (tool === 'polygon') {
    if (sketch.length >= MOST_VERTICES)
      return say(`A polygon has at most ${MOST_VERTICES} vertices. Enter closes it.`, true);
    if (sketch.length > 0 && distance(sketch.at(-1)!, p) < 1e-9) return;
    set({ sketch: [...sketch, p], message: null });
    return;
  }
  if (tool === 'select') return;
  const [first] = sketch;
  if (!first) return set({ sketch: [p], message: null });
  if (tool === 'measure') return set({ sketch: sketch.length > 1 ? [p] : [first, p] });
  if (tool === 'line') {
    if (distance(first, p) > 1e-9) addLine(first, p);
  } else if (tool === 'rectangle') {
    if (first.x === p.x || first.y === p.y) return say('A rectangle needs a width and a depth.', true);
    addShape({ kind: 'rectangle', rotation: 0, corners: [first, p] });
  } else {
    const sector = sectorOf(first, p);
    if (!sector) return say('A sector needs a radius above 0: begin away from the origin.', true);
    addShape(sector);
  }
}

/** Closes the polygon that is being drawn. */
export function closePolygon(): void {
  const { tool, sketch } = get();
  if (tool !== 'polygon') return;
  if (sketch.length < FEWEST_VERTICES) return say(`A polygon has at least ${FEWEST_VERTICES} vertices.`, true);
  addShape({ kind: 'polygon', points: sketch });
}
