// What lies under the pointer: lines before areas, small areas before large ones.

import { area, distance, holds, nearestOn, ringOf } from '../edit/geometry';
import type { Doc, Pt } from '../edit/model';

/** All items at a place, the one that is meant first. @param reach metres beside a line */
export function itemsAt(doc: Doc, p: Pt, reach: number, isHidden: (id: string) => boolean): string[] {
  const found: { id: string; size: number }[] = [];
  for (const item of doc.byId.values()) {
    if (isHidden(item.id)) continue;
    const ring = ringOf(item);
    if (ring.length < 2) continue;
    const isNear = ring.some(
      (a, i) =>
        (item.kind !== 'line' || i === 0) && distance(p, nearestOn(a, ring[(i + 1) % ring.length]!, p)) <= reach,
    );
    if (item.kind === 'line' ? isNear : isNear || holds(ring, p)) {
      found.push({ id: item.id, size: item.kind === 'line' ? -1 : Math.abs(area(ring)) });
    }
  }
  return found.sort((a, b) => a.size - b.size).map((one) => one.id);
}

/** The next of them below the selected one; a click again reaches what is covered. */
export function nextBelow(ids: readonly string[], selected: string | undefined): string | undefined {
  const at = selected === undefined ? -1 : ids.indexOf(selected);
  return ids[(at + 1) % Math.max(1, ids.length)];
}

/** Items whose whole outline is in the box. */
export function itemsIn(doc: Doc, a: Pt, b: Pt, isHidden: (id: string) => boolean): string[] {
  const [left, right] = [Math.min(a.x, b.x), Math.max(a.x, b.x)];
  const [low, high] = [Math.min(a.y, b.y), Math.max(a.y, b.y)];
  return [...doc.byId.values()]
    .filter((item) => !isHidden(item.id))
    .filter((item) => {
      const ring = ringOf(item);
      return ring.length > 1 && ring.every((p) => p.x >= left && p.x <= right && p.y >= low && p.y <= high);
    })
    .map((item) => item.id);
}
