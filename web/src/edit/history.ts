// One history of the whole document, text edits included. Steps are changes; without limit.

import { apply, between, type Change, isNothing, reverse } from '../text/change';

export interface Step {
  readonly label: string;
  readonly change: Change;
}
export interface History {
  readonly text: string;
  readonly done: readonly Step[];
  readonly undone: readonly Step[];
}

export function begin(text: string): History {
  return { text, done: [], undone: [] };
}

/** After an edit. Nothing happens where the text stays as it is; what was undone is given up. */
export function stepped(history: History, label: string, text: string): History {
  const change = between(history.text, text);
  if (isNothing(change)) return history;
  return { text, done: [...history.done, { label, change }], undone: [] };
}

export function undo(history: History): History {
  const last = history.done.at(-1);
  if (!last) return history;
  return {
    text: apply(history.text, reverse(last.change)),
    done: history.done.slice(0, -1),
    undone: [...history.undone, last],
  };
}

export function redo(history: History): History {
  const last = history.undone.at(-1);
  if (!last) return history;
  return {
    text: apply(history.text, last.change),
    done: [...history.done, last],
    undone: history.undone.slice(0, -1),
  };
}

/** The same, with the last `count` steps as one. */
export function squashed(history: History, count: number, label: string): History {
  if (count < 2 || count > history.done.length) return history;
  const kept = history.done.slice(0, -count);
  const before = history.done
    .slice(-count)
    .reduceRight((text, step) => apply(text, reverse(step.change)), history.text);
  const change = between(before, history.text);
  return { ...history, done: isNothing(change) ? kept : [...kept, { label, change }] };
}
