// What the keyboard does, one list: it is obeyed, and it is what "?" shows.

import { plus } from '../edit/geometry';
import { allRemoved, vertexRemoved } from '../edit/items';
import { toggled } from '../edit/marks';
import type { Pt, Zone } from '../edit/model';
import { duplicated, mirrored, moved, vertexMoved } from '../edit/moves';
import { zoomed } from '../scene/camera';
import { handlesOf } from '../scene/handles';
import { snapStep } from '../scene/pointer';
import { cancelDrag, edit, redoStep, say, undoStep } from './actions';
import { chooseTool, closePolygon } from './draw';
import { pick } from './files';
import { fitPoints, fitZones } from './look';
import { seek, togglePlay } from './play';
import { save } from './save';
import { get, set } from './state';

export interface Key {
  readonly keys: string;
  readonly what: string;
  readonly test: (event: KeyboardEvent) => boolean;
  readonly act: (event: KeyboardEvent) => void;
  /** Only while the view has the focus. */
  readonly inView?: boolean;
  /** While a text is typed, too. */
  readonly always?: boolean;
}

const isControl = (event: KeyboardEvent): boolean => event.ctrlKey || event.metaKey;
const plain =
  (key: string) =>
  (event: KeyboardEvent): boolean =>
    !isControl(event) && !event.altKey && event.key.toLowerCase() === key;
const control =
  (key: string) =>
  (event: KeyboardEvent): boolean =>
    isControl(event) && event.key.toLowerCase() === key;

const ARROWS: Readonly<Record<string, Pt>> = {
  ArrowLeft: { x: -1, y: 0 },
  ArrowRight: { x: 1, y: 0 },
  ArrowUp: { x: 0, y: 1 },
  ArrowDown: { x: 0, y: -1 },
};

function isLockedAmong(ids: readonly string[]): boolean {
  const { locked } = get().marks;
  return ids.some((id) => locked.has(id));
}

// The selected corner, or everything that is selected, or the view.
function arrow(event: KeyboardEvent): void {
  const by = ARROWS[event.key]!;
  const { selection, vertex, doc, camera, view, orbit } = get();
  if (view === 'solid') {
    return set({
      orbit: { ...orbit, yaw: orbit.yaw - by.x * 0.1, pitch: Math.min(1.55, Math.max(0.05, orbit.pitch + by.y * 0.1)) },
    });
  }
  const item = selection.length === 1 ? doc.byId.get(selection[0]!) : undefined;
  if (isLockedAmong(selection)) return say('What is selected is locked.');
  const step = event.shiftKey ? 0.1 : 0.01;
  const way = { x: by.x * step, y: by.y * step };
  if (item && vertex >= 0) {
    const from = handlesOf(item, 0).find((one) => one.kind === 'vertex' && one.index === vertex);
    if (from) edit('Move a corner', (now) => vertexMoved(now, item, vertex, plus(from.p, way)));
  } else if (selection.length > 0) {
    edit('Move', (now) => moved(now, selection, way));
  } else {
    set({ camera: { ...camera, x: camera.x + (by.x * 60) / camera.scale, y: camera.y + (by.y * 60) / camera.scale } });
  }
}

export function removeSelected(): void {
  const { selection, vertex, doc, tool, sketch } = get();
  if (tool !== 'select') return set({ sketch: sketch.slice(0, -1) });
  const item = selection.length === 1 ? doc.byId.get(selection[0]!) : undefined;
  if (selection.length === 0) return say('Nothing is selected.');
  if (isLockedAmong(selection)) return say('What is selected is locked.');
  if (item && item.kind !== 'line' && item.shape?.kind === 'polygon' && vertex >= 0) {
    edit('Remove a corner', (now) => vertexRemoved(now, item, vertex));
    set({ vertex: -1 });
  } else {
    edit(item ? `Remove ${item.name}` : `Remove ${selection.length} shapes`, (now) => allRemoved(now, selection));
  }
}

function walkItems(by: number): void {
  const { doc, selection } = get();
  const ids = [...doc.byId.keys()];
  if (ids.length === 0) return;
  const at = selection.length > 0 ? ids.indexOf(selection[0]!) : by > 0 ? -1 : 0;
  set({ selection: [ids[(at + by + ids.length) % ids.length]!], vertex: -1 });
}

function walkCorners(by: number): void {
  const { doc, selection, vertex } = get();
  const item = selection.length === 1 ? doc.byId.get(selection[0]!) : undefined;
  const count = item ? handlesOf(item, 0).filter((one) => one.kind === 'vertex').length : 0;
  if (count > 0) set({ vertex: vertex < 0 && by < 0 ? count - 1 : (vertex + by + count) % count });
}

function escape(): void {
  const { sketch, tool, selection, vertex, showHelp, live } = get();
  if (showHelp) return set({ showHelp: false });
  if (live !== null) return cancelDrag();
  if (sketch.length > 0) return set({ sketch: [] });
  if (tool !== 'select') return chooseTool('select');
  if (vertex >= 0) return set({ vertex: -1 });
  if (selection.length > 0) set({ selection: [] });
}

function zoom(factor: number): void {
  const { camera, size, view, orbit } = get();
  if (view === 'solid') return set({ orbit: { ...orbit, distance: orbit.distance / factor } });
  set({ camera: zoomed(camera, size, { x: size.width / 2, y: size.height / 2 }, factor) });
}

export function duplicateSelected(): void {
  const { selection, camera } = get();
  const by = 2 * snapStep(camera) * 5;
  const before = get().doc.byId.size;
  if (!edit('Duplicate', (doc) => duplicated(doc, selection, { x: by, y: by }))) return;
  const { doc } = get();
  if (doc.byId.size > before) {
    const names = new Set(selection.map((id) => doc.byId.get(id)?.name));
    const copies = [...doc.byId.values()].filter(
      (item) =>
        !names.has(item.name) &&
        [...names].some((name) => item.name.startsWith((name ?? '').slice(0, 8))) &&
        / \d+$/.test(item.name),
    );
    set({ selection: copies.slice(-selection.length).map((item) => item.id), vertex: -1 });
  }
}

export function mirrorSelected(axis: 'x' | 'y'): void {
  const { selection } = get();
  if (isLockedAmong(selection)) return say('What is selected is locked.');
  edit('Mirror', (doc) => mirrored(doc, selection, axis));
}

function toggle(mark: 'hidden' | 'locked'): void {
  const { selection, marks } = get();
  set({ marks: { ...marks, [mark]: toggled(marks[mark], selection) } });
}

export const KEYS: readonly Key[] = [
  {
    keys: '?',
    what: 'Show or hide this list',
    test: (event) => event.key === '?',
    act: () => set({ showHelp: !get().showHelp }),
  },
  {
    keys: 'Ctrl+Z',
    what: 'Undo, without limit',
    always: true,
    test: (event) => control('z')(event) && !event.shiftKey,
    act: undoStep,
  },
  {
    keys: 'Ctrl+Y, Ctrl+Shift+Z',
    what: 'Redo',
    always: true,
    test: (event) => control('y')(event) || (control('z')(event) && event.shiftKey),
    act: redoStep,
  },
  { keys: 'Ctrl+S', what: 'Save the document', always: true, test: control('s'), act: () => void save() },
  { keys: 'Ctrl+O', what: 'Open files', always: true, test: control('o'), act: () => void pick() },
  { keys: 'V', what: 'Select and move', test: plain('v'), act: () => chooseTool('select') },
  {
    keys: 'P',
    what: 'Draw a polygon; Enter, a double click or its first corner closes it',
    test: plain('p'),
    act: () => chooseTool('polygon'),
  },
  { keys: 'R', what: 'Draw a rectangle, corner to corner', test: plain('r'), act: () => chooseTool('rectangle') },
  {
    keys: 'S',
    what: 'Draw a sector: where it begins, then counterclockwise to where it ends',
    test: plain('s'),
    act: () => chooseTool('sector'),
  },
  {
    keys: 'L',
    what: 'Draw a counter line; its left side is on the left as it is drawn',
    test: plain('l'),
    act: () => chooseTool('line'),
  },
  { keys: 'M', what: 'Measure a length and an angle', test: plain('m'), act: () => chooseTool('measure') },
  { keys: 'Enter', what: 'Close the polygon', inView: true, test: plain('enter'), act: closePolygon },
  {
    keys: 'Escape',
    what: 'Give up what is under way; then the tool, the corner, the selection',
    test: plain('escape'),
    act: escape,
  },
  {
    keys: 'Delete, Backspace',
    what: 'Remove the chosen corner, else what is selected; while drawing the last corner',
    inView: true,
    test: (event) => event.key === 'Delete' || event.key === 'Backspace',
    act: removeSelected,
  },
  {
    keys: 'Arrows',
    what: 'Move the chosen corner or the selection by 1 cm, with Shift by 10 cm; else the view',
    inView: true,
    test: (event) => event.key in ARROWS && !isControl(event),
    act: arrow,
  },
  {
    keys: 'N, B',
    what: 'Next zone or line, the one before',
    test: (event) => plain('n')(event) || plain('b')(event),
    act: (event) => walkItems(event.key.toLowerCase() === 'n' ? 1 : -1),
  },
  {
    keys: 'C, X',
    what: 'Next corner of the selected shape, the one before',
    test: (event) => plain('c')(event) || plain('x')(event),
    act: (event) => walkCorners(event.key.toLowerCase() === 'c' ? 1 : -1),
  },
  {
    keys: 'Ctrl+A',
    what: 'Select everything',
    inView: true,
    test: control('a'),
    act: () => set({ selection: [...get().doc.byId.keys()], vertex: -1 }),
  },
  { keys: 'Ctrl+D', what: 'Duplicate', test: control('d'), act: duplicateSelected },
  {
    keys: 'H, J',
    what: 'Mirror left and right, up and down',
    test: (event) => plain('h')(event) || plain('j')(event),
    act: (event) => mirrorSelected(event.key.toLowerCase() === 'h' ? 'x' : 'y'),
  },
  { keys: 'I', what: 'Hide or show what is selected', test: plain('i'), act: () => toggle('hidden') },
  { keys: 'K', what: 'Lock or free what is selected', test: plain('k'), act: () => toggle('locked') },
  {
    keys: '+, −',
    what: 'Nearer, farther',
    test: (event) => !isControl(event) && ['+', '=', '-'].includes(event.key),
    act: (event) => zoom(event.key === '-' ? 1 / 1.25 : 1.25),
  },
  {
    keys: 'F',
    what: 'What is selected, or all zones, in view',
    test: plain('f'),
    act: () => fitZones(get().selection.map((id) => get().doc.byId.get(id) as Zone)),
  },
  { keys: 'A', what: 'All points in view', test: plain('a'), act: fitPoints },
  {
    keys: '3',
    what: 'Plan or three dimensions',
    test: plain('3'),
    act: () => set({ view: get().view === 'plan' ? 'solid' : 'plan' }),
  },
  { keys: 'Space', what: 'Play or pause', inView: true, test: plain(' '), act: togglePlay },
  {
    keys: ', and .',
    what: 'One moment back, one on',
    test: (event) => plain(',')(event) || plain('.')(event),
    act: (event) => seek(get().moment + (event.key === '.' ? 1 : -1)),
  },
];

function isTyping(target: EventTarget | null): boolean {
  return (
    target instanceof HTMLTextAreaElement ||
    target instanceof HTMLSelectElement ||
    (target instanceof HTMLInputElement && target.type !== 'checkbox' && target.type !== 'radio')
  );
}

function isView(target: EventTarget | null): boolean {
  return target === document.body || (target instanceof Element && target.closest('.view') !== null);
}

export function obeyKeys(): void {
  window.addEventListener('keydown', (event) => {
    if (event.defaultPrevented) return;
    const key = KEYS.find(
      (one) => one.test(event) && (one.always || !isTyping(event.target)) && (!one.inView || isView(event.target)),
    );
    if (!key) return;
    event.preventDefault();
    key.act(event);
  });
}
