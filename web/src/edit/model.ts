// What a document holds, as read from its text. Ids are places in the document, written as findings write them.

import { listOf, member, type Node, parse } from '../text/json';

export interface Pt {
  readonly x: number;
  readonly y: number;
}
export interface PolygonShape {
  readonly kind: 'polygon';
  readonly points: readonly Pt[];
}
export interface RectangleShape {
  readonly kind: 'rectangle';
  readonly corners: readonly [Pt, Pt];
  /** degrees, counterclockwise */
  readonly rotation: number;
}
export interface SectorShape {
  readonly kind: 'sector';
  /** radians */
  readonly minAngle: number;
  readonly maxAngle: number;
  readonly radius: number;
}
export type Shape = PolygonShape | RectangleShape | SectorShape;

export interface Zone {
  readonly id: string;
  readonly kind: 'zone' | 'exclusion';
  /** of the field in its list; -1 for exclusion zones */
  readonly field: number;
  readonly name: string;
  /** the slot in its field; -1 for exclusion zones */
  readonly index: number;
  /** null where the document has no such shape, or not a whole one */
  readonly shape: Shape | null;
  readonly zMin: number;
  readonly zMax: number;
  readonly node: Node;
}
export interface Field {
  readonly id: string;
  readonly name: string;
  readonly index: number;
  readonly zones: readonly Zone[];
  readonly node: Node;
}
export interface Line {
  readonly id: string;
  readonly kind: 'line';
  readonly name: string;
  readonly first: Pt;
  readonly second: Pt;
  readonly node: Node;
}
export interface Options {
  readonly debounceTimeMs: number;
  readonly sensitivity: number;
  readonly triggerActiveLevel: 'high' | 'low';
}
export type Item = Zone | Line;

export interface Doc {
  readonly text: string;
  readonly root: Node;
  readonly options: Options;
  readonly fields: readonly Field[];
  readonly exclusions: readonly Zone[];
  readonly lines: readonly Line[];
  readonly byId: ReadonlyMap<string, Item>;
}

// Numbers in quotes are read too.
function numberOf(node: Node | undefined): number {
  const value = node?.kind === 'scalar' ? node.value : undefined;
  if (typeof value === 'number') return value;
  return typeof value === 'string' && /^-?\d+(\.\d+)?([eE][+-]?\d+)?$/.test(value) ? Number(value) : NaN;
}

function textOf(node: Node | undefined): string {
  return node?.kind === 'scalar' && node.value !== null ? String(node.value) : '';
}

function pointOf(node: Node | undefined): Pt {
  return { x: numberOf(member(node, 'x')), y: numberOf(member(node, 'y')) };
}

function isPlaced(p: Pt): boolean {
  return Number.isFinite(p.x) && Number.isFinite(p.y);
}

function shapeOf(zone: Node): Shape | null {
  const kind = textOf(member(zone, 'shape')).toLowerCase();
  if (kind === 'polygon') {
    const points = listOf(member(member(zone, 'Polygon'), 'Point')).map(pointOf);
    return points.length > 0 && points.every(isPlaced) ? { kind, points } : null;
  }
  if (kind === 'rectangle') {
    const node = member(zone, 'Rectangle');
    const [a, b, more] = listOf(member(node, 'Point')).map(pointOf);
    const rotation = numberOf(member(node, 'rotation'));
    return a && b && !more && isPlaced(a) && isPlaced(b) && Number.isFinite(rotation)
      ? { kind, corners: [a, b], rotation }
      : null;
  }
  if (kind === 'sector') {
    const node = member(zone, 'Sector');
    const [minAngle, maxAngle, radius] = [
      numberOf(member(node, 'minAngle')),
      numberOf(member(node, 'maxAngle')),
      numberOf(member(node, 'radius')),
    ];
    return [minAngle, maxAngle, radius].every(Number.isFinite) ? { kind, minAngle, maxAngle, radius } : null;
  }
  return null;
}

function zoneOf(node: Node, id: string, kind: 'zone' | 'exclusion', field: number): Zone {
  const height = (key: string, otherwise: number): number => {
    const value = member(node, key);
    return value === undefined ? otherwise : numberOf(value);
  };
  return {
    id,
    kind,
    field,
    name: textOf(member(node, 'name')),
    index: kind === 'zone' ? numberOf(member(node, 'index')) : -1,
    shape: shapeOf(node),
    zMin: height('zMin', 0),
    zMax: height('zMax', 20),
    node,
  };
}

// Without the top node the two lists at the top are read, but none of the options.
function optionsOf(top: Node | undefined): Options {
  const sensitivity = numberOf(member(top, 'sensitivity'));
  const debounce = numberOf(member(top, 'debounceTimeMs'));
  return {
    debounceTimeMs: Number.isFinite(debounce) ? debounce : 0,
    sensitivity: sensitivity >= 1 && sensitivity <= 10 ? sensitivity : 10,
    triggerActiveLevel: textOf(member(top, 'triggerActiveLevel')).toLowerCase() === 'low' ? 'low' : 'high',
  };
}

/** Throws JsonFault where the text is not JSON. Whatever else is wrong is left out or stands as NaN. */
export function read(text: string): Doc {
  const root = parse(text);
  const top = member(root, 'ZoneDetector');
  const prefix = top ? 'ZoneDetector/' : '';
  const holder = top ?? root;
  const fields = listOf(member(holder, 'EvaluationField')).map((node, field): Field => {
    const id = `${prefix}EvaluationField[${field}]`;
    return {
      id,
      name: textOf(member(node, 'name')),
      index: numberOf(member(node, 'index')),
      zones: listOf(member(node, 'Zone')).map((zone, i) => zoneOf(zone, `${id}/Zone[${i}]`, 'zone', field)),
      node,
    };
  });
  const exclusions = listOf(member(holder, 'ExclusionZone')).map((node, i) =>
    zoneOf(node, `${prefix}ExclusionZone[${i}]`, 'exclusion', -1),
  );
  const lines = listOf(member(member(root, 'CounterLines'), 'CounterLine')).map((node, i): Line => ({
    id: `CounterLines/CounterLine[${i}]`,
    kind: 'line',
    name: textOf(member(node, 'name')),
    first: pointOf(member(node, 'first')),
    second: pointOf(member(node, 'second')),
    node,
  }));
  const items: Item[] = [...fields.flatMap((field) => field.zones), ...exclusions, ...lines];
  return {
    text,
    root,
    options: optionsOf(top),
    fields,
    exclusions,
    lines,
    byId: new Map(items.map((item) => [item.id, item])),
  };
}

/** The item at a place of the document, such as that of a finding, or the one that holds it. */
export function itemAt(doc: Doc, path: string): Item | undefined {
  const padded = path.replace(/(EvaluationField|Zone|ExclusionZone|CounterLine)(?=\/|$)/g, '$1[0]');
  for (const tried of [path, padded]) {
    for (const item of doc.byId.values()) {
      if (tried === item.id || tried.startsWith(item.id + '/')) return item;
    }
  }
  return undefined;
}
