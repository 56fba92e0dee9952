// Where the pointer is drawn to: corners first, then edges, then the grid. Distances are pixels on the screen.

import { distance, minus, nearestOn, plus, ringOf } from '../edit/geometry';
import type { Doc, Pt } from '../edit/model';

const REACH = 9;

export interface Snapping {
  readonly scale: number;
  readonly grid: number | null;
  readonly toShapes: boolean;
  /** Left alone: the items that are being moved, and what is hidden. */
  readonly without: (id: string) => boolean;
  /** With Shift: in steps of 15 degrees about this place. */
  readonly about: Pt | null;
}

export interface Snapped {
  readonly p: Pt;
  readonly to: 'vertex' | 'edge' | 'grid' | 'angle' | null;
}

function toMillimetres(p: Pt): Pt {
  return { x: Math.round(p.x * 1e3) / 1e3 + 0, y: Math.round(p.y * 1e3) / 1e3 + 0 };
}

function toAngle(p: Pt, about: Pt): Pt {
  const d = minus(p, about);
  const step = Math.PI / 12;
  const angle = Math.round(Math.atan2(d.y, d.x) / step) * step;
  const along = d.x * Math.cos(angle) + d.y * Math.sin(angle);
  return toMillimetres(plus(about, { x: along * Math.cos(angle), y: along * Math.sin(angle) }));
}

export function snapped(doc: Doc, p: Pt, how: Snapping): Snapped {
  if (how.about) return { p: toAngle(p, how.about), to: 'angle' };
  const reach = REACH / how.scale;
  let best: { p: Pt; away: number; to: 'vertex' | 'edge' } | null = null;
  const offer = (q: Pt, to: 'vertex' | 'edge'): void => {
    const away = distance(p, q);
    if (away <= reach && (!best || (best.to === to ? away < best.away : to === 'vertex'))) best = { p: q, away, to };
  };
  if (how.toShapes) {
    for (const item of doc.byId.values()) {
      if (how.without(item.id)) continue;
      const isRound = item.kind !== 'line' && item.shape?.kind === 'sector';
      const ring = ringOf(item);
      ring.forEach((q, i) => {
        if (!isRound) offer(q, 'vertex');
        const next = ring[(i + 1) % ring.length]!;
        if (!isRound) offer(nearestOn(q, next, p), 'edge');
      });
    }
    offer({ x: 0, y: 0 }, 'vertex');
  }
  const found = best as { p: Pt; to: 'vertex' | 'edge' } | null;
  if (found) return { p: found.to === 'vertex' ? found.p : toMillimetres(found.p), to: found.to };
  if (how.grid !== null) {
    const q = { x: Math.round(p.x / how.grid) * how.grid, y: Math.round(p.y / how.grid) * how.grid };
    return { p: toMillimetres(q), to: 'grid' };
  }
  return { p: toMillimetres(p), to: null };
}
