// A change of a text is a value: it can be applied and reversed.

export interface Change {
  readonly at: number;
  readonly removed: string;
  readonly inserted: string;
}

export const NOTHING: Change = { at: 0, removed: '', inserted: '' };

export function isNothing(change: Change): boolean {
  return change.removed === change.inserted;
}

/** The text after the change. Throws when the text is not the one that the change was made for. */
export function apply(text: string, change: Change): string {
  const end = change.at + change.removed.length;
  if (text.slice(change.at, end) !== change.removed) throw new Error('the change belongs to another text');
  return text.slice(0, change.at) + change.inserted + text.slice(end);
}

export function reverse(change: Change): Change {
  return { at: change.at, removed: change.inserted, inserted: change.removed };
}

/** The shortest single change that leads from one text to the other. */
export function between(before: string, after: string): Change {
  if (before === after) return NOTHING;
  const most = Math.min(before.length, after.length);
  let head = 0;
  while (head < most && before.charCodeAt(head) === after.charCodeAt(head)) ++head;
  let tail = 0;
  while (
    tail < most - head &&
    before.charCodeAt(before.length - 1 - tail) === after.charCodeAt(after.length - 1 - tail)
  ) {
    ++tail;
  }
  return {
    at: head,
    removed: before.slice(head, before.length - tail),
    inserted: after.slice(head, after.length - tail),
  };
}
