// Edits of values: names, numbers, coordinates. Each gives the text of the document after the edit, and changes
// no other character of it. A value that is already so is not written again.

import type { Json } from '../text/layout';
import { member, type Node, type ObjectNode } from '../text/json';
import { memberAdded, replaced, type Splice, spliced } from '../text/splice';
import { tidyPoint } from './geometry';
import { checkName, Refusal } from './limits';
import type { Doc, Item, Line, Pt, Shape, Zone } from './model';

function objectOf(node: Node | undefined, what: string): ObjectNode {
  if (node?.kind !== 'object') throw new Refusal(`${what} is not written as an object; mend the text first.`);
  return node;
}

function set(doc: Doc, object: ObjectNode, key: string, value: Json): Splice[] {
  const node = member(object, key);
  if (!node) return [memberAdded(doc.text, object, key, value)];
  if (node.kind === 'scalar' && node.value === value) return [];
  return [replaced(doc.text, node, value)];
}

// At most one key of an object may be missing at a time, since two additions would stand at one place.
function setAll(doc: Doc, object: ObjectNode, values: Readonly<Record<string, Json>>): Splice[] {
  const missing = Object.keys(values).filter((key) => !member(object, key));
  if (missing.length > 1) throw new Refusal(`${missing.join(' and ')} are missing; mend the text first.`);
  return Object.entries(values).flatMap(([key, value]) => set(doc, object, key, value));
}

function place(doc: Doc, node: Node | undefined, p: Pt): Splice[] {
  const to = tidyPoint(p);
  return setAll(doc, objectOf(node, 'A point'), { x: to.x, y: to.y });
}

export function pointNodes(zone: Zone): readonly Node[] {
  const list = member(member(zone.node, zone.shape?.kind === 'rectangle' ? 'Rectangle' : 'Polygon'), 'Point');
  return list?.kind === 'array' ? list.items : [];
}

/** The node that holds the geometry of a zone. */
export function geometryNode(zone: Zone): ObjectNode {
  const key = { polygon: 'Polygon', rectangle: 'Rectangle', sector: 'Sector' }[zone.shape?.kind ?? 'polygon'];
  return objectOf(member(zone.node, key), key);
}

function checkFinite(value: number): void {
  if (!Number.isFinite(value)) throw new Refusal('A number is needed.');
}

/** The geometry of a shape of the same kind with as many points, written into its place. */
export function shapeSplices(doc: Doc, zone: Zone, shape: Shape): Splice[] {
  if (zone.shape?.kind !== shape.kind) throw new Refusal('The shape is of another kind.');
  if (shape.kind === 'polygon') {
    const nodes = pointNodes(zone);
    return shape.points.flatMap((p, i) => (isSame(zone, i, p) ? [] : place(doc, nodes[i], p)));
  }
  if (shape.kind === 'rectangle') {
    const nodes = pointNodes(zone);
    return [
      ...shape.corners.flatMap((p, i) => (isSame(zone, i, p) ? [] : place(doc, nodes[i], p))),
      ...set(doc, geometryNode(zone), 'rotation', shape.rotation),
    ];
  }
  if (!(shape.radius > 0)) throw new Refusal('The radius of a sector is above 0.');
  const { minAngle, maxAngle, radius } = shape;
  return setAll(doc, geometryNode(zone), { minAngle, maxAngle, radius });
}

// A coordinate that nobody moved keeps all its digits.
function isSame(zone: Zone, i: number, p: Pt): boolean {
  const shape = zone.shape;
  const old = shape?.kind === 'polygon' ? shape.points[i] : shape?.kind === 'rectangle' ? shape.corners[i] : undefined;
  return old !== undefined && old.x === p.x && old.y === p.y;
}

export function withShape(doc: Doc, zone: Zone, shape: Shape): string {
  return spliced(doc.text, shapeSplices(doc, zone, shape));
}

export function lineSplices(doc: Doc, line: Line, first: Pt, second: Pt): Splice[] {
  const end = (key: 'first' | 'second', p: Pt): Splice[] =>
    line[key].x === p.x && line[key].y === p.y ? [] : place(doc, member(line.node, key), p);
  return [...end('first', first), ...end('second', second)];
}

export function withLine(doc: Doc, line: Line, first: Pt, second: Pt): string {
  return spliced(doc.text, lineSplices(doc, line, first, second));
}

/** The name of a zone, a line or a field. Names of lines may have any length. */
export function renamed(doc: Doc, item: Pick<Item, 'node'> & { readonly kind?: string }, name: string): string {
  if (item.kind !== 'line') checkName(name);
  return spliced(doc.text, set(doc, objectOf(item.node, 'This entry'), 'name', name));
}

/** The zone in another slot of its field; the zone that has it takes the slot that becomes free. */
export function withSlot(doc: Doc, zone: Zone, slot: number): string {
  const other = doc.fields[zone.field]?.zones.find((one) => one.index === slot && one.id !== zone.id);
  if (other && !Number.isInteger(zone.index)) throw new Refusal(`Slot ${slot} is that of "${other.name}".`);
  const put = (one: Zone, index: number): Splice[] => set(doc, objectOf(one.node, 'The zone'), 'index', index);
  return spliced(doc.text, [...put(zone, slot), ...(other ? put(other, zone.index) : [])]);
}

export function withHeight(doc: Doc, zone: Zone, key: 'zMin' | 'zMax', value: number): string {
  checkFinite(value);
  return spliced(doc.text, set(doc, objectOf(zone.node, 'The zone'), key, value));
}

export function withRotation(doc: Doc, zone: Zone, degrees: number): string {
  checkFinite(degrees);
  return spliced(doc.text, set(doc, geometryNode(zone), 'rotation', degrees));
}

export function withOption(
  doc: Doc,
  key: 'debounceTimeMs' | 'sensitivity' | 'triggerActiveLevel',
  value: number | string,
): string {
  const top = member(doc.root, 'ZoneDetector');
  if (!top) throw new Refusal('Options stand in "ZoneDetector", which this document does not have.');
  return spliced(doc.text, set(doc, objectOf(top, 'ZoneDetector'), key, value));
}
