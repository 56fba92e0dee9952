// The handles of a shape: what can be grabbed, where it is, and what a drag of it makes of the document.

import { bearing, cornersOf, distance, middle, minus, sweepOf, tidy } from '../edit/geometry';
import { vertexAdded } from '../edit/items';
import { MOST_VERTICES } from '../edit/limits';
import { type Doc, type Item, type Pt, type Zone } from '../edit/model';
import { turnedBy, vertexMoved } from '../edit/moves';
import { withShape } from '../edit/values';

export type HandleKind = 'vertex' | 'edge' | 'turn' | 'begin' | 'end' | 'radius';
export interface Handle {
  readonly kind: HandleKind;
  readonly index: number;
  readonly p: Pt;
  readonly title: string;
}

const onCircle = (angle: number, radius: number): Pt => ({ x: radius * Math.cos(angle), y: radius * Math.sin(angle) });

/** @param beside how far, in metres, the handle that turns stands beside the shape */
export function handlesOf(item: Item, beside: number): Handle[] {
  const vertex = (p: Pt, index: number): Handle => ({
    kind: 'vertex',
    index,
    p,
    title: `Corner ${index}: drag moves it, Delete removes it`,
  });
  if (item.kind === 'line') return [item.first, item.second].map(vertex);
  const { shape } = item;
  if (!shape) return [];
  if (shape.kind === 'polygon') {
    const { points } = shape;
    const edges =
      points.length < MOST_VERTICES
        ? points.map((p, index): Handle => ({
            kind: 'edge',
            index,
            p: middle(p, points[(index + 1) % points.length]!),
            title: 'Drag adds a corner here',
          }))
        : [];
    return [...edges, ...points.map(vertex)];
  }
  if (shape.kind === 'rectangle') {
    const corners = cornersOf(shape);
    const centre = middle(corners[0], corners[2]);
    const edge = middle(corners[1], corners[2]);
    const out = minus(edge, centre);
    const length = Math.hypot(out.x, out.y) || 1;
    const p = { x: edge.x + (out.x / length) * beside, y: edge.y + (out.y / length) * beside };
    return [...corners.map(vertex), { kind: 'turn', index: 0, p, title: 'Drag turns the rectangle' }];
  }
  const { minAngle, maxAngle, radius } = shape;
  return [
    { kind: 'begin', index: 0, p: onCircle(minAngle, radius), title: 'The bearing at which the sector begins' },
    { kind: 'end', index: 0, p: onCircle(maxAngle, radius), title: 'The bearing at which the sector ends' },
    { kind: 'radius', index: 0, p: onCircle(minAngle + sweepOf(shape) / 2, radius), title: 'The radius' },
  ];
}

/** The text after a handle was dragged from one place to another, computed from where the drag began. */
export function dragged(doc: Doc, id: string, handle: Handle, from: Pt, to: Pt): string {
  const item = doc.byId.get(id);
  if (!item) return doc.text;
  if (handle.kind === 'vertex') return vertexMoved(doc, item, handle.index, to);
  if (handle.kind === 'edge') return vertexAdded(doc, item as Zone, handle.index + 1, to);
  const zone = item as Zone;
  const { shape } = zone;
  if (handle.kind === 'turn' && shape?.kind === 'rectangle') {
    const centre = middle(shape.corners[0], shape.corners[1]);
    return turnedBy(doc, zone, bearing(minus(to, centre)) - bearing(minus(from, centre)));
  }
  if (shape?.kind !== 'sector') return doc.text;
  if (handle.kind === 'radius') {
    const radius = tidy(Math.round(distance({ x: 0, y: 0 }, to) * 1e3) / 1e3);
    return radius > 0 ? withShape(doc, zone, { ...shape, radius }) : doc.text;
  }
  const angle = tidy(bearing(to));
  return withShape(doc, zone, handle.kind === 'begin' ? { ...shape, minAngle: angle } : { ...shape, maxAngle: angle });
}
