// What is being drawn, before it is a part of the document, with lengths and angles beside the pointer.

import { bearing, degrees, distance, minus, outline } from '../edit/geometry';
import type { Pt, Shape } from '../edit/model';
import { sectorOf } from '../app/draw';
import type { State } from '../app/state';
import { pathOf, type ToPixel } from './Shapes';

/** The ring that the sketch would become. */
function sketchRing(state: State): readonly Pt[] {
  const { tool, sketch, pointer } = state;
  const [first] = sketch;
  if (!first) return [];
  const end = (tool === 'measure' && sketch[1]) || pointer || first;
  if (tool === 'polygon') return pointer ? [...sketch, pointer] : sketch;
  if (tool === 'rectangle') return [first, { x: end.x, y: first.y }, end, { x: first.x, y: end.y }];
  if (tool === 'sector') {
    const sector: Shape | null = sectorOf(first, end);
    return sector ? outline(sector) : [];
  }
  return [first, end];
}

export function wayText(a: Pt, b: Pt): string {
  const way = minus(b, a);
  return `${distance(a, b).toFixed(2)} m, ${degrees(bearing(way)).toFixed(1)}°`;
}

export function Sketch({ state, toPixel }: { state: State; toPixel: ToPixel }) {
  const { sketch, pointer, tool } = state;
  if (tool === 'select') return null;
  const ring = sketchRing(state);
  const end = (tool === 'measure' && sketch[1]) || pointer;
  const last = tool === 'measure' ? sketch[0] : sketch.at(-1);
  const tip = end && toPixel(end);
  const isArea = tool !== 'line' && tool !== 'measure';
  return (
    <g class="sketch">
      {ring.length > 0 ? <path d={pathOf(ring, toPixel, isArea)} class={isArea ? 'area' : ''} /> : null}
      {sketch.map((p, i) => {
        const q = toPixel(p);
        return <circle key={i} cx={q.x} cy={q.y} r="4" />;
      })}
      {tip ? <path class="cross" d={`M${tip.x - 8} ${tip.y}h16M${tip.x} ${tip.y - 8}v16`} /> : null}
      {tip && end && last ? (
        <text x={tip.x + 12} y={tip.y - 12}>
          {wayText(last, end)}
        </text>
      ) : null}
    </g>
  );
}
