// The same scene in three dimensions, with zones as volumes.

import { useEffect, useMemo, useRef } from 'preact/hooks';
import { set, type State } from '../app/state';
import { ringOf } from '../edit/geometry';
import type { Doc, Pt, Zone } from '../edit/model';
import { type Matrix, type Orbit, orbitMatrix, project, type Size } from './camera';
import { Fingers, shift, spread, type TwoFingers } from './fingers';
import { PointCanvas } from './PointCanvas';
import { colourOf, isPlaced } from './Shapes';
import { useShading } from './useShading';
import { useSize } from './useSize';
import { occupiedIds } from '../app/counts';

const ORIGIN = [0, 0, 0];

function path3d(m: Matrix, size: Size, ring: readonly Pt[], z: number): string {
  const points = ring.map((p) => project(m, size, p.x, p.y, z));
  return points.some((p) => p === null)
    ? ''
    : points.map((p, i) => `${i === 0 ? 'M' : 'L'}${p!.x.toFixed(1)} ${p!.y.toFixed(1)}`).join('') + 'z';
}

// Walls between the two heights, and the lid; what is behind the eye is left out.
function Volume({
  doc,
  zone,
  m,
  size,
  state,
  isOccupied,
}: {
  doc: Doc;
  zone: Zone;
  m: Matrix;
  size: Size;
  state: State;
  isOccupied: boolean;
}) {
  const ring = ringOf(zone);
  const ground = state.scene?.ground ?? zone.zMin;
  // Heights that nobody set reach far: drawn to well over the ground.
  const [low, high] = [Math.max(zone.zMin, ground - 5), Math.min(zone.zMax, ground + 8)];
  if (!(high > low)) return null;
  const isRound = zone.shape?.kind === 'sector';
  const posts = ring.filter((_, i) => !isRound || i % 10 === 0);
  const edges = posts.map((p) => [project(m, size, p.x, p.y, low), project(m, size, p.x, p.y, high)] as const);
  const post = edges
    .map(([a, b]) => (a && b ? `M${a.x.toFixed(1)} ${a.y.toFixed(1)}L${b.x.toFixed(1)} ${b.y.toFixed(1)}` : ''))
    .join('');
  const walls = ring.map((p, i) => {
    const q = ring[(i + 1) % ring.length]!;
    const corners = [
      project(m, size, p.x, p.y, low),
      project(m, size, q.x, q.y, low),
      project(m, size, q.x, q.y, high),
      project(m, size, p.x, p.y, high),
    ];
    return corners.some((c) => c === null)
      ? ''
      : corners.map((c, k) => `${k === 0 ? 'M' : 'L'}${c!.x.toFixed(1)} ${c!.y.toFixed(1)}`).join('') + 'z';
  });
  const classes = `${zone.kind} ${state.selection.includes(zone.id) ? 'selected' : ''} ${isOccupied ? 'occupied' : ''}`;
  return (
    <g
      class={`volume ${classes}`}
      data-id={zone.id}
      style={{ '--own': colourOf(doc, zone) }}
      onClick={() => set({ selection: [zone.id], vertex: -1 })}
    >
      <title>{`${zone.name}, ${zone.zMin} to ${zone.zMax} m`}</title>
      {walls.map((d, i) => (
        <path key={i} class="wall" d={d} />
      ))}
      <path class="rim" d={path3d(m, size, ring, low)} />
      <path class="rim" d={path3d(m, size, ring, high) + post} />
    </g>
  );
}

export function turned(orbit: Orbit, dx: number, dy: number): Orbit {
  const pitch = Math.min(1.55, Math.max(0.05, orbit.pitch + dy * 0.006));
  return { ...orbit, yaw: orbit.yaw - dx * 0.006, pitch };
}

export function shifted(orbit: Orbit, dx: number, dy: number, height: number): Orbit {
  const metres = (orbit.distance * 0.83) / height;
  const [c, s] = [Math.cos(orbit.yaw), Math.sin(orbit.yaw)];
  return { ...orbit, x: orbit.x + (s * dx - c * dy) * metres, y: orbit.y + (-c * dx - s * dy) * metres };
}

function nearer(orbit: Orbit, factor: number): Orbit {
  return { ...orbit, distance: Math.min(1e5, Math.max(0.1, orbit.distance / factor)) };
}

export function SolidView({ state, isDark }: { state: State; isDark: boolean }) {
  const holder = useRef<HTMLDivElement>(null);
  const size = useSize(holder);
  const now = useRef(state);
  now.current = state;
  const start = useRef<{ orbit: Orbit; x: number; y: number; isShift: boolean } | null>(null);
  const shading = useShading(state, isDark);
  const fingers = useMemo(() => new Fingers(), []);
  const { doc, orbit, marks } = state;
  const placeOf = (event: PointerEvent): Pt => ({ x: event.clientX, y: event.clientY });
  // One finger turns; two move and go nearer.
  const pinch = (two: TwoFingers): void => {
    const { orbit: from } = now.current;
    const by = shift(two);
    set({ orbit: nearer(shifted(from, by.x, by.y, size.height), spread(two)) });
  };
  const m = orbitMatrix(orbit, size, ORIGIN);
  const occupied = occupiedIds(state);
  useEffect(() => {
    const turn = (event: WheelEvent): void => {
      event.preventDefault();
      set({ orbit: nearer(now.current.orbit, Math.exp(-event.deltaY * 0.0015)) });
    };
    const watched = holder.current!;
    watched.addEventListener('wheel', turn, { passive: false });
    return () => watched.removeEventListener('wheel', turn);
  }, []);
  const zones = [...doc.fields.flatMap((field) => field.zones), ...doc.exclusions].filter(
    (zone) => isPlaced(zone) && !marks.hidden.has(zone.id),
  );
  return (
    <div
      class="view solid"
      ref={holder}
      onPointerDown={(event) => {
        if (fingers.isPalm(event)) return;
        const isOne = fingers.down(event, placeOf(event)) === 1;
        const isShift = event.shiftKey || event.button !== 0;
        start.current = isOne ? { orbit, ...placeOf(event), isShift } : null;
      }}
      onPointerMove={(event) => {
        const two = fingers.move(event, placeOf(event));
        if (two) return pinch(two);
        if (!start.current || event.buttons === 0 || fingers.isPalm(event)) return;
        const { orbit: from, x, y, isShift } = start.current;
        const [dx, dy] = [event.clientX - x, event.clientY - y];
        set({ orbit: isShift ? shifted(from, dx, dy, size.height) : turned(from, dx, dy) });
      }}
      onPointerUp={(event) => {
        fingers.up(event);
        start.current = null;
      }}
      onPointerCancel={(event) => {
        fingers.up(event);
        start.current = null;
      }}
      onContextMenu={(event) => event.preventDefault()}
    >
      <PointCanvas
        scene={state.scene}
        counts={state.counts}
        shading={shading}
        size={size}
        look={orbit}
        matrixOf={(scene) => orbitMatrix(orbit, size, scene.origin)}
      />
      <svg
        class="over"
        width={size.width}
        height={size.height}
        tabindex={0}
        role="application"
        aria-label="View in three dimensions. Drag turns it, with Shift moves it, the wheel goes nearer; arrows turn it."
      >
        {zones.map((zone) => (
          <Volume
            key={zone.id}
            doc={doc}
            zone={zone}
            m={m}
            size={size}
            state={state}
            isOccupied={occupied.has(zone.id)}
          />
        ))}
        {doc.lines
          .filter((line) => isPlaced(line) && !marks.hidden.has(line.id))
          .map((line) => {
            const z = state.scene?.ground ?? 0;
            const [a, b] = [
              project(m, size, line.first.x, line.first.y, z),
              project(m, size, line.second.x, line.second.y, z),
            ];
            return a && b ? <path key={line.id} class="line3d" d={`M${a.x} ${a.y}L${b.x} ${b.y}`} /> : null;
          })}
      </svg>
    </div>
  );
}
