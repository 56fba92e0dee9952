// The state of the page, one value; whoever shows a part of it is told when it changes.

import type { Check, Counts, Engine, Explanation, Recording, Scene, Session, TrackedObject } from '../../engine/types';
import { begin, type History } from '../edit/history';
import { carried, type Marks, NO_MARKS } from '../edit/marks';
import { type Doc, type Pt, read } from '../edit/model';
import { JsonFault } from '../text/json';
import type { Orbit, PlanCamera, Size } from '../scene/camera';

export type Tool = 'select' | 'polygon' | 'rectangle' | 'sector' | 'line' | 'measure';
/** Where a drawn shape goes: into a field of the document, a new field, or the exclusion zones. */
export type Target =
  { readonly kind: 'field'; readonly field: number } | { readonly kind: 'new' } | { readonly kind: 'exclusion' };
export type Tab = 'zones' | 'findings' | 'events' | 'explain' | 'text';
export type Colouring = 'verdict' | 'height' | 'intensity';

/** What the time line and the events are compared with: the document as it was, or another one. */
export interface Before {
  readonly label: string;
  readonly text: string;
  readonly session: Session | null;
}

export function asOpened(text: string): Before {
  return { label: 'the document as opened', text, session: null };
}

export interface Checked extends Check {
  readonly text: string;
}

export interface Message {
  readonly text: string;
  readonly isError: boolean;
}

export interface State {
  readonly history: History;
  /** The text during a drag, before it is a step; null: nothing is dragged. */
  readonly live: string | null;
  /** Of the text, or of the last text that was JSON. */
  readonly doc: Doc;
  /** Why the text is not JSON; null: it is. */
  readonly fault: JsonFault | null;
  readonly fileName: string;
  readonly savedText: string;
  readonly selection: readonly string[];
  /** Of the only selected item; -1: none. */
  readonly vertex: number;
  readonly marks: Marks;
  readonly tool: Tool;
  readonly target: Target;
  /** What is being drawn: the points so far, and where the pointer is. */
  readonly sketch: readonly Pt[];
  readonly pointer: Pt | null;
  readonly snapToGrid: boolean;
  readonly snapToShapes: boolean;
  readonly camera: PlanCamera;
  /** Of the plan, in CSS pixels. */
  readonly size: Size;
  readonly orbit: Orbit;
  readonly view: 'plan' | 'solid';
  readonly colouring: Colouring;
  /** Whether points are pale where no zone of the document reaches. */
  readonly greysOut: boolean;
  readonly tab: Tab;
  readonly showHelp: boolean;
  readonly message: Message | null;
  readonly engine: Engine | null;
  readonly engineVersion: string;
  /** What the engine says to a text, and to which: it comes a moment after the text. */
  readonly checked: Checked | null;
  readonly scene: Scene | null;
  readonly sceneName: string;
  readonly counts: Counts | null;
  readonly recording: Recording | null;
  readonly recordingName: string;
  readonly session: Session | null;
  readonly before: Before;
  readonly showBefore: boolean;
  readonly moment: number;
  readonly isPlaying: boolean;
  readonly progress: string;
  readonly objects: readonly TrackedObject[];
  readonly activeField: number;
  readonly explanation: Explanation | null;
  readonly explained: string;
}

const EMPTY = '{\n  "ZoneDetector": {\n    "EvaluationField": []\n  }\n}\n';

let state: State = {
  history: begin(EMPTY),
  live: null,
  doc: read(EMPTY),
  fault: null,
  fileName: 'site.json',
  savedText: EMPTY,
  selection: [],
  vertex: -1,
  marks: NO_MARKS,
  tool: 'select',
  target: { kind: 'field', field: 0 },
  sketch: [],
  pointer: null,
  snapToGrid: true,
  snapToShapes: true,
  camera: { x: 0, y: 0, scale: 20 },
  size: { width: 800, height: 600 },
  orbit: { x: 0, y: 0, z: 0, yaw: -2.2, pitch: 0.7, distance: 40 },
  view: 'plan',
  colouring: 'verdict',
  greysOut: true,
  tab: 'zones',
  showHelp: false,
  message: null,
  engine: null,
  engineVersion: '',
  checked: null,
  scene: null,
  sceneName: '',
  counts: null,
  recording: null,
  recordingName: '',
  session: null,
  before: asOpened(EMPTY),
  showBefore: false,
  moment: 0,
  isPlaying: false,
  progress: '',
  objects: [],
  activeField: 0,
  explanation: null,
  explained: '',
};

type Listener = (now: State, before: State) => void;
const listeners = new Set<Listener>();

export function get(): State {
  return state;
}

/** The text as it stands, during a drag too. */
export function textOf(of: State = state): string {
  return of.live ?? of.history.text;
}

export function set(part: Partial<State>): void {
  const before = state;
  state = { ...state, ...part };
  if (textOf(state) !== textOf(before)) state = { ...state, ...readAgain(textOf(state), state) };
  for (const listener of listeners) listener(state, before);
}

// A text that is not JSON leaves the last document in view.
function readAgain(text: string, of: State): Partial<State> {
  try {
    const doc = read(text);
    const { marks, selection } = carried(of.doc, doc, of.marks, of.selection);
    return { doc, fault: null, marks, selection, vertex: selection.length === 1 ? of.vertex : -1 };
  } catch (error) {
    if (error instanceof JsonFault) return { fault: error };
    throw error;
  }
}

/** Gives the call that ends it. */
export function subscribe(listener: Listener): () => void {
  listeners.add(listener);
  return () => listeners.delete(listener);
}
