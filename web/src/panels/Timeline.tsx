// The recording by time: states of zones, objects inside, crossings. A thin bar is how it was before the edit.

import { useMemo, useRef } from 'preact/hooks';
import type { Session } from '../../engine/types';
import { seek, togglePlay } from '../app/play';
import type { State } from '../app/state';
import type { Doc, Zone } from '../edit/model';
import { fieldColour, LINE } from '../scene/colours';
import { useSize } from '../scene/useSize';
import { timeStep, timeText } from './times';
import { compared, intervals } from './differences';

const ROW = 20;
const NAMES = 130;

/** Seconds since the first moment. */
export function secondsOf(session: Session, moment: number): number {
  return Number(session.stamps[moment]! - session.stamps[0]!) / 1e9;
}

interface Axis {
  readonly session: Session;
  readonly width: number;
  readonly duration: number;
}

// The last moment lasts as long as the one before it.
function axisOf(session: Session, width: number): Axis {
  const last = session.moments - 1;
  const step = last > 0 ? secondsOf(session, last) / last : 1;
  return {
    session,
    width: Math.max(50, width - NAMES - 12),
    duration: (secondsOf(session, Math.max(0, last)) || 0) + step,
  };
}

function toX(axis: Axis, moment: number): number {
  const { session, duration, width } = axis;
  const seconds = moment >= session.moments ? duration : secondsOf(session, moment);
  return NAMES + (duration > 0 ? (seconds / duration) * width : 0);
}

function bars(axis: Axis, list: readonly { from: number; to: number }[], y: number, height: number): string {
  return list
    .map(
      ({ from, to }) =>
        `M${toX(axis, from).toFixed(1)} ${y}h${Math.max(1, toX(axis, to) - toX(axis, from)).toFixed(1)}v${height}H${toX(axis, from).toFixed(1)}z`,
    )
    .join('');
}

function inhabited(session: Session, slot: number): { from: number; to: number }[] {
  const bits = Uint32Array.from({ length: session.moments }, (_, k) =>
    session.inhabitants[24 * k + slot]! > 0 ? 1 : 0,
  );
  return intervals(session, bits, 0);
}

function ZoneRow({
  axis,
  zone,
  slot,
  field,
  y,
  before,
}: {
  axis: Axis;
  zone: Zone;
  slot: number;
  field: number;
  y: number;
  before: Session | null;
}) {
  const { session } = axis;
  return (
    <g class="row" style={{ '--own': fieldColour(field) }}>
      <text x={NAMES - 8} y={y + 14} text-anchor="end">
        {zone.name}
      </text>
      <path class="occupied" data-row={zone.id} d={bars(axis, intervals(session, session.occupied, slot), y + 3, 8)} />
      {before && before.moments === session.moments ? (
        <path class="was" d={bars(axis, intervals(before, before.occupied, slot), y + 12, 2)} />
      ) : null}
      <path class="inhabited" d={bars(axis, inhabited(session, slot), y + 15, 3)} />
    </g>
  );
}

function LineRow({ axis, name, y }: { axis: Axis; name: string; y: number }) {
  const marks = axis.session.events.filter(({ record }) => record['type'] === 'crossing' && record['line'] === name);
  return (
    <g class="row" style={{ '--own': LINE }}>
      <text x={NAMES - 8} y={y + 14} text-anchor="end">
        {name}
      </text>
      {marks.map((event, i) => {
        const x = toX(axis, event.moment);
        const up = event.record['to'] === 'left';
        return (
          <path key={i} class="crossed" d={up ? `M${x} ${y + 4}l5 9h-10z` : `M${x} ${y + 15}l5 -9h-10z`}>
            <title>{event.line}</title>
          </path>
        );
      })}
    </g>
  );
}

function rowsOf(doc: Doc): { zone: Zone; slot: number; field: number }[] {
  return doc.fields.flatMap((field) =>
    field.zones
      .map((zone) => ({ zone, slot: 3 * field.index + zone.index, field: field.index }))
      .filter(({ slot }) => slot >= 0 && slot < 24),
  );
}

function Rows({ axis, doc, before }: { axis: Axis; doc: Doc; before: Session | null }) {
  const zones = rowsOf(doc);
  return (
    <g>
      {zones.map((row, i) => (
        <ZoneRow key={row.zone.id} axis={axis} {...row} y={i * ROW} before={before} />
      ))}
      {doc.lines.map((line, i) => (
        <LineRow key={line.id} axis={axis} name={line.name} y={(zones.length + i) * ROW} />
      ))}
    </g>
  );
}

// Stands above the rows while they are scrolled.
function TimeAxis({ axis }: { axis: Axis }) {
  const { duration, width } = axis;
  const step = timeStep((70 * duration) / width);
  const ticks = [];
  for (let i = 0; i * step <= duration; ++i) {
    const x = NAMES + ((i * step) / duration) * width;
    ticks.push(
      <g key={i}>
        <path d={`M${x.toFixed(1)} 14v4`} />
        <text x={x} y="11" text-anchor={i === 0 ? 'start' : (i + 1) * step > duration ? 'end' : 'middle'}>
          {timeText(i * step, step)}
        </text>
      </g>,
    );
  }
  return (
    <svg class="times" width={NAMES + width + 12} height="18" aria-hidden="true">
      {ticks}
    </svg>
  );
}

function Transport({ session, state, note }: { session: Session; state: State; note: string }) {
  const { moment, isPlaying } = state;
  return (
    <div class="transport">
      <button type="button" onClick={() => seek(moment - 1)} aria-label="One moment back" title="One moment back (,)">
        ◂
      </button>
      <button
        type="button"
        class="play"
        onClick={togglePlay}
        aria-label={isPlaying ? 'Pause' : 'Play'}
        title="Play or pause (Space)"
      >
        {isPlaying ? '❚❚' : '▶'}
      </button>
      <button type="button" onClick={() => seek(moment + 1)} aria-label="One moment on" title="One moment on (.)">
        ▸
      </button>
      <input
        type="range"
        aria-label="Moment"
        min={0}
        max={session.moments - 1}
        value={moment}
        aria-valuetext={`${secondsOf(session, moment).toFixed(2)} s`}
        onInput={(event) => seek(Number(event.currentTarget.value))}
      />
      <output>
        {secondsOf(session, moment).toFixed(2)} s, {moment + 1} of {session.moments}
      </output>
      <span class="note">{note}</span>
    </div>
  );
}

function Playing({ session, state }: { session: Session; state: State }) {
  const holder = useRef<HTMLDivElement>(null);
  const size = useSize(holder);
  const { moment, doc, before, progress } = state;
  const other = before.session !== null && before.session !== session ? before.session : null;
  const axis = useMemo(() => axisOf(session, size.width), [session, size.width]);
  const rows = useMemo(() => <Rows axis={axis} doc={doc} before={other} />, [axis, doc, other]);
  const changes = useMemo(
    () => (other ? compared(other.events, session.events).filter((one) => one.change !== 'same').length : 0),
    [session, other],
  );
  const height = (rowsOf(doc).length + doc.lines.length) * ROW + 6;
  const at = (event: PointerEvent): void => {
    const x = event.clientX - holder.current!.getBoundingClientRect().left - NAMES;
    const wanted = (x / axis.width) * axis.duration;
    let nearest = 0;
    for (let k = 0; k < session.moments && secondsOf(session, k) <= wanted + 1e-9; ++k) nearest = k;
    seek(nearest);
  };
  const x = toX(axis, moment);
  const difference = `${changes} ${changes === 1 ? 'event differs' : 'events differ'} from ${before.label}`;
  return (
    <div class="timeline">
      <Transport session={session} state={state} note={progress || (other ? difference : '')} />
      <div
        class="tracks"
        ref={holder}
        tabindex={0}
        role="group"
        aria-label="Time line"
        onPointerDown={(event) => {
          (event.currentTarget as Element).setPointerCapture(event.pointerId);
          at(event);
        }}
        onPointerMove={(event) => {
          if (event.buttons === 1) at(event);
        }}
      >
        <TimeAxis axis={axis} />
        <svg
          width={Math.max(200, size.width)}
          height={height}
          role="img"
          aria-label="States of the zones and crossings by time"
        >
          {rows}
          <path class="cursor" d={`M${x} 0v${height}`} />
        </svg>
      </div>
    </div>
  );
}

export function Timeline({ state }: { state: State }) {
  const { session, progress } = state;
  if (session && session.moments > 0) return <Playing session={session} state={state} />;
  return (
    <div class="timeline empty">
      <p class="note">{progress || 'Drop a recording here to play it.'}</p>
    </div>
  );
}
