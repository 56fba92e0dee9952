// The tools, where a drawn shape goes, and places typed as numbers.

import { useState } from 'preact/hooks';
import { say } from '../app/actions';
import { chooseTool, closePolygon, placePoint, whyFull } from '../app/draw';
import { duplicateSelected, mirrorSelected, removeSelected } from '../app/keys';
import { type Colouring, set, type State, type Target, type Tool } from '../app/state';
import { radians } from '../edit/geometry';
import type { Pt } from '../edit/model';

const TOOLS: readonly { readonly tool: Tool; readonly name: string; readonly key: string; readonly icon: string }[] = [
  { tool: 'select', name: 'Select', key: 'V', icon: 'M5 3l12 9-5.5 1L9 18z' },
  { tool: 'polygon', name: 'Polygon', key: 'P', icon: 'M4 9l8-6 8 7-4 10H6z' },
  { tool: 'rectangle', name: 'Rectangle', key: 'R', icon: 'M4 6h16v12H4z' },
  { tool: 'sector', name: 'Sector', key: 'S', icon: 'M5 19L17 4a20 20 0 0 1 4 15z' },
  { tool: 'line', name: 'Counter line', key: 'L', icon: 'M4 19L20 5M14 5h6v6' },
  { tool: 'measure', name: 'Measure', key: 'M', icon: 'M3 16L16 3l5 5L8 21zM8 11l2 2M11 8l3 3M14 5l2 2' },
];

/** "x, y", or "@length<angle" from the last place, in metres and degrees; null: neither. */
export function placeIn(text: string, last: Pt | undefined): Pt | null {
  const number = '\\s*([-+]?(?:\\d+\\.?\\d*|\\.\\d+))\\s*';
  const place = new RegExp(`^${number}[,; ]${number}$`).exec(text);
  if (place) return { x: Number(place[1]), y: Number(place[2]) };
  const way = new RegExp(`^\\s*@${number}<${number}$`).exec(text);
  if (!way || !last) return null;
  const [length, angle] = [Number(way[1]), radians(Number(way[2]))];
  return {
    x: Math.round((last.x + length * Math.cos(angle)) * 1e3) / 1e3,
    y: Math.round((last.y + length * Math.sin(angle)) * 1e3) / 1e3,
  };
}

function PlaceEntry({ state }: { state: State }) {
  const [text, setText] = useState('');
  const isPolygon = state.tool === 'polygon';
  const enter = (): void => {
    if (text.trim() === '' && isPolygon) return closePolygon();
    const p = placeIn(text, state.sketch.at(-1));
    if (!p)
      return say(
        `"${text}" is not a place. Write x, y in metres, such as 4.2, -1.5, or @length<angle from the last place, such as @2<30.`,
        true,
      );
    placePoint(p);
    setText('');
  };
  return (
    <label class="place">
      <span>Place</span>
      <input
        type="text"
        placeholder="x, y or @length<angle"
        value={text}
        onInput={(event) => setText(event.currentTarget.value)}
        onKeyDown={(event) => {
          if (event.key === 'Enter') enter();
          if (event.key === 'Escape') chooseTool('select');
        }}
      />
    </label>
  );
}

function targetText(target: Target): string {
  return target.kind === 'field' ? `field${target.field}` : target.kind;
}

function TargetChoice({ state }: { state: State }) {
  const { doc, target } = state;
  const options: { value: Target; text: string }[] = [
    ...doc.fields.map((field, i) => ({
      value: { kind: 'field', field: i } as const,
      text: `Field ${field.index}: ${field.name}`,
    })),
    { value: { kind: 'new' }, text: 'A new field' },
    { value: { kind: 'exclusion' }, text: 'Exclusion zones' },
  ];
  return (
    <label class="target">
      <span>Draw into</span>
      <select
        value={targetText(target)}
        onChange={(event) => {
          const chosen = options.find((one) => targetText(one.value) === event.currentTarget.value);
          if (chosen) set({ target: chosen.value });
        }}
      >
        {options.map(({ value, text }) => {
          const isFull = whyFull(doc, value) !== '';
          return (
            <option key={targetText(value)} value={targetText(value)} disabled={isFull}>
              {text}
              {isFull ? ' (full)' : ''}
            </option>
          );
        })}
      </select>
    </label>
  );
}

/** What to do with the tool in hand. */
export const HINTS: Readonly<Record<Tool, string>> = {
  select: '',
  polygon: 'Click the corners. Enter, a double click or the first corner closes.',
  rectangle: 'Click or drag from corner to corner. It is turned afterwards.',
  sector: 'A sector sits at the origin: click where it begins, then counterclockwise where it ends.',
  line: 'Click or drag from the first end to the second; L will mark its left side.',
  measure: 'Click two places.',
};

export function Tools({ state }: { state: State }) {
  const { tool, selection } = state;
  const isDrawing = tool === 'polygon' || tool === 'rectangle' || tool === 'sector';
  const isSelected = selection.length > 0;
  return (
    <div class="tools" role="toolbar" aria-label="Tools">
      {TOOLS.map((one) => (
        <button
          key={one.tool}
          type="button"
          class="tool"
          aria-pressed={tool === one.tool}
          title={`${one.name} (${one.key})`}
          aria-label={one.name}
          onClick={() => chooseTool(one.tool)}
        >
          <svg viewBox="0 0 24 24" width="20" height="20" aria-hidden="true">
            <path d={one.icon} />
          </svg>
        </button>
      ))}
      <span class="gap" />
      {tool === 'select' ? (
        <>
          <button type="button" disabled={!isSelected} title="Duplicate (Ctrl+D)" onClick={duplicateSelected}>
            Duplicate
          </button>
          <button
            type="button"
            disabled={!isSelected}
            title="Mirror left and right (H)"
            onClick={() => mirrorSelected('x')}
          >
            Mirror ↔
          </button>
          <button
            type="button"
            disabled={!isSelected}
            title="Mirror up and down (J)"
            onClick={() => mirrorSelected('y')}
          >
            Mirror ↕
          </button>
          <button type="button" disabled={!isSelected} title="Remove (Delete)" onClick={removeSelected}>
            Remove
          </button>
        </>
      ) : (
        <PlaceEntry state={state} />
      )}
      {isDrawing ? <TargetChoice state={state} /> : null}
      <span class="gap" />
      <label class="check">
        <input
          type="checkbox"
          checked={state.snapToGrid}
          onChange={(event) => set({ snapToGrid: event.currentTarget.checked })}
        />{' '}
        snap to grid
      </label>
      <label class="check">
        <input
          type="checkbox"
          checked={state.snapToShapes}
          onChange={(event) => set({ snapToShapes: event.currentTarget.checked })}
        />{' '}
        to shapes
      </label>
      <label class="choice">
        <span>Points by</span>
        <select
          value={state.colouring}
          onChange={(event) => set({ colouring: event.currentTarget.value as Colouring })}
        >
          <option value="verdict">verdict</option>
          <option value="height">height</option>
          <option value="intensity">intensity</option>
        </select>
      </label>
      <label class="check" title="Points outside the heights of all zones, which can count nowhere, are pale">
        <input
          type="checkbox"
          checked={state.greysOut}
          onChange={(event) => set({ greysOut: event.currentTarget.checked })}
        />{' '}
        pale out of reach
      </label>
      <button
        type="button"
        aria-pressed={state.view === 'solid'}
        title="Plan or three dimensions (3)"
        onClick={() => set({ view: state.view === 'plan' ? 'solid' : 'plan' })}
      >
        3D
      </button>
    </div>
  );
}
