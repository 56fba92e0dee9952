// What a person can do to the document, each as one step of the history. A refusal is said and changes nothing.

import { redo, squashed, stepped, undo } from '../edit/history';
import { Refusal } from '../edit/limits';
import type { Doc } from '../edit/model';
import { get, set, textOf } from './state';

let timer = 0;

/** A note that goes away by itself; what went wrong stays longer. */
export function say(text: string, isError = false): void {
  set({ message: { text, isError } });
  clearTimeout(timer);
  timer = window.setTimeout(() => set({ message: null }), isError ? 15000 : 6000);
}

export function sayError(error: unknown): void {
  say(error instanceof Error ? error.message : String(error), true);
}

// Whether the document can be edited with the mouse now.
function isReady(): boolean {
  if (get().fault === null) return true;
  say('The text is not JSON at the moment. Mend it, or undo, before you draw.', true);
  return false;
}

/** The edit as a step. Gives whether anything changed. */
export function edit(label: string, make: (doc: Doc) => string): boolean {
  if (!isReady()) return false;
  const { doc, history } = get();
  try {
    const next = stepped(history, label, make(doc));
    if (next === history) return false;
    set({ history: next, live: null, message: null });
    return true;
  } catch (error) {
    if (!(error instanceof Refusal)) throw error;
    say(error.message, true);
    return false;
  }
}

/** Where a drag began. */
export interface Drag {
  readonly doc: Doc;
  readonly label: string;
}

export function beginDrag(label: string): Drag | null {
  return isReady() ? { doc: get().doc, label } : null;
}

/** The document as the drag would leave it, computed from where it began. */
export function dragTo(drag: Drag, make: (doc: Doc) => string): void {
  try {
    set({ live: make(drag.doc), message: null });
  } catch (error) {
    if (!(error instanceof Refusal)) throw error;
    say(error.message, true);
  }
}

export function endDrag(drag: Drag): void {
  const { live, history } = get();
  if (live !== null) set({ history: stepped(history, drag.label, live), live: null });
}

export function cancelDrag(): void {
  if (get().live !== null) set({ live: null });
}

/** Typing in the text: what is typed in one go is one step. */
export function typed(text: string, isSameGo: boolean): void {
  const { history } = get();
  const next = stepped(history, 'Typing', text);
  const [last, before] = [next.done.at(-1), next.done.at(-2)];
  const joins = isSameGo && next !== history && last?.label === 'Typing' && before?.label === 'Typing';
  set({ history: joins ? squashed(next, 2, 'Typing') : next, live: null });
}

export function undoStep(): void {
  if (get().live !== null) return cancelDrag();
  const { history } = get();
  const label = history.done.at(-1)?.label;
  if (label === undefined) return say('There is nothing to undo.');
  set({ history: undo(history) });
  say(`Undone: ${label}`);
}

export function redoStep(): void {
  const { history } = get();
  const label = history.undone.at(-1)?.label;
  if (label === undefined || get().live !== null) return say('There is nothing to redo.');
  set({ history: redo(history) });
  say(`Redone: ${label}`);
}

export function isUnsaved(): boolean {
  return textOf() !== get().savedText;
}
