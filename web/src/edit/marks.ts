// What is hidden and what is locked: marks of the shapes, which the document does not hold. They stay with a shape
// through every edit, and come back with one that is undone.

import type { Doc } from './model';
import { pairsOf } from './pairs';

/** A shape that is gone, with the marks that it had. */
interface Gone {
  readonly text: string;
  readonly isHidden: boolean;
  readonly isLocked: boolean;
}

/** Ids of shapes. */
export interface Marks {
  readonly hidden: ReadonlySet<string>;
  readonly locked: ReadonlySet<string>;
  readonly gone: readonly Gone[];
}

export const NO_MARKS: Marks = { hidden: new Set(), locked: new Set(), gone: [] };

function textOf(doc: Doc, id: string): string {
  const { start, end } = doc.byId.get(id)!.node;
  return doc.text.slice(start, end);
}

export function toggled(all: ReadonlySet<string>, ids: readonly string[]): ReadonlySet<string> {
  const next = new Set(all);
  for (const id of ids) if (!next.delete(id)) next.add(id);
  return next;
}

/** The marks after an edit, by the new ids; and the new ids of those that were selected. */
export function carried(
  old: Doc,
  now: Doc,
  marks: Marks,
  selection: readonly string[],
): { readonly marks: Marks; readonly selection: readonly string[] } {
  const isMarked = marks.hidden.size + marks.locked.size + marks.gone.length > 0;
  if (!isMarked && selection.length === 0) return { marks, selection };
  const pairs = pairsOf(old, now);
  const kept = (ids: Iterable<string>): string[] =>
    [...ids].map((id) => pairs.get(id)).filter((id) => id !== undefined);
  if (!isMarked) return { marks, selection: kept(selection) };
  const [hidden, locked] = [new Set(kept(marks.hidden)), new Set(kept(marks.locked))];
  const left = [...new Set([...marks.hidden, ...marks.locked])].filter((id) => old.byId.has(id) && !pairs.has(id));
  const gone = [
    ...marks.gone,
    ...left.map((id) => ({
      text: textOf(old, id),
      isHidden: marks.hidden.has(id),
      isLocked: marks.locked.has(id),
    })),
  ];
  const isOld = new Set(pairs.values());
  for (const id of now.byId.keys()) {
    const at = isOld.has(id) ? -1 : gone.findIndex((one) => one.text === textOf(now, id));
    if (at < 0) continue;
    const [back] = gone.splice(at, 1);
    if (back!.isHidden) hidden.add(id);
    if (back!.isLocked) locked.add(id);
  }
  return { marks: { hidden, locked, gone }, selection: kept(selection) };
}
