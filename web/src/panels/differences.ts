// Which events only one of two sessions has. Events are compared as they are told; equal ones are paired off.

import type { Session, SessionEvent } from '../../engine/types';

export interface Compared {
  readonly event: SessionEvent;
  readonly change: 'same' | 'gained' | 'lost';
}

export function compared(before: readonly SessionEvent[], after: readonly SessionEvent[]): Compared[] {
  const left = new Map<string, number>();
  for (const event of before) left.set(event.line, (left.get(event.line) ?? 0) + 1);
  const result: Compared[] = after.map((event) => {
    const count = left.get(event.line) ?? 0;
    if (count > 0) left.set(event.line, count - 1);
    return { event, change: count > 0 ? 'same' : 'gained' };
  });
  // What is left over of the old ones, the last of equal ones.
  for (const event of [...before].reverse()) {
    const count = left.get(event.line) ?? 0;
    if (count === 0) continue;
    left.set(event.line, count - 1);
    result.push({ event, change: 'lost' });
  }
  return result.sort((a, b) => a.event.moment - b.event.moment);
}

/** From where to where a slot's bit is set, as moments; the end is not in it. */
export function intervals(session: Session, bits: Uint32Array, slot: number): { from: number; to: number }[] {
  const found: { from: number; to: number }[] = [];
  for (let k = 0; k < session.moments; ++k) {
    if (((bits[k]! >> slot) & 1) === 0) continue;
    const last = found.at(-1);
    if (last && last.to === k) last.to = k + 1;
    else found.push({ from: k, to: k + 1 });
  }
  return found;
}
