// Two fingers on a view: what they held before and hold now. A pen in hand makes fingers count for nothing, since the
// hand that holds it lies on the screen.

import { distance, middle } from '../edit/geometry';
import type { Pt } from '../edit/model';

export interface TwoFingers {
  readonly before: readonly [Pt, Pt];
  readonly now: readonly [Pt, Pt];
}

type Pointer = Pick<PointerEvent, 'pointerId' | 'pointerType'>;

export class Fingers {
  private readonly held = new Map<number, Pt>();
  private pen: number | null = null;

  /** Whether this pointer is a hand on the screen beside a pen. */
  isPalm({ pointerType }: Pointer): boolean {
    return pointerType === 'touch' && this.pen !== null;
  }

  /** Gives how many pointers are down now. */
  down(event: Pointer, p: Pt): number {
    if (event.pointerType === 'pen') {
      this.pen = event.pointerId;
      this.held.clear();
    }
    this.held.set(event.pointerId, p);
    return this.held.size;
  }

  isDown({ pointerId }: Pointer): boolean {
    return this.held.has(pointerId);
  }

  /** What two fingers do; null: it is not two that are down. */
  move({ pointerId }: Pointer, p: Pt): TwoFingers | null {
    const was = this.held.get(pointerId);
    if (!was) return null;
    this.held.set(pointerId, p);
    if (this.held.size !== 2) return null;
    const other = [...this.held].find(([id]) => id !== pointerId)![1];
    return { before: [was, other], now: [p, other] };
  }

  up({ pointerId }: Pointer): void {
    this.held.delete(pointerId);
    if (this.pen === pointerId) this.pen = null;
  }
}

/** How much farther apart they are. */
export function spread({ before, now }: TwoFingers): number {
  return distance(...now) / Math.max(1, distance(...before));
}

/** How far their middle has moved. */
export function shift({ before, now }: TwoFingers): Pt {
  const [from, to] = [middle(...before), middle(...now)];
  return { x: to.x - from.x, y: to.y - from.y };
}
