// Which shape of a document is which of the document before an edit. Ids are places, so that a shape that comes or
// goes shifts those after it; its name and numbers may change, too.

import type { Node } from '../text/json';
import type { Doc, Item } from './model';

interface Entry {
  readonly text: string;
  readonly name: string;
}

function entriesOf(doc: Doc, list: readonly { readonly node: Node; readonly name: string }[]): Entry[] {
  return list.map(({ node, name }) => ({ text: doc.text.slice(node.start, node.end), name }));
}

/**
 * For each old entry the number of the new one, or -1. The same text is the same entry, wherever it stands; else the
 * same name; else, where as many are left on both sides, the same order.
 */
export function paired(old: readonly Entry[], now: readonly Entry[]): number[] {
  const found: number[] = old.map(() => -1);
  const isFree: boolean[] = now.map(() => true);
  const take = (from: number, to: number): void => {
    found[from] = to;
    isFree[to] = false;
  };
  const least = Math.min(old.length, now.length);
  let head = 0;
  while (head < least && old[head]!.text === now[head]!.text) take(head, head++);
  let tail = 1;
  while (tail <= least - head && old.at(-tail)!.text === now.at(-tail)!.text)
    take(old.length - tail, now.length - tail++);
  for (const key of ['text', 'name'] as const) {
    old.forEach((entry, i) => {
      const to = found[i] === -1 ? now.findIndex((one, k) => isFree[k] && one[key] === entry[key]) : -1;
      if (to >= 0) take(i, to);
    });
  }
  const left = old.flatMap((_, i) => (found[i] === -1 ? [i] : []));
  const free = now.flatMap((_, i) => (isFree[i] ? [i] : []));
  if (left.length === free.length) left.forEach((from, i) => take(from, free[i]!));
  return found;
}

function pairItems(old: Doc, now: Doc, from: readonly Item[], to: readonly Item[], pairs: Map<string, string>): void {
  paired(entriesOf(old, from), entriesOf(now, to)).forEach((at, i) => {
    if (at >= 0) pairs.set(from[i]!.id, to[at]!.id);
  });
}

/** New ids by old ones; of a shape that is gone there is none. */
export function pairsOf(old: Doc, now: Doc): ReadonlyMap<string, string> {
  const pairs = new Map<string, string>();
  paired(entriesOf(old, old.fields), entriesOf(now, now.fields)).forEach((at, i) => {
    if (at >= 0) pairItems(old, now, old.fields[i]!.zones, now.fields[at]!.zones, pairs);
  });
  pairItems(old, now, old.exclusions, now.exclusions, pairs);
  pairItems(old, now, old.lines, now.lines, pairs);
  return pairs;
}
