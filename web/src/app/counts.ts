// What the engine counted, as the plan and the panels show it. Nothing is counted here.

import type { Item, Zone } from '../edit/model';
import type { State } from './state';

const SLOTS_OF_FIELD = 3;

/** The slot of a zone among all; -1: it has none. */
export function slotOfZone(state: State, zone: Zone): number {
  const field = state.doc.fields[zone.field];
  if (zone.kind !== 'zone' || !field) return -1;
  const slot = SLOTS_OF_FIELD * field.index + zone.index;
  return Number.isInteger(slot) && slot >= 0 && slot < 24 ? slot : -1;
}

/** How many points of the scene count in the zone; null: not known. */
export function pointsIn(state: State, zone: Zone): number | null {
  const slot = slotOfZone(state, zone);
  return slot < 0 ? null : (state.counts?.inside[slot] ?? null);
}

export function objectsIn(state: State, zone: Zone): number {
  const slot = slotOfZone(state, zone);
  return slot < 0 ? 0 : (state.session?.inhabitants[24 * state.moment + slot] ?? 0);
}

/** The reported state at this moment: after the debounce time with a recording, else of the frame alone. */
export function isOccupied(state: State, zone: Zone): boolean {
  const slot = slotOfZone(state, zone);
  if (slot < 0) return false;
  if (state.session) return (((state.session.occupied[state.moment] ?? 0) >> slot) & 1) === 1;
  return state.counts?.reached[slot] ?? false;
}

export function occupiedIds(state: State): ReadonlySet<string> {
  const zones = state.doc.fields.flatMap((field) => field.zones);
  return new Set(zones.filter((zone) => isOccupied(state, zone)).map((zone) => zone.id));
}

/** What stands beneath the name on the plan. */
export function noteOf(state: State, item: Item): string {
  if (item.kind !== 'zone') return '';
  const points = pointsIn(state, item);
  return points === null ? '' : `${points} ${points === 1 ? 'point' : 'points'}`;
}

export interface Lamp {
  readonly name: string;
  readonly isOccupied: boolean;
  readonly isHigh: boolean;
}

/** The three outputs of the active field. */
export function lampsOf(state: State): readonly (Lamp | null)[] {
  const field = state.doc.fields.find((one) => one.index === state.activeField);
  return [0, 1, 2].map((slot) => {
    const zone = field?.zones.find((one) => one.index === slot);
    if (!zone) return null;
    const occupied = isOccupied(state, zone);
    const isActiveHigh = state.doc.options.triggerActiveLevel === 'high';
    const level =
      state.session && state.session.activeField === state.activeField
        ? ((state.session.outputs[state.moment] ?? 0) >> slot) & 1
        : Number(occupied === isActiveHigh);
    return { name: zone.name, isOccupied: occupied, isHigh: level === 1 };
  });
}
