// The side view: the points from the front with their histogram of heights, and the heights of the selected zone,
// which are dragged here.

import { useEffect, useRef, useState } from 'preact/hooks';
import { beginDrag, type Drag, dragTo, endDrag, say } from '../app/actions';
import type { State } from '../app/state';
import { tidy } from '../edit/geometry';
import type { Doc, Zone } from '../edit/model';
import { withHeight } from '../edit/values';
import { decimalsOf, held, type Matrix, niceStep, ticksOf } from './camera';
import { PointCanvas } from './PointCanvas';
import { colourOf } from './Shapes';
import { useShading } from './useShading';
import { useSize } from './useSize';

type Heights = { least: number; step: number; counts: Uint32Array };
type Key = 'zMin' | 'zMax';
interface Range {
  readonly low: number;
  readonly high: number;
}

const BINS = 200;

// From below the ground to well over a person, and as far as the zone reaches.
function rangeOf(state: State, zone: Zone | undefined): Range {
  const ground = state.scene?.ground ?? 0;
  const metre = Math.max(1, Math.abs(ground) * 1e-9); // a file may hold any number, of which doubles tell no metres
  const inView = (z: number | undefined): number[] => (z !== undefined && Math.abs(z - ground) < 30 ? [z] : []);
  const all = [ground - metre, ground + 5 * metre, ...inView(zone?.zMin), ...inView(zone?.zMax)];
  return { low: Math.min(...all) - 0.3 * metre, high: Math.max(...all) + 0.5 * metre };
}

function sideMatrix(state: State, range: Range): Matrix {
  const [x0, , z0] = state.scene!.origin;
  const extent = state.scene!.extents?.[0] ?? { least: -1, greatest: 1 };
  const m = new Float64Array(16);
  const width = Math.max(extent.greatest - extent.least, 1);
  m[0] = 2 / width;
  m[9] = 2 / (range.high - range.low);
  m[12] = ((x0 - (extent.least + extent.greatest) / 2) * 2) / width;
  m[13] = ((z0 - (range.low + range.high) / 2) * 2) / (range.high - range.low);
  m[15] = 1;
  return m;
}

function useHeights(state: State): Heights | null {
  const [heights, show] = useState<Heights | null>(null);
  const { engine, scene } = state;
  useEffect(() => {
    let isWanted = true;
    show(null);
    if (engine && scene)
      engine.heights(scene.id, BINS).then(
        (found) => isWanted && show(found),
        () => undefined,
      );
    return () => {
      isWanted = false;
    };
  }, [engine, scene]);
  return heights;
}

function histogramPath(heights: Heights, toY: (z: number) => number, width: number): string {
  const most = Math.max(1, ...heights.counts);
  return Array.from(heights.counts, (count, i) => {
    if (count === 0) return '';
    const top = toY(heights.least + (i + 1) * heights.step);
    const bottom = toY(heights.least + i * heights.step);
    if (!Number.isFinite(bottom - top)) return ''; // heights farther apart than any number
    // By the root, so that a person beside a street is seen too.
    return `M0 ${top.toFixed(1)}h${(width * Math.sqrt(count / most)).toFixed(1)}v${Math.max(0.5, bottom - top).toFixed(1)}H0z`;
  }).join('');
}

export function SideView({ state, isDark }: { state: State; isDark: boolean }) {
  const holder = useRef<HTMLDivElement>(null);
  const size = useSize(holder);
  const heights = useHeights(state);
  const drag = useRef<{ drag: Drag; key: Key; range: Range } | null>(null);
  const shading = useShading(state, isDark);
  const { doc, selection, scene } = state;
  const item = selection.length === 1 ? doc.byId.get(selection[0]!) : undefined;
  const zone = item && item.kind !== 'line' ? item : undefined;
  // While a height is dragged the scale stays as it was.
  const range = drag.current?.range ?? rangeOf(state, zone);
  const scale = size.height / (range.high - range.low);
  const toY = (z: number): number => held(size.height - (z - range.low) * scale);
  const step = niceStep(34 / scale);
  const ticks = ticksOf(range.low, range.high, step).map((i) => i * step);

  const grab =
    (key: Key) =>
    (event: PointerEvent): void => {
      if (!zone || state.marks.locked.has(zone.id)) return;
      const begun = beginDrag(key === 'zMin' ? 'Lower height' : 'Upper height');
      if (!begun) return;
      (event.currentTarget as Element).setPointerCapture(event.pointerId);
      drag.current = { drag: begun, key, range };
    };
  const move = (event: PointerEvent): void => {
    if (!drag.current || !zone) return;
    const y = event.clientY - holder.current!.getBoundingClientRect().top;
    const z = tidy(Math.round((drag.current.range.low + (size.height - y) / scale) * 100) / 100);
    const { key } = drag.current;
    dragTo(drag.current.drag, (from) => withHeight(from, from.byId.get(zone.id) as Zone, key, z));
  };
  const drop = (): void => {
    if (drag.current) endDrag(drag.current.drag);
    drag.current = null;
  };
  const nudge =
    (key: Key) =>
    (event: KeyboardEvent): void => {
      const by = { ArrowUp: 1, ArrowDown: -1 }[event.key];
      if (!by || !zone) return;
      event.preventDefault();
      event.stopPropagation();
      if (state.marks.locked.has(zone.id)) return say(`${zone.name} is locked.`);
      const begun = beginDrag(key);
      if (!begun) return;
      dragTo(begun, (from) => withHeight(from, zone, key, tidy(zone[key] + by * (event.shiftKey ? 0.1 : 0.01))));
      endDrag(begun);
    };
  return (
    <div class="view side" ref={holder}>
      {scene ? (
        <PointCanvas
          scene={scene}
          counts={state.counts}
          shading={shading}
          size={size}
          look={`${range.low} ${range.high}`}
          matrixOf={() => sideMatrix(state, range)}
        />
      ) : null}
      <svg
        class="over"
        width={size.width}
        height={size.height}
        aria-label="Heights"
        role="group"
        onPointerMove={move}
        onPointerUp={drop}
        onPointerCancel={drop}
      >
        <g class="ticks" aria-hidden="true">
          <path class="grid" d={ticks.map((z) => `M0 ${toY(z).toFixed(1)}h${size.width}`).join('')} />
          {ticks.map((z) => (
            <text key={z} x={size.width - 4} y={toY(z) - 3} text-anchor="end">
              {z.toFixed(decimalsOf(step))} m
            </text>
          ))}
        </g>
        {heights ? <path class="histogram" d={histogramPath(heights, toY, size.width * 0.6)} /> : null}
        {zone ? <Band doc={doc} zone={zone} toY={toY} width={size.width} grab={grab} nudge={nudge} /> : null}
        {zone ? null : (
          <text
            class="hint"
            x={size.width / 2}
            y={18}
            text-anchor="middle"
            style={{ fontSize: `${Math.min(12, size.width / 8)}px` }}
          >
            Select a zone
          </text>
        )}
      </svg>
    </div>
  );
}

interface BandProps {
  readonly doc: Doc;
  readonly zone: Zone;
  readonly toY: (z: number) => number;
  readonly width: number;
  readonly grab: (key: Key) => (event: PointerEvent) => void;
  readonly nudge: (key: Key) => (event: KeyboardEvent) => void;
}

function Band({ doc, zone, toY, width, grab, nudge }: BandProps) {
  if (!Number.isFinite(zone.zMin) || !Number.isFinite(zone.zMax)) return null;
  const [top, bottom] = [toY(zone.zMax), toY(zone.zMin)];
  return (
    <g class={`heights ${zone.zMin > zone.zMax ? 'wrong' : ''}`} style={{ '--own': colourOf(doc, zone) }}>
      <rect x="0" y={Math.min(top, bottom)} width={width} height={Math.abs(bottom - top)} />
      {(['zMin', 'zMax'] as const).map((key) => (
        <g
          key={key}
          class="handle"
          data-height={key}
          tabindex={0}
          role="slider"
          aria-label={`${key} of ${zone.name}`}
          aria-orientation="vertical"
          aria-valuenow={zone[key]}
          aria-valuetext={`${zone[key]} m`}
          onPointerDown={grab(key)}
          onKeyDown={nudge(key)}
        >
          <path class="reach" d={`M0 ${toY(zone[key])}h${width}`} />
          <path class="seen" d={`M0 ${toY(zone[key])}h${width}`} />
          <text x="4" y={toY(zone[key]) + (key === 'zMax' ? -4 : 13)}>
            {key} {zone[key]} m
          </text>
        </g>
      ))}
    </g>
  );
}
