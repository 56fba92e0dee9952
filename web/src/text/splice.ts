// Edits of a JSON text that leave order, formatting and unknown keys elsewhere as they are.

import type { ArrayNode, Node, ObjectNode } from './json';
import { inlined, type Json, laidOut } from './layout';

/** Replaces a part of the text. */
export interface Splice {
  readonly from: number;
  readonly to: number;
  readonly text: string;
}

/** The text with all of them done. They lie apart from each other, in any order. */
export function spliced(text: string, splices: readonly Splice[]): string {
  let result = '';
  let at = 0;
  for (const one of [...splices].sort((a, b) => a.from - b.from)) {
    if (one.from < at) throw new Error('two edits of one place');
    result += text.slice(at, one.from) + one.text;
    at = one.to;
  }
  return result + text.slice(at);
}

/** White space from the last line break before a place, or null where something else stands on that line. */
function indentAt(text: string, at: number): string | null {
  const begin = text.lastIndexOf('\n', at - 1) + 1;
  const before = text.slice(begin, at);
  return begin > 0 && /^[ \t]*$/.test(before) ? before : null;
}

/** What one level of this text is indented by. */
export function unitOf(text: string): string {
  return /\n([ \t]+)\S/.exec(text)?.[1] ?? '  ';
}

function lineBreakOf(text: string): string {
  return text.includes('\r\n') ? '\r\n' : '\n';
}

/** The indentation of the line on which a place is. */
function lineIndent(text: string, at: number): string {
  const begin = text.lastIndexOf('\n', at - 1) + 1;
  return /^[ \t]*/.exec(text.slice(begin))?.[0] ?? '';
}

function written(text: string, value: Json, indent: string | null): string {
  return indent === null ? inlined(value) : laidOut(value, indent, unitOf(text)).replaceAll('\n', lineBreakOf(text));
}

/** The value in the place of another. */
export function replaced(text: string, node: Node, value: Json): Splice {
  const isOneLine = !text.includes('\n');
  return {
    from: node.start,
    to: node.end,
    text: written(text, value, isOneLine ? null : lineIndent(text, node.start)),
  };
}

interface Part {
  readonly start: number;
  readonly end: number;
}

// What stands between two parts of a list or object: as between its neighbours.
function inserted(
  text: string,
  whole: Part,
  parts: readonly Part[],
  at: number,
  make: (indent: string | null) => string,
): Splice {
  const before = parts[at - 1];
  const after = parts[at];
  if (before && after) {
    const indent = indentAt(text, after.start);
    const separator = text.slice(before.end, after.start);
    return indent === null || !separator.includes('\n')
      ? { from: before.end, to: before.end, text: ', ' + make(null) }
      : { from: before.end, to: before.end, text: ',' + lineBreakOf(text) + indent + make(indent) };
  }
  const neighbour = before ?? after;
  if (neighbour) {
    const indent = indentAt(text, neighbour.start);
    const first = parts[0];
    const ownLine = indent !== null && (parts.length === 1 || (before ? true : first === neighbour));
    const separator = ownLine ? lineBreakOf(text) + indent : ' ';
    const value = make(ownLine ? indent : null);
    return before
      ? { from: before.end, to: before.end, text: ',' + separator + value }
      : { from: neighbour.start, to: neighbour.start, text: value + ',' + separator };
  }
  if (!text.includes('\n')) return { from: whole.start + 1, to: whole.end - 1, text: make(null) };
  const outer = lineIndent(text, whole.start);
  const inner = outer + unitOf(text);
  const brk = lineBreakOf(text);
  return { from: whole.start + 1, to: whole.end - 1, text: brk + inner + make(inner) + brk + outer };
}

/** The value as item number `at` of the list. */
export function itemInserted(text: string, list: ArrayNode, at: number, value: Json): Splice {
  return inserted(text, list, list.items, at, (indent) => written(text, value, indent));
}

/** The value as last member of the object. */
export function memberAdded(text: string, object: ObjectNode, key: string, value: Json): Splice {
  const parts = object.members.map((one) => ({ start: one.keyStart, end: one.value.end }));
  return inserted(
    text,
    object,
    parts,
    parts.length,
    (indent) => `${JSON.stringify(key)}: ${written(text, value, indent)}`,
  );
}

/** A list in the place of a single value that stands without brackets, followed by another value. */
export function listMade(text: string, single: Node, value: Json): Splice {
  return { from: single.start, to: single.end, text: `[${text.slice(single.start, single.end)}, ${inlined(value)}]` };
}

/** Without item number `at`, and without the comma beside it. */
export function itemRemoved(list: ArrayNode, at: number): Splice {
  const before = list.items[at - 1];
  const item = list.items[at];
  const after = list.items[at + 1];
  if (!item) throw new Error('there is nothing to remove');
  if (before) return { from: before.end, to: item.end, text: '' };
  if (after) return { from: item.start, to: after.start, text: '' };
  return { from: list.start + 1, to: list.end - 1, text: '' };
}
