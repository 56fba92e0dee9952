// The pointer on the plan. One gesture at a time; each computes from where it began.

import { middle, minus, plus, ringOf } from '../edit/geometry';
import { moved } from '../edit/moves';
import type { Pt } from '../edit/model';
import { beginDrag, cancelDrag, type Drag, dragTo, endDrag, say } from '../app/actions';
import { closePolygon, placePoint } from '../app/draw';
import { get, set } from '../app/state';
import { gridStep, type PlanCamera, type Size, toPixel, toPlane, zoomed } from './camera';
import { Fingers, shift, spread, type TwoFingers } from './fingers';
import { dragged, type Handle } from './handles';
import { itemsAt, itemsIn, nextBelow } from './pick';
import { snapped } from './snap';

type Gesture =
  | { readonly kind: 'pan'; readonly camera: PlanCamera; readonly clears: boolean }
  | {
      readonly kind: 'move';
      readonly drag: Drag;
      readonly ids: readonly string[];
      readonly from: Pt;
      readonly corner: Pt;
      readonly wasSelected: boolean;
    }
  | { readonly kind: 'handle'; readonly drag: Drag; readonly id: string; readonly handle: Handle }
  | { readonly kind: 'band'; readonly from: Pt }
  | { readonly kind: 'draw'; readonly began: boolean };

const CLICK = 4; // pixels

/** In steps of the grid that is seen, and finer where that is coarse. */
export function snapStep(camera: PlanCamera): number {
  return gridStep(camera) / 10;
}

export class PlanPointer {
  private gesture: Gesture | null = null;
  private start: Pt = { x: 0, y: 0 };
  private hasMoved = false;
  private readonly fingers = new Fingers();

  constructor(
    private readonly sizeOf: () => Size,
    private readonly showBand: (band: { a: Pt; b: Pt } | null) => void,
  ) {}

  private plane(pixel: Pt): Pt {
    return toPlane(get().camera, this.sizeOf(), pixel);
  }

  private isHidden(id: string): boolean {
    return get().marks.hidden.has(id);
  }

  private snap(p: Pt, event: PointerEvent, without: readonly string[], about: Pt | null): Pt {
    const { doc, camera, snapToGrid, snapToShapes } = get();
    const isFree = event.altKey;
    return snapped(doc, p, {
      scale: camera.scale,
      grid: snapToGrid && !isFree ? snapStep(camera) : null,
      toShapes: snapToShapes && !isFree,
      without: (id) => without.includes(id) || this.isHidden(id),
      about: event.shiftKey ? about : null,
    }).p;
  }

  down(event: PointerEvent, pixel: Pt, handle: { id: string; handle: Handle } | null): void {
    if (this.fingers.isPalm(event)) return;
    if (event.pointerType === 'pen' && this.gesture) this.giveUp();
    if (this.fingers.down(event, pixel) > 1) return this.giveUp();
    this.start = pixel;
    this.hasMoved = false;
    const { tool, camera } = get();
    if (event.button === 1 || event.button === 2) this.gesture = { kind: 'pan', camera, clears: false };
    else if (handle && tool === 'select') this.grab(handle.id, handle.handle);
    else if (tool !== 'select') this.beginDrawing(event, pixel);
    else this.press(event, this.plane(pixel));
  }

  private isLocked(id: string): boolean {
    const { doc, marks } = get();
    if (!marks.locked.has(id)) return false;
    say(`${doc.byId.get(id)?.name ?? 'It'} is locked.`);
    return true;
  }

  private grab(id: string, handle: Handle): void {
    if (this.isLocked(id)) return;
    const drag = beginDrag(handle.kind === 'edge' ? 'Add a corner' : handle.kind === 'turn' ? 'Turn' : 'Move a corner');
    if (!drag) return;
    set({ vertex: handle.kind === 'vertex' ? handle.index : handle.kind === 'edge' ? handle.index + 1 : -1 });
    this.gesture = { kind: 'handle', drag, id, handle };
  }

  private beginDrawing(event: PointerEvent, pixel: Pt): void {
    const { sketch, tool, camera } = get();
    if (tool === 'polygon') {
      this.gesture = { kind: 'pan', camera, clears: false };
      return;
    }
    const began = sketch.length === 0 || (tool === 'measure' && sketch.length > 1);
    if (began) placePoint(this.snap(this.plane(pixel), event, [], null));
    this.gesture = { kind: 'draw', began };
  }

  private press(event: PointerEvent, p: Pt): void {
    const { doc, camera, selection } = get();
    const under = itemsAt(doc, p, 6 / camera.scale, (id) => this.isHidden(id));
    const chosen = under.find((id) => selection.includes(id));
    const id = chosen ?? under[0];
    if (id === undefined) {
      this.gesture = event.shiftKey ? { kind: 'band', from: p } : { kind: 'pan', camera, clears: true };
      return;
    }
    if (event.shiftKey) {
      set({
        selection: selection.includes(id) ? selection.filter((one) => one !== id) : [...selection, id],
        vertex: -1,
      });
      return;
    }
    if (chosen === undefined) set({ selection: [id], vertex: -1 });
    const ids = chosen === undefined ? [id] : selection;
    const drag = ids.some((one) => this.isLocked(one)) ? null : beginDrag('Move');
    if (!drag) return;
    const corners = ids.flatMap((one) => ringOf(drag.doc.byId.get(one)!));
    const corner = corners.reduce(
      (a, b) => (Math.hypot(b.x - p.x, b.y - p.y) < Math.hypot(a.x - p.x, a.y - p.y) ? b : a),
      corners[0] ?? p,
    );
    this.gesture = { kind: 'move', drag, ids, from: p, corner, wasSelected: chosen !== undefined };
  }

  move(event: PointerEvent, pixel: Pt): void {
    if (this.fingers.isPalm(event)) return;
    const isDown = this.fingers.isDown(event);
    const two = this.fingers.move(event, pixel);
    if (two) return this.pinch(two);
    this.hasMoved ||= isDown && Math.hypot(pixel.x - this.start.x, pixel.y - this.start.y) > CLICK;
    const p = this.plane(pixel);
    const { tool, sketch } = get();
    set({ pointer: tool === 'select' ? p : this.snap(p, event, [], sketch.at(-1) ?? null) });
    if (this.gesture && this.hasMoved) this.follow(event, pixel, p, this.gesture);
  }

  private follow(event: PointerEvent, pixel: Pt, p: Pt, gesture: Gesture): void {
    if (gesture.kind === 'pan') {
      const { camera } = gesture;
      set({
        camera: {
          ...camera,
          x: camera.x - (pixel.x - this.start.x) / camera.scale,
          y: camera.y + (pixel.y - this.start.y) / camera.scale,
        },
      });
    } else if (gesture.kind === 'move') {
      const to = this.snap(plus(gesture.corner, minus(p, gesture.from)), event, gesture.ids, gesture.corner);
      dragTo(gesture.drag, (doc) => moved(doc, gesture.ids, minus(to, gesture.corner)));
    } else if (gesture.kind === 'handle') {
      const { handle, id } = gesture;
      const turns = handle.kind === 'turn' || handle.kind === 'begin' || handle.kind === 'end';
      const to = turns && !event.shiftKey ? p : this.snap(p, event, [id], turns ? { x: 0, y: 0 } : handle.p);
      dragTo(gesture.drag, (doc) => dragged(doc, id, handle, handle.p, to));
    } else if (gesture.kind === 'band') {
      this.showBand({ a: gesture.from, b: p });
    }
  }

  // Their middle keeps the place that it is on.
  private pinch(two: TwoFingers): void {
    const { camera } = get();
    const by = shift(two);
    const panned = { ...camera, x: camera.x - by.x / camera.scale, y: camera.y + by.y / camera.scale };
    set({ camera: zoomed(panned, this.sizeOf(), middle(...two.now), spread(two)), pointer: null });
  }

  // A second finger turns what the first one began into a move of the view.
  private giveUp(): void {
    const began = this.gesture?.kind === 'draw' && this.gesture.began;
    this.cancel();
    if (began) set({ sketch: get().sketch.slice(0, -1) });
  }

  up(event: PointerEvent, pixel: Pt): void {
    if (this.fingers.isPalm(event)) return;
    this.fingers.up(event);
    const gesture = this.gesture;
    this.gesture = null;
    this.showBand(null);
    if (!gesture) return;
    const p = this.plane(pixel);
    if (gesture.kind === 'draw') this.drawn(event, p, gesture.began);
    else if (gesture.kind === 'band')
      set({ selection: itemsIn(get().doc, gesture.from, p, (id) => this.isHidden(id)), vertex: -1 });
    else if (gesture.kind === 'pan') this.clicked(event, pixel, p, gesture.clears);
    else if (this.hasMoved) endDrag(gesture.drag);
    else if (gesture.kind === 'move' && gesture.wasSelected && get().selection.length === 1) this.selectBelow(p);
  }

  private selectBelow(p: Pt): void {
    const { doc, camera, selection } = get();
    const under = itemsAt(doc, p, 6 / camera.scale, (id) => this.isHidden(id));
    const next = nextBelow(under, selection[0]);
    if (next !== undefined) set({ selection: [next], vertex: -1 });
  }

  private drawn(event: PointerEvent, p: Pt, began: boolean): void {
    if (began && !this.hasMoved) return;
    placePoint(this.snap(p, event, [], get().sketch.at(-1) ?? null));
  }

  private clicked(event: PointerEvent, pixel: Pt, p: Pt, clears: boolean): void {
    if (this.hasMoved) return;
    const { tool, sketch, camera } = get();
    if (tool === 'polygon' && event.button === 0) {
      const first = sketch[0] && toPixel(camera, this.sizeOf(), sketch[0]);
      if (first && sketch.length > 2 && Math.hypot(first.x - pixel.x, first.y - pixel.y) < 10) closePolygon();
      else placePoint(this.snap(p, event, [], sketch.at(-1) ?? null));
    } else if (clears) {
      set({ selection: [], vertex: -1 });
    }
  }

  /** The pointer is gone without an end. */
  lost(event: PointerEvent): void {
    this.fingers.up(event);
    this.cancel();
  }

  /** Gives up what is under way; the document is as it was. */
  private cancel(): void {
    this.gesture = null;
    this.showBand(null);
    cancelDrag();
  }
}
