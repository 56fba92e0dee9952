// The plan: the points from above, and the document drawn over them.

import { useEffect, useMemo, useRef, useState } from 'preact/hooks';
import type { State } from '../app/state';
import { set } from '../app/state';
import type { Item, Pt } from '../edit/model';
import { planMatrix, toPixel as pixelOf, zoomed } from './camera';
import { Grid, Origin, ScaleBar } from './Grid';
import { type Handle, handlesOf } from './handles';
import { Objects } from './Objects';
import { PlanPointer } from './pointer';
import { PointCanvas } from './PointCanvas';
import { Labels, pathOf, Shapes, type ToPixel } from './Shapes';
import { Sketch } from './Sketch';
import { Taken } from './Taken';
import { useShading } from './useShading';
import { useSize } from './useSize';
import { noteOf, occupiedIds } from '../app/counts';
import { placedFindings } from '../app/checked';
import { closePolygon } from '../app/draw';
import { fitAgain } from '../app/look';
import { Ghost } from './Ghost';

function Handles({
  state,
  toPixel,
  grabbed,
}: {
  state: State;
  toPixel: ToPixel;
  grabbed: (id: string, handle: Handle) => (event: PointerEvent) => void;
}) {
  const { doc, selection, tool, marks, camera, vertex } = state;
  const item = selection.length === 1 ? doc.byId.get(selection[0]!) : undefined;
  if (!item || tool !== 'select' || marks.locked.has(item.id)) return null;
  return (
    <g class="handles">
      {handlesOf(item, 26 / camera.scale).map((handle) => {
        const p = toPixel(handle.p);
        const isChosen = handle.kind === 'vertex' && handle.index === vertex;
        return (
          <g
            key={`${handle.kind}${handle.index}`}
            class={`handle ${handle.kind} ${isChosen ? 'chosen' : ''}`}
            data-handle={`${handle.kind}${handle.index}`}
            onPointerDown={grabbed(item.id, handle)}
          >
            <title>{handle.title}</title>
            <circle class="reach" cx={p.x} cy={p.y} r="12" />
            <circle class="seen" cx={p.x} cy={p.y} r={handle.kind === 'edge' ? 3.5 : 5.5} />
          </g>
        );
      })}
    </g>
  );
}

export function PlanView({ state, isDark }: { state: State; isDark: boolean }) {
  const holder = useRef<HTMLDivElement>(null);
  const size = useSize(holder);
  const sizeNow = useRef(size);
  sizeNow.current = size;
  const [band, showBand] = useState<{ a: Pt; b: Pt } | null>(null);
  const pointer = useMemo(() => new PlanPointer(() => sizeNow.current, showBand), []);
  const pressed = useRef<{ id: string; handle: Handle } | null>(null);
  const { doc, camera, scene, counts, selection, fault } = state;
  const shading = useShading(state, isDark);
  const toPixel: ToPixel = (p) => pixelOf(camera, size, p);
  useEffect(() => {
    set({ size });
    fitAgain();
  }, [size]);

  const placeOf = (event: PointerEvent | WheelEvent): Pt => {
    const box = holder.current!.getBoundingClientRect();
    return { x: event.clientX - box.left, y: event.clientY - box.top };
  };
  useEffect(() => {
    const turn = (event: WheelEvent): void => {
      event.preventDefault();
      const factor = Math.exp(-event.deltaY * (event.deltaMode === 1 ? 0.05 : 0.0015));
      set({ camera: zoomed(stateNow.current.camera, sizeNow.current, placeOf(event), factor) });
    };
    const watched = holder.current!;
    watched.addEventListener('wheel', turn, { passive: false });
    return () => watched.removeEventListener('wheel', turn);
  }, []);
  const stateNow = useRef(state);
  stateNow.current = state;

  const marks = {
    selection,
    isHidden: (id: string) => state.marks.hidden.has(id),
    findings: placedFindings(state),
    occupied: occupiedIds(state),
    activeField: state.activeField,
  };
  const bandPath = band
    ? pathOf([band.a, { x: band.b.x, y: band.a.y }, band.b, { x: band.a.x, y: band.b.y }], toPixel)
    : '';
  return (
    <div
      class={`view plan tool-${state.tool} ${fault ? 'stale' : ''}`}
      ref={holder}
      data-camera={`${camera.x} ${camera.y} ${camera.scale}`}
      onDblClick={closePolygon}
    >
      <svg class="under" width={size.width} height={size.height} aria-hidden="true">
        <Grid camera={camera} size={size} />
      </svg>
      <PointCanvas
        scene={scene}
        counts={counts}
        shading={shading}
        size={size}
        look={camera}
        matrixOf={(of) => planMatrix(camera, size, of.origin)}
      />
      <svg
        class="over"
        width={size.width}
        height={size.height}
        tabindex={0}
        role="application"
        aria-label="Plan. Press question mark for the keys."
        data-scene={scene ? scene.id : ''}
        onPointerDown={(event) => {
          (event.currentTarget as Element).setPointerCapture(event.pointerId);
          (event.currentTarget as SVGElement).focus({ preventScroll: true });
          pointer.down(event, placeOf(event), pressed.current);
          pressed.current = null;
        }}
        onPointerMove={(event) => pointer.move(event, placeOf(event))}
        onPointerUp={(event) => pointer.up(event, placeOf(event))}
        onPointerCancel={(event) => pointer.lost(event)}
        onPointerLeave={() => set({ pointer: null })}
        onContextMenu={(event) => event.preventDefault()}
      >
        <defs>
          <pattern id="hatch" width="7" height="7" patternUnits="userSpaceOnUse" patternTransform="rotate(45)">
            <path class="hatch" d="M0 0v7" />
          </pattern>
          <marker
            id="arrow"
            viewBox="0 0 10 10"
            refX="8"
            refY="5"
            markerWidth="11"
            markerHeight="11"
            markerUnits="userSpaceOnUse"
            orient="auto"
          >
            <path class="arrowhead" d="M0 0L10 5L0 10z" />
          </marker>
        </defs>
        {scene ? <Taken scene={scene} counts={counts} toPixel={toPixel} /> : null}
        {state.showBefore ? <Ghost text={state.before.text} toPixel={toPixel} /> : null}
        <Shapes doc={doc} toPixel={toPixel} marks={marks} />
        <Objects objects={state.objects} toPixel={toPixel} />
        <Origin camera={camera} size={size} />
        <Labels doc={doc} toPixel={toPixel} marks={marks} noteOf={(item: Item) => noteOf(state, item)} />
        <Sketch state={state} toPixel={toPixel} />
        <Handles state={state} toPixel={toPixel} grabbed={(id, handle) => () => (pressed.current = { id, handle })} />
        {band ? <path class="band" d={bandPath} /> : null}
        <ScaleBar camera={camera} size={size} />
      </svg>
    </div>
  );
}
