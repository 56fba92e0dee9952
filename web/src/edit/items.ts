// Edits of lists: zones, exclusion zones, lines and vertices come and go. Each gives the text after the edit.

import { member, type Node, type ObjectNode } from '../text/json';
import type { Json } from '../text/layout';
import { itemInserted, itemRemoved, listMade, memberAdded, type Splice, spliced } from '../text/splice';
import { tidyPoint } from './geometry';
import { checkName, FEWEST_VERTICES, MOST_EXCLUSIONS, MOST_FIELDS, MOST_VERTICES, MOST_ZONES, Refusal } from './limits';
import { type Doc, type Field, type Item, type Pt, type Shape, type Zone, read } from './model';
import { geometryNode } from './values';

/** What is to be drawn into the document. */
export interface NewZone {
  readonly name: string;
  readonly shape: Shape;
  readonly zMin: number;
  readonly zMax: number;
}

function pointJson(p: Pt): Json {
  const { x, y } = tidyPoint(p);
  return { x, y };
}

function shapeJson(shape: Shape): { [key: string]: Json } {
  if (shape.kind === 'polygon') return { shape: 'polygon', Polygon: { Point: shape.points.map(pointJson) } };
  if (shape.kind === 'rectangle') {
    return { shape: 'rectangle', Rectangle: { rotation: shape.rotation, Point: shape.corners.map(pointJson) } };
  }
  const { minAngle, maxAngle, radius } = shape;
  return { shape: 'sector', Sector: { minAngle, maxAngle, radius } };
}

function checkShape(shape: Shape): void {
  if (shape.kind === 'polygon' && shape.points.length < FEWEST_VERTICES) {
    throw new Refusal(`A polygon has at least ${FEWEST_VERTICES} vertices.`);
  }
  if (shape.kind === 'polygon' && shape.points.length > MOST_VERTICES) {
    throw new Refusal(`A polygon has at most ${MOST_VERTICES} vertices.`);
  }
}

// At the end of the list of that key, which is made where it is missing.
function appended(doc: Doc, holder: Node | undefined, key: string, value: Json): Splice {
  if (holder?.kind !== 'object')
    throw new Refusal(`There is no place for ${key}: what should hold it is not an object.`);
  const list = member(holder, key);
  if (!list) return memberAdded(doc.text, holder, key, [value]);
  if (list.kind === 'array') return itemInserted(doc.text, list, list.items.length, value);
  return listMade(doc.text, list, value);
}

// The node that the lists of zones stand in.
function zoneHolder(doc: Doc): Node {
  return member(doc.root, 'ZoneDetector') ?? doc.root;
}

// Into the top node, which is made where the document holds no zones at all: options stand nowhere else.
function zoneListAppended(doc: Doc, key: 'EvaluationField' | 'ExclusionZone', value: Json): Splice {
  const holder = zoneHolder(doc);
  const isBare = holder === doc.root && !member(holder, 'EvaluationField') && !member(holder, 'ExclusionZone');
  if (!isBare || holder.kind !== 'object') return appended(doc, holder, key, value);
  return memberAdded(doc.text, holder, 'ZoneDetector', { version: '1.1', [key]: [value] });
}

/** The lowest slot that is free; none: all are taken. */
export function freeSlot(taken: readonly { readonly index: number }[], slots: number): number | undefined {
  return Array.from({ length: slots }, (_, i) => i).find((slot) => !taken.some((one) => one.index === slot));
}

function newZoneJson(zone: NewZone, index: number | null): Json {
  checkName(zone.name);
  checkShape(zone.shape);
  const slot = index === null ? {} : { index };
  return { name: zone.name, ...slot, ...shapeJson(zone.shape), zMin: zone.zMin, zMax: zone.zMax };
}

/** A zone in the lowest free slot of the field. */
export function zoneAdded(doc: Doc, field: Field, zone: NewZone): string {
  const index = freeSlot(field.zones, MOST_ZONES);
  if (index === undefined || field.zones.length >= MOST_ZONES) {
    throw new Refusal(`The field "${field.name}" has its ${MOST_ZONES} zones already. Choose another field.`);
  }
  return spliced(doc.text, [appended(doc, field.node, 'Zone', newZoneJson(zone, index))]);
}

/** A field with a first zone, in the lowest free slot: a field without zones is refused. */
export function fieldAdded(doc: Doc, name: string, zone: NewZone): string {
  checkName(name);
  const index = freeSlot(doc.fields, MOST_FIELDS);
  if (index === undefined || doc.fields.length >= MOST_FIELDS) {
    throw new Refusal(`A document has at most ${MOST_FIELDS} fields.`);
  }
  const field = { name, index, Zone: [newZoneJson(zone, 0)] };
  return spliced(doc.text, [zoneListAppended(doc, 'EvaluationField', field)]);
}

export function exclusionAdded(doc: Doc, zone: NewZone): string {
  if (doc.exclusions.length >= MOST_EXCLUSIONS) {
    throw new Refusal(`A document has at most ${MOST_EXCLUSIONS} exclusion zones.`);
  }
  return spliced(doc.text, [zoneListAppended(doc, 'ExclusionZone', newZoneJson(zone, null))]);
}

export function lineAdded(doc: Doc, name: string, first: Pt, second: Pt): string {
  const line = { name, first: pointJson(first), second: pointJson(second) };
  const lines = member(doc.root, 'CounterLines');
  if (lines) return spliced(doc.text, [appended(doc, lines, 'CounterLine', line)]);
  if (doc.root.kind !== 'object') throw new Refusal('The document is not an object.');
  return spliced(doc.text, [memberAdded(doc.text, doc.root, 'CounterLines', { CounterLine: [line] })]);
}

function holderOf(doc: Doc, item: Item): { holder: Node | undefined; key: string } {
  if (item.kind === 'line') return { holder: member(doc.root, 'CounterLines'), key: 'CounterLine' };
  if (item.kind === 'exclusion') return { holder: zoneHolder(doc), key: 'ExclusionZone' };
  return { holder: doc.fields[item.field]?.node, key: 'Zone' };
}

/** Without the item. A field goes with its last zone, since a field without zones is refused. */
export function removed(doc: Doc, item: Item): string {
  let { holder, key } = holderOf(doc, item);
  let node: Node = item.node;
  const field = item.kind === 'zone' ? doc.fields[item.field] : undefined;
  if (field && field.zones.length === 1) {
    [holder, key, node] = [zoneHolder(doc), 'EvaluationField', field.node];
  }
  const list = member(holder, key);
  if (list?.kind !== 'array') throw new Refusal('This entry stands without brackets; remove it in the text.');
  return spliced(doc.text, [itemRemoved(list, list.items.indexOf(node))]);
}

/** Without all of those items, in whatever order they are given. */
export function allRemoved(doc: Doc, ids: readonly string[]): string {
  const inDocument = [...doc.byId.keys()].filter((id) => ids.includes(id));
  // From the last on, so that the places of the others stay as they are.
  return inDocument.reverse().reduce((text, id) => {
    const now = read(text);
    const item = now.byId.get(id);
    return item ? removed(now, item) : text;
  }, doc.text);
}

function polygonList(zone: Zone): ObjectNode & { list: Extract<Node, { kind: 'array' }> } {
  const holder = geometryNode(zone);
  const list = member(holder, 'Point');
  if (zone.shape?.kind !== 'polygon' || list?.kind !== 'array')
    throw new Refusal('This shape has no vertices to add or remove.');
  return { ...holder, list };
}

/** A vertex before number `at`; `at` may be the number of vertices. */
export function vertexAdded(doc: Doc, zone: Zone, at: number, p: Pt): string {
  const { list } = polygonList(zone);
  if (list.items.length >= MOST_VERTICES) throw new Refusal(`A polygon has at most ${MOST_VERTICES} vertices.`);
  return spliced(doc.text, [itemInserted(doc.text, list, at, pointJson(p))]);
}

export function vertexRemoved(doc: Doc, zone: Zone, at: number): string {
  const { list } = polygonList(zone);
  if (list.items.length <= FEWEST_VERTICES) {
    throw new Refusal(`A polygon has at least ${FEWEST_VERTICES} vertices. Delete the zone itself with Delete twice.`);
  }
  return spliced(doc.text, [itemRemoved(list, at)]);
}
