// Which heights the zones of a document hold at all: a point elsewhere cannot count, wherever they are drawn.

import type { Doc } from './model';

export interface Interval {
  readonly low: number;
  readonly high: number;
}

/** Both ends included, merged where they meet, from the lowest on; null: no zone has heights. */
export function reachOf(doc: Doc): readonly Interval[] | null {
  const all = doc.fields
    .flatMap((field) => field.zones)
    .filter((zone) => zone.zMin <= zone.zMax)
    .map(({ zMin, zMax }) => ({ low: zMin, high: zMax }))
    .sort((a, b) => a.low - b.low);
  const merged: Interval[] = [];
  for (const next of all) {
    const last = merged.at(-1);
    if (last && next.low <= last.high)
      merged[merged.length - 1] = { low: last.low, high: Math.max(last.high, next.high) };
    else merged.push(next);
  }
  return merged.length > 0 ? merged : null;
}
